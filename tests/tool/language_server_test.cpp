#include "tool/editor/language_server.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <random>
#include <sstream>

#include "base/whole_file.h"
#include "support/all_scripts.h"
#include "support/capture_host.h"
#include "support/temporary_folder.h"
#include "tool/document_texts.h"
#include "tool/editor/file_uri.h"
#include "tool/game_check.h"

namespace kelmora {
namespace {

namespace fs = std::filesystem;

class LanguageServerTest : public testing::Test {
protected:
    LanguageServerTest() {
        registerForCheck(runtime_);
        fs::create_directories(root_ / "Resources/package");
        file("graphics.vs", "@@ Greets.\nfunction greet(who)\n    print(\"hi \" + who)\nend\nlamps = 3\n");
        request("initialize", {{"capabilities", Json::object()}});
    }

    std::string path(const std::string& name) const { return (root_ / "Resources/package" / name).string(); }
    void file(const std::string& name, const std::string& text) const {
        ASSERT_TRUE(writeWholeFile(path(name), text));
    }
    Json document(const std::string& name) const { return {{"uri", uriOfPath(path(name))}}; }

    void send(const Json& message) { server_.handle(message.dump()); }
    void notify(const std::string& method, const Json& params) {
        send({{"jsonrpc", "2.0"}, {"method", method}, {"params", params}});
        server_.idle();
    }
    // The result, or the error's object.
    Json request(const std::string& method, const Json& params) {
        sent_.clear();
        send({{"jsonrpc", "2.0"}, {"id", 7}, {"method", method}, {"params", params}});
        EXPECT_EQ(sent_.size(), 1u) << method;
        if (sent_.empty()) return nullptr;
        EXPECT_EQ(sent_[0].at("id"), 7);
        return sent_[0].contains("result") ? sent_[0].at("result") : sent_[0].at("error");
    }
    // Opens a script; `|` is the place that `at` asks about.
    void open(const std::string& name, std::string marked) {
        const std::size_t cursor = std::min(marked.find('|'), marked.size());
        if (cursor < marked.size()) marked.erase(cursor, 1);
        const TextPosition position = TextPositions(marked).at(cursor);
        at_ = {{"textDocument", document(name)},
               {"position", {{"line", position.line}, {"character", position.column}}}};
        Json opened = document(name);
        opened["text"] = marked;
        opened["version"] = 1;
        sent_.clear();
        notify("textDocument/didOpen", {{"textDocument", opened}});
    }
    // "line:from-to message" of the last faults that were sent.
    std::string faults() const {
        std::string told;
        if (sent_.empty()) return "none sent";
        for (const Json& fault : sent_.back().at("params").at("diagnostics")) {
            const Json& range = fault.at("range");
            told += range.at("start").at("line").dump() + ':' + range.at("start").at("character").dump() +
                    '-' + range.at("end").at("character").dump() + ' ' +
                    fault.at("message").get<std::string>() + '\n';
        }
        return told;
    }
    std::string labels() {
        std::string told;
        const Json found = request("textDocument/completion", at_);
        if (found.is_object())
            for (const Json& item : found.at("items")) told += item.at("label").get<std::string>() + ' ';
        return told;
    }

