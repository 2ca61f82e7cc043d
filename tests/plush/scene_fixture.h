#pragma once

#include <cstring>
#include <memory>
#include <random>
#include <vector>

#include "image/image_registry.h"
#include "plush/scene/raycast.h"

namespace kelmora {

// A picture that the registry knows, as scenes want their textures.
class LivePicture {
public:
    LivePicture(int width, int height, unsigned char r, unsigned char g, unsigned char b,
                unsigned char a = 255)
        : image_(createSolidColourImage(width, height, r, g, b, a)) {}
    LivePicture(const LivePicture&) = delete;
    LivePicture& operator=(const LivePicture&) = delete;
    ~LivePicture() { killPlushImage(image_); }

    PlushImage* get() const { return image_; }
    PlushImage& operator*() const { return *image_; }
    PlushImage* operator->() const { return image_; }
    std::vector<int> pixel(int x, int y) const {
        const unsigned char* bytes = getPixel(image_, x, y);
        return {bytes[0], bytes[1], bytes[2], bytes[3]};
    }
    std::vector<unsigned char> bytes() const {
        return {image_->pixels, image_->pixels + std::size_t{4} * static_cast<std::size_t>(image_->width) *
                                                     static_cast<std::size_t>(image_->height)};
    }

private:
    PlushImage* image_;
};

// A room of columns x rows tiles with walls of texture 1 around it. Floor 2, roof 3.
inline void buildRoom(Scene& scene, int columns, int rows) {
    TileTable walls, slab;
    for (int x = 0; x < columns; ++x) {
        walls.emplace_back();
        for (int y = 0; y < rows; ++y)
            walls.back().push_back(x == 0 || y == 0 || x == columns - 1 || y == rows - 1);
    }
    const auto filled = [&](int value) {
        return TileTable(static_cast<std::size_t>(columns),
                         std::vector<std::int32_t>(static_cast<std::size_t>(rows), value));
    };
    scene.setTiles(TileLayer::Walls, walls);
    scene.setTiles(TileLayer::Roofs, filled(3));
    scene.setTiles(TileLayer::Floors, filled(2));
    scene.setTiles(TileLayer::RoofOffsets, filled(0));
    scene.setTiles(TileLayer::FloorOffsets, filled(0));
}

// A scene of anything that scripts can ask for, from a seed.
class RandomScene {
public:
    explicit RandomScene(unsigned seed, bool opaque = false) : random_(seed), opaque_(opaque) {
        for (int i = 0; i < 5; ++i) textures_.push_back(randomPicture());
        std::vector<PlushImage*> images{nullptr};
        for (const auto& texture : textures_) images.push_back(texture->get());
        const int columns = between(1, 14);
        for (const TileLayer layer : {TileLayer::Walls, TileLayer::Roofs, TileLayer::Floors,
                                      TileLayer::RoofOffsets, TileLayer::FloorOffsets})
            scene.setTiles(layer, randomTable(layer, columns));
        scene.setTextures(images);
        const float sizes[] = {16, 1, 0.1f, 33.3f, 16};
        scene.setTileSize(sizes[between(0, 4)]);
        const float size = scene.tileSize();
        placePlayer(columns, size);
        std::vector<Quad> quads;
        for (int count = between(0, 12); count > 0; --count) quads.push_back(randomQuad(columns, size));
        if (between(0, 4) == 0) crowd(quads, columns, size);
        scene.setQuads(quads);
        for (int count = between(0, 6); count > 0; --count)
            scene.spawnLight(decimal(-1, 15) * size, decimal(-1, 15) * size, decimal(-0.5, 1.5) * size,
                             decimal(-50, 400), decimal(0, 400), decimal(0, 255), decimal(0, 6) * size);
        settings(size);
    }

    Scene scene;

private:
    int between(int low, int high) { return low + static_cast<int>(random_() % unsigned(high - low + 1)); }
    float decimal(double low, double high) {
        return static_cast<float>(low + (high - low) * (between(0, 1 << 20) / double(1 << 20)));
    }

