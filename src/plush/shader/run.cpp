#include "plush/shader/run.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <memory>
#include <utility>

#include "image/row_workers.h"
#include "plush/shader/arithmetic.h"
#include "plush/shader/batch_machine.h"
#include "plush/shader/pixel_pass.h"

namespace kelmora::plush_shader {
namespace {

using detail::PixelPass;
using detail::RandomState;

// Below this starting workers costs more than they save.
constexpr std::int64_t sharedFrom = 4096;
constexpr std::int32_t leastRows = 8;  // for each worker

std::size_t pixelCount(std::int32_t width, std::int32_t height) {
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
}

bool samples(const Program& program) {
    for (const Instruction& instruction : program.instructions)
        if (instruction.operation() >= Op::SampleR && instruction.operation() <= Op::SampleA) return true;
    return false;
}

std::int32_t workersFor(const Environment& environment, std::int32_t width, std::int32_t height) {
    if (std::int64_t{width} * height < sharedFrom) return 1;
    return std::max(std::min(environment.threads, height / leastRows), 1);
}

// Gives all pixels what a program writes that does not look at them.
void fillConstant(const Program& program, std::vector<float> registers, unsigned char* pixels,
                  std::size_t count) {
    RandomState random = RandomState::forConstant();
    execute(program, registers.data(), nullptr, 0, 0, random);
    std::array<unsigned char, 4> value{}, mask{};
    for (std::size_t channel = 0; channel < 4; ++channel) {
        if ((program.writeMask >> channel & 1) == 0) continue;
        value[channel] = arithmetic::channelByte(registers[channel]);
        mask[channel] = 255;
    }
    detail::batchKernels().fill(pixels, std::bit_cast<std::uint32_t>(value),
                                std::bit_cast<std::uint32_t>(mask), count);
}

void copyScaled(const PixelPass& pass, std::int32_t rows) {
    for (std::int32_t y = 0; y < rows; ++y) {
        const unsigned char* input = pass.inputRow(y);
        unsigned char* target = pass.targetRow(y);
        for (std::int32_t x = 0; x < pass.targetWidth; ++x, target += 4)
            std::memcpy(target, input + static_cast<std::size_t>(pass.inputColumn(x)) * 4, 4);
    }
}

// Lowers the program when it is first asked for. Null when batches could change the result.
const detail::BatchProgram* batchesOf(const Program& program) {
    if (!program.batches) {
        auto lowered = detail::lowerToBatches(program);
        program.batches =
            lowered ? std::make_shared<const detail::BatchProgram>(std::move(*lowered)) : nullptr;
    }
    return program.batches->get();
}

// Smaller pictures are done before batches are set up.
constexpr std::int64_t batchedFrom = 256;

Machine chosenMachine = Machine::Fastest;

// What a program costs on so many pixels, about.
std::int64_t nanosecondsOf(const Program& program, std::int64_t pixels) {
    return pixels * static_cast<std::int64_t>(program.instructions.size()) / 4;
}

void runPass(const PixelPass& pass, std::int32_t rows, const Environment& environment) {
    const std::int64_t pixels = std::int64_t{pass.targetWidth} * rows;
    const std::int32_t workers = workersFor(environment, pass.targetWidth, rows);
    const detail::BatchProgram* lowered = nullptr;
    const bool batched =
        chosenMachine == Machine::Fastest ? pixels >= batchedFrom : chosenMachine == Machine::Batched;
    if (batched && fitsBatches(pass)) lowered = batchesOf(pass.program);
    runRows({rows, workers, nanosecondsOf(pass.program, pixels)}, [&](std::int32_t first, std::int32_t last) {
        if (lowered)
            detail::BatchMachine(*lowered, pass, detail::batchKernels()).runRows(first, last);
        else
            runRowsPlainly(pass, first, last);
    });
}

}  // namespace

void useMachine(Machine machine) {
    chosenMachine = machine;
}

void run(const Program& program, unsigned char* pixels, int width, int height, const Uniforms& uniforms,
         const Environment& environment) {
    if (!pixels || width < 1 || height < 1 || program.writeMask == 0) return;
    const std::size_t count = pixelCount(width, height);
    SourcePicture source{pixels, width, height};
    std::vector<float> registers = initialRegisters(program, source, uniforms, environment);
    if (!program.usesPixel) {
        fillConstant(program, std::move(registers), pixels, count);
        return;
    }
    std::vector<unsigned char> before;
    if (samples(program)) {
        before.assign(pixels, pixels + count * 4);
        source.pixels = before.data();
    }
    runPass({program, source, pixels, width, {}, std::move(registers)}, height, environment);
}

void render(const Program& program, const unsigned char* source, int sourceWidth, int sourceHeight,
            unsigned char* target, int targetWidth, int targetHeight, const Uniforms& uniforms,
            const Environment& environment) {
    if (!source || !target || source == target) return;
    if (sourceWidth < 1 || sourceHeight < 1 || targetWidth < 1 || targetHeight < 1) return;
    const SourcePicture picture{source, sourceWidth, sourceHeight};
    const PixelPass pass{program,
                         picture,
                         target,
                         targetWidth,
                         PixelMap(picture, targetWidth, targetHeight),
                         initialRegisters(program, picture, uniforms, environment)};
    if (program.writeMask != 0 && program.usesPixel) return runPass(pass, targetHeight, environment);
    copyScaled(pass, targetHeight);
    if (program.writeMask != 0)
        fillConstant(program, pass.registers, target, pixelCount(targetWidth, targetHeight));
}

}  // namespace kelmora::plush_shader
