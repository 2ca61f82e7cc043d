#pragma once

#include <cstdint>
#include <span>

#include "audio/ogg_pages.h"

namespace kelmora {

// Gives every page that can be found its right checksum, so that damage reaches what stands behind it.
inline void repairOgg(std::span<std::uint8_t> file) {
    while (const auto page = vesper::ogg::readPage(file)) {
        const std::uint32_t sum = vesper::ogg::checksumOf(*page);
        for (std::size_t i = 0; i < 4; ++i)
            file[vesper::ogg::checksumOffset + i] = static_cast<std::uint8_t>(sum >> (8 * i));
        file = file.subspan(page->whole.size());
    }
}

}  // namespace kelmora
