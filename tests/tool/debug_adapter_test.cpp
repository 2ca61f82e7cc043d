#include "tool/editor/debug_adapter.h"

#include <gtest/gtest.h>

#include <deque>
#include <nlohmann/json.hpp>

#include "base/whole_file.h"
#include "support/places.h"
#include "support/temporary_folder.h"

namespace kelmora {
namespace {

// Hands out one message whenever the adapter waits for one.
class ScriptedInbox : public DebugInbox {
public:
    bool hasMessage() override { return false; }
    std::optional<std::string> wait() override {
        if (messages.empty()) return std::nullopt;
        std::string message = messages.front();
        messages.pop_front();
        return message;
    }

    std::deque<std::string> messages;
};

constexpr const char* source =
    "function area(width, height)\n"        // 1
    "    local product = width * height\n"  // 2
    "    return product\n"                  // 3
    "end\n"                                 // 4
    "sizes = [2, 3]\n"                      // 5
    "total = area(sizes[1], sizes[2])\n"    // 6
    "\n"                                    // 7
    "print(total)\n"                        // 8
    "error(\"enough\")\n";                  // 9

class DebugAdapterTest : public ::testing::Test {
protected:
    void SetUp() override {
        path_ = (folder_ / "area.vs").string();
        ASSERT_TRUE(writeWholeFile(path_, source));
    }
    void ask(const std::string& command, Json arguments = Json::object()) {
        inbox_.messages.push_back(Json{
            {"seq", ++asked_}, {"type", "request"}, {"command", command}, {"arguments", std::move(arguments)}}
                                      .dump());
    }
    void begin(Json launch, const Json& breakpoints) {
        launch["program"] = path_;
        ask("initialize");
        ask("setBreakpoints", {{"source", {{"path", path_}}}, {"breakpoints", breakpoints}});
        ask("launch", std::move(launch));
        ask("configurationDone");
    }
    void serve() {
        DebugAdapter(inbox_, [this](const Json& message) { sent_.push_back(message); }).serve();
    }
    // The answer to the n-th request, from 1.
    Json answer(int request) const {
        for (const Json& each : sent_)
            if (each["type"] == "response" && each["request_seq"] == request) return each;
        return {};
    }
    Json body(int request) const { return answer(request).value("body", Json()); }
    std::vector<Json> events(const std::string& name) const {
        std::vector<Json> found;
        for (const Json& each : sent_)
            if (each["type"] == "event" && each["event"] == name) found.push_back(each["body"]);
        return found;
    }

