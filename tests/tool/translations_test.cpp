#include <gtest/gtest.h>

#include <filesystem>

#include "base/whole_file.h"
#include "support/places.h"
#include "support/shell.h"
#include "support/temporary_folder.h"

// The tool that makes and merges tables of translations, on copies of the repository's.
namespace kelmora {
namespace {

namespace fs = std::filesystem;

const fs::path games = fs::path(sourceFolder()) / "games";

class Translations : public testing::Test {
protected:
    Translations() {
        for (const char* folder : {"eleven-minutes/Resources/package/story",
                                   "eleven-minutes/Resources/package/translations", "library"}) {
            fs::create_directories(root_ / "games" / folder);
            fs::copy(games / folder, root_ / "games" / folder, fs::copy_options::recursive);
        }
    }

    std::string translate(const std::string& what, const std::string& language) {
        const std::string extension = platform_is_windows() ? ".exe" : "";
        return runProgram(binFolder() + "/vesper" + extension,
                          "run " + quoted((games / "library/translate.vs").string()) + " " + what + " " +
                              language + " " + quoted(root_.path().generic_string()))
            .text;
    }
    std::string path(const std::string& name) const { return (root_ / "games" / name).string(); }
    void replace(const std::string& name, const std::string& old, const std::string& fresh) const {
        std::string text = *readWholeFile(path(name));
        const std::size_t at = text.find(old);
        ASSERT_NE(at, std::string::npos) << old;
        ASSERT_TRUE(writeWholeFile(path(name), text.replace(at, old.size(), fresh)));
    }

    TemporaryFolder root_;
    const std::string story_ = "eleven-minutes/Resources/package/story/1-lighthouse.vs";
    const std::string table_ = "eleven-minutes/Resources/package/translations/de.po";
    const std::string menus_ = "library/novel/words/de.po";
};

TEST_F(Translations, TablesOfTheRepositoryAreWholeAndAsTheToolWritesThem) {
    EXPECT_NE(translate("eleven-minutes", "de").find(" 0 fuzzy, 0 missing, 0 gone"), std::string::npos);
    EXPECT_EQ(readWholeFile(path(table_)), readWholeFile((games / table_).string()));
    EXPECT_NE(translate("menus", "de").find(" 0 fuzzy, 0 missing, 0 gone"), std::string::npos);
    EXPECT_EQ(readWholeFile(path(menus_)), readWholeFile((games / menus_).string()));
}

TEST_F(Translations, AnEditedStoryLosesNoTranslation) {
    // Reworded, renamed with another scene's words, taken out.
    replace(story_, "I mend clocks. A lighthouse lamp is a clock",
            "I mend clocks. A lighthouse lamp is only a clock");
    replace(story_, "And then it starts again?", "Then what?");
    replace(story_, "Novel[\"scene\"](\"lighthouse\"", "Novel[\"scene\"](\"point\"");
    EXPECT_NE(translate("eleven-minutes", "de").find(" 1 fuzzy, 1 missing, 1 gone"), std::string::npos);
    const std::string table = *readWholeFile(path(table_));
    for (const char* part :
         {"#, fuzzy\n#| msgid \"I mend clocks. A lighthouse lamp is a clock", "msgstr \"Ich repariere Uhren.",
          "#~ msgid \"And then it starts again?\"\n#~ msgstr \"Und dann geht sie wieder?\"",
          "msgctxt \"point."})
        EXPECT_NE(table.find(part), std::string::npos) << part;
    // What is gone comes back with its words.
    replace(story_, "Then what?", "And then it starts again?");
    EXPECT_NE(translate("eleven-minutes", "de").find(" 1 fuzzy, 0 missing, 0 gone"), std::string::npos);
}

TEST_F(Translations, ADamagedTableStaysAsItIs) {
    replace(table_, "msgstr \"Barometer\"", "msgstr \"Barometer");
    const std::string before = *readWholeFile(path(table_));
    EXPECT_NE(translate("eleven-minutes", "de").find("the table is damaged and stays as it is"),
              std::string::npos);
    EXPECT_EQ(*readWholeFile(path(table_)), before);
}

TEST_F(Translations, ANewLanguageBeginsEmpty) {
    EXPECT_NE(translate("eleven-minutes", "fr").find(": 0 translated, 0 fuzzy, "), std::string::npos);
}

}  // namespace
}  // namespace kelmora
