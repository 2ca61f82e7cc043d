#include "workbench/block_check.h"

#include <algorithm>

namespace kelmora {
namespace {

bool isLoop(ParsedLineKind kind) {
    return kind == ParsedLineKind::While || kind == ParsedLineKind::Repeat || kind == ParsedLineKind::For;
}
bool opensBlock(ParsedLineKind kind) {
    return isLoop(kind) || isFunctionKind(kind) || kind == ParsedLineKind::If || kind == ParsedLineKind::Nest;
}
bool isBranch(ParsedLineKind kind) {
    return kind == ParsedLineKind::ElseIf || kind == ParsedLineKind::Else;
}
bool closesBlock(ParsedLineKind kind) {
    return kind == ParsedLineKind::End || kind == ParsedLineKind::Until || isBranch(kind);
}

std::string missingCloser(ParsedLineKind opener) {
    switch (opener) {
        case ParsedLineKind::If:
            return "Missing 'end' for if block";
        case ParsedLineKind::While:
            return "Missing 'end' for while block";
        case ParsedLineKind::Repeat:
            return "Missing 'until' for repeat block";
        case ParsedLineKind::For:
            return "Missing 'end' for for block";
        case ParsedLineKind::Nest:
            return "Missing 'end' for nest block";
        default:
            return "Missing 'end' for function block";
    }
}

class BlockChecker {
public:
    BlockChecker(std::span<const ParsedScriptLine> lines, std::span<const std::uint32_t> indents,
                 bool byIndent)
        : lines_(lines), indents_(indents), byIndent_(byIndent) {}

    std::vector<BlockFault> run() {
        for (at_ = 0; at_ < lines_.size(); ++at_) visit(lines_[at_].kind);
        while (!open_.empty()) leaveOpen();
        return std::move(faults_);
    }

private:
    void visit(ParsedLineKind kind) {
        if (kind == ParsedLineKind::Empty) return;
        noteDeadCode(kind);
        if (opensBlock(kind)) {
            open_.push_back(at_);
        } else if (closesBlock(kind)) {
            close(kind);
        } else if (kind == ParsedLineKind::Break && !isInLoop()) {
            fault(at_, "break used outside a loop");
        }
        if (kind == ParsedLineKind::Return || (kind == ParsedLineKind::Break && isInLoop())) left_ = true;
    }
    void noteDeadCode(ParsedLineKind kind) {
        // A nest block can be reached by its label.
        if (left_ && !closesBlock(kind) && kind != ParsedLineKind::Nest)
            faults_.push_back({at_, "never reached: the block was left before", false});
        left_ = false;
    }
    bool isInLoop() const {
        for (auto block = open_.rbegin(); block != open_.rend(); ++block) {
            if (isLoop(lines_[*block].kind)) return true;
            if (isFunctionKind(lines_[*block].kind)) return false;
        }
        return false;
    }
    static bool accepts(ParsedLineKind opener, ParsedLineKind closer) {
        if (isBranch(closer)) return opener == ParsedLineKind::If;
        return (opener == ParsedLineKind::Repeat) == (closer == ParsedLineKind::Until);
    }
    void close(ParsedLineKind closer) {
        const auto fits = [&](std::uint32_t block) {
            return accepts(lines_[block].kind, closer) && (!byIndent_ || indents_[block] == indents_[at_]);
        };
        auto block = std::find_if(open_.rbegin(), open_.rend(), fits);
        if (block == open_.rend() && !open_.empty() && accepts(lines_[open_.back()].kind, closer) &&
            indents_[at_] > indents_[open_.back()])
            block = open_.rbegin();  // a closer that is indented oddly
        if (block == open_.rend()) {
            fault(at_, "'" + lines_[at_].tokens[0] + "' without a block that it belongs to");
            return;
        }
        for (auto inner = block - open_.rbegin(); inner > 0; --inner) leaveOpen();
        if (!isBranch(closer)) open_.pop_back();
    }
    void leaveOpen() {
        fault(open_.back(), missingCloser(lines_[open_.back()].kind));
        open_.pop_back();
    }
    void fault(std::uint32_t line, std::string message) {
        faults_.push_back({line, std::move(message), true});
    }

    std::span<const ParsedScriptLine> lines_;
    std::span<const std::uint32_t> indents_;
    bool byIndent_;
    std::uint32_t at_ = 0;
    bool left_ = false;
    std::vector<std::uint32_t> open_;
    std::vector<BlockFault> faults_;
};

bool hasError(const std::vector<BlockFault>& faults) {
    return std::any_of(faults.begin(), faults.end(), [](const BlockFault& fault) { return fault.isError; });
}

}  // namespace

std::vector<BlockFault> checkBlocks(std::span<const ParsedScriptLine> lines,
                                    std::span<const std::uint32_t> indents) {
    std::vector<BlockFault> plain = BlockChecker(lines, indents, false).run();
    if (!hasError(plain)) return plain;
    // Something is amiss: now the indentation may say where.
    std::vector<BlockFault> indented = BlockChecker(lines, indents, true).run();
    return hasError(indented) ? indented : plain;
}

}  // namespace kelmora
