#include "script/error_trail.h"

#include "script/code.h"
#include "script/interpreter.h"

namespace kelmora {
namespace {

constexpr std::size_t maximumPlaces = 16;
constexpr std::size_t maximumStatement = 400;

ErrorTrail::Place placeAt(const ParsedScriptLine& line, const SourceFile& file) {
    return {file.path, line.lineNumber + 1, line.text.substr(0, maximumStatement)};
}

}  // namespace

void ErrorTrail::note(const Interpreter& script) {
    std::exception_ptr passing = std::current_exception();
    if (passing == last_.of) return;
    earlier_ = std::move(last_);
    last_ = {std::move(passing), {}};
    std::vector<Place>& places = last_.places;
    if (const ParsedScriptLine* line = script.context.line())
        places.push_back(placeAt(*line, script.context.file()));
    const ParsedScriptLine* inner = script.context.line();
    for (std::uint32_t i = script.callRecords.size(); i > 0 && places.size() < maximumPlaces; --i) {
        const Interpreter::CallRecord& record = script.callRecords[i - 1];
        const ParsedScriptLine* line = record.call ? record.code->siteOf(record.call).line : nullptr;
        if (!line) line = record.line;
        if (line && line == inner) {
            ++places.back().times;
        } else if (line) {
            places.push_back(placeAt(*line, *record.file));
        }
        inner = line;
    }
}

const std::vector<ErrorTrail::Place>& ErrorTrail::places(const std::string& message) const {
    static const std::vector<Place> none;
    if (!last_.of || last_.of != std::current_exception()) return none;
    const bool raisedAgain = !last_.places.empty() && earlier_.of &&
                             last_.places.front().statement.find("error(") != std::string::npos;
    if (!raisedAgain) return last_.places;
    try {
        std::rethrow_exception(earlier_.of);
    } catch (const std::exception& first) {
        if (message == first.what()) return earlier_.places;
    } catch (...) {
        return last_.places;
    }
    return last_.places;
}

}  // namespace kelmora
