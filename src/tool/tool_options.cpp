#include "tool/tool_options.h"

#include <algorithm>
#include <charconv>

#include "workbench/nearest.h"

namespace kelmora {
namespace {

[[noreturn]] void refuse(const std::string& option, std::span<const ToolOption> known) {
    std::vector<std::string> names;
    for (const ToolOption& each : known) names.emplace_back(each.name);
    const std::string near = nearestWord(option, names);
    throw UsageError("unknown option " + option + (near.empty() ? "" : "; did you mean " + near + "?"));
}

}  // namespace

ToolOptions::ToolOptions(std::span<const std::string> words, std::span<const ToolOption> known) {
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (word.size() < 2 || word[0] != '-') {
            words_.push_back(word);
            continue;
        }
        const auto option = std::find_if(known.begin(), known.end(),
                                         [&](const ToolOption& each) { return each.name == word; });
        if (option == known.end()) refuse(word, known);
        if (has(word)) throw UsageError(word + " is given twice");
        if (option->takesValue && i + 1 == words.size()) throw UsageError(word + " wants a value");
        values_[word] = option->takesValue ? words[++i] : "";
    }
}

std::optional<std::string> ToolOptions::value(std::string_view option) const {
    const auto found = values_.find(option);
    return found == values_.end() ? std::nullopt : std::optional(found->second);
}

std::optional<std::int32_t> ToolOptions::number(std::string_view option, std::int32_t least) const {
    const std::optional<std::string> text = value(option);
    if (!text) return std::nullopt;
    std::int32_t number = 0;
    const char* end = text->data() + text->size();
    const auto [stop, error] = std::from_chars(text->data(), end, number);
    if (error != std::errc() || stop != end || number < least)
        throw UsageError(std::string(option) + " wants a whole number from " + std::to_string(least) +
                         ", found " + *text);
    return number;
}

}  // namespace kelmora
