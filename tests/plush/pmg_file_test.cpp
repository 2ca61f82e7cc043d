#include "codec/pmg_file.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>

#include "base/whole_file.h"
#include "image/image_registry.h"
#include "support/temporary_folder.h"

namespace kelmora {
namespace {

class PmgFile : public testing::Test {
protected:
    ~PmgFile() override {
        while (!livePlushImages.empty()) killPlushImage(*livePlushImages.begin());
    }
    TemporaryFolder folder_;
    const std::string path_ = (folder_ / "picture.pmg").string();
};

TEST_F(PmgFile, KeepsThePictureAndItsReflection) {
    PlushImage* image = createSolidColourImage(3, 2, 10, 20, 30, 40);
    PlushImage* map = createSolidColourImage(1, 4, 5, 6, 7, 8);
    insertReflection(*image, *map);
    setPixel(image, 2, 1, 1, 2, 3, 4);
    ASSERT_TRUE(savePlushImage(image, path_.c_str()));
    EXPECT_EQ(std::filesystem::file_size(path_), 32u + 24u + 16u);
    const PlushImage* loaded = loadPlushImage(path_.c_str());
    ASSERT_NE(loaded, nullptr);
    EXPECT_TRUE(livePlushImages.contains(const_cast<PlushImage*>(loaded)));
    EXPECT_EQ(loaded->width, 3);
    EXPECT_EQ(loaded->reflectHeight, 4);
    EXPECT_EQ(std::memcmp(loaded->pixels, image->pixels, 24), 0);
    EXPECT_EQ(std::memcmp(loaded->reflectPixels, map->pixels, 16), 0);
}

TEST_F(PmgFile, AnEmptyImageIsItsHeadersAlone) {
    const PlushImage empty;
    ASSERT_TRUE(savePlushImage(&empty, path_.c_str()));
    EXPECT_EQ(std::filesystem::file_size(path_), 32u);
    const PlushImage* loaded = loadPlushImage(path_.c_str());
    ASSERT_NE(loaded, nullptr);
    EXPECT_EQ(loaded->pixels, nullptr);
}

TEST_F(PmgFile, RefusesWhatIsNoneOfIts) {
    const PlushImage empty;
    EXPECT_FALSE(savePlushImage(&empty, (folder_ / "x.PMG").string().c_str()));
    EXPECT_FALSE(savePlushImage(nullptr, path_.c_str()));
    PlushImage hollow;
    hollow.width = hollow.height = 1;
    EXPECT_FALSE(savePlushImage(&hollow, path_.c_str()));
    EXPECT_EQ(loadPlushImage(nullptr), nullptr);
    EXPECT_EQ(loadPlushImage("pmg"), nullptr);

    ASSERT_TRUE(savePlushImage(createSolidColourImage(2, 2, 1, 1, 1, 1), path_.c_str()));
    const auto whole = readWholeFileBytes(path_);
    ASSERT_TRUE(whole.has_value());
    for (std::size_t size = 0; size < whole->size(); ++size) {
        EXPECT_TRUE(writeWholeFileBytes(path_, std::span(*whole).first(size)));
        EXPECT_EQ(loadPlushImage(path_.c_str()), nullptr) << size;
    }
    for (const std::size_t field : {0u, 8u, 32u, 40u}) {  // a size of all ones
        auto damaged = *whole;
        std::memset(damaged.data() + field, 0xFF, 8);
        EXPECT_TRUE(writeWholeFileBytes(path_, damaged));
        EXPECT_EQ(loadPlushImage(path_.c_str()), nullptr) << field;
    }
}

}  // namespace
}  // namespace kelmora
