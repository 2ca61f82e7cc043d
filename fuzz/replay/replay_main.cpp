#include <cstdint>
#include <cstdio>
#include <filesystem>

#include "base/whole_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

// Runs every file below the given folders through the fuzzer's entry point.
int main(int argc, char** argv) {
    int count = 0;
    for (int i = 1; i < argc; ++i) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(argv[i])) {
            if (!entry.is_regular_file()) continue;
            const auto bytes = kelmora::readWholeFileBytes(entry.path().string());
            if (!bytes) {
                std::fprintf(stderr, "cannot read %s\n", entry.path().string().c_str());
                return 1;
            }
            LLVMFuzzerTestOneInput(bytes->data(), bytes->size());
            ++count;
        }
    }
    std::printf("%d inputs replayed\n", count);
    return count > 0 ? 0 : 1;
}
