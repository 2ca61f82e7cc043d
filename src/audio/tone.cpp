#include "audio/tone.h"

#include <cstddef>

#include "audio/sample_math.h"
#include "base/trigonometry.h"

namespace vesper::audio {
namespace {

constexpr double fullTurn = 6.283185307179586;
constexpr double loudness = 0.75;
constexpr double fullScale = 32767.0;

double valueAt(double periods, ToneShape shape) {
    if (shape == ToneShape::Sine) return kelmora::sineOf(periods * fullTurn);
    const double part = periods - static_cast<double>(static_cast<std::int64_t>(periods));
    if (shape == ToneShape::Saw) return 2 * part - 1;
    return part < 0.5 ? 1.0 : -1.0;
}

}  // namespace

std::optional<ToneShape> toneShape(std::string_view name) {
    if (name == "square") return ToneShape::Square;
    if (name == "sine") return ToneShape::Sine;
    if (name == "saw") return ToneShape::Saw;
    return std::nullopt;
}

std::optional<ToneSide> toneSide(std::string_view name) {
    if (name == "left") return ToneSide::Left;
    if (name == "right") return ToneSide::Right;
    if (name == "both") return ToneSide::Both;
    return std::nullopt;
}

wav::DecodedFile makeTone(std::uint32_t frequency, std::uint32_t frames, ToneShape shape, ToneSide side) {
    wav::DecodedFile tone;
    tone.sampleRate = toneRate;
    tone.channels = 2;
    tone.samples.resize(std::size_t{frames} * 2);
    if (frequency == 0) return tone;
    std::int16_t* out = tone.samples.data();
    for (std::uint32_t i = 0; i < frames; ++i, out += 2) {
        const double periods = static_cast<double>(frequency) * i / toneRate;
        const std::int16_t sample = storedSample(valueAt(periods, shape) * loudness * fullScale);
        if (side != ToneSide::Right) out[0] = sample;
        if (side != ToneSide::Left) out[1] = sample;
    }
    return tone;
}

}  // namespace vesper::audio
