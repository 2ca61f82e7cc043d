#include <algorithm>

#include "rwby/library/library.h"
#include "text/limits.h"

namespace vesper::ruby {
namespace {

void requireRoom(std::size_t size, std::size_t added) {
    require(size + added <= static_cast<std::size_t>(maximumArraySize), "the array is too large");
}

// A count of elements, held to those that are there.
std::size_t heldCount(const RubyValue& value, std::size_t available, const char* message) {
    const std::int64_t count = value.asInteger();
    require(count >= 0, message);
    return static_cast<std::size_t>(std::min(count, static_cast<std::int64_t>(available)));
}

RubyValue range(RubyVM&, Arguments arguments) {
    const std::int64_t first = arguments[0].asInteger();
    const std::int64_t last = arguments[1].asInteger();
    const std::int64_t step = arguments.size() > 2 ? arguments[2].asInteger() : 1;
    require(step != 0, "range step cannot be zero");
    if (step > 0 ? first > last : first < last) return RubyValue::array({});
    const std::uint64_t span = step > 0
                                   ? static_cast<std::uint64_t>(last) - static_cast<std::uint64_t>(first)
                                   : static_cast<std::uint64_t>(first) - static_cast<std::uint64_t>(last);
    const std::uint64_t stride =
        step > 0 ? static_cast<std::uint64_t>(step) : 0 - static_cast<std::uint64_t>(step);
    require(span / stride < static_cast<std::uint64_t>(maximumArraySize), "the array is too large");
    const auto count = static_cast<std::size_t>(span / stride + 1);
    RubyItems items(count);
    auto value = static_cast<std::uint64_t>(first);
    for (RubyValue& item : items) {
        item.setInteger(static_cast<std::int64_t>(value));
        value += static_cast<std::uint64_t>(step);
    }
    return RubyValue::array(std::move(items));
}

RubyValue arrayNew(RubyVM&, Arguments arguments) {
    const std::int64_t size = arguments.empty() ? 0 : arguments[0].asInteger();
    require(size >= 0, "array_new size must be non-negative");
    require(size <= maximumArraySize, "the array is too large");
    return RubyValue::array(
        RubyItems(static_cast<std::size_t>(size), arguments.size() > 1 ? arguments[1] : RubyValue()));
}

RubyValue arrayPush(RubyVM&, Arguments arguments) {
    RubyItems& items = arguments[0].asArray();
    requireRoom(items.size(), arguments.size());
    for (const RubyValue& value : arguments.subspan(1)) items.push_back(value);
    return arguments[0];
}

// One element, or an array of them when a count is given, from either end.
RubyValue takeItems(Arguments arguments, bool atEnd, const char* message) {
    RubyItems& items = arguments[0].asArray();
    const bool isSingle = arguments.size() == 1;
    const std::size_t count =
        isSingle ? std::min<std::size_t>(items.size(), 1) : heldCount(arguments[1], items.size(), message);
    const auto first = atEnd ? items.end() - static_cast<std::ptrdiff_t>(count) : items.begin();
    const auto last = first + static_cast<std::ptrdiff_t>(count);
    RubyItems taken(std::make_move_iterator(first), std::make_move_iterator(last));
    items.erase(first, last);
    if (!isSingle) return RubyValue::array(std::move(taken));
    return taken.empty() ? RubyValue() : std::move(taken[0]);
}

RubyValue arrayPop(RubyVM&, Arguments arguments) {
    return takeItems(arguments, true, "array_pop count must be non-negative");
}

RubyValue arrayShift(RubyVM&, Arguments arguments) {
    return takeItems(arguments, false, "array_shift count must be non-negative");
}

RubyValue arrayUnshift(RubyVM&, Arguments arguments) {
    RubyItems& items = arguments[0].asArray();
    requireRoom(items.size(), arguments.size());
    items.insert(items.begin(), arguments.begin() + 1, arguments.end());
    return arguments[0];
}

// From a start, which counts from the end when it is negative, a count of elements or all that follow.
RubyValue arraySlice(RubyVM&, Arguments arguments) {
    const RubyItems& items = arguments[0].asArray();
    const auto size = static_cast<std::int64_t>(items.size());
    std::int64_t first = arguments[1].asInteger();
    if (first < 0) first = std::max<std::int64_t>(first + size, 0);
    first = std::min(first, size);
    const auto available = static_cast<std::size_t>(size - first);
    const std::size_t count =
        arguments.size() > 2 ? heldCount(arguments[2], available, "array_slice count must be non-negative")
                             : available;
    const auto begin = items.begin() + static_cast<std::ptrdiff_t>(first);
    return RubyValue::array({begin, begin + static_cast<std::ptrdiff_t>(count)});
}

RubyValue arrayReverse(RubyVM&, Arguments arguments) {
    const RubyItems& items = arguments[0].asArray();
    return RubyValue::array({items.rbegin(), items.rend()});
}

RubyValue arrayJoin(RubyVM&, Arguments arguments) {
    return joinItems(arguments[0].asArray(), arguments.size() > 1 ? arguments[1].asString() : "");
}

constexpr LibraryEntry entries[] = {
    {"range", range, between(2, 3)},
    {"array_new", arrayNew, between(0, 2)},
    {"array_push", arrayPush, atLeast(2)},
    {"array_pop", arrayPop, between(1, 2)},
    {"array_shift", arrayShift, between(1, 2)},
    {"array_unshift", arrayUnshift, atLeast(2)},
    {"array_slice", arraySlice, between(2, 3)},
    {"array_reverse", arrayReverse, exactly(1)},
    {"array_join", arrayJoin, between(1, 2)},
};

}  // namespace

RubyValue joinItems(std::span<const RubyValue> items, std::string_view separator) {
    std::string text;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (i > 0) text += separator;
        if (items[i].isString()) {
            text += items[i].asString();
        } else {
            text += items[i].toString();
        }
        require(text.size() <= kelmora::maximumTextSize, "the text is too large");
    }
    return RubyValue::text(text);
}

std::span<const LibraryEntry> arrayLibrary() {
    return entries;
}

}  // namespace vesper::ruby
