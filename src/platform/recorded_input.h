#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/window_event.h"

namespace kelmora {

// One line of a recorded input: an event that arrives with an update, or a name to save its picture under.
struct RecordedStep {
    int update = 1;  // the first vh_updateWindow is 1
    int line = 1;
    std::optional<WindowEvent> event;
    std::string shotPath;  // empty unless the step saves the picture
};

// Reads the text of a recorded input. Each line is the number of an update, not below the one before, and one
// of
//     keydown NAME | keyup NAME            names of the key tables, pad buttons included
//     mouse X Y                            client pixels
//     button left|right|middle down|up     where the mouse was last
//     wheel up|down                        by one notch
//     focus gained|lost
//     resize WIDTH HEIGHT
//     close
//     type TEXT                            all behind the first blank, as characters
//     shot PATH                            what the update shows in the end; no blanks in the path
// Empty lines and lines that start with # are skipped. A bad line raises std::runtime_error with `name`, the
// line's number and its text.
std::vector<RecordedStep> parseRecordedInput(std::string_view text, const std::string& name);

}  // namespace kelmora
