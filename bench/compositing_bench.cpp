#include <benchmark/benchmark.h>
#include <pixman.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "image/image_registry.h"
#include "image/row_workers.h"
#include "plush/blit.h"
#include "plush/row_kernels.h"
#include "plush/skew.h"
#include "race.h"

// Draws a picture over another with our loops and with pixman, in turns on one thread, and reports each one's
// median time and the ratios to pixman's. pixman works on premultiplied pixels, so the pictures agree in what
// they show and not in their bytes; ours are checked against the plain loops instead.
namespace {

using namespace kelmora;
using Bytes = std::vector<unsigned char>;

constexpr int width = 960;
constexpr int height = 544;
constexpr int repetitions = 21;

struct Picture {
    Bytes bytes;
    int columns = width;
    int rows = height;

    PlushImage image() { return {columns, rows, bytes.data(), 0, 0, nullptr}; }
};

template <typename Alpha>
Picture paint(Alpha alpha) {
    std::mt19937 random(7);
    Picture picture;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            for (int c = 0; c < 3; ++c) picture.bytes.push_back(static_cast<unsigned char>(random()));
            picture.bytes.push_back(static_cast<unsigned char>(alpha(x, y, random)));
        }
    return picture;
}

Picture randomAlpha() {
    return paint([](int, int, std::mt19937& random) { return random() & 255; });
}

Picture opaque() {
    return paint([](int, int, std::mt19937&) { return 255u; });
}

// Round figures with soft edges of about two pixels; half of the ground is clear.
Picture spriteLike() {
    return paint([](int x, int y, std::mt19937&) {
        const double dx = x % 136 - 68, dy = y % 136 - 68;
        return static_cast<unsigned>(std::clamp((54.5 - std::sqrt(dx * dx + dy * dy)) / 2, 0.0, 1.0) * 255);
    });
}

Bytes premultiplied(const Bytes& straight) {
    Bytes bytes = straight;
    for (std::size_t i = 0; i < bytes.size(); ++i)
        if (i % 4 != 3) bytes[i] = static_cast<unsigned char>(bytes[i] * bytes[i | 3] / 255);
    return bytes;
}

// A picture in pixman's hands, in the channel order that it has fast paths for.
class PixmanPicture {
public:
    explicit PixmanPicture(Bytes bytes)
        : bytes_(std::move(bytes)),
          image_(pixman_image_create_bits(PIXMAN_a8r8g8b8, width, height,
                                          reinterpret_cast<std::uint32_t*>(bytes_.data()), width * 4)) {
        pixman_image_set_filter(image_, PIXMAN_FILTER_NEAREST, nullptr, 0);
    }
    PixmanPicture(const PixmanPicture&) = delete;
    ~PixmanPicture() { pixman_image_unref(image_); }

    // Scales and turns clockwise by degrees, about the centre.
    void transform(double scale, double degrees) {
        const double angle = degrees * std::acos(-1.0) / 180;
        const double c = std::cos(angle) / scale, s = std::sin(angle) / scale;
        const double cx = width * scale / 2, cy = height * scale / 2;
        pixman_f_transform wanted{
            {{c, s, width / 2.0 - c * cx - s * cy}, {-s, c, height / 2.0 + s * cx - c * cy}, {0, 0, 1}}};
        pixman_transform_t fixed;
        pixman_transform_from_pixman_f_transform(&fixed, &wanted);
        pixman_image_set_transform(image_, &fixed);
    }
    pixman_image_t* get() const { return image_; }

private:
    Bytes bytes_;
    pixman_image_t* image_;
};

// Each contestant in turns; microseconds of each, and each one's time in units of the first one's.
void race(benchmark::State& state, std::vector<Contestant>& contestants, Clock clock = Clock::Processor) {
    runInTurns(state, contestants, repetitions, clock);
    const double peer = median(contestants.front().times);
    for (const Contestant& contestant : contestants) {
        const double own = median(contestant.times);
        state.counters[contestant.name + "_us"] = own * 1e6;
        if (&contestant != &contestants.front()) state.counters[contestant.name + "_ratio"] = own / peer;
    }
}

std::vector<std::pair<std::string, const RowKernels*>> kernelSets() {
    std::vector<std::pair<std::string, const RowKernels*>> sets;
#if defined(KELMORA_X86)
    sets.emplace_back("sse2", &sse2Kernels);
    if (hasAvx2()) sets.emplace_back("avx2", &avx2Kernels);
#else
    sets.emplace_back("plain", &plainKernels);
#endif
    return sets;
}

void checkAgainstPlain(Picture& source, const Bytes& ground, const std::function<void(PlushImage&)>& draw) {
    const auto drawnWith = [&](const RowKernels* kernels) {
        Picture target{ground};
        PlushImage image = target.image();
        useRowKernels(kernels);
        draw(image);
        return target.bytes;
    };
    const Bytes plain = drawnWith(&plainKernels);
    for (const auto& [name, kernels] : kernelSets())
        if (drawnWith(kernels) != plain) {
            std::fprintf(stderr, "compositing_bench: %s differs from the plain loops\n", name.c_str());
            std::exit(1);
        }
    benchmark::DoNotOptimize(source.bytes.data());
}

struct Case {
    Picture (*paint)();
    bool blend;
    float scale;
    float rotation;
};

