#pragma once

#include "tool/play/game_session.h"

namespace kelmora {

// Leaves out most of the drawing into the picture that a game shows, for runs that nobody looks at: only one
// of every few updates gets its picture. The scripts see no difference but in the pixels of that picture; of
// a novel, whose library looks at no pixels, of all pictures as large.
class ThinDrawing {
public:
    // Works on a session, which it does not outlive.
    ThinDrawing(GameSession& session, int updatesForPicture);

    void beforeUpdate(int update, bool isNovel) {
        draws_ = update % updatesForPicture_ == 0;
        isNovel_ = isNovel;
    }

private:
    bool isLarge(const void* picture) const;

    const int updatesForPicture_;
    bool draws_ = true;
    bool isNovel_ = false;
    const void* frame_ = nullptr;  // what was last shown
};

}  // namespace kelmora
