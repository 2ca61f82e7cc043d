#pragma once

#include "plush/shader/machine.h"
#include "script/binding.h"

namespace kelmora {

class VesperScript;

// None for nil, else the numbers of a table by their keys.
plush_shader::Uniforms plushUniformsFromVariable(const Variable& value, std::string_view bindingName);

// Members of the `Plush` module that run and hold shaders. Those with an engine may call script functions.
Variable modifyImageBinding(VesperScript& engine, const BindingCall& call);
Variable shaderImageBinding(VesperScript& engine, const BindingCall& call);
Variable compileShaderBinding(const BindingCall& call);
Variable killShaderBinding(const BindingCall& call);
Variable shaderSourceBinding(const BindingCall& call);
Variable shaderUniformsBinding(const BindingCall& call);

}  // namespace kelmora
