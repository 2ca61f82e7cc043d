#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>

#include "plush/plush_image.h"
#include "plush/shader/machine.h"

namespace kelmora {

// A compiled shader as scripts hold it, by address.
struct PlushShader {
    std::shared_ptr<const plush_shader::Program> program;
    std::string source;
};

// Every compiled shader that scripts hold; one leaves only when it is killed.
extern std::unordered_set<PlushShader*>& livePlushShaders;

PlushShader* adoptPlushShader(std::shared_ptr<const plush_shader::Program> program);
// Frees a live shader; anything else is left alone.
void killPlushShader(PlushShader* shader);

// The built-in processor; raises "unknown processor N".
std::shared_ptr<const plush_shader::Program> plushBuiltinShader(std::int32_t id,
                                                                std::string_view bindingName);
// Compiles a text whose unknown names are uniforms, or remembers it. Raises what the compiler does.
std::shared_ptr<const plush_shader::Program> plushShaderFromSource(const std::string& source,
                                                                   std::string_view bindingName);

// The engine's grey weights, and its threads as of now.
plush_shader::Environment plushShaderEnvironment();

// Runs over the image in place, or from it into a target. Raises for a uniform that the program names and
// the caller does not give.
void runPlushShaderProgram(const PlushImage& image, PlushImage* target, const plush_shader::Program& program,
                           const plush_shader::Uniforms& uniforms, std::string_view bindingName);

// Runs a built-in processor in place; `t` are its uniforms. Prints "Invalid image" for one without pixels.
void runPlushBuiltinProcess(PlushImage* image, std::int32_t id, float tr, float tg, float tb, float ta);

}  // namespace kelmora
