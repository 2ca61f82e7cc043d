#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "font/font_service.h"
#include "font/installed_fonts.h"
#include "font/tiny_font.h"
#include "image/pixel_memory.h"

namespace kelmora {
namespace {

class TextWrap : public testing::Test {
protected:
    void SetUp() override {
        if (!std::filesystem::exists(dejaVuSans)) GTEST_SKIP() << "DejaVu is not installed";
        font_ = vh_ttf_font_load(dejaVuSans, 20);
        ASSERT_NE(font_, nullptr);
    }
    ~TextWrap() override { vh_ttf_font_free(font_); }

    std::string wrap(const std::string& text, int width) {
        return *vh_ttf_font_wrap(font_, text.c_str(), width);
    }
    int widthOf(const std::string& text) {
        int width = 0;
        int height = 0;
        EXPECT_TRUE(vh_ttf_font_text_size(font_, text.c_str(), &width, &height));
        return width;
    }

    void* font_ = nullptr;
};

TEST_F(TextWrap, TheSizeIsThePicturesOwn) {
    for (const char* text : {"j", "Ay, Vj!", "one\ntwo three\n", "\n", " ",
                             "f\xC3\xA9"
                             "e\xE2\x80\x94"
                             "f",
                             "\xFF"}) {
        const std::unique_ptr<PlushImage> image(vh_ttf_font_render(font_, text, 1, 2, 3, 255));
        const PixelMemory pixels(image->pixels);
        int width = 0;
        int height = 0;
        EXPECT_TRUE(vh_ttf_font_text_size(font_, text, &width, &height));
        EXPECT_EQ(width, image->width) << text;
        EXPECT_EQ(height, image->height) << text;
    }
    int width = 7;
    int height = 7;
    EXPECT_TRUE(vh_ttf_font_text_size(font_, "", &width, &height));
    EXPECT_EQ(width + height, 0);
    EXPECT_FALSE(vh_ttf_font_text_size(nullptr, "a", &width, &height));
    EXPECT_FALSE(vh_ttf_font_wrap(nullptr, "a", 5));
}

TEST_F(TextWrap, EveryLineFitsAndNoWordIsLost) {
    const std::string text =
        "The lamp had been out for eleven minutes, she said; nobody had seen a well-kept light go dark.";
    for (int width = 130; width < 1200; width += 7) {
        std::istringstream lines(wrap(text, width));
        std::string joined;
        std::string previous;
        for (std::string line; std::getline(lines, line); previous = line) {
            EXPECT_LE(widthOf(line), width) << line;
            // The first word of the line had no room on the one before.
            const std::size_t end = std::min(line.find_first_of(" -"), line.size());
            const std::string word = line.substr(0, end + (line.substr(end, 1) == "-" ? 1 : 0));
            if (!previous.empty()) {
                EXPECT_GT(widthOf(previous + (previous.back() == '-' ? "" : " ") + word), width) << line;
            }
            joined += (joined.empty() || joined.back() == '-' ? "" : " ") + line;
        }
        EXPECT_EQ(joined, text) << width;
    }
}

TEST_F(TextWrap, LinesBreakWhereAReaderExpectsIt) {
    const int four = widthOf("aaaa");
    EXPECT_EQ(wrap("aaaa", four), "aaaa");
    EXPECT_EQ(wrap("aaaa    bb  cc", four), "aaaa\nbb\ncc");
    EXPECT_EQ(wrap("aaaa ", four), "aaaa ");
    EXPECT_EQ(wrap("  aa aaaa", four), "  aa\naaaa");
    EXPECT_EQ(wrap("aaaaaaaaaa bb", four), "aaaa\naaaa\naa\nbb");
    EXPECT_EQ(wrap("aa\n\nbb aaaa\n", four), "aa\n\nbb\naaaa\n");
    EXPECT_EQ(wrap("aa-aaa", four), "aa-\naaa");
    EXPECT_EQ(wrap("", 5), "");
    EXPECT_EQ(wrap("abc", 0), "a\nb\nc");
    EXPECT_EQ(wrap("\xC3\xA9\xC3\xA9", -5), "\xC3\xA9\n\xC3\xA9");
    EXPECT_EQ(wrap("\xFFx", 1), "\xFF\nx");
    // Ideographs need no blanks; a full stop does not begin a line.
    EXPECT_EQ(wrap("\xE6\x97\xA5\xE6\x9C\xAC\xE3\x80\x82\xE6\x97\xA5", widthOf("\xE6\x97\xA5\xE6\x9C\xAC")),
              "\xE6\x97\xA5\n\xE6\x9C\xAC\xE3\x80\x82\n\xE6\x97\xA5");
}

}  // namespace
}  // namespace kelmora
