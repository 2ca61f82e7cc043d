#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kelmora {

// How often each state of a text was followed by what. States and the successors of each are kept in the
// order in which they first appeared, so that everything made from a model repeats. States, successors and
// counts are whatever a file or a script said; only training makes every state equally long and every
// successor one byte.
class AIModel {
public:
    // Numbers of states count from 0; those of transitions mean nothing by themselves.
    static constexpr std::uint32_t none = 0xFFFFFFFF;

    AIModel() = default;
    // An empty model that lends its states' bytes from the text.
    explicit AIModel(std::string text) : bytes_(std::move(text)) {}

    bool empty() const { return states_.empty(); }
    std::uint32_t stateCount() const { return static_cast<std::uint32_t>(states_.size()); }
    std::size_t transitionCount() const { return transitions_.size(); }
    std::string_view state(std::uint32_t state) const {
        return std::string_view(bytes_).substr(states_[state].offset, states_[state].length);
    }
    // `none` for a state that the model has not got.
    std::uint32_t find(std::string_view state) const;

    // The transitions of a state, in order, and what each says.
    std::uint32_t firstTransition(std::uint32_t state) const { return states_[state].first; }
    std::uint32_t transitionAfter(std::uint32_t transition) const { return transitions_[transition].after; }
    std::string_view successor(std::uint32_t transition) const;
    std::int32_t count(std::uint32_t transition) const { return transitions_[transition].count; }

    // Finds the state or makes it, without transitions. Raises std::runtime_error where a model would pass
    // 4 GiB of text, as everything does that makes a model larger.
    std::uint32_t addState(std::string_view state);
    // Adds one that the state has not got, at the end.
    std::uint32_t addTransition(std::uint32_t state, std::string_view successor);
    void setCount(std::uint32_t transition, std::int32_t count) { transitions_[transition].count = count; }

    // For training: a state that stands in the text at `offset`, whose hash is known, found or made.
    std::uint32_t addStateOfText(std::uint32_t offset, std::uint32_t length, std::uint32_t hash);
    std::string_view text() const { return bytes_; }
    std::uint32_t addByteTransition(std::uint32_t state, unsigned char byte);
    void countOnce(std::uint32_t transition);
    bool isByte(std::uint32_t transition, unsigned char byte) const {
        return transitions_[transition].length == 1 && transitions_[transition].offset == byte;
    }
    // Gives back what training needed room for and the model does not.
    void compact();

private:
    struct State {
        std::uint32_t offset;
        std::uint32_t length;
        std::uint32_t hash;
        std::uint32_t first;
        std::uint32_t last;
    };
    struct Transition {
        std::uint32_t offset;  // or the byte itself, if it is only one
        std::uint32_t length;
        std::int32_t count;
        std::uint32_t after;
    };

    std::uint32_t findHashed(std::string_view state, std::uint32_t hash) const;
    std::uint32_t appendState(const State& state);
    std::uint32_t appendTransition(std::uint32_t state, std::uint32_t offset, std::uint32_t length);
    std::uint32_t appendBytes(std::string_view text);
    void place(std::uint32_t state);
    void growSlots();

    std::string bytes_;
    std::vector<State> states_;
    std::vector<Transition> transitions_;
    std::vector<std::uint32_t>
        slots_;  // numbers of states by their hashes, `none` where free; half full at most
};

}  // namespace kelmora
