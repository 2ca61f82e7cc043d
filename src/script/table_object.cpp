#include "script/table_object.h"

#include <algorithm>
#include <numeric>

#include "script/numbers.h"

namespace kelmora {
namespace {

std::uint32_t mixInteger(std::int32_t number) {
    auto hash = static_cast<std::uint32_t>(number) * 2654435769u;
    return hash ^ (hash >> 16);
}

}  // namespace

std::size_t TableKeyList::find(std::string_view key) const {
    const auto found = std::lower_bound(
        keys.begin(), keys.end(), key,
        [](const Ref<StringObject>& entry, std::string_view wanted) { return entry->text() < wanted; });
    if (found == keys.end() || (*found)->text() != key) return keys.size();
    return static_cast<std::size_t>(found - keys.begin());
}

std::uint32_t TableObject::hashOf(const TableKey& key) {
    return key.isInteger() ? mixInteger(key.number()) : key.text().hash();
}

std::uint32_t TableObject::probe(const TableKey& key, std::uint32_t hash) const {
    const auto mask = static_cast<std::uint32_t>(index_.size() - 1);
    std::uint32_t slot = hash & mask;
    for (; index_[slot] != emptySlot; slot = (slot + 1) & mask) {
        const Entry& entry = entries_[index_[slot]];
        if (entry.hash != hash) continue;
        if (key.isInteger()) {
            if (!entry.text && entry.number == key.number()) break;
        } else if (entry.text &&
                   (entry.text.get() == &key.text() || entry.text->text() == key.text().text())) {
            break;
        }
    }
    return slot;
}

const Variable* TableObject::findEntry(const TableKey& key) const {
    const std::uint32_t entry = index_[probe(key, hashOf(key))];
    return entry == emptySlot ? nullptr : &entries_[entry].value;
}

const Variable* TableObject::find(std::string_view key) const {
    return find(TableKey(std::string(key)));
}

Variable& TableObject::findOrInsert(const TableKey& key) {
    if (key.isInteger()) {
        const auto position = static_cast<std::uint32_t>(key.number()) - 1u;
        if (position < dense_.size()) return dense_[position];
        if (position == dense_.size()) {
            keysChanged();
            dense_.emplace_back();
            if (integerEntries_ > 0) pullIntoDense();
            return dense_[position];
        }
    }
    const std::uint32_t hash = hashOf(key);
    if (!index_.empty()) {
        const std::uint32_t entry = index_[probe(key, hash)];
        if (entry != emptySlot) return entries_[entry].value;
    }
    return insertEntry(key, hash);
}

Variable& TableObject::insertEntry(const TableKey& key, std::uint32_t hash) {
    keysChanged();
    if ((entries_.size() + 1) * 2 > index_.size()) rebuildIndex(std::max<std::size_t>(8, index_.size() * 2));
    index_[probe(key, hash)] = static_cast<std::uint32_t>(entries_.size());
    entries_.push_back(
        {key.isInteger() ? Ref<StringObject>() : Ref<StringObject>(&key.text()), key.number(), hash, {}});
    if (key.isInteger()) ++integerEntries_;
    return entries_.back().value;
}

void TableObject::rebuildIndex(std::size_t slots) {
    index_.assign(slots, emptySlot);
    const auto mask = static_cast<std::uint32_t>(slots - 1);
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        std::uint32_t slot = entries_[i].hash & mask;
        while (index_[slot] != emptySlot) slot = (slot + 1) & mask;
        index_[slot] = static_cast<std::uint32_t>(i);
    }
}

bool TableObject::erase(const TableKey& key) {
    if (key.isInteger()) {
        const auto position = static_cast<std::uint32_t>(key.number()) - 1u;
        if (position < dense_.size()) {
            keysChanged();
            spillDenseFrom(position + std::size_t{1});
            dense_.pop_back();
            return true;
        }
    }
    if (entries_.empty()) return false;
    const std::uint32_t slot = probe(key, hashOf(key));
    if (index_[slot] == emptySlot) return false;
    keysChanged();
    eraseSlot(slot);
    return true;
}

void TableObject::eraseSlot(std::uint32_t slot) {
    const auto mask = static_cast<std::uint32_t>(index_.size() - 1);
    const std::uint32_t entry = index_[slot];
    if (!entries_[entry].text) --integerEntries_;
    // Close the gap in the probe sequence.
    std::uint32_t hole = slot;
    for (std::uint32_t next = (slot + 1) & mask; index_[next] != emptySlot; next = (next + 1) & mask) {
        const std::uint32_t home = entries_[index_[next]].hash & mask;
        if (((next - home) & mask) < ((next - hole) & mask)) continue;
        index_[hole] = index_[next];
        hole = next;
    }
    index_[hole] = emptySlot;
    // The last entry moves into the freed place.
    const auto last = static_cast<std::uint32_t>(entries_.size() - 1);
    if (entry != last) {
        std::uint32_t lastSlot = entries_[last].hash & mask;
        while (index_[lastSlot] != last) lastSlot = (lastSlot + 1) & mask;
        index_[lastSlot] = entry;
        entries_[entry] = std::move(entries_[last]);
    }
    entries_.pop_back();
}

void TableObject::pullIntoDense() {
    while (integerEntries_ > 0) {
        const TableKey next(static_cast<std::int32_t>(dense_.size() + 1));
        const std::uint32_t slot = probe(next, hashOf(next));
        if (index_[slot] == emptySlot) return;
        dense_.push_back(std::move(entries_[index_[slot]].value));
        eraseSlot(slot);
    }
}

void TableObject::spillDenseFrom(std::size_t first) {
    for (std::size_t i = first; i < dense_.size(); ++i) {
        const TableKey key(static_cast<std::int32_t>(i + 1));
        insertEntry(key, hashOf(key)) = std::move(dense_[i]);
    }
    dense_.resize(first);
}

void TableObject::clear() {
    keysChanged();
    // Values may own this very table's neighbours: empty the members before anything is destroyed.
    const auto dense = std::exchange(dense_, {});
    const auto entries = std::exchange(entries_, {});
    index_.clear();
    integerEntries_ = 0;
}

void TableObject::reserve(std::size_t entries) {
    entries_.reserve(entries);
    std::size_t slots = 8;
    while (slots < entries * 2) slots *= 2;
    if (slots > index_.size()) rebuildIndex(slots);
}

std::shared_ptr<const TableKeyList> TableObject::sortedKeys() const {
    if (sorted_) return sorted_;
    auto list = std::make_shared<TableKeyList>();
    std::vector<Ref<StringObject>> keys;
    keys.reserve(size());
    for (std::size_t i = 1; i <= dense_.size(); ++i) keys.push_back(makeRef<StringObject>(std::to_string(i)));
    for (const Entry& entry : entries_)
        keys.push_back(entry.text ? entry.text : makeRef<StringObject>(std::to_string(entry.number)));
    list->places.resize(keys.size());
    std::iota(list->places.begin(), list->places.end(), 0u);
    std::sort(list->places.begin(), list->places.end(),
              [&](std::uint32_t a, std::uint32_t b) { return keys[a]->text() < keys[b]->text(); });
    list->keys.reserve(keys.size());
    list->keyValues.reserve(keys.size());
    for (const std::uint32_t place : list->places) {
        list->keyValues.push_back(keyValueFromText(*keys[place]));
        list->keys.push_back(std::move(keys[place]));
    }
    sorted_ = std::move(list);
    return sorted_;
}

}  // namespace kelmora
