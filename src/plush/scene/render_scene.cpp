#include "plush/scene/render_scene.h"

#include <algorithm>
#include <cmath>

#include "base/saturating.h"
#include "base/trigonometry.h"
#include "image/image_registry.h"

namespace kelmora {
namespace {

float byteOf(std::int32_t channel) {
    return static_cast<float>(std::clamp(channel, 0, 255));
}

}  // namespace

Camera cameraOf(const Scene& scene, std::int32_t width, std::int32_t height) {
    const Player& player = scene.player;
    const double c = cosineOf(static_cast<double>(player.rotation));
    const double s = sineOf(static_cast<double>(player.rotation));
    const double ct = cosineOf(static_cast<double>(player.tilt));
    const double st = sineOf(static_cast<double>(player.tilt));
    const double tileSize = static_cast<double>(scene.tileSize());
    Camera camera;
    camera.forward = {c * ct, s * ct, -st};
    camera.right = {-s, c, 0};
    camera.up = {-c * st, -s * st, -ct};
    camera.halfWidth = scene.settings.fieldOfView;
    camera.halfHeight = scene.settings.fieldOfView * height / width;
    camera.tileX = tileOf(static_cast<double>(player.x), tileSize);
    camera.tileY = tileOf(static_cast<double>(player.y), tileSize);
    const std::size_t cell = scene.map().find(camera.tileX, camera.tileY);
    const double raised =
        cell == TileMap::outside ? 0 : static_cast<double>(scene.map().cell(cell).roofOffset);
    camera.eye = {static_cast<double>(player.x), static_cast<double>(player.y),
                  tileSize + raised - static_cast<double>(player.height)};
    return camera;
}

std::size_t wrappedTexel(double texel, std::int32_t count) {
    const std::int64_t rest = saturatingInt64(std::floor(texel)) % count;
    return static_cast<std::size_t>(rest < 0 ? rest + count : rest);
}

double fogMultiplierAt(double u, double v) {
    return std::sqrt(u * u + v * v) * fogTowardsCorner * fogOfCorner + 1;
}

RenderScene::RenderScene(const Scene& scene, const PlushImage& output)
    : map(scene.map()),
      quadGrid(scene.quadGrid()),
      flags(scene.tileFlags()),
      quads(scene.quads()),
      lights(scene.lights),
      tileSize(static_cast<double>(scene.tileSize())),
      inverseTileSize(1 / tileSize),
      renderDistance(static_cast<double>(scene.settings.renderDistance)),
      camera(cameraOf(scene, output.width, output.height)),
      accuracy(std::max(scene.settings.accuracy, 1)),
      rayDepth(std::clamp(scene.settings.rayDepth, 0, deepestReflection)),
      reflection(static_cast<double>(scene.settings.reflection)),
      lightMinimum(scene.settings.lightMinimum),
      lightMaximum(scene.settings.lightMaximum),
      fog{byteOf(scene.settings.fogRed), byteOf(scene.settings.fogGreen), byteOf(scene.settings.fogBlue)} {
    fogOnly_ = !(tileSize > 0) || !std::isfinite(tileSize) || !std::isfinite(inverseTileSize) ||
               !(renderDistance > 0) || !camera.eye.isFinite() || !camera.forward.isFinite() ||
               !camera.up.isFinite() || map.find(camera.tileX, camera.tileY) == TileMap::outside;
    for (PlushImage* image : scene.textures()) {
        SceneTexture texture;
        const bool lives = image && livePlushImages.contains(image) && image->pixels;
        if (lives && image->width > 0 && image->height > 0) {
            texture = {image->pixels, image->width, image->height};
            if (image->reflectPixels && image->reflectWidth > 0 && image->reflectHeight > 0) {
                texture.reflectPixels = image->reflectPixels;
                texture.reflectWidth = image->reflectWidth;
                texture.reflectHeight = image->reflectHeight;
            }
            // A picture drawn into itself shows what it was.
            if (image == &output) {
                if (outputCopy_.empty())
                    outputCopy_.assign(image->pixels,
                                       image->pixels + std::size_t{4} *
                                                           static_cast<std::size_t>(image->width) *
                                                           static_cast<std::size_t>(image->height));
                texture.pixels = outputCopy_.data();
            }
        }
        textures_.push_back(texture);
    }
}

}  // namespace kelmora
