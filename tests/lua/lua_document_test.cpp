#include <gtest/gtest.h>

#include <sstream>

#include "base/whole_file.h"
#include "support/guest_run.h"

// Holds docs/lua.md to what the language does: each block fenced as ```lua runs and prints what it says.
namespace kelmora {
namespace {

TEST(LuaDocument, ExamplesDoWhatTheySay) {
    const auto document = readWholeFile(KELMORA_SOURCE_DIR "/docs/lua.md");
    ASSERT_TRUE(document.has_value());
    const GuestLanguage language = luaLanguage();
    std::istringstream lines(*document);
    std::string example;
    bool inside = false;
    int count = 0;
    for (std::string line; std::getline(lines, line);) {
        if (line == "```lua") {
            inside = true;
        } else if (inside && line == "```") {
            SCOPED_TRACE(example);
            expectGuestRuns(language, example, "<string>");
            example.clear();
            inside = false;
            ++count;
        } else if (inside) {
            example += line + "\n";
        }
    }
    EXPECT_GE(count, 5);
}

}  // namespace
}  // namespace kelmora
