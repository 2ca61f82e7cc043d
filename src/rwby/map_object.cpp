#include "rwby/map_object.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace vesper::ruby {

std::uint32_t MapObject::probe(std::string_view key, std::uint32_t hash) const {
    const auto mask = static_cast<std::uint32_t>(index_.size() - 1);
    std::uint32_t slot = hash & mask;
    for (; index_[slot] != emptySlot; slot = (slot + 1) & mask) {
        const StringObject& other = *entries_[index_[slot]].key;
        if (other.hash() == hash && other.text() == key) break;
    }
    return slot;
}

std::uint32_t MapObject::slotOf(std::uint32_t entry) const {
    const auto mask = static_cast<std::uint32_t>(index_.size() - 1);
    std::uint32_t slot = entries_[entry].key->hash() & mask;
    while (index_[slot] != entry) slot = (slot + 1) & mask;
    return slot;
}

const RubyValue* MapObject::find(std::string_view key, std::uint32_t hash) const {
    if (index_.empty()) return nullptr;
    const std::uint32_t place = index_[probe(key, hash)];
    return place == emptySlot ? nullptr : &entries_[place].value;
}

void MapObject::set(StringObject& key, RubyValue value) {
    if (RubyValue* known = find(key)) {
        *known = std::move(value);
    } else {
        insert(&key) = std::move(value);
    }
}

void MapObject::set(std::string_view key, RubyValue value) {
    if (const RubyValue* known = find(key)) {
        *const_cast<RubyValue*>(known) = std::move(value);
    } else {
        insert(new StringObject(key)) = std::move(value);
    }
}

RubyValue& MapObject::insert(StringObject* key) {
    kelmora::Ref<StringObject> kept(key);
    if ((entries_.size() + 1) * 2 > index_.size()) rebuildIndex(std::max<std::size_t>(index_.size() * 2, 8));
    sortedIsValid_ = false;
    const std::uint32_t slot = probe(key->text(), key->hash());
    entries_.push_back({std::move(kept), RubyValue()});
    index_[slot] = static_cast<std::uint32_t>(entries_.size() - 1);
    return entries_.back().value;
}

bool MapObject::erase(std::string_view key) {
    if (index_.empty()) return false;
    const std::uint32_t slot = probe(key, StringObject::hashOf(key));
    const std::uint32_t place = index_[slot];
    if (place == emptySlot) return false;
    sortedIsValid_ = false;
    const auto last = static_cast<std::uint32_t>(entries_.size() - 1);
    const std::uint32_t lastSlot = slotOf(last);
    const Entry gone = std::move(entries_[place]);  // goes when the map is whole again
    if (place != last) {
        entries_[place] = std::move(entries_[last]);
        index_[lastSlot] = place;
    }
    entries_.pop_back();
    emptySlotAt(slot);
    return true;
}

// Moves later entries of the same run back, so that no search ends at the hole.
void MapObject::emptySlotAt(std::uint32_t slot) {
    const auto mask = static_cast<std::uint32_t>(index_.size() - 1);
    std::uint32_t hole = slot;
    for (std::uint32_t next = (slot + 1) & mask; index_[next] != emptySlot; next = (next + 1) & mask) {
        const std::uint32_t home = entries_[index_[next]].key->hash() & mask;
        if (((next - home) & mask) < ((next - hole) & mask)) continue;
        index_[hole] = index_[next];
        hole = next;
    }
    index_[hole] = emptySlot;
}

void MapObject::rebuildIndex(std::size_t slots) {
    index_.assign(slots, emptySlot);
    const auto mask = static_cast<std::uint32_t>(slots - 1);
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        std::uint32_t slot = entries_[i].key->hash() & mask;
        while (index_[slot] != emptySlot) slot = (slot + 1) & mask;
        index_[slot] = static_cast<std::uint32_t>(i);
    }
}

void MapObject::clear() {
    index_.clear();
    sortedIsValid_ = false;
    const Entries gone = std::exchange(entries_, {});
}

const std::vector<std::uint32_t>& MapObject::sortedOrder() const {
    if (sortedIsValid_) return sorted_;
    sorted_.resize(entries_.size());
    std::iota(sorted_.begin(), sorted_.end(), 0u);
    std::sort(sorted_.begin(), sorted_.end(), [this](std::uint32_t a, std::uint32_t b) {
        return entries_[a].key->text() < entries_[b].key->text();
    });
    sortedIsValid_ = true;
    return sorted_;
}

}  // namespace vesper::ruby
