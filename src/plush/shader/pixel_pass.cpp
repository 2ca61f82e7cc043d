#include "plush/shader/pixel_pass.h"

#include "plush/shader/arithmetic.h"

namespace kelmora::plush_shader::detail {

void runRowsPlainly(const PixelPass& pass, std::int32_t first, std::int32_t last) {
    std::vector<float> registers = pass.registers;
    RandomState random = RandomState::forRow(first);
    const SourcePicture& source = pass.source;
    for (std::int32_t y = first; y < last; ++y) {
        const unsigned char* input = pass.inputRow(y);
        unsigned char* target = pass.targetRow(y);
        for (std::int32_t x = 0; x < pass.targetWidth; ++x, target += 4) {
            const unsigned char* pixel = input + static_cast<std::size_t>(pass.inputColumn(x)) * 4;
            for (std::size_t channel = 0; channel < 4; ++channel)
                registers[channel] = arithmetic::channelValue(pixel[channel]);
            registers[slots::x] = pass.inputX(x);
            registers[slots::y] = pass.inputY(y);
            execute(pass.program, registers.data(), source.pixels, source.width, source.height, random);
            for (std::size_t channel = 0; channel < 4; ++channel)
                target[channel] = pass.program.writeMask >> channel & 1
                                      ? arithmetic::channelByte(registers[channel])
                                      : pixel[channel];
        }
    }
}

}  // namespace kelmora::plush_shader::detail
