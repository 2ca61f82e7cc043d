#include <gtest/gtest.h>

#include "codec/codec_test_support.h"
#include "platform/system.h"
#include "support/shell.h"
#include "support/temporary_folder.h"

// What an independent program, ImageMagick, reads from the same files.
namespace vh::png {
namespace {

class PicturesBesideATool : public testing::Test {
protected:
    void SetUp() override {
        if (platform_is_windows() || kelmora::runInShell("command -v mogrify").exitCode != 0)
            GTEST_SKIP() << "ImageMagick is not installed (tools/setup test)";
    }

    // Has the tool read files, each to rows of RGBA in a file of its own.
    void convert(const std::string& quotedFiles) const {
        kelmora::runInShell("mogrify -auto-orient -depth 8 -format rgba -path " +
                            kelmora::quoted(folder_.path().string()) + " " + quotedFiles + " 2>/dev/null");
    }
    // Empty where the tool could not read it.
    Bytes converted(const std::string& file) const {
        const std::filesystem::path name = std::filesystem::path(file).stem().string() + ".rgba";
        return kelmora::readWholeFileBytes((folder_.path() / name).string()).value_or(Bytes{});
    }

    const kelmora::TemporaryFolder folder_;
};

// Layers without alpha come clear from the tool where they leave the canvas bare.
Bytes with_full_alpha(Bytes rgba) {
    for (std::size_t i = 3; i < rgba.size(); i += 4) rgba[i] = 255;
    return rgba;
}

TEST_F(PicturesBesideATool, ReadTheSame) {
    for (const auto& [extension, least] :
         {std::pair<std::string, int>{".tga", 20}, {".bmp", 25}, {".xcf", 6}}) {
        std::string files;
        std::vector<std::string> names;
        for (const ManifestEntry& entry : read_manifest(picture_path(""))) {
            if (entry.source != "tool" || !entry.file.ends_with(extension)) continue;
            names.push_back(entry.file);
            files += kelmora::quoted(picture_path(entry.file)) + " ";
        }
        convert(files);
        int compared = 0;
        for (const std::string& name : names) {
            Bytes theirs = converted(name);
            Image image;
            ASSERT_TRUE(load(read_picture(name), image)) << name;
            const Bytes ours(image.pixels.begin(), image.pixels.end());
            if (ours == with_full_alpha(ours) && extension == ".xcf") theirs = with_full_alpha(theirs);
            if (theirs.empty()) continue;
            ++compared;
            EXPECT_TRUE(ours == theirs) << name;
        }
        EXPECT_GE(compared, least) << extension;
    }
}

TEST_F(PicturesBesideATool, WrittenOnesOpenThere) {
    std::mt19937 random(3);
    for (const auto& [width, height] : {std::pair{1, 1}, {3, 7}, {64, 64}, {65, 129}, {300, 20}}) {
        Bytes pixels = random_bytes(random, static_cast<std::size_t>(width * height * 4));
        // Without colour behind what is clear: tools may drop it.
        for (std::size_t i = 0; i < pixels.size(); i += 4)
            if (pixels[i + 3] == 0) pixels[i] = pixels[i + 1] = pixels[i + 2] = 0;
        for (const auto& [extension, save] :
             {std::pair<const char*, decltype(&save_png_rgba8_file)>{"png", &save_png_rgba8_file},
              {"bmp", &save_bmp_rgba8_file},
              {"tga", &save_tga_rgba8_file},
              {"xcf", &save_xcf_rgba8_file}}) {
            const std::string path = (folder_ / (std::string("written.") + extension)).string();
            ASSERT_TRUE(save(path.c_str(), pixels.data(), width, height));
            convert(kelmora::quoted(path));
            EXPECT_TRUE(converted(path) == pixels) << extension << ' ' << width << " x " << height;
        }
    }
}

}  // namespace
}  // namespace vh::png
