#pragma once

#include <cstddef>
#include <cstdint>

#include "plush/scene/render_scene.h"

// Loops over neighbouring pixels of flat faces in one row of a picture. Each set gives the same bits as any
// other.
namespace kelmora {

constexpr std::size_t faceRunLength = 64;
// What a kernel may write behind a run, and read behind the columns of a picture.
constexpr std::size_t faceRunMargin = 8;

// Some pixels of a row, next to each other.
struct FaceRun {
    template <typename Value>
    using Each = Value[faceRunLength + faceRunMargin];

    alignas(32) Each<std::uint32_t> texel;
    alignas(32) Each<float> fog;  // 0 to 1
    // The light, 1 for full.
    alignas(32) Each<float> red;
    alignas(32) Each<float> green;
    alignas(32) Each<float> blue;
};

constexpr float leastNearness = 1e-30f;

// A flat face in a run. Texture coordinates, 1 for a whole texture, are along / nearness and down / nearness.
struct FaceRow {
    struct Even {
        float first;
        float step;  // for each pixel to the right
    };
    Even nearness;  // 1 / distance ahead; held to the least there is
    Even along;
    Even down;
    const SceneTexture* texture;
    bool wraps;  // `down` may lie outside the texture
};

// How fog thickens in a row, with the squares of the parts of the directions of its rays.
struct FogRow {
    const float* squaredU;  // of the first pixel and those behind it
    const float* squaredAside;
    float squaredV;
    float squaredDown;
    float thickness;  // for each unit of distance
};

struct FaceKernels {
    // Texels and fog of `count` pixels from `first` on. May overwrite what stands behind them.
    void (*map)(const FaceRow& face, const FogRow& fog, std::size_t first, std::size_t count, FaceRun& run);
    // The pixels of a whole run with their own light.
    void (*shade)(const Vec3& fog, const FaceRun& run, unsigned char* pixels);
    // The same where the light is even.
    void (*shadeEvenly)(const Vec3& fog, const Vec3& light, const FaceRun& run, unsigned char* pixels);
};

extern const FaceKernels plainFaceKernels;
#if defined(__SSE2__)
extern const FaceKernels sse2FaceKernels;
extern const FaceKernels avx2FaceKernels;  // only where hasAvx2()
#endif

// The fastest set for this processor.
const FaceKernels& faceKernels();

}  // namespace kelmora
