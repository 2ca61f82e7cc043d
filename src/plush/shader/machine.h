#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "plush/shader/grey_weights.h"
#include "plush/shader/program.h"

namespace kelmora::plush_shader {

using Uniforms = std::map<std::string, float, std::less<>>;

// What a shader run takes from its surroundings.
struct Environment {
    GreyWeights grey = greyWeights;
    std::int32_t threads = 1;  // that a run may use
};

// A picture that is read: RGBA bytes in rows from the top.
struct SourcePicture {
    const unsigned char* pixels;
    std::int32_t width;
    std::int32_t height;
};

namespace detail {

// A shader's own random numbers: a xorshift of 32 bits, seeded anew for each run of rows.
struct RandomState {
    std::uint32_t state;

    static RandomState forRow(std::int32_t firstRow) {
        return {(static_cast<std::uint32_t>(firstRow) + 1) * 0x9E3779B1u ^ 0x9E3779B9u};
    }
    static RandomState forConstant() { return {0x9E3779B9u}; }

    // In 0 to 1, below 1.
    float next() {
        state ^= state << 13;
        state ^= state >> 17;
        state ^= state << 5;
        return static_cast<float>(state & 0x00FFFFFFu) * 0x1p-24f;
    }
};

}  // namespace detail

// A register file that holds everything but the pixel. Uniforms that are missing are 0.
std::vector<float> initialRegisters(const Program& program, const SourcePicture& source,
                                    const Uniforms& uniforms, const Environment& environment);

// Runs the program for the pixel that the registers hold.
void execute(const Program& program, float* registers, const unsigned char* source, int width, int height,
             detail::RandomState& random);

}  // namespace kelmora::plush_shader
