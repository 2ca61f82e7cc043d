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
        LivePicture output(64, 32, 0, 0, 0);
        const RenderScene scene(random.scene, *output);
        std::vector<double> u;
        for (std::size_t i = 0; i < rayRunLength; ++i) u.push_back(decimal());
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
    }

    RayRun run;
    std::vector<unsigned char> pixels = std::vector<unsigned char>(rayRunLength * 4);
};

TEST(RayKernels, AllSetsGiveTheSameBits) {
    for (unsigned seed = 0; seed < 60; ++seed) {
        SCOPED_TRACE(seed);
        const Outcome plain(plainRayKernels, seed);
        for (const RayKernels* kernels : vectorSets()) {
            const Outcome other(*kernels, seed);
            for (const auto part : {&RayRun::x, &RayRun::y, &RayRun::z, &RayRun::inverseX, &RayRun::inverseY,
                                    &RayRun::inverseZ, &RayRun::fogMultiplier, &RayRun::floor, &RayRun::roof})
                ASSERT_EQ(values(plain.run.*part), values(other.run.*part));
            ASSERT_EQ(plain.pixels, other.pixels);
        }
    }
}

}  // namespace
}  // namespace kelmora
