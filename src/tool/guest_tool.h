#pragma once

#include <iosfwd>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "bindings/runtime.h"

namespace kelmora {

// What the authors' tool does with the sources and images of one guest language. What fails is raised as the
// language words it.
struct GuestTool {
    std::string_view language;   // "VesperLua"
    std::string_view extension;  // of sources, with its dot
    std::string_view magic;      // of images

    // The exit code. The arguments are in the global array `arguments`.
    int (*run)(Runtime& runtime, const std::string& path, std::span<const std::string> arguments,
               bool isImage);
    std::vector<unsigned char> (*compile)(Runtime& runtime, const std::string& source,
                                          const std::string& chunkName);
    void (*dump)(std::string_view image, std::ostream& out);
};

// The language of a source, by its name, or of an image, by its first bytes; null for scripts.
const GuestTool* guestToolForSource(const std::string& path);
const GuestTool* guestToolForImage(std::string_view content);

// A failure's text taken apart.
struct GuestFailure {
    std::string_view message;
    std::size_t line = 0;     // from 1
    std::size_t column = 0;   // from 1; 0 where none is known
    std::string_view source;  // the line's text, empty beyond the source
};

// Nothing for texts without a place in this source. The parts are views of the error and the source.
std::optional<GuestFailure> parseGuestFailure(std::string_view error, const std::string& path,
                                              std::string_view source);

// A failure's text in the form of script reports: the message, the place, the source's line, and a mark where
// a column is known. Texts without a place in this source stay as they are.
std::string guestReport(const GuestTool& tool, const std::string& error, const std::string& path,
                        std::string_view source);

// Raises what a guest raises in the form of our reports.
template <typename Work>
auto withGuestReports(const GuestTool& tool, const std::string& path, std::string_view source, Work work) {
    try {
        return work();
    } catch (const std::exception& error) {
        throw std::runtime_error(guestReport(tool, error.what(), path, source));
    }
}

}  // namespace kelmora
