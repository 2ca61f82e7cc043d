#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "host/registration.h"

// Scripts whose expected output stands beside the lines that make it:
//     print(1 + 1)    @@ expect: 2
//     x = 1 / 0       @@ error: Division by zero
// Output lines are compared with the `expect` comments in the order of the source; `\t` in a comment is a
// tab. An `error` comment says how the run ends, and for reports with a place also on which line.
namespace kelmora {

struct ScriptExpectation {
    std::vector<std::string> output;
    std::string error;
    std::size_t errorLine = 0;  // from 1
    bool direct = true;         // false after a line `@@ direct: no`

    bool isEmpty() const { return output.empty() && error.empty(); }
};

struct ScriptOutcome {
    std::vector<std::string> output;
    std::string error;
};

// As text on the bytecode executor, as an image written and read back, on the direct executor, or as the
// start script of a game.
enum class ScriptWay { Text, Image, Direct, Game };

ScriptExpectation readScriptExpectation(const std::string& source);
// The path is what reports name, less its folders.
ScriptOutcome runTestScript(const std::string& source, const std::string& path, ScriptWay way);
void expectScriptOutcome(const ScriptExpectation& expected, const ScriptOutcome& outcome, const char* phase);

// The message of a report with a place, and the line it points at; else the bare text and no line.
std::string scriptErrorMessage(const std::string& error, std::size_t& line);

// Stages a game whose start script is the source, and runs the boot script over it.
void runAsGame(Runtime& runtime, const std::string& source);

}  // namespace kelmora
