#include <gtest/gtest.h>

#include <sstream>

#include "base/whole_file.h"
#include "support/guest_run.h"
#include "support/places.h"

// Holds the guests' references to what the languages do: each block fenced with a language's name runs and
// prints what it says.
namespace kelmora {
namespace {

void expectExamples(const GuestLanguage& language, const std::string& path, const std::string& chunkName,
                    int least) {
    const auto document = readWholeFile(sourceFolder() + "/docs/" + path);
    ASSERT_TRUE(document.has_value());
    std::istringstream lines(*document);
    std::string example;
    bool inside = false;
    int count = 0;
    for (std::string line; std::getline(lines, line);) {
        if (line == "```" + language.extension.substr(1)) {
            inside = true;
        } else if (inside && line == "```") {
            expectGuestRuns(language, example, chunkName);
            example.clear();
            inside = false;
            ++count;
        } else if (inside) {
            example += line + "\n";
        }
    }
    EXPECT_GE(count, least);
}

TEST(GuestDocuments, ExamplesDoWhatTheySay) {
    expectExamples(luaLanguage(), "lua.md", "<string>", 5);
    expectExamples(rwbyLanguage(), "rwby.md", "test", 7);
}

}  // namespace
}  // namespace kelmora
