#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "base/whole_file.h"
#include "support/places.h"
#include "support/shell.h"
#include "support/temporary_folder.h"

namespace kelmora {

// The authors' tool, each command as it is typed, in an empty folder.
class ByTool : public testing::Test {
protected:
    ShellOutcome vesper(const std::string& arguments) const {
        const std::string program = binFolder() + "/vesper" + (platform_is_windows() ? ".exe" : "");
        const std::string change = platform_is_windows() ? "cd /d " : "cd ";
        return runInShell(change + quoted(folder_.path().string()) + " && " + quoted(program) + " " +
                          arguments + " 2>&1");
    }
    void expectOutcome(const std::string& arguments, int exitCode, const std::string& part) const {
        const ShellOutcome outcome = vesper(arguments);
        EXPECT_EQ(outcome.exitCode, exitCode) << arguments << "\n" << outcome.text;
        EXPECT_NE(outcome.text.find(part), std::string::npos) << arguments << "\n" << outcome.text;
    }
    std::string pathOf(const std::string& name) const { return (folder_ / name).string(); }
    void write(const std::string& name, const std::string& content) const {
        std::filesystem::create_directories((folder_ / name).parent_path());
        EXPECT_TRUE(writeWholeFile(pathOf(name), content));
    }
    std::string read(const std::string& name) const { return readWholeFile(pathOf(name)).value_or(""); }
    // Replaces a part of a file.
    void edit(const std::string& name, const std::string& from, const std::string& to) const {
        std::string text = read(name);
        const std::size_t at = text.find(from);
        ASSERT_NE(at, std::string::npos) << from;
        write(name, text.replace(at, from.size(), to));
    }

    TemporaryFolder folder_;
};

}  // namespace kelmora
