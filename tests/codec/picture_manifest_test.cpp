#include <gtest/gtest.h>

#include "codec/codec_test_support.h"

// Every TGA, BMP and XCF file of tests/pictures, good and bad, as tools/make_picture_inputs.py lists them.
namespace vh::png {
namespace {

TEST(PictureManifest, EveryInputReadsAsItsLineSays) {
    ASSERT_GT(read_manifest(picture_path("")).size(), 250u);
    check_manifest(picture_path(""));
}

TEST(PictureManifest, FormatsAreToldByTheirContent) {
    const std::pair<const char*, int> samples[] = {
        {"bits24.bmp", BmpFormat}, {"text.bmp", BmpFormat},     {"order_20.tga", TgaFormat},
        {"stack.xcf", XcfFormat},  {"short_29.xcf", XcfFormat}, {"zeros_20.tga", UnknownFormat}};
    for (const auto& [name, format] : samples) {
        const Bytes file = read_picture(name);
        EXPECT_EQ(detect_format(file.data(), static_cast<unsigned>(file.size())), format) << name;
    }
    const Bytes png = read_input("rgba8.png");
    EXPECT_EQ(detect_format(png.data(), static_cast<unsigned>(png.size())), PngFormat);
    EXPECT_EQ(detect_format(png.data(), 0), UnknownFormat);
    EXPECT_EQ(detect_format(nullptr, 20), UnknownFormat);
}

// A cut file may still be whole to its reader; every byte is set to all ones and to zero in turn.
TEST(PictureManifest, DamageIsRefusedOrReadWhole) {
    for (const char* name : {"order_00_rle.tga", "map24.tga", "bits8_of_30.bmp", "bits32_rgba_v108.bmp",
                             "stack_small_canvas.xcf", "indexeda_v0_c1.xcf", "rgba_v11_c2.xcf"}) {
        const Bytes whole = read_picture(name);
        for (std::size_t size = 0; size < whole.size(); ++size) {
            expect_whole_or_reset(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)),
                                  name + std::to_string(size));
        }
        const std::size_t changed = std::min<std::size_t>(whole.size(), 300);
        for (std::size_t i = 0; i < changed; ++i) {
            // Sizes that stay within the limit would each cost the canvas's memory.
            if (i >= 14 && i < 22 && std::string(name).ends_with(".xcf")) continue;
            for (const unsigned char value : {std::uint8_t{0}, std::uint8_t{0xFF}}) {
                Bytes file = whole;
                file[i] = value;
                expect_whole_or_reset(file, name + std::to_string(i));
            }
        }
    }
}

// The claim of a small file: it costs address space and nothing else.
TEST(PictureManifest, LargeCanvasOfSmallFile) {
    if (sizeof(void*) < 8) GTEST_SKIP() << "no room for it";
    Bytes file = read_picture("far_away.xcf");
    store_u32_big(file.data() + 14, 20000);
    store_u32_big(file.data() + 18, 20000);
    Image image;
    ASSERT_TRUE(load(file, image));
    EXPECT_EQ(image.pixels.size(), std::size_t{1600000000});
    EXPECT_EQ(image.pixels[image.pixels.size() / 2], 0);
}

// One layer with many properties, listed many times: each byte of the file would cost more the larger it is.
TEST(PictureManifest, LayersThatShareTheirPropertiesAreBounded) {
    constexpr std::uint32_t layers = 3000;
    constexpr std::uint32_t headSize = 26;
    const Bytes whole = read_picture("rgb_v0_c1.xcf");
    const auto fileWith = [&](std::uint32_t properties) {
        Bytes file(whole.begin(), whole.begin() + headSize);
        const auto add = [&](std::initializer_list<std::uint32_t> words) {
            for (const std::uint32_t word : words) {
                file.resize(file.size() + 4);
                store_u32_big(file.data() + file.size() - 4, word);
            }
        };
        constexpr std::uint32_t layerAt = headSize + 8 + (layers + 1) * 4;
        add({0, 0});  // no properties of the image
        for (std::uint32_t i = 0; i < layers; ++i) add({layerAt});
        add({0, 1, 1, 0, 0});  // the end of the list; width, height, type, length of the name
        for (std::uint32_t i = 0; i < properties; ++i) add({8, 4, 0});  // invisible
        add({0, 0, layerAt, 0});
        return file;
    };
    Image image;
    EXPECT_TRUE(load(fileWith(100), image));
    EXPECT_FALSE(load(fileWith(6000), image));
}

}  // namespace
}  // namespace vh::png
