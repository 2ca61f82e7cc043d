#include "plush/scene/raycast.h"

#include <algorithm>
#include <cstring>

#include "image/row_workers.h"
#include "plush/scene/fast_tracer.h"
#include "plush/scene/plain_tracer.h"

namespace kelmora {
namespace {

// The picture as squares of one colour.
class Blocks {
public:
    Blocks(PlushImage& output, std::int32_t side) : output_(output), side_(side) {}

    std::int32_t rows() const { return count(output_.height); }
    std::int32_t columns() const { return count(output_.width); }
    double u(std::int32_t column) const { return across(column, output_.width); }
    double v(std::int32_t row) const { return across(row, output_.height); }

    void fill(std::int32_t column, std::int32_t row, const Vec3& colour) {
        const unsigned char pixel[4] = {byteOf(colour.x), byteOf(colour.y), byteOf(colour.z), 255};
        const std::int64_t bottom = std::min<std::int64_t>(left(row) + side_, output_.height);
        const std::int64_t right = std::min<std::int64_t>(left(column) + side_, output_.width);
        for (std::int64_t y = left(row); y < bottom; ++y)
            for (std::int64_t x = left(column); x < right; ++x)
                std::memcpy(output_.pixels + (y * output_.width + x) * 4, pixel, 4);
    }

private:
    double across(std::int32_t block, std::int32_t pixels) const {
        return 2.0 * static_cast<double>(left(block)) / pixels - 1;
    }
    std::int64_t left(std::int32_t block) const { return std::int64_t{block} * side_; }
    std::int32_t count(std::int32_t pixels) const {
        return static_cast<std::int32_t>((std::int64_t{pixels} + side_ - 1) / side_);
    }

    PlushImage& output_;
    std::int64_t side_;
};

template <typename Tracer>
void drawBlocks(const RenderScene& scene, const Tracer& tracer, Blocks& blocks, std::int32_t firstRow,
                std::int32_t lastRow) {
    TraceWork work;
    Ray ray;
    ray.origin = scene.camera.eye;
    ray.tileX = scene.camera.tileX;
    ray.tileY = scene.camera.tileY;
    for (std::int32_t row = firstRow; row < lastRow; ++row) {
        const double v = blocks.v(row);
        for (std::int32_t column = 0; column < blocks.columns(); ++column) {
            const double u = blocks.u(column);
            ray.direction = normalised(scene.camera.directionAt(u, v));
            blocks.fill(column, row, tracer.trace(ray, 0, fogMultiplierAt(u, v), work));
        }
    }
}

void drawFog(const RenderScene& scene, Blocks& blocks) {
    for (std::int32_t row = 0; row < blocks.rows(); ++row)
        for (std::int32_t column = 0; column < blocks.columns(); ++column)
            blocks.fill(column, row, scene.fog);
}

template <typename Tracer>
void drawWith(const RenderScene& scene, Blocks& blocks, std::int32_t workers) {
    const Tracer tracer(scene);
    runRows(blocks.rows(), std::min(workers, blocks.rows()),
            [&](std::int32_t first, std::int32_t last) { drawBlocks(scene, tracer, blocks, first, last); });
}

void draw(const Scene& scene, PlushImage& output, std::int32_t workers, bool plainly) {
    if (output.width < 1 || output.height < 1) return;
    const RenderScene constant(scene, output);
    Blocks blocks(output, constant.accuracy);
    if (constant.isFogOnly())
        drawFog(constant, blocks);
    else if (plainly || !constant.flags.isLaidOut())
        drawWith<PlainTracer>(constant, blocks, workers);
    else
        drawWith<FastTracer>(constant, blocks, workers);
}

}  // namespace

void renderScene(const Scene& scene, PlushImage& output, std::int32_t workers) {
    draw(scene, output, workers, false);
}

void renderScenePlainly(const Scene& scene, PlushImage& output, std::int32_t workers) {
    draw(scene, output, workers, true);
}

}  // namespace kelmora
