#pragma once

#include <filesystem>
#include <random>
#include <string>

namespace kelmora {

// An empty folder of the test's own, gone with it. Tests run side by side, so no two may share one; the blank
// in the name is there because players' folders have them.
class TemporaryFolder {
public:
    TemporaryFolder()
        : path_(std::filesystem::temp_directory_path() /
                ("kelmora test " + std::to_string(std::random_device{}()))) {
        std::filesystem::create_directories(path_);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

private:
    std::filesystem::path path_;
};

}  // namespace kelmora
