#include "ai/ai_model.h"

#include <array>
#include <limits>
#include <stdexcept>

#include "ai/text_hash.h"

namespace kelmora {
namespace {

constexpr std::size_t fewestSlots = 16;

constexpr std::array<char, 256> allBytes = [] {
    std::array<char, 256> bytes{};
    for (unsigned i = 0; i < 256; ++i) bytes[i] = static_cast<char>(static_cast<unsigned char>(i));
    return bytes;
}();

// Numbers are 32 bits wide and `none` is not among them.
void holdToLimit(std::size_t size) {
    if (size >= AIModel::none) throw std::runtime_error("Model is too large");
}

}  // namespace

std::uint32_t AIModel::find(std::string_view state) const {
    return findHashed(state, TextHash(state).value());
}

std::uint32_t AIModel::findHashed(std::string_view text, std::uint32_t hash) const {
    if (slots_.empty()) return none;
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t slot = hash & mask;; slot = (slot + 1) & mask) {
        const std::uint32_t found = slots_[slot];
        if (found == none || (states_[found].hash == hash && state(found) == text)) return found;
    }
}

std::string_view AIModel::successor(std::uint32_t transition) const {
    const Transition& found = transitions_[transition];
    if (found.length == 1) return {&allBytes[found.offset], 1};
    return std::string_view(bytes_).substr(found.offset, found.length);
}

std::uint32_t AIModel::addState(std::string_view text) {
    const std::uint32_t hash = TextHash(text).value();
    const std::uint32_t found = findHashed(text, hash);
    if (found != none) return found;
    const auto length = static_cast<std::uint32_t>(text.size());
    return appendState({appendBytes(text), length, hash, none, none});
}

std::uint32_t AIModel::addStateOfText(std::uint32_t offset, std::uint32_t length, std::uint32_t hash) {
    const std::uint32_t found = findHashed(text().substr(offset, length), hash);
    return found != none ? found : appendState({offset, length, hash, none, none});
}

std::uint32_t AIModel::addTransition(std::uint32_t state, std::string_view text) {
    if (text.size() == 1) return addByteTransition(state, static_cast<unsigned char>(text[0]));
    const std::uint32_t offset = appendBytes(text);
    return appendTransition(state, offset, static_cast<std::uint32_t>(text.size()));
}

std::uint32_t AIModel::addByteTransition(std::uint32_t state, unsigned char byte) {
    return appendTransition(state, byte, 1);
}

void AIModel::countOnce(std::uint32_t transition) {
    std::int32_t& count = transitions_[transition].count;
    if (count < std::numeric_limits<std::int32_t>::max()) ++count;
}

void AIModel::compact() {
    std::size_t needed = 0;
    for (const State& state : states_) needed += state.length;
    if (needed < bytes_.size() / 2) {
        std::string kept;
        kept.reserve(needed);
        for (State& state : states_) {
            const auto offset = static_cast<std::uint32_t>(kept.size());
            kept.append(bytes_, state.offset, state.length);
            state.offset = offset;
        }
        bytes_.swap(kept);
    }
    states_.shrink_to_fit();
    transitions_.shrink_to_fit();
}

std::uint32_t AIModel::appendState(const State& state) {
    holdToLimit(states_.size());
    states_.push_back(state);
    if (states_.size() * 2 > slots_.size()) growSlots();
    const std::uint32_t number = stateCount() - 1;
    place(number);
    return number;
}

std::uint32_t AIModel::appendTransition(std::uint32_t state, std::uint32_t offset, std::uint32_t length) {
    holdToLimit(transitions_.size());
    const auto number = static_cast<std::uint32_t>(transitions_.size());
    transitions_.push_back({offset, length, 0, none});
    State& owner = states_[state];
    (owner.first == none ? owner.first : transitions_[owner.last].after) = number;
    owner.last = number;
    return number;
}

std::uint32_t AIModel::appendBytes(std::string_view text) {
    holdToLimit(bytes_.size() + text.size());
    bytes_.append(text);
    return static_cast<std::uint32_t>(bytes_.size() - text.size());
}

void AIModel::place(std::uint32_t state) {
    const std::size_t mask = slots_.size() - 1;
    std::size_t slot = states_[state].hash & mask;
    while (slots_[slot] != none) slot = (slot + 1) & mask;
    slots_[slot] = state;
}

// Leaves out the state added last, which is placed by itself.
void AIModel::growSlots() {
    const std::size_t size = slots_.empty() ? fewestSlots : slots_.size() * 2;
    slots_.assign(size, none);
    for (std::uint32_t state = 0; state + 1 < stateCount(); ++state) place(state);
}

}  // namespace kelmora
