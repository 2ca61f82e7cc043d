#include <filesystem>
#include <sstream>

#include "docs/document_steps.h"

namespace kelmora {
namespace {

namespace fs = std::filesystem;

constexpr const char* fontPath = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";

// The document's pictures are what its examples show.
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
        comparePicture("render-queue/" + name + ".png", takePicture(takeBlock(), frames));
        ++pictures_;
        return true;
    }

    vh::png::Image takePicture(const std::string& script, int frames) const {
        const std::string package = "shown/Resources/package/";
        write(package + "graphics.vs",
              readWholeFile(sourceFolder() + "/docs/render-queue/paint.vs").value_or(""));
        write(
            "shown/Resources/scripts/visual-novel.vs",
            script + "Metal[\"spawnWindow\"](\"shown\", 960, 544)\nfor frame = 1, " + std::to_string(frames) +
                "\n    box(VESPER_FRAMEBUFFER, 0, 0, 960, 544, stageColour)\n    Vesper[\"renderStack\"]()\n"
                "end\nMetal[\"renderImage\"](VESPER_FRAMEBUFFER)\nMetal[\"forceUpdate\"]()\n");
        fs::create_directories(pathOf(package + "ui"));
        expectOutcome("check shown", 0, "");
        expectOutcome("play shown --headless --frames 1 --shot shown.png", 0, "");
        vh::png::Image image;
        EXPECT_TRUE(vh::png::load_file(pathOf("shown.png").c_str(), image));
        return image;
    }

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
