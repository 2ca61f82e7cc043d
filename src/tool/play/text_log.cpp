#include "tool/play/text_log.h"

#include <algorithm>

namespace kelmora {

TextLog::TextLog(GameSession& session) {
    VesperScript& engine = session.runtime().engine;
    session.wrap("Font", "renderText",
                 [this, &engine](const Variable& original, const std::vector<Variable>& arguments) {
                     Variable picture = engine.callCallable(original, arguments);
                     if (picture.isPointer() && !arguments.empty() && arguments[0].isString())
                         add(picture.pointerValue(), onOneLine(arguments[0].text()));
                     return picture;
                 });
    session.wrap("Plush", "killImage",
                 [this, &engine](const Variable& original, const std::vector<Variable>& arguments) {
                     if (!arguments.empty() && arguments[0].isPointer()) drop(arguments[0].pointerValue());
                     return engine.callCallable(original, arguments);
                 });
}

void TextLog::add(const void* picture, const std::string& text) {
    drop(picture);
    pictures_[picture] = ++count_;
    held_[count_] = text;
    drawn_[count_] = text;
}

void TextLog::drop(const void* picture) {
    const auto found = pictures_.find(picture);
    if (found == pictures_.end()) return;
    held_.erase(found->second);
    pictures_.erase(found);
}

std::vector<std::string> TextLog::shown() const {
    Texts all = held_;
    all.insert(drawn_.begin(), drawn_.end());
    std::vector<std::string> texts;
    for (auto each = all.rbegin(); each != all.rend(); ++each)
        if (std::find(texts.begin(), texts.end(), each->second) == texts.end()) texts.push_back(each->second);
    return texts;
}

bool TextLog::shows(const std::string& words) const {
    const std::string wanted = onOneLine(words);
    for (const std::string& text : shown())
        if (text.find(wanted) != std::string::npos) return true;
    return false;
}

std::vector<std::string> TextLog::drawn() const {
    std::vector<std::string> texts;
    for (const auto& [when, text] : drawn_) texts.push_back(text);
    return texts;
}

std::string TextLog::summary() const {
    constexpr std::size_t longest = 400;
    std::string all;
    for (const std::string& text : shown()) {
        if (all.size() > longest) return all + ", ...";
        all += (all.empty() ? "\"" : ", \"") + text + "\"";
    }
    return all.empty() ? "no words" : all;
}

std::string onOneLine(const std::string& text) {
    std::string line;
    for (const char letter : text) {
        const bool isBlank = letter == ' ' || letter == '\n' || letter == '\t' || letter == '\r';
        if (!isBlank)
            line += letter;
        else if (!line.empty() && line.back() != ' ')
            line += ' ';
    }
    return line;
}

}  // namespace kelmora