    std::unique_ptr<LivePicture> randomPicture() {
        auto picture = std::make_unique<LivePicture>(between(1, 9), between(1, 9), 0, 0, 0);
        fill(*picture->get(), opaque_ ? 0 : between(0, 3));
        if (between(0, 2) == 0 && !opaque_) {
            LivePicture map(between(1, 5), between(1, 5), 0, 0, 0);
            fill(*map, 2);
            insertReflection(**picture, *map);
        }
        return picture;
    }
    void fill(PlushImage& image, int kind) {
        for (int i = 0; i < image.width * image.height; ++i) {
            unsigned char* pixel = image.pixels + i * 4;
            for (int channel = 0; channel < 3; ++channel)
                pixel[channel] = static_cast<unsigned char>(between(0, 255));
            const int alphas[] = {255, between(0, 1) * 255, between(0, 255), between(0, 2) * 127};
            pixel[3] = static_cast<unsigned char>(alphas[kind]);
            if (between(0, 9) == 0) std::memset(pixel, 0, 3);
        }
    }
    TileTable randomTable(TileLayer layer, int columns) {
        TileTable table;
        const bool offsets = layer == TileLayer::RoofOffsets || layer == TileLayer::FloorOffsets;
        const int range = between(0, 3) * 4;
        const int filled = between(10, 100);
        for (int x = 0; x < columns; ++x) {
            table.emplace_back();
            for (int rows = !opaque_ && between(0, 8) == 0 ? between(0, 14) : 14; rows > 0; --rows) {
                int entry = offsets ? between(-range, range) : between(-1, 6);
                if (layer == TileLayer::Walls && between(0, 3) != 0) entry = 0;
                if (!offsets && layer != TileLayer::Walls && between(0, 100) > filled) entry = 0;
                table.back().push_back(entry);
            }
        }
        return table;
    }
    void placePlayer(int columns, float size) {
        scene.player.x = decimal(0, columns) * size;
        scene.player.y = decimal(0, 14) * size;
        if (between(0, 4) == 0 && !opaque_) scene.player.x = static_cast<float>(between(0, columns)) * size;
        scene.player.height = decimal(-0.5, 1.5) * size;
        scene.player.rotation =
            between(0, 3) == 0 ? static_cast<float>(between(0, 8)) * 0.78539816f : decimal(-7, 7);
        scene.player.tilt = between(0, 1) == 0 ? 0 : decimal(-1.6, 1.6);
    }
    Quad randomQuad(int columns, float size) {
        const float x = decimal(0, columns) * size, y = decimal(0, 14) * size, z = decimal(0, 1) * size;
        const auto corner = [&]() {
            return Vec3{x + decimal(-1, 1) * size, y + decimal(-1, 1) * size, z + decimal(-1, 1) * size};
        };
        Quad quad;
        quad.tl = corner();
        quad.tr = corner();
        quad.br = corner();
        quad.bl = corner();
        if (between(0, 5) == 0) quad.bl = quad.tr;
        quad.texture = between(-1, 6);
        return quad;
    }
    // Enough quads for trees, some of them one behind the other in one place.
    void crowd(std::vector<Quad>& quads, int columns, float size) {
        quads.push_back(randomQuad(columns, size));
        for (int count = between(20, 90); count > 0; --count) {
            const std::size_t any = static_cast<std::size_t>(between(0, static_cast<int>(quads.size()) - 1));
            quads.push_back(between(0, 2) == 0 ? randomQuad(columns, size) : Quad(quads[any]));
            if (between(0, 5) == 0) quads.back().texture = between(1, 5);
        }
    }
    void settings(float size) {
        scene.settings.renderDistance = decimal(0, 14) * size;
        scene.setFieldOfView(between(1, 150));
        scene.settings.rayDepth = between(-1, 3);
        scene.settings.accuracy = between(0, 5);
        scene.settings.reflection = decimal(0, 1.5);
        scene.settings.lightMinimum = decimal(0, 1);
        scene.settings.lightMaximum = decimal(0, 3);
        scene.settings.fogRed = between(-10, 300);
    }

    std::mt19937 random_;
    bool opaque_;
    std::vector<std::unique_ptr<LivePicture>> textures_;
};

}  // namespace kelmora
