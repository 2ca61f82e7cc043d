#pragma once

#include <functional>
#include <string>
#include <vector>

// Sources of the guest languages whose expected output stands beside the lines that make it, behind the
// language's own comment mark:
//     print(1 + 1)   -- expect: 2
//     x = 1 / 0      -- error: division by zero
// Output lines are compared with the `expect` comments in the order of the source; `\t` in a comment is a
// tab. An `error` comment says how the run ends, and on which line. A file may hold several programs, each
// behind a line that begins with the comment mark and ` ---`.
namespace kelmora {

struct GuestOutcome {
    std::string output;
    std::string error;
};

// One way to run a source of one language.
struct GuestWay {
    std::string name;
    std::function<GuestOutcome(const std::string& source, const std::string& chunkName)> run;
};

struct GuestLanguage {
    std::string extension;  // ".lua"
    std::string comment;    // "--"
    std::vector<GuestWay> ways;
};

GuestLanguage luaLanguage();
GuestLanguage rwbyLanguage();

// Runs each program of the source in all ways and compares.
void expectGuestRuns(const GuestLanguage& language, const std::string& source, const std::string& chunkName);

}  // namespace kelmora
