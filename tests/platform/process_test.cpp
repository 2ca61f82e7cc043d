#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>

#include "base/whole_file.h"
#include "shim/shim.h"
#include "support/environment.h"
#include "support/places.h"
#include "support/shell.h"
#include "support/temporary_folder.h"

namespace {

using kelmora::readToEnd;
using kelmora::runInShell;

// The same request in the words of each system's shell.
const char* shell(const char* linuxText, const char* windowsText) {
    return platform_is_windows() ? windowsText : linuxText;
}

const char* const copyInputAway = shell("cat > /dev/null", "more > NUL");

TEST(Process, ReadsWhatACommandPrintsAndItsExitCode) {
    const char* command =
        shell("echo one; echo two; echo hidden >&2; exit 3", "echo one& echo two& echo hidden 1>&2& exit 3");
    const auto outcome = runInShell(command);
    EXPECT_EQ(outcome.text, "one\ntwo\n");
    EXPECT_EQ(outcome.exitCode, 3);
}

TEST(Process, WritesToACommandAPathWithBlanks) {
    const kelmora::TemporaryFolder folder;
    const std::string path = (folder / "from child.txt").string();
    const std::string command = shell("cat > ", "more > ") + kelmora::quoted(path);
    std::FILE* stream = vh_windows_popen(command.c_str(), "wb");
    ASSERT_NE(stream, nullptr);
    std::fputs("to the child\r\n", stream);
    EXPECT_EQ(vh_windows_pclose(stream), 0);
    EXPECT_EQ(kelmora::readWholeFile(path), "to the child\r\n");
}

TEST(Process, AReaderHasNoInputToWaitFor) {
    std::FILE* stream = vh_windows_popen(shell("cat; echo done", "set /p line=& echo done"), nullptr);
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(readToEnd(stream), "done\n");
    EXPECT_EQ(vh_windows_pclose(stream), 0);
}

TEST(Process, FailuresAreExitCodes) {
    EXPECT_NE(runInShell("kelmora_no_such_command").exitCode, 0);
    if (!platform_is_windows()) {
        EXPECT_EQ(runInShell("kill -9 $$").exitCode, 128 + 9);
    }
    EXPECT_EQ(vh_windows_popen(nullptr, "r"), nullptr);
    EXPECT_EQ(vh_windows_pclose(nullptr), -1);
}

TEST(Process, TheShellIsFoundWithoutItsVariable) {
    const kelmora::ScopedEnvironment none("COMSPEC", nullptr);
    const auto outcome = runInShell(shell("echo found; exit 3", "echo found& exit 3"));
    EXPECT_EQ(outcome.text, "found\n");
    EXPECT_EQ(outcome.exitCode, 3);
}

TEST(Process, WritingToACommandThatHasEndedIsNotFatal) {
    std::FILE* stream = vh_windows_popen("exit 5", "w");
    ASSERT_NE(stream, nullptr);
    const std::string much(1 << 20, 'x');
    EXPECT_LT(std::fwrite(much.data(), 1, much.size(), stream), much.size());
    EXPECT_EQ(vh_windows_pclose(stream), 5);
}

// Were our end inherited, the first command would not see the end of its input while the second runs.
TEST(Process, CommandsDoNotInheritEachOthersPipes) {
    std::FILE* first = vh_windows_popen(copyInputAway, "w");
    std::FILE* second = vh_windows_popen(copyInputAway, "w");
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    std::fputs("text\r\n", first);
    EXPECT_EQ(vh_windows_pclose(first), 0);
    std::fputs("text\r\n", second);
    EXPECT_EQ(vh_windows_pclose(second), 0);
}

TEST(Process, AStreamOfAnotherKindIsJustClosed) {
    std::FILE* file = std::tmpfile();
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(vh_windows_pclose(file), 0);
}

using Fact = bool (*)(char*, unsigned);
constexpr Fact allFacts[] = {windows_executable_directory, windows_user_name,      windows_platform_name,
                             windows_version_string,       windows_processor_name, windows_temp_directory};

std::string textOf(Fact fact) {
    char buffer[4096];
    return fact(buffer, sizeof buffer) ? buffer : "";
}

TEST(SystemInfo, EveryFactHasATrimmedAnswer) {
    for (const Fact fact : allFacts) {
        const std::string text = textOf(fact);
        ASSERT_FALSE(text.empty());
        EXPECT_EQ(text.find_first_of("\r\n"), std::string::npos) << text;
        EXPECT_NE(text.front(), ' ');
        EXPECT_NE(text.back(), ' ');
    }
    EXPECT_TRUE(textOf(windows_platform_name).starts_with(shell("Linux ", "Windows x86")));
    const std::string directory = textOf(windows_executable_directory);
    EXPECT_EQ(directory.back(), std::filesystem::path::preferred_separator);
    EXPECT_TRUE(
        std::filesystem::equivalent(std::filesystem::path(directory).parent_path(), kelmora::binFolder()))
        << directory;
}

TEST(SystemInfo, ATextThatDoesNotFitIsAFailureWithAnEmptyText) {
    for (const Fact fact : allFacts) {
        char buffer[2] = {'x', 'y'};
        EXPECT_FALSE(fact(nullptr, 100));
        EXPECT_FALSE(fact(buffer, 0));
        EXPECT_EQ(buffer[0], 'x');
        EXPECT_FALSE(fact(buffer, 1));
        EXPECT_EQ(buffer[0], '\0');
        EXPECT_EQ(buffer[1], 'y');
    }
    std::string buffer(64, 'x');
    const std::string platform = textOf(windows_platform_name);
    const auto size = static_cast<unsigned>(platform.size());
    EXPECT_FALSE(windows_platform_name(buffer.data(), size));
    EXPECT_TRUE(windows_platform_name(buffer.data(), size + 1));
    EXPECT_STREQ(buffer.c_str(), platform.c_str());
}

TEST(SystemInfo, TheTemporaryDirectoryFollowsItsVariable) {
    const char* variable = shell("TMPDIR", "TMP");
    const kelmora::ScopedEnvironment set(variable, shell("/var/some place", "C:\\some place"));
    EXPECT_EQ(textOf(windows_temp_directory), shell("/var/some place/", "C:\\some place\\"));
    char small[3];
    EXPECT_TRUE(windows_temp_directory(small, sizeof small));
    EXPECT_STREQ(small, "./");
    if (platform_is_windows()) return;
    const kelmora::ScopedEnvironment empty(variable, "");
    EXPECT_EQ(textOf(windows_temp_directory), "/tmp/");
}

TEST(SystemInfo, EachThreadKnowsTheEndOfItsStack) {
    const auto check = [] {
        const char here = 0;
        const auto address = reinterpret_cast<std::uintptr_t>(&here);
        const std::uintptr_t low = platform_stack_low_address();
        ASSERT_NE(low, 0u);
        EXPECT_LT(low, address);
        EXPECT_GT(address - low, 64u * 1024u);
    };
    check();
    std::thread(check).join();
}

TEST(Sleep, WaitsAtLeastTheTimeAndNotAtAllBelowOne) {
    const auto timed = [](int milliseconds) {
        const auto start = std::chrono::steady_clock::now();
        vh_sleep_ms(milliseconds);
        return std::chrono::steady_clock::now() - start;
    };
    EXPECT_GE(timed(20), std::chrono::milliseconds(20));
    EXPECT_LT(timed(0), std::chrono::milliseconds(500));
    EXPECT_LT(timed(-5), std::chrono::milliseconds(500));
    EXPECT_LT(timed(-2147483647 - 1), std::chrono::milliseconds(500));
}

}  // namespace
