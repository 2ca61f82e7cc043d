#include <algorithm>

#include "rwby/library/library.h"
#include "rwby/map_object.h"
#include "rwby/operations.h"

namespace vesper::ruby {
namespace {

void requireTable(const RubyValue& value, const char* message) {
    require(value.isArray() || value.isMap(), message);
}

RubyValue mapNew(RubyVM&, Arguments) {
    return RubyValue::makeMap();
}

RubyValue mapDelete(RubyVM&, Arguments arguments) {
    MapObject& map = arguments[0].asMap();
    const MapKey key(arguments[1]);
    const RubyValue* found = map.find(key.text());
    if (!found) return {};
    RubyValue value = *found;
    map.erase(key.text());
    return value;
}

RubyValue copyOfMap(const MapObject& map) {
    RubyValue copy = RubyValue::makeMap();
    for (const MapObject::Entry& entry : map.entries()) copy.mapObject().set(*entry.key, entry.value);
    return copy;
}

// Where both have a key, the second one's value counts.
RubyValue mapMerge(RubyVM&, Arguments arguments) {
    RubyValue merged = copyOfMap(arguments[0].asMap());
    for (const MapObject::Entry& entry : arguments[1].asMap().entries())
        merged.mapObject().set(*entry.key, entry.value);
    return merged;
}

RubyValue mapClone(RubyVM&, Arguments arguments) {
    return copyOfMap(arguments[0].asMap());
}

RubyValue tableClone(RubyVM&, Arguments arguments) {
    requireTable(arguments[0], "table_clone expects an array or map");
    return arguments[0].isArray() ? RubyValue::array(arguments[0].items())
                                  : copyOfMap(arguments[0].mapObject());
}

RubyValue tableClear(RubyVM&, Arguments arguments) {
    requireTable(arguments[0], "table_clear expects an array or map");
    if (arguments[0].isArray()) {
        const RubyItems gone = std::exchange(arguments[0].items(), {});
    } else {
        arguments[0].mapObject().clear();
    }
    return arguments[0];
}

RubyValue keys(RubyVM&, Arguments arguments) {
    requireTable(arguments[0], "keys expects an array or map");
    RubyItems found;
    if (arguments[0].isArray()) {
        for (std::size_t i = 0; i < arguments[0].items().size(); ++i)
            found.push_back(RubyValue::integer(static_cast<std::int64_t>(i)));
    } else {
        const MapObject& map = arguments[0].mapObject();
        found.reserve(map.size());
        for (const std::uint32_t place : map.sortedOrder())
            found.push_back(RubyValue::string(map.entries()[place].key.get()));
    }
    return RubyValue::array(std::move(found));
}

// In the order of `keys`.
RubyValue values(RubyVM&, Arguments arguments) {
    requireTable(arguments[0], "values expects an array or map");
    if (arguments[0].isArray()) return RubyValue::array(arguments[0].items());
    RubyItems found;
    const MapObject& map = arguments[0].mapObject();
    found.reserve(map.size());
    for (const std::uint32_t place : map.sortedOrder()) found.push_back(map.entries()[place].value);
    return RubyValue::array(std::move(found));
}

// Null for a place that is not there.
const RubyValue* findInTable(const RubyValue& table, const RubyValue& key) {
    if (table.isMap()) return findInMap(table, key);
    if (!key.isNumeric()) return nullptr;
    const std::int64_t place = key.asInteger();
    const RubyItems& items = table.items();
    return place >= 0 && static_cast<std::uint64_t>(place) < items.size()
               ? &items[static_cast<std::size_t>(place)]
               : nullptr;
}

RubyValue tableGet(RubyVM&, Arguments arguments) {
    requireTable(arguments[0], "table_get expects an array or map");
    if (const RubyValue* value = findInTable(arguments[0], arguments[1])) return *value;
    return arguments.size() > 2 ? arguments[2] : RubyValue();
}

RubyValue tableHasKey(RubyVM&, Arguments arguments) {
    requireTable(arguments[0], "table_has_key expects an array or map");
    return RubyValue::boolean(findInTable(arguments[0], arguments[1]) != nullptr);
}

RubyValue tableSet(RubyVM&, Arguments arguments) {
    requireTable(arguments[0], "table_set expects an array or map");
    if (arguments[0].isMap()) {
        setInMap(arguments[0], arguments[1], arguments[2]);
        return arguments[2];
    }
    require(arguments[1].isNumeric(), "table_set array index must be numeric");
    const std::int64_t place = arguments[1].asInteger();
    require(place >= 0, "table_set array index must be non-negative");
    arrayElement(arguments[0].items(), place) = arguments[2];
    return arguments[2];
}

// At the end, or before the element at an index.
RubyValue tableInsert(RubyVM&, Arguments arguments) {
    require(arguments[0].isArray(), "table_insert expects an array");
    RubyItems& items = arguments[0].items();
    const auto size = static_cast<std::int64_t>(items.size());
    require(size < maximumArraySize, "the array is too large");
    const std::int64_t place = arguments.size() > 2 ? arguments[1].asInteger() : size;
    require(place >= 0 && place <= size, "table_insert index is out of range");
    items.insert(items.begin() + static_cast<std::ptrdiff_t>(place), arguments.back());
    return arguments[0];
}

// The last element, or the one at an index.
RubyValue tableRemove(RubyVM&, Arguments arguments) {
    require(arguments[0].isArray(), "table_remove expects an array");
    RubyItems& items = arguments[0].items();
    if (items.empty() && arguments.size() == 1) return {};
    const auto size = static_cast<std::int64_t>(items.size());
    const std::int64_t place = arguments.size() > 1 ? arguments[1].asInteger() : size - 1;
    require(place >= 0 && place < size, "table_remove index is out of range");
    const auto position = items.begin() + static_cast<std::ptrdiff_t>(place);
    RubyValue removed = std::move(*position);
    items.erase(position);
    return removed;
}

// A stable merge sort: an order that contradicts itself, and a failure in the middle, lose no element.
class Sorter {
public:
    Sorter(RubyVM& vm, const RubyValue* comparator) : vm_(vm), comparator_(comparator) {}

