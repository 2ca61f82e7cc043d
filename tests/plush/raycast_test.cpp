#include "plush/scene/raycast.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>

#include "plush/scene/projection.h"
#include "plush/scene_fixture.h"

namespace kelmora {
namespace {

using Pixel = std::vector<int>;

constexpr float infinite = std::numeric_limits<float>::infinity();

void expectPlainBytes(const Scene& scene, int width, int height) {
    LivePicture plain(width, height, 1, 1, 1), fast(width, height, 9, 9, 9);
    renderScenePlainly(scene, *plain, 1);
    renderScene(scene, *fast, 1);
    ASSERT_EQ(plain.bytes(), fast.bytes());
}

// A room of 8 by 3 tiles of one colour each, seen from its left end along x, with one ray a pixel.
class Raycast : public testing::Test {
protected:
    Raycast() {
        buildRoom(scene, 8, 3);
        scene.setTextures({nullptr, wall.get(), floor.get(), roof.get(), other.get()});
        scene.settings.accuracy = 1;
        scene.settings.renderDistance = 1e9f;
        scene.settings.lightMinimum = 1;
    }
    void draw() { renderScene(scene, *output, 1); }
    void replace(TileLayer layer, int columns, int rows, int value, int x, int y, int one) {
        TileTable table(static_cast<std::size_t>(columns),
                        std::vector<std::int32_t>(static_cast<std::size_t>(rows), value));
        table[static_cast<std::size_t>(x)][static_cast<std::size_t>(y)] = one;
        scene.setTiles(layer, table);
    }
    Quad screenAt(float x, int texture) {
        return {{x, 16, 16}, {x, 32, 16}, {x, 32, 0}, {x, 16, 0}, texture, {}, {}};
    }

