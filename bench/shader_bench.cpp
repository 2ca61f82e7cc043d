#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "plush/shader/batch_kernels.h"
#include "plush/shader/builtin_processors.h"
#include "plush/shader/compiler.h"
#include "plush/shader/run.h"

// Runs each built-in processor over a picture on one thread with the same work written by hand in plain C++,
// with the plain machine, and with the batched one, in turns; reports each one's median time and its ratio to
// the hand-written time. All must give the same bytes.
namespace {

using namespace kelmora::plush_shader;
using Bytes = std::vector<unsigned char>;

constexpr int width = 960;
constexpr int height = 544;
constexpr int repetitions = 15;

const Uniforms uniforms{{"tr", 0.25f}, {"tg", 0.5f}, {"tb", 0.75f}, {"ta", 1.0f}};

// Random colours; round figures with soft edges on a clear ground.
Bytes picture() {
    std::mt19937 random(3);
    Bytes bytes;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            for (int c = 0; c < 3; ++c) bytes.push_back(static_cast<unsigned char>(random()));
            const int dx = x % 136 - 68, dy = y % 136 - 68;
            bytes.push_back(static_cast<unsigned char>(std::clamp((4200 - dx * dx - dy * dy) / 4, 0, 255)));
        }
    return bytes;
}

float value(unsigned char byte) {
    return static_cast<float>(byte) / 255.0f;
}

unsigned char byteOf(float channel) {
    if (!(channel >= 0)) return 0;
    return channel >= 1 ? 255 : static_cast<unsigned char>(channel * 255.0f);
}

float weightedGrey(const unsigned char* pixel) {
    const kelmora::GreyWeights& grey = kelmora::greyWeights;
    return (value(pixel[0]) * grey.r + value(pixel[1]) * grey.g + value(pixel[2]) * grey.b) / 3;
}

template <typename Work>
void eachPixel(Bytes& bytes, Work work) {
    for (unsigned char *pixel = bytes.data(), *end = pixel + bytes.size(); pixel != end; pixel += 4)
        work(pixel);
}

void greyscale(Bytes& bytes) {
    eachPixel(bytes, [](unsigned char* pixel) {
        if (pixel[3] == 0) return;
        pixel[0] = pixel[1] = pixel[2] = byteOf(weightedGrey(pixel));
    });
}

void inactive(Bytes& bytes) {
    eachPixel(bytes, [](unsigned char* pixel) {
        if (pixel[3] == 0) return;
        const float grey = weightedGrey(pixel);
        for (int c = 0; c < 3; ++c) pixel[c] = byteOf((value(pixel[c]) + grey) / 2);
    });
}

void aetherInvert(Bytes& bytes) {
    eachPixel(bytes, [](unsigned char* pixel) {
        pixel[3] = byteOf(1 - value(pixel[3]));
        pixel[0] = pixel[1] = pixel[2] = 0;
    });
}

void colourInvert(Bytes& bytes) {
    eachPixel(bytes, [](unsigned char* pixel) {
        for (int c = 0; c < 3; ++c) pixel[c] = byteOf(1 - value(pixel[c]));
    });
}

void colourFill(Bytes& bytes) {
    eachPixel(bytes, [](unsigned char* pixel) {
        pixel[0] = 63;
        pixel[1] = 127;
        pixel[2] = 191;
    });
}

void aetherCleanup(Bytes& bytes) {
    eachPixel(bytes, [](unsigned char* pixel) { pixel[3] = 255; });
}

void aetherFill(Bytes& bytes) {
    eachPixel(bytes, [](unsigned char* pixel) {
        if (pixel[3] == 0) {
            pixel[0] = 63;
            pixel[1] = 127;
            pixel[2] = 191;
        }
        pixel[3] = 255;
    });
}

void aetherSet(Bytes& bytes) {
    eachPixel(bytes, [](unsigned char* pixel) {
        if (pixel[3] == 0 || pixel[3] == 255) return;
        const float alpha = value(pixel[3]);
        for (int c = 0; c < 3; ++c) pixel[c] = byteOf(value(pixel[c]) / alpha);
    });
}

