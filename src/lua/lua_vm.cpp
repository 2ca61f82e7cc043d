#include "lua/lua_vm.h"

#include <cstdio>
#include <stdexcept>
#include <utility>

#include "guest/traced_error.h"
#include "lua/bytecode_file.h"
#include "lua/conversion.h"
#include "lua/interpreter.h"
#include "lua/library/library.h"

namespace vesper::lua {
namespace {

constexpr std::string_view imageName = "<lua-bytecode>";

std::span<const std::uint8_t> bytesOf(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

}  // namespace

struct LuaVM::Impl {
    Impl(kelmora::HostServices& host, kelmora::NativeStack& stack) : machine(host, stack) {
        bindDefaults(machine);
    }

    static LuaResult makeSuccess(const MultiValue& values) {
        LuaResult result;
        try {
            for (std::size_t i = 0; i < values.size(); ++i) result.values.push_back(valueToPublic(values[i]));
        } catch (const std::runtime_error& error) {
            result = makeFailure(error.what());
            result.valuesCannotLeave = true;
            return result;
        }
        result.success = true;
        return result;
    }
    static LuaResult makeFailure(std::string message) {
        LuaResult result;
        result.error = std::move(message);
        return result;
    }
    LuaResult run(std::string_view source, std::string_view chunkName);
    LuaResult runFile(const std::string& path,
                      LuaResult (Impl::*runContent)(std::string_view, std::string_view));
    LuaResult runImage(std::string_view image, std::string_view);
    // False, and the reason, when the file cannot be read.
    bool readFile(const std::string& path, std::string& content, std::string& error);

    Interpreter machine;
};

LuaResult LuaVM::Impl::run(std::string_view source, std::string_view chunkName) {
    try {
        const Value main = machine.makeFunction(machine.compile(source, chunkName));
        return makeSuccess(machine.callValue(main, {}));
    } catch (const StopRun& stop) {
        if (!stop.isExit) return makeFailure(stop.error);
        LuaResult result = makeSuccess({});
        result.exitCode = stop.exitCode;
        return result;
    } catch (const std::bad_alloc&) {
        return makeFailure(std::string(chunkName) + ": not enough memory");
    } catch (const std::exception& error) {
        LuaResult result = makeFailure(error.what());
        result.trail = kelmora::guest::trailOfFailure();
        return result;
    }
}

LuaResult LuaVM::Impl::runImage(std::string_view image, std::string_view) {
    BytecodeContent content;
    try {
        content = readBytecode(bytesOf(image));
    } catch (const std::exception& error) {
        return makeFailure(std::string(imageName).append(": ").append(error.what()));
    }
    return run(content.source, content.chunkName);
}

bool LuaVM::Impl::readFile(const std::string& path, std::string& content, std::string& error) {
    std::FILE* file = machine.host().openFile(path, "rb");
    if (!file) {
        error = "failed to open file: " + path;
        return false;
    }
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> closer(file, std::fclose);
    const long size = std::fseek(file, 0, SEEK_END) == 0 ? std::ftell(file) : -1;
    if (size < 0 || std::fseek(file, 0, SEEK_SET) != 0) {
        error = "failed to size file: " + path;
        return false;
    }
    content.resize(static_cast<std::size_t>(size));
    if (std::fread(content.data(), 1, content.size(), file) == content.size()) return true;
    error = "failed to read file: " + path;
    return false;
}

LuaResult LuaVM::Impl::runFile(const std::string& path,
                               LuaResult (Impl::*runContent)(std::string_view, std::string_view)) {
    std::string content;
    std::string error;
    if (!readFile(path, content, error)) return makeFailure(std::move(error));
    return (this->*runContent)(content, path);
}

LuaVM::LuaVM(kelmora::HostServices& host, kelmora::NativeStack& stack)
    : impl_(std::make_unique<Impl>(host, stack)) {}
LuaVM::~LuaVM() = default;

LuaResult LuaVM::runScriptString(std::string_view source, std::string_view chunkName) {
    return impl_->run(source, chunkName);
}

LuaResult LuaVM::runScriptFile(const std::string& path) {
    return impl_->runFile(path, &Impl::run);
}

LuaResult LuaVM::runBytecode(const LuaBytecode& image) {
    return impl_->runImage({reinterpret_cast<const char*>(image.data()), image.size()}, {});
}

LuaResult LuaVM::runBytecodeFile(const std::string& path) {
    return impl_->runFile(path, &Impl::runImage);
}

LuaBytecode LuaVM::compileScript(std::string_view source, std::string_view chunkName) {
    static_cast<void>(impl_->machine.compile(source, chunkName));
    return buildBytecode({chunkName, source});
}

bool LuaVM::writeBytecodeFile(std::string_view source, std::string_view chunkName,
                              const std::string& outputPath, std::string* error) {
    const auto fail = [error](std::string message) {
        if (error) *error = std::move(message);
        return false;
    };
    LuaBytecode image;
    try {
        image = compileScript(source, chunkName);
    } catch (const std::exception& failure) {
        return fail(failure.what());
    }
    std::FILE* file = impl_->machine.host().openFile(outputPath, "ab");
    if (!file) return fail("failed to open file for writing: " + outputPath);
    std::fclose(file);
    if (!impl_->machine.host().replaceFile(outputPath, image))
        return fail("failed to write file: " + outputPath);
    return true;
}

std::optional<LuaValue> LuaVM::getGlobal(std::string_view name) const {
    const Value* found = impl_->machine.globals().find(name);
    if (!found) return std::nullopt;
    return valueToPublic(*found);
}

void LuaVM::setGlobal(std::string_view name, const LuaValue& value) {
    impl_->machine.globals().set(name, publicToValue(impl_->machine, value));
}

void LuaVM::bindNativeGlobal(std::string_view name, LuaNative native) {
    const auto adapt = [native = std::move(native)](NativeCall& call) {
        std::vector<LuaValue> arguments;
        for (const Value& argument : call.arguments()) arguments.push_back(valueToPublic(argument));
        call.give(publicToValue(call.machine(), native(arguments)));
    };
    impl_->machine.globals().set(name, impl_->machine.makeBound(std::string(name), adapt));
}

void LuaVM::setStepLimit(std::int64_t steps) {
    impl_->machine.setStepLimit(steps);
}

void LuaVM::setFramesAlwaysFresh(bool fresh) {
    impl_->machine.setAlwaysBoxed(fresh);
}

LuaResult runLuaBytecode(LuaVM& machine, const LuaBytecode& image) {
    return machine.runBytecode(image);
}

}  // namespace vesper::lua
