#pragma once

#include <cstdint>
#include <vector>

#include "base/memory_budget.h"
#include "base/pooled.h"
#include "lua/item_array.h"
#include "lua/object_list.h"
#include "lua/value.h"

namespace vesper::lua {

// Of array and entries together.
constexpr std::size_t maximumTableSize = std::size_t{1} << 26;

// What a table may be indexed with: an integer, a text or a boolean.
using TableKey = Value;

// A float that is a whole number becomes the integer; false for kinds that are no key.
[[nodiscard]] bool tryMakeKeyFromValue(const Value& value, TableKey& key);

// The keys outside the array part at one moment: integers by value, then texts by bytes, then booleans.
struct SortedKeys : kelmora::RefCounted {
    std::vector<TableKey> keys;
    std::vector<std::uint32_t> nodes;  // where each stands while the layout is the same
    std::size_t belowOne = 0;          // that many stand in front of the array part

    // False for a key that is not listed.
    [[nodiscard]] bool positionOf(const TableKey& key, std::size_t& position) const;
};

class Table final : public kelmora::RefCounted, private ListedObject, public kelmora::Pooled<Table> {
public:
    // With room for so many items and fields.
    explicit Table(ObjectList& list, std::size_t items = 0, std::size_t fields = 0);

    // Null, or a place that may hold nil.
    const Value* find(std::int64_t key) const {
        const std::uint64_t index = static_cast<std::uint64_t>(key) - 1;
        if (index < array_.size()) return &array_[static_cast<std::size_t>(index)];
        return integerKeys_ != 0 ? findInteger(key) : nullptr;
    }
    const Value* find(const StringObject& key) const {
        if (nodeCount_ == 0) return nullptr;
        const Node* nodes = nodes_.data();
        for (std::uint32_t at = key.hash();; ++at) {
            const Node& node = nodes[at & (nodeCount_ - 1)];
            if (node.key.isString() && node.key.string().equals(key)) return &node.value;
            if (node.key.isNil()) return nullptr;
        }
    }
    // Null for keys of other kinds too.
    const Value* find(const Value& key) const;
    Value get(const Value& key) const {
        const Value* found = find(key);
        return found ? *found : Value();
    }

    // True when the key lies in the array part, whose item then changed, or lengthened it by one.
    template <typename AnyValue>
    bool trySetItem(std::int64_t key, AnyValue&& value) {
        const std::uint64_t index = static_cast<std::uint64_t>(key) - 1;
        if (index >= array_.size()) {
            if (index != array_.size() || array_.isFull() || integerKeys_ != 0 || value.isNil()) return false;
            array_.pushWithRoom(std::forward<AnyValue>(value));
            return true;
        }
        if (value.isNil() && index < border_) border_ = static_cast<std::size_t>(index);
        array_[static_cast<std::size_t>(index)] = std::forward<AnyValue>(value);
        return true;
    }
    // Setting nil removes. Raises when the table would grow past its limit.
    void set(std::int64_t key, Value value);
    void set(StringObject& key, Value value);
    // True when the key is there, whose value then changed.
    template <typename AnyValue>
    bool trySetField(const StringObject& key, AnyValue&& value) {
        auto* place = const_cast<Value*>(find(key));
        if (!place || place->isNil()) return false;
        *place = std::forward<AnyValue>(value);
        return true;
    }
    void set(std::string_view key, Value value);
    // The key comes from tryMakeKeyFromValue.
    void setKey(const TableKey& key, Value value);

    // The border reached by counting from 1.
    std::size_t length() const;
    ItemArray& array() { return array_; }
    const ItemArray& array() const { return array_; }
    // For those who changed items of the array part in place.
    void forgetLength() { border_ = 0; }

    std::size_t entryCount() const;
    kelmora::Ref<SortedKeys> sortedTableKeys() const;
    // The value of a listed key, or null; quick while no key was added since.
    const Value* findListed(const SortedKeys& listed, std::size_t position) const;

    void clear();
    void reserve(std::size_t items, std::size_t fields);

private:
    struct Node {
        Value key;
        Value value;  // nil: removed, and the key waits for the next growth
    };

    Value asValue() override { return Value(this); }
    void releaseContent() override { clear(); }

    const Value* findInteger(std::int64_t key) const;
    const Value* findNode(const Value& key, std::uint32_t hash) const;
    void setNode(const Value& key, std::uint32_t hash, Value value);
    void growNodes();
    void rebuildNodes(std::size_t count);
    void extendArray(std::size_t size);
    void moveEntriesIntoArray(std::size_t from);

    ItemArray array_;
    std::vector<Node, kelmora::BudgetAllocator<Node>> nodes_;
    std::uint32_t nodeCount_ = 0;  // a power of two, or 0
    std::uint32_t usedNodes_ = 0;  // with a key
    std::uint32_t integerKeys_ = 0;
    mutable std::size_t border_ = 0;  // items 1 to here are not nil
    mutable kelmora::Ref<SortedKeys> sorted_;
};

inline Value::Value(Table* object) : Value(ValueKind::Table, &static_cast<kelmora::RefCounted&>(*object)) {}
inline Table& Value::table() const {
    return static_cast<Table&>(*payload_.object);
}

// Stores as assignment does. Raises for keys of a wrong kind.
void tableSetByKey(Table& table, const Value& key, Value value);

inline std::size_t tableSequenceLength(const Table& table) {
    return table.length();
}

}  // namespace vesper::lua
