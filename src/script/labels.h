#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "script/bytecode_program.h"
#include "script/callable.h"

namespace kelmora {

// Labelled nest blocks that `jumpTo` can reach, and the jump that is on its way. A label belongs to the
// function or program that holds it and goes with it; a later registration replaces an earlier one.
class Labels {
public:
    struct Target {
        std::shared_ptr<const BytecodeProgram> program;
        std::uint32_t chunk = 0;
        std::uint32_t instruction = 0;  // inside the chunk
        std::uint32_t nativeLevel = 0;
    };

    // Registers the labels of the callable's body and of the blocks inside it, function bodies excepted.
    void registerCallable(ScriptCallable& callable);
    // False when the label is unknown or its owner is gone.
    bool find(const std::string& label, Target& target) const;

    bool jumpPending() const { return pending_; }
    const std::string& jumpLabel() const { return label_; }
    void requestJump(std::string label) {
        label_ = std::move(label);
        pending_ = true;
    }
    void clearJump() { pending_ = false; }

    // Looks for the label among the chunk's own instructions, not those of its bodies.
    static bool findInChunk(const BytecodeProgram& program, std::uint32_t chunk, const std::string& label,
                            std::uint32_t& instruction);

private:
    struct Record {
        std::weak_ptr<const bool> ownerLife;
        std::weak_ptr<const BytecodeProgram> program;
        std::uint32_t chunk;
        std::uint32_t nativeLevel;
    };

    std::unordered_map<std::string, Record> records_;
    bool pending_ = false;
    std::string label_;
};

}  // namespace kelmora
