
#include <algorithm>
#include <array>
#include <cmath>

#include "base/saturating.h"
#include "bindings/callable_shaders.h"
#include "bindings/image_arguments.h"
#include "bindings/modules.h"
#include "image/image_registry.h"
#include "plush/plush_shaders.h"
#include "plush/shader/builtin_processors.h"
#include "script/numbers.h"
#include "script/table_object.h"
#include "script/vesper_script.h"

namespace kelmora {

using plush_shader::Program;
using plush_shader::Uniforms;

namespace {

// No side of a scaled picture may be longer.
constexpr double longestSide = 1 << 24;

bool isNumber(const Variable& value) {
    return value.isInt() || value.isFloat();
}

std::int32_t processorId(const Variable& value) {
    return saturatingInt(toDouble(value));
}

bool isGiven(const BindingCall& call, std::size_t index) {
    return index < call.count() && !call.at(index).isNot();
}

PlushShader& liveShader(const BindingCall& call, const Variable& handle, std::string_view name) {
    auto* shader = static_cast<PlushShader*>(handle.pointerValue());
    if (!livePlushShaders.contains(shader)) call.fail(std::string(name) + " must be a live compiled shader");
    return *shader;
}

PlushShader& shaderArgument(const BindingCall& call) {
    call.pointer(0, "shader");
    const Variable& handle = call.at(0);
    if (handle.isNot()) call.fail("shader must be a live compiled shader");
    return liveShader(call, handle, "shader");
}

std::shared_ptr<const Program> compiledCallable(const BindingCall& call, const Variable& function) {
    std::string error;
    std::shared_ptr<const Program> program = plushCompileCallable(function.function(), error);
    if (!program) call.fail(error);
    return program;
}

std::shared_ptr<const Program> builtinShader(const BindingCall& call, std::int32_t id) {
    std::shared_ptr<const Program> program = plush_shader::builtinProcessor(id);
    if (!program) call.fail("unknown processor " + std::to_string(id));
    return program;
}

std::shared_ptr<const Program> shaderFromSource(const BindingCall& call, const std::string& source) {
    try {
        return plushShaderFromSource(source);
    } catch (const std::runtime_error& error) {
        call.fail(error.what());
    }
}

// What a process other than a function runs; `handleName` is how errors call a compiled shader.
std::shared_ptr<const Program> processProgram(const BindingCall& call, const Variable& process,
                                              std::string_view handleName) {
    if (isNumber(process)) return builtinShader(call, processorId(process));
    if (process.isString()) return shaderFromSource(call, process.text());
    if (process.isPointer()) return liveShader(call, process, handleName).program;
    call.fail("process must be a processor id, shader source, compiled shader or function");
}

void runPlushProcess(const BindingCall& call, PlushImage& image, PlushImage* target,
                     const Uniforms& uniforms) {
    const Variable& process = call.at(1);
    if (process.isFunction()) return runPlushCallableShader(call, image, target, process, uniforms);
    const std::shared_ptr<const Program> program = processProgram(call, process, "process");
    runShader(call, image, target, *program, uniforms);
}

std::int32_t scaledSide(std::int32_t side, double scale) {
    return static_cast<std::int32_t>(std::clamp(std::round(side * scale), 1.0, longestSide + 1));
}

// An empty image of the scaled size, which dies with an error.
class ScaledTarget {
public:
    ScaledTarget(const BindingCall& call, const PlushImage& image, double scale) {
        const std::int32_t width = scaledSide(image.width, scale);
        const std::int32_t height = scaledSide(image.height, scale);
        if (width > longestSide || height > longestSide || std::int64_t{width} * height > maximumPixels)
            call.fail("the scaled image is too large");
        image_ = createSolidColourImage(width, height, 0, 0, 0, 0);
    }
    ScaledTarget(const ScaledTarget&) = delete;
    ScaledTarget& operator=(const ScaledTarget&) = delete;
    ~ScaledTarget() { killPlushImage(image_); }

