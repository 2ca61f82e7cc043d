#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "audio/frequency_analysis.h"
#include "audio/track_edit.h"

// A minute of stereo: resampled and mixed beside sox, which does the same from file to file, and searched for
// a tone beside the time that it lasts. Ours includes reading and writing its files too.
namespace {

using namespace vesper::audio;

constexpr int repetitions = 5;
const std::string folder = "/dev/shm/kelmora_track_bench_";

[[noreturn]] void fail(const char* what) {
    std::fprintf(stderr, "track_bench: %s\n", what);
    std::exit(1);
}

double medianSeconds(const std::function<bool()>& work) {
    std::vector<double> times;
    for (int i = 0; i < repetitions; ++i) {
        const auto start = std::chrono::steady_clock::now();
        if (!work()) fail("cannot do it");
        times.push_back(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

std::string minuteOfNoise(const char* name, unsigned seed) {
    std::mt19937 random(seed);
    vesper::wav::DecodedFile sound{{}, 44100, 2};
    for (int i = 0; i < 44100 * 60 * 2; ++i)
        sound.samples.push_back(static_cast<std::int16_t>(random() % 20000 - 10000));
    const std::string path = folder + name;
    Track* track = adoptSound(std::move(sound));
    if (!save(track, path.c_str())) fail("cannot write");
    close(track);
    return path;
}

bool withTracks(const std::string& first, const std::string& second,
                const std::function<bool(Track*, Track*)>& edit) {
    Track* a = openFile(first.c_str());
    Track* b = second.empty() ? nullptr : openFile(second.c_str());
    const bool done = a && edit(a, b) && save(a, (folder + "out.wav").c_str());
    close(a);
    close(b);
    return done;
}

bool run(const std::string& command) {
    return std::system(command.c_str()) == 0;
}

void report(const char* what, double ours, double theirs) {
    std::printf("%s ours %.1f ms, sox %.1f ms, ours / sox %.2f\n", what, 1000 * ours, 1000 * theirs,
                ours / theirs);
}

}  // namespace

int main() {
    const std::string a = minuteOfNoise("a.wav", 1);
    const std::string b = minuteOfNoise("b.wav", 2);
    const std::string out = folder + "out.wav";
    const bool hasSox = run("command -v sox >/dev/null");
    const double faster =
        medianSeconds([&] { return withTracks(a, "", [](Track* t, Track*) { return speed(t, 1.1); }); });
    const double mixed =
        medianSeconds([&] { return withTracks(a, b, [](Track* t, Track* s) { return add(t, s, 0); }); });
    if (hasSox) {
        report("speed", faster, medianSeconds([&] {
                   return run("sox " + a + " " + out + " speed 1.1 rate -l 44100 2>/dev/null");
               }));
        report("add", mixed,
               medianSeconds([&] { return run("sox -m " + a + " " + b + " " + out + " 2>/dev/null"); }));
    } else {
        std::printf("no sox: speed %.1f ms, add %.1f ms\n", 1000 * faster, 1000 * mixed);
    }
    Track* track = openFile(a.c_str());
    TrackAudioView view;
    inspect(track, &view);
    for (const double frequency : {40.0, 440.0, 8000.0}) {
        const double seconds =
            medianSeconds([&] { return findFrequencyMatches(view, frequency, 5, 0, 0.9).empty(); });
        std::printf("findFrequency %.0f Hz: %.0f times faster than it plays\n", frequency, 60 / seconds);
    }
    close(track);
    for (const std::string& path : {a, b, out}) std::remove(path.c_str());
    return 0;
}
