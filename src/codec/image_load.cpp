#include <limits>

#include "base/whole_file.h"
#include "codec/png.h"
#include "codec/png_chunks.h"
#include "codec/png_load.h"

namespace vh::png {
namespace {

struct Reader {
    bool (*recognises)(ByteSpan file);
    bool (*read)(ByteSpan file, Image& image);
};

// Asked in this order. The first that recognises a file decides on it: its failure is final. Formats with a
// signature come before those that are guessed at.
constexpr Reader readers[] = {
    {has_png_signature, load_png},
};

}  // namespace

bool load_memory(const unsigned char* data, unsigned size, Image& image) {
    image = Image{};
    if (data == nullptr || size == 0) return false;
    const ByteSpan file(data, size);
    for (const Reader& reader : readers) {
        if (reader.recognises(file)) return reader.read(file, image);
    }
    return false;
}

bool load_file(const char* path, Image& image) {
    image = Image{};
    if (path == nullptr) return false;
    const auto file = kelmora::readWholeFileBytes(path);
    if (!file || file->size() > std::numeric_limits<unsigned>::max()) return false;
    return load_memory(file->data(), static_cast<unsigned>(file->size()), image);
}

}  // namespace vh::png
