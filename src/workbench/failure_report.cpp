#include "workbench/failure_report.h"

#include <algorithm>
#include <cctype>
#include <utility>
#include <vector>

#include "script/interpreter.h"
#include "script/line_parser.h"
#include "workbench/nearest.h"

namespace kelmora {
namespace {

std::string nameOfPlace(const CallPlace& place) {
    return (place.path.empty() ? "line " : place.path + ":") + std::to_string(place.line) +
           (place.function.empty() ? "" : " in function " + place.function);
}

std::string firstLine(const std::string& statement) {
    return statement.substr(0, statement.find('\n'));
}

// The tokens of `name`, `name["a"]` in front of each call's parenthesis, as they are written.
std::vector<std::string> calledNames(const std::string& statement) {
    SourceContext context;
    std::vector<std::string> names;
    std::vector<std::string> tokens;
    try {
        tokens = tokenise(statement, context);
    } catch (const std::exception&) {
        return names;
    }
    for (std::size_t i = 0; i + 1 < tokens.size(); ++i) {
        if (!analyseToken(tokens[i]).isPlainIdentifier()) continue;
        std::string name = tokens[i];
        std::size_t next = i + 1;
        while (next + 2 < tokens.size() && tokens[next] == "[" && tokens[next + 2] == "]") {
            name += "[" + tokens[next + 1] + "]";
            next += 3;
        }
        if (next < tokens.size() && tokens[next] == "(") names.push_back(name);
    }
    return names;
}

// A line with a mark under the name; nothing where the statement's first line does not have it as it is
// written.
std::string markUnder(const std::string& name, const std::string& statement) {
    const std::string line = firstLine(statement);
    const std::string word = name.substr(0, name.find('['));
    const auto isPart = [&](std::size_t at) {
        return at < line.size() &&
               (std::isalnum(static_cast<unsigned char>(line[at])) != 0 || line[at] == '_');
    };
    for (std::size_t at = 0; (at = line.find(word, at)) != std::string::npos; ++at)
        if ((at == 0 || !isPart(at - 1)) && !isPart(at + word.size()))
            return "    " + std::string(at, ' ') + "^" + std::string(word.size() - 1, '~') + "\n";
    return {};
}

// Which of the called names holds nothing, when it is one alone.
std::string explainCall(VesperScript& engine, const std::string& statement) {
    std::vector<std::string> known;
    for (const auto& [name, value] : engine.globals()) known.push_back(name);
    const std::vector<std::string> names = calledNames(statement);
    std::vector<std::string> missing;
    for (const std::string& name : names)
        if (names.size() == 1 ||
            std::find(known.begin(), known.end(), name.substr(0, name.find('['))) == known.end())
            missing.push_back(name);
    if (missing.size() != 1) return {};
    const std::string near = missing[0].find('[') == std::string::npos ? nearestWord(missing[0], known) : "";
    return markUnder(missing[0], statement) + "  `" + missing[0] + "` is nothing here" +
           (near.empty() ? "" : "; did you mean `" + near + "`?") + "\n";
}

std::string describePlaces(VesperScript& engine, const CallTrail& places, const std::string& message,
                           const std::string& hiddenPath) {
    std::string text;
    bool isInnermost = true;
    // Reports of faults of form name their place themselves.
    bool named = message.find("\n  at ") != std::string::npos;
    for (const CallPlace& place : places) {
        if (!std::exchange(named, false) && (hiddenPath.empty() || place.path != hiddenPath)) {
            text += (isInnermost ? "  at " : "  called at ") + nameOfPlace(place) + "\n";
            if (!place.statement.empty()) text += "    " + firstLine(place.statement) + "\n";
            if (isInnermost && message.starts_with("Attempted to call a non-function value of type not"))
                text += explainCall(engine, place.statement);
            if (place.times > 1) text += "    (" + std::to_string(place.times) + " times)\n";
        }
        isInnermost = false;
    }
    return text;
}

}  // namespace

std::string failurePlaces(VesperScript& engine, const std::string& message, const std::string& hiddenPath) {
    return describePlaces(engine, engine.interpreter().trail.places(), message, hiddenPath);
}

}  // namespace kelmora