struct Contestant {
    std::string name;
    std::function<void(Bytes&)> work;
    std::vector<double> times{};
    Bytes result{};
};

std::vector<Contestant> contestantsFor(const Program& program) {
    std::vector<Contestant> all;
    const auto add = [&](const std::string& name, Machine machine, const detail::BatchKernels* kernels) {
        all.push_back({name, [&program, machine, kernels](Bytes& bytes) {
                           useMachine(machine);
                           detail::useBatchKernels(kernels);
                           run(program, bytes.data(), width, height, uniforms, {});
                       }});
    };
    add("plain", Machine::Plain, nullptr);
    add("batched", Machine::Fastest, nullptr);
#if defined(KELMORA_X86)
    add("sse2", Machine::Fastest, &detail::sse2BatchKernels);
#endif
    return all;
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

void race(benchmark::State& state, const std::string& shader, std::vector<Contestant>& contestants) {
    const Bytes before = picture();
    for (auto _ : state)
        for (int i = 0; i < repetitions; ++i)
            for (Contestant& contestant : contestants) {
                contestant.result = before;
                const std::clock_t start = std::clock();
                contestant.work(contestant.result);
                contestant.times.push_back(static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
            }
    const double peer = median(contestants.front().times);
    for (const Contestant& contestant : contestants) {
        if (contestant.result != contestants.front().result) {
            std::fprintf(stderr, "shader_bench: %s differs in %s\n", contestant.name.c_str(), shader.c_str());
            std::exit(1);
        }
        const double own = median(contestant.times);
        state.counters[contestant.name + "_us"] = own * 1e6;
        if (&contestant != &contestants.front()) state.counters[contestant.name + "_ratio"] = own / peer;
    }
}

void add(const std::string& name, std::shared_ptr<const Program> program, void (*byHand)(Bytes&)) {
    benchmark::RegisterBenchmark(name.c_str(),
                                 [name, program, byHand](benchmark::State& state) {
                                     std::vector<Contestant> contestants = contestantsFor(*program);
                                     if (byHand) contestants.insert(contestants.begin(), {"hand", byHand});
                                     race(state, name, contestants);
                                 })
        ->Iterations(1)
        ->Unit(benchmark::kMillisecond);
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    const std::pair<const char*, void (*)(Bytes&)> processors[] = {
        {"greyscale", greyscale},        {"inactive", inactive},      {"aether_invert", aetherInvert},
        {"colour_invert", colourInvert}, {"colour_fill", colourFill}, {"aether_cleanup", aetherCleanup},
        {"aether_fill", aetherFill},     {"aether_set", aetherSet},
    };
    std::int32_t id = 0;
    for (const auto& [name, byHand] : processors) add(name, builtinProcessor(++id), byHand);
    const std::pair<const char*, const char*> shaders[] = {
        {"blur",
         "local s = 0\nlocal t = 0\nlocal u = 0\n"
         "s = sampleR(x - 1, y) + sampleR(x, y) + sampleR(x + 1, y)\n"
         "t = sampleG(x - 1, y) + sampleG(x, y) + sampleG(x + 1, y)\n"
         "u = sampleB(x - 1, y) + sampleB(x, y) + sampleB(x + 1, y)\n"
         "r, g, b = s / 3, t / 3, u / 3\n"},
        {"vignette",
         "local dx = x / width - 0.5\nlocal dy = y / height - 0.5\n"
         "local f = 1 - smoothstep(0.2, 0.8, sqrt(dx * dx + dy * dy))\n"
         "r = r * f\ng = g * f\nb = b * f\n"},
        {"wave", "r = sampleR(x + sin(y * 0.1) * 4, y)\n"},
        {"bands",
         "if r > 0.75 then r = 1 elseif r > 0.5 then r = 0.66 elseif r > 0.25 then r = 0.33 else "
         "r = 0 end\n"},
    };
    for (const auto& [name, source] : shaders) add(name, compile(source, {{}, true}), nullptr);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
