#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "docs/document_steps.h"

namespace kelmora {
namespace {

namespace fs = std::filesystem;

constexpr const char* fontPath = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
constexpr std::uintmax_t largestPicture = 15 * 1024;

// Half as wide and high, each pixel the mean of four.
vh::png::Image halved(const vh::png::Image& image) {
    vh::png::Image half;
    half.width = image.width / 2;
    half.height = image.height / 2;
    const auto wide = static_cast<std::size_t>(half.width);
    const auto high = static_cast<std::size_t>(half.height);
    const std::size_t row = static_cast<std::size_t>(image.width) * 4;
    half.pixels.resize(wide * high * 4);
    for (std::size_t y = 0; y < high; ++y) {
        for (std::size_t at = 0; at < wide * 4; ++at) {
            const unsigned char* from = image.pixels.data() + y * 2 * row + at / 4 * 8 + at % 4;
            half.pixels[y * wide * 4 + at] =
                static_cast<unsigned char>((from[0] + from[4] + from[row] + from[row + 4] + 2) / 4);
        }
    }
    return half;
}

// The document's pictures are what its examples show. KELMORA_STORE_PICTURES=1 stores them: see
// docs/render-queue/make.
class RenderQueueDocument : public DocumentSteps {
protected:
    void giveFont(const std::string& game) const {
        fs::create_directories(pathOf(game + "/Resources/package/fonts"));
        fs::copy_file(fontPath, pathOf(game + "/Resources/package/fonts/words.ttf"));
    }

    // `picture NAME FRAMES` stands above the script that shows it, after so many frames.
    bool lookAlso(const DocumentPiece& note) override {
        std::istringstream words(note.head);
        std::string kind;
        std::string name;
        int frames = 0;
        if (!(words >> kind >> name >> frames) || kind != "picture") return false;
        comparePicture(name, takePicture(takeBlock(), frames));
        ++pictures_;
        return true;
    }

    vh::png::Image takePicture(const std::string& script, int frames) const {
        const std::string package = "shown/Resources/package/";
        write(package + "graphics.vs", readWholeFile(pictureFolder_ + "/paint.vs").value_or(""));
        write("shown/Resources/scripts/visual-novel.vs",
              script + "Metal[\"spawnWindow\"](\"shown\", 960, 544)\nfor frame = 1, " + std::to_string(frames) +
                  "\n    box(VESPER_FRAMEBUFFER, 0, 0, 960, 544, stageColour)\n    Vesper[\"renderStack\"]()\n"
                  "end\nMetal[\"renderImage\"](VESPER_FRAMEBUFFER)\nMetal[\"forceUpdate\"]()\n");
        fs::create_directories(pathOf(package + "ui"));
        expectOutcome("check shown", 0, "");
        expectOutcome("play shown --headless --frames 1 --shot shown.png", 0, "");
        vh::png::Image image;
        EXPECT_TRUE(vh::png::load_file(pathOf("shown.png").c_str(), image));
        return halved(image);
    }

    void comparePicture(const std::string& name, const vh::png::Image& seen) const {
        const std::string path = pictureFolder_ + "/" + name + ".png";
        if (std::getenv("KELMORA_STORE_PICTURES")) {
            EXPECT_TRUE(
                vh::png::save_png_rgba8_file(path.c_str(), seen.pixels.data(), seen.width, seen.height));
            return;
        }
        vh::png::Image kept;
        ASSERT_TRUE(vh::png::load_file(path.c_str(), kept)) << path;
        EXPECT_EQ(kept.width, seen.width);
        EXPECT_TRUE(kept.pixels == seen.pixels) << path << " is not what its example shows";
        EXPECT_LT(fs::file_size(path), largestPicture) << path;
    }

    const std::string pictureFolder_ = sourceFolder() + "/docs/render-queue";
    std::size_t pictures_ = 0;
};

TEST_F(RenderQueueDocument, ShowsWhatItsExamplesDraw) {
    giveFont("shown");
    giveFont("queue");
    write("queue/Resources/package/graphics.vs", "");
    follow("render-queue.md", "queue");
    EXPECT_EQ(pictures_, 7u);
}

}  // namespace
}  // namespace kelmora