    void sort(RubyItems& items) {
        RubyItems other(items.size());
        for (std::size_t width = 1; width < items.size(); width *= 2) {
            for (std::size_t first = 0; first < items.size(); first += 2 * width)
                merge(items, other, first, std::min(first + width, items.size()),
                      std::min(first + 2 * width, items.size()));
            items.swap(other);
        }
    }

private:
    bool comesBefore(const RubyValue& a, const RubyValue& b) {
        if (!comparator_) return compareOrdered(a, b) == -1;
        const RubyValue arguments[] = {a, b};
        const RubyValue answer = vm_.call(*comparator_, arguments);
        return answer.isNumeric() ? answer.numericValue() < 0 : answer.isTruthy();
    }
    void merge(const RubyItems& from, RubyItems& to, std::size_t left, std::size_t middle, std::size_t end) {
        std::size_t right = middle;
        for (std::size_t at = left, out = left; out < end; ++out) {
            const bool takesRight = at >= middle || (right < end && comesBefore(from[right], from[at]));
            to[out] = from[takesRight ? right++ : at++];
        }
    }

    RubyVM& vm_;
    const RubyValue* comparator_;
};

// A comparator answers true, or a number below 0, when its first argument comes first. It sees the array as
// it was; what it does to it is lost.
RubyValue tableSort(RubyVM& vm, Arguments arguments) {
    require(arguments[0].isArray(), "table_sort expects an array");
    RubyItems sorted = arguments[0].items();
    Sorter(vm, arguments.size() > 1 && !arguments[1].isNil() ? &arguments[1] : nullptr).sort(sorted);
    arguments[0].items() = std::move(sorted);
    return arguments[0];
}

// The elements from an index to another, or to the end.
RubyValue tableConcat(RubyVM&, Arguments arguments) {
    require(arguments[0].isArray(), "table_concat expects an array");
    const RubyItems& items = arguments[0].items();
    const auto last = static_cast<std::int64_t>(items.size()) - 1;
    const std::int64_t from = arguments.size() > 2 ? std::max<std::int64_t>(arguments[2].asInteger(), 0) : 0;
    const std::int64_t to = arguments.size() > 3 ? std::min(arguments[3].asInteger(), last) : last;
    const std::string_view separator = arguments.size() > 1 ? arguments[1].asString() : "";
    if (from > to) return RubyValue::text("");
    return joinItems(
        std::span(items).subspan(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from + 1)),
        separator);
}

constexpr LibraryEntry entries[] = {
    {"map_new", mapNew, exactly(0)},
    {"map_delete", mapDelete, exactly(2)},
    {"map_merge", mapMerge, exactly(2)},
    {"map_clone", mapClone, exactly(1)},
    {"table_clone", tableClone, exactly(1)},
    {"table_clear", tableClear, exactly(1)},
    {"keys", keys, exactly(1)},
    {"values", values, exactly(1)},
    {"table_get", tableGet, between(2, 3)},
    {"table_has_key", tableHasKey, exactly(2)},
    {"table_set", tableSet, exactly(3)},
    {"table_insert", tableInsert, between(2, 3)},
    {"table_remove", tableRemove, between(1, 2)},
    {"table_sort", tableSort, between(1, 2)},
    {"table_concat", tableConcat, between(1, 4)},
};

}  // namespace

std::span<const LibraryEntry> tableLibrary() {
    return entries;
}

}  // namespace vesper::ruby