    TemporaryFolder root_;
    CaptureHost host_;
    Runtime runtime_{host_};
    std::vector<Json> sent_;
    Json at_;
    LanguageServer server_{runtime_, wordBook(), [this](const Json& message) { sent_.push_back(message); }};
};

TEST_F(LanguageServerTest, TellsFaultsAsOneTypes) {
    open("inn.vs", "greet(\"é€🎲\", prnt)\nx = (1\n");
    EXPECT_EQ(faults(),
              "0:14-18 prnt is never set\ndid you mean `print`?\n1:4-5 Expected closing parenthesis\n");
    Json change{
        {"textDocument", document("inn.vs")},
        {"contentChanges",
         {{{"range", {{"start", {{"line", 1}, {"character", 6}}}, {"end", {{"line", 1}, {"character", 9}}}}},
           {"text", ")"}},
          {{"range",
            {{"start", {{"line", 0}, {"character", 14}}}, {"end", {{"line", 0}, {"character", 18}}}}},
           {"text", "1"}}}}};
    change["textDocument"]["version"] = 2;
    notify("textDocument/didChange", change);
    EXPECT_EQ(faults(), "");
    EXPECT_EQ(sent_.back().at("params").at("version"), 2);
    notify("textDocument/didChange",
           {{"textDocument", document("inn.vs")}, {"contentChanges", {{{"text", "end\n"}}}}});
    EXPECT_EQ(faults(), "0:0-3 'end' without a block that it belongs to\n");
    notify("textDocument/didClose", {{"textDocument", document("inn.vs")}});
    EXPECT_EQ(faults(), "");
    open("gate.lua", "x = = 1\n");
    EXPECT_NE(faults().find("0:"), std::string::npos) << faults();
}

TEST_F(LanguageServerTest, SeesTheGamesOtherScripts) {
    open("inn.vs", "greet(lamps)\n");
    EXPECT_EQ(faults(), "");
    file("graphics.vs", "function greet(who)\nend\n");
    const Json files{{{"uri", uriOfPath(path("graphics.vs"))}, {"type", 2}}};
    notify("workspace/didChangeWatchedFiles", {{"changes", files}});
    EXPECT_EQ(faults(), "0:6-11 lamps is never set\n");
    fs::remove(path("graphics.vs"));
    notify("workspace/didChangeWatchedFiles", {{"changes", files}});
    EXPECT_EQ(faults(), "0:0-5 greet is never set\n0:6-11 lamps is never set\n");
}

TEST_F(LanguageServerTest, CompletesWhatIsInSight) {
    open("inn.vs", "function enter(guest)\n    local gold = 1\n    g|\nend\n");
    EXPECT_EQ(labels(), "getTimeMs gsub get gold greet guest ");
    open("inn.vs", "x = Plush[\"killI|");
    EXPECT_EQ(labels(), "killImage ");
    const Json item = request("textDocument/completion", at_).at("items").at(0);
    EXPECT_EQ(item.at("detail"), "Plush[\"killImage\"](image)");
    EXPECT_EQ(item.at("textEdit").at("range").at("start").at("character"), 11);
    const Json resolved = request("completionItem/resolve", item);
    EXPECT_NE(
        resolved.at("documentation").at("value").get<std::string>().find("one that is gone is no error"),
        std::string::npos);
    open("inn.vs", "nest \"cellar\"\nend\njumpTo(\"|\")\n");
    EXPECT_EQ(labels(), "cellar ");
    open("inn.vs", "acts = {}\nacts[\"sing\"] = 1\nprint(acts[\"|\"])\n");
    EXPECT_EQ(labels(), "sing ");
    for (const char* nothing : {"x = \"pri|\"", "@@ pri|", "12|"}) {
        open("inn.vs", nothing);
        EXPECT_EQ(labels(), "") << nothing;
    }
    open("inn.vs", "whi|");
    EXPECT_EQ(labels(), "while ");
}

TEST_F(LanguageServerTest, ExplainsFindsAndRenames) {
    const auto told = [this](const std::string& source) {
        open("inn.vs", source);
        const Json hover = request("textDocument/hover", at_);
        return hover.is_null() ? "" : hover.at("contents").at("value").get<std::string>();
    };
    EXPECT_EQ(told("gre|et(1)"), "```vesper\nfunction greet(who)\n```\nGreets.\n\ngraphics.vs:2");
    EXPECT_EQ(told("local a = 1\nprint(a|)"), "local `a`, set in inn.vs:1");
    EXPECT_NE(told("Plush[\"kill|Image\"](1)").find("one that is gone"), std::string::npos);
    EXPECT_NE(told("wh|ile true\nend").find("as long as"), std::string::npos);
    EXPECT_EQ(told("x = 1 + |2"), "");

    open("inn.vs", "gre|et(\"é\", lamps)\n");
    Json found = request("textDocument/definition", at_);
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].at("uri"), uriOfPath(path("graphics.vs")));
    EXPECT_EQ(found[0].at("range").at("start").at("line"), 1);
    EXPECT_EQ(request("textDocument/references", at_).size(), 2u);
    EXPECT_EQ(request("textDocument/documentHighlight", at_).size(), 1u);
    EXPECT_EQ(request("textDocument/prepareRename", at_).at("end").at("character"), 5);
    Json params = at_;
    params["newName"] = "welcome";
    const Json changes = request("textDocument/rename", params).at("changes");
    EXPECT_EQ(changes.at(uriOfPath(path("inn.vs"))).size(), 1u);
    EXPECT_EQ(changes.at(uriOfPath(path("graphics.vs"))).at(0).at("newText"), "welcome");
    params["newName"] = "lamps";
    EXPECT_EQ(request("textDocument/rename", params).at("message"),
              "`lamps` is used already, in graphics.vs:5");
    open("inn.vs", "pri|nt(1)");
    EXPECT_TRUE(request("textDocument/prepareRename", at_).is_null());
}