void compareBlit(benchmark::State& state, const Case& what) {
    Picture source = what.paint();
    const PlushImage sourceImage = source.image();
    const Bytes ground = opaque().bytes;
    const auto draw = [&](PlushImage& image) {
        blitImage({image, sourceImage, 0, 0, what.blend, what.scale, what.rotation});
    };
    checkAgainstPlain(source, ground, draw);

    PixmanPicture peerSource(premultiplied(source.bytes)), peerTarget(ground);
    if (what.scale != 1 || what.rotation != 0) peerSource.transform(what.scale, what.rotation);
    std::vector<Contestant> contestants{
        {"pixman", [&] {
             pixman_image_composite32(what.blend ? PIXMAN_OP_OVER : PIXMAN_OP_SRC, peerSource.get(), nullptr,
                                      peerTarget.get(), 0, 0, 0, 0, 0, 0, width, height);
         }}};
    Picture target{ground};
    PlushImage image = target.image();
    for (const auto& [name, kernels] : kernelSets())
        contestants.push_back({name, [&image, &draw, kernels = kernels] {
                                   useRowKernels(kernels);
                                   draw(image);
                               }});
    Bytes copy(ground.size());
    contestants.push_back({"memcpy", [&] {
                               std::memcpy(copy.data(), source.bytes.data(), copy.size());
                               benchmark::ClobberMemory();
                           }});
    race(state, contestants);
}

// A thousand tiles of a sheet, as a tile map draws them.
void compareTiles(benchmark::State& state) {
    Picture source = spriteLike();
    const PlushImage sheet = source.image();
    PixmanPicture peerSource(premultiplied(source.bytes)), peerTarget(opaque().bytes);
    Picture target = opaque();
    PlushImage image = target.image();
    constexpr int side = 32;
    const auto eachTile = [](const auto& draw) {
        for (int i = 0; i < 1000; ++i)
            draw(i * 7 % 29 * side, i * 5 % 16 * side, i % 28 * side + 5, i % 15 * side);
    };
    std::vector<Contestant> contestants{{"pixman", [&] {
                                             eachTile([&](int sx, int sy, int x, int y) {
                                                 pixman_image_composite32(PIXMAN_OP_OVER, peerSource.get(),
                                                                          nullptr, peerTarget.get(), sx, sy,
                                                                          0, 0, x, y, side, side);
                                             });
                                         }}};
    for (const auto& [name, kernels] : kernelSets())
        contestants.push_back({name, [&, kernels = kernels] {
                                   useRowKernels(kernels);
                                   eachTile([&](int sx, int sy, int x, int y) {
                                       blitImageRect({image, sheet, sx, sy, side, side, x, y, true, 1});
                                   });
                               }});
    race(state, contestants);
}

// The same blit with workers, beside one thread. A picture drawn four times as wide and high is work to
// share.
void compareWorkers(benchmark::State& state, float scale) {
    Picture source = spriteLike();
    const PlushImage sourceImage = source.image();
    const int side = static_cast<int>(scale);
    Picture target{Bytes(source.bytes.size() * static_cast<std::size_t>(side * side), 255), width * side,
                   height * side};
    PlushImage image = target.image();
    useRowKernels(nullptr);
    std::vector<Contestant> contestants;
    for (const int workers : {1, 2, 6})
        contestants.push_back({std::to_string(workers) + "_workers", [&, workers] {
                                   threadCount = workers;
                                   blitImage({image, sourceImage, 0, 0, true, scale, 0});
                               }});
    race(state, contestants, Clock::Wall);
    threadCount = 1;
}

void compareSkew(benchmark::State& state) {
    Picture source = spriteLike();
    PlushImage input = source.image();
    Picture target = opaque();
    PlushImage output = target.image();
    threadCount = 1;
    std::vector<Contestant> contestants;
    auto sets = kernelSets();
    sets.insert(sets.begin(), {"plain", &plainKernels});
    for (const auto& [name, kernels] : sets)
        contestants.push_back({name, [&, kernels = kernels] {
                                   useRowKernels(kernels);
                                   skewImage(40, 20, 900, 60, 10, 500, 950, 540, &input, &output);
                               }});
    race(state, contestants);
}

void add(const std::string& name, std::function<void(benchmark::State&)> run) {
    benchmark::RegisterBenchmark(name.c_str(), std::move(run))->Iterations(1)->Unit(benchmark::kMillisecond);
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    threadCount = 1;
    const std::pair<const char*, Case> cases[] = {
        {"random_alpha", {randomAlpha, true, 1, 0}},
        {"all_opaque", {opaque, true, 1, 0}},
        {"sprite_like", {spriteLike, true, 1, 0}},
        {"opaque_copy", {opaque, false, 1, 0}},
        {"turned_30_opaque", {opaque, true, 1, 30}},
        {"turned_30_sprite", {spriteLike, true, 1, 30}},
        {"turned_30_random", {randomAlpha, true, 1, 30}},
        {"turned_90_sprite", {spriteLike, true, 1, 90}},
        {"turned_30_larger_sprite", {spriteLike, true, 1.3f, 30}},
        {"turned_30_copy", {opaque, false, 1, 30}},
        {"scaled_1.5_sprite", {spriteLike, true, 1.5f, 0}},
        {"scaled_0.6_random", {randomAlpha, true, 0.6f, 0}},
    };
    for (const auto& [name, what] : cases)
        add(name, [what = what](benchmark::State& state) { compareBlit(state, what); });
    add("tiles", compareTiles);
    add("skew", compareSkew);
    add("workers_sprite", [](benchmark::State& state) { compareWorkers(state, 1); });
    add("workers_sprite_4x", [](benchmark::State& state) { compareWorkers(state, 4); });
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
