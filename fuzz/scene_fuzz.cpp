#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "plush/scene/projection.h"
#include "plush/scene_fixture.h"

// A scene from a seed, with any bits at all for its numbers, gives a picture both ways, and the one of the
// plain tracer with workers.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kelmora;
    std::uint32_t words[10] = {};
    std::memcpy(words, data, std::min(size, sizeof(words)));
    RandomScene random(words[0]);
    Scene& scene = random.scene;
    float* const numbers[] = {&scene.player.x,
                              &scene.player.y,
                              &scene.player.height,
                              &scene.player.rotation,
                              &scene.player.tilt,
                              &scene.settings.renderDistance,
                              &scene.settings.reflection,
                              &scene.settings.lightMaximum};
    for (unsigned i = 0; i < 8; ++i)
        if (words[9] >> i & 1u) std::memcpy(numbers[i], &words[i + 1], 4);
    float tileSize = 0;
    std::memcpy(&tileSize, &words[8], 4);
    if (words[9] >> 8 & 1u) scene.setTileSize(tileSize);
    if (words[9] >> 9 & 1u) scene.setFieldOfView(static_cast<double>(tileSize));
    LivePicture one(9, 6, 0, 0, 0), other(9, 6, 0, 0, 0);
    renderScenePlainly(scene, *one, 1);
    renderScene(scene, *other, 3);
    if (one.bytes() != other.bytes()) std::abort();
    projectScene(scene, *other, 1);
    return 0;
}
