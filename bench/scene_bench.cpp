#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "base/trigonometry.h"
#include "image/image_registry.h"
#include "plush/scene/plain_tracer.h"
#include "plush/scene/projection.h"
#include "plush/scene/raycast.h"
#include "race.h"

// Draws scenes at 960 x 544 with one ray a pixel, in turns with the same plain scene drawn by hand: the walk
// through a grid that every book shows, with walls, floor, roof and fog and nothing else. Reports each one's
// median nanoseconds a ray and the ratio to the time by hand. The pictures are compared first.
namespace {

using namespace kelmora;

constexpr int width = 960;
constexpr int height = 544;
constexpr double rays = double{width} * height;
constexpr int repetitions = 11;
constexpr int tiles = 32;
constexpr int textureSide = 64;

class LivePicture {
public:
    LivePicture(int columns, int rows) : image_(createSolidColourImage(columns, rows, 0, 0, 0, 255)) {}
    LivePicture(const LivePicture&) = delete;
    LivePicture& operator=(const LivePicture&) = delete;
    ~LivePicture() { killPlushImage(image_); }
    PlushImage* get() const { return image_; }
    PlushImage& operator*() const { return *image_; }

private:
    PlushImage* image_;
};

// Four textures, pillars in a hall, the player in the middle.
struct Hall {
    Hall() {
        std::mt19937 random(11);
        std::vector<PlushImage*> images{nullptr};
        for (int i = 0; i < 5; ++i) {
            textures.push_back(std::make_unique<LivePicture>(textureSide, textureSide));
            PlushImage& image = **textures.back();
            for (int b = 0; b < textureSide * textureSide * 4; ++b)
                if (b % 4 != 3) image.pixels[b] = static_cast<unsigned char>(random() % 200 + 28);
            images.push_back(&image);
        }
        for (int x = 0; x < tiles; ++x) {
            walls.emplace_back();
            for (int y = 0; y < tiles; ++y) {
                const bool isEdge = x == 0 || y == 0 || x == tiles - 1 || y == tiles - 1;
                const bool isNear = std::abs(x - 16) < 2 && std::abs(y - 16) < 2;
                const bool isPillar = random() % 8 == 0 && !isNear;
                walls.back().push_back(isEdge || isPillar ? 1 + static_cast<int>(random() % 2) : 0);
            }
        }
        const auto filled = [](int value) {
            return TileTable(tiles, std::vector<std::int32_t>(tiles, value));
        };
        scene.setTiles(TileLayer::Walls, walls);
        scene.setTiles(TileLayer::Roofs, filled(4));
        scene.setTiles(TileLayer::Floors, filled(3));
        scene.setTextures(images);
        scene.player = {16 * 16 + 9, 16 * 16 + 7, 7, 0.4f, 0.05f};
        scene.settings.accuracy = 1;
        scene.settings.lightMinimum = 1;
    }

    // Lights that throw shadows, quads, and a floor and walls that mirror twice.
    void furnish() {
        std::mt19937 random(5);
        const auto decimal = [&](double low, double high) {
            return static_cast<float>(low + (high - low) * static_cast<int>(random() % 4096) / 4096.0);
        };
        for (int i = 0; i < 8; ++i)
            scene.spawnLight(decimal(170, 350), decimal(170, 350), decimal(3, 12), decimal(60, 255),
                             decimal(60, 255), decimal(60, 255), 80);
        std::vector<Quad> quads;
        for (int i = 0; i < 200; ++i) {
            const float x = decimal(32, 480), y = decimal(32, 480), dx = decimal(-4, 4), dy = decimal(-4, 4);
            Quad quad;
            quad.tl = {x - dx, y - dy, 12};
            quad.tr = {x + dx, y + dy, 12};
            quad.br = {x + dx, y + dy, 0};
            quad.bl = {x - dx, y - dy, 0};
            quad.texture = 5;
            quads.push_back(quad);
        }
        scene.setQuads(quads);
        LivePicture mirror(1, 1);
        std::fill(mirror.get()->pixels, mirror.get()->pixels + 4, static_cast<unsigned char>(255));
        insertReflection(**textures[1], *mirror);
        insertReflection(**textures[2], *mirror);
        scene.settings.lightMinimum = 0.25f;
        scene.settings.rayDepth = 2;
    }

    TileTable walls;
    std::vector<std::unique_ptr<LivePicture>> textures;
    Scene scene;
};

// The plain hall by hand.
class ByHand {
public:
    explicit ByHand(const Hall& hall) : scene_(hall.scene), camera_(cameraOf(scene_, width, height)) {
        for (const auto& column : hall.walls) cells_.insert(cells_.end(), column.begin(), column.end());
        for (const auto& texture : hall.textures) textures_.push_back(texture->get()->pixels);
    }

    void draw(PlushImage& output) const {
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                const double u = 2.0 * x / width - 1;
                const double v = 2.0 * y / height - 1;
                unsigned char* pixel = output.pixels + (y * width + x) * 4;
                trace(u, v, pixel);
            }
    }

private:
    static constexpr double size = 16;

