#pragma once

#include <cassert>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/pooled.h"
#include "script/variable.h"

namespace kelmora {

// A table key as look-up wants it. All keys are strings; the ones that spell an integer are held as that
// integer, so that `t[3]` and `t["3"]` meet without making text.
class TableKey {
public:
    explicit TableKey(std::int32_t number) : number_(number) {}
    // Borrows the string, which must outlive the key.
    explicit TableKey(StringObject& text) {
        if (!text.isIntegerKey(number_)) text_ = &text;
    }
    explicit TableKey(std::string text) : owner_(new StringObject(std::move(text))) {
        if (!owner_->isIntegerKey(number_)) text_ = owner_.get();
    }

    bool isInteger() const { return text_ == nullptr; }
    std::int32_t number() const { return number_; }
    StringObject& text() const { return *text_; }
    std::string toString() const { return text_ ? text_->text() : std::to_string(number_); }

private:
    std::int32_t number_ = 0;
    StringObject* text_ = nullptr;
    Ref<StringObject> owner_;
};

// Every key of a table in byte-wise order of its text.
struct TableKeyList {
    std::vector<Ref<StringObject>> keys;
    // Each key as a script value: Int, Float or String by what its text parses as.
    std::vector<Variable> keyValues;
    // Where the table holds each key's value while its keys are these.
    std::vector<std::uint32_t> places;

    // Index of the key with this text, or the list's size.
    std::size_t find(std::string_view key) const;
};

// String-keyed map. Keys "1" to "n" without a gap live in a vector, all others in a hash table.
class TableObject : public RefCounted, public Pooled<TableObject> {
public:
    const Variable* find(std::int32_t number) const {
        const auto position = static_cast<std::uint32_t>(number) - 1u;
        if (position < dense_.size()) return &dense_[position];
        return integerEntries_ == 0 ? nullptr : findEntry(TableKey(number));
    }
    const Variable* find(StringObject& text) const {
        if (std::int32_t number = 0; text.isIntegerKey(number)) return find(number);
        if (entries_.empty()) return nullptr;
        // Nearly always the name in the script that made the entry is the one that looks for it.
        const std::uint32_t place = index_[text.hash() & (index_.size() - 1)];
        if (place != emptySlot && entries_[place].text.get() == &text) return &entries_[place].value;
        return findEntry(TableKey(text));
    }
    const Variable* find(const TableKey& key) const {
        return key.isInteger() ? find(key.number()) : find(key.text());
    }
    Variable* find(const TableKey& key) {
        return const_cast<Variable*>(static_cast<const TableObject*>(this)->find(key));
    }
    const Variable* find(std::string_view key) const;
    // The key's value, made (as `not`) when it is missing. Valid until the next insertion or erasure.
    Variable& findOrInsert(const TableKey& key);
    void set(const TableKey& key, Variable value) { findOrInsert(key) = std::move(value); }
    void set(std::string key, Variable value) { set(TableKey(std::move(key)), std::move(value)); }
    bool erase(const TableKey& key);
    void clear();
    void reserve(std::size_t entries);

    std::size_t size() const { return dense_.size() + entries_.size(); }
    // The largest n such that the keys "1" to "n" are all present.
    std::size_t numericLength() const { return dense_.size(); }
    std::vector<Variable>& denseValues() { return dense_; }

    // Sorted keys as of now; kept until a key is added or removed. A holder keeps its own snapshot.
    std::shared_ptr<const TableKeyList> sortedKeys() const;
    // The value of a key in a list of this table's keys; null when the key is gone.
    const Variable* findListed(const TableKeyList& list, std::size_t index) const {
        if (sorted_.get() != &list) return find(TableKey(*list.keys[index]));
        const std::uint32_t place = list.places[index];
        return place < dense_.size() ? &dense_[place] : &entries_[place - dense_.size()].value;
    }

private:
    struct Entry {
        Ref<StringObject> text;  // null for an integer key
        std::int32_t number;
        std::uint32_t hash;
        Variable value;
    };
    static constexpr std::uint32_t emptySlot = 0xFFFFFFFFu;

    const Variable* findEntry(const TableKey& key) const;
    static std::uint32_t hashOf(const TableKey& key);
    // Slot of the index that holds the key, or the empty slot where the search ended.
    std::uint32_t probe(const TableKey& key, std::uint32_t hash) const;
    Variable& insertEntry(const TableKey& key, std::uint32_t hash);
    void eraseSlot(std::uint32_t slot);
    void rebuildIndex(std::size_t slots);
    void pullIntoDense();
    void spillDenseFrom(std::size_t first);
    void keysChanged() { sorted_.reset(); }

    std::vector<Variable> dense_;
    std::vector<Entry> entries_;
    std::vector<std::uint32_t> index_;  // power of two, at most half full
    std::size_t integerEntries_ = 0;
    mutable std::shared_ptr<const TableKeyList> sorted_;
};

inline TableObject& Variable::table() const {
    assert(isTable());
    return static_cast<TableObject&>(*object());
}

}  // namespace kelmora
