#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "base/whole_file.h"
#include "support/guest_run.h"
#include "support/places.h"

// Runs every file of the guest languages under tests/scripts/ in all ways that its language has.
namespace kelmora {
namespace {

namespace fs = std::filesystem;

class GuestFileTest : public testing::Test {
public:
    GuestFileTest(fs::path path, GuestLanguage language)
        : path_(std::move(path)), language_(std::move(language)) {}

    void TestBody() override {
        const auto source = readWholeFile(path_.string());
        ASSERT_TRUE(source.has_value());
        expectGuestRuns(language_, *source, path_.filename().string());
    }

private:
    fs::path path_;
    GuestLanguage language_;
};

std::string testName(const fs::path& path, const fs::path& root) {
    std::string name = fs::relative(path, root).replace_extension().generic_string();
    const auto isOther = [](char c) { return std::isalnum(static_cast<unsigned char>(c)) == 0; };
    std::replace_if(name.begin(), name.end(), isOther, '_');
    return name;
}

const bool registered = [] {
    const fs::path root = fs::path(sourceFolder()) / "tests/scripts";
    for (const GuestLanguage& language : {luaLanguage(), rwbyLanguage()}) {
        std::vector<fs::path> files;
        for (const auto& entry : fs::recursive_directory_iterator(root))
            if (entry.path().extension() == language.extension) files.push_back(entry.path());
        std::sort(files.begin(), files.end());
        for (const fs::path& path : files)
            testing::RegisterTest(
                "GuestScripts", testName(path, root).c_str(), nullptr, nullptr, __FILE__, __LINE__,
                [path, language]() -> GuestFileTest* { return new GuestFileTest(path, language); });
    }
    return true;
}();

}  // namespace
}  // namespace kelmora
