#include <gtest/gtest.h>

#include <filesystem>

#include "base/whole_file.h"
#include "host/boot_image.h"
#include "support/places.h"
#include "support/shell.h"
#include "support/temporary_folder.h"

// The two executables as a person starts them: output, error text and exit code.
namespace kelmora {
namespace {

namespace fs = std::filesystem;

const std::string extension = platform_is_windows() ? ".exe" : "";
const std::string kelmoraName = platform_is_windows() ? "Kelmora.exe" : "kelmora";

class Executables : public testing::Test {
protected:
    Executables() {
        for (const char* folder : {"bin", "Resources/scripts", "Resources/package"})
            fs::create_directories(root_ / folder);
    }

    std::string file(const std::string& name, const std::string& content) const {
        const std::string path = (root_ / name).string();
        EXPECT_TRUE(writeWholeFile(path, content));
        return quoted(path);
    }
    static ShellOutcome vesper(const std::string& arguments) {
        return runProgram(binFolder() + "/vesper" + extension, arguments);
    }
    ShellOutcome kelmora() const {
        const fs::path copy = root_ / "bin" / kelmoraName;
        fs::copy_file(fs::path(binFolder()) / kelmoraName, copy, fs::copy_options::overwrite_existing);
        return runProgram(copy.string());
    }