TEST_F(LanguageServerTest, OutlinesAndFormats) {
    open("inn.vs", "gold = 1\nfunction f(a)\nfunction acts[\"x\"]()\nend\nnest \"room\"\nend\nend\n");
    const Json outline = request("textDocument/documentSymbol", {{"textDocument", document("inn.vs")}});
    ASSERT_EQ(outline.size(), 2u);
    EXPECT_EQ(outline[0].at("name"), "gold");
    EXPECT_EQ(outline[1].at("name"), "f(a)");
    EXPECT_EQ(outline[1].at("range").at("end").at("line"), 6);
    EXPECT_EQ(outline[1].at("children").size(), 2u);
    EXPECT_EQ(outline[1].at("children")[0].at("name"), "room");
    EXPECT_EQ(outline[1].at("children")[1].at("name"), "acts[\"x\"]()");

    const Json formatting{{"textDocument", document("inn.vs")}, {"options", Json::object()}};
    const Json edits = request("textDocument/formatting", formatting);
    ASSERT_EQ(edits.size(), 4u);
    EXPECT_EQ(edits[0].at("newText"), "    function acts[\"x\"]()");
    EXPECT_EQ(edits[0].at("range").at("end").at("character"), 20);
    open("inn.vs", "x = (1");
    EXPECT_EQ(request("textDocument/formatting", formatting).at("message"),
              "line 1: the bracket is not closed");
}

TEST_F(LanguageServerTest, AnswersNonsenseWithErrors) {
    open("inn.vs", "x = 1\n");
    const Json here{{"textDocument", document("inn.vs")}};
    EXPECT_EQ(request("no/such", {}).at("code"), rpcMethodNotFound);
    EXPECT_EQ(request("initialize", {}).at("code"), rpcInvalidRequest);
    for (const Json& params :
         {Json(nullptr), Json(5), Json::array({1}), Json::object(), Json{{"textDocument", 5}},
          Json{{"textDocument", {{"uri", 5}}}},
          Json{{"textDocument", {{"uri", "http://x"}}}, {"position", nullptr}},
          Json{{"textDocument", {{"uri", "file:///none.vs"}}}, {"position", {{"line", 0}, {"character", 0}}}},
          Json{{"textDocument", document("inn.vs")}, {"position", {{"line", "x"}}}}})
        for (const char* method : {"textDocument/hover", "textDocument/completion", "textDocument/rename",
                                   "textDocument/documentSymbol", "textDocument/formatting"})
            EXPECT_TRUE(request(method, params).contains("code")) << method << params;
    Json far = here;
    far["position"] = {{"line", -5}, {"character", 4000000000000}};
    EXPECT_TRUE(request("textDocument/hover", far).is_null());
    EXPECT_EQ(request("completionItem/resolve", {{"data", 5}}).at("code"), rpcInvalidParams);
    for (const char* text :
         {"", "{", "[]", "5", "{\"id\": 1, \"method\": 5}", "\xFF", "{\"method\": \"exit\"", "null"}) {
        sent_.clear();
        server_.handle(text);
        ASSERT_EQ(sent_.size(), 1u) << text;
        EXPECT_TRUE(sent_[0].contains("error"));
    }
    sent_.clear();
    server_.handle(std::string(200000, '['));
    const std::string deep = std::string(200000, '[') + std::string(200000, ']');
    server_.handle(R"({"id": 1, "method": "textDocument/hover", "params": )" + deep + "}");
    EXPECT_TRUE(sent_.back().contains("error"));
    sent_.pop_back();
    notify("textDocument/didChange", 5);
    notify("textDocument/didOpen", here);
    notify("$/setTrace", {{"value", "off"}});
    send({{"id", 1}, {"result", nullptr}});
    EXPECT_EQ(sent_.size(), 1u);
    EXPECT_FALSE(server_.isOver());
    EXPECT_TRUE(request("shutdown", nullptr).is_null());
    EXPECT_EQ(request("textDocument/hover", here).at("code"), rpcInvalidRequest);
    notify("exit", nullptr);
    EXPECT_TRUE(server_.isOver());
    EXPECT_EQ(server_.exitCode(), 0);
}

