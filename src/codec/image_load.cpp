#include <limits>

#include "base/whole_file.h"
#include "codec/bmp_read.h"
#include "codec/png.h"
#include "codec/png_chunks.h"
#include "codec/png_load.h"
#include "codec/tga_read.h"
#include "codec/xcf_read.h"

namespace vh::png {
namespace {

bool is_tga(ByteSpan file) {
    return looks_like_tga(file.data(), static_cast<unsigned>(file.size()));
}

struct Reader {
    Format format;
    bool (*recognises)(ByteSpan file);
    bool (*read)(ByteSpan file, Image& image);
};

// Asked in this order. The first that recognises a file decides on it: its failure is final. Formats with a
// signature come before those that are guessed at.
constexpr Reader readers[] = {
    {PngFormat, has_png_signature, load_png},
    {BmpFormat, has_bmp_signature, load_bmp},
    {XcfFormat, has_xcf_signature, load_xcf},
    {TgaFormat, is_tga, load_tga},
};

const Reader* find_reader(ByteSpan file) {
    for (const Reader& reader : readers) {
        if (reader.recognises(file)) return &reader;
    }
    return nullptr;
}

}  // namespace

int detect_format(const unsigned char* data, unsigned size) {
    if (data == nullptr || size == 0) return UnknownFormat;
    const Reader* reader = find_reader({data, size});
    return reader ? reader->format : UnknownFormat;
}

bool load_memory(const unsigned char* data, unsigned size, Image& image) {
    image = Image{};
    if (data == nullptr || size == 0) return false;
    const ByteSpan file(data, size);
    const Reader* reader = find_reader(file);
    return reader && reader->read(file, image);
}

bool load_file(const char* path, Image& image) {
    image = Image{};
    if (path == nullptr) return false;
    const auto file = kelmora::readWholeFileBytes(path);
    if (!file || file->size() > std::numeric_limits<unsigned>::max()) return false;
    return load_memory(file->data(), static_cast<unsigned>(file->size()), image);
}

}  // namespace vh::png
