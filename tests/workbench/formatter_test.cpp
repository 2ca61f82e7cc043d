#include "workbench/formatter.h"

#include <gtest/gtest.h>

#include <random>

#include "script/vesper_script.h"
#include "support/all_scripts.h"
#include "support/capture_host.h"
#include "workbench/source_tokens.h"
#include "workbench/token_spacing.h"

namespace kelmora {
namespace {

bool isOurs(const ScriptFile& file) {
    return file.path.find(sourceFolder() + "/tests/") == std::string::npos;
}

// The image of a source, less the blanks of its statements' texts. A blank in front of each line keeps empty
// records away, which stand for empty lines and for nothing that runs.
std::vector<unsigned char> imageOf(VesperScript& engine, const std::string& source) {
    std::string shifted = " ";
    for (const char c : source) shifted += c == '\n' ? std::string("\n ") : std::string(1, c);
    BytecodeProgram program = engine.compileToBytecode(shifted, "a.vs");
    std::vector<ParsedScriptLine> lines = program.lines.linked();
    for (ParsedScriptLine& line : lines) {
        line.text.clear();
        for (const std::string& token : line.tokens) line.text += token + ' ';
    }
    program.lines = std::move(lines);
    return VesperScript::serialiseBytecode(program);
}

// Other blanks between the tokens and in front of them.
std::string shaken(const std::string& source, std::mt19937& random) {
    std::string made;
    const SourceToken* previous = nullptr;
    std::size_t at = 0;
    const std::vector<SourceToken> tokens = scanSource(source);
    for (const SourceToken& token : tokens) {
        const std::string gap = source.substr(at, token.begin - at);
        const std::size_t feed = gap.rfind('\n');
        const bool touches =
            !previous || feed != std::string::npos || canTouch(source, *previous, token) || gap.empty();
        made += gap.substr(0, feed == std::string::npos ? 0 : feed + 1);
        made.append(random() % 4 + (touches ? 0 : 1), random() % 8 == 0 ? '\t' : ' ');
        made += textOf(source, token);
        at = token.end;
        previous = &token;
    }
    return made + source.substr(at);
}

std::string withoutBlanks(std::string_view text) {
    std::string kept;
    for (const char c : text)
        if (c != ' ' && c != '\t') kept += c;
    return kept;
}

TEST(Formatter, SetsIndentationAndBlanks) {
    const std::string source =
        "function  f( a,b )\n"
        "@@ why\n"
        "if a>b and-a<- #b ; return a [ 1 ]; end\n"
        "\tt={x=1 ,y : -2,   \n"
        "'z', [\n"
        "1,\n"
        "]}    @@  kept   as it is\n"
        "local   s =\"two   blanks\r\n"
        "      and  more\" +  1\n"
        "  \n"
        "        @@ of the branch\n"
        "elseif_ =not-1\n"
        "print (not(x), name #2, name#2,$ff , a  !=  b)  @@x\n"
        "end";
    const std::string wanted =
        "function f(a, b)\n"
        "    @@ why\n"
        "    if a > b and -a <- #b; return a[1]; end\n"
        "    t = {x = 1, y: -2,\n"
        "        'z', [\n"
        "            1,\n"
        "    ]}    @@  kept   as it is\n"
        "    local s = \"two   blanks\r\n"
        "      and  more\" +  1\n"
        "\n"
        "    @@ of the branch\n"
        "    elseif_ = not - 1\n"
        "    print(not (x), name #2, name#2, $ff, a != b)  @@x\n"
        "end";
    const FormattedSource made = formatSource(source);
    ASSERT_FALSE(made.fault) << made.fault->message;
    EXPECT_EQ(made.text, wanted);
}

TEST(Formatter, LeavesAloneWhatIsNotWhole) {
    for (const auto& [source, line, message] :
         {std::tuple{"x =  1\ny = \"a\n  b\n", 1u, "the string has no end"},
          {"x =  (1\ny = 2\n", 0u, "the bracket is not closed"},
          {"if  x\nwhile y\nend\n", 0u, "the block has no end"},
          {"x =  1\nelse\n", 1u, "'else' without a block that it belongs to"}}) {
        const FormattedSource made = formatSource(source);
        ASSERT_TRUE(made.fault) << source;
        EXPECT_EQ(made.text, source);
        EXPECT_EQ(made.fault->line, line);
        EXPECT_EQ(made.fault->message, message);
    }
}

TEST(Formatter, FindsNothingToDoInOurScripts) {
    for (const ScriptFile& file : allScripts()) {
        const FormattedSource made = formatSource(file.source);
        if (isOurs(file)) {
            EXPECT_EQ(made.text, file.source) << file.path;
        }
        EXPECT_EQ(formatSource(made.text).text, made.text) << file.path;
    }
}

TEST(Formatter, KeepsThePrograms) {
    CaptureHost host;
    VesperScript engine(host);
    std::mt19937 random(7);
    std::size_t compared = 0;
    for (const ScriptFile& file : allScripts()) {
        const std::string source = shaken(file.source, random);
        const FormattedSource made = formatSource(source);
        if (made.fault) continue;
        EXPECT_EQ(formatSource(made.text).text, made.text) << file.path;
        try {
            const std::vector<unsigned char> image = imageOf(engine, file.source);
            EXPECT_TRUE(imageOf(engine, made.text) == image) << file.path;
            ++compared;
        } catch (const std::exception&) {
            EXPECT_FALSE(isOurs(file)) << file.path;
        }
    }
    EXPECT_GT(compared, 190u);
}

TEST(Formatter, LosesNoByteOfDamagedScripts) {
    std::mt19937 random(11);
    const std::vector<ScriptFile> files = allScripts();
    const std::string bytes = "\"'@;()[]{}#\\-<=> \t\n\r\v~x1";
    for (int round = 0; round < 600; ++round) {
        std::string source = files[random() % files.size()].source.substr(0, 2000);
        for (std::size_t i = random() % 8; i > 0 && !source.empty(); --i) {
            const std::size_t at = random() % source.size();
            if (random() % 2 == 0) source.erase(at, random() % 20);
            source.insert(std::min(at, source.size()), 1, bytes[random() % bytes.size()]);
        }
        const FormattedSource made = formatSource(source);
        EXPECT_TRUE(!made.fault || made.text == source);
        ASSERT_EQ(withoutBlanks(made.text), withoutBlanks(source)) << source;
        ASSERT_EQ(formatSource(made.text).text, made.text) << source;
    }
}

}  // namespace
}  // namespace kelmora
