#include "plush/scene/projection.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <vector>

#include "image/row_workers.h"
#include "plush/scene/ray_kernels.h"
#include "plush/scene/raycast.h"
#include "plush/scene/scene_faces.h"
#include "plush/scene/scene_lights.h"

namespace kelmora {
namespace {

// Faces are cut off at this distance ahead of the eye.
constexpr double nearPlane = 1e-6;
// Lets no gap stand between faces that share an edge, in pixels.
constexpr double edgeTolerance = 1e-6;
// Fields of view beyond these have no plane of projection.
constexpr double narrowest = 1e-6;
constexpr double widest = 1e6;
constexpr std::uint32_t noFace = 0xffffffffu;

enum class TextureForm : unsigned char { Opaque, Cutout, Translucent };

TextureForm textureForm(const SceneTexture& texture) {
    TextureForm form = TextureForm::Opaque;
    const std::int64_t texels = std::int64_t{texture.width} * texture.height;
    for (std::int64_t i = 0; i < texels; ++i) {
        const unsigned char alpha = texture.pixels[i * 4 + 3];
        if (alpha != 0 && alpha != 255) return TextureForm::Translucent;
        if (alpha == 0) form = TextureForm::Cutout;
    }
    return form;
}

struct ScreenPoint {
    double x;
    double y;
};

struct FarFace {
    double squared;
    SceneFace face;
};

class Projection {
public:
    Projection(const RenderScene& scene, std::size_t textures, PlushImage& output)
        : scene_(scene),
          output_(output),
          lights_(scene),
          u_(columnsInRuns(output.width, [&](std::int32_t x) { return 2.0 * x / output.width - 1; })),
          nearness_(pixelCount(output) + rayRunMargin),
          numbers_(pixelCount(output), noFace) {
        forms_.resize(textures, TextureForm::Opaque);
        for (std::size_t i = 0; i < textures; ++i)
            if (const SceneTexture* texture = scene.texture(static_cast<std::int32_t>(i)))
                forms_[i] = textureForm(*texture);
    }

    // What hides what stands behind it; the rest waits for mixing.
    void drawSolid() {
        forEachFace(
            scene_, [this](std::int32_t texture) { return isSolid(texture); },
            [this](const SceneFace& face) {
                if (formOf(face) == TextureForm::Translucent)
                    translucent_.push_back({squaredDistance(face), face});
                else
                    drawSolid(face);
            });
    }

    void shadeRows(std::int32_t first, std::int32_t last) {
        RayRun run{};
        std::array<unsigned char, rayRunLength * 4> colours;
        for (std::int32_t y = first; y < last; ++y)
            for (std::int32_t x = 0; x < output_.width; x += static_cast<std::int32_t>(rayRunLength)) {
                const std::int32_t count =
                    std::min(output_.width - x, static_cast<std::int32_t>(rayRunLength));
                see(x, y, static_cast<std::size_t>(count), run);
                kernels_.shade(scene_, run, colours.data());
                std::copy_n(colours.data(), count * 4, bytesAt(x, y));
            }
    }

    void mixTranslucent() {
        std::stable_sort(translucent_.begin(), translucent_.end(),
                         [](const FarFace& a, const FarFace& b) { return a.squared > b.squared; });
        for (const FarFace& far : translucent_)
            rasterise(far.face, [&](const FaceSpan& span) {
                span.forEachPixel(u_, [&](std::int32_t x, double nearness) {
                    if (nearness >= nearness_[place(x, span.y)]) mix(far.face, x, span.y);
                });
            });
    }

private:
    // Some pixels of a face next to each other; it is as near as base + slope * u.
    struct FaceSpan {
        std::int32_t y;
        std::int32_t first;
        std::int32_t end;
        double base;
        double slope;

        template <typename Visit>
        void forEachPixel(const std::vector<double>& u, const Visit& visit) const {
            for (std::int32_t x = first; x < end; ++x) {
                const double nearness = base + slope * u[static_cast<std::size_t>(x)];
                if (nearness > 0) visit(x, nearness);
            }
        }
    };

