#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <string>
#include <vector>

#include "audio/mixer.h"
#include "audio/ogg_pages.h"
#include "audio/track.h"
#include "audio/track_edit.h"
#include "audio/vorbis_file.h"
#include "base/whole_file.h"
#include "platform/memory_audio.h"
#include "support/environment.h"
#include "support/ogg_repair.h"
#include "support/places.h"
#include "support/temporary_folder.h"

namespace vesper::ogg {
namespace {

using File = std::vector<std::uint8_t>;
using Samples = std::vector<std::int16_t>;

const std::string folder = kelmora::sourceFolder() + "/tests/audio/";

// tone.ogg is tone.wav as a well-known encoder packed it: a second of stereo at 22050 frames. mono.ogg holds
// 5000 frames of one channel.
File packed(const char* name) {
    return kelmora::readWholeFileBytes(folder + name).value();
}

std::shared_ptr<const VorbisFile> opened(File bytes) {
    std::string failure;
    auto file = readVorbis(std::move(bytes), failure);
    EXPECT_NE(file, nullptr) << failure;
    return file;
}

std::string failureOf(File bytes) {
    std::string failure;
    EXPECT_EQ(readVorbis(std::move(bytes), failure), nullptr);
    return failure;
}

Samples allOf(const std::shared_ptr<const VorbisFile>& file) {
    Samples samples(static_cast<std::size_t>(file->frames * 2));
    openVorbis(file)->read(0, samples);
    return samples;
}

TEST(Vorbis, UnpacksWhatWasPacked) {
    const auto file = opened(packed("tone.ogg"));
    EXPECT_EQ(file->sampleRate, 22050u);
    EXPECT_EQ(file->frames, 22050u);
    const Samples samples = allOf(file);
    double noise = 0;
    double signal = 0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double time = static_cast<double>(i / 2) / 22050;
        const double exact = i % 2 == 0 ? 12000 * std::sin(time * 440 * 2 * std::acos(-1.0))
                                        : 9000 * std::sin(time * 660 * 2 * std::acos(-1.0));
        signal += exact * exact;
        noise += (samples[i] - exact) * (samples[i] - exact);
    }
    EXPECT_LT(noise, signal / 1000);
}

// Bytes that both systems must give.
TEST(Vorbis, TheSumOfItsSamplesIsSettled) {
    std::uint32_t sum = 0;
    for (const std::int16_t sample : allOf(opened(packed("tone.ogg"))))
        sum = (sum << 5 | sum >> 27) ^ static_cast<std::uint16_t>(sample);
    EXPECT_EQ(sum, 3582845431u);
}

TEST(Vorbis, OneChannelIsHeardOnBothSides) {
    const auto file = opened(packed("mono.ogg"));
    EXPECT_EQ(file->frames, 5000u);
    const Samples samples = allOf(file);
    for (std::size_t i = 0; i < samples.size(); i += 2) ASSERT_EQ(samples[i], samples[i + 1]);
    EXPECT_GT(*std::ranges::max_element(samples), 10000);
}

TEST(Vorbis, AnyFrameCanBeReadAfterAnyOther) {
    const auto file = opened(packed("tone.ogg"));
    const Samples samples = allOf(file);
    const auto source = openVorbis(file);
    std::uint32_t state = 3;
    for (int i = 0; i < 200; ++i) {
        state = state * 1664525u + 1013904223u;
        const std::size_t frame = i == 7 ? 0 : (state >> 8) % 22050;
        const std::size_t count = std::min<std::size_t>(22050 - frame, i % 2 == 0 ? 1 : 3000);
        Samples part(count * 2, 77);
        source->read(frame, part);
        ASSERT_TRUE(
            std::equal(part.begin(), part.end(), samples.begin() + static_cast<std::ptrdiff_t>(frame * 2)))
            << frame;
    }
}

TEST(Vorbis, ADamagedOrCutFileSaysWhatIsWrong) {
    const File good = packed("tone.ogg");
    EXPECT_EQ(failureOf({}), "it ends too early");
    EXPECT_EQ(failureOf(File(good.begin(), good.end() - 1)).find("page "), 0u);
    for (std::size_t length = 0; length < good.size(); length += 97)
        EXPECT_NE(failureOf(File(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(length))), "");
    for (std::size_t at = 0; at < good.size(); at += 61) {
        File bad = good;
        bad[at] = static_cast<std::uint8_t>(bad[at] ^ 0x10);
        EXPECT_NE(failureOf(std::move(bad)), "") << at;
    }
    File twice = good;
    twice.insert(twice.end(), good.begin(), good.end());
    EXPECT_NE(failureOf(std::move(twice)).find("behind its end"), std::string::npos);
    const auto second = static_cast<std::ptrdiff_t>(readPage(good)->whole.size());
    EXPECT_NE(failureOf(File(good.begin() + second, good.end())).find("first page"), std::string::npos);
}

// With checksums mended the damage reaches what stands behind them.
TEST(Vorbis, LiesInTheHeadersAreFound) {
    const File good = packed("tone.ogg");
    const auto changed = [&good](std::size_t at, std::initializer_list<int> bytes) {
        File bad = good;
        for (const int byte : bytes) bad[at++] = static_cast<std::uint8_t>(byte);
        kelmora::repairOgg(bad);
        return failureOf(std::move(bad));
    };
    const std::size_t tags = readPage(good)->whole.size();
    const Page page = *readPage(Bytes(good).subspan(tags));
    const std::size_t body = tags + 27 + page.lacing.size();
    EXPECT_EQ(changed(28 + 11, {0}), "it holds no Vorbis sound that can be played");     // channels
    EXPECT_EQ(changed(28 + 28, {0x11}), "it holds no Vorbis sound that can be played");  // blocks
    EXPECT_EQ(changed(body + 7, {255, 255, 255, 127}), "its tags are damaged");
    const std::size_t table = body + page.lacing[0] + 7;
    EXPECT_EQ(changed(table + 1, {0}), "its tables are damaged");  // the mark of a table
    EXPECT_EQ(changed(table + 4, {255, 255, 255, 255, 255}), "its tables are damaged");  // its size
    std::size_t last = 0;
    for (std::size_t at = 0; at < good.size(); at += readPage(Bytes(good).subspan(at))->whole.size())
        last = at;
    EXPECT_EQ(changed(last + 6, {0, 0, 0, 0, 1}), "its length is wrong");
}

class VorbisTrack : public testing::Test {
protected:
    VorbisTrack() { kelmora::setEnvironment("KELMORA_AUDIO", "memory"); }
    ~VorbisTrack() override {
        audio::close(track_);
        kelmora::setEnvironment("KELMORA_AUDIO", nullptr);
    }

