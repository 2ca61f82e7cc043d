#include "plush/plush_shaders.h"

#include <algorithm>
#include <unordered_map>

#include "image/row_workers.h"
#include "plush/shader/compiler.h"
#include "plush/shader/run.h"

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

std::shared_ptr<const Program> plushShaderFromSource(const std::string& source) {
    const auto known = plushShaderSourceCache.find(source);
    if (known != plushShaderSourceCache.end()) return known->second;
    std::shared_ptr<const Program> program = plush_shader::compile(source, {{}, true});
    if (plushShaderSourceCache.size() >= cachedSources) plushShaderSourceCache.clear();
    plushShaderSourceCache.emplace(source, program);
    return program;
}

plush_shader::Environment plushShaderEnvironment() {
    return {greyWeights, std::max(threadCount, 1)};
}

const std::string* missingUniform(const Program& program, const plush_shader::Uniforms& uniforms) {
    const auto missing = std::find_if(program.uniforms.begin(), program.uniforms.end(),
                                      [&](const auto& uniform) { return !uniforms.contains(uniform.name); });
    return missing == program.uniforms.end() ? nullptr : &missing->name;
}

void runPlushShaderProgram(const PlushImage& image, PlushImage* target, const Program& program,
                           const plush_shader::Uniforms& uniforms) {
    const plush_shader::Environment environment = plushShaderEnvironment();
    if (target)
        render(program, image.pixels, image.width, image.height, target->pixels, target->width,
               target->height, uniforms, environment);
    else
        run(program, image.pixels, image.width, image.height, uniforms, environment);
}

}  // namespace kelmora
