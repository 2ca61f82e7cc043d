#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>

#include "base/pooled.h"
#include "image/plush_image.h"
#include "plush/shader/machine.h"

namespace kelmora {

// A compiled shader as scripts hold it, by address.
struct PlushShader : Pooled<PlushShader> {
    std::shared_ptr<const plush_shader::Program> program;
    std::string source;
};

// Every compiled shader that scripts hold; one leaves only when it is killed.
extern std::unordered_set<PlushShader*>& livePlushShaders;

PlushShader* adoptPlushShader(std::shared_ptr<const plush_shader::Program> program);
// Frees a live shader; anything else is left alone.
void killPlushShader(PlushShader* shader);

// Compiles a text whose unknown names are uniforms, or remembers it. Raises what the compiler does.
std::shared_ptr<const plush_shader::Program> plushShaderFromSource(const std::string& source);

// The engine's grey weights, and its threads as of now.
plush_shader::Environment plushShaderEnvironment();

// The first uniform that the program names and the caller does not give; null when all are there.
const std::string* missingUniform(const plush_shader::Program& program,
                                  const plush_shader::Uniforms& uniforms);
// Runs over the image in place, or from it into a target. No uniform may be missing.
void runPlushShaderProgram(const PlushImage& image, PlushImage* target, const plush_shader::Program& program,
                           const plush_shader::Uniforms& uniforms);

}  // namespace kelmora
