#pragma once

#include <span>

#include "script/binding.h"

// The members of every module, a table for each file of bindings. What a member needs beyond its arguments it
// takes from the runtime of its call.
namespace kelmora {

std::span<const BindingRow> metalBindings();
std::span<const BindingRow> sailfishBindings();
std::span<const BindingRow> vesperBindings();
std::span<const BindingRow> rubyBindings();
std::span<const BindingRow> luaBindings();
std::span<const BindingRow> audioBindings();
std::span<const BindingRow> aiBindings();
std::span<const BindingRow> fontBindings();
std::span<const BindingRow> jadeBindings();
// Together the module Plush.
std::span<const BindingRow> imageBindings();
std::span<const BindingRow> compositingBindings();
std::span<const BindingRow> shaderBindings();
std::span<const BindingRow> sceneBindings();
std::span<const BindingRow> imageProcessingBindings();
std::span<const BindingRow> drawingBindings();

}  // namespace kelmora
