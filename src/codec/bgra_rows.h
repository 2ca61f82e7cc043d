#pragma once

#include <cstddef>
#include <vector>

#include "codec/output_file.h"

namespace vh::png {

// Writes rows of RGBA as BGRA, many at a time.
class BgraRows {
public:
    BgraRows(OutputFile& file, std::size_t row_size);

    void add(const unsigned char* row);
    void flush();

private:
    OutputFile& file_;
    std::size_t row_size_;
    std::size_t filled_ = 0;
    std::vector<unsigned char> block_;
};

}  // namespace vh::png