    void trace(double u, double v, unsigned char* pixel) const {
        const Vector& eye = camera_.eye;
        Vector d = camera_.directionAt(u, v);
        d = d * (1 / std::sqrt(d.x * d.x + d.y * d.y + d.z * d.z));
        int x = static_cast<int>(eye.x / size), y = static_cast<int>(eye.y / size);
        const int stepX = d.x > 0 ? 1 : -1, stepY = d.y > 0 ? 1 : -1;
        const double inverseX = 1 / d.x, inverseY = 1 / d.y;
        const double deltaX = std::fabs(size * inverseX), deltaY = std::fabs(size * inverseY);
        double nextX = ((x + (d.x > 0)) * size - eye.x) * inverseX;
        double nextY = ((y + (d.y > 0)) * size - eye.y) * inverseY;
        const double slab = ((d.z > 0 ? size : 0) - eye.z) / d.z;
        const double end = std::min(slab, double{scene_.settings.renderDistance});
        const unsigned char* texture = nullptr;
        double along = 0, down = 0, distance = 0;
        for (;;) {
            const bool acrossX = nextX < nextY;
            distance = acrossX ? nextX : nextY;
            if (distance >= end) {
                if (slab <= end) {
                    texture = textures_[d.z > 0 ? 3 : 2];
                    distance = slab;
                    along = (eye.x + d.x * slab) / size - x;
                    down = (eye.y + d.y * slab) / size - y;
                }
                break;
            }
            if (acrossX) {
                x += stepX;
                nextX += deltaX;
            } else {
                y += stepY;
                nextY += deltaY;
            }
            if (const int wall = cells_[static_cast<std::size_t>(x * tiles + y)]; wall > 0) {
                texture = textures_[static_cast<std::size_t>(wall - 1)];
                along = acrossX ? (eye.y + d.y * distance) / size - y : (eye.x + d.x * distance) / size - x;
                down = (size - eye.z - d.z * distance) / size;
                break;
            }
        }
        const double multiplier = std::sqrt(u * u + v * v) * 0.70710677 * 1.5 + 1;
        double fog = 1;
        const unsigned char* texel = fog_;
        if (texture) {
            fog = std::min(multiplier * distance / double{scene_.settings.renderDistance}, 1.0);
            texel = texture + (texelOf(down) * textureSide + texelOf(along)) * 4;
        }
        for (int c = 0; c < 3; ++c)
            pixel[c] = static_cast<unsigned char>(fog_[c] * fog + texel[c] * (1 - fog));
        pixel[3] = 255;
    }
    static int texelOf(double coordinate) {
        return std::clamp(static_cast<int>(coordinate * textureSide), 0, textureSide - 1);
    }

    const Scene& scene_;
    Camera camera_;
    std::vector<std::int32_t> cells_;
    std::vector<const unsigned char*> textures_;
    unsigned char fog_[3] = {0, 0, 255};
};

// Each contestant in turns; nanoseconds a ray of each, and each one's time in units of the first one's.
void race(benchmark::State& state, std::vector<Contestant> contestants, Clock clock = Clock::Processor) {
    runInTurns(state, contestants, repetitions, clock);
    const double first = median(contestants.front().times);
    for (const Contestant& contestant : contestants) {
        const double own = median(contestant.times);
        state.counters[contestant.name + "_ns"] = own / rays * 1e9;
        if (&contestant != &contestants.front()) state.counters[contestant.name + "_ratio"] = own / first;
    }
}

// Pictures that differ by more than rounding in more than a few pixels are not of one scene.
void compare(const PlushImage& one, const PlushImage& other, const char* what, double allowed) {
    int differing = 0;
    for (int i = 0; i < width * height; ++i)
        for (int c = 0; c < 4; ++c)
            if (std::abs(one.pixels[i * 4 + c] - other.pixels[i * 4 + c]) > 2) {
                ++differing;
                break;
            }
    if (differing > allowed * rays) {
        std::fprintf(stderr, "scene_bench: %s differs in %d pixels\n", what, differing);
        std::exit(1);
    }
}

void plainScene(benchmark::State& state) {
    const Hall hall;
    const ByHand byHand(hall);
    const LivePicture one(width, height), other(width, height);
    byHand.draw(*one);
    renderScene(hall.scene, *other, 1);
    compare(*one, *other, "the plain scene", 0.001);
    projectScene(hall.scene, *other, 1);
    compare(*one, *other, "its projection", 0.01);
    race(state, {{"by_hand", [&] { byHand.draw(*one); }},
                 {"raycast", [&] { renderScene(hall.scene, *other, 1); }},
                 {"plain_tracer", [&] { renderScenePlainly(hall.scene, *other, 1); }},
                 {"projection", [&] { projectScene(hall.scene, *other, 1); }}});
}

void furnishedScene(benchmark::State& state) {
    const Hall plain;
    Hall hall;
    hall.furnish();
    const ByHand byHand(plain);
    const LivePicture one(width, height), other(width, height);
    renderScenePlainly(hall.scene, *one, 1);
    renderScene(hall.scene, *other, 1);
    compare(*one, *other, "the furnished scene", 0);
    race(state, {{"by_hand", [&] { byHand.draw(*one); }},
                 {"raycast", [&] { renderScene(hall.scene, *other, 1); }},
                 {"plain_tracer", [&] { renderScenePlainly(hall.scene, *other, 1); }},
                 {"projection", [&] { projectScene(hall.scene, *other, 1); }}});
}

void twoThreads(benchmark::State& state) {
    Hall hall;
    hall.furnish();
    const LivePicture one(width, height);
    race(state,
         {{"two", [&] { renderScene(hall.scene, *one, 2); }},
          {"one", [&] { renderScene(hall.scene, *one, 1); }}},
         Clock::Wall);
}

BENCHMARK(plainScene)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(furnishedScene)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(twoThreads)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
