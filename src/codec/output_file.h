#pragma once

#include <cstdio>
#include <memory>
#include <span>

namespace vh::png {

// The file that a picture goes to, written in order. A failure is remembered until the close.
class OutputFile {
public:
    explicit OutputFile(const char* path) : file_(std::fopen(path, "wb")) {}

    bool is_open() const { return file_ != nullptr; }
    void write(std::span<const unsigned char> bytes) {
        if (failed_ || bytes.empty()) return;
        failed_ = std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) != bytes.size();
    }
    bool close() { return std::fclose(file_.release()) == 0 && !failed_; }

private:
    struct Closer {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    std::unique_ptr<std::FILE, Closer> file_;
    bool failed_ = false;
};

}  // namespace vh::png