    TemporaryFolder folder_;
    std::string path_;
    ScriptedInbox inbox_;
    int asked_ = 0;
    std::vector<Json> sent_;
};

TEST_F(DebugAdapterTest, StandsAtBreakpointsAndShowsCallsAndVariables) {
    begin({}, {{{"line", 3}}, {{"line", 7}}, {{"line", 20}}});
    ask("stackTrace");                                                                      // 5
    ask("scopes", {{"frameId", 1}});                                                        // 6
    ask("variables", {{"variablesReference", 1}});                                          // 7
    ask("evaluate", {{"expression", "product + height"}, {"frameId", 1}});                  // 8
    ask("evaluate", {{"expression", "nothing()"}});                                         // 9
    ask("setVariable", {{"variablesReference", 1}, {"name", "product"}, {"value", "70"}});  // 10
    ask("next");                                                                            // 11
    ask("evaluate", {{"expression", "sizes"}});                                             // 12
    ask("continue");                                                                        // 13
    ask("continue");
    serve();
    EXPECT_EQ(body(2)["breakpoints"], Json::parse(R"([{"verified":true,"line":3},{"verified":true,"line":8},
                              {"verified":false,"line":20,"message":"no statement from here on"}])"));
    const Json frames = body(5)["stackFrames"];
    ASSERT_EQ(frames.size(), 2u);
    EXPECT_EQ(frames[0]["name"], "area");
    EXPECT_EQ(frames[0]["line"], 3);
    EXPECT_EQ(frames[1]["line"], 6);
    EXPECT_EQ(frames[1]["source"]["name"], "area.vs");
    EXPECT_EQ(body(6)["scopes"][0]["name"], "Locals");
    EXPECT_EQ(body(6)["scopes"][1]["name"], "Parameters");
    EXPECT_EQ(body(7)["variables"][0]["name"], "product");
    EXPECT_EQ(body(7)["variables"][0]["value"], "6");
    EXPECT_EQ(body(8)["result"], "9");
    EXPECT_FALSE(answer(9)["success"].get<bool>());
    EXPECT_EQ(body(10)["value"], "70");
    EXPECT_EQ(body(12)["result"], "array of 2");
    std::string reasons;
    for (const Json& stop : events("stopped")) reasons += stop["reason"].get<std::string>() + " ";
    EXPECT_EQ(reasons, "breakpoint breakpoint ");
    std::string output;
    for (const Json& each : events("output")) output += each["output"].get<std::string>();
    EXPECT_TRUE(output.starts_with("70\nenough\n  at ")) << output;
    EXPECT_EQ(events("exited").at(0)["exitCode"], 1);
    EXPECT_EQ(events("terminated").size(), 1u);
}

TEST_F(DebugAdapterTest, WhatMakesNoSenseFailsAndEndsNothing) {
    for (const char* message : {"", "nonsense", "[1, 2]", "{\"type\":3}", "{\"type\":\"request\"}",
                                "{\"type\":\"request\",\"seq\":\"x\",\"command\":7}"})
        inbox_.messages.emplace_back(message);
    ask("launch");
    ask("launch", {{"program", 3}});
    ask("launch", {{"program", "nowhere/at/all.vs"}});
    ask("variables", {{"variablesReference", "many"}});
    ask("evaluate", {{"expression", "1"}});
    ask("next");
    ask("dance");
    ask("setBreakpoints", {{"source", {{"path", "none.vs"}}}, {"breakpoints", {{{"line", "x"}}}}});
    ask("stackTrace", Json::array());
    serve();
    int failed = 0;
    for (const Json& each : sent_) failed += each["type"] == "response" && !each["success"].get<bool>();
    EXPECT_EQ(failed, 11);
    EXPECT_TRUE(events("stopped").empty());
}

TEST_F(DebugAdapterTest, LeavesInTheMiddleOfAScript) {
    begin({{"stopOnEntry", true}}, Json::array());
    ask("stepIn");
    ask("disconnect");
    ask("continue");
    serve();
    EXPECT_EQ(events("stopped").size(), 2u);
    EXPECT_TRUE(answer(6)["success"].get<bool>());
    EXPECT_TRUE(events("output").empty());
    EXPECT_EQ(inbox_.messages.size(), 1u) << "nothing is read behind the end";
}

TEST_F(DebugAdapterTest, StandsInsideAGameAndLeavesTheBootScriptOut) {
    path_ = (folder_ / "game").string();
    std::filesystem::create_directories(folder_ / "game/Resources/scripts");
    std::filesystem::create_directories(folder_ / "game/Resources/package");
    const std::string script = (folder_ / "game/Resources/scripts/visual-novel.vs").string();
    ASSERT_TRUE(writeWholeFile(script, "words = \"hello\"\nprint(words)\n"));
    ASSERT_TRUE(writeWholeFile((folder_ / "game/Resources/package/graphics.vs").string(), "width = 3\n"));
    ask("initialize");
    ask("setBreakpoints", {{"source", {{"path", script}}}, {"breakpoints", {{{"line", 2}}}}});
    ask("launch", {{"program", path_}, {"headless", true}, {"stopOnEntry", true}});
    ask("configurationDone");
    ask("stackTrace");  // 5
    ask("continue");
    ask("stackTrace");  // 7
    ask("continue");
    serve();
    EXPECT_EQ(body(5)["stackFrames"][0]["source"]["name"], "graphics.vs");
    const Json frame = body(7)["stackFrames"][0];
    EXPECT_EQ(frame["line"], 2);
    EXPECT_TRUE(std::filesystem::equivalent(frame["source"]["path"].get<std::string>(), script)) << frame;
    ASSERT_FALSE(events("exited").empty());
    EXPECT_EQ(events("exited").at(0)["exitCode"], 0);
}

}  // namespace
}  // namespace kelmora
