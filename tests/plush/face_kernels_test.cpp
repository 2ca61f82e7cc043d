#include "plush/scene/face_kernels.h"

#include <gtest/gtest.h>

#include <cmath>

#include "base/cpu_features.h"
#include "plush/scene_fixture.h"

namespace kelmora {
namespace {

std::vector<const FaceKernels*> vectorSets() {
#if defined(KELMORA_X86)
    if (hasAvx2()) return {&sse2FaceKernels, &avx2FaceKernels};
    return {&sse2FaceKernels};
#else
    return {};
#endif
}

// All that the loops of a set do, in one run.
struct Outcome {
    Outcome(const FaceKernels& kernels, unsigned seed) {
        std::mt19937 numbersFrom(seed);
        const auto decimal = [&] { return static_cast<float>(numbersFrom() % 100000) / 50000 - 1; };
        const int width = 1 + static_cast<int>(seed % 9);
        LivePicture texture(width, 5, 0, 0, 0);
        for (int i = 0; i < width * 5 * 4; ++i)
            texture->pixels[i] = static_cast<unsigned char>(numbersFrom());
        std::vector<float> squares;
        for (std::size_t i = 0; i < faceRunLength + faceRunMargin; ++i) {
            squares.push_back((decimal() + 1) * 100);
            run.red[i] = decimal() * 3;
            run.green[i] = i == 5 ? NAN : decimal() * 3;
            run.blue[i] = i == 6 ? HUGE_VALF : 1;
        }
        const float odd[] = {decimal(), 0, HUGE_VALF, NAN, -1e30f, 1e-40f};
        const SceneTexture picture{texture->pixels, width, 5};
        const FogRow fog{squares.data(), squares.data() + 3, (decimal() + 1) * 9, decimal() + 2,
                         seed % 7 == 0 ? std::fabs(odd[seed % 6]) : (decimal() + 1) / 90};
        // One behind the other, of lengths that are no whole groups, up to the last pixel.
        std::size_t first = 0;
        for (std::size_t length : {std::size_t{1}, std::size_t{3}, std::size_t{21}, std::size_t{8}}) {
            mapped(kernels,
                   {{decimal(), decimal() / 30},
                    {decimal(), decimal()},
                    {decimal(), decimal() * 9},
                    &picture,
                    length != 3},
                   fog, first, length);
            first += length;
        }
        mapped(kernels, {{odd[seed % 6], 0}, {1, odd[seed / 6 % 6]}, {3, -4}, &picture, seed % 2 == 0}, fog,
               first, faceRunLength - first);
        const Vec3 colour{0, 13, 255};
        pixels.resize(faceRunLength * 4);
        even.resize(faceRunLength * 4);
        kernels.shade(colour, run, pixels.data());
        kernels.shadeEvenly(colour, {decimal() * 2, 1, 0.3f}, run, even.data());
    }

    void mapped(const FaceKernels& kernels, const FaceRow& face, const FogRow& fog, std::size_t first,
                std::size_t count) {
        kernels.map(face, fog, first, count, run);
    }
    std::vector<std::uint32_t> texels() const { return {run.texel, run.texel + faceRunLength}; }
    std::vector<float> fogs() const { return {run.fog, run.fog + faceRunLength}; }

    FaceRun run{};
    std::vector<unsigned char> pixels;
    std::vector<unsigned char> even;
};

TEST(FaceKernels, AllSetsGiveTheSameBits) {
    for (unsigned seed = 0; seed < 120; ++seed) {
        SCOPED_TRACE(seed);
        const Outcome plain(plainFaceKernels, seed);
        for (const FaceKernels* kernels : vectorSets()) {
            const Outcome other(*kernels, seed);
            ASSERT_EQ(plain.texels(), other.texels());
            ASSERT_EQ(plain.fogs(), other.fogs());
            ASSERT_EQ(plain.pixels, other.pixels);
            ASSERT_EQ(plain.even, other.even);
        }
    }
}

}  // namespace
}  // namespace kelmora
