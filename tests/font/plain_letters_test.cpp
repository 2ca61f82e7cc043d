#include "font/plain_letters.h"

#include <gtest/gtest.h>

#include "image/image_registry.h"

namespace kelmora {
namespace {

class Picture {
public:
    Picture(int width, int height) : image_(createSolidColourImage(width, height, 0, 0, 0, 255)) {}
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;
    ~Picture() { killPlushImage(image_); }
    PlushImage& image() { return *image_; }
    // Dots as letters, row by row.
    std::string dots() const {
        std::string text;
        for (int y = 0; y < image_->height; ++y) {
            for (int x = 0; x < image_->width; ++x) text += getPixel(image_, x, y)[0] != 0 ? '#' : '.';
            text += '\n';
        }
        return text;
    }

private:
    PlushImage* image_;
};

TEST(PlainLetters, DrawWhatFitsAndNothingBeyond) {
    Picture picture(12, 11);
    PlainLetters::draw(picture.image(), "Lj", 0, 0, 1, {255, 255, 255});
    EXPECT_EQ(
        picture.dots(),
        "............\n#........#..\n#...........\n#.......##..\n#........#..\n#........#..\n#........#..\n"
        "#####....#..\n.........#..\n.......##...\n............\n");
    for (const int scale : {1, 3, 100})
        for (const int x : {-50, -1, 11, 1000})
            PlainLetters::draw(picture.image(), "Wörter ☃ “…”\xff", x, x, scale, {1, 2, 3});
}

TEST(PlainLetters, WrapAtBlanksKeepIndentsAndCountCharacters) {
    EXPECT_EQ(PlainLetters::lengthOf("aä☃"), 3u);
    EXPECT_EQ(PlainLetters::wrap("one two three\n  four five", 9),
              (std::vector<std::string>{"one two", "three", "  four", "  five"}));
    EXPECT_EQ(PlainLetters::wrap("äöüäöüäöü", 4), (std::vector<std::string>{"äöüä", "öüäö", "ü"}));
    EXPECT_EQ(PlainLetters::wrap("", 0), std::vector<std::string>());
}

}  // namespace
}  // namespace kelmora
