#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "image/pixel_memory.h"
#include "shim/shim.h"
#include "support/temporary_folder.h"

namespace kelmora {
namespace {

TEST(ShimPictures, EveryFormatIsWrittenAndLoadedThroughOneCall) {
    const TemporaryFolder folder;
    std::vector<unsigned char> pixels;
    for (int i = 0; i < 5 * 3 * 4; ++i) pixels.push_back(static_cast<unsigned char>(i * 7));
    for (const auto save : {vh_save_png, vh_save_bmp, vh_save_tga, vh_save_xcf}) {
        const std::string path = (folder / "picture").string();
        ASSERT_TRUE(save(path.c_str(), pixels.data(), 5, 3));
        int width = 0;
        int height = 0;
        const PixelMemory loaded(vh_load_png(path.c_str(), &width, &height));
        ASSERT_NE(loaded, nullptr);
        EXPECT_EQ(width, 5);
        EXPECT_EQ(height, 3);
        EXPECT_TRUE(std::equal(pixels.begin(), pixels.end(), loaded.get()));
        EXPECT_FALSE(save("/no/such/folder/picture", pixels.data(), 5, 3));
        EXPECT_FALSE(save(path.c_str(), nullptr, 5, 3));
        EXPECT_FALSE(save(nullptr, pixels.data(), 5, 3));
    }
}

}  // namespace
}  // namespace kelmora
