#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <initializer_list>

#include "audio/wav_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    for (const std::uint16_t channels : std::initializer_list<std::uint16_t>{0, 1, 2, 5}) {
        vesper::wav::DecodedFile sound;
        const bool read = vesper::wav::decode(data, static_cast<unsigned>(size), &sound, {channels});
        if (read == sound.samples.empty()) std::abort();
        if (read && sound.samples.size() % sound.channels != 0) std::abort();
    }
    return 0;
}
