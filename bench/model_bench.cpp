#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "ai/ai_model_file.h"
#include "ai/ai_training.h"
#include "base/whole_file.h"

// Trains on 10 MB at order 3 beside the same in Python's dictionaries of dictionaries, after a comparison of
// the two models; and says what memory the model keeps.
namespace {

constexpr const char* python =
    "import sys,time\n"
    "t=open(sys.argv[1],'rb').read().decode('latin-1');n=3\n"
    "s=time.perf_counter()\n"
    "t+=t[:n];m={}\n"
    "for i in range(len(t)-n):\n"
    " k=t[i:i+n];c=t[i+n]\n"
    " d=m.get(k)\n"
    " if d is None:d=m[k]={}\n"
    " d[c]=d.get(c,0)+1\n"
    "e=time.perf_counter()-s\n"
    "o='\\n'.join(k+'|'+','.join(c+':'+str(v) for c,v in d.items()) for k,d in m.items())\n"
    "open(sys.argv[2],'wb').write(o.encode('latin-1'))\n"
    "print(e)\n";

// Words as often as words are, made of syllables.
std::string makeText(std::size_t size) {
    std::mt19937 random(1);
    std::vector<std::string> words;
    for (int i = 0; i < 20000; ++i) {
        std::string word;
        for (unsigned j = 0; j <= random() % 4; ++j) {
            word += "bcdfghjklmnprstvwz"[random() % 18];
            word += "aeiouy"[random() % 6];
        }
        words.push_back(word);
    }
    std::string text;
    while (text.size() < size) {
        const double place = static_cast<double>(random()) / 4294967296.0;
        text += words[static_cast<std::size_t>(place * place * place * 20000)];
        text += random() % 12 == 0 ? ".\n" : " ";
    }
    return text;
}

std::string noise(std::size_t size) {
    std::mt19937 random(2);
    std::string text;
    for (std::size_t i = 0; i < size; ++i) text += static_cast<char>(static_cast<unsigned char>(random()));
    return text;
}

double secondsOf(const std::string& text, std::string& model, double& bytesEach) {
    const std::size_t before = mallinfo2().uordblks + mallinfo2().hblkhd;
    const auto start = std::chrono::steady_clock::now();
    const kelmora::AIModel trained = kelmora::aiTrainModel(text, 3);
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    const std::size_t after = mallinfo2().uordblks + mallinfo2().hblkhd;
    bytesEach = static_cast<double>(after - before) / static_cast<double>(trained.transitionCount());
    model = kelmora::aiModelText(trained);
    return seconds;
}

void compare(const char* name, const std::string& text) {
    const std::string input = "/dev/shm/kelmora_model_bench_text";
    const std::string output = "/dev/shm/kelmora_model_bench_model";
    const std::string script = "/dev/shm/kelmora_model_bench.py";
    if (!kelmora::writeWholeFile(input, text) || !kelmora::writeWholeFile(script, python)) return;
    double pythons = 0;
    std::FILE* pipe = popen(("python3 " + script + " " + input + " " + output).c_str(), "r");
    if (!pipe || std::fscanf(pipe, "%lf", &pythons) != 1) std::printf("no python3: no peer\n");
    if (pipe) pclose(pipe);
    std::vector<double> times;
    std::string model;
    double bytesEach = 0;
    for (int i = 0; i < 5; ++i) times.push_back(secondsOf(text, model, bytesEach));
    std::sort(times.begin(), times.end());
    if (pythons > 0 && kelmora::readWholeFile(output) != model) {
        std::fprintf(stderr, "model_bench: other model\n");
        std::exit(1);
    }
    std::printf(
        "%s: ours %.0f ms, Python %.0f ms, ours / Python %.2f; %.1f bytes a transition, state and all\n",
        name, 1000 * times[2], 1000 * pythons, times[2] / pythons, bytesEach);
    for (const std::string& path : {input, output, script}) std::remove(path.c_str());
}

}  // namespace

int main() {
    compare("words", makeText(10000000));
    compare("noise", noise(2000000));
    return 0;
}
