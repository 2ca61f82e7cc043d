#include "tool/play/text_field.h"

#include <utility>

namespace kelmora {
namespace {

constexpr std::size_t longestLine = 2000;
constexpr std::size_t mostLines = 200;

bool continues(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

}  // namespace

void TextField::set(std::string text) {
    text_ = std::move(text);
    caret_ = text_.size();
}

void TextField::insert(char byte) {
    if (text_.size() >= longestLine) return;
    text_.insert(text_.begin() + static_cast<std::ptrdiff_t>(caret_), byte);
    ++caret_;
}

void TextField::moveLeft() {
    if (caret_ > 0) --caret_;
    while (caret_ > 0 && continues(text_[caret_])) --caret_;
}

void TextField::moveRight() {
    if (caret_ < text_.size()) ++caret_;
    while (caret_ < text_.size() && continues(text_[caret_])) ++caret_;
}

void TextField::eraseBefore() {
    const std::size_t end = caret_;
    moveLeft();
    text_.erase(caret_, end - caret_);
}

void TextField::eraseBehind() {
    const std::size_t start = caret_;
    moveRight();
    text_.erase(start, caret_ - start);
    caret_ = start;
}

void TextField::replaceBefore(std::size_t start, const std::string& words) {
    text_.replace(start, caret_ - start, words);
    caret_ = start + words.size();
}

std::string TextField::take() {
    if (!text_.empty() && (older_.empty() || older_.back() != text_)) older_.push_back(text_);
    if (older_.size() > mostLines) older_.erase(older_.begin());
    shown_ = older_.size();
    caret_ = 0;
    return std::exchange(text_, "");
}

void TextField::showOlder() {
    if (shown_ > 0) set(older_[--shown_]);
}

void TextField::showNewer() {
    if (shown_ < older_.size()) ++shown_;
    set(shown_ < older_.size() ? older_[shown_] : "");
}

}  // namespace kelmora
