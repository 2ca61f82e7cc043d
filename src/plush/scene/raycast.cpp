#include "plush/scene/raycast.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <cstring>

#include "image/row_workers.h"
#include "plush/scene/fast_tracer.h"
#include "plush/scene/plain_tracer.h"
#include "plush/scene/ray_kernels.h"

namespace kelmora {
namespace {

void storePixel(unsigned char* pixel, const Vec3& colour) {
    pixel[0] = byteOf(colour.x);
    pixel[1] = byteOf(colour.y);
    pixel[2] = byteOf(colour.z);
    pixel[3] = 255;
}

// The picture as squares of one colour.
class Blocks {
public:
    Blocks(PlushImage& output, std::int32_t side) : output_(output), side_(side) {}

    std::int32_t rows() const { return count(output_.height); }
    std::int32_t columns() const { return count(output_.width); }
    double u(std::int32_t column) const { return across(column, output_.width); }
    double v(std::int32_t row) const { return across(row, output_.height); }

    // Squares next to each other from their pixels.
    void fill(std::int32_t column, std::int32_t row, std::int32_t count, const unsigned char* pixels) {
        const std::int64_t bottom = std::min<std::int64_t>(left(row) + side_, output_.height);
        for (std::int64_t y = left(row); y < bottom; ++y) {
            unsigned char* line = output_.pixels + y * output_.width * 4;
            if (side_ == 1) {
                std::memcpy(line + std::int64_t{column} * 4, pixels, static_cast<std::size_t>(count) * 4);
                continue;
            }
            for (std::int32_t i = 0; i < count; ++i) {
                const std::int64_t right = std::min<std::int64_t>(left(column + i) + side_, output_.width);
                for (std::int64_t x = left(column + i); x < right; ++x)
                    std::memcpy(line + x * 4, pixels + std::int64_t{i} * 4, 4);
            }
        }
    }
    void fill(std::int32_t column, std::int32_t row, const Vec3& colour) {
        unsigned char pixel[4];
        storePixel(pixel, colour);
        fill(column, row, 1, pixel);
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

void drawPlainRow(const RenderScene& scene, const PlainTracer& tracer, Blocks& blocks, std::int32_t row,
                  TraceWork& work) {
    Ray ray;
    ray.origin = scene.camera.eye;
    ray.tileX = scene.camera.tileX;
    ray.tileY = scene.camera.tileY;
    const double v = blocks.v(row);
    for (std::int32_t column = 0; column < blocks.columns(); ++column) {
        const double u = blocks.u(column);
        ray.direction = normalised(scene.camera.directionAt(u, v));
        blocks.fill(column, row, tracer.trace(ray, 0, fogMultiplierAt(u, v), work));
    }
}

// Whether directions are finite, and their squares.
bool isTame(const Camera& camera) {
    constexpr double limit = 1e100;
    return std::fabs(camera.halfWidth) < limit && std::fabs(camera.halfHeight) < limit;
}

// Draws rows with the fast tracer, some rays next to each other at a time.
class FastRows {
public:
    FastRows(const RenderScene& scene, Blocks& blocks)
        : scene_(scene), tracer_(scene), kernels_(rayKernels()), blocks_(blocks) {
        const TileCell& cell = scene.map.cell(scene.map.find(scene.camera.tileX, scene.camera.tileY));
        floorHeight_ = scene.floorHeight(cell);
        roofHeight_ = scene.roofHeight(cell);
        u_ = columnsInRuns(blocks.columns(), [&](std::int32_t column) { return blocks.u(column); });
    }

    void draw(std::int32_t row, TraceWork& work) const {
        RayRun run{};
        const double v = blocks_.v(row);
        for (std::size_t first = 0; first + rayRunLength <= u_.size(); first += rayRunLength) {
            kernels_.aim(scene_, &u_[first], v, floorHeight_, roofHeight_, run);
            const std::int32_t column = static_cast<std::int32_t>(first);
            drawRun(run, column, std::min<std::int32_t>(rayRunLength, blocks_.columns() - column), row, work);
        }
    }

private:
    void drawRun(RayRun& run, std::int32_t firstColumn, std::int32_t count, std::int32_t row,
                 TraceWork& work) const {
        // Pixels with layers are not for the kernels.
        std::array<std::size_t, rayRunLength> layered;
        std::array<Vec3, rayRunLength> colours;
        std::size_t layeredCount = 0;
        RayScratch& scratch = work.depths.front();
        for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
            const RayUnderWay ray = run.ray(scene_.camera.eye, i, scene_.rayDepth > 0);
            scratch.clear();
            work.mirroredRaysLeft = mirroredRaysOfPixel;
            const FastTracer::Sight sight =
                tracer_.look(ray, scene_.camera.tileX, scene_.camera.tileY, {run.floor[i], run.roof[i]},
                             scratch, work.mirroredRaysLeft);
            run.setFog(i);
            if (!scratch.layers.empty()) {
                layered[layeredCount] = i;
                colours[layeredCount++] = tracer_.compose(ray, sight, 0, work);
            } else if (sight.texel) {
                run.setHit(i, sight.texel, sight.distance, sight.light);
            }
        }
        std::array<unsigned char, rayRunLength * 4> pixels;
        kernels_.shade(scene_, run, pixels.data());
        for (std::size_t i = 0; i < layeredCount; ++i) storePixel(&pixels[layered[i] * 4], colours[i]);
        blocks_.fill(firstColumn, row, count, pixels.data());
    }

    const RenderScene& scene_;
    FastTracer tracer_;
    const RayKernels& kernels_;
    Blocks& blocks_;
    double floorHeight_;
    double roofHeight_;
    std::vector<double> u_;
};

void drawFog(const RenderScene& scene, Blocks& blocks) {
    for (std::int32_t row = 0; row < blocks.rows(); ++row)
        for (std::int32_t column = 0; column < blocks.columns(); ++column)
            blocks.fill(column, row, scene.fog);
}

// Rows differ in what they cost, so that each worker takes the next one that is left.
template <typename DrawRow>
void shareBlockRows(std::int32_t rows, std::int32_t workers, const DrawRow& drawRow) {
    std::atomic<std::int32_t> next{0};
    const std::int32_t shares = std::clamp(workers, 1, rows);
    runRows({shares, shares}, [&](std::int32_t first, std::int32_t last) {
        TraceWork work;
        for (std::int32_t row = 0; first < last && (row = next.fetch_add(1)) < rows;) drawRow(row, work);
    });
}

void draw(const Scene& scene, PlushImage& output, std::int32_t workers, bool plainly) {
    if (output.width < 1 || output.height < 1) return;
    const RenderScene constant(scene, output);
    Blocks blocks(output, constant.accuracy);
    if (constant.isFogOnly()) {
        drawFog(constant, blocks);
    } else if (plainly || !constant.flags.isLaidOut() || !isTame(constant.camera)) {
        const PlainTracer tracer(constant);
        shareBlockRows(blocks.rows(), workers, [&](std::int32_t row, TraceWork& work) {
            drawPlainRow(constant, tracer, blocks, row, work);
        });
    } else {
        const FastRows rows(constant, blocks);
        shareBlockRows(blocks.rows(), workers,
                       [&](std::int32_t row, TraceWork& work) { rows.draw(row, work); });
    }
}

}  // namespace

void renderScene(const Scene& scene, PlushImage& output, std::int32_t workers) {
    draw(scene, output, workers, false);
}

void renderScenePlainly(const Scene& scene, PlushImage& output, std::int32_t workers) {
    draw(scene, output, workers, true);
}

}  // namespace kelmora
