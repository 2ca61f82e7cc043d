#include "script/inspection.h"

#include <gtest/gtest.h>

#include <functional>

#include "script/interpreter.h"
#include "script/statement_watcher.h"
#include "script/vesper_script.h"
#include "support/capture_host.h"

namespace kelmora {
namespace {

class Looker : public StatementWatcher {
public:
    explicit Looker(std::function<void(Interpreter&)> look) : look_(std::move(look)) {}
    void beforeStatement(Interpreter& script) override { look_(script); }

private:
    std::function<void(Interpreter&)> look_;
};

class Inspection : public ::testing::Test {
protected:
    // One line for each statement: the lines of the frames, innermost first, and what the innermost holds.
    std::string shown(const std::string& source, bool compiled = true) {
        std::string text;
        Looker looker([&](Interpreter& inside) {
            for (const RunningFrame& frame : runningFrames(inside))
                text += frame.function + ":" + std::to_string(frame.line) + " ";
            const RunningFrame frame = runningFrames(inside).front();
            for (const NamedValues* values : {&frame.parameters, &frame.locals})
                for (const auto& [name, value] : *values) text += name + "=" + value.toString() + " ";
            text += "\n";
        });
        script_.interpreter().watchStatements(&looker);
        if (compiled) {
            script_.runBytecode(script_.compileToBytecode(source));
        } else {
            script_.executeBlock(source);
        }
        script_.interpreter().watchStatements(nullptr);
        return text;
    }

    CaptureHost host_;
    VesperScript script_{host_};
};

constexpr const char* source =
    "function half(n)\n"
    "    local rest = n % 2\n"
    "    if rest == 1\n"
    "        return (n - 1) / 2\n"
    "    end\n"
    "    return n / 2\n"
    "end\n"
    "x = half(7)\n"
    "for i = 1, 2\n"
    "    x += i\n"
    "end\n";

TEST_F(Inspection, EveryStatementIsShownWithItsCallsAndVariables) {
    const std::string expected =
        ":1 \n"
        ":8 \n"
        "half:2 :8 n=7 \n"
        "half:3 :8 n=7 rest=1 \n"
        "half:4 :8 n=7 rest=1 \n"
        ":9 \n"
        ":10 i=1 \n"
        ":10 i=2 \n";
    EXPECT_EQ(shown(source), expected);
}

TEST_F(Inspection, TheDirectExecutorAndCoroutinesAreShownToo) {
    EXPECT_NE(shown(source, false).find("half:3 :8 n=7 rest=1"), std::string::npos);
    const std::string decay =
        "decay function slow(a)\n"
        "    local b = a + 1\n"
        "    c = b\n"
        "end\n"
        "slow(4)\n"
        "y = 1\n"
        "y = 2\n"
        "y = 3\n";
    const std::string text = shown(decay);
    EXPECT_NE(text.find("slow:2 a=4"), std::string::npos) << text;
    EXPECT_NE(text.find("slow:3 b=5 a=4"), std::string::npos) << text;
}

TEST_F(Inspection, AWatcherMayEvaluateAndEndTheScript) {
    int statements = 0;
    Looker looker([&](Interpreter& inside) {
        if (++statements == 2) inside.face.executeBlock("x = x + 40");
        if (statements == 4) throw std::runtime_error("stopped by hand");
    });
    script_.interpreter().watchStatements(&looker);
    EXPECT_THROW(script_.runBytecode(script_.compileToBytecode("x = 1\nprint(x)\ny = x + 1\nz = 1\n")),
                 std::runtime_error);
    EXPECT_EQ(host_.output, "41\n");
    EXPECT_EQ(script_.pullVariable("y").intValue(), 42);
    // Without it everything runs on as before.
    script_.interpreter().watchStatements(nullptr);
    script_.runBytecode(script_.compileToBytecode("print(y)\n"));
    EXPECT_EQ(host_.output, "41\n42\n");
    EXPECT_EQ(statements, 4);
}

}  // namespace
}  // namespace kelmora
