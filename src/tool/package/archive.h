#pragma once

#include <span>
#include <string>
#include <vector>

namespace kelmora {

struct ArchiveFile {
    std::string name;  // with slashes, from the archive's top
    std::vector<unsigned char> bytes;
    bool isProgram = false;
};

// The same files give the same bytes: all are dated 1 January 2000. Names are UTF-8; one too long for the
// format raises std::runtime_error.
std::vector<unsigned char> makeTarGz(std::span<const ArchiveFile> files);
std::vector<unsigned char> makeZip(std::span<const ArchiveFile> files);

}  // namespace kelmora
