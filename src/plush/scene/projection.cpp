#include "plush/scene/projection.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <memory>
#include <vector>

#include "image/row_workers.h"
#include "plush/scene/face_kernels.h"
#include "plush/scene/face_raster.h"
#include "plush/scene/open_pixels.h"
#include "plush/scene/raycast.h"
#include "plush/scene/scene_lights.h"
#include "plush/scene/texture_forms.h"

namespace kelmora {
namespace {

// Fields of view beyond these have no plane of projection.
constexpr double narrowest = 1e-6;
constexpr double widest = 1e6;
// What shading costs, about.
constexpr std::int64_t nanosecondsPerPixel = 4;
constexpr std::uint32_t noFace = 0xffffffffu;
// Faces this close are in one plane, where the first one drawn is seen.
constexpr double sameDepth = 1 + 1e-9;

// A face that some pixel shows.
struct SeenFace {
    SceneFace face;
    ScreenPlane nearness;
    bool isExact;  // each pixel meets it by itself
    // Of the others: texture coordinates times nearness.
    ScreenPlane along{};
    ScreenPlane down{};
    const SceneTexture* texture = nullptr;
    bool isLit = false;
};

struct FarFace {
    double squared;
    SceneFace face;
};

// Puts the faces into a picture: tiles' faces come in the order in which rays meet them, so that each pixel
// shows the first; quads by their nearness. Then each pixel is shaded once.
class Projection final : public FaceVisitor {
public:
    Projection(const RenderScene& scene, std::size_t textures, PlushImage& output)
        : scene_(scene),
          output_(output),
          lights_(scene),
          forms_(scene, textures),
          raster_(scene.camera, output.width, output.height),
          open_(output.width, output.height),
          numbers_(std::make_unique_for_overwrite<std::uint32_t[]>(static_cast<std::size_t>(output.width) *
                                                                   static_cast<std::size_t>(output.height))) {
        const std::size_t margin = faceRunLength + faceRunMargin;
        const std::size_t columns = static_cast<std::size_t>(output.width) + margin;
        u_.resize(columns);
        squaredU_.resize(columns);
        squaredAside_.resize(columns);
        for (std::size_t x = 0; x < columns - margin; ++x) {
            const double u = 2.0 * static_cast<double>(x) / output.width - 1;
            const double aside = u * scene.camera.halfWidth;
            u_[x] = u;
            squaredU_[x] = static_cast<float>(u * u);
            squaredAside_[x] = static_cast<float>(aside * aside);
        }
    }

    void drawSolid() { forEachFace(scene_, *this); }

    void shadeRows(std::int32_t first, std::int32_t last) const {
        FaceRun run{};
        std::array<unsigned char, faceRunLength * 4> colours;
        for (std::int32_t y = first; y < last; ++y) {
            open_.forEachOpen(y, 0, output_.width, [&](std::int32_t start, std::int32_t end) {
                std::fill(&numbers_[place(start, y)], &numbers_[place(start, y)] + (end - start), noFace);
            });
            for (std::int32_t x = 0; x < output_.width; x += static_cast<std::int32_t>(faceRunLength)) {
                const std::int32_t count =
                    std::min(output_.width - x, static_cast<std::int32_t>(faceRunLength));
                if (see(x, y, static_cast<std::size_t>(count), run))
                    kernels_.shade(scene_.fog, run, colours.data());
                else
                    kernels_.shadeEvenly(scene_.fog, lights_.least(), run, colours.data());
                std::copy_n(colours.data(), count * 4, bytesAt(x, y));
            }
        }
    }

    void mixTranslucent() {
        std::stable_sort(translucent_.begin(), translucent_.end(),
                         [](const FarFace& a, const FarFace& b) { return a.squared > b.squared; });
        for (const FarFace& far : translucent_)
            forEachPixel(far.face, [&](std::int32_t x, std::int32_t y, double nearness) {
                if (nearness >= nearnessAt(x, y)) mix(far.face, x, y);
            });
    }

    bool isSolid(std::int32_t texture) override {
        return scene_.texture(texture) && forms_.of(texture) == TextureForm::Opaque;
    }
    bool isClosed() override { return !open_.isAnyOpen(); }
    void visit(const SceneFace& face) override {
        const TextureForm form = forms_.of(face.texture);
        if (form == TextureForm::Translucent)
            translucent_.push_back({squaredDistance(face), face});
        else if (face.kind == SurfaceKind::Quad)
            drawQuad(face);
        else if (form == TextureForm::Cutout)
            drawCutout(face);
        else
            drawOpaque(face);
    }

private:
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
    double v(std::int32_t y) const { return 2.0 * y / output_.height - 1; }
    // How near the face is that a pixel shows; 0 where none is.
    double nearnessAt(std::int32_t x, std::int32_t y) const {
        return open_.isOpen(x, y) ? 0 : faces_[numbers_[place(x, y)]].nearness.at(u(x), v(y));
    }
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
    bool hides(const SceneFace& face, std::int32_t x, std::int32_t y) const {
        SurfaceHit hit{};
        return meet(rayThrough(x, y), face, hit) && texelOf(hit)[3] != 0;
    }

