#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sstream>

#include "base/whole_file.h"
#include "support/rwby_run.h"
#include "support/temporary_folder.h"

// Runs every file of tests/scripts/rwby/ in all forms and modes. A file of failures holds several programs,
// each behind a line that begins with `# ---`.
namespace kelmora {
namespace {

// The parts keep their line numbers.
std::vector<std::string> splitPrograms(const std::string& source) {
    std::vector<std::string> programs(1);
    std::istringstream lines(source);
    std::string line;
    std::string blank;
    while (std::getline(lines, line)) {
        if (line.starts_with("# ---")) programs.push_back(blank);
        programs.back() += line + "\n";
        blank += "\n";
    }
    if (programs.size() > 1) programs.erase(programs.begin());
    return programs;
}

class RwbyFileTest : public testing::Test {
public:
    explicit RwbyFileTest(std::filesystem::path path) : path_(std::move(path)) {}

    void TestBody() override {
        const auto source = readWholeFile(path_.string());
        ASSERT_TRUE(source.has_value());
        for (const std::string& program : splitPrograms(*source)) {
            SCOPED_TRACE(program.substr(std::min(program.find_first_not_of('\n'), program.size())));
            expectRwbyComments(program);
        }
    }

private:
    std::filesystem::path path_;
};

// The blocks fenced as ```rwby.
std::vector<std::string> readExamples(const std::string& document) {
    std::vector<std::string> examples;
    std::istringstream lines(document);
    std::string line;
    bool inside = false;
    while (std::getline(lines, line)) {
        if (inside && line == "```") {
            inside = false;
        } else if (inside) {
            examples.back() += line + "\n";
        } else if (line == "```rwby") {
            inside = true;
            examples.emplace_back();
        }
    }
    return examples;
}

TEST(RwbyReference, ExamplesDoWhatTheySay) {
    const auto document = readWholeFile(KELMORA_SOURCE_DIR "/docs/rwby.md");
    ASSERT_TRUE(document.has_value());
    const std::vector<std::string> examples = readExamples(*document);
    EXPECT_GE(examples.size(), 7u);
    for (const std::string& example : examples) {
        SCOPED_TRACE(example);
        expectRwbyComments(example);
    }
}

const bool registered = [] {
    const std::filesystem::path root = std::filesystem::path(KELMORA_SOURCE_DIR) / "tests/scripts/rwby";
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(root))
        if (entry.path().extension() == ".rwby") files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    for (const auto& path : files)
        testing::RegisterTest("RwbyScripts", path.stem().string().c_str(), nullptr, nullptr, __FILE__,
                              __LINE__, [path]() -> RwbyFileTest* { return new RwbyFileTest(path); });
    return true;
}();

}  // namespace
}  // namespace kelmora
