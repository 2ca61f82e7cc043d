#include "script/error_trail.h"

#include <algorithm>
#include <utility>

#include "script/code.h"
#include "script/interpreter.h"

namespace kelmora {
namespace {

const CallTrail nowhere;

// What the exception at hand brings with it.
const CallTrail* broughtAlong() {
    try {
        throw;
    } catch (const TracedError& error) {
        return &error.trail();
    } catch (...) {
        return nullptr;
    }
}

CallPlace placeAt(const ParsedScriptLine& line, const SourceFile& file) {
    return {{}, file.path, line.lineNumber + 1, line.text.substr(0, maximumTrailStatement)};
}

}  // namespace

void ErrorTrail::note(const Interpreter& script, const std::string& message) {
    std::exception_ptr passing = std::current_exception();
    if (passing == last_.of) return;
    const Way again = std::exchange(again_, {});
    CallTrail places;
    if (again.message == message) places = again.places;
    if (places.empty()) {
        if (const CallTrail* brought = broughtAlong()) places = *brought;
        addRunningCalls(script, places);
    }
    last_ = {std::move(passing), message, {}, std::move(places)};
}

// The calls at work, within a coroutine's turn that coroutine's.
void ErrorTrail::addRunningCalls(const Interpreter& script, CallTrail& places) const {
    const std::uint32_t turn = script.coroutines.inTurn ? script.coroutines.callsAround : 0;
    const std::uint32_t base = std::max(turn, foot_ ? foot_->calls_ : 0);
    const std::size_t most = places.size() + maximumTrailPlaces;
    const ParsedScriptLine* line = script.context.line();
    const ParsedScriptLine* inner = nullptr;
    const SourceFile* file = &script.context.file();
    for (std::uint32_t i = script.callRecords.size();; --i) {
        if (foot_ && i == foot_->calls_ && line == foot_->line_) return;
        const bool isNew = line && line != inner;
        if (isNew && places.size() == most) return;
        if (isNew) {
            places.push_back(placeAt(*line, *file));
        } else if (line) {
            ++places.back().times;
        }
        if (i <= base) {
            if (isNew && script.coroutines.inTurn && script.coroutines.scheduled)
                places.back().function = script.coroutines.scheduled->callable.function().name;
            return;
        }
        const Interpreter::CallRecord& record = script.callRecords[i - 1];
        if (isNew && record.callable) places.back().function = record.callable->name;
        inner = line;
        line = record.call ? record.code->siteOf(record.call).line : nullptr;
        if (!line) line = record.line;
        file = record.file;
    }
}

ErrorTrail::Foot::Foot(Interpreter& script)
    : trail_(script.trail),
      below_(script.trail.foot_),
      calls_(script.callRecords.size()),
      line_(script.context.line()) {
    trail_.foot_ = this;
}

ErrorTrail::Foot::~Foot() {
    trail_.foot_ = below_;
}

void ErrorTrail::caught(const Variable& text) {
    if (!text.isString() || text.text() != last_.message) return;
    last_.text = text;
    caught_[nextCaught_++ % caught_.size()] = std::exchange(last_, {});
}

void ErrorTrail::raising(const Variable& value) {
    const Way* way = wayOf(value);
    again_ = way ? *way : Way();
}

const ErrorTrail::Way* ErrorTrail::wayOf(const Variable& text) const {
    if (!text.isString()) return nullptr;
    const auto found = std::find_if(caught_.begin(), caught_.end(), [&](const Way& way) {
        return way.text.isString() && &way.text.stringObject() == &text.stringObject();
    });
    return found == caught_.end() ? nullptr : &*found;
}

const CallTrail& ErrorTrail::places() const {
    const std::exception_ptr asked = std::current_exception();
    if (asked && asked == last_.of) return last_.places;
    const CallTrail* brought = asked ? broughtAlong() : nullptr;
    return brought ? *brought : nowhere;
}

const CallTrail& ErrorTrail::placesOf(const Variable& text) const {
    const Way* way = wayOf(text);
    return way ? way->places : nowhere;
}

}  // namespace kelmora
