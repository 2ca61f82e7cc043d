#include "lua/table.h"

#include <algorithm>
#include <bit>
#include <stdexcept>

#include "base/numeric_result.h"

namespace vesper::lua {
namespace {

std::uint32_t hashInteger(std::int64_t key) {
    std::uint64_t bits = static_cast<std::uint64_t>(key) * 0x9E3779B97F4A7C15u;
    bits ^= bits >> 32;
    return static_cast<std::uint32_t>(bits) ^ 0x13579bdfu;
}

std::uint32_t hashKey(const TableKey& key) {
    if (key.isString()) return key.string().hash();
    if (key.isInteger()) return hashInteger(key.integerValue());
    return std::uint32_t{key.booleanValue()} | 0x10203040u;
}

int kindOrder(const TableKey& key) {
    if (key.isInteger()) return 0;
    return key.isString() ? 1 : 2;
}

bool keyPrecedes(const TableKey& a, const TableKey& b) {
    if (kindOrder(a) != kindOrder(b)) return kindOrder(a) < kindOrder(b);
    if (a.isInteger()) return a.integerValue() < b.integerValue();
    if (a.isString()) return a.letters() < b.letters();
    return a.booleanValue() < b.booleanValue();
}

// Three quarters of the nodes at most have a key, so that a search always ends.
std::uint32_t nodesFor(std::size_t keys) {
    if (keys == 0) return 0;
    return static_cast<std::uint32_t>(std::bit_ceil(std::max<std::size_t>(4, keys + (keys + 2) / 3)));
}

// How far beyond its end the array part still grows to a key.
constexpr std::uint64_t alwaysInArray = 64;
constexpr std::uint64_t widestGap = 8;

}  // namespace

bool SortedKeys::positionOf(const TableKey& key, std::size_t& position) const {
    const auto found = std::lower_bound(keys.begin(), keys.end(), key, keyPrecedes);
    if (found == keys.end() || keyPrecedes(key, *found)) return false;
    position = static_cast<std::size_t>(found - keys.begin());
    return true;
}

bool tryMakeKeyFromValue(const Value& value, TableKey& key) {
    switch (value.kind()) {
        case ValueKind::Integer:
        case ValueKind::String:
        case ValueKind::Boolean:
            key = value;
            return true;
        case ValueKind::Float: {
            std::int64_t whole = 0;
            if (!kelmora::isWholeResult(value.floatValue(), whole)) return false;
            key = Value::integer(whole);
            return true;
        }
        default:
            return false;
    }
}

Table::Table(ObjectList& list, std::size_t items, std::size_t fields) {
    list.add(*this);
    if (items != 0 || fields != 0) reserve(items, fields);
}

void Table::reserve(std::size_t items, std::size_t fields) {
    array_.reserve(std::min(items, maximumTableSize));
    if (nodesFor(fields) > nodeCount_) rebuildNodes(nodesFor(fields));
}

const Value* Table::find(const Value& key) const {
    switch (key.kind()) {
        case ValueKind::Integer:
            return find(key.integerValue());
        case ValueKind::String:
            return find(key.string());
        case ValueKind::Boolean:
            return findNode(key, hashKey(key));
        case ValueKind::Float: {
            std::int64_t whole = 0;
            return kelmora::isWholeResult(key.floatValue(), whole) ? find(whole) : nullptr;
        }
        default:
            return nullptr;
    }
}

const Value* Table::findInteger(std::int64_t key) const {
    return findNode(Value::integer(key), hashInteger(key));
}

const Value* Table::findNode(const Value& key, std::uint32_t hash) const {
    if (nodeCount_ == 0) return nullptr;
    for (std::uint32_t at = hash;; ++at) {
        const Node& node = nodes_[at & (nodeCount_ - 1)];
        if (node.key.isNil()) return nullptr;
        if (node.key.kind() == key.kind() && valuesEqual(node.key, key)) return &node.value;
    }
}

void Table::set(std::int64_t key, Value value) {
    if (trySetItem(key, std::move(value))) return;
    const std::uint64_t size = array_.size();
    const auto position = static_cast<std::uint64_t>(key);
    const bool extends = key >= 1 && (position <= alwaysInArray || position - size <= widestGap);
    if (!extends || value.isNil()) {
        setNode(Value::integer(key), hashInteger(key), std::move(value));
        return;
    }
    extendArray(static_cast<std::size_t>(position));
    if (integerKeys_ != 0) moveEntriesIntoArray(static_cast<std::size_t>(size));
    array_[static_cast<std::size_t>(position - 1)] = std::move(value);
}

void Table::set(StringObject& key, Value value) {
    if (trySetField(key, std::move(value))) return;
    setNode(Value(&key), key.hash(), std::move(value));
}

void Table::set(std::string_view key, Value value) {
    const Value text = Value::text(key);
    set(text.string(), std::move(value));
}

void Table::setKey(const TableKey& key, Value value) {
    if (key.isInteger()) {
        set(key.integerValue(), std::move(value));
    } else {
        setNode(key, hashKey(key), std::move(value));
    }
}

void Table::setNode(const Value& key, std::uint32_t hash, Value value) {
    if (auto* place = const_cast<Value*>(findNode(key, hash))) {
        if (place->isNil() && !value.isNil()) sorted_ = nullptr;
        *place = std::move(value);
        return;
    }
    if (value.isNil()) return;
    if (nodesFor(usedNodes_ + std::size_t{1}) > nodeCount_) growNodes();
    std::uint32_t at = hash;
    while (!nodes_[at & (nodeCount_ - 1)].key.isNil()) ++at;
    Node& node = nodes_[at & (nodeCount_ - 1)];
    node.key = key;
    node.value = std::move(value);
    ++usedNodes_;
    if (key.isInteger()) ++integerKeys_;
    sorted_ = nullptr;
}

// Removed keys go first; the nodes double only when most of them are in use.
void Table::growNodes() {
    const std::size_t live = entryCount();
    if (live + array_.size() >= maximumTableSize) throw std::runtime_error("table has too many elements");
    rebuildNodes(nodesFor(live + live / 2 + 1));
}

void Table::rebuildNodes(std::size_t count) {
    decltype(nodes_) old(count);
    old.swap(nodes_);
    const std::uint32_t oldCount = nodeCount_;
    nodeCount_ = static_cast<std::uint32_t>(count);
    usedNodes_ = 0;
    integerKeys_ = 0;
    sorted_ = nullptr;
    for (std::uint32_t i = 0; i < oldCount; ++i) {
        if (old[i].value.isNil()) continue;
        std::uint32_t at = hashKey(old[i].key);
        while (!nodes_[at & (nodeCount_ - 1)].key.isNil()) ++at;
        if (old[i].key.isInteger()) ++integerKeys_;
        nodes_[at & (nodeCount_ - 1)] = std::move(old[i]);
        ++usedNodes_;
    }
}

void Table::extendArray(std::size_t size) {
    if (size > maximumTableSize) throw std::runtime_error("table has too many elements");
    array_.extend(size);
}

// What lay among the entries under keys that the array part now holds, or that follow it directly.
void Table::moveEntriesIntoArray(std::size_t from) {
    const auto entry = [this](std::size_t index) {
        auto* place = const_cast<Value*>(findInteger(static_cast<std::int64_t>(index) + 1));
        return place && !place->isNil() ? place : nullptr;
    };
    for (std::size_t i = from; i < array_.size(); ++i)
        if (Value* place = entry(i)) array_[i] = std::exchange(*place, Value());
    while (Value* place = entry(array_.size())) {
        extendArray(array_.size() + 1);
        array_[array_.size() - 1] = std::exchange(*place, Value());
    }
}

std::size_t Table::length() const {
    while (border_ < array_.size() && !array_[border_].isNil()) ++border_;
    return border_;
}

std::size_t Table::entryCount() const {
    std::size_t live = 0;
    for (std::uint32_t i = 0; i < nodeCount_; ++i) live += nodes_[i].value.isNil() ? 0u : 1u;
    return live;
}

kelmora::Ref<SortedKeys> Table::sortedTableKeys() const {
    if (sorted_) return sorted_;
    auto listed = kelmora::makeRef<SortedKeys>();
    for (std::uint32_t i = 0; i < nodeCount_; ++i)
        if (!nodes_[i].value.isNil()) listed->nodes.push_back(i);
    std::sort(listed->nodes.begin(), listed->nodes.end(),
              [this](std::uint32_t a, std::uint32_t b) { return keyPrecedes(nodes_[a].key, nodes_[b].key); });
    listed->keys.reserve(listed->nodes.size());
    for (const std::uint32_t node : listed->nodes) listed->keys.push_back(nodes_[node].key);
    const auto isBelowOne = [](const TableKey& key) { return key.isInteger() && key.integerValue() < 1; };
    listed->belowOne = static_cast<std::size_t>(
        std::find_if_not(listed->keys.begin(), listed->keys.end(), isBelowOne) - listed->keys.begin());
    sorted_ = listed;
    return listed;
}

const Value* Table::findListed(const SortedKeys& listed, std::size_t position) const {
    if (sorted_.get() == &listed) return &nodes_[listed.nodes[position]].value;
    return find(listed.keys[position]);
}

void Table::clear() {
    const auto oldArray = std::move(array_);
    const auto oldNodes = std::move(nodes_);
    nodes_.clear();
    nodeCount_ = usedNodes_ = integerKeys_ = 0;
    border_ = 0;
    sorted_ = nullptr;
}

void tableSetByKey(Table& table, const Value& key, Value value) {
    TableKey made;
    if (!tryMakeKeyFromValue(key, made))
        throw std::runtime_error("table index must be a number, string, or boolean");
    table.setKey(made, std::move(value));
}

}  // namespace vesper::lua
