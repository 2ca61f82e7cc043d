#include "tool/play/live_reload.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>

#include "host/boot_image.h"
#include "host/console_host.h"
#include "image/image_registry.h"
#include "platform/window_core.h"
#include "script/table_object.h"
#include "support/by_tool.h"
#include "tool/play/novel_view.h"
#include "workbench/changed_statements.h"

// An author saves files while the game runs.
namespace kelmora {
namespace {

// Does something before some of the updates, and looks for what was saved before all of them.
class SavingAuthor : public UpdateWatcher {
public:
    SavingAuthor(LiveReload& reload, std::map<int, std::function<void()>> deeds, int last)
        : reload_(reload), deeds_(std::move(deeds)), last_(last) {}

    void beforeUpdate(int update, WindowCore& core) override {
        if (const auto deed = deeds_.find(update); deed != deeds_.end()) deed->second();
        reload_.look();
        overlay_.show(core, reload_.lines());
        if (update == last_) core.requestClose();
    }
    void afterUpdate(int, WindowCore&) override {}

private:
    LiveReload& reload_;
    std::map<int, std::function<void()>> deeds_;
    int last_;
    Overlay overlay_;
};

class Live : public ByTool {
protected:
    // Plays the folder g and does the deeds; what the game failed with.
    std::string play(
        const std::function<std::map<int, std::function<void()>>(GameSession&, LiveReload&)>& deeds,
        int last) {
        ConsoleHost host;
        GameSession session(host, bootText(), folder_ / "g", true);
        LiveReload reload(session, folder_ / "g", folder_ / "g");
        SavingAuthor author(reload, deeds(session, reload), last);
        return session.play(author).value_or("");
    }
    static std::string value(GameSession& session, const std::string& name) {
        return globalOf(session.runtime().engine, name).toString();
    }
};

TEST(ChangedStatements, AreFunctionsAndAssignmentsThatDiffer) {
    const std::string before = "a = 1\nfunction f()\n    return 1\nend\nwhile x\n    a = 2\nend\n";
    EXPECT_EQ(changedStatements(before, before), "");
    EXPECT_EQ(
        changedStatements(
            "a = 1\n\nfunction f()\n    return 2\nend\nb = {\n    k = 1\n}\nwhile y\n    a = 2\nend\nf()\n",
            before),
        "\n\nfunction f()\n    return 2\nend\nb = {\n    k = 1\n}\n\n\n\n\n\n");
    EXPECT_EQ(changedStatements("local q = 1\nnative n = 2\n", ""), "\nnative n = 2\n\n");
    EXPECT_THROW(static_cast<void>(changedStatements("a = \"open\n", "")), std::runtime_error);
}

TEST_F(Live, FunctionsAndValuesOfARunningGameChangeAndItGoesOn) {
    const std::string script = "g/Resources/scripts/visual-novel.vs";
    const auto text = [](const std::string& step, const std::string& more) {
        return "speed = 1\n" + more + "function step()\n    score += " + step +
               "\nend\nscore = 0\nMetal[\"spawnWindow\"](\"g\", 320, 200)\n"
               "while not Metal[\"checkClose\"]()\n    step()\n    Metal[\"forceUpdate\"]()\nend\n";
    };
    write("g/Resources/package/graphics.vs", "");
    write(script, text("1", ""));
    std::vector<std::string> seen;
    const std::string failure = play(
        [&](GameSession& session, LiveReload& reload) {
            const auto note = [&] { seen.push_back(value(session, "score") + " " + reload.told()); };
            return std::map<int, std::function<void()>>{
                {10,
                 [&, note] {
                     note();
                     write(script, text("100", "bonus = 5\n"));
                 }},
                {11,
                 [&, note] {
                     note();
                     seen.push_back(value(session, "bonus"));
                 }},
                {12, [&, note] { write(script, text("100 +", "")); }},
                {13,
                 [&, note] {
                     note();
                     write(script, text("1000", "function onReload(path)\n    told = path\nend\n"));
                 }},
                {14,
                 [&, note] {
                     note();
                     seen.push_back(value(session, "told"));
                     write(script, text("1000", "function onReload(path)\n    prnt(path)\nend\n"));
                 }},
                {15,
                 [&, note] {
                     note();
                     write(script, text("1000", "\nworth = 1 \\ 0\n"));
                 }},
                {16, note}};
        },
        16);
    EXPECT_EQ(failure, "");
    ASSERT_EQ(seen.size(), 8u);
    EXPECT_EQ(seen[0], "10 ");
    EXPECT_EQ(seen[1], "110 Resources/scripts/visual-novel.vs is taken over.");
    EXPECT_EQ(seen[2], "5");
    // The broken one is told with its place, and the old one goes on.
    EXPECT_EQ(seen[3].find("310 Resources/scripts/visual-novel.vs:"), 0u) << seen[3];
    EXPECT_NE(seen[3].find("score += 100 +\n"), std::string::npos) << seen[3];
    EXPECT_EQ(seen[4].find("1310 "), 0u) << seen[4];
    EXPECT_TRUE(seen[5].ends_with("g/Resources/scripts/visual-novel.vs")) << seen[5];
    // What fails when it runs has its place, without the calls of the game around.
    EXPECT_TRUE(
        seen[6].ends_with("type not\n  at Resources/scripts/visual-novel.vs:3 in function onReload\n"
                          "    prnt(path)\n    ^~~~\n  `prnt` is nothing here; did you mean `print`?\n"))
        << seen[6];
    EXPECT_TRUE(
        seen[7].ends_with("Division by zero\n  at Resources/scripts/visual-novel.vs:3\n"
                          "    worth = 1 \\ 0\n"))
        << seen[7];
}

TEST_F(Live, ANovelKeepsItsPageAndWhatItRemembers) {
    ASSERT_EQ(vesper("new g").exitCode, 0);
    std::filesystem::create_directories(folder_ / "g/Libraries");
    const std::string script = "g/Resources/scripts/visual-novel.vs";
    std::vector<std::string> seen;
    const std::string failure = play(
        [&](GameSession& session, LiveReload& reload) {
            const auto note = [&] {
                const Variable here = session.runtime().engine.callCallable(
                    globalOf(session.runtime().engine, "novelHere"), {});
                seen.push_back(NovelView(session.runtime().engine).scene() + ": " +
                               (here.isTable() ? here.table().find("text")->toString() : "nothing"));
            };
            return std::map<int, std::function<void()>>{
                {5,
                 [&] {
                     session.runtime().engine.callCallable(globalOf(session.runtime().engine, "novelStartAt"),
                                                           {Variable::text("leave")});
                 }},
                {8,
                 [&, note] {
                     note();
                     edit(script, "Then mind the ford.", "Then mind the deep ford.");
                 }},
                {10,
                 [&, note] {
                     note();
                     edit(script, "go = \"night\"", "go = \"nowhere\"");
                 }},
                {12,
                 [&, note] {
                     note();
                     seen.push_back(reload.told());
                     edit(script, "go = \"nowhere\"", "go = \"leave\"");
                 }},
                {14, [&, note] {
                     note();
                     seen.push_back(reload.told());
                 }}};
        },
        16);
    EXPECT_EQ(failure, "");
    ASSERT_EQ(seen.size(), 6u);
    EXPECT_EQ(seen[0], "inn: Then mind the ford.");
    EXPECT_EQ(seen[1], "inn: Then mind the deep ford.");
    EXPECT_EQ(seen[2], seen[1]);
    EXPECT_NE(seen[3].find("a choice leads nowhere: nowhere"), std::string::npos) << seen[3];
    EXPECT_EQ(seen[4], seen[1]);
    EXPECT_EQ(seen[5], "Resources/scripts/visual-novel.vs is taken over.");
}

TEST_F(Live, PicturesAreLoadedAnewInPlace) {
    const auto savePicture = [&](int width, int shade) {
        PlushImage* image = createSolidColourImage(width, 4, static_cast<unsigned char>(shade), 0, 0, 255);
        std::filesystem::create_directories(folder_ / "g/Resources/package");
        EXPECT_TRUE(vh_save_png(pathOf("g/Resources/package/a.png").c_str(), image->pixels, width, 4));
        killPlushImage(image);
    };
    savePicture(4, 10);
    write("g/Resources/package/graphics.vs", "");
    write("g/Resources/scripts/visual-novel.vs",
          "picture = Plush[\"loadPNG\"](append + \"/a.png\")\nMetal[\"spawnWindow\"](\"g\", 320, 200)\n"
          "while not Metal[\"checkClose\"]()\n    Metal[\"forceUpdate\"]()\nend\n");
    int width = 0;
    int shade = 0;
    const std::string failure = play(
        [&](GameSession& session, LiveReload&) {
            return std::map<int, std::function<void()>>{
                {3, [&] { savePicture(6, 200); }},
                {4, [&] {
                     const auto* image = static_cast<PlushImage*>(
                         globalOf(session.runtime().engine, "picture").pointerValue());
                     width = image->width;
                     shade = image->pixels[0];
                 }}};
        },
        5);
    EXPECT_EQ(failure, "");
    EXPECT_EQ(width, 6);
    EXPECT_EQ(shade, 200);
}

TEST_F(Live, PlayBeginsAtAScene) {
    ASSERT_EQ(vesper("new g").exitCode, 0);
    write("g/tests/at.txt", "expect text The ford was deep.\n");
    expectOutcome("play g --headless --at raod --frames 20", 1,
                  "there is no scene or mark raod; did you mean road?");
    expectOutcome("play g --headless --at road --frames 60 --shot at.png", 0, "");
    expectOutcome("play g --headless --frames 60 --shot title.png", 0, "");
    EXPECT_NE(read("at.png"), read("title.png"));
    EXPECT_EQ(vesper("play g --headless --watch --frames 20").text, "");
}

}  // namespace
}  // namespace kelmora
