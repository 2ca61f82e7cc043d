#include "lua/iterator_state.h"

namespace vesper::lua {

bool EntryIterator::nextListed(std::size_t end, Value& key, Value& value) {
    while (entry_ < end) {
        const std::size_t position = entry_++;
        const Value* found = table_.table().findListed(*listed_, position);
        if (!found || found->isNil()) continue;
        value = *found;
        key = listed_->keys[position];
        return true;
    }
    return false;
}

bool EntryIterator::nextPair(Value& key, Value& value) {
    if (item_ == 0 && nextListed(listed_->belowOne, key, value)) return true;
    const ItemArray& array = table_.table().array();
    while (item_ < items_ && item_ < array.size()) {
        const Value& item = array[item_++];
        if (item.isNil()) continue;
        key.setInteger(static_cast<std::int64_t>(item_));
        value = item;
        return true;
    }
    item_ = items_ + 1;
    return nextListed(listed_->keys.size(), key, value);
}

bool EntryIterator::goBehind(const Value& key) {
    TableKey wanted;
    if (!tryMakeKeyFromValue(key, wanted)) return false;
    entry_ = listed_->belowOne;
    const bool isItem = wanted.isInteger() && wanted.integerValue() >= 1 &&
                        static_cast<std::uint64_t>(wanted.integerValue()) <= items_;
    if (isItem) {
        item_ = static_cast<std::size_t>(wanted.integerValue());
        return true;
    }
    std::size_t position = 0;
    if (!listed_->positionOf(wanted, position)) return false;
    entry_ = position + 1;
    item_ = position < listed_->belowOne ? 0 : items_ + 1;
    return true;
}

bool ItemIterator::nextPair(Value& key, Value& value) {
    const Value* found = table_.table().find(position_ + 1);
    if (!found || found->isNil()) return false;
    ++position_;
    value = *found;
    key.setInteger(position_);
    return true;
}

}  // namespace vesper::lua
