#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

#include "base/whole_file.h"
#include "platform/speech_text.h"
#include "shim/shim.h"
#include "support/environment.h"
#include "support/shell.h"
#include "support/temporary_folder.h"

namespace kelmora {
namespace {

namespace fs = std::filesystem;

TEST(SpeechText, IsOneLineOfWholeCharacters) {
    EXPECT_EQ(speechLine("“Dunkel”,\nsaid\tMaud\x7f.\r\n"), "“Dunkel”, said Maud .  ");
    EXPECT_EQ(speechLine(std::string(longestSpeech - 1, 'a') + "ä"), std::string(longestSpeech - 1, 'a'));
    EXPECT_EQ(speechLine(std::string(longestSpeech - 2, 'a') + "ä").size(), longestSpeech);
}

TEST(SpeechText, LanguagesThatAreNoneAreLeftOut) {
    for (const char* good : {"de", "pt-BR", "es-419"}) EXPECT_EQ(speechLanguage(good), good);
    for (const char* bad : {"", "-w", "de; ls", "d'", "abcdefghijklmnopq", "é"})
        EXPECT_EQ(speechLanguage(bad), "");
}

TEST(SpeechText, PacksBytesIntoLetters) {
    EXPECT_EQ(base64(""), "");
    EXPECT_EQ(base64("f"), "Zg==");
    EXPECT_EQ(base64("fo"), "Zm8=");
    EXPECT_EQ(base64("foobar"), "Zm9vYmFy");
    EXPECT_EQ(base64("\xff\xfe\xfd"), "//79");
}

#ifndef _WIN32

// A spd-say of the test's own, a script, stands first on the path.
class FakeSpeaker {
public:
    FakeSpeaker() {
        const char* old = std::getenv("PATH");
        path_.emplace("PATH", (folder_.path().string() + ":" + (old ? old : "")).c_str());
    }
    // Leaves no speaker behind that waits for a reader.
    ~FakeSpeaker() {
        becomes("exit 0");
        vh_speak("", "");
    }

    void becomes(const std::string& script) const {
        const fs::path file = folder_ / "spd-say";
        EXPECT_TRUE(writeWholeFile(file.string(), "#!/bin/sh\n" + script));
        fs::permissions(file, fs::perms::owner_all);
    }
    // Waits for what is written into the pipe of this name.
    std::string heard(const std::string& pipe) const { return runInShell("cat " + pipePath(pipe)).text; }
    std::string pipePath(const std::string& name) const {
        const std::string path = (folder_ / name).string();
        if (!fs::exists(path)) {
            EXPECT_EQ(runInShell("mkfifo " + quoted(path)).exitCode, 0);
        }
        return quoted(path);
    }

private:
    TemporaryFolder folder_;
    std::optional<ScopedEnvironment> path_;
};

TEST(Speech, WordsArriveAsTheyAreAndNeverInACommand) {
    const FakeSpeaker speaker;
    speaker.becomes("{ echo \"$@\"; cat; } > " + speaker.pipePath("heard"));
    EXPECT_TRUE(vh_speak("He said: “It’s $HOME; `ls` \"x\".”\n!-!quit", "de"));
    EXPECT_EQ(speaker.heard("heard"),
              "--cancel --pipe-mode --language de\n He said: “It’s $HOME; `ls` \"x\".” !-!quit\n");
    EXPECT_TRUE(vh_speak("!-!quit", "x y"));
    EXPECT_EQ(speaker.heard("heard"), "--cancel --pipe-mode\n !-!quit\n");
    EXPECT_TRUE(vh_speak("", ""));
    EXPECT_EQ(speaker.heard("heard"), "--cancel --pipe-mode\n");
}

// Nothing waits for a speaker that hangs, and new words do not wait behind its old ones.
TEST(Speech, NewWordsEndTheSpeakerOfTheOldOnes) {
    const FakeSpeaker speaker;
    speaker.becomes("echo $$ > " + speaker.pipePath("first") + "; exec sleep 1000");
    EXPECT_TRUE(vh_speak(std::string(100000, 'a'), ""));
    const std::string process = speaker.heard("first");
    speaker.becomes("cat > " + speaker.pipePath("second"));
    EXPECT_TRUE(vh_speak("new", ""));
    EXPECT_NE(runInShell("kill -0 " + process).exitCode, 0);
    EXPECT_EQ(speaker.heard("second"), " new\n");
}

TEST(Speech, WordsThatDidNotGetThroughAreToldWithTheNext) {
    const FakeSpeaker speaker;
    const std::string pipe = speaker.pipePath("gone");
    speaker.becomes("exec 3> " + pipe + "; exit 1");
    EXPECT_TRUE(vh_speak("lost", ""));
    speaker.heard("gone");
    // Its pipe closes a moment before it has ended.
    bool arrived = true;
    for (int round = 0; round < 1000 && arrived; ++round) {
        arrived = vh_speak("again", "");
        speaker.heard("gone");
    }
    EXPECT_FALSE(arrived);
}

TEST(Speech, SaysSoWhereThereIsNoSpeaker) {
    const TemporaryFolder empty;
    const ScopedEnvironment path("PATH", empty.path().string().c_str());
    vh_speak("", "");
    EXPECT_FALSE(vh_speak("anyone?", ""));
    EXPECT_FALSE(vh_speak("", ""));
}

#else

// Whether there is a voice depends on the system, and Wine has none; neither may keep the game waiting.
TEST(Speech, NeverWaitsForTheSpeaker) {
    EXPECT_TRUE(vh_speak("", ""));
    for (int i = 0; i < 40; ++i) vh_speak(std::string(8000, 'a'), "de");
    vh_speak("", "");
}

#endif

}  // namespace
}  // namespace kelmora
