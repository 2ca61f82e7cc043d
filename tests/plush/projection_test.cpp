#include "plush/scene/projection.h"

#include <gtest/gtest.h>

#include "plush/scene/projected_point.h"
#include "plush/scene_fixture.h"

namespace kelmora {
namespace {

struct Difference {
    int pixels = 0;
    int count = 0;
};

// How many pixels differ by more than two in a channel.
Difference difference(Scene& scene, int width, int height) {
    scene.settings.accuracy = 1;
    scene.settings.rayDepth = 0;
    LivePicture traced(width, height, 0, 0, 0), projected(width, height, 0, 0, 0);
    renderScene(scene, *traced, 1);
    projectScene(scene, *projected, 2);
    Difference result{0, width * height};
    for (int i = 0; i < result.count; ++i) {
        const auto one = traced.pixel(i % width, i / width);
        const auto other = projected.pixel(i % width, i / width);
        for (std::size_t channel = 0; channel < 4; ++channel)
            if (std::abs(one[channel] - other[channel]) > 2) {
                ++result.pixels;
                break;
            }
    }
    return result;
}

// Both renderers show an opaque scene alike but for edges, where a ray may fall on either side.
TEST(Projection, AgreesWithTheTracerOnOpaqueScenes) {
    int differing = 0, all = 0;
    for (unsigned seed = 0; seed < 120; ++seed) {
        RandomScene random(seed, true);
        const Difference found = difference(random.scene, 48, 32);
        differing += found.pixels;
        all += found.count;
        EXPECT_LE(found.pixels, found.count / 20) << seed;
    }
    EXPECT_LE(differing, all / 100);
}

TEST(Projection, MixesGlassAndCutsOutClearTexels) {
    LivePicture wall(2, 2, 200, 0, 0), glass(2, 2, 0, 100, 50, 51), clear(2, 2, 9, 9, 9, 0);
    Scene scene;
    buildRoom(scene, 8, 3);
    scene.setTextures({nullptr, wall.get(), wall.get(), wall.get(), glass.get(), clear.get()});
    std::vector<Quad> quads;
    for (const auto& [x, texture] : {std::pair{50.0f, 4}, {60.0f, 5}, {40.0f, 5}, {70.0f, 4}}) {
        Quad quad{{x, 16, 16}, {x, 32, 16}, {x, 32, 0}, {x, 16, 0}, texture, {}, {}};
        quads.push_back(quad);
    }
    scene.setQuads(quads);
    EXPECT_LE(difference(scene, 40, 40).pixels, 16);
}

// Slabs at many heights, seen over and under each other.
TEST(Projection, NearTilesHideFarOnes) {
    LivePicture one(3, 2, 200, 0, 0), other(2, 2, 0, 190, 20), third(1, 1, 30, 40, 250);
    Scene scene;
    buildRoom(scene, 12, 12);
    scene.setTextures({nullptr, one.get(), other.get(), third.get()});
    const auto heights = [](int factor, int range) {
        TileTable table(12, std::vector<std::int32_t>(12));
        for (int x = 0; x < 12; ++x)
            for (int y = 0; y < 12; ++y)
                table[static_cast<std::size_t>(x)][static_cast<std::size_t>(y)] = x * y * factor % range;
        return table;
    };
    scene.setTiles(TileLayer::FloorOffsets, heights(5, 7));
    scene.setTiles(TileLayer::RoofOffsets, heights(3, 11));
    for (int turn = 0; turn < 8; ++turn) {
        scene.player = {90, 100, 4, static_cast<float>(turn) * 0.8f, static_cast<float>(turn % 3) * 0.3f};
        EXPECT_LE(difference(scene, 60, 50).pixels, 20) << turn;
    }
}

TEST(Projection, AnyNumberOfWorkersGivesTheSameBytesOnEveryMachine) {
    std::uint32_t sum = 0;
    for (unsigned seed = 0; seed < 40; ++seed) {
        RandomScene random(seed, seed % 2 == 0);
        LivePicture one(101, 67, 0, 0, 0), many(101, 67, 0, 0, 0);
        projectScene(random.scene, *one, 1);
        projectScene(random.scene, *many, 5);
        ASSERT_EQ(one.bytes(), many.bytes()) << seed;
        for (const unsigned char byte : one.bytes()) sum = sum * 31 + byte;
    }
    EXPECT_EQ(sum, 3072162510u);
}

TEST(Projection, LongMapsEnd) {
    LivePicture output(20, 20, 0, 0, 0), texture(1, 1, 9, 9, 9);
    for (const bool isWide : {false, true}) {
        Scene scene;
        const TileTable tiles = isWide ? TileTable(300000, {0}) : TileTable(1, std::vector<int>(300000));
        scene.setTiles(TileLayer::Walls, tiles);
        scene.setTextures({nullptr, texture.get()});
        scene.player = {8, 8, 7, 0, 0};
        scene.settings.renderDistance = HUGE_VALF;
        projectScene(scene, *output, 1);
        EXPECT_EQ(output.pixel(3, 3), (std::vector<int>{0, 0, 255, 255}));
    }
}

TEST(Projection, PointsLandWhereTheirRayGoes) {
    Scene scene;
    scene.player.rotation = 0.7f;
    scene.player.tilt = -0.3f;
    const Camera camera = cameraOf(scene, 320, 200);
    for (const auto& [x, y] : {std::pair{0.0, 0.0}, {160.0, 100.0}, {319.0, 7.0}}) {
        const Vector direction = camera.directionAt(2 * x / 320 - 1, 2 * y / 200 - 1);
        ProjectedPoint point;
        ASSERT_TRUE(projectPoint(camera, 320, 200, camera.eye + direction * 17, point));
        EXPECT_NEAR(point.x, x, 1e-6);
        EXPECT_NEAR(point.y, y, 1e-6);
        EXPECT_NEAR(point.depth, 17, 1e-6);
        EXPECT_FALSE(projectPoint(camera, 320, 200, camera.eye - direction, point));
    }
}

TEST(Projection, OddSettingsGiveAPicture) {
    RandomScene random(3);
    LivePicture output(9, 7, 0, 0, 0);
    for (const double degrees : {0.0, -90.0, 1e9, HUGE_VAL, std::nan("")}) {
        random.scene.setFieldOfView(degrees);
        projectScene(random.scene, *output, 1);
        EXPECT_EQ(output.pixel(0, 0)[3], 255);
    }
}

}  // namespace
}  // namespace kelmora
