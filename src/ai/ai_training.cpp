#include "ai/ai_training.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "ai/text_hash.h"

namespace kelmora {
namespace {

constexpr std::size_t largestText = std::size_t{1} << 31;

// Finds a state's transition for a byte. A state that has many gets a table of them for as long as training
// goes on; there are such states in numbers only where the order is low.
class TransitionFinder {
public:
    explicit TransitionFinder(AIModel& model) : model_(model) {}

    std::uint32_t find(std::uint32_t state, unsigned char byte) {
        if (state < tableOf_.size() && tableOf_[state] != AIModel::none) {
            std::uint32_t& entry = tables_[tableOf_[state]][byte];
            if (entry == AIModel::none) entry = model_.addByteTransition(state, byte);
            return entry;
        }
        std::size_t steps = 0;
        std::uint32_t found = model_.firstTransition(state);
        while (found != AIModel::none && !model_.isByte(found, byte)) {
            found = model_.transitionAfter(found);
            ++steps;
        }
        if (found == AIModel::none) found = model_.addByteTransition(state, byte);
        if (steps >= longestWalk && state < mostStatesWithTables) makeTable(state);
        return found;
    }

private:
    static constexpr std::size_t longestWalk = 32;
    static constexpr std::uint32_t mostStatesWithTables = 65536;
    using Table = std::array<std::uint32_t, 256>;

    void makeTable(std::uint32_t state) {
        if (state >= tableOf_.size()) tableOf_.resize(state + 1, AIModel::none);
        tableOf_[state] = static_cast<std::uint32_t>(tables_.size());
        Table& table = tables_.emplace_back();
        table.fill(AIModel::none);
        for (std::uint32_t i = model_.firstTransition(state); i != AIModel::none;
             i = model_.transitionAfter(i))
            table[static_cast<unsigned char>(model_.successor(i)[0])] = i;
    }

    AIModel& model_;
    std::vector<std::uint32_t> tableOf_;
    std::vector<Table> tables_;
};

}  // namespace

AIModel aiTrainModel(std::string text, std::int32_t order) {
    if (text.size() >= largestText) throw std::runtime_error("Training text is too large");
    const std::size_t length = order > 0 ? static_cast<std::size_t>(order) : 0;
    text.append(text, 0, std::min(length, text.size()));
    AIModel model(std::move(text));
    const std::string_view bytes = model.text();
    if (bytes.size() <= length) return {};
    TransitionFinder finder(model);
    TextHash hash(bytes.substr(0, length));
    for (std::size_t i = 0;; ++i) {
        const std::uint32_t state = model.addStateOfText(static_cast<std::uint32_t>(i),
                                                         static_cast<std::uint32_t>(length), hash.value());
        const auto next = static_cast<unsigned char>(bytes[i + length]);
        model.countOnce(finder.find(state, next));
        if (i + length + 1 == bytes.size()) break;
        if (length > 0) hash.roll(bytes[i], bytes[i + length]);
    }
    model.compact();
    return model;
}

}  // namespace kelmora
