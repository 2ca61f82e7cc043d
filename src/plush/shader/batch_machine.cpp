#include "plush/shader/batch_machine.h"

#include <algorithm>
#include <cstring>

namespace kelmora::plush_shader::detail {
namespace {

constexpr std::size_t alignment = 32;

float* aligned(std::vector<float>& storage) {
    const auto address = reinterpret_cast<std::uintptr_t>(storage.data());
    return storage.data() + (alignment - address % alignment) % alignment / sizeof(float);
}

// Lanes of an array that a row's part is written to: a little past its end, which the next part then
// overwrites.
std::size_t wholeSteps(std::size_t count) {
    return (count + batchStep - 1) / batchStep * batchStep;
}

}  // namespace

bool fitsBatches(const PixelPass& pass) {
    constexpr std::int32_t exact = 1 << 24;
    return pass.targetWidth <= exact && pass.source.width <= exact && pass.source.height <= exact;
}

BatchMachine::BatchMachine(const BatchProgram& program, const PixelPass& pass, const BatchKernels& kernels)
    : program_(program),
      pass_(pass),
      kernels_(kernels),
      storage_(program.laneArrays * batchLanes + alignment / sizeof(float)),
      lanes_(aligned(storage_)) {
    for (const BatchProgram::Preload& preload : program.preloads)
        std::fill_n(lanes(preload.lanes), batchLanes, pass.registers[preload.slot]);
    execute(program.prologue, batchLanes);
    if (!pass.map) return;
    for (std::int32_t x = 0; x < pass.targetWidth; ++x) columns_.push_back(pass.map->column(x));
}

void BatchMachine::runRows(std::int32_t first, std::int32_t last) {
    Run run{0, first, 0};
    const auto width = static_cast<std::size_t>(pass_.targetWidth);
    std::size_t left = static_cast<std::size_t>(last - first) * width;
    while (left > 0) {
        run.count = std::min(left, batchLanes);
        runBatch(run);
        left -= run.count;
        const std::size_t past = static_cast<std::size_t>(run.x) + run.count;
        run.y += static_cast<std::int32_t>(past / width);
        run.x = static_cast<std::int32_t>(past % width);
    }
}

void BatchMachine::runBatch(const Run& run) {
    unsigned char* target = pass_.targetRow(run.y) + static_cast<std::size_t>(run.x) * 4;
    const bool isWhole = run.count % batchStep == 0;
    const std::size_t count = wholeSteps(run.count);
    const unsigned char* input = target;
    if (pass_.map) {
        input = gathered(run);
    } else if (!isWhole) {
        std::memcpy(pixels_, target, run.count * 4);
        input = pixels_;
    }
    loadPositions(run);
    std::array<float*, 4> channels;
    for (std::size_t i = 0; i < 4; ++i) channels[i] = lanesOrNull(program_.inputs[i]);
    kernels_.load(input, channels, count);
    execute(program_.body, count);
    std::array<const float*, 4> results;
    for (std::size_t i = 0; i < 4; ++i) results[i] = lanesOrNull(program_.outputs[i]);
    kernels_.store(isWhole ? target : pixels_, input, results, count);
    if (!isWhole) std::memcpy(target, pixels_, run.count * 4);
}

template <typename Part>
void BatchMachine::eachRow(const Run& run, Part part) {
    Run row = run;
    for (std::size_t done = 0; done < run.count; done += row.count) {
        row.count = std::min(run.count - done, static_cast<std::size_t>(pass_.targetWidth - row.x));
        part(row, done);
        row.x = 0;
        ++row.y;
    }
}

void BatchMachine::loadPositions(const Run& run) {
    float* x = lanesOrNull(program_.inputs[slots::x]);
    float* y = lanesOrNull(program_.inputs[slots::y]);
    if (!x && !y) return;
    alignas(alignment) float places[batchLanes];
    eachRow(run, [&](const Run& row, std::size_t done) {
        if (x) {
            kernels_.positions(places, row.x, pass_.map ? pass_.map->scaleX : 1.0f, wholeSteps(row.count));
            std::memcpy(x + done, places, row.count * sizeof(float));
        }
        if (y) std::fill_n(y + done, row.count, pass_.inputY(row.y));
    });
}

const unsigned char* BatchMachine::gathered(const Run& run) {
    eachRow(run, [this](const Run& row, std::size_t done) { gatherRow(pixels_ + done * 4, row); });
    return pixels_;
}

void BatchMachine::gatherRow(unsigned char* to, const Run& part) const {
    const unsigned char* row = pass_.map->row(part.y);
    const auto first = static_cast<std::size_t>(part.x);
    if (pass_.targetWidth == pass_.source.width) {
        std::memcpy(to, row + first * 4, part.count * 4);
        return;
    }
    for (std::size_t i = 0; i < part.count; ++i)
        std::memcpy(to + i * 4, row + static_cast<std::size_t>(columns_[first + i]) * 4, 4);
}

void BatchMachine::execute(const std::vector<BatchInstruction>& code, std::size_t count) {
    for (std::size_t at = 0; at < code.size();) {
        const BatchInstruction& instruction = code[at++];
        const float* a = lanesOrNull(instruction.a);
        const float* b = lanesOrNull(instruction.b);
        if (instruction.op < BatchOp::Fetch) {
            const auto op = static_cast<std::size_t>(instruction.op);
            kernels_.compute[op](lanes(instruction.dst), a, b, lanesOrNull(instruction.c), count);
        } else if (instruction.op == BatchOp::Fetch) {
            kernels_.fetch(lanes(instruction.dst), a, b, pass_.source, count);
        } else if (instruction.op == BatchOp::Merge) {
            kernels_.merge(lanes(instruction.dst), a, lanes(program_.mask), count);
        } else if (!control(instruction, count)) {
            at = instruction.skip;
        }
    }
}

// False when no pixel is under way any more.
bool BatchMachine::control(const BatchInstruction& instruction, std::size_t count) {
    const CompareLanes compare = kernels_.compare[static_cast<std::size_t>(instruction.comparison)];
    float* mask = lanesOrNull(program_.mask);
    float* waiting = lanesOrNull(instruction.dst);
    switch (instruction.op) {
        case BatchOp::BranchAll: {
            const bool any = compare(mask, lanes(instruction.a), lanesOrNull(instruction.b), count);
            if (waiting) kernels_.others(waiting, mask, count);
            return any;
        }
        case BatchOp::Branch: {
            float* scratch = lanes(program_.scratch);
            compare(scratch, lanes(instruction.a), lanesOrNull(instruction.b), count);
            return kernels_.split(mask, waiting, scratch, count);
        }
        case BatchOp::Leave:
            if (waiting) kernels_.wait(waiting, mask, count);
            return false;
        default:
            return kernels_.join(mask, lanes(instruction.a), instruction.op == BatchOp::JoinOnly, count);
    }
}

}  // namespace kelmora::plush_shader::detail
