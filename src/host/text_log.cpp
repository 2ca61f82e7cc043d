#include "host/text_log.h"

namespace kelmora {

TextLog::TextLog(GameSession& session) {
    VesperScript& engine = session.runtime().engine;
    session.wrap("Font", "renderText",
                 [this, &engine](const Variable& original, const std::vector<Variable>& arguments) {
                     Variable picture = engine.callCallable(original, arguments);
                     if (picture.isPointer() && !arguments.empty() && arguments[0].isString()) {
                         held_[picture.pointerValue()] = onOneLine(arguments[0].text());
                         drawn_.push_back(held_[picture.pointerValue()]);
                     }
                     return picture;
                 });
    session.wrap("Plush", "killImage",
                 [this, &engine](const Variable& original, const std::vector<Variable>& arguments) {
                     if (!arguments.empty() && arguments[0].isPointer())
                         held_.erase(arguments[0].pointerValue());
                     return engine.callCallable(original, arguments);
                 });
}

std::vector<std::string> TextLog::shown() const {
    std::vector<std::string> texts(drawn_.rbegin(), drawn_.rend());
    for (const auto& [picture, text] : held_) texts.push_back(text);
    return texts;
}

bool TextLog::shows(const std::string& words) const {
    const std::string wanted = onOneLine(words);
    for (const std::string& text : shown())
        if (text.find(wanted) != std::string::npos) return true;
    return false;
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