    static std::size_t pixelCount(const PlushImage& output) {
        return static_cast<std::size_t>(output.width) * static_cast<std::size_t>(output.height);
    }
    TextureForm formOf(const SceneFace& face) const { return forms_[static_cast<std::size_t>(face.texture)]; }
    bool isSolid(std::int32_t texture) const {
        return scene_.texture(texture) && forms_[static_cast<std::size_t>(texture)] == TextureForm::Opaque;
    }
    double squaredDistance(const SceneFace& face) const {
        Vector sum;
        for (int i = 0; i < face.cornerCount; ++i) sum = sum + face.corners[i];
        const Vector way = sum * (1.0 / face.cornerCount) - scene_.camera.eye;
        return dot(way, way);
    }
    std::size_t place(std::int32_t x, std::int32_t y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(output_.width) +
               static_cast<std::size_t>(x);
    }
    double u(std::int32_t x) const { return u_[static_cast<std::size_t>(x)]; }
    double v(double y) const { return 2 * y / output_.height - 1; }
    RayUnderWay rayThrough(std::int32_t x, std::int32_t y) const {
        Ray ray;
        ray.origin = scene_.camera.eye;
        ray.direction = normalised(scene_.camera.directionAt(u(x), v(y)));
        return RayUnderWay(ray, fogMultiplierAt(u(x), v(y)), false);
    }
    static const unsigned char* texelOf(const SurfaceHit& hit) {
        return texelAt(hit.texture->pixels, hit.texture->width, hit.texture->height, hit.u, hit.v);
    }
    bool meet(const RayUnderWay& ray, const SceneFace& face, SurfaceHit& hit) const {
        const double upright = face.acrossX ? (face.boundary - ray.origin.x) * ray.inverse.x
                                            : (face.boundary - ray.origin.y) * ray.inverse.y;
        return meetFace(scene_, ray, face, upright, hit) && hit.distance < scene_.renderDistance;
    }
    // What the solid faces show from a pixel on.
    void see(std::int32_t x, std::int32_t y, std::size_t count, RayRun& run) const {
        const std::uint32_t* numbers = &numbers_[place(x, y)];
        for (std::size_t i = 0; i < count;) {
            std::size_t end = i + 1;
            while (end < count && numbers[end] == numbers[i]) ++end;
            const std::int32_t column = x + static_cast<std::int32_t>(i);
            if (numbers[i] == noFace)
                for (; i < end; ++i) run.setFog(i);
            else if (const SceneFace& face = faces_[numbers[i]];
                     face.kind == SurfaceKind::Quad || formOf(face) != TextureForm::Opaque)
                for (; i < end; ++i) seeExactly(face, x + static_cast<std::int32_t>(i), y, i, run);
            else
                seeSpan(face, column, y, i, end - i, run);
            i = end;
        }
    }
    void seeExactly(const SceneFace& face, std::int32_t x, std::int32_t y, std::size_t i, RayRun& run) const {
        const RayUnderWay ray = rayThrough(x, y);
        run.setFog(i);
        run.fogMultiplier[i] = ray.fogMultiplier;
        SurfaceHit hit{};
        if (meet(ray, face, hit)) run.setHit(i, texelOf(hit), hit.distance, lights_.at(ray, hit));
    }
    void seeSpan(const SceneFace& face, std::int32_t x, std::int32_t y, std::size_t first, std::size_t count,
                 RayRun& run) const {
        const double* nearness = &nearness_[place(x, y)];
        kernels_.map(scene_.camera, rowOf(face, v(y)), &u_[static_cast<std::size_t>(x)], nearness, first,
                     count, run);
        const bool isSlab = face.kind == SurfaceKind::RoofUnderside || face.kind == SurfaceKind::FloorTop;
        const bool isLit = lights_.reaches(face.leftX, face.leftY);
        for (std::size_t i = 0; i < count; ++i) {
            Vec3 light = lights_.least();
            if (isLit) {
                const Vector way = scene_.camera.directionAt(u(x + static_cast<std::int32_t>(i)), v(y));
                Vector position = scene_.camera.eye + way * (1 / nearness[i]);
                (isSlab         ? position.z
                 : face.acrossX ? position.x
                                : position.y) = isSlab ? face.corners[0].z : face.boundary;
                light = lights_.at(position, face.leftX, face.leftY);
            }
            run.red[first + i] = light.x;
            run.green[first + i] = light.y;
            run.blue[first + i] = light.z;
        }
    }
    // Slabs, walls and steps lie along axes.
    FaceRow rowOf(const SceneFace& face, double v) const {
        const Camera& camera = scene_.camera;
        const Vector middle = camera.forward + camera.up * (v * camera.halfHeight);
        const Vector slope = camera.right * camera.halfWidth;
        const auto coordinate = [&](double Vector::*axis, double from, double scale) {
            return FaceRow::Coordinate{(camera.eye.*axis - from) * scale, middle.*axis * scale,
                                       slope.*axis * scale};
        };
        const double size = scene_.tileSize;
        const double perTile = scene_.inverseTileSize;
        const auto alongX = coordinate(&Vector::x, face.x * size, perTile);
        const auto alongY = coordinate(&Vector::y, face.y * size, perTile);
        const SceneTexture* texture = scene_.texture(face.texture);
        if (face.kind == SurfaceKind::RoofUnderside || face.kind == SurfaceKind::FloorTop)
            return {alongX, alongY, texture, v};
        const double top = face.corners[0].z;
        const double bottom = face.corners[2].z;
        const auto down = face.kind == SurfaceKind::Wall ? coordinate(&Vector::z, size, -perTile)
                                                         : coordinate(&Vector::z, top, -1 / (top - bottom));
        return {face.acrossX ? alongY : alongX, down, texture, v};
    }
    Vec3 shaded(const RayUnderWay& ray, const SurfaceHit& hit, const unsigned char* texel) const {
        return shadedColour(scene_, ray.fogMultiplier, texel, lights_.at(ray, hit), hit.distance);
    }
    unsigned char* bytesAt(std::int32_t x, std::int32_t y) const {
        return output_.pixels + (std::int64_t{y} * output_.width + x) * 4;
    }
    void store(std::int32_t x, std::int32_t y, const Vec3& colour) {
        const unsigned char bytes[] = {byteOf(colour.x), byteOf(colour.y), byteOf(colour.z), 255};
        std::copy(std::begin(bytes), std::end(bytes), bytesAt(x, y));
    }

