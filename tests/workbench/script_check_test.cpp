#include "workbench/script_check.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <sstream>

#include "base/whole_file.h"
#include "bindings/modules.h"
#include "host/boot_image.h"
#include "host/registration.h"
#include "support/capture_host.h"
#include "support/places.h"
#include "support/script_run.h"
#include "tool/game_check.h"
#include "tool/source_files.h"
#include "workbench/nearest.h"

namespace kelmora {
namespace {

namespace fs = std::filesystem;

class ScriptCheckTest : public testing::Test {
protected:
    ScriptCheckTest() { registerFunctions(runtime_); }

    std::vector<Diagnostic> checked(const std::string& source) {
        ScriptCheck check(runtime_.engine);
        check.add("a.vs", source);
        return check.run();
    }
    // "line:column message" of each fault, a line each, with its hint.
    std::string told(const std::string& source) {
        std::ostringstream text;
        for (const Diagnostic& fault : checked(source)) {
            text << fault.line << ':' << fault.column << ' '
                 << (fault.severity == Severity::Warning ? "warning: " : "") << fault.message;
            if (!fault.hint.empty()) text << " (" << fault.hint << ')';
            text << '\n';
        }
        return text.str();
    }
    std::string knownToTheTool() {
        const std::span<const unsigned char> boot = bootText();
        return {boot.begin(), boot.end()};
    }

