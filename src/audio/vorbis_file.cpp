#include "audio/vorbis_file.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "audio/vorbis_headers.h"
#include "base/trigonometry.h"

#define STB_VORBIS_HEADER_ONLY
#define STB_VORBIS_NO_STDIO
#define STB_VORBIS_NO_PUSHDATA_API
#include <stb_vorbis.h>

extern "C" {
double kelmora_sine(double angle);
double kelmora_cosine(double angle);
}
double kelmora_sine(double angle) {
    return kelmora::sineOf(angle);
}
double kelmora_cosine(double angle) {
    return kelmora::cosineOf(angle);
}

namespace vesper::ogg {
namespace {

// What a decoder may need at most. Usual files need a twentieth.
constexpr int mostDecoderMemory = 8 << 20;

struct DecoderEnd {
    void operator()(stb_vorbis* decoder) const { stb_vorbis_close(decoder); }
};

class VorbisSource : public mixer::SampleSource {
public:
    explicit VorbisSource(std::shared_ptr<const VorbisFile> file)
        : file_(std::move(file)), memory_(new char[static_cast<std::size_t>(file_->decoderMemory)]) {
        const stb_vorbis_alloc alloc{memory_.get(), file_->decoderMemory};
        int error = 0;
        decoder_.reset(stb_vorbis_open_memory(file_->bytes.data(), static_cast<int>(file_->bytes.size()),
                                              &error, &alloc));
    }
    bool isOpen() const { return decoder_ != nullptr; }
    int usedMemory() const {
        const stb_vorbis_info info = stb_vorbis_get_info(decoder_.get());
        return static_cast<int>(info.setup_memory_required +
                                std::max(info.setup_temp_memory_required, info.temp_memory_required));
    }

    std::uint64_t frames() const override { return file_->frames; }
    void read(std::uint64_t frame, std::span<std::int16_t> out) override {
        if (frame != next_) seek(frame);
        next_ = frame + out.size() / 2;
        while (!out.empty()) {
            const int got = stb_vorbis_get_samples_short_interleaved(decoder_.get(), 2, out.data(),
                                                                     static_cast<int>(out.size()));
            if (got <= 0) break;
            out = out.subspan(std::min(out.size(), static_cast<std::size_t>(got) * 2));
        }
        std::ranges::fill(out, std::int16_t{0});
    }

private:
    void seek(std::uint64_t frame) {
        if (frame == 0)
            stb_vorbis_seek_start(decoder_.get());
        else
            stb_vorbis_seek(decoder_.get(), static_cast<unsigned>(frame));
    }

    std::shared_ptr<const VorbisFile> file_;
    std::unique_ptr<char[]> memory_;
    std::unique_ptr<stb_vorbis, DecoderEnd> decoder_;  // goes before its memory
    std::uint64_t next_ = 0;
};

}  // namespace

std::shared_ptr<const VorbisFile> readVorbis(std::vector<std::uint8_t> bytes, std::string& failure) {
    const auto stream = readStream(bytes, failure);
    if (!stream) return nullptr;
    const auto facts = readHeaders(*stream, failure);
    if (!facts) return nullptr;
    // A lie about the length would have the player wait for what never comes.
    const std::uint64_t most = stream->soundPackets * (facts->longestBlock / 2);
    constexpr std::uint64_t farthest = std::uint64_t{1} << 31;
    if (stream->frames == 0 || stream->frames > most || stream->frames >= farthest ||
        bytes.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
        failure = "its length is wrong";
        return nullptr;
    }
    auto file = std::make_shared<VorbisFile>();
    file->bytes = std::move(bytes);
    file->sampleRate = facts->sampleRate;
    file->frames = stream->frames;
    file->decoderMemory = mostDecoderMemory;
    const VorbisSource trial(file);
    if (!trial.isOpen()) {
        failure = "its tables are damaged";
        return nullptr;
    }
    constexpr int slack = 65536;
    file->decoderMemory = std::min(trial.usedMemory() + slack, mostDecoderMemory);
    return file;
}

std::unique_ptr<mixer::SampleSource> openVorbis(std::shared_ptr<const VorbisFile> file) {
    auto source = std::make_unique<VorbisSource>(std::move(file));
    if (!source->isOpen()) return nullptr;
    return source;
}

}  // namespace vesper::ogg
