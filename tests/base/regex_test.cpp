#include "base/regex/regex.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kelmora::regex {
namespace {

std::string shown(const Captures& captures) {
    std::string text;
    for (const Capture& part : captures)
        text +=
            part.tookPart ? "(" + std::to_string(part.begin) + "," + std::to_string(part.end) + ")" : "(-)";
    return text.empty() ? "none" : text;
}

std::string found(std::string_view pattern, std::string_view subject, std::size_t from = 0,
                  MatchFlags flags = MatchFlags::none) {
    Captures captures;
    Pattern::compile(pattern).search(subject, from, captures, flags);
    return shown(captures);
}

std::string allFound(std::string_view pattern, std::string_view subject) {
    Scratch scratch;
    MatchIterator matches(Pattern::compile(pattern), subject, scratch);
    std::string text;
    while (matches.next()) text += shown(matches.captures());
    return text;
}

std::string repeated(std::string_view text, std::size_t count) {
    std::string result;
    for (std::size_t i = 0; i < count; ++i) result += text;
    return result;
}

TEST(Regex, FindsTheLeftmostMatch) {
    const struct {
        const char* pattern;
        const char* subject;
        const char* expected;
    } cases[] = {
        {"(\\w+)=(\\w+)", "  key=value", "(2,11)(2,5)(6,11)"},
        {"a|ab", "xab", "(1,2)"},
        {"a{2,3}?", "aaaa", "(0,2)"},
        {"<(.+?)>", "<a><b>", "(0,3)(1,2)"},
        {"(a)(b)?", "ac", "(0,1)(0,1)(-)"},
        {"x*", "", "(0,0)"},
        {"\\bfox\\b", "foxes fox", "(6,9)"},
        {"^b", "a\nb", "none"},
        {"a$", "a\nb", "none"},
        {"a.b", "a\nba\rbaxb", "(6,9)"},
        {"(?!a)\\w(?=c)", "acbc", "(2,3)"},
        {"(a+)\\1", "aaaaa", "(0,4)(0,2)"},
        {"[]", "anything", "none"},
        {"[^]", "\n", "(0,1)"},
        {"[a-]+", "b-a-", "(1,4)"},
        {"\\cA\\u0141\\x41", "AAA", "(0,3)"},
    };
    for (const auto& row : cases) EXPECT_EQ(found(row.pattern, row.subject), row.expected) << row.pattern;
}

// The ways in which the standard library's matcher departs from the ECMAScript text.
TEST(Regex, KeepsTheStandardLibrarysHabits) {
    EXPECT_EQ(found("(a|(b))*", "ba"), "(0,2)(1,2)(0,1)");   // groups of earlier rounds stay
    EXPECT_EQ(found("(a)|b\\1", "b"), "none");               // an unset group matches nothing
    EXPECT_EQ(found("(|a)*", "aaa"), "(0,0)(0,0)");          // two empty rounds end a loop
    EXPECT_EQ(found("(a*)*", "aab"), "(0,2)(2,2)");          // the last round may be empty
    EXPECT_EQ(found("(?:(?=(a))x|a)", "a"), "(0,1)(0,1)");   // a lookahead's groups stay set
    EXPECT_EQ(found("(?:(?!(a)b)|a)", "ab"), "(0,1)(0,1)");  // even a negative one's
    EXPECT_EQ(found("$(?=())|", ""), "(0,0)(0,0)");
    EXPECT_EQ(found("(?:$(?=())x|)", ""), "(0,0)(0,0)");
    EXPECT_EQ(found("a(?=^b)", "ab"), "(0,1)");  // a lookahead begins a search of its own
    EXPECT_EQ(found("a(?=^b)", "xab"), "none");
}

TEST(Regex, SeesWhatStandsBeforeTheStart) {
    EXPECT_EQ(found("^b", "ab", 1), "none");
    EXPECT_EQ(found("\\bb", "ab", 1), "none");
    EXPECT_EQ(found("^b", "ab", 1, MatchFlags::ignorePrevious), "(1,2)");
    EXPECT_EQ(found("\\bb", "ab", 1, MatchFlags::ignorePrevious), "(1,2)");
    EXPECT_EQ(found("b", "ab", 0, MatchFlags::continuous), "none");
    EXPECT_EQ(found("b*", "abb", 0, MatchFlags::notNull), "(1,3)");
    EXPECT_EQ(found("^a", "a", 0, MatchFlags::notLineBegin), "none");
    EXPECT_EQ(found("a$", "a", 0, MatchFlags::notLineEnd), "none");
    EXPECT_EQ(found("", "ab", 2), "(2,2)");
    EXPECT_EQ(found("", "ab", 3), "none");
}

TEST(Regex, StepsThroughAllMatches) {
    EXPECT_EQ(allFound("a*", "baac"), "(0,0)(1,3)(3,3)(4,4)");
    EXPECT_EQ(allFound("", "ab"), "(0,0)(1,1)(2,2)");
    EXPECT_EQ(allFound("|a", "aa"), "(0,0)(0,1)(1,1)(1,2)(2,2)");
    EXPECT_EQ(allFound("^a", "aaa"), "(0,1)");
    EXPECT_EQ(allFound("(\\d)(x)?", "1x2"), "(0,2)(0,1)(1,2)(2,3)(2,3)(-)");
    EXPECT_EQ(allFound("b", ""), "");
}

TEST(Regex, IgnoresCase) {
    const Pattern pattern = Pattern::compile("(straSSe|[k-m])\\1", true);
    Captures captures;
    EXPECT_TRUE(pattern.search("STRASSEstrasse", 0, captures));
    EXPECT_TRUE(pattern.search("Ll", 0, captures));
    EXPECT_FALSE(pattern.search("Lm", 0, captures));
    EXPECT_TRUE(Pattern::compile("[Z-a]", true).search("z", 0, captures));
    EXPECT_FALSE(Pattern::compile("[\xE0-\xEF]", true).search("\xC0", 0, captures));
}

TEST(Regex, RefusesWhatIsMalformed) {
    const std::vector<std::string> patterns{"*",
                                            "a|*",
                                            "(",
                                            ")",
                                            "(a",
                                            "a)",
                                            "(?",
                                            "(?<a)",
                                            "(?a)",
                                            "[",
                                            "[a",
                                            "[b-a]",
                                            "[\\d-a]",
                                            "[a-\\d]",
                                            "[[:no:]]",
                                            "[[.no.]]",
                                            "[[=ab=]]",
                                            "[[:alpha",
                                            "a{",
                                            "a{}",
                                            "a{,1}",
                                            "a{2,1}",
                                            "a{1",
                                            "a{1,",
                                            "a{1 }",
                                            "{",
                                            "^*",
                                            "\\b+",
                                            "(?=a)*",
                                            "\\",
                                            "\\x4",
                                            "\\u004g",
                                            "\\c",
                                            "\\1",
                                            "(a\\1)",
                                            "\\1(a)",
                                            "[\\1]",
                                            "[\\B]",
                                            "a{2147483648}",
                                            "(a)\\4294967297"};
    for (const auto& pattern : patterns) EXPECT_THROW(Pattern::compile(pattern), SyntaxError) << pattern;
    try {
        Pattern::compile("ab(c");
        FAIL();
    } catch (const SyntaxError& error) {
        EXPECT_STREQ(error.what(), "expected ')' at offset 4, found the end of the pattern");
    }
}

TEST(Regex, LimitsNestingAndSize) {
    const std::size_t depth = maximumNesting;
    const std::string deepest = repeated("(", depth) + "a" + repeated(")*", depth);
    EXPECT_EQ(Pattern::compile(deepest).captureCount(), depth);
    EXPECT_EQ(found(deepest, "aaa").substr(0, 5), "(0,3)");
    EXPECT_THROW(Pattern::compile("(" + deepest + ")"), SyntaxError);
    EXPECT_THROW(Pattern::compile(repeated("(", 1'000'000)), SyntaxError);
    EXPECT_EQ(found("a" + repeated("*", 90'000), "b"), "(0,0)");
    EXPECT_THROW(Pattern::compile("a" + repeated("*", 200'000)), SyntaxError);
    EXPECT_THROW(Pattern::compile("(?:(?:a{500}){500}){500}"), SyntaxError);
    EXPECT_THROW(Pattern::compile("(?:a|){2147483647}"), SyntaxError);
    EXPECT_EQ(found("(?:|x){16664}a", "a"), "(0,1)");
}

TEST(Regex, GivesUpPastItsBudget) {
    const Pattern exponential = Pattern::compile("(?:a|a(?:b|))*c(?:a+)+d");
    const std::string subject = "c" + repeated("a", 64);
    Captures captures;
    Scratch scratch;
    EXPECT_THROW(exponential.search(subject, 0, captures, scratch), BudgetExceeded);
    const Pattern deep = Pattern::compile("(?:ab|a|b)*");
    const std::string pairs = repeated("ab", 10'000);
    const Limits small{.stackBytes = 4096};
    EXPECT_THROW(deep.search(pairs, 0, captures, scratch, MatchFlags::none, small), BudgetExceeded);
    // The scratch is as good as new afterwards.
    EXPECT_TRUE(deep.search(pairs, 0, captures, scratch));
    EXPECT_EQ(shown(captures), "(0,20000)");
}

TEST(Regex, CopesWithLongSubjects) {
    constexpr std::size_t size = 10'000'000;
    const std::string letters(size, 'a');
    const std::string whole = "(0," + std::to_string(size) + ")";
    for (const char* pattern : {".*", "a*", "[^x]*", "\\w+", "(?:a|b)*", ".*$", "[^]*", "a*?$", "a{3,}"})
        EXPECT_EQ(found(pattern, letters), whole) << pattern;
    EXPECT_EQ(found("(a|b)*", letters),
              whole + "(" + std::to_string(size - 1) + "," + std::to_string(size) + ")");
    for (const char* pattern :
         {"a*b", "\\s+", ".*x", ".*?x", "\\w+=", "(a+)=", "[^b]*b", "a+$b", "aab", "(a|b)*c"})
        EXPECT_EQ(found(pattern, letters), "none") << pattern;
    EXPECT_EQ(found("(?:ab)*", repeated("ab", size / 4)), "(0," + std::to_string(size / 2) + ")");
}

}  // namespace
}  // namespace kelmora::regex
