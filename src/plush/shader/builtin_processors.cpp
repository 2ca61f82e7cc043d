#include "plush/shader/builtin_processors.h"

#include <array>

#include "plush/shader/compiler.h"

namespace kelmora::plush_shader {
namespace {

constexpr std::array<const char*, builtinProcessorCount> sources{
    "@@ VESPER_GREYSCALE: weighted grey, transparent pixels untouched\n"
    "if a > 0\n"
    "\tlocal grey = (r * VESPER_GREY_R + g * VESPER_GREY_G + b * VESPER_GREY_B) / 3\n"
    "\tr = grey\n"
    "\tg = grey\n"
    "\tb = grey\n"
    "end\n",
    "@@ VESPER_INACTIVE: half way between the colour and its weighted grey\n"
    "if a > 0\n"
    "\tlocal average = (r * VESPER_GREY_R + g * VESPER_GREY_G + b * VESPER_GREY_B) / 3\n"
    "\tr = (r + average) / 2\n"
    "\tg = (g + average) / 2\n"
    "\tb = (b + average) / 2\n"
    "end\n",
    "@@ VESPER_AETHER_INVERT: black silhouette with inverted alpha\n"
    "a = 1 - a\n"
    "r = 0\n"
    "g = 0\n"
    "b = 0\n",
    "@@ VESPER_COLOUR_INVERT: invert the colour, keep alpha\n"
    "r = 1 - r\n"
    "g = 1 - g\n"
    "b = 1 - b\n",
    "@@ VESPER_COLOUR_FILL: fill the colour with tr tg tb, keep alpha\n"
    "r = tr\n"
    "g = tg\n"
    "b = tb\n",
    "@@ VESPER_AETHER_CLEANUP: make everything opaque\n"
    "a = 1\n",
    "@@ VESPER_AETHER_FILL: fill fully transparent pixels with tr tg tb, then make everything opaque\n"
    "if a == 0\n"
    "\tr = tr\n"
    "\tg = tg\n"
    "\tb = tb\n"
    "end\n"
    "a = 1\n",
    "@@ VESPER_AETHER_SET: undo premultiplied alpha\n"
    "if a > 0 and a < 1\n"
    "\tr = r / a\n"
    "\tg = g / a\n"
    "\tb = b / a\n"
    "end\n",
};

}  // namespace

std::shared_ptr<const Program> builtinProcessor(std::int32_t id) {
    static std::array<std::shared_ptr<const Program>, builtinProcessorCount> plushBuiltinShaders;
    if (id < 1 || id > builtinProcessorCount) return nullptr;
    const auto index = static_cast<std::size_t>(id - 1);
    if (!plushBuiltinShaders[index]) plushBuiltinShaders[index] = compile(sources[index], {{}, true});
    return plushBuiltinShaders[index];
}

}  // namespace kelmora::plush_shader
