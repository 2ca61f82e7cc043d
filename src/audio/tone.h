#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "audio/wav_reader.h"

namespace vesper::audio {

enum class ToneShape { Square, Sine, Saw };
enum class ToneSide { Left, Right, Both };

std::optional<ToneShape> toneShape(std::string_view name);
std::optional<ToneSide> toneSide(std::string_view name);

// A stereo tone of three quarters of full scale at 44100 frames a second, silent on the side that it is not
// for. A frequency of 0 is silence.
wav::DecodedFile makeTone(std::uint32_t frequency, std::uint32_t frames, ToneShape shape, ToneSide side);

inline constexpr std::uint32_t toneRate = 44100;

}  // namespace vesper::audio