    // Calls `visit` with the pixels of a face and how near it is there.
    template <typename Visit>
    void forEachPixel(const SceneFace& face, const Visit& visit) {
        if (!raster_.take(face)) return;
        raster_.forEachSpan([&](std::int32_t y, std::int32_t first, std::int32_t end) {
            for (std::int32_t x = first; x < end; ++x)
                if (const double nearness = raster_.nearness().at(u(x), v(y)); nearness > 0)
                    visit(x, y, nearness);
        });
    }
    void drawQuad(const SceneFace& face) {
        bool isSeen = false;
        forEachPixel(face, [&](std::int32_t x, std::int32_t y, double nearness) {
            if (nearness <= nearnessAt(x, y) * sameDepth || !hides(face, x, y)) return;
            open_.close(x, y);
            numbers_[place(x, y)] = nextNumber();
            isSeen = true;
        });
        if (isSeen) faces_.push_back({face, raster_.nearness(), true});
    }
    void drawCutout(const SceneFace& face) {
        bool isSeen = false;
        forEachPixel(face, [&](std::int32_t x, std::int32_t y, double) {
            if (!open_.isOpen(x, y) || !hides(face, x, y)) return;
            open_.close(x, y);
            numbers_[place(x, y)] = nextNumber();
            isSeen = true;
        });
        if (isSeen) faces_.push_back({face, raster_.nearness(), true});
    }
    void drawOpaque(const SceneFace& face) {
        if (!raster_.take(face)) return;
        const ScreenPlane& nearness = raster_.nearness();
        const std::uint32_t number = nextNumber();
        bool isSeen = false;
        raster_.forEachSpan([&](std::int32_t y, std::int32_t first, std::int32_t end) {
            if (!open_.isAnyOpen(y)) return;
            // Rounding may put the ends of a face on edge behind the eye.
            while (first < end && !(nearness.at(u(first), v(y)) > 0)) ++first;
            while (first < end && !(nearness.at(u(end - 1), v(y)) > 0)) --end;
            std::uint32_t* numbers = &numbers_[place(0, y)];
            open_.close(y, first, end, [&](std::int32_t start, std::int32_t stop) {
                std::fill(numbers + start, numbers + stop, number);
                isSeen = true;
            });
        });
        if (isSeen) faces_.push_back(mapped(face, nearness));
    }
    std::uint32_t nextNumber() const { return static_cast<std::uint32_t>(faces_.size()); }

    // Slabs, walls and steps lie along axes.
    SeenFace mapped(const SceneFace& face, const ScreenPlane& nearness) const {
        const Camera& camera = scene_.camera;
        const auto coordinate = [&](double Vector::*axis, double from, double scale) {
            const ScreenPlane way{camera.forward.*axis, camera.right.*axis * camera.halfWidth,
                                  camera.up.*axis * camera.halfHeight};
            return (nearness * (camera.eye.*axis - from) + way) * scale;
        };
        const double size = scene_.tileSize;
        const double perTile = scene_.inverseTileSize;
        const auto alongX = coordinate(&Vector::x, face.x * size, perTile);
        const auto alongY = coordinate(&Vector::y, face.y * size, perTile);
        SeenFace seen{face, nearness, false};
        seen.texture = scene_.texture(face.texture);
        seen.isLit = lights_.reaches(face.leftX, face.leftY);
        const double top = face.corners[0].z;
        const double bottom = face.corners[2].z;
        seen.along = face.acrossX ? alongY : alongX;
        if (isSlab(face))
            seen.down = alongY;
        else if (face.kind == SurfaceKind::Wall)
            seen.down = coordinate(&Vector::z, size, -perTile);
        else
            seen.down = coordinate(&Vector::z, top, -1 / (top - bottom));
        return seen;
    }
    static bool isSlab(const SceneFace& face) {
        return face.kind == SurfaceKind::RoofUnderside || face.kind == SurfaceKind::FloorTop;
    }

