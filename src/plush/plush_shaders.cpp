#include "plush/plush_shaders.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <unordered_map>

#include "plush/live_images.h"
#include "plush/shader/builtin_processors.h"
#include "plush/shader/compiler.h"
#include "plush/shader/run.h"
#include "script/binding.h"

namespace kelmora {

using plush_shader::Program;

std::unordered_set<PlushShader*>& livePlushShaders = *new std::unordered_set<PlushShader*>;

namespace {

constexpr std::size_t cachedSources = 256;
std::unordered_map<std::string, std::shared_ptr<const Program>> plushShaderSourceCache;

}  // namespace

PlushShader* adoptPlushShader(std::shared_ptr<const Program> program) {
    auto shader = std::make_unique<PlushShader>();
    shader->source = program->source;
    shader->program = std::move(program);
    livePlushShaders.insert(shader.get());
    return shader.release();
}

void killPlushShader(PlushShader* shader) {
    if (livePlushShaders.erase(shader) != 0) delete shader;
}

std::shared_ptr<const Program> plushBuiltinShader(std::int32_t id, std::string_view bindingName) {
    std::shared_ptr<const Program> program = plush_shader::builtinProcessor(id);
    if (!program) bindingError(bindingName, "unknown processor " + std::to_string(id));
    return program;
}

std::shared_ptr<const Program> plushShaderFromSource(const std::string& source,
                                                     std::string_view bindingName) {
    const auto known = plushShaderSourceCache.find(source);
    if (known != plushShaderSourceCache.end()) return known->second;
    std::shared_ptr<const Program> program;
    try {
        program = plush_shader::compile(source, {{}, true});
    } catch (const std::runtime_error& error) {
        bindingError(bindingName, error.what());
    }
    if (plushShaderSourceCache.size() >= cachedSources) plushShaderSourceCache.clear();
    plushShaderSourceCache.emplace(source, program);
    return program;
}

plush_shader::Environment plushShaderEnvironment() {
    return {greyWeights, std::max(threadCount, 1)};
}

void runPlushShaderProgram(const PlushImage& image, PlushImage* target, const Program& program,
                           const plush_shader::Uniforms& uniforms, std::string_view bindingName) {
    for (const plush_shader::UniformSlot& uniform : program.uniforms)
        if (!uniforms.contains(uniform.name))
            bindingError(bindingName, "shader uses uniform '" + uniform.name + "' which was not supplied");
    const plush_shader::Environment environment = plushShaderEnvironment();
    if (target)
        render(program, image.pixels, image.width, image.height, target->pixels, target->width,
               target->height, uniforms, environment);
    else
        run(program, image.pixels, image.width, image.height, uniforms, environment);
}

void runPlushBuiltinProcess(PlushImage* image, std::int32_t id, float tr, float tg, float tb, float ta) {
    if (!image || image->width < 1 || image->height < 1) {
        std::fputs("Invalid image\n", stdout);
        return;
    }
    constexpr std::string_view name = "runPlushBuiltinProcess";
    const plush_shader::Uniforms uniforms{{"tr", tr}, {"tg", tg}, {"tb", tb}, {"ta", ta}};
    runPlushShaderProgram(*image, nullptr, *plushBuiltinShader(id, name), uniforms, name);
}

}  // namespace kelmora
