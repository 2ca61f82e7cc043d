#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "audio/vorbis_file.h"
#include "support/ogg_repair.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::vector<std::uint8_t> bytes(data, data + size);
    kelmora::repairOgg(bytes);
    std::string failure;
    const auto file = vesper::ogg::readVorbis(std::move(bytes), failure);
    if (!file) return 0;
    const auto source = vesper::ogg::openVorbis(file);
    std::vector<std::int16_t> block(2 * 2048);
    for (std::uint64_t frame = 0; frame + 2048 <= file->frames && frame < 40000; frame += 2048)
        source->read(frame, block);
    for (const std::uint64_t frame : {file->frames / 2, file->frames / 3, std::uint64_t{0}})
        source->read(frame, std::span(block).first(file->frames - frame < 2048 ? 2 : block.size()));
    return 0;
}