    PlushImage* get() const { return image_; }
    PlushImage* release() { return std::exchange(image_, nullptr); }

private:
    PlushImage* image_;
};

double scaleArgument(const BindingCall& call) {
    const double scale = isGiven(call, 3) ? call.number(3, "scale") : 1;
    if (!(scale > 0 && scale <= 16)) call.fail("scale must be between 0 and 16");
    return scale;
}

Uniforms plushUniformsFromVariable(const Variable& value, std::string_view bindingName) {
    Uniforms uniforms;
    if (value.isNot()) return uniforms;
    if (!value.isTable()) bindingError(bindingName, "uniforms must be a table");
    const TableObject& table = value.table();
    const auto sorted = table.sortedKeys();
    for (std::size_t i = 0; i < sorted->keys.size(); ++i) {
        const std::string& name = sorted->keys[i]->text();
        const Variable& number = *table.findListed(*sorted, i);
        if (!number.isNumeric()) bindingError(bindingName, "uniform '" + name + "' must be numeric");
        uniforms.emplace(name, static_cast<float>(toDouble(number)));
    }
    return uniforms;
}

Variable modifyImageBinding(const BindingCall& call) {
    call.require(2);
    PlushImage& image = imageArgument(call, 0, "image");
    constexpr std::array<std::string_view, 4> channels{"r", "g", "b", "a"};
    Uniforms uniforms;
    for (std::size_t i = 0; i < channels.size(); ++i) {
        const double colour = isGiven(call, i + 2) ? call.number(i + 2, channels[i]) : 0;
        uniforms.emplace("t" + std::string(channels[i]), static_cast<float>(colour) / 255.0f);
    }
    runPlushProcess(call, image, nullptr, uniforms);
    return {};
}

Variable shaderImageBinding(const BindingCall& call) {
    call.require(2);
    PlushImage& image = imageArgument(call, 0, "image");
    const Uniforms uniforms =
        plushUniformsFromVariable(call.count() > 2 ? call.at(2) : Variable(), call.function());
    if (call.count() > 4 && call.condition(4)) {
        runPlushProcess(call, image, nullptr, uniforms);
        return {};
    }
    ScaledTarget target(call, image, scaleArgument(call));
    runPlushProcess(call, image, target.get(), uniforms);
    if (call.engine().shouldAbortForSoftRaisedError()) return {};
    return Variable::pointer(target.release());
}

Variable compileShaderBinding(const BindingCall& call) {
    const Variable& source = call.at(0);
    if (source.isFunction()) return Variable::pointer(adoptPlushShader(compiledCallable(call, source)));
    if (!isNumber(source) && !source.isString())
        call.fail("shader must be shader source, a processor id or a function");
    return Variable::pointer(adoptPlushShader(processProgram(call, source, "shader")));
}

Variable killShaderBinding(const BindingCall& call) {
    killPlushShader(&shaderArgument(call));
    return {};
}

Variable shaderSourceBinding(const BindingCall& call) {
    return Variable::text(shaderArgument(call).source);
}

Variable shaderUniformsBinding(const BindingCall& call) {
    const Variable& process = call.at(0);
    const auto program =
        process.isFunction() ? compiledCallable(call, process) : processProgram(call, process, "shader");
    std::vector<Variable> names;
    for (std::string& name : uniformNames(*program)) names.push_back(Variable::text(std::move(name)));
    return Variable::array(std::move(names));
}

constexpr BindingRow rows[] = {
    {"modifyImage", modifyImageBinding},     {"shader", shaderImageBinding},
    {"compileShader", compileShaderBinding}, {"killShader", killShaderBinding},
    {"shaderSource", shaderSourceBinding},   {"shaderUniforms", shaderUniformsBinding},
};

}  // namespace

std::span<const BindingRow> shaderBindings() {
    return rows;
}

}  // namespace kelmora