    audio::Track* track_ = audio::openFile((folder + "tone.ogg").c_str());
};

TEST_F(VorbisTrack, PlaysWithoutBeingUnpackedWhole) {
    ASSERT_NE(track_, nullptr);
    ASSERT_TRUE(audio::play(track_, 900, true));
    const auto stream = kelmora::lastMemoryAudioStream();
    while (stream->played().size() < 10000) stream->consume(500);
    audio::pause(track_);
    EXPECT_TRUE(track_->samples.empty());
    const Samples all = allOf(track_->packed);
    for (std::size_t i = 0; i < 10000; ++i)
        ASSERT_EQ(stream->played()[i], all[(i + 19845 * 2) % all.size()]) << i;
}

TEST_F(VorbisTrack, IsAnalysedSavedAndEdited) {
    ASSERT_NE(track_, nullptr);
    const kelmora::TemporaryFolder made;
    const std::string path = (made / "tone.wav").string();
    EXPECT_TRUE(audio::save(track_, path.c_str()));
    EXPECT_EQ(std::filesystem::file_size(path), 44u + 22050 * 4);
    EXPECT_NE(track_->packed, nullptr);
    EXPECT_TRUE(audio::trim(track_, 100, 300));
    EXPECT_EQ(track_->samples.size(), 4410u * 2);
    EXPECT_EQ(track_->packed, nullptr);
    EXPECT_TRUE(audio::play(track_, 0, false));
}

TEST_F(VorbisTrack, AFileThatDoesNotOpenSaysWhy) {
    EXPECT_EQ(audio::openFailure(), "");
    EXPECT_EQ(audio::openFile("/no/such.ogg"), nullptr);
    EXPECT_EQ(audio::openFailure(), "the file is missing or empty");
    EXPECT_EQ(audio::openFile((kelmora::sourceFolder() + "/README.md").c_str()), nullptr);
    EXPECT_EQ(audio::openFailure(), "it is neither a WAV nor an Ogg Vorbis file that can be played");
    const kelmora::TemporaryFolder made;
    const std::string path = (made / "cut.ogg").string();
    const File good = packed("tone.ogg");
    ASSERT_TRUE(kelmora::writeWholeFileBytes(path, std::span(good).first(good.size() / 2)));
    EXPECT_EQ(audio::openFile(path.c_str()), nullptr);
    EXPECT_NE(audio::openFailure().find("cut off or damaged"), std::string::npos);
}

}  // namespace
}  // namespace vesper::ogg
