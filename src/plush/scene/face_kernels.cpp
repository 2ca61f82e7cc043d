#include "plush/scene/face_kernels.h"

#include <cmath>
#include <cstring>

#include "base/cpu_features.h"
#include "plush/scene/ray_surface.h"

namespace kelmora {
namespace {

float valueAt(const FaceRow::Even& even, std::size_t i) {
    return even.first + even.step * static_cast<float>(i);
}

std::size_t texelNumber(float coordinate, std::int32_t count) {
    const float texel = coordinate * static_cast<float>(count);
    const auto last = static_cast<float>(count - 1);
    return static_cast<std::size_t>(texel > 0 ? texel < last ? texel : last : 0);
}

// What is out of all bounds becomes what it does in vector registers.
std::int32_t integer(float value) {
    constexpr float limit = 2147483648.0f;
    return value > -limit && value < limit ? static_cast<std::int32_t>(value) : INT32_MIN;
}

float wrapped(float coordinate) {
    const float part = coordinate - static_cast<float>(integer(coordinate));
    return part < 0 ? part + 1 : part;
}

void map(const FaceRow& face, const FogRow& fog, std::size_t first, std::size_t count, FaceRun& run) {
    const SceneTexture& texture = *face.texture;
    for (std::size_t i = 0; i < count; ++i) {
        const float nearness = valueAt(face.nearness, i);
        const float ahead = 1 / (nearness > leastNearness ? nearness : leastNearness);
        const float down = valueAt(face.down, i) * ahead;
        const std::size_t row = texelNumber(face.wraps ? wrapped(down) : down, texture.height);
        const std::size_t column = texelNumber(valueAt(face.along, i) * ahead, texture.width);
        const std::size_t texel = row * static_cast<std::size_t>(texture.width) + column;
        std::memcpy(&run.texel[first + i], texture.pixels + texel * 4, 4);
        const float length = std::sqrt(fog.squaredAside[i] + fog.squaredDown);
        const float corner = std::sqrt(fog.squaredU[i] + fog.squaredV) * fogFromMiddle + 1;
        const float amount = corner * length * (ahead * fog.thickness);
        run.fog[first + i] = amount < 1 ? amount : 1;
    }
}

void shadePixel(const Vec3& fog, const Vec3& light, const FaceRun& run, std::size_t i,
                unsigned char* pixels) {
    unsigned char texel[4];
    std::memcpy(texel, &run.texel[i], 4);
    const Vec3 colour = foggedColour(fog, run.fog[i], texel, light);
    const unsigned char pixel[] = {byteOf(colour.x), byteOf(colour.y), byteOf(colour.z), 255};
    std::memcpy(pixels + i * 4, pixel, 4);
}

void shade(const Vec3& fog, const FaceRun& run, unsigned char* pixels) {
    for (std::size_t i = 0; i < faceRunLength; ++i)
        shadePixel(fog, {run.red[i], run.green[i], run.blue[i]}, run, i, pixels);
}

void shadeEvenly(const Vec3& fog, const Vec3& light, const FaceRun& run, unsigned char* pixels) {
    for (std::size_t i = 0; i < faceRunLength; ++i) shadePixel(fog, light, run, i, pixels);
}

}  // namespace

const FaceKernels plainFaceKernels{map, shade, shadeEvenly};

const FaceKernels& faceKernels() {
#if defined(KELMORA_X86)
    return hasAvx2() ? avx2FaceKernels : sse2FaceKernels;
#else
    return plainFaceKernels;
#endif
}

}  // namespace kelmora
