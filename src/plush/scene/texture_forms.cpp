#include "plush/scene/texture_forms.h"

#include <cstring>

namespace kelmora {
namespace {

bool isOpaque(const unsigned char* pixels, std::int64_t texels) {
    // Two at once; the bytes of alpha stand alike whatever the order of bytes.
    std::uint64_t mask;
    constexpr unsigned char alphas[] = {0, 0, 0, 255, 0, 0, 0, 255};
    std::memcpy(&mask, alphas, 8);
    std::int64_t i = 0;
    for (; i + 2 <= texels; i += 2) {
        std::uint64_t two;
        std::memcpy(&two, pixels + i * 4, 8);
        if ((two & mask) != mask) return false;
    }
    return i == texels || pixels[i * 4 + 3] == 255;
}

}  // namespace

TextureForm TextureForms::lookAt(const SceneTexture& texture) {
    const std::int64_t texels = std::int64_t{texture.width} * texture.height;
    if (isOpaque(texture.pixels, texels)) return TextureForm::Opaque;
    for (std::int64_t i = 0; i < texels; ++i) {
        const unsigned char alpha = texture.pixels[i * 4 + 3];
        if (alpha != 0 && alpha != 255) return TextureForm::Translucent;
    }
    return TextureForm::Cutout;
}

}  // namespace kelmora
