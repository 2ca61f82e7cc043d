#pragma once

#include <string>
#include <vector>

namespace kelmora {

// A line of UTF-8 that is written: a caret, and the lines before it.
class TextField {
public:
    const std::string& text() const { return text_; }
    std::size_t caret() const { return caret_; }  // in bytes
    void set(std::string text);
    void insert(char byte);
    // Between whole characters.
    void moveLeft();
    void moveRight();
    void moveToStart() { caret_ = 0; }
    void moveToEnd() { caret_ = text_.size(); }
    void eraseBefore();
    void eraseBehind();
    // Replaces what is between `start` and the caret.
    void replaceBefore(std::size_t start, const std::string& words);
    // Empties the line and remembers it; what it was.
    std::string take();
    void showOlder();
    void showNewer();

private:
    std::string text_;
    std::size_t caret_ = 0;
    std::vector<std::string> older_;
    std::size_t shown_ = 0;  // of the older ones; their number for a new line
};

}  // namespace kelmora
