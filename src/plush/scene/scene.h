#pragma once

#include <cstdint>
#include <vector>

#include "image/plush_image.h"
#include "plush/scene/geometry.h"
#include "plush/scene/quad_grid.h"
#include "plush/scene/tile_flags.h"
#include "plush/scene/tile_map.h"

namespace kelmora {

// Where the player stands and looks. Angles in radians; rotation 0 looks along x, a positive tilt down.
struct Player {
    float x = 24;
    float y = 24;
    float height = 6;  // below the roof
    float rotation = 0;
    float tilt = 0;
};

struct Position {
    float x;
    float y;
};

// How the scene is drawn.
struct SceneSettings {
    float renderDistance = 160;
    double fieldOfView = 1.5708;  // half the picture's width is this much of a step to the side
    std::int32_t rayDepth = 2;
    std::int32_t accuracy = 4;  // side of the square that one ray colours, in pixels
    float reflection = 0.15f;
    float lightMinimum = 0.25f;
    float lightMaximum = 1;
    std::int32_t fogRed = 0;
    std::int32_t fogGreen = 0;
    std::int32_t fogBlue = 255;
};

enum class TileLayer { Walls, Roofs, Floors, RoofOffsets, FloorOffsets };

// All that a walk through tiles is drawn from. Images are borrowed: scripts may kill them at any time, so
// whoever draws asks the registry first.
class Scene {
public:
    Player player;
    SceneSettings settings;
    std::vector<LightSource> lights;

    void setTiles(TileLayer layer, TileTable table);
    // Index 0 is never used.
    void setTextures(std::vector<PlushImage*> textures);
    void setQuads(std::vector<Quad> quads);
    void setTileSize(float size);

    float tileSize() const { return tileSize_; }
    const std::vector<PlushImage*>& textures() const { return textures_; }
    const std::vector<Quad>& quads() const { return quads_; }
    // What follows from the tables; made anew after a change.
    const TileMap& map() const;
    const QuadGrid& quadGrid() const;
    const TileFlags& tileFlags() const;

    // z is counted from the roof downwards.
    void spawnLight(float x, float y, float z, float r, float g, float b, float radius);
    // Whole degrees in give the same whole degrees back.
    void setFieldOfView(double degrees);
    double fieldOfViewDegrees() const;
    // Where the player would stand after a step ahead, or to the side.
    Position afterMove(double distance, bool forward) const;

private:
    TileTable tiles_[5];
    std::vector<PlushImage*> textures_;
    std::vector<Quad> quads_;
    float tileSize_ = 16;
    mutable bool mapIsStale_ = false;
    mutable bool gridIsStale_ = false;
    mutable bool flagsAreStale_ = false;
    mutable TileMap map_;
    mutable QuadGrid quadGrid_;
    mutable TileFlags flags_;
};

}  // namespace kelmora
