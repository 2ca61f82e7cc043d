#include "script/inspection.h"

#include <algorithm>

#include "script/code.h"
#include "script/interpreter.h"

namespace kelmora {
namespace {

// Without names that stand in the list already.
void addNew(NamedValues& values, NameId name, const Variable& value) {
    const std::string& text = nameText(name);
    const bool isKnown =
        std::any_of(values.begin(), values.end(), [&](const auto& each) { return each.first == text; });
    if (!isKnown) values.emplace_back(text, value);
}

template <typename Link>
NamedValues namedBetween(const BindingStack<Link>& stack, BindingIndex first, BindingIndex end) {
    NamedValues values;
    for (BindingIndex place = std::min(end, stack.size()); place-- > first;)
        if (const Cell* cell = stack.link(place).cell) addNew(values, cell->name, stack.value(place));
    return values;
}

void setPlace(RunningFrame& frame, const ParsedScriptLine* line, const SourceFile& file) {
    frame.path = file.path;
    if (line) frame.line = line->lineNumber + 1;
}

}  // namespace

std::vector<RunningFrame> runningFrames(const Interpreter& script) {
    std::vector<RunningFrame> frames;
    const Scopes& scopes = script.scopes;
    const std::uint32_t base = script.coroutines.inTurn ? script.coroutines.callsAround : 0;
    const ParsedScriptLine* line = script.context.line();
    const SourceFile* file = &script.context.file();
    BindingIndex entriesEnd = scopes.calls().size();
    BindingIndex localsEnd = scopes.locals().size();
    BindingIndex localsFirst = scopes.view().visibleLocals;
    for (std::uint32_t i = script.callRecords.size();; --i) {
        const bool isOutermost = i <= base;
        RunningFrame& frame = frames.emplace_back();
        setPlace(frame, line, *file);
        frame.locals = namedBetween(scopes.locals(), localsFirst, localsEnd);
        if (isOutermost) {
            frame.parameters = namedBetween(scopes.calls(), 0, entriesEnd);
            if (script.coroutines.inTurn)
                frame.function = script.coroutines.scheduled->callable.function().name;
            return frames;
        }
        const Interpreter::CallRecord& record = script.callRecords[i - 1];
        const BindingIndex bottom = scopes.calls().placeOf(record.bottom);
        frame.parameters = namedBetween(scopes.calls(), bottom, entriesEnd);
        if (record.callable) frame.function = record.callable->name;
        line = record.call ? record.code->siteOf(record.call).line : nullptr;
        if (!line) line = record.line;
        file = record.file;
        entriesEnd = bottom;
        localsEnd = localsFirst;
        localsFirst = record.view.visibleLocals;
    }
}

NamedValues visibleNatives(const Interpreter& script) {
    NamedValues values;
    for (const auto& [name, value] : script.scopes.natives()) addNew(values, name, value);
    return values;
}

}  // namespace kelmora
