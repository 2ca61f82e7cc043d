#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "plush/shader/program.h"

namespace kelmora::plush_shader {

// The effects that come with the engine, by number: 1 grey, 2 inactive, 3 black silhouette, 4 inverted
// colour, 5 filled with tr, tg, tb, 6 opaque, 7 clear pixels filled, 8 premultiplication undone.
inline constexpr std::int32_t builtinProcessorCount = 8;

// Compiled on first use. Null outside 1 to `builtinProcessorCount`.
std::shared_ptr<const Program> builtinProcessor(std::int32_t id);

}  // namespace kelmora::plush_shader
