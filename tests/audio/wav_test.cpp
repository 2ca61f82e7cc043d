#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <filesystem>
#include <limits>
#include <memory>
#include <string>

#include "audio/wav_reader.h"
#include "audio/wav_writer.h"
#include "base/whole_file.h"

namespace vesper::wav {
namespace {

using Samples = std::vector<std::int16_t>;

std::string little(std::uint64_t value, std::size_t size) {
    std::string bytes;
    for (std::size_t i = 0; i < size; ++i) bytes += static_cast<char>(value >> (8 * i));
    return bytes;
}

std::string chunk(const std::string& id, const std::string& payload) {
    return id + little(payload.size(), 4) + payload + (payload.size() % 2 != 0 ? "\x7F" : "");
}

std::string formatChunk(unsigned format, unsigned channels, unsigned bits, unsigned rate = 8000) {
    return chunk("fmt ",
                 little(format, 2) + little(channels, 2) + little(rate, 4) + little(0, 6) + little(bits, 2));
}

std::string extensible(unsigned subFormat, unsigned channels, unsigned bits, unsigned extension = 22) {
    return chunk("fmt ", little(0xFFFE, 2) + little(channels, 2) + little(8000, 4) + little(0, 6) +
                             little(bits, 2) + little(extension, 2) + little(0, 6) + little(subFormat, 2) +
                             std::string(14, '\0'));
}

std::string dataChunk(const std::string& bytes) {
    return chunk("data", bytes);
}

std::string wave(const std::string& chunks) {
    return "RIFF" + little(1, 4) + "WAVE" + chunks;
}

bool decodeText(const std::string& file, DecodedFile& out, std::uint16_t channels = 0) {
    // A block of the exact size, so that the sanitiser sees every read past the end.
    const auto block = std::make_unique<char[]>(file.size());
    file.copy(block.get(), file.size());
    return decode(block.get(), static_cast<unsigned>(file.size()), &out, {channels});
}

Samples samplesOf(const std::string& chunks, std::uint16_t channels = 0) {
    DecodedFile out;
    EXPECT_TRUE(decodeText(wave(chunks), out, channels));
    return out.samples;
}

void expectRefused(const std::string& file) {
    DecodedFile out{{1, 2, 3}, 4, 5};
    EXPECT_FALSE(decodeText(file, out));
    EXPECT_EQ(out.samples, (Samples{1, 2, 3}));
    EXPECT_EQ(out.sampleRate, 4u);
    EXPECT_EQ(out.channels, 5);
}

std::string floats(std::initializer_list<float> values) {
    std::string bytes;
    for (const float value : values) bytes += little(std::bit_cast<std::uint32_t>(value), 4);
    return bytes;
}

std::string doubles(std::initializer_list<double> values) {
    std::string bytes;
    for (const double value : values) bytes += little(std::bit_cast<std::uint64_t>(value), 8);
    return bytes;
}

TEST(WavReader, readsEveryEncoding) {
    EXPECT_EQ(samplesOf(formatChunk(1, 1, 8) + dataChunk(std::string("\x80\x00\xFF\x7F", 4))),
              (Samples{0, -32768, 32511, -256}));
    EXPECT_EQ(
        samplesOf(formatChunk(1, 1, 24) + dataChunk(std::string("\xFF\xFF\x7F\x00\x00\x80\x00\x00\xC0", 9))),
        (Samples{32767, -32768, -16384}));
    EXPECT_EQ(samplesOf(formatChunk(1, 1, 32) +
                        dataChunk(little(0x7FFFFFFF, 4) + little(0x80000000, 4) + little(1, 4))),
              (Samples{32767, -32768, 0}));
    EXPECT_EQ(samplesOf(formatChunk(3, 1, 32) + dataChunk(floats({2.0F, -2.0F, 0.5F, -0.5F, NAN, INFINITY}))),
              (Samples{32767, -32768, 16384, -16384, 0, 32767}));
    EXPECT_EQ(samplesOf(formatChunk(3, 1, 64) + dataChunk(doubles({1.5, -0.25, -INFINITY, -NAN}))),
              (Samples{32767, -8192, -32768, 0}));
    EXPECT_EQ(samplesOf(extensible(3, 1, 32) + dataChunk(floats({-1.0F}))), (Samples{-32768}));
    EXPECT_EQ(samplesOf(extensible(1, 1, 16, 30) + dataChunk(little(5, 2))), (Samples{5}));
    EXPECT_EQ(detail::readSampleAsFloat(nullptr, 3, 16), 0.0);
    EXPECT_EQ(detail::readSampleAsFloat(nullptr, 2, 8), 0.0);
}

// Sixteen bits have a way of their own, which has to agree with the general one.
TEST(WavReader, sixteenBitsGoThroughTheCommonScale) {
    std::string bytes;
    Samples expected;
    for (int value = -32768; value <= 32767; ++value) {
        const std::string one = little(static_cast<std::uint16_t>(value), 2);
        bytes += one;
        const double read =
            detail::readSampleAsFloat(reinterpret_cast<const std::uint8_t*>(one.data()), 1, 16);
        expected.push_back(static_cast<std::int16_t>(std::lround(read * (read < 0 ? 32768.0 : 32767.0))));
    }
    EXPECT_EQ(samplesOf(formatChunk(1, 1, 16) + dataChunk(bytes)), expected);
}

TEST(WavReader, roundsHalvesAwayFromZero) {
    EXPECT_EQ(detail::sampleFromFloat(0.5 / 32768.0), 0);
    EXPECT_EQ(detail::sampleFromFloat(-0.5 / 32768.0), -1);
    EXPECT_EQ(detail::sampleFromFloat(std::nextafter(-0.5, 0.0) / 32768.0), 0);
    EXPECT_EQ(detail::sampleFromFloat(-1.5 / 32768.0), -2);
    EXPECT_EQ(detail::sampleFromFloat(std::nextafter(1.0, 0.0)), 32767);
    EXPECT_EQ(detail::sampleFromFloat(std::nextafter(-1.0, 0.0)), -32768);
}

TEST(WavReader, mapsChannels) {
    std::string three;
    for (const int value : {-300, -600, -900, 3, 6, 9}) three += little(static_cast<std::uint16_t>(value), 2);
    const std::string file = formatChunk(1, 3, 16) + dataChunk(three);
    EXPECT_EQ(samplesOf(file), (Samples{-300, -600, -900, 3, 6, 9}));
    EXPECT_EQ(samplesOf(file, 1), (Samples{-600, 6}));
    EXPECT_EQ(samplesOf(file, 2), (Samples{-300, -600, 3, 6}));
    EXPECT_EQ(samplesOf(file, 5), (Samples{-300, -600, -900, -900, -900, 3, 6, 9, 9, 9}));
    EXPECT_EQ(samplesOf(formatChunk(1, 1, 16) + dataChunk(little(7, 2) + little(8, 2)), 2),
              (Samples{7, 7, 8, 8}));
}

TEST(WavReader, walksChunks) {
    const std::string odd = chunk("LIST", "abc");
    const std::string body = dataChunk(little(1, 2) + little(2, 2));
    EXPECT_EQ(samplesOf(odd + formatChunk(1, 1, 16) + odd + body + dataChunk(little(3, 2))), (Samples{1, 2}));
    EXPECT_EQ(samplesOf(body + formatChunk(1, 1, 16)), (Samples{1, 2}));
    EXPECT_EQ(samplesOf(formatChunk(1, 2, 16) + dataChunk(little(1, 2) + little(2, 2) + little(3, 2))),
              (Samples{1, 2}));
    std::string unpadded = formatChunk(1, 1, 8) + dataChunk(std::string(3, '\x80'));
    unpadded.pop_back();
    EXPECT_EQ(samplesOf(unpadded), (Samples{0, 0, 0}));
    EXPECT_EQ(samplesOf(formatChunk(1, 1, 16) + body + "1234567"), (Samples{1, 2}));
}

TEST(WavReader, refuses) {
    const std::string body = dataChunk(little(1, 2));
    const std::string good = formatChunk(1, 1, 16);
    const std::pair<const char*, std::string> cases[] = {
        {"no data chunk", good},
        {"no format chunk", body},
        {"empty data, also before full data", good + dataChunk("") + body},
        {"no channels", formatChunk(1, 0, 16) + body},
        {"no rate", formatChunk(1, 1, 16, 0) + body},
        {"short format", chunk("fmt ", std::string(15, '\1')) + body},
        {"12 bits", formatChunk(1, 1, 12) + body},
        {"64-bit integers", formatChunk(1, 1, 64) + body},
        {"16-bit floats", formatChunk(3, 1, 16) + body},
        {"compressed", formatChunk(2, 1, 16) + body},
        {"extensible in a plain chunk", formatChunk(0xFFFE, 1, 16) + body},
        {"extensible with a short extension", extensible(1, 1, 16, 21) + body},
        {"extensible of a compressed form", extensible(2, 1, 16) + body},
        {"less than a frame", formatChunk(1, 2, 16) + body},
        {"a frame of half a megabyte", formatChunk(3, 65535, 64) + body},
        {"a bad format behind a good one", good + formatChunk(1, 1, 12) + body},
        {"data beyond the end", good + "data" + little(3, 4) + "ab"},
        {"data of 4 GB", good + "data" + little(0xFFFFFFFF, 4) + "ab"},
        {"a last chunk beyond the end", good + body + "LIST" + little(0x7FFFFFFF, 4)},
    };
    for (const auto& [name, chunks] : cases) {
        SCOPED_TRACE(name);
        expectRefused(wave(chunks));
    }
    expectRefused("RIFX" + wave(good + body).substr(4));
    expectRefused("RIFF" + little(0, 4) + "AVI " + good + body);
    DecodedFile out;
    EXPECT_FALSE(decode(nullptr, 100, &out, {}));
    EXPECT_FALSE(decode("RIFF", 4, nullptr, {}));
}

TEST(WavReader, refusesTruncationAtEveryLength) {
    const std::string file =
        wave(extensible(1, 2, 24) + chunk("LIST", "ab") + dataChunk(std::string(12, '\1')));
    DecodedFile out;
    ASSERT_TRUE(decodeText(file, out));
    for (std::size_t length = 0; length < file.size(); ++length) {
        SCOPED_TRACE(length);
        expectRefused(file.substr(0, length));
    }
}

TEST(WavWriter, writesHeaderAndSamples) {
    std::vector<std::uint8_t> bytes;
    ASSERT_TRUE(encode({{-2, 258, 32767, -32768}, 44100, 2}, &bytes));
    const std::string expected = "RIFF" + little(44, 4) + "WAVEfmt " + little(16, 4) + little(1, 2) +
                                 little(2, 2) + little(44100, 4) + little(176400, 4) + little(4, 2) +
                                 little(16, 2) + "data" + little(8, 4) + little(0xFFFE, 2) + little(258, 2) +
                                 little(32767, 2) + little(0x8000, 2);
    EXPECT_EQ(std::string(bytes.begin(), bytes.end()), expected);
    ASSERT_TRUE(encode({{}, 1, 1}, &bytes));
    EXPECT_EQ(bytes.size(), 44u);
}

TEST(WavWriter, refuses) {
    std::vector<std::uint8_t> bytes{1};
    EXPECT_FALSE(encode({{1, 2}, 8000, 2}, nullptr));
    EXPECT_FALSE(encode({{1, 2}, 0, 2}, &bytes));
    EXPECT_FALSE(encode({{1, 2}, 8000, 0}, &bytes));
    EXPECT_FALSE(encode({{1, 2, 3}, 8000, 2}, &bytes));
    EXPECT_FALSE(encode({{}, 0x40000000, 2}, &bytes));
    EXPECT_TRUE(encode({{}, 0x3FFFFFFF, 2}, &bytes));
    EXPECT_TRUE(encode({{}, 1, 32767}, &bytes));
    bytes = {1};
    EXPECT_FALSE(encode({{}, 1, 32768}, &bytes));
    EXPECT_EQ(bytes, std::vector<std::uint8_t>{1});
    EXPECT_FALSE(encodeFile(nullptr, {{1, 2}, 8000, 2}));
    EXPECT_FALSE(encodeFile("/no/such/folder/a.wav", {{1, 2}, 8000, 2}));
}

TEST(WavFiles, readBackWhatWasWritten) {
    const std::string path = testing::TempDir() + "kelmora_wav_test.wav";
    const DecodedFile sound{{-5, 16384, 0, -32768}, 22050, 2};
    ASSERT_TRUE(encodeFile(path.c_str(), sound));
    std::vector<std::uint8_t> bytes;
    ASSERT_TRUE(detail::readFileBytes(path.c_str(), &bytes));
    DecodedFile read;
    ASSERT_TRUE(decode(bytes.data(), static_cast<unsigned>(bytes.size()), &read, {}));
    EXPECT_EQ(read.samples, sound.samples);
    EXPECT_EQ(read.sampleRate, sound.sampleRate);
    EXPECT_EQ(read.channels, sound.channels);
    EXPECT_FALSE(detail::readFileBytes(path.c_str(), nullptr));
    ASSERT_TRUE(kelmora::writeWholeFile(path, ""));
    EXPECT_FALSE(detail::readFileBytes(path.c_str(), &bytes));
    std::filesystem::remove(path);
    EXPECT_FALSE(detail::readFileBytes(path.c_str(), &bytes));
    EXPECT_FALSE(detail::readFileBytes(nullptr, &bytes));
}

}  // namespace
}  // namespace vesper::wav
