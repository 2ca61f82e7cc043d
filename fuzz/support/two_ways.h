#pragma once

#include <cstdint>
#include <cstdlib>
#include <exception>
#include <string>

#include "script/vesper_script.h"
#include "support/capture_host.h"

namespace kelmora::fuzz {

// Leaves a script a few hundred rounds and calls, with files and the clock out of reach.
inline void confine(VesperScript& script) {
    for (const char* name : {"io", "os", "loadFile", "runFile", "exportState", "importState", "getTimeMs"})
        script.pushVariable(name, Variable());
    script.setStepLimit(300);
}

// What a confined source prints.
struct Outcome {
    std::string output;
    bool ranOut = false;
};

inline Outcome runSource(const std::string& source, bool fastExpressions) {
    CaptureHost host;
    VesperScript script(host);
    confine(script);
    script.setFastExpressions(fastExpressions);
    try {
        script.runScript(source);
    } catch (const std::exception& error) {
        host.output += std::string("failed: ") + error.what();
    }
    return {std::move(host.output), script.stepLimitReached()};
}

// Aborts when compiled and walked expressions print different things.
inline void requireAgreement(const std::string& source) {
    const Outcome compiled = runSource(source, true);
    const Outcome walked = runSource(source, false);
    if (compiled.ranOut || walked.ranOut || compiled.output == walked.output) return;
    std::fprintf(stderr, "compiled:\n%s\nwalked:\n%s\n", compiled.output.c_str(), walked.output.c_str());
    std::abort();
}

}  // namespace kelmora::fuzz
