#include "support/places.h"

namespace kelmora {

const std::string& sourceFolder() {
    static const std::string folder = KELMORA_SOURCE_DIR;
    return folder;
}

const std::string& binFolder() {
    static const std::string folder = KELMORA_BIN_DIR;
    return folder;
}

}  // namespace kelmora
