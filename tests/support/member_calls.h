#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <span>
#include <string>
#include <vector>

#include "host/registration.h"
#include "image/image_registry.h"
#include "script/table_object.h"
#include "support/capture_host.h"
#include "support/environment.h"
#include "support/temporary_folder.h"

namespace kelmora {

// Calls functions of the host and of the library in an order, and with arguments, that the bytes choose:
// values of every kind, results of earlier calls, handles that died and handles of other kinds. What is
// called is read from the interpreter, so whatever is registered takes part.
class MemberCalls {
public:
    explicit MemberCalls(std::span<const unsigned char> choices)
        : choices_(choices),
          video_("KELMORA_VIDEO", "memory"),
          audio_("KELMORA_AUDIO", "memory"),
          previousFolder_(std::filesystem::current_path()) {
        std::filesystem::current_path(folder_.path());
        registerFunctions(runtime_);
        runtime_.engine.setStepLimit(20000);
        runtime_.engine.runScript(
            "function answer(a, b)\n    return a, b\nend\n"
            "function kill(a)\n    Plush[\"killImage\"](victim)\n    Font[\"killFont\"](victim)\n"
            "    Audio[\"free\"](victim)\n    return a\nend\n"
            "decay function later(a)\n    print(a)\nend\n"
            "function fail()\n    error(\"on purpose\")\nend\n");
        collect();
        fillPool();
    }
    MemberCalls(const MemberCalls&) = delete;
    MemberCalls& operator=(const MemberCalls&) = delete;
    ~MemberCalls() {
        // What scripts hold outlives the interpreter.
        for (const Variable& handle : handles_)
            for (const char* ending : {"Plush.killImage", "Plush.killShader", "Font.killFont", "Audio.free"})
                call(ending, {handle});
        for (const std::vector<PlushImage*> left(livePlushImages.begin(), livePlushImages.end());
             PlushImage * image : left)
            killPlushImage(image);
        // Containers that came to hold themselves are not taken back by counting.
        for (const Variable& container : containers_) {
            if (container.isTable()) container.table().clear();
            if (container.isArray()) std::vector<Variable>().swap(container.items());
        }
        std::filesystem::current_path(previousFolder_);
    }

    void run() {
        while (!choices_.empty()) {
            const Variable& function = functions_[pick(functions_.size())];
            std::vector<Variable> arguments;
            for (std::size_t count = pick(12); count > 0; --count) arguments.push_back(argument());
            keep(call(function, arguments));
        }
    }
    std::size_t functionCount() const { return functions_.size(); }

private:
    std::size_t pick(std::size_t count) {
        if (choices_.empty()) return 0;
        const std::size_t chosen =
            count > 256 && choices_.size() > 1 ? choices_[0] * std::size_t{256} + choices_[1] : choices_[0];
        choices_ = choices_.subspan(count > 256 && choices_.size() > 1 ? 2 : 1);
        return chosen % count;
    }