    void drawSolid(const SceneFace& face) {
        const bool hasEdgesToTest =
            formOf(face) != TextureForm::Opaque ||
            !(face.kind == SurfaceKind::Wall || face.kind == SurfaceKind::RoofUnderside ||
              face.kind == SurfaceKind::FloorTop);
        const auto number = static_cast<std::uint32_t>(faces_.size());
        bool isSeen = false;
        rasterise(face, [&](const FaceSpan& span) {
            double* nearness = &nearness_[place(0, span.y)];
            std::uint32_t* numbers = &numbers_[place(0, span.y)];
            const auto first = static_cast<std::size_t>(span.first);
            if (!hasEdgesToTest)
                isSeen |= kernels_.cover(span.base, span.slope, &u_[first],
                                         static_cast<std::size_t>(span.end) - first, number, nearness + first,
                                         numbers + first);
            else
                span.forEachPixel(u_, [&](std::int32_t x, double near) {
                    SurfaceHit hit{};
                    if (near <= nearness[x] * sameDepth || !meet(rayThrough(x, span.y), face, hit) ||
                        texelOf(hit)[3] == 0)
                        return;
                    nearness[x] = near;
                    numbers[x] = number;
                    isSeen = true;
                });
        });
        if (isSeen) faces_.push_back(face);
    }

    void mix(const SceneFace& face, std::int32_t x, std::int32_t y) {
        const RayUnderWay ray = rayThrough(x, y);
        SurfaceHit hit{};
        if (!meet(ray, face, hit)) return;
        const unsigned char* texel = texelOf(hit);
        if (texel[3] == 0) return;
        if (texel[3] == 255) {
            store(x, y, shaded(ray, hit, texel));
            return;
        }
        const float weight = static_cast<float>(texel[3]) / 255;
        const unsigned char* under = bytesAt(x, y);
        const Vec3 behind{static_cast<float>(under[0]), static_cast<float>(under[1]),
                          static_cast<float>(under[2])};
        store(x, y,
              foggedTexel(scene_, ray.fogMultiplier, texel, hit.distance) * weight + behind * (1 - weight));
    }

    // The part of the face in front of the near plane, in pixels; returns the count of its corners.
    int project(const SceneFace& face, std::array<ScreenPoint, 5>& points) const {
        const Camera& camera = scene_.camera;
        int count = 0;
        const auto add = [&](const Vector& corner) {
            ProjectedPoint point;
            if (count < 5 && projectPoint(camera, output_.width, output_.height, corner, point))
                points[static_cast<std::size_t>(count++)] = {point.x, point.y};
        };
        for (int i = 0; i < face.cornerCount; ++i) {
            const Vector& one = face.corners[i];
            const Vector& next = face.corners[(i + 1) % face.cornerCount];
            const double ahead = dot(one - camera.eye, camera.forward);
            const double nextAhead = dot(next - camera.eye, camera.forward);
            if (ahead >= nearPlane) add(one);
            if ((ahead >= nearPlane) != (nextAhead >= nearPlane)) {
                const double share = (nearPlane - ahead) / (nextAhead - ahead);
                add(one + (next - one) * share);
            }
        }
        return count;
    }

