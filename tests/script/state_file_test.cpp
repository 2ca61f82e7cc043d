#include "script/state_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "host/console_host.h"
#include "script/interpreter.h"
#include "script/vesper_script.h"
#include "support/capture_host.h"
#include "support/temporary_folder.h"

namespace kelmora {
namespace {

using Bytes = std::vector<unsigned char>;

class StateFile : public testing::Test {
protected:
    Bytes sample() {
        script_.runScript(
            "a = [1, 2.5, 'x', true, not]\nt = {k = {v = 1}}\nfunction f(p)\n    nest 'here'\n    end\n    "
            "return p\nend\n");
        return exportState(script_.interpreter());
    }
    std::string failure(const Bytes& bytes) {
        try {
            importState(script_.interpreter(), bytes, "name");
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "";
    }
    static Bytes header(std::uint32_t version, const std::string& random, std::uint32_t entries) {
        Bytes bytes{'V', 'S', 'S', 'T'};
        append(bytes, version);
        append(bytes, static_cast<std::uint32_t>(random.size()));
        bytes.insert(bytes.end(), random.begin(), random.end());
        append(bytes, entries);
        return bytes;
    }
    static void append(Bytes& bytes, std::uint32_t number) {
        for (int i = 0; i < 4; ++i) bytes.push_back(static_cast<unsigned char>(number >> (8 * i)));
    }
    static void appendName(Bytes& bytes) {
        append(bytes, 1);
        bytes.push_back('n');
    }

    CaptureHost host_;
    VesperScript script_{host_};
};

TEST_F(StateFile, ExportsTheSameBytesUntilSomethingChanges) {
    const Bytes first = sample();
    EXPECT_EQ(exportState(script_.interpreter()), first);
    CaptureHost host;
    VesperScript other(host);
    importState(other.interpreter(), first, "name");
    EXPECT_EQ(exportState(other.interpreter()), first);
}

TEST_F(StateFile, EveryTruncationIsToldAsOne) {
    const Bytes whole = sample();
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const std::string told = failure({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)});
        const bool inGenerator = told == "Invalid state file (bad random generator state): name";
        ASSERT_TRUE(inGenerator || told.find("(truncated)") != std::string::npos) << size << ": " << told;
    }
}

TEST_F(StateFile, RefusesInItsWords) {
    EXPECT_EQ(failure({'V', 'S', 'B', 'C', 0, 0, 0, 0}), "Invalid state file (bad magic): name");
    EXPECT_EQ(failure(header(3, "", 0)), "Unsupported state version: 3");
    EXPECT_EQ(failure(header(2, "nonsense", 0)), "Invalid state file (bad random generator state): name");
    EXPECT_EQ(failure(header(1, "", 0)), "");
    Bytes bytes = header(2, "", 0);
    bytes.push_back(0);
    EXPECT_EQ(failure(bytes), "Invalid state file (trailing data): name");
    bytes = header(2, "", 1);
    appendName(bytes);
    bytes.push_back(10);
    EXPECT_EQ(failure(bytes), "Invalid state file (unknown value tag): name");
    bytes = header(2, "", 1);
    appendName(bytes);
    bytes.push_back(6);
    append(bytes, 0xFFFFFFFF);
    EXPECT_EQ(failure(bytes), "Invalid state file (truncated): name");
    for (const int depth : {256, 257}) {
        bytes = header(2, "", 1);
        appendName(bytes);
        for (int i = 0; i < depth; ++i) {
            bytes.push_back(6);
            append(bytes, 1);
        }
        bytes.push_back(0);
        EXPECT_EQ(failure(bytes),
                  depth == 256 ? "" : "Invalid state file (container nesting too deep): name");
    }
}

TEST_F(StateFile, AFunctionBeyondItsProgramIsRefused) {
    script_.runScript("function f()\nend\n");
    Bytes bytes = exportState(script_.interpreter());
    const Bytes name{1, 0, 0, 0, 'f'};
    const auto found = std::search(bytes.begin(), bytes.end(), name.begin(), name.end());
    ASSERT_NE(found, bytes.end());
    const auto chunk = found + 5 + 3;  // behind the tag and two marks
    EXPECT_EQ(failure(bytes), "");
    for (const unsigned char index : {std::uint8_t{2}, std::uint8_t{3}, std::uint8_t{255}}) {
        *chunk = index;
        EXPECT_EQ(failure(bytes), "Invalid state file (function chunk out of range): name") << int{index};
    }
}

TEST_F(StateFile, DamageNeverDoesMoreThanFail) {
    const Bytes whole = sample();
    for (std::size_t at = 0; at + 4 <= whole.size(); ++at) {
        Bytes damaged = whole;
        std::memset(damaged.data() + at, 0xFF, 4);
        failure(damaged);
    }
}

TEST(ConsoleHostFiles, AFailedReplacementLeavesTheOldFile) {
    TemporaryFolder folder;
    ConsoleHost host;
    const std::string path = (folder / "a.state").string();
    const Bytes content{1, 2, 3};
    EXPECT_TRUE(host.replaceFile(path, content));
    EXPECT_EQ(readWholeFileBytes(path), content);
    std::filesystem::create_directory(path + ".new");  // nothing can be written beside it
    EXPECT_FALSE(host.replaceFile(path, Bytes{9}));
    EXPECT_EQ(readWholeFileBytes(path), content);
    EXPECT_FALSE(host.replaceFile((folder / "none/x").string(), content));
}

}  // namespace
}  // namespace kelmora