    // Those that wait or end the process are for other tests.
    static bool isLeftOut(const std::string& name) {
        static const std::vector<std::string> names{"Vesper.sleep"};
        return std::find(names.begin(), names.end(), name) != names.end();
    }
    void collect() {
        for (const auto& [name, value] : runtime_.engine.globals()) {
            if (value.isFunction()) functions_.push_back(value);
            if (!value.isTable()) continue;
            for (const Ref<StringObject>& key : value.table().sortedKeys()->keys)
                if (const Variable* member = value.table().find(*key); member->isFunction())
                    functions_.push_back(*member);
        }
        std::erase_if(functions_,
                      [](const Variable& function) { return isLeftOut(function.function().name); });
        std::sort(functions_.begin(), functions_.end(),
                  [](const Variable& a, const Variable& b) { return a.function().name < b.function().name; });
    }
    void fillPool() {
        for (const std::int32_t whole : {-1, 0, 1, 2, 3, 7, 16, 64, 255, 256, 1000, INT32_MAX, INT32_MIN})
            pool_.push_back(Variable::integer(whole));
        for (const float fraction : {0.5f, -0.5f, 0.0f, 1.5f, 90.0f, 1e9f, -1e9f, 3.4e38f, HUGE_VALF, NAN})
            pool_.push_back(Variable::number(fraction));
        for (const char* text :
             {"",      "x",         "answer",    "a.png", "a.pmg", "a.wav",    "a.tga", "a.bmp",
              "a.xcf", "a.vs",      "font.ttf",  "./",    "r",     "w",        "%d %s", "(%a+)%-(%d+)",
              "[",     "re:(a*)*b", "r = g * 2", "if",    "x = 1", "return 1", "12",    "0x1F",
              "a,b",   "é"})
            pool_.push_back(Variable::text(text));
        pool_.push_back(Variable());
        pool_.push_back(Variable::boolean(true));
        pool_.push_back(Variable::boolean(false));
        pool_.push_back(Variable::raw({'V', 'S', 'B', 'C', 60, 0}));
        pool_.push_back(Variable::array({Variable::integer(1), Variable::text("x"), Variable()}));
        pool_.push_back(Variable::array({}));
        pool_.push_back(Variable::makeMulti({Variable::integer(1), Variable::number(2)}));
        Variable table = Variable::makeTable();
        table.table().set("1", Variable::array({Variable::integer(1), Variable::integer(0)}));
        table.table().set("x", Variable::number(2));
        pool_.push_back(table);
        Variable cyclic = Variable::makeTable();
        cyclic.table().set("self", Variable::array({Variable::integer(3)}));
        pool_.push_back(cyclic);
        for (const char* name : {"answer", "kill", "later", "fail"})
            pool_.push_back(runtime_.engine.pullVariable(name));
        // Forged: to nothing, and to something that is no object of the engine.
        pool_.push_back(Variable::pointer(nullptr));
        pool_.push_back(Variable::pointer(reinterpret_cast<void*>(std::uintptr_t{16})));
        pool_.push_back(Variable::pointer(pool_.data()));
        fixed_ = pool_.size();
        std::copy_if(pool_.begin(), pool_.end(), std::back_inserter(containers_), isContainer);
        for (const char* maker : {"Plush.createImage", "Plush.compileShader"})
            keep(call(maker, maker == std::string("Plush.createImage")
                                 ? std::vector<Variable>(6, Variable::integer(9))
                                 : std::vector<Variable>{Variable::integer(1)}));
    }

    static bool isContainer(const Variable& value) { return value.isTable() || value.isArray(); }
    Variable argument() {
        // Handles are the rarer and the more telling ones.
        if (!handles_.empty() && pick(3) == 0) return handles_[pick(handles_.size())];
        return pool_[pick(pool_.size())];
    }
    void keep(const Variable& result) {
        if (result.isMulti()) {
            for (const Variable& value : result.values()) keep(value);
        } else if (result.isPointer()) {
            handles_.push_back(result);
            runtime_.engine.pushVariable("victim", result);
        } else if (!result.isNot()) {
            if (isContainer(result)) containers_.push_back(result);
            if (pool_.size() > fixed_ + 64)
                pool_[fixed_ + pick(64)] = result;
            else
                pool_.push_back(result);
        }
    }

    Variable call(const std::string& name, const std::vector<Variable>& arguments) {
        for (const Variable& function : functions_)
            if (function.function().name == name) return call(function, arguments);
        return {};
    }
    Variable call(const Variable& function, const std::vector<Variable>& arguments) {
        try {
            return runtime_.engine.callCallable(function, arguments);
        } catch (const std::exception&) {
            return {};
        }
    }

    std::span<const unsigned char> choices_;
    ScopedEnvironment video_;
    ScopedEnvironment audio_;
    std::filesystem::path previousFolder_;
    TemporaryFolder folder_;
    CaptureHost host_;
    Runtime runtime_{host_};
    std::vector<Variable> functions_;
    std::vector<Variable> pool_;
    std::vector<Variable> handles_;
    std::vector<Variable> containers_;
    std::size_t fixed_ = 0;
};

}  // namespace kelmora