    LivePicture wall{4, 4, 200, 0, 0};
    LivePicture floor{4, 4, 0, 200, 0};
    LivePicture roof{4, 4, 0, 0, 200};
    LivePicture other{4, 4, 90, 90, 90};
    LivePicture output{9, 9, 1, 2, 3, 4};
    Scene scene;
};

TEST_F(Raycast, SeesRoofAboveAndFloorBelowAndWallAhead) {
    draw();
    EXPECT_EQ(output.pixel(4, 0), (Pixel{0, 0, 200, 255}));
    EXPECT_EQ(output.pixel(4, 8), (Pixel{0, 200, 0, 255}));
    scene.settings.renderDistance = infinite;
    LivePicture one(1, 1, 0, 0, 0);
    scene.setFieldOfView(0);
    renderScene(scene, *one, 1);
    EXPECT_EQ(one.pixel(0, 0), (Pixel{200, 0, 0, 255}));
    scene.player.tilt = 1.5f;
    renderScene(scene, *one, 1);
    EXPECT_EQ(one.pixel(0, 0), (Pixel{0, 200, 0, 255}));
}

TEST_F(Raycast, FogGrowsWithDistanceAndTowardsCorners) {
    scene.setFieldOfView(0);
    scene.settings.renderDistance = 1000;
    draw();
    // The wall's face stands 88 away. The corner's multiplier is 2.5.
    const auto fogged = [](double multiplier) {
        const auto fog = static_cast<float>(multiplier * 88 / 1000);
        return Pixel{static_cast<int>(200 * (1 - fog)), 0, static_cast<int>(255 * fog), 255};
    };
    EXPECT_EQ(output.pixel(0, 0), fogged(std::sqrt(2.0) * 0.70710677 * 1.5 + 1));
    scene.settings.renderDistance = 88;
    draw();
    EXPECT_EQ(output.pixel(4, 4), (Pixel{0, 0, 255, 255}));
    scene.settings.fogRed = 300;
    scene.settings.fogBlue = -5;
    draw();
    EXPECT_EQ(output.pixel(4, 4), (Pixel{255, 0, 0, 255}));
}

TEST_F(Raycast, OneRayColoursASquare) {
    RandomScene random(5);
    Scene& busy = random.scene;
    LivePicture fine(21, 13, 0, 0, 0), coarse(21, 13, 0, 0, 0);
    busy.settings.accuracy = 1;
    renderScene(busy, *fine, 1);
    for (const int side : {4, 50, INT32_MAX}) {
        busy.settings.accuracy = side;
        renderScene(busy, *coarse, 1);
        for (int y = 0; y < 13; ++y)
            for (int x = 0; x < 21; ++x)
                ASSERT_EQ(coarse.pixel(x, y), fine.pixel(x - x % side, y - y % side)) << side;
    }
}

TEST_F(Raycast, NothingToSeeIsFog) {
    const auto expectFog = [&](const char* what) {
        draw();
        for (int i = 0; i < 81; ++i) EXPECT_EQ(output.pixel(i % 9, i / 9), (Pixel{0, 0, 255, 255})) << what;
    };
    const Scene sound = scene;
    for (const float bad : {-1.0f, 1e9f, infinite, std::nanf("")}) {
        scene = sound;
        scene.player.x = bad;
        expectFog("player");
    }
    for (const float bad : {0.0f, -16.0f, infinite, std::nanf(""), 1e-40f}) {
        scene = sound;
        scene.setTileSize(bad);
        expectFog("tile size");
    }
    for (const float bad : {0.0f, -1.0f, std::nanf("")}) {
        scene = sound;
        scene.settings.renderDistance = bad;
        expectFog("render distance");
    }
    scene = sound;
    scene.player.rotation = infinite;
    expectFog("rotation");
    scene = sound;
    scene.settings.fieldOfView = HUGE_VAL;
    expectFog("field of view");
    scene = sound;
    scene.setTextures({});
    expectFog("textures");
    scene.setTiles(TileLayer::Walls, {});
    expectFog("map");
}

TEST_F(Raycast, TexturesLieUprightAndUnmirroredAlongTheAxes) {
    LivePicture marked(2, 2, 0, 0, 0);
    setPixel(marked.get(), 0, 0, 10, 0, 0, 255);
    setPixel(marked.get(), 1, 0, 20, 0, 0, 255);
    setPixel(marked.get(), 0, 1, 30, 0, 0, 255);
    setPixel(marked.get(), 1, 1, 40, 0, 0, 255);
    scene.setTextures({nullptr, marked.get(), marked.get(), marked.get()});
    scene.settings.renderDistance = infinite;
    scene.setFieldOfView(0);
    const auto seen = [&](float y, float height, float tilt) {
        scene.player.y = y;
        scene.player.height = height;
        scene.player.tilt = tilt;
        draw();
        return output.pixel(0, 0)[0];
    };
    // Ahead is the wall: its left half lies at smaller y, its upper half is near the roof.
    EXPECT_EQ(seen(20, 2, 0), 10);
    EXPECT_EQ(seen(28, 2, 0), 20);
    EXPECT_EQ(seen(20, 14, 0), 30);
    EXPECT_EQ(seen(28, 14, 0), 40);
    // Beyond roof and floor its texture starts anew.
    scene.setTiles(TileLayer::Roofs, {});
    EXPECT_EQ(seen(20, -1, 0), 30);
    // Below is the floor: x runs along its rows. The player stands at x 24, so nearly at its middle.
    EXPECT_EQ(seen(20, 8, 1.5f), 20);
    EXPECT_EQ(seen(28, 8, 1.5f), 40);
}

TEST_F(Raycast, StepsFaceTheLowerTile) {
    scene.settings.renderDistance = infinite;
    scene.setFieldOfView(0);
    replace(TileLayer::Floors, 8, 3, 2, 4, 1, 4);
    replace(TileLayer::FloorOffsets, 8, 3, 0, 4, 1, 12);
    draw();
    EXPECT_EQ(output.pixel(4, 4), (Pixel{90, 90, 90, 255}));
    // Seen from the raised tile's far side the wall is there; so it is above the step.
    scene.player.height = 2;
    draw();
    EXPECT_EQ(output.pixel(4, 4), (Pixel{200, 0, 0, 255}));
    scene.player.height = 6;
    replace(TileLayer::Floors, 8, 3, 2, 4, 1, 0);
    draw();
    EXPECT_EQ(output.pixel(4, 4), (Pixel{0, 200, 0, 255})) << "the tile that is left has the slab";
    replace(TileLayer::FloorOffsets, 8, 3, 0, 4, 1, 0);
    draw();
    EXPECT_EQ(output.pixel(4, 4), (Pixel{200, 0, 0, 255})) << "equal heights make no face";
    scene.setTiles(TileLayer::FloorOffsets, {});
    replace(TileLayer::RoofOffsets, 8, 3, 0, 4, 1, -12);
    draw();
    EXPECT_EQ(output.pixel(4, 4), (Pixel{0, 0, 200, 255}));
}

TEST_F(Raycast, LayersMixAndClearTexelsLetThrough) {
    scene.settings.renderDistance = infinite;
    scene.setFieldOfView(0);
    LivePicture glass(4, 4, 0, 100, 50, 51);
    LivePicture clear(4, 4, 255, 255, 255, 0);
    scene.setTextures({nullptr, wall.get(), floor.get(), roof.get(), glass.get(), clear.get()});
    scene.setQuads({screenAt(60, 5), screenAt(50, 4), screenAt(50, 5)});
    draw();
    // 0.2 of the glass.
    EXPECT_EQ(output.pixel(4, 4), (Pixel{160, 20, 10, 255}));
    scene.setQuads({screenAt(48, 4), screenAt(48, 5)});
    draw();
    EXPECT_EQ(output.pixel(4, 4), (Pixel{160, 20, 10, 255})) << "on the edge of two tiles it counts once";
    scene.setQuads({screenAt(112, 5), screenAt(112, 4)});
    draw();
    EXPECT_EQ(output.pixel(4, 4), (Pixel{160, 20, 10, 255})) << "on the wall, and the wall behind it";
    scene.setQuads({screenAt(200, 4)});
    replace(TileLayer::Walls, 8, 3, 0, 4, 1, 4);
    TileTable walls(8, {1, 0, 1});
    walls[4][1] = 4;
    walls[7][1] = 1;
    scene.setTiles(TileLayer::Walls, walls);
    draw();
    EXPECT_EQ(output.pixel(4, 4), (Pixel{160, 20, 10, 255})) << "a wall of glass";
}

TEST_F(Raycast, MirrorsShowWhatLiesBeforeThem) {
    scene.settings.renderDistance = infinite;
    scene.setFieldOfView(0);
    scene.settings.reflection = 0.5f;
    LivePicture mirror(2, 2, 255, 255, 255), black(2, 2, 0, 0, 0);
    insertReflection(*other, *mirror);
    TileTable walls(8, {1, 0, 1});
    walls[0][1] = 2;
    walls[7][1] = 4;
    scene.setTiles(TileLayer::Walls, walls);
    draw();
    // Half of what stands behind the player, half of the wall's own grey.
    EXPECT_EQ(output.pixel(4, 4), (Pixel{45, 145, 45, 255}));
    scene.settings.reflection = 7;
    draw();
    EXPECT_EQ(output.pixel(4, 4), (Pixel{0, 200, 0, 255})) << "cut to all of it";
    scene.settings.rayDepth = 0;
    draw();
    EXPECT_EQ(output.pixel(4, 4), (Pixel{90, 90, 90, 255}));
    scene.settings.rayDepth = 100;
    insertReflection(*floor, *mirror);
    scene.settings.reflection = 1;
    draw();
    EXPECT_EQ(output.pixel(4, 4), (Pixel{90, 90, 90, 255})) << "six times to and fro";
    insertReflection(*other, *black);
    draw();
    EXPECT_EQ(output.pixel(4, 4), (Pixel{90, 90, 90, 255}));
}

TEST_F(Raycast, PanesThatMirrorEachOtherEnd) {
    scene.settings.renderDistance = infinite;
    LivePicture glass(1, 1, 0, 100, 50, 51), mirror(1, 1, 255, 255, 255);
    insertReflection(*glass, *mirror);
    scene.setTextures({nullptr, wall.get(), floor.get(), roof.get(), glass.get()});
    std::vector<Quad> panes;
    for (int i = 0; i < 12; ++i) panes.push_back(screenAt(static_cast<float>(40 + i), 4));
    scene.setQuads(panes);
    scene.settings.rayDepth = 6;
    // Twelve panes would take millions of rays for each pixel.
    expectPlainBytes(scene, 2, 2);
}

TEST_F(Raycast, CrowdsInOnePlaceCostLittle) {
    LivePicture clear(1, 1, 9, 9, 9, 0);
    scene.setTextures({nullptr, wall.get(), floor.get(), roof.get(), other.get(), clear.get()});
    scene.setQuads(std::vector<Quad>(20000, screenAt(60, 4)));
    scene.settings.renderDistance = infinite;
    scene.setFieldOfView(0);
    draw();
    EXPECT_EQ(output.pixel(4, 4), (Pixel{90, 90, 90, 255}));
    std::vector<Quad> quads(100, screenAt(60, 5));
    quads.push_back(screenAt(60, 4));
    scene.setQuads(quads);
    draw();
    EXPECT_EQ(output.pixel(4, 4), (Pixel{90, 90, 90, 255})) << "the last of a stack behind clear ones";
}

TEST_F(Raycast, RaggedMapsLookThePlainWay) {
    TileTable walls(2000);
    walls[0].assign(2000, 1);
    for (std::size_t x = 1; x < 8; ++x) walls[x] = {1, 0, 1};
    walls[7][1] = 1;
    scene.setTiles(TileLayer::Walls, walls);
    scene.spawnLight(60, 24, 8, 200, 200, 200, 90);
    EXPECT_FALSE(scene.tileFlags().isLaidOut());
    expectPlainBytes(scene, 30, 20);
    draw();
    const std::vector<unsigned char> traced = output.bytes();
    projectScene(scene, *output, 1);
    EXPECT_EQ(output.bytes(), traced);
}

TEST_F(Raycast, LightsReachAndWallsAndSlabsShade) {
    scene.settings.renderDistance = infinite;
    scene.settings.lightMinimum = 0.25f;
    scene.setFieldOfView(0);
    const auto seen = [&] {
        draw();
        return output.pixel(4, 4);
    };
    EXPECT_EQ(seen(), (Pixel{50, 0, 0, 255}));
    // 16 in front of the wall, at the eye's height.
    scene.spawnLight(96, 24, 6, 255, 255, 255, 32);
    EXPECT_EQ(seen(), (Pixel{150, 0, 0, 255}));
    scene.settings.lightMaximum = 0.5f;
    EXPECT_EQ(seen(), (Pixel{100, 0, 0, 255}));
    scene.settings.lightMaximum = 0.1f;
    EXPECT_EQ(seen(), (Pixel{20, 0, 0, 255})) << "a minimum above the maximum gives the maximum";
    scene.settings.lightMaximum = 10;
    scene.lights.assign(8, scene.lights.front());
    EXPECT_EQ(seen(), (Pixel{255, 0, 0, 255})) << "channels are held to a byte";
    // Behind the wall, and one wall tile thick of it.
    scene.lights.clear();
    scene.spawnLight(120, 24, 6, 255, 255, 255, 64);
    EXPECT_EQ(seen(), (Pixel{50, 0, 0, 255}));
    // Over the roof.
    scene.lights.clear();
    scene.spawnLight(96, 24, -4, 255, 255, 255, 64);
    EXPECT_EQ(seen(), (Pixel{50, 0, 0, 255}));
    scene.setTiles(TileLayer::Roofs, {});
    EXPECT_GT(seen()[0], 50);
}

TEST_F(Raycast, KilledTexturesAreNone) {
    scene.settings.renderDistance = infinite;
    scene.setFieldOfView(0);
    PlushImage* image = createSolidColourImage(4, 4, 7, 7, 7, 255);
    scene.setTextures({nullptr, image, floor.get(), roof.get()});
    draw();
    EXPECT_EQ(output.pixel(4, 4), (Pixel{7, 7, 7, 255}));
    killPlushImage(image);
    draw();
    EXPECT_EQ(output.pixel(4, 4), (Pixel{0, 0, 255, 255}));
    scene.setTextures({nullptr, output.get(), output.get(), output.get()});
    draw();
    EXPECT_EQ(output.pixel(4, 4), (Pixel{0, 0, 255, 255})) << "what the output showed before";
}

// KELMORA_SCENE_SEEDS asks for more.
TEST(RaycastAgreement, TheFastWayGivesTheBytesOfThePlainOne) {
    const char* asked = std::getenv("KELMORA_SCENE_SEEDS");
    const unsigned seeds = asked ? static_cast<unsigned>(std::strtoul(asked, nullptr, 10)) : 400;
    for (unsigned seed = 0; seed < seeds; ++seed) {
        SCOPED_TRACE(seed);
        RandomScene random(seed);
        expectPlainBytes(random.scene, 1 + static_cast<int>(seed * 5 % 60),
                         1 + static_cast<int>(seed * 7 % 37));
        random.scene.settings.renderDistance = infinite;
        random.scene.settings.rayDepth = 6;
        expectPlainBytes(random.scene, 12, 9);
    }
}

// Pillars and lights between them, where light falls over open ground and through gaps.
TEST(RaycastAgreement, LightAmongPillarsHasThePlainBytes) {
    for (unsigned seed = 0; seed < 40; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        const auto decimal = [&](int low, int high) {
            return static_cast<float>(low) +
                   static_cast<float>(random() % 1000) / 1000 * static_cast<float>(high - low);
        };
        LivePicture wall(1, 1, 200, 100, 0), slab(1, 1, 0, 200, 100);
        Scene scene;
        buildRoom(scene, 12, 12);
        TileTable walls(12, std::vector<std::int32_t>(12, 1)), offsets(12, std::vector<std::int32_t>(12, 0));
        for (std::size_t x = 1; x < 11; ++x)
            for (std::size_t y = 1; y < 11; ++y) {
                walls[x][y] = random() % 5 == 0;
                offsets[x][y] = seed % 4 == 0 && random() % 12 == 0 ? 3 : 0;
            }
        walls[6][6] = 0;
        scene.setTiles(TileLayer::Walls, walls);
        scene.setTiles(TileLayer::FloorOffsets, offsets);
        scene.setTextures({nullptr, wall.get(), slab.get(), slab.get()});
        for (int i = 0; i < 8; ++i) {
            const float whole = random() % 4 == 0 ? 16.0f : 0.01f;
            scene.spawnLight(std::round(decimal(16, 176) / whole) * whole, decimal(16, 176), decimal(-2, 18),
                             90, 60, 30, decimal(10, 100));
        }
        scene.player = {decimal(96, 112), decimal(96, 112), decimal(2, 14), decimal(0, 6), 0};
        scene.settings.accuracy = 1;
        expectPlainBytes(scene, 96, 48);
    }
}

TEST(RaycastAgreement, AnyNumberOfWorkersGivesTheSameBytes) {
    for (unsigned seed = 0; seed < 150; ++seed) {
        SCOPED_TRACE(seed);
        RandomScene random(seed);
        LivePicture alone(1 + static_cast<int>(seed) % 40, 1 + static_cast<int>(seed) * 7 % 31, 0, 0, 0);
        LivePicture shared(alone->width, alone->height, 9, 9, 9);
        renderScene(random.scene, *alone, 1);
        renderScene(random.scene, *shared, static_cast<std::int32_t>(seed) % 5);
        ASSERT_EQ(alone.bytes(), shared.bytes());
    }
}

}  // namespace
}  // namespace kelmora
