#include "ai/ai_model_file.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>

#include "ai/ai_model_builder.h"
#include "base/whole_file.h"

namespace kelmora {
namespace {

// What stands in front of the mark, or everything; the text goes on behind it.
std::string_view takeUntil(std::string_view& text, char mark) {
    const std::size_t end = text.find(mark);
    const std::string_view taken = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return taken;
}

// The number that the text begins with, behind blanks and a sign; whatever follows it is ignored.
std::int32_t parseCount(std::string_view text) {
    const std::string_view whole = text;
    text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
    if (text.starts_with('+') && text.size() > 1 && text[1] != '-') text.remove_prefix(1);
    std::int32_t count = 0;
    if (std::from_chars(text.data(), text.data() + text.size(), count).ec != std::errc())
        throw std::runtime_error("Invalid count in model: " + std::string(whole.substr(0, 40)));
    return count;
}

void appendNumber(std::string& out, std::int32_t value) {
    char digits[12];
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    out.append(digits, end);
}

}  // namespace

std::string aiModelText(const AIModel& model) {
    std::string out;
    for (std::uint32_t state = 0; state < model.stateCount(); ++state) {
        if (state > 0) out += '\n';
        out += model.state(state);
        out += '|';
        const std::uint32_t first = model.firstTransition(state);
        for (std::uint32_t i = first; i != AIModel::none; i = model.transitionAfter(i)) {
            if (i != first) out += ',';
            out += model.successor(i);
            out += ':';
            appendNumber(out, model.count(i));
        }
    }
    return out;
}

AIModel aiModelFromText(std::string_view text) {
    AIModelBuilder model;
    while (!text.empty()) {
        std::string_view items = takeUntil(text, '\n');
        if (items.find('|') == std::string_view::npos) continue;
        const std::uint32_t state = model.addState(takeUntil(items, '|'));
        while (!items.empty()) {
            std::string_view count = takeUntil(items, ',');
            if (count.find(':') == std::string_view::npos) continue;
            const std::string_view successor = takeUntil(count, ':');
            model.setCount(state, successor, parseCount(count));
        }
    }
    return model.take();
}

void aiSaveModelToPath(const AIModel& model, const std::string& path) {
    if (!writeWholeFile(path, aiModelText(model)))
        throw std::runtime_error("Cannot open file for writing: " + path);
}

AIModel aiLoadModelFromPath(const std::string& path) {
    return aiModelFromText(aiReadFile(path));
}

std::string aiReadFile(const std::string& path) {
    auto content = readWholeFile(path);
    if (!content) throw std::runtime_error("Cannot open file: " + path);
    return *std::move(content);
}

}  // namespace kelmora
