#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "image/plush_image.h"
#include "plush/shader/machine.h"
#include "script/binding.h"

namespace kelmora {

// The lines of a script function's body, each followed by a line feed. None for a function of the host or a
// whole loaded script.
std::optional<std::string> plushCallableSource(const ScriptCallable& callable);

// The function's body as a shader. Its parameters stand for r, g, b, a, x, y and the table of uniforms. Null
// with the reason in `error` when the body is no shader; that is remembered too.
std::shared_ptr<const plush_shader::Program> plushCompileCallable(ScriptCallable& callable,
                                                                  std::string& error);

// Runs a script function as a process, in place or into a target. One that is no shader is called for each
// pixel with (r, g, b, a, x, y) and, when there are uniforms, their table; what it returns are up to four
// channels, and one that is `not` or missing stays as it was. The picture changes only when all calls are
// done.
void runPlushCallableShader(const BindingCall& call, PlushImage& image, PlushImage* target,
                            const Variable& callable, const plush_shader::Uniforms& uniforms);
// Runs a program for a binding, which fails for a uniform that is not supplied.
void runShader(const BindingCall& call, const PlushImage& image, PlushImage* target,
               const plush_shader::Program& program, const plush_shader::Uniforms& uniforms);

}  // namespace kelmora
