#include <pixman.h>

#include <cstdint>
#include <random>
#include <vector>

#include "platform/smooth_scaler.h"
#include "platform/window_core.h"
#include "race.h"

// A picture of the stage's size enlarged to a full screen by our smooth scaling and by pixman's bilinear
// filter, in turns on one thread: the scaling alone, and with all that a window does for a frame.
namespace kelmora {
namespace {

constexpr int width = 960;
constexpr int height = 544;
constexpr int drawnWidth = 1920;
constexpr int drawnHeight = 1080;
constexpr int repetitions = 101;

using Pixels = std::vector<std::uint32_t>;

Pixels noise() {
    std::mt19937 random(7);
    Pixels pixels(static_cast<std::size_t>(width) * height);
    for (std::uint32_t& pixel : pixels) pixel = static_cast<std::uint32_t>(random()) | 0xff000000u;
    return pixels;
}

void scaleWhole(SmoothScaler& scaler, const Pixels& source, Pixels& target) {
    scaler.prepare(width, height, drawnWidth, drawnHeight);
    const auto bring = [&](int row) {
        if (!scaler.holds(row))
            scaler.bring(row, {source.data() + static_cast<std::size_t>(row) * width, width});
    };
    for (int y = 0; y < drawnHeight; ++y) {
        const SmoothScaler::Between between = scaler.rowsAt(y);
        bring(between.upper);
        bring(between.lower);
        scaler.mix(between, target.data() + static_cast<std::size_t>(y) * drawnWidth);
    }
}

void smoothFullScreen(benchmark::State& state) {
    Pixels source = noise();
    Pixels peerTarget(static_cast<std::size_t>(drawnWidth) * drawnHeight);
    Pixels target = peerTarget;
    pixman_image_t* peerSource =
        pixman_image_create_bits(PIXMAN_x8r8g8b8, width, height, source.data(), width * 4);
    pixman_image_t* peerImage =
        pixman_image_create_bits(PIXMAN_x8r8g8b8, drawnWidth, drawnHeight, peerTarget.data(), drawnWidth * 4);
    pixman_f_transform wanted;
    pixman_f_transform_init_scale(&wanted, static_cast<double>(width) / drawnWidth,
                                  static_cast<double>(height) / drawnHeight);
    pixman_transform_t fixed;
    pixman_transform_from_pixman_f_transform(&fixed, &wanted);
    pixman_image_set_transform(peerSource, &fixed);
    pixman_image_set_filter(peerSource, PIXMAN_FILTER_BILINEAR, nullptr, 0);
    pixman_image_set_repeat(peerSource, PIXMAN_REPEAT_PAD);

    SmoothScaler scaler;
    const PlushImage image{width, height, reinterpret_cast<unsigned char*>(source.data()), 0, 0, nullptr};
    WindowCore smooth("Bench", width, height);
    WindowCore nearest("Bench", width, height);
    smooth.setScaling(Scaling::smooth);
    for (WindowCore* core : {&smooth, &nearest}) core->setClientSize(drawnWidth, drawnHeight);
    const auto frame = [&image](WindowCore& core) {
        core.pushImage(image);
        benchmark::DoNotOptimize(core.composeIfDirty());
    };
    std::vector<Contestant> contestants{
        {"pixman",
         [&] {
             pixman_image_composite32(PIXMAN_OP_SRC, peerSource, nullptr, peerImage, 0, 0, 0, 0, 0, 0,
                                      drawnWidth, drawnHeight);
         }},
        {"scaler", [&] { scaleWhole(scaler, source, target); }},
        {"frame_smooth", [&] { frame(smooth); }},
        {"frame_nearest", [&] { frame(nearest); }},
    };
    runInTurns(state, contestants, repetitions, Clock::Processor);
    const double peer = median(contestants.front().times);
    for (const Contestant& contestant : contestants) {
        state.counters[contestant.name + "_us"] = median(contestant.times) * 1e6;
        state.counters[contestant.name + "_ratio"] = median(contestant.times) / peer;
    }
    pixman_image_unref(peerSource);
    pixman_image_unref(peerImage);
}
BENCHMARK(smoothFullScreen)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace kelmora

BENCHMARK_MAIN();
