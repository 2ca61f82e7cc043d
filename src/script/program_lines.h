#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "script/parsed_line.h"

namespace kelmora {

// The lines of a program, made whole at once or each when it is first looked at.
class ProgramLines {
public:
    // Makes the line whose bytes begin here, but for its links to other lines.
    using ReadLine = void (*)(std::span<const unsigned char> bytes, ParsedScriptLine& line);
    // Links the openers of blocks to their closers.
    using LinkLines = void (*)(std::vector<ParsedScriptLine>& lines);

    ProgramLines() = default;
    ProgramLines(std::vector<ParsedScriptLine> lines) : whole_(std::move(lines)) {}
    // Waiting lines: `starts` are where each begins. The bytes outlive the program.
    ProgramLines(std::span<const unsigned char> bytes, std::vector<std::uint32_t> starts, ReadLine read,
                 LinkLines link)
        : bytes_(bytes), starts_(std::move(starts)), read_(read), link_(link), single_(starts_.size()) {}

    std::size_t size() const { return std::max(whole_.size(), single_.size()); }
    // A waiting line knows nothing of the blocks around it.
    const ParsedScriptLine& operator[](std::size_t index) const {
        if (!whole_.empty()) return whole_[index];
        std::shared_ptr<const ParsedScriptLine>& line = single_[index];
        if (!line) line = makeLine(index);
        return *line;
    }
    // All lines, linked. Those that were looked at one by one stay where they are.
    const std::vector<ParsedScriptLine>& linked() const {
        if (whole_.empty() && !single_.empty()) makeWhole();
        return whole_;
    }

private:
    std::shared_ptr<const ParsedScriptLine> makeLine(std::size_t index) const {
        auto line = std::make_shared<ParsedScriptLine>();
        read_(bytes_.subspan(starts_[index]), *line);
        return line;
    }
    void makeWhole() const {
        std::vector<ParsedScriptLine> lines(starts_.size());
        for (std::size_t i = 0; i < lines.size(); ++i) read_(bytes_.subspan(starts_[i]), lines[i]);
        link_(lines);
        whole_ = std::move(lines);
    }

    mutable std::vector<ParsedScriptLine> whole_;
    std::span<const unsigned char> bytes_;
    std::vector<std::uint32_t> starts_;
    ReadLine read_ = nullptr;
    LinkLines link_ = nullptr;
    mutable std::vector<std::shared_ptr<const ParsedScriptLine>> single_;
};

}  // namespace kelmora
