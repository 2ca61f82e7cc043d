#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <thread>

#include "base/whole_file.h"
#include "platform/shim.h"

namespace {

std::string readAll(std::FILE* stream) {
    std::string text;
    for (int byte = std::fgetc(stream); byte != EOF; byte = std::fgetc(stream))
        text += static_cast<char>(byte);
    return text;
}

TEST(Process, ReadsWhatACommandPrintsAndItsExitCode) {
    std::FILE* stream = vh_windows_popen("printf 'one\\ntwo'; echo hidden >&2; exit 3", "r");
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(readAll(stream), "one\ntwo");
    EXPECT_EQ(vh_windows_pclose(stream), 3);
}

TEST(Process, WritesToACommand) {
    const auto path = std::filesystem::temp_directory_path() /
                      ("kelmora_process_test_" + std::to_string(getpid()) + ".txt");
    std::FILE* stream = vh_windows_popen(("cat > '" + path.string() + "'").c_str(), "wb");
    ASSERT_NE(stream, nullptr);
    std::fputs("to the child", stream);
    EXPECT_EQ(vh_windows_pclose(stream), 0);
    EXPECT_EQ(kelmora::readWholeFile(path.string()), "to the child");
    std::filesystem::remove(path);
}

TEST(Process, AReaderHasNoInputToWaitFor) {
    std::FILE* stream = vh_windows_popen("cat; echo done", nullptr);
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(readAll(stream), "done\n");
    EXPECT_EQ(vh_windows_pclose(stream), 0);
}

TEST(Process, FailuresAreExitCodes) {
    std::FILE* killed = vh_windows_popen("kill -9 $$", "r");
    std::FILE* unknown = vh_windows_popen("kelmora_no_such_command", "r");
    ASSERT_NE(killed, nullptr);
    ASSERT_NE(unknown, nullptr);
    EXPECT_EQ(vh_windows_pclose(killed), 128 + 9);
    EXPECT_EQ(vh_windows_pclose(unknown), 127);
    EXPECT_EQ(vh_windows_popen(nullptr, "r"), nullptr);
    EXPECT_EQ(vh_windows_pclose(nullptr), -1);
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
    std::FILE* first = vh_windows_popen("cat > /dev/null; exit 7", "w");
    ASSERT_NE(first, nullptr);
    const std::string inherited = "/proc/$$/fd/" + std::to_string(fileno(first));
    std::FILE* second = vh_windows_popen(("[ ! -e " + inherited + " ]").c_str(), "r");
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(vh_windows_pclose(second), 0);
    EXPECT_EQ(vh_windows_pclose(first), 7);
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
    EXPECT_EQ(textOf(windows_platform_name).rfind("Linux ", 0), 0u);
    EXPECT_EQ(textOf(windows_executable_directory),
              std::filesystem::canonical("/proc/self/exe").parent_path().string() + "/");
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
    const char* old = std::getenv("TMPDIR");
    const std::string saved = old ? old : "";
    setenv("TMPDIR", "/var/some place", 1);
    EXPECT_EQ(textOf(windows_temp_directory), "/var/some place/");
    char small[3];
    EXPECT_TRUE(windows_temp_directory(small, sizeof small));
    EXPECT_STREQ(small, "./");
    setenv("TMPDIR", "", 1);
    EXPECT_EQ(textOf(windows_temp_directory), "/tmp/");
    if (old)
        setenv("TMPDIR", saved.c_str(), 1);
    else
        unsetenv("TMPDIR");
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
