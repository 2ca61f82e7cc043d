#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "plush/shader/batch_kernels.h"
#include "plush/shader/batch_program.h"
#include "plush/shader/pixel_pass.h"

namespace kelmora::plush_shader::detail {

// Whether batches address the pass's pixels: positions must be exact as floats.
bool fitsBatches(const PixelPass& pass);

// One worker's state for running a pass in batches.
class BatchMachine {
public:
    BatchMachine(const BatchProgram& program, const PixelPass& pass, const BatchKernels& kernels);

    // Rows [first, last) of the target.
    void runRows(std::int32_t first, std::int32_t last);

private:
    // Target pixels that follow each other, from (x, y) on, over the ends of rows.
    struct Run {
        std::int32_t x;
        std::int32_t y;
        std::size_t count;
    };

    float* lanes(LaneArray array) { return lanes_ + std::size_t{array} * batchLanes; }
    float* lanesOrNull(LaneArray array) { return array == noLanes ? nullptr : lanes(array); }
    ChannelLanes channelLanes(LaneArray r, LaneArray g, LaneArray b, LaneArray a) {
        return {lanesOrNull(r), lanesOrNull(g), lanesOrNull(b), lanesOrNull(a)};
    }

    void runBatch(const Run& run);
    void loadPositions(const Run& run);
    void deposit(const BatchInstruction& instruction, std::size_t count);
    void gather(const Run& run);
    void gatherRow(unsigned char* to, const Run& part) const;
    // Calls back for the part of a run in each row, with its place in the run.
    template <typename Part>
    void eachRow(const Run& run, Part part);
    void execute(const std::vector<BatchInstruction>& code, std::size_t count);
    bool control(const BatchInstruction& instruction, std::size_t count);

    const BatchProgram& program_;
    const PixelPass& pass_;
    const BatchKernels& kernels_;
    std::vector<float> storage_;
    float* lanes_;  // aligned, within the storage
    std::vector<std::int32_t> columns_;
    unsigned char* pixels_ = nullptr;  // of the batch: in the target or in the buffer
    alignas(32) unsigned char buffer_[batchLanes * 4];
};

}  // namespace kelmora::plush_shader::detail