    TemporaryFolder root_;
};

TEST_F(Executables, VesperRunsCompilesDumpsAndChecks) {
    const std::string script =
        file("a b.vs", "print(\"ran\", arguments[1])\nif arguments[2]\n    x = 1 \\ 0\nend\n");
    const std::string image = file("out.vsbc", "");
    ShellOutcome outcome = vesper("run " + script + " one");
    EXPECT_EQ(outcome.text, "ran\tone\n");
    EXPECT_EQ(outcome.exitCode, 0);
    outcome = vesper("run " + script + " one two");
    EXPECT_EQ(outcome.text.find("ran\tone\nDivision by zero\n  at "), 0u) << outcome.text;
    EXPECT_TRUE(outcome.text.ends_with("a b.vs:3\n    x = 1 \\ 0\n"));
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(vesper("compile " + script + " -o " + image).exitCode, 0);
    EXPECT_EQ(vesper("run " + image + " one").text, "ran\tone\n");
    const std::string dump = vesper("dump " + image).text;
    for (const char* part : {"version 60", "source path \"a b.vs\"", "4 lines", "1 if groups",
                             "chunk 1 nested", "print(\"ran\", arguments[1])"})
        EXPECT_NE(dump.find(part), std::string::npos) << part << "\n" << dump;
    EXPECT_EQ(vesper("check " + script).exitCode, 0);
    outcome = vesper("check " + script + " " + file("bad.vs", "if x\n"));
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_NE(outcome.text.find("Missing 'end' for if block"), std::string::npos);
}

TEST_F(Executables, FailuresLeadToTheirPlace) {
    const std::string script =
        file("fail.vs",
             "t = {}\nfunction inner(x)\n    prnt(x)\nend\nfunction outer(x)\n"
             "    pcall(inner, 1)\n    if x > 1\n        return inner(x)\n    end\n"
             "    return t[\"go\"](x)\nend\nfunction deep()\n    return deep() + 1\nend\n"
             "if arguments[1] == \"deep\"\n    deep()\nend\nouter(toNumber(arguments[1]))\n");
    const auto placesOf = [&](const std::string& argument) {
        std::string text = vesper("run " + script + " " + argument).text;
        for (std::size_t at = 0; (at = text.find("at ", at)) != std::string::npos; at += 3)
            text.erase(at + 3, text.find("fail.vs", at) - at - 3);
        return text;
    };
    EXPECT_EQ(placesOf("2"),
              "Attempted to call a non-function value of type not\n  at fail.vs:3 in function inner\n    "
              "prnt(x)\n    ^~~~\n"
              "  `prnt` is nothing here; did you mean `print`?\n  called at fail.vs:8 in function outer\n    "
              "return inner(x)\n"
              "  called at fail.vs:18\n    outer(toNumber(arguments[1]))\n");
    EXPECT_NE(placesOf("1").find("  `t[\"go\"]` is nothing here\n"), std::string::npos);
    const std::string deep = placesOf("deep");
    EXPECT_NE(deep.find("fail.vs:13 in function deep\n    return deep() + 1\n    ("), std::string::npos);
    EXPECT_LT(deep.size(), 300u);
}

TEST_F(Executables, VesperChecksGamesAndExplainsItself) {
    file("Resources/scripts/a.vs", "gold = 1\nshow(gold)\n");
    file("Resources/scripts/b.vs", "function show(x)\n    prnt(x)\nend\n");
    file("Resources/scripts/mind.lua", "local x = 1\nprint(x\n");
    ShellOutcome outcome = vesper("check " + quoted((root_ / "Resources/scripts/a.vs").string()));
    EXPECT_EQ(outcome.text, "");
    EXPECT_EQ(outcome.exitCode, 0);
    outcome = vesper("check " + quoted(root_.path().string()));
    EXPECT_EQ(outcome.exitCode, 1);
    for (const char* part :
         {"b.vs:2:5: warning: prnt is never set\n        prnt(x)\n        ^~~~\n    hint: did you mean",
          "mind.lua:3:1: error: expected ')' after arguments"})
        EXPECT_NE(outcome.text.find(part), std::string::npos) << part << "\n" << outcome.text;
    outcome = vesper("check --json " + quoted((root_ / "Resources/scripts/b.vs").string()));
    EXPECT_EQ(outcome.exitCode, 0) << "warnings alone are no failure";
    EXPECT_NE(outcome.text.find("\"line\": 2, \"column\": 5, \"length\": 4, \"severity\": \"warning\""),
              std::string::npos);
    EXPECT_EQ(vesper("chekc").text,
              "vesper: unknown command chekc; did you mean check? (vesper help shows what there is)\n");
    EXPECT_EQ(vesper("help check").exitCode, 0);
    EXPECT_EQ(vesper("help nothing").exitCode, 2);
    EXPECT_TRUE(vesper("help Plush.killImage").text.starts_with("Plush[\"killImage\"](image)\n"));
    EXPECT_EQ(
        vesper("help killImge").text,
        "vesper: nothing is known of killImge; did you mean killImage? (vesper help shows what there is)\n");
    EXPECT_NE(vesper("--help").text.find("vesper compile FILE -o IMAGE"), std::string::npos);
    EXPECT_TRUE(vesper("--version").text.starts_with("vesper 1."));
}

TEST_F(Executables, VesperFormatsFilesInPlace) {
    const std::string script = file("loose.vs", "if  x\ny=1\nend\n");
    file("broken.vs", "x =  (1\n");
    file("fine.vs", "x = 1\n");
    const std::string folder = quoted(root_.path().string());
    EXPECT_EQ(vesper("format --check " + script).exitCode, 1);
    const ShellOutcome outcome = vesper("format " + folder);
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_NE(outcome.text.find("broken.vs:1: left as it is: the bracket is not closed\n"),
              std::string::npos);
    EXPECT_NE(outcome.text.find("loose.vs: formatted\n"), std::string::npos);
    EXPECT_EQ(outcome.text.find("fine.vs"), std::string::npos);
    EXPECT_EQ(readWholeFile((root_ / "loose.vs").string()), "if x\n    y = 1\nend\n");
    EXPECT_EQ(vesper("format --check " + script).exitCode, 0);
    EXPECT_EQ(vesper("format " + file("a.lua", "")).exitCode, 2);
}

// Every target's compiler writes the image that the build's own wrote.
TEST_F(Executables, VesperCompilesTheBootScriptToTheBytesInside) {
    const std::string image = (root_ / "boot.vsbc").string();
    const std::string source = binFolder() + "/../boot/lua.vs";
    ASSERT_EQ(vesper("compile " + quoted(source) + " -o " + quoted(image)).exitCode, 0);
    const std::span<const unsigned char> embedded = bootImage();
    EXPECT_EQ(readWholeFileBytes(image), std::vector<unsigned char>(embedded.begin(), embedded.end()));
}

TEST_F(Executables, VesperRefusesWhatItDoesNotKnow) {
    for (const char* arguments :
         {"", "fly", "run", "run --fast x.vs", "compile x.vs", "compile x.vs -q y", "dump", "check"})
        EXPECT_EQ(vesper(arguments).exitCode, 2) << arguments;
    EXPECT_EQ(vesper("run no/such.vs").text, "Failed to open script file: no/such.vs\n");
    const ShellOutcome damaged = vesper("dump " + file("damaged.vsbc", "VSBC<"));
    EXPECT_EQ(damaged.exitCode, 1);
    EXPECT_NE(damaged.text.find("Invalid bytecode file (truncated): "), std::string::npos);
}

TEST_F(Executables, KelmoraPlaysTheTreeBesideIt) {
    file("Resources/package/graphics.vs", "print(\"graphics\")");
    file("Resources/scripts/visual-novel.vs", "print(\"game\", Vesper[\"getPath\"]() != \"./\")");
    const ShellOutcome outcome = kelmora();
    EXPECT_EQ(outcome.text, "graphics\ngame\ttrue\n");
    EXPECT_EQ(outcome.exitCode, 0);
}

TEST_F(Executables, KelmoraReportsAFailureInItsWords) {
    ShellOutcome outcome = kelmora();
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.text.find("Kelmora startup error: Failed to open script file: "), 0u) << outcome.text;
    file("Resources/package/graphics.vs", "");
    outcome = kelmora();
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_NE(outcome.text.find("visual-novel.vs"), std::string::npos);
    file("Resources/scripts/visual-novel.vs", "Plush[\"loadPNG\"](\"none.png\")");
    const std::string text = kelmora().text;
    EXPECT_EQ(text.find("Kelmora startup error: Plush.loadPNG: failed to load image: none.png\n  at "), 0u);
    EXPECT_TRUE(text.ends_with("visual-novel.vs:1\n    Plush[\"loadPNG\"](\"none.png\")\n")) << text;
}

}  // namespace
}  // namespace kelmora
