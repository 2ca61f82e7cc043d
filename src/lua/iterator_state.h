#pragma once

#include "lua/multi_value.h"
#include "lua/table.h"
#include "lua/value.h"

namespace vesper::lua {

// The cursor behind a generic `for`.
class IteratorState : public kelmora::RefCounted {
public:
    explicit IteratorState(bool givesPairs = false) : givesPairs_(givesPairs) {}
    virtual ~IteratorState() = default;
    // False at the end; else the values of one round.
    virtual bool next(MultiValue& values) = 0;
    // For those that only ever give two values; the interpreter asks them itself.
    bool givesPairs() const { return givesPairs_; }
    virtual bool nextPair(Value&, Value&) { return false; }

private:
    bool givesPairs_;
};

inline bool nextIteratorItem(IteratorState& state, MultiValue& values) {
    return state.next(values);
}

class PairIterator : public IteratorState {
public:
    PairIterator() : IteratorState(true) {}
    bool next(MultiValue& values) final {
        Value first;
        Value second;
        if (!nextPair(first, second)) return false;
        values.push(std::move(first));
        values.push(std::move(second));
        return true;
    }
};

// All keys in their order, the array part among them. Keys that go on the way are left out, keys that come
// are not seen.
class EntryIterator final : public PairIterator {
public:
    explicit EntryIterator(const Value& table)
        : table_(table), listed_(table.table().sortedTableKeys()), items_(table.table().array().size()) {}
    bool nextPair(Value& key, Value& value) override;
    // Goes on behind this key. False when the table does not have it.
    [[nodiscard]] bool goBehind(const Value& key);

private:
    bool nextListed(std::size_t end, Value& key, Value& value);

    Value table_;
    kelmora::Ref<SortedKeys> listed_;
    std::size_t items_;
    std::size_t item_ = 0;
    std::size_t entry_ = 0;
};

// Items from 1 on to the first nil.
class ItemIterator final : public PairIterator {
public:
    explicit ItemIterator(const Value& table) : table_(table) {}
    bool nextPair(Value& key, Value& value) override;

private:
    Value table_;
    std::int64_t position_ = 0;
};

inline Value::Value(IteratorState* object) : Value(ValueKind::Iterator, object) {}
inline IteratorState& Value::iterator() const {
    return static_cast<IteratorState&>(*payload_.object);
}

}  // namespace vesper::lua
