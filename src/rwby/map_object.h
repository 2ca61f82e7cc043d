#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "rwby/value.h"

namespace vesper::ruby {

// A map with string keys. Programs meet the keys in byte-wise order.
class MapObject : public kelmora::RefCounted, public kelmora::Pooled<MapObject> {
public:
    struct Entry {
        kelmora::Ref<StringObject> key;
        RubyValue value;
    };
    using Entries = std::vector<Entry, kelmora::BudgetAllocator<Entry>>;

    std::size_t size() const { return entries_.size(); }
    const RubyValue* find(const StringObject& key) const {
        if (index_.empty()) return nullptr;
        // Nearly always the constant that made the entry is the one that looks for it.
        const std::uint32_t place = index_[key.hash() & (index_.size() - 1)];
        if (place != emptySlot && entries_[place].key.get() == &key) return &entries_[place].value;
        return find(key.text(), key.hash());
    }
    const RubyValue* find(std::string_view key) const { return find(key, StringObject::hashOf(key)); }
    RubyValue* find(const StringObject& key) {
        return const_cast<RubyValue*>(static_cast<const MapObject*>(this)->find(key));
    }
    void set(StringObject& key, RubyValue value);
    void set(std::string_view key, RubyValue value);
    bool erase(std::string_view key);
    void clear();

    // In no order.
    std::span<const Entry> entries() const { return entries_; }
    // Indexes of the entries in the order of their keys; valid until a key comes or goes.
    const std::vector<std::uint32_t>& sortedOrder() const;

private:
    static constexpr std::uint32_t emptySlot = 0xFFFFFFFFu;

    const RubyValue* find(std::string_view key, std::uint32_t hash) const;
    // The slot of the index that holds the key, or the empty one where the search ended.
    std::uint32_t probe(std::string_view key, std::uint32_t hash) const;
    std::uint32_t slotOf(std::uint32_t entry) const;
    RubyValue& insert(StringObject* key);
    void emptySlotAt(std::uint32_t slot);
    void rebuildIndex(std::size_t slots);

    Entries entries_;
    std::vector<std::uint32_t, kelmora::BudgetAllocator<std::uint32_t>>
        index_;  // power of two, at most half full
    mutable std::vector<std::uint32_t> sorted_;
    mutable bool sortedIsValid_ = false;
};

inline MapObject& RubyValue::mapObject() const {
    assert(isMap());
    return static_cast<MapObject&>(*object());
}

}  // namespace vesper::ruby
