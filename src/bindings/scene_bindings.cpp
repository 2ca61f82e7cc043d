#include <algorithm>
#include <array>
#include <cmath>

#include "base/saturating.h"
#include "bindings/image_arguments.h"
#include "bindings/modules.h"
#include "bindings/runtime.h"
#include "bindings/scene_arguments.h"
#include "image/row_workers.h"
#include "plush/scene/collision.h"
#include "plush/scene/projected_point.h"
#include "plush/scene/projection.h"
#include "plush/scene/raycast.h"

namespace kelmora {
namespace {

// The frame that `project` takes when it is told none.
constexpr std::int32_t screenWidth = 960;
constexpr std::int32_t screenHeight = 544;

Scene& sceneOf(const BindingCall& call) {
    return runtimeOf(call).scene;
}

float single(const BindingCall& call, std::size_t index, std::string_view name) {
    return static_cast<float>(call.number(index, name));
}

std::int32_t whole(const BindingCall& call, std::size_t index, std::string_view name) {
    return call.integer(index, name);
}

// The first arguments, all of which have to be there.
template <typename Value, std::size_t count>
std::array<Value, count> several(const BindingCall& call,
                                 Value (*read)(const BindingCall&, std::size_t, std::string_view),
                                 const std::string_view (&names)[count]) {
    call.require(count);
    std::array<Value, count> values;
    for (std::size_t i = 0; i < count; ++i) values[i] = read(call, i, names[i]);
    return values;
}

// The map

void setTileLayer(const BindingCall& call, std::size_t index, TileLayer layer, const char* name) {
    TileTable table;
    if (!convertTableOfTables(call.at(index), table))
        call.fail("argument " + std::to_string(index + 1) + " (" + name +
                  ") must be a table of integer tables");
    sceneOf(call).setTiles(layer, std::move(table));
}

void setQuadTable(const BindingCall& call, std::size_t index) {
    std::vector<Quad> quads;
    if (!convertQuadTable(call, call.at(index), QuadForm::Textured, quads))
        call.fail("argument " + std::to_string(index + 1) + " (quads) must be a table of quad tables");
    sceneOf(call).setQuads(std::move(quads));
}

Variable setMap(const BindingCall& call) {
    if (call.count() != 7) call.fail("expected 7 arguments");
    setTileLayer(call, 0, TileLayer::Walls, "walls");
    setTileLayer(call, 1, TileLayer::Roofs, "roofs");
    setTileLayer(call, 2, TileLayer::Floors, "floors");
    setTileLayer(call, 3, TileLayer::RoofOffsets, "roofsOff");
    setTileLayer(call, 4, TileLayer::FloorOffsets, "floorsOff");
    std::vector<PlushImage*> textures;
    if (!convertTextureTable(call.at(5), textures))
        call.fail(
            "argument 6 (textures) must be a table with first element nil, followed by image pointers or "
            "nil");
    sceneOf(call).setTextures(std::move(textures));
    setQuadTable(call, 6);
    return {};
}

Variable setQuads(const BindingCall& call) {
    setQuadTable(call, 0);
    return {};
}

Variable setSize(const BindingCall& call) {
    sceneOf(call).setTileSize(single(call, 0, "tileSize"));
    return {};
}

// The player

Variable setPlayerPosition(const BindingCall& call) {
    const auto [x, y] = several(call, single, {"x", "y"});
    sceneOf(call).player.x = x;
    sceneOf(call).player.y = y;
    return {};
}

Variable getPlayerPosition(const BindingCall& call) {
    const Player& player = sceneOf(call).player;
    return returnValues({Variable::number(player.x), Variable::number(player.y)});
}

Variable setPlayerHeight(const BindingCall& call) {
    const float height = single(call, 0, "height");
    sceneOf(call).player.height = call.count() > 1 ? height + single(call, 1, "offset") : height;
    return {};
}

Variable getPlayerHeight(const BindingCall& call) {
    return Variable::number(sceneOf(call).player.height);
}

Variable setPlayerRotation(const BindingCall& call) {
    sceneOf(call).player.rotation = single(call, 0, "rotation");
    return {};
}

Variable getPlayerRotation(const BindingCall& call) {
    return Variable::number(sceneOf(call).player.rotation);
}

Variable setTilt(const BindingCall& call) {
    sceneOf(call).player.tilt = single(call, 0, "tilt");
    return {};
}

Variable getTilt(const BindingCall& call) {
    return Variable::number(sceneOf(call).player.tilt);
}

Position askedMove(const BindingCall& call) {
    call.require(2);
    const double distance = call.number(0, "distance");
    return sceneOf(call).afterMove(distance, call.condition(1));
}

Variable movePlayer(const BindingCall& call) {
    const Position position = askedMove(call);
    sceneOf(call).player.x = position.x;
    sceneOf(call).player.y = position.y;
    return {};
}

Variable dontMovePlayer(const BindingCall& call) {
    const Position position = askedMove(call);
    return returnValues({Variable::integer(saturatingInt(static_cast<double>(position.x))),
                         Variable::integer(saturatingInt(static_cast<double>(position.y)))});
}

// How it is drawn

Variable setRenderDistance(const BindingCall& call) {
    sceneOf(call).settings.renderDistance = single(call, 0, "distance");
    return {};
}

Variable getRenderDistance(const BindingCall& call) {
    return Variable::number(sceneOf(call).settings.renderDistance);
}

Variable setFov(const BindingCall& call) {
    sceneOf(call).setFieldOfView(call.number(0, "fov"));
    return {};
}

Variable getFov(const BindingCall& call) {
    return Variable::integer(saturatingInt(sceneOf(call).fieldOfViewDegrees()));
}

Variable setAccuracy(const BindingCall& call) {
    sceneOf(call).settings.accuracy = call.integer(0, "accuracy");
    return {};
}

Variable getAccuracy(const BindingCall& call) {
    return Variable::integer(sceneOf(call).settings.accuracy);
}

Variable setRaytrace(const BindingCall& call) {
    sceneOf(call).settings.rayDepth = call.integer(0, "depth");
    return {};
}

Variable setReflection(const BindingCall& call) {
    sceneOf(call).settings.reflection = single(call, 0, "intensity");
    return {};
}

Variable setLightLevel(const BindingCall& call) {
    const auto [minimum, maximum] = several(call, single, {"min", "max"});
    sceneOf(call).settings.lightMinimum = minimum;
    sceneOf(call).settings.lightMaximum = maximum;
    return {};
}

Variable setFog(const BindingCall& call) {
    const auto [red, green, blue] = several(call, whole, {"r", "g", "b"});
    SceneSettings& settings = sceneOf(call).settings;
    settings.fogRed = red;
    settings.fogGreen = green;
    settings.fogBlue = blue;
    return {};
}

Variable spawnLight(const BindingCall& call) {
    const auto [x, y, z, r, g, b, radius] =
        several(call, single, {"x", "y", "z", "r", "g", "b", "intensity"});
    sceneOf(call).spawnLight(x, y, z, r, g, b, radius);
    return {};
}

Variable clearLights(const BindingCall& call) {
    sceneOf(call).lights.clear();
    return {};
}

Variable raycast(const BindingCall& call) {
    renderScene(sceneOf(call), imageArgument(call, 0, "output"), threadCount);
    return {};
}

Variable projection(const BindingCall& call) {
    projectScene(sceneOf(call), imageArgument(call, 0, "output"), threadCount);
    return {};
}

// Points into pictures

Variable plushProject(const BindingCall& call) {
    call.require(3);
    const double x = call.number(0, "x");
    const double y = call.number(1, "y");
    const double z = call.number(2, "z");
    const std::int32_t width = call.count() > 3 ? call.integer(3, "width") : screenWidth;
    const std::int32_t height = call.count() > 4 ? call.integer(4, "height") : screenHeight;
    const Camera camera = cameraOf(sceneOf(call), std::max(width, 1), std::max(height, 1));
    ProjectedPoint point;
    if (!projectPoint(camera, std::max(width, 1), std::max(height, 1), {x, y, z}, point)) return {};
    return returnValues({Variable::number(static_cast<float>(point.x)),
                         Variable::number(static_cast<float>(point.y)),
                         Variable::number(static_cast<float>(point.depth))});
}

// Points `[x, y, z]` and quads in one list.
Vector middleOf(const BindingCall& call, const Variable* element) {
    constexpr const char* expectation = "argument 1 (vertices) must be a table of points or quads";
    Quad quad;
    if (element && convertQuadValue(call, *element, QuadForm::Bare, quad))
        return quadTableCentre(std::span(&quad, 1));
    std::vector<const Variable*> coordinates;
    if (!element || !elementsOf(*element, coordinates) || coordinates.size() < 3) call.fail(expectation);
    double values[3];
    for (std::size_t i = 0; i < 3; ++i) {
        if (!coordinates[i] || !coordinates[i]->isNumeric()) call.fail(expectation);
        values[i] = numericValue(*coordinates[i], call.function(), "coordinate");
    }
    return {values[0], values[1], values[2]};
}

Variable plushSort(const BindingCall& call) {
    std::vector<const Variable*> elements;
    if (!elementsOf(call.at(0), elements))
        call.fail("argument 1 (vertices) must be a table of points or quads");
    const Vector eye = cameraOf(sceneOf(call), screenWidth, screenHeight).eye;
    struct Vertex {
        double squared;
        Variable value;
    };
    std::vector<Vertex> vertices;
    for (const Variable* element : elements) {
        const Vector way = middleOf(call, element) - eye;
        const double squared = dot(way, way);
        vertices.push_back({std::isnan(squared) ? 0 : squared, *element});
    }
    std::stable_sort(vertices.begin(), vertices.end(),
                     [](const Vertex& a, const Vertex& b) { return a.squared > b.squared; });
    std::vector<Variable> sorted;
    for (Vertex& vertex : vertices) sorted.push_back(std::move(vertex.value));
    return Variable::array(std::move(sorted));
}

constexpr BindingRow rows[] = {
    {"setMap", setMap},
    {"setQuads", setQuads},
    {"setSize", setSize},
    {"setPlayerPosition", setPlayerPosition},
    {"getPlayerPosition", getPlayerPosition},
    {"setPlayerHeight", setPlayerHeight},
    {"getPlayerHeight", getPlayerHeight},
    {"setPlayerRotation", setPlayerRotation},
    {"getPlayerRotation", getPlayerRotation},
    {"setTilt", setTilt},
    {"getTilt", getTilt},
    {"movePlayer", movePlayer},
    {"dontMovePlayer", dontMovePlayer},
    {"setRenderDistance", setRenderDistance},
    {"getRenderDistance", getRenderDistance},
    {"setFov", setFov},
    {"getFov", getFov},
    {"setAccuracy", setAccuracy},
    {"getAccuracy", getAccuracy},
    {"setRaytrace", setRaytrace},
    {"setReflection", setReflection},
    {"setLightLevel", setLightLevel},
    {"fog", setFog},
    {"spawnLight", spawnLight},
    {"clearLights", clearLights},
    {"raycast", raycast},
    {"projection", projection},
    {"project", plushProject},
    {"sortVertex", plushSort},
};

}  // namespace

std::span<const BindingRow> sceneBindings() {
    return rows;
}

}  // namespace kelmora
