#include <algorithm>

#include "script/interpreter.h"
#include "script/library/library.h"
#include "script/numbers.h"
#include "script/operators.h"
#include "script/table_object.h"

namespace kelmora {
namespace {

constexpr const char* insertUsage = "table['insert'](table[, pos], value) requires an array or table";
constexpr const char* removeUsage = "table['remove'](table[, pos]) requires an array or table";
constexpr const char* concatUsage = "table['concat'](table[, sep[, i[, j]]]) requires an array or table";
constexpr const char* sortUsage = "table['sort'](table[, comp]) requires an array or table";

bool isContainer(const Variable& value) {
    return value.isArray() || value.isTable();
}

std::vector<Variable>& sequence(const Variable& container) {
    return container.isArray() ? container.items() : container.table().denseValues();
}

void append(const Variable& container, Variable value) {
    if (container.isArray()) {
        container.items().push_back(std::move(value));
    } else {
        TableObject& table = container.table();
        table.set(TableKey(static_cast<std::int32_t>(table.numericLength() + 1)), std::move(value));
    }
}

void removeLast(const Variable& container) {
    if (container.isArray()) {
        container.items().pop_back();
    } else {
        TableObject& table = container.table();
        table.erase(TableKey(static_cast<std::int32_t>(table.numericLength())));
    }
}

Variable insert(Interpreter&, Arguments arguments) {
    require((arguments.size() == 2 || arguments.size() == 3) && isContainer(arguments[0]), insertUsage);
    const Variable& container = arguments[0];
    const std::size_t length = sequence(container).size();
    std::int64_t position = static_cast<std::int64_t>(length) + 1;
    if (arguments.size() == 3) position = toInt(arguments[1]);
    if (position < 1 || position > static_cast<std::int64_t>(length) + 1)
        throw std::runtime_error("table['insert'](table[, pos], value): position out of bounds");
    append(container, arguments[arguments.size() - 1]);
    std::vector<Variable>& items = sequence(container);
    const auto added = items.begin() + static_cast<std::ptrdiff_t>(length);
    std::rotate(items.begin() + static_cast<std::ptrdiff_t>(position - 1), added, added + 1);
    return {};
}

Variable removeFunction(Interpreter&, Arguments arguments) {
    require((arguments.size() == 1 || arguments.size() == 2) && isContainer(arguments[0]), removeUsage);
    std::vector<Variable>& items = sequence(arguments[0]);
    std::int64_t position = static_cast<std::int64_t>(items.size());
    if (arguments.size() == 2) position = toInt(arguments[1]);
    if (position < 1 || position > static_cast<std::int64_t>(items.size())) return {};
    const auto at = items.begin() + static_cast<std::ptrdiff_t>(position - 1);
    std::rotate(at, at + 1, items.end());
    Variable removed = std::move(items.back());
    removeLast(arguments[0]);
    return removed;
}

Variable concat(Interpreter&, Arguments arguments) {
    require(!arguments.empty() && arguments.size() <= 4 && isContainer(arguments[0]), concatUsage);
    const std::vector<Variable>& items = sequence(arguments[0]);
    const std::string separator =
        arguments.size() > 1 && !arguments[1].isNot() ? arguments[1].toString() : "";
    std::int64_t first = arguments.size() > 2 ? toInt(arguments[2]) : 1;
    std::int64_t last = arguments.size() > 3 ? toInt(arguments[3]) : static_cast<std::int64_t>(items.size());
    first = std::max<std::int64_t>(first, 1);
    last = std::min(last, static_cast<std::int64_t>(items.size()));
    std::string text;
    for (std::int64_t i = first; i <= last; ++i) {
        if (i > first) text += separator;
        const Variable& item = items[static_cast<std::size_t>(i - 1)];
        if (item.isString()) {
            text += item.text();
        } else {
            text += item.toString();
        }
    }
    return Variable::text(std::move(text));
}

// A stable merge sort: unlike the library's it stays in bounds with a comparison that contradicts itself.
class Sorter {
public:
    Sorter(Interpreter& script, const Variable* comparison) : script_(script), comparison_(comparison) {}

    std::vector<Variable> run(std::vector<Variable> items) {
        std::vector<Variable> buffer(items.size());
        for (std::size_t width = 1; width < items.size(); width *= 2) {
            for (std::size_t start = 0; start < items.size(); start += 2 * width) {
                const std::size_t middle = std::min(start + width, items.size());
                merge(items, buffer, start, middle, std::min(start + 2 * width, items.size()));
                if (script_.shouldAbortForSoftRaisedError()) return items;
            }
            items.swap(buffer);
        }
        return items;
    }

private:
    bool less(const Variable& a, const Variable& b) {
        if (!comparison_) return compareVariables(a, b) < 0;
        const Variable arguments[] = {a, b};
        const Variable result = script_.invokeCallable(*comparison_, arguments);
        if (result.isMulti()) return !result.values().empty() && isTruthy(result.values()[0]);
        return isTruthy(result);
    }
    void merge(const std::vector<Variable>& from, std::vector<Variable>& to, std::size_t start,
               std::size_t middle, std::size_t end) {
        std::size_t left = start;
        std::size_t right = middle;
        for (std::size_t out = start; out < end; ++out) {
            const bool takesRight = left == middle || (right < end && less(from[right], from[left]));
            to[out] = from[takesRight ? right++ : left++];
        }
    }

    Interpreter& script_;
    const Variable* comparison_;
};

Variable sort(Interpreter& script, Arguments arguments) {
    require((arguments.size() == 1 || arguments.size() == 2) && isContainer(arguments[0]), sortUsage);
    const bool compares = arguments.size() == 2 && !arguments[1].isNot();
    std::vector<Variable> sorted =
        Sorter(script, compares ? &arguments[1] : nullptr).run(sequence(arguments[0]));
    if (script.shouldAbortForSoftRaisedError()) return {};
    std::vector<Variable>& items = sequence(arguments[0]);
    // The comparison may have changed the container's length.
    std::move(sorted.begin(),
              sorted.begin() + static_cast<std::ptrdiff_t>(std::min(sorted.size(), items.size())),
              items.begin());
    return {};
}

constexpr LibraryEntry entries[] = {
    {"insert", insert}, {"remove", removeFunction}, {"concat", concat}, {"sort", sort}};

}  // namespace

std::span<const LibraryEntry> tableLibrary() {
    return entries;
}

}  // namespace kelmora