// Types ours in pieces, and asks everything everywhere.
TEST_F(LanguageServerTest, LivesThroughBrokenScripts) {
    std::mt19937 random(3);
    const std::vector<ScriptFile> files = allScripts();
    for (int round = 0; round < 60; ++round) {
        std::string source = files[random() % files.size()].source.substr(0, 3000);
        if (!source.empty()) source.erase(random() % source.size(), random() % 30);
        source.resize(source.size() - (source.empty() ? 0 : random() % source.size()));
        open("inn.vs", source.insert(random() % (source.size() + 1), "|"));
        for (const char* method : {"textDocument/completion", "textDocument/hover", "textDocument/definition",
                                   "textDocument/references", "textDocument/prepareRename",
                                   "textDocument/documentSymbol", "textDocument/formatting"})
            request(method, at_);
        Json params = at_;
        params["newName"] = "fresh";
        request("textDocument/rename", params);
    }
}

TEST(JsonRpc, ReadsMessagesAndSurvivesBrokenOnes) {
    std::istringstream in(
        "Content-Length: 2\r\nContent-Type: x\r\n\r\n{}"
        "content-length:3\n\n[1]"
        "Nonsense: 5\r\n\r\n"
        "Content-Length: 99999999999999999999\r\n\r\nContent-Length: 2\r\n\r\n{}"
        "Content-Length: 900000000\r\n\r\n"
        "tailContent-Length: 1\r\n\r\n5" +
        std::string(100000, 'x') + "Content-Length: 1\r\n\r\n6" + "Content-Length: -1\r\n\r\n" +
        "Content-Length: 50\r\n\r\n{}");
    MessageReader reader(in);
    std::string told;
    for (Received received = reader.read(); received.kind != ReceivedKind::End; received = reader.read())
        told += received.kind == ReceivedKind::Message ? received.text + " " : "broken ";
    EXPECT_EQ(told, "{} [1] broken broken {} broken 5 6 broken ");
    std::ostringstream out;
    writeMessage(out, {{"a", "\xFF"}});
    EXPECT_EQ(out.str(), "Content-Length: 11\r\n\r\n{\"a\":\"\xEF\xBF\xBD\"}");
}

TEST(FileUri, GoesThereAndBack) {
    for (const auto& [path, uri] : {std::pair{"/a b/ü.vs", "file:///a%20b/%C3%BC.vs"},
                                    {"/x#1%.vs", "file:///x%231%25.vs"},
                                    {"c:/x.vs", "file:///c:/x.vs"}}) {
        EXPECT_EQ(uriOfPath(path), uri);
        EXPECT_EQ(pathOfUri(uri), path);
    }
    EXPECT_EQ(pathOfUri("file:///c%3A/x.vs"), "c:/x.vs");
    EXPECT_EQ(pathOfUri("http://a"), "");
    EXPECT_EQ(pathOfUri("file:///a%zz%4"), "/a%zz%4");
}

}  // namespace
}  // namespace kelmora
