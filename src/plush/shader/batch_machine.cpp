#include "plush/shader/batch_machine.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace kelmora::plush_shader::detail {
namespace {

constexpr std::size_t alignment = 32;

float* aligned(std::vector<float>& storage) {
    const auto address = reinterpret_cast<std::uintptr_t>(storage.data());
    return storage.data() + (alignment - address % alignment) % alignment / sizeof(float);
}

// Loops work on whole steps; the lanes past the last pixel hold anything.
std::size_t wholeSteps(std::size_t count) {
    return (count + batchStep - 1) / batchStep * batchStep;
}

std::size_t channelSet(const ChannelLanes& channels) {
    std::size_t set = 0;
    for (std::size_t i = 0; i < 4; ++i)
        if (channels[i]) set |= std::size_t{1} << i;
    return set;
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
    if (!pass.map || pass.targetWidth == pass.source.width) return;
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
    const std::size_t count = wholeSteps(run.count);
    const bool inTarget = !pass_.map && count == run.count;
    pixels_ = inTarget ? target : buffer_;
    if (pass_.map)
        gather(run);
    else if (!inTarget)
        std::memcpy(pixels_, target, run.count * 4);
    loadPositions(run);
    const ChannelLanes inputs =
        channelLanes(program_.inputs[0], program_.inputs[1], program_.inputs[2], program_.inputs[3]);
    kernels_.load[channelSet(inputs)](pixels_, inputs, count);
    execute(program_.body, count);
    if (!inTarget) std::memcpy(target, pixels_, run.count * 4);
}

// Puts channels into the batch's pixels.
void BatchMachine::deposit(const BatchInstruction& instruction, std::size_t count) {
    std::uint32_t bits = 0;
    for (unsigned channel = 0; channel < 4; ++channel)
        if (instruction.channels >> channel & 1) bits |= 255u << channel * 8;
    const float* values = lanesOrNull(instruction.a);
    const float* others = lanesOrNull(instruction.b);
    if (!values) std::swap(values, others);
    const bool masked = instruction.op == BatchOp::Deposit;
    kernels_.deposit(pixels_, bits, values, others, masked ? lanes(program_.mask) : nullptr, count);
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

void BatchMachine::gather(const Run& run) {
    eachRow(run, [this](const Run& row, std::size_t done) { gatherRow(buffer_ + done * 4, row); });
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
        switch (instruction.op) {
            case BatchOp::Fetch:
                kernels_.fetch(lanes(instruction.dst), a, b, pass_.source, count);
                break;
            case BatchOp::PredicatedMov:
                kernels_.merge(lanes(instruction.dst), a, lanes(program_.mask), count);
                break;
            case BatchOp::Pack: {
                const ChannelLanes channels =
                    channelLanes(instruction.a, instruction.b, instruction.c, instruction.d);
                kernels_.pack[channelSet(channels)](lanes(instruction.dst), channels, count);
                break;
            }
            case BatchOp::Deposit:
            case BatchOp::DepositAll:
                deposit(instruction, count);
                break;
            default:
                if (isControl(instruction.op)) {
                    if (!control(instruction, count)) at = instruction.skip;
                    break;
                }
                kernels_.compute[static_cast<std::size_t>(instruction.op)](lanes(instruction.dst), a, b,
                                                                           lanesOrNull(instruction.c), count);
        }
    }
}

// False when no pixel is active any more.
bool BatchMachine::control(const BatchInstruction& instruction, std::size_t count) {
    const CompareLanes compare = kernels_.compare[static_cast<std::size_t>(instruction.comparison)];
    float* mask = lanesOrNull(program_.mask);
    float* parked = lanesOrNull(instruction.dst);
    switch (instruction.op) {
        case BatchOp::BranchAll: {
            const bool any = compare(mask, lanes(instruction.a), lanesOrNull(instruction.b), count);
            if (parked) kernels_.others(parked, mask, count);
            return any;
        }
        case BatchOp::Branch: {
            float* scratch = lanes(program_.scratch);
            compare(scratch, lanes(instruction.a), lanesOrNull(instruction.b), count);
            return kernels_.split(mask, parked, scratch, count);
        }
        case BatchOp::Park:
            if (parked) kernels_.park(parked, mask, count);
            return false;
        default:
            return kernels_.reconverge(mask, lanes(instruction.a), instruction.op == BatchOp::ReconvergeAlone,
                                       count);
    }
}

}  // namespace kelmora::plush_shader::detail
