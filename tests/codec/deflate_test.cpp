#include "codec/deflate.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "codec/adler32.h"
#include "codec/inflate.h"

namespace vh::png {
namespace {

std::vector<unsigned char> bytesOf(const std::string& text) {
    return {text.begin(), text.end()};
}

// By way of a zlib stream, whose reader wants a head and a checksum.
std::vector<unsigned char> inflated(const std::vector<unsigned char>& packed,
                                    const std::vector<unsigned char>& wanted) {
    std::vector<unsigned char> stream(packed.size() + 6);
    stream[0] = 0x78;
    stream[1] = 0x01;
    std::copy(packed.begin(), packed.end(), stream.begin() + 2);
    const std::uint32_t sum = adler32(wanted);
    for (std::size_t i = 0; i < 4; ++i)
        stream[packed.size() + 2 + i] = static_cast<unsigned char>(sum >> (24 - 8 * i));
    Inflater inflater;
    kelmora::ByteBuffer output;
    if (!inflater.inflate_bytes(stream.data(), stream.size(), output)) return {1, 2, 3};
    return {output.data(), output.data() + output.size()};
}

TEST(Deflate, GivesBackWhatWentIn) {
    std::mt19937 random(7);
    std::vector<std::vector<unsigned char>> inputs{{}, {0}, bytesOf("abcabcabcabcabcabcabcX")};
    std::vector<unsigned char> noise(200000);
    for (unsigned char& byte : noise) byte = static_cast<unsigned char>(random());
    inputs.push_back(noise);
    std::vector<unsigned char> mixed(150000, 200);
    for (std::size_t i = 0; i < mixed.size(); i += 1 + random() % 40)
        mixed[i] = static_cast<unsigned char>(random() % 4);
    inputs.push_back(mixed);
    // Matches as far away as the window reaches, and a little farther.
    std::vector<unsigned char> far(80000);
    for (std::size_t i = 0; i < far.size(); ++i) far[i] = noise[i % 32768];
    inputs.push_back(far);
    for (const std::vector<unsigned char>& input : inputs) EXPECT_EQ(inflated(deflate(input), input), input);
}

TEST(Deflate, PacksTextAndStoresNoise) {
    std::string text;
    for (int i = 0; i < 4000; ++i) text += "line " + std::to_string(i % 50) + " of a script\n";
    EXPECT_LT(deflate(bytesOf(text)).size(), text.size() / 20);
    std::mt19937 random(1);
    std::vector<unsigned char> noise(100000);
    for (unsigned char& byte : noise) byte = static_cast<unsigned char>(random());
    EXPECT_LE(deflate(noise).size(), noise.size() + 20);
}

}  // namespace
}  // namespace vh::png
