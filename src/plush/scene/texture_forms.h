#pragma once

#include <vector>

#include "plush/scene/render_scene.h"

namespace kelmora {

enum class TextureForm : unsigned char { Opaque, Cutout, Translucent };

// Whether all, some or no texels of a scene's textures hide what lies behind them. Looks when first asked.
class TextureForms {
public:
    TextureForms(const RenderScene& scene, std::size_t textures) : scene_(scene), known_(textures) {}

    // Of an index that is a surface.
    TextureForm of(std::int32_t texture) {
        Known& known = known_[static_cast<std::size_t>(texture)];
        if (!known.isKnown) known = {true, lookAt(*scene_.texture(texture))};
        return known.form;
    }

private:
    struct Known {
        bool isKnown = false;
        TextureForm form = TextureForm::Opaque;
    };
    static TextureForm lookAt(const SceneTexture& texture);

    const RenderScene& scene_;
    std::vector<Known> known_;
};

}  // namespace kelmora
