#include "plush/scene/ray_kernels.h"

#include <gtest/gtest.h>

#include "base/cpu_features.h"
#include "plush/scene_fixture.h"

namespace kelmora {
namespace {

std::vector<const RayKernels*> vectorSets() {
#if defined(KELMORA_X86)
    if (hasAvx2()) return {&sse2RayKernels, &avx2RayKernels};
    return {&sse2RayKernels};
#else
    return {};
#endif
}

template <typename Value>
std::vector<Value> values(const Value* first, std::size_t count = rayRunLength) {
    return {first, first + count};
}

// All that the loops of a set do, in one run.
struct Outcome {
    Outcome(const RayKernels& kernels, unsigned seed) {
        RandomScene random(seed);
        std::mt19937 numbersFrom(seed);
        const auto decimal = [&] { return static_cast<double>(numbersFrom() % 100000) / 50000 - 1; };
        LivePicture output(64, 32, 0, 0, 0), texture(7, 5, 0, 0, 0);
        for (int i = 0; i < 7 * 5 * 4; ++i) texture->pixels[i] = static_cast<unsigned char>(numbersFrom());
        const RenderScene scene(random.scene, *output);
        std::vector<double> u;
        for (std::size_t i = 0; i < rayRunLength + rayRunMargin; ++i) u.push_back(decimal());
        u[3] = 0;
        run = {};
        kernels.aim(scene, u.data(), seed % 3 == 0 ? 0 : decimal(), 3, 19, run);
        for (std::size_t i = 0; i < rayRunLength; ++i) {
            run.distance[i] = i % 9 == 0 ? HUGE_VAL : (decimal() + 1) * 100;
            run.texel[i] = static_cast<std::uint32_t>(numbersFrom());
            run.red[i] = static_cast<float>(decimal()) * 3;
            run.green[i] = i == 5 ? NAN : static_cast<float>(decimal()) * 3;
            run.blue[i] = i == 6 ? HUGE_VALF : 1;
        }
        kernels.shade(scene, run, pixels.data());
        nearness.assign(rayRunLength + rayRunMargin, 0.5);
        numbers.assign(rayRunLength, 7);
        seen[0] = kernels.cover(0.5, 0.3, u.data(), 61, 8, nearness.data(), numbers.data());
        seen[1] = kernels.cover(-9, 0.3, u.data(), 61, 9, nearness.data(), numbers.data());
        const SceneTexture picture{texture->pixels, 7, 5};
        mapped = run;
        kernels.map(scene.camera, {{decimal(), decimal(), 3}, {-4, 9, decimal()}, &picture, decimal()},
                    u.data(), nearness.data(), 3, 59, mapped);
    }

    RayRun run;
    RayRun mapped;
    std::vector<unsigned char> pixels = std::vector<unsigned char>(rayRunLength * 4);
    std::vector<double> nearness;
    std::vector<std::uint32_t> numbers;
    bool seen[2];
};

TEST(RayKernels, AllSetsGiveTheSameBits) {
    for (unsigned seed = 0; seed < 60; ++seed) {
        SCOPED_TRACE(seed);
        const Outcome plain(plainRayKernels, seed);
        EXPECT_TRUE(plain.seen[0]);
        EXPECT_FALSE(plain.seen[1]);
        for (const RayKernels* kernels : vectorSets()) {
            const Outcome other(*kernels, seed);
            for (const auto part : {&RayRun::x, &RayRun::y, &RayRun::z, &RayRun::inverseX, &RayRun::inverseY,
                                    &RayRun::inverseZ, &RayRun::fogMultiplier, &RayRun::floor, &RayRun::roof})
                ASSERT_EQ(values(plain.run.*part), values(other.run.*part));
            ASSERT_EQ(plain.pixels, other.pixels);
            ASSERT_EQ(plain.nearness, other.nearness);
            ASSERT_EQ(plain.numbers, other.numbers);
            ASSERT_TRUE(other.seen[0] && !other.seen[1]);
            ASSERT_EQ(values(plain.mapped.texel + 3, 59), values(other.mapped.texel + 3, 59));
            ASSERT_EQ(values(plain.mapped.distance + 3, 59), values(other.mapped.distance + 3, 59));
            ASSERT_EQ(values(plain.mapped.fogMultiplier, 62), values(other.mapped.fogMultiplier, 62));
        }
    }
}

}  // namespace
}  // namespace kelmora
