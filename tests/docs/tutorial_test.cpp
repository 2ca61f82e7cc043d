#include "docs/document_steps.h"

namespace kelmora {
namespace {

class Tutorial : public DocumentSteps {};

TEST_F(Tutorial, FirstNovel) {
    follow("first-novel.md", "ferry");
    EXPECT_GE(looks(), 8u);
    expectPacked();
}

TEST_F(Tutorial, FirstArcade) {
    follow("first-arcade.md", "crumbs");
    EXPECT_GE(looks(), 8u);
    expectPacked();
}

TEST_F(Tutorial, MakingGames) {
    follow("making-games.md", "marks");
    EXPECT_GE(looks(), 3u);
}

}  // namespace
}  // namespace kelmora
