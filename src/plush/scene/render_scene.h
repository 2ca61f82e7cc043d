#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "image/plush_image.h"
#include "plush/scene/scene.h"

namespace kelmora {

// Deeper reflections are not followed.
constexpr int deepestReflection = 6;

// A texture of the scene; no pixels where there is none.
struct SceneTexture {
    const unsigned char* pixels = nullptr;
    std::int32_t width = 0;
    std::int32_t height = 0;
    const unsigned char* reflectPixels = nullptr;
    std::int32_t reflectWidth = 0;
    std::int32_t reflectHeight = 0;
};

// The number of a texel outside the texture, wrapped into it.
std::size_t wrappedTexel(double texel, std::int32_t count);

// The texel at u, v, each 1 for a whole texture; what lies outside wraps.
inline const unsigned char* texelAt(const unsigned char* pixels, std::int32_t width, std::int32_t height,
                                    double u, double v) {
    const auto number = [](double texel, std::int32_t count) {
        return texel >= 0 && texel < count ? static_cast<std::size_t>(static_cast<std::int32_t>(texel))
                                           : wrappedTexel(texel, count);
    };
    return pixels +
           (number(v * height, height) * static_cast<std::size_t>(width) + number(u * width, width)) * 4;
}

// Where a picture is seen from. A ray through u and v, -1 to 1 from the left and the top, goes along
// forward + right * (u * halfWidth) + up * (v * halfHeight).
struct Camera {
    Vector eye;
    Vector forward;
    Vector right;
    Vector up;
    double halfWidth = 0;
    double halfHeight = 0;
    std::int32_t tileX = -1;
    std::int32_t tileY = -1;

    // Not yet normalised.
    Vector directionAt(double u, double v) const {
        return forward + right * (u * halfWidth) + up * (v * halfHeight);
    }
};

// The player's view in a picture of this size.
Camera cameraOf(const Scene& scene, std::int32_t width, std::int32_t height);

// Fog thickens towards the corners of the picture: the factor at u and v, 1 in the middle.
constexpr double fogTowardsCorner = 0.70710677;
constexpr double fogOfCorner = 1.5;
constexpr float fogFromMiddle = static_cast<float>(fogTowardsCorner * fogOfCorner);
double fogMultiplierAt(double u, double v);

// A scene as one picture is drawn from it: constant, in doubles, dead images left out. Borrows the scene and
// its images.
class RenderScene {
public:
    RenderScene(const Scene& scene, const PlushImage& output);

    // There is nothing to see but fog.
    bool isFogOnly() const { return fogOnly_; }
    // Null for an index that is no surface.
    const SceneTexture* texture(std::int32_t index) const {
        if (index <= 0 || static_cast<std::size_t>(index) >= textures_.size()) return nullptr;
        const SceneTexture& texture = textures_[static_cast<std::size_t>(index)];
        return texture.pixels ? &texture : nullptr;
    }
    double roofHeight(const TileCell& cell) const { return tileSize + static_cast<double>(cell.roofOffset); }
    double floorHeight(const TileCell& cell) const { return static_cast<double>(cell.floorOffset); }

    const TileMap& map;
    const QuadGrid& quadGrid;
    const TileFlags& flags;
    std::span<const Quad> quads;
    std::span<const LightSource> lights;
    double tileSize;
    double inverseTileSize;
    double renderDistance;
    Camera camera;
    std::int32_t accuracy;  // at least 1
    int rayDepth;           // 0 to the deepest
    double reflection;
    float lightMinimum;
    float lightMaximum;
    Vec3 fog;  // whole numbers, 0 to 255

private:
    std::vector<SceneTexture> textures_;
    std::vector<unsigned char> outputCopy_;  // where the output is a texture too
    bool fogOnly_;
};

}  // namespace kelmora