    CaptureHost host_;
    Runtime runtime_{host_};
};

TEST_F(ScriptCheckTest, GoesOnAfterAFaultOfForm) {
    EXPECT_EQ(told("x = = 3\n"
                   "y = (1 + 2\n"
                   "print(\"é\" 2)\n"
                   "for i = 1 10\n"
                   "end\n"
                   "funtion f()\n"
                   "if x == 3 then\n"
                   "end\n"
                   "while x = 3\n"
                   "end\n"
                   "x = x.y\n"
                   "x = 1 // one\n"
                   "x = ...\n"
                   "function g(a, ...)\n"
                   "    return ..., a\n"
                   "end\n"
                   "x = [1,\n"
                   "    2 3]\n"),
              "1:5 Unknown token: =\n"
              "2:5 Expected closing parenthesis\n"
              "3:12 Expected ',' or ')' after function argument\n"
              "4:11 Expected ',' after for start value\n"
              "6:9 Unexpected trailing token (did you mean `function`?)\n"
              "7:11 Unexpected token after if condition (`then` is not needed here)\n"
              "9:9 Unexpected token after while condition (a comparison is written ==)\n"
              "11:5 Unknown token: x.y (x.y is written x[\"y\"])\n"
              "12:8 Unknown token: / (a comment begins with @@)\n"
              "13:5 Unknown token: ...\n"
              "18:7 Expected ',' or ']' in array literal\n");
}

TEST_F(ScriptCheckTest, NamesTheBlockThatWasLeftOpen) {
    EXPECT_EQ(told("function f(a)\n"
                   "    if a\n"
                   "        while a\n"
                   "            a = not\n"
                   "    end\n"
                   "    repeat\n"
                   "        a = 1\n"
                   "end\n"
                   "for i = 1, 2\n"
                   "    nest \"n\"\n"),
              "3:9 Missing 'end' for while block\n"
              "6:5 Missing 'until' for repeat block\n"
              "9:1 Missing 'end' for for block\n"
              "10:5 Missing 'end' for nest block\n");
    EXPECT_EQ(told("x = 1\nend\nuntil x\nelse\n"),
              "2:1 'end' without a block that it belongs to\n"
              "3:1 'until' without a block that it belongs to\n"
              "4:1 'else' without a block that it belongs to\n");
    EXPECT_EQ(told("break\nwhile true\nif 1\nbreak\nx = 1\nend\nfunction f()\nbreak\nend\nend\n"),
              "1:1 break used outside a loop\n"
              "5:1 warning: never reached: the block was left before\n"
              "8:1 break used outside a loop\n");
    EXPECT_EQ(told("if 1\n        x = 1\n  elseif 2\n x = 2\n    end\n"), "")
        << "odd indentation is no fault";
    EXPECT_EQ(told("x = \"open\n"), "1:1 Unterminated string literal\n");
}

TEST_F(ScriptCheckTest, WarnsOfWordsThatNothingKnows) {
    EXPECT_EQ(told("total = 1\n"
                   "prnt(totl, total)\n"
                   "print({key: total, prnt: 2}, totl)\n"
                   "Plush[\"cretaeImage\"](1)\n"
                   "string[\"mine\"] = 1\n"
                   "print(string[\"mine\"], string[\"lenn\"])\n"
                   "later += 1\n"
                   "pushed = load(\"hidden = 1\")\n"
                   "print(hidden)\n"),
              "2:1 warning: prnt is never set (did you mean `print`?)\n"
              "2:6 warning: totl is never set (did you mean `total`?)\n"
              "4:7 warning: Plush has no member \"cretaeImage\" (did you mean `createImage`?)\n"
              "6:30 warning: string has no member \"lenn\" (did you mean `len`?)\n"
              "7:1 warning: later is never set\n");
    EXPECT_EQ(told("jumpTo(\"gat\")\nnest \"gate\"\nend\njumpTo(\"gate\")\n"),
              "1:8 warning: no nest block has the label \"gat\" (did you mean `gate`?)\n");
    ScriptCheck check(runtime_.engine);
    check.addKnown("fromElsewhere = 1\n");
    check.add("a.vs", "print(fromElsewhere)\n");
    EXPECT_TRUE(check.run().empty());
}

// Whatever is found in them has to be what they are there to show.
TEST_F(ScriptCheckTest, RaisesNoFalseAlarm) {
    runtime_.engine.pushVariable("Metal", makeModule("Metal", {metalBindings()}));
    ScriptCheck check(runtime_.engine);
    check.addHostScript(knownToTheTool());
    const fs::path root = sourceFolder();
    std::map<fs::path, std::shared_ptr<const AssetFiles>> assets;
    for (const char* folder : {"games", "src/host/boot"})
        for (const auto& entry : fs::recursive_directory_iterator(root / folder))
            if (entry.path().extension() == ".vs") {
                const std::string path = entry.path().string();
                check.add(path, readWholeFile(path).value());
                const fs::path game = gameOf(path);
                if (game.empty()) continue;
                if (!assets[game]) assets[game] = assetsOf(game);
                check.setAssets(path, assets[game]);
            }
    for (const Diagnostic& fault : check.run())
        ADD_FAILURE() << fault.path << ':' << fault.line << ' ' << fault.message;
    for (const auto& entry : fs::recursive_directory_iterator(root / "tests/scripts")) {
        if (entry.path().extension() != ".vs") continue;
        const std::string source = readWholeFile(entry.path().string()).value();
        for (const Diagnostic& fault : checked(source))
            EXPECT_TRUE(fault.severity == Severity::Warning || fault.source == "    return r +" ||
                        source.find(fault.message) != std::string::npos)
                << entry.path() << ':' << fault.line << ' ' << fault.message;
    }
}

TEST_F(ScriptCheckTest, HoldsNamesOfFilesToTheGamesOwn) {
    const auto files = std::make_shared<const AssetFiles>(std::vector<std::string>{
        "Resources/package/images/Gate.png", "Resources/package/images/inn-small.png",
        "Libraries/novel/novel.vs", "Resources/package/fonts/words.ttf"});
    ScriptCheck check(runtime_.engine);
    check.addHostScript("append = name");
    check.add(
        "a.vs",
        "image = Plush[\"loadPNG\"](append + \"/images/gate.png\")\n"
        "loadFile(append + \"/images/cellar.png\")\n"
        "fine = [\"Gate.png\", \"images/Gate.png\", \"../Libraries/novel/novel.vs\", name + \"-small.png\"]\n"
        "fine = [\"words.ttf\", image + \".png\", \"half.png\" + image, \"*.png\", \"about a.png\", "
        "\"e.g.\"]\n"
        "shot = append + \"/shot.png\"\n"
        "Plush[\"saveImage\"](shot, image)\n"
        "file = io[\"open\"](\"maybe.ogg\")\n"
        "list = [\"ate.png\", \"night.json\", image + \"-large.png\"]\n");
    check.setAssets("a.vs", files);
    std::string told;
    for (const Diagnostic& fault : check.run())
        told += std::to_string(fault.line) + ':' + std::to_string(fault.column) + ' ' + fault.message + '\n';
    EXPECT_EQ(told,
              "1:35 the file differs in letter case: images/Gate.png\n"
              "2:19 the game has no file images/cellar.png\n"
              "8:9 the game has no file ate.png\n"
              "8:42 the game has no file -large.png\n");
}

TEST_F(ScriptCheckTest, KnowsTheTypesOfTheRenderQueue) {
    EXPECT_EQ(told("table[\"insert\"](renderQueue, {type = VESPER_IMAGE, text = \"a\"})\n"
                   "entry = {layer = 2, type = VESPER_MENU_SAVE}\n"
                   "entry = {kind = {type = 4}, layer = 2, \"type\": \"image\"}\n"
                   "push(renderQueue, {type = 4711})\n"
                   "entry = {type = VESPER_MENU_SAVE}\n"
                   "entry = {layer = 1, type = VESPER_TEXT or entry}\n"
                   "entry = {layer = 1, type = entry}\n"
                   "entry = {layer = 1, type ="),
              "1:17 warning: renderQueue is never set\n"
              "2:28 warning: VESPER_MENU_SAVE is no type of the render queue\n"
              "3:48 warning: \"image\" is no type of the render queue\n"
              "4:27 warning: 4711 is no type of the render queue\n"
              "8:9 Unexpected end of expression\n");
}

TEST(Nearest, FindsWhatWasMeant) {
    const std::vector<std::string> words{"print", "pairs", "function", "x", "ipairs"};
    for (const auto& [typed, meant] : {std::pair{"prnt", "print"},
                                       {"pirnt", "print"},
                                       {"funtcion", "function"},
                                       {"pairz", "pairs"},
                                       {"y", ""},
                                       {"sprint", "print"},
                                       {"whatever", ""}})
        EXPECT_EQ(nearestWord(typed, words), meant) << typed;
}

TEST(Diagnostics, ArePrintedForPeopleAndForPrograms) {
    const std::vector<Diagnostic> faults{
        {"a b.vs", 3, 2, 2, Severity::Error, "say \"no\"", "a\thint", "\txy"}};
    std::ostringstream text;
    printDiagnostics(faults, text);
    EXPECT_EQ(text.str(), "a b.vs:3:2: error: say \"no\"\n    \txy\n    \t^~\n    hint: a\thint\n");
    std::ostringstream json;
    printDiagnosticsAsJson(faults, json);
    EXPECT_EQ(json.str(),
              "[\n{\"path\": \"a b.vs\", \"line\": 3, \"column\": 2, \"length\": 2, \"severity\": \"error\", "
              "\"message\": \"say \\\"no\\\"\", \"hint\": \"a\\u0009hint\"}\n]\n");
    std::ostringstream none;
    printDiagnosticsAsJson({}, none);
    EXPECT_EQ(none.str(), "[]\n");
}

}  // namespace
}  // namespace kelmora
