#include "bindings/callable_shaders.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <unordered_map>
#include <vector>

#include "bindings/image_arguments.h"
#include "plush/plush_shaders.h"
#include "plush/shader/arithmetic.h"
#include "plush/shader/compiler.h"
#include "plush/shader/pixel_map.h"
#include "script/binding.h"
#include "script/numbers.h"
#include "script/table_object.h"
#include "script/vesper_script.h"

namespace kelmora {

using plush_shader::PixelMap;
using plush_shader::Program;
using plush_shader::Uniforms;

namespace {

constexpr std::size_t cachedCallables = 256;

// An attempt to compile; without a program it failed.
struct CallableShader {
    std::weak_ptr<const bool> callableLife;
    std::shared_ptr<const Program> program;
};

std::unordered_map<const ScriptCallable*, CallableShader> plushCallableShaderCache;

template <typename Lines>
std::string joinedText(const Lines& lines, std::size_t first, std::size_t last) {
    std::string text;
    for (std::size_t i = first; i < std::min(last, lines.size()); ++i) text += lines[i].text + '\n';
    return text;
}

std::vector<std::string> parameterNames(const ScriptCallable& callable) {
    std::vector<std::string> names;
    for (const NameId parameter : callable.parameters) names.push_back(nameText(parameter));
    return names;
}

Variable uniformsTable(const Uniforms& uniforms) {
    Variable table = Variable::makeTable();
    for (const auto& [name, value] : uniforms) table.table().set(name, Variable::number(value));
    return table;
}

// Calls a script function for the pixels of a picture.
class PixelCalls {
public:
    PixelCalls(const BindingCall& call, const Variable& callable, const Uniforms& uniforms)
        : call_(call), callable_(callable) {
        if (!uniforms.empty()) uniforms_ = uniformsTable(uniforms);
    }

    // The target's pixels; none when a call failed softly.
    std::optional<std::vector<unsigned char>> run(const PixelMap& map, std::int32_t width,
                                                  std::int32_t height) {
        std::vector<unsigned char> pixels;
        pixels.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
        for (std::int32_t y = 0; y < height; ++y) {
            const unsigned char* input = map.row(y);
            for (std::int32_t x = 0; x < width; ++x) {
                const unsigned char* pixel = input + static_cast<std::size_t>(map.column(x)) * 4;
                pixels.insert(pixels.end(), pixel, pixel + 4);
                callFor(pixels.data() + pixels.size() - 4, map.x(x), map.y(y));
                if (call_.engine().shouldAbortForSoftRaisedError()) return std::nullopt;
            }
        }
        return pixels;
    }

private:
    void callFor(unsigned char* pixel, float x, float y) {
        std::vector<Variable> arguments;
        for (std::size_t channel = 0; channel < 4; ++channel)
            arguments.push_back(Variable::number(plush_shader::arithmetic::channelValue(pixel[channel])));
        arguments.push_back(Variable::number(x));
        arguments.push_back(Variable::number(y));
        if (!uniforms_.isNot()) arguments.push_back(uniforms_);
        const Variable result = call_.engine().callCallable(callable_, arguments);
        if (!result.isMulti()) return store(pixel[0], result);
        const std::vector<Variable>& values = result.values();
        for (std::size_t i = 0; i < std::min<std::size_t>(values.size(), 4); ++i) store(pixel[i], values[i]);
    }

    void store(unsigned char& channel, const Variable& value) {
        if (value.isNot()) return;
        if (!value.isNumeric()) call_.fail("a shader function must return numbers");
        channel = plush_shader::arithmetic::channelByte(static_cast<float>(toDouble(value)));
    }

    const BindingCall& call_;
    const Variable& callable_;
    Variable uniforms_;
};

void callForEachPixel(const BindingCall& call, PixelCalls& calls, PlushImage& image, PlushImage& target) {
    // The function may kill or change the image.
    const std::int32_t width = image.width, height = image.height;
    const std::vector<unsigned char> before(
        image.pixels, image.pixels + static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
    const PixelMap map({before.data(), width, height}, target.width, target.height);
    const auto after = calls.run(map, target.width, target.height);
    if (!after) return;
    liveImage(call, &image, "image");
    std::copy(after->begin(), after->end(), target.pixels);
}

}  // namespace

std::optional<std::string> plushCallableSource(const ScriptCallable& callable) {
    if (callable.isNative || callable.isLoadedChunk) return std::nullopt;
    if (!callable.program) return joinedText(callable.body, 0, callable.body.size());
    for (const FunctionDeclaration& declaration : callable.program->functionDeclarations)
        if (declaration.bodyChunk == callable.chunkIndex)
            return joinedText(callable.program->lines, declaration.firstBodyLine, declaration.endLine);
    return std::nullopt;
}

std::shared_ptr<const Program> plushCompileCallable(ScriptCallable& callable, std::string& error) {
    const auto known = plushCallableShaderCache.find(&callable);
    if (known != plushCallableShaderCache.end()) {
        if (!known->second.callableLife.expired()) {
            if (!known->second.program) error = "the function body could not be compiled as a shader";
            return known->second.program;
        }
        plushCallableShaderCache.erase(known);
    }
    const std::optional<std::string> source = plushCallableSource(callable);
    if (!source) {
        error = "the function body is not available";
        return nullptr;
    }
    std::shared_ptr<const Program> program;
    try {
        program = plush_shader::compile(*source, {parameterNames(callable), false});
    } catch (const std::runtime_error& failure) {
        error = failure.what();
    }
    if (plushCallableShaderCache.size() >= cachedCallables) plushCallableShaderCache.clear();
    plushCallableShaderCache[&callable] = {callable.lifetime(), program};
    return program;
}

void runShader(const BindingCall& call, const PlushImage& image, PlushImage* target, const Program& program,
               const Uniforms& uniforms) {
    if (const std::string* missing = missingUniform(program, uniforms))
        call.fail("shader uses uniform '" + *missing + "' which was not supplied");
    runPlushShaderProgram(image, target, program, uniforms);
}

void runPlushCallableShader(const BindingCall& call, PlushImage& image, PlushImage* target,
                            const Variable& callable, const Uniforms& uniforms) {
    std::string error;
    if (const auto program = plushCompileCallable(callable.function(), error))
        return runShader(call, image, target, *program, uniforms);
    PlushImage& written = target ? *target : image;
    if (image.width < 1 || image.height < 1 || written.width < 1 || written.height < 1) return;
    PixelCalls calls(call, callable, uniforms);
    callForEachPixel(call, calls, image, written);
}

}  // namespace kelmora
