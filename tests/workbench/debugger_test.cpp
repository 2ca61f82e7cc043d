#include "workbench/debugger.h"

#include <gtest/gtest.h>

#include <deque>

#include "script/inspection.h"
#include "script/interpreter.h"
#include "script/vesper_script.h"
#include "support/capture_host.h"

namespace kelmora {
namespace {

constexpr const char* source =
    "function double(n)\n"       // 1
    "    local twice = n * 2\n"  // 2
    "    return twice\n"         // 3
    "end\n"                      // 4
    "total = 0\n"                // 5
    "for i = 1, 3\n"             // 6
    "    total += double(i)\n"   // 7
    "end\n"                      // 8
    "\n"                         // 9
    "print(total)\n";            // 10

class DebuggerTest : public ::testing::Test {
protected:
    // Goes on as told at each stop; where it stopped, as function:line.
    std::string stops(std::deque<Resume> ways, bool entry, const std::vector<Breakpoint>& breakpoints) {
        std::string text;
        Debugger debugger(
            entry,
            [&](Interpreter& script, StopReason) {
                const RunningFrame frame = runningFrames(script).front();
                text += frame.function + ":" + std::to_string(frame.line) + " ";
                const Resume way = ways.empty() ? Resume::Continue : ways.front();
                if (!ways.empty()) ways.pop_front();
                return way;
            },
            [&] { return false; });
        debugger.setBreakpoints("game/Resources/scripts/sum.vs", breakpoints);
        script_.interpreter().watchStatements(&debugger);
        script_.runBytecode(script_.compileToBytecode(source, "./game/Resources/package/../scripts/sum.vs"));
        script_.interpreter().watchStatements(nullptr);
        EXPECT_EQ(host_.output, "12\n");
        return text;
    }

    CaptureHost host_;
    VesperScript script_{host_};
};

TEST_F(DebuggerTest, StepsGoIntoOverAndOutOfCalls) {
    const auto in = Resume::StepIn;
    const auto over = Resume::StepOver;
    const auto out = Resume::StepOut;
    EXPECT_EQ(stops({over, over, over, in, in, out, over, over, Resume::Continue}, true, {}),
              ":1 :5 :6 :7 double:2 double:3 :7 :7 :10 ");
}

TEST_F(DebuggerTest, BreakpointsStopWhereTheirConditionHolds) {
    EXPECT_EQ(stops({}, false, {{3, ""}}), "double:3 double:3 double:3 ");
    host_.output.clear();
    EXPECT_EQ(stops({}, false, {{3, "n == 2"}, {10, "not"}, {7, "nothing[1]"}}), ":7 :7 double:3 :7 ");
    host_.output.clear();
    EXPECT_EQ(stops({Resume::StepOut}, false, {{3, "n == 3"}}), "double:3 :10 ");
}

TEST(StatementLines, AreThoseThatCanBeStoppedAt) {
    EXPECT_EQ(statementLines(source), (std::vector<std::uint32_t>{1, 2, 3, 5, 6, 7, 10}));
}

}  // namespace
}  // namespace kelmora