    // What the solid faces show from a pixel on; false where all light is the least.
    bool see(std::int32_t x, std::int32_t y, std::size_t count, FaceRun& run) const {
        const std::uint32_t* numbers = &numbers_[place(x, y)];
        bool isLit = false;
        const auto lightUp = [&] {
            if (isLit) return;
            isLit = true;
            std::fill(std::begin(run.red), std::end(run.red), lights_.least().x);
            std::fill(std::begin(run.green), std::end(run.green), lights_.least().y);
            std::fill(std::begin(run.blue), std::end(run.blue), lights_.least().z);
        };
        for (std::size_t i = 0; i < count;) {
            std::size_t end = i + 1;
            while (end < count && numbers[end] == numbers[i]) ++end;
            if (numbers[i] == noFace) {
                std::fill(run.texel + i, run.texel + end, 0);
                std::fill(run.fog + i, run.fog + end, 1.0f);
            } else {
                const SeenFace& face = faces_[numbers[i]];
                if (face.isExact || face.isLit) lightUp();
                if (face.isExact)
                    seeExactly(face.face, x, y, i, end, run);
                else
                    seeEvenly(face, x, y, i, end, run);
            }
            i = end;
        }
        return isLit;
    }
    static void setLight(FaceRun& run, std::size_t i, const Vec3& light) {
        run.red[i] = light.x;
        run.green[i] = light.y;
        run.blue[i] = light.z;
    }
    void seeExactly(const SceneFace& face, std::int32_t x, std::int32_t y, std::size_t first, std::size_t end,
                    FaceRun& run) const {
        for (std::size_t i = first; i < end; ++i) {
            const RayUnderWay ray = rayThrough(x + static_cast<std::int32_t>(i), y);
            SurfaceHit hit{};
            run.fog[i] = 1;
            if (!meet(ray, face, hit)) continue;
            run.fog[i] = fogAmount(scene_, ray.fogMultiplier, hit.distance);
            std::memcpy(&run.texel[i], texelOf(hit), 4);
            setLight(run, i, lights_.at(ray, hit));
        }
    }
    void seeEvenly(const SeenFace& seen, std::int32_t x, std::int32_t y, std::size_t first, std::size_t end,
                   FaceRun& run) const {
        const std::int32_t start = x + static_cast<std::int32_t>(first);
        const double downwards = v(y) * scene_.camera.halfHeight;
        const auto even = [&](const ScreenPlane& plane) {
            return FaceRow::Even{static_cast<float>(plane.at(u(start), v(y))),
                                 static_cast<float>(plane.across * (2.0 / output_.width))};
        };
        kernels_.map(
            {even(seen.nearness), even(seen.along), even(seen.down), seen.texture,
             seen.face.kind == SurfaceKind::Wall},
            {&squaredU_[static_cast<std::size_t>(start)], &squaredAside_[static_cast<std::size_t>(start)],
             static_cast<float>(v(y) * v(y)), static_cast<float>(1 + downwards * downwards),
             static_cast<float>(1 / scene_.renderDistance)},
            first, end - first, run);
        if (!seen.isLit) return;
        const SceneFace& face = seen.face;
        for (std::size_t i = first; i < end; ++i) {
            const double across = u(x + static_cast<std::int32_t>(i));
            const Vector way = scene_.camera.directionAt(across, v(y));
            Vector position = scene_.camera.eye + way * (1 / seen.nearness.at(across, v(y)));
            if (isSlab(face))
                position.z = face.corners[0].z;
            else
                (face.acrossX ? position.x : position.y) = face.boundary;
            setLight(run, i, lights_.at(position, face.leftX, face.leftY));
        }
    }

    unsigned char* bytesAt(std::int32_t x, std::int32_t y) const {
        return output_.pixels + (std::int64_t{y} * output_.width + x) * 4;
    }
    void store(std::int32_t x, std::int32_t y, const Vec3& colour) const {
        const unsigned char bytes[] = {byteOf(colour.x), byteOf(colour.y), byteOf(colour.z), 255};
        std::copy(std::begin(bytes), std::end(bytes), bytesAt(x, y));
    }
    void mix(const SceneFace& face, std::int32_t x, std::int32_t y) const {
        const RayUnderWay ray = rayThrough(x, y);
        SurfaceHit hit{};
        if (!meet(ray, face, hit)) return;
        const unsigned char* texel = texelOf(hit);
        if (texel[3] == 0) return;
        if (texel[3] == 255) {
            store(x, y, shadedColour(scene_, ray.fogMultiplier, texel, lights_.at(ray, hit), hit.distance));
            return;
        }
        const float weight = static_cast<float>(texel[3]) / 255;
        const unsigned char* under = bytesAt(x, y);
        const Vec3 behind{static_cast<float>(under[0]), static_cast<float>(under[1]),
                          static_cast<float>(under[2])};
        store(x, y,
              foggedTexel(scene_, ray.fogMultiplier, texel, hit.distance) * weight + behind * (1 - weight));
    }

    const RenderScene& scene_;
    PlushImage& output_;
    const FaceKernels& kernels_ = faceKernels();
    SceneLights lights_;
    TextureForms forms_;
    FaceRaster raster_;
    OpenPixels open_;
    std::unique_ptr<std::uint32_t[]> numbers_;  // of the face of each pixel that is not open
    // Of each column.
    std::vector<double> u_;
    std::vector<float> squaredU_;
    std::vector<float> squaredAside_;
    std::vector<SeenFace> faces_;
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
    runRows({output.height, workers, std::int64_t{output.width} * output.height * nanosecondsPerPixel, true},
            [&](std::int32_t first, std::int32_t last) { projection.shadeRows(first, last); });
    projection.mixTranslucent();
}

}  // namespace kelmora
