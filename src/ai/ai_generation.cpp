#include "ai/ai_generation.h"

namespace kelmora {
namespace {

class Walk {
public:
    Walk(const AIModel& model, const AIGeneration& wanted, AIRandom& random)
        : model_(model),
          wanted_(wanted),
          random_(random),
          order_(wanted.dataSize > 0 ? static_cast<std::size_t>(wanted.dataSize) : 0) {}

    std::string text() {
        if (start()) {
            for (std::int32_t i = 0; i < wanted_.genLength && step(); ++i) {
            }
        }
        return std::move(text_);
    }

private:
    bool start() {
        const bool seeded = wanted_.seed.has_value();
        if (seeded) text_ = *wanted_.seed;
        if (seeded && text_.size() >= order_) {
            state_ = text_.substr(text_.size() - order_);
            return true;
        }
        if (model_.empty()) return false;
        state_ = model_.state(random_.below(model_.stateCount()));
        if (!seeded) text_ = state_;
        return true;
    }
    bool step() {
        const std::uint32_t state = model_.find(state_);
        if (state == AIModel::none) return false;
        const std::uint32_t chosen = choose(state);
        if (chosen == AIModel::none) return false;
        const std::string_view successor = model_.successor(chosen);
        if (wanted_.escape && successor == *wanted_.escape) return false;
        text_ += successor;
        moveOn(successor);
        return true;
    }
    // `none` where nothing can be chosen.
    std::uint32_t choose(std::uint32_t state) {
        const std::uint32_t first = model_.firstTransition(state);
        double total = 0;
        for (std::uint32_t i = first; i != AIModel::none; i = model_.transitionAfter(i))
            total += model_.count(i);
        if (!(total > 0)) return AIModel::none;
        double target = total * random_.unit();
        for (std::uint32_t i = first; i != AIModel::none; i = model_.transitionAfter(i)) {
            const double count = model_.count(i);
            if (target < count) return i;
            target -= count;
        }
        return first;
    }
    void moveOn(std::string_view successor) {
        if (order_ == 0) {
            state_ = successor;
            return;
        }
        if (state_.size() >= order_) {
            state_.erase(0, 1);
            state_.resize(order_ - 1);
        }
        state_ += successor;
    }

    const AIModel& model_;
    const AIGeneration& wanted_;
    AIRandom& random_;
    std::size_t order_;
    std::string text_;
    std::string state_;
};

}  // namespace

std::string aiGenerateTextImpl(const AIModel& model, const AIGeneration& wanted, AIRandom& random) {
    return Walk(model, wanted, random).text();
}

}  // namespace kelmora