    // Calls `plot` with the span of the face in each row.
    template <typename Plot>
    void rasterise(const SceneFace& face, const Plot& plot) const {
        std::array<ScreenPoint, 5> points;
        const int count = project(face, points);
        if (count < 3) return;
        const Camera& camera = scene_.camera;
        const Vector normal = cross(face.corners[1] - face.corners[0], face.corners[2] - face.corners[0]);
        const double offset = dot(normal, face.corners[0] - camera.eye);
        if (offset == 0 || !std::isfinite(offset)) return;
        double top = HUGE_VAL;
        double bottom = -HUGE_VAL;
        for (int i = 0; i < count; ++i) {
            top = std::min(top, points[static_cast<std::size_t>(i)].y);
            bottom = std::max(bottom, points[static_cast<std::size_t>(i)].y);
        }
        const std::int32_t first = pixelFrom(top, output_.height);
        const std::int32_t last = pixelFrom(bottom + 2 * edgeTolerance, output_.height);
        const double slope = dot(normal, camera.right) * camera.halfWidth / offset;
        for (std::int32_t y = first; y < last; ++y) {
            double left = HUGE_VAL;
            double right = -HUGE_VAL;
            for (int i = 0; i < count; ++i)
                widen(points[static_cast<std::size_t>(i)], points[static_cast<std::size_t>((i + 1) % count)],
                      y, left, right);
            if (!(left <= right)) continue;
            const double base =
                (dot(normal, camera.forward) + dot(normal, camera.up) * v(y) * camera.halfHeight) / offset;
            const std::int32_t end = pixelFrom(right + 2 * edgeTolerance, output_.width);
            const std::int32_t start = pixelFrom(left, output_.width);
            if (start < end) plot(FaceSpan{y, start, end, base, slope});
        }
    }

    // The first pixel at or behind a coordinate, inside the picture.
    static std::int32_t pixelFrom(double coordinate, std::int32_t limit) {
        return static_cast<std::int32_t>(
            std::clamp(std::ceil(coordinate - edgeTolerance), 0.0, static_cast<double>(limit)));
    }
    static void widen(const ScreenPoint& a, const ScreenPoint& b, double y, double& left, double& right) {
        const double low = std::min(a.y, b.y) - edgeTolerance;
        const double high = std::max(a.y, b.y) + edgeTolerance;
        if (!(y >= low && y <= high)) return;
        if (std::fabs(b.y - a.y) < 1e-12) {
            left = std::min({left, a.x, b.x});
            right = std::max({right, a.x, b.x});
            return;
        }
        const double share = std::clamp((y - a.y) / (b.y - a.y), 0.0, 1.0);
        const double x = a.x + (b.x - a.x) * share;
        left = std::min(left, x);
        right = std::max(right, x);
    }

    const RenderScene& scene_;
    PlushImage& output_;
    const RayKernels& kernels_ = rayKernels();
    SceneLights lights_;
    std::vector<double> u_;
    std::vector<TextureForm> forms_;
    std::vector<double> nearness_;        // of each pixel, 1 / distance ahead; 0 where nothing is
    std::vector<std::uint32_t> numbers_;  // of its face
    std::vector<SceneFace> faces_;
    std::vector<FarFace> translucent_;
};

}  // namespace

void projectScene(const Scene& scene, PlushImage& output, std::int32_t workers) {
    if (output.width < 1 || output.height < 1) return;
    const RenderScene constant(scene, output);
    const double width = constant.camera.halfWidth;
    if (constant.isFogOnly() || !(width > narrowest && width < widest)) {
        renderScene(scene, output, workers);
        return;
    }
    Projection projection(constant, scene.textures().size(), output);
    projection.drawSolid();
    runRows(output.height, std::min(workers, output.height),
            [&](std::int32_t first, std::int32_t last) { projection.shadeRows(first, last); });
    projection.mixTranslucent();
}

bool projectPoint(const Camera& camera, double width, double height, const Vector& point,
                  ProjectedPoint& projected) {
    const Vector way = point - camera.eye;
    const double depth = dot(way, camera.forward);
    if (!(depth >= nearPlane / 2)) return false;
    const double u = dot(way, camera.right) / (depth * camera.halfWidth);
    const double v = dot(way, camera.up) / (depth * camera.halfHeight);
    projected = {(u + 1) / 2 * width, (v + 1) / 2 * height, depth};
    return std::isfinite(projected.x) && std::isfinite(projected.y);
}

}  // namespace kelmora
