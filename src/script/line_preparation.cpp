#include <stdexcept>

#include "script/line_parser.h"
#include "script/parsed_header.h"
#include "script/token_groups.h"

namespace kelmora {
namespace {

ParsedLineKind classifyLine(const ParsedScriptLine& line) {
    if (line.tokens.empty()) return ParsedLineKind::Empty;
    const std::string& first = line.tokens[0];
    const bool declares = line.tokens.size() > 1 && line.tokens[1] == "function";
    if (first == "if") return ParsedLineKind::If;
    if (first == "elseif") return ParsedLineKind::ElseIf;
    if (first == "else") return ParsedLineKind::Else;
    if (first == "end") return ParsedLineKind::End;
    if (first == "while") return ParsedLineKind::While;
    if (first == "repeat") return ParsedLineKind::Repeat;
    if (first == "until") return ParsedLineKind::Until;
    if (first == "for") return ParsedLineKind::For;
    if (first == "function") return ParsedLineKind::Function;
    if (first == "decay" && declares) return ParsedLineKind::DecayFunction;
    if (first == "native" && declares) return ParsedLineKind::NativeFunction;
    if (first == "local" && declares) return ParsedLineKind::LocalFunction;
    if (first == "nest") return ParsedLineKind::Nest;
    if (first == "return") return ParsedLineKind::Return;
    if (first == "break") return ParsedLineKind::Break;
    return ParsedLineKind::Other;
}

// A variable, a string or a parenthesis with bracket groups behind it, the last of them a call.
bool isCallRange(const ParsedScriptLine& line, const PreparedExpression& range) {
    if (range.first >= range.last) return false;
    const TokenAnalysis& head = line.analysis[range.first];
    std::uint32_t at = range.first + 1;
    if (head.kind == TokenKind::OpenParenthesis) {
        at = closingToken(line, range.first) + 1;
    } else if (!head.isIdentifier() && head.kind != TokenKind::String) {
        return false;
    }
    bool lastIsCall = false;
    while (at < range.last) {
        const TokenKind kind = line.analysis[at].kind;
        if (kind != TokenKind::OpenParenthesis && kind != TokenKind::OpenBracket) return false;
        lastIsCall = kind == TokenKind::OpenParenthesis;
        at = closingToken(line, at) + 1;
    }
    return lastIsCall;
}

class AssignmentReader {
public:
    explicit AssignmentReader(const ParsedScriptLine& line) : line_(line) {}

    std::shared_ptr<const ParsedAssignment> read() {
        readScopeTarget();
        if (!readTargets()) return nullptr;
        if (at_ == line_.tokens.size()) {
            if (!declaresWithoutValue()) return nullptr;
        } else {
            if (!isAssignmentOperator(line_.analysis[at_].kind)) return nullptr;
            result_.operation = line_.analysis[at_].kind;
            result_.values = splitAtCommas(line_, at_ + 1, static_cast<std::uint32_t>(line_.tokens.size()));
        }
        result_.valueIsSingleCall = result_.values.size() == 1 && isCallRange(line_, result_.values[0]);
        return std::make_shared<const ParsedAssignment>(std::move(result_));
    }

private:
    void readScopeTarget() {
        const std::string& first = line_.tokens[0];
        if (first == "native") result_.scopeTarget = ScopeTarget::Native;
        if (first == "local") result_.scopeTarget = ScopeTarget::Local;
        if (first == "external") result_.scopeTarget = ScopeTarget::External;
        at_ = result_.scopeTarget == ScopeTarget::Default ? 0 : 1;
    }
    bool declaresWithoutValue() const {
        return result_.scopeTarget == ScopeTarget::Local || result_.scopeTarget == ScopeTarget::External;
    }
    bool readTargets() {
        for (;;) {
            if (at_ >= line_.tokens.size() || !line_.analysis[at_].isIdentifier()) return false;
            ParsedAssignmentTarget target;
            target.tokenIndex = at_++;
            if (!readKeys(target)) return false;
            result_.targets.push_back(std::move(target));
            if (at_ >= line_.tokens.size() || line_.analysis[at_].kind != TokenKind::Comma) return true;
            ++at_;
        }
    }
    bool readKeys(ParsedAssignmentTarget& target) {
        while (at_ < line_.tokens.size() && line_.analysis[at_].kind == TokenKind::OpenBracket) {
            const std::uint32_t close = closingToken(line_, at_);
            if (close == line_.tokens.size() || line_.analysis[close].kind != TokenKind::CloseBracket ||
                close == at_ + 1)
                return false;
            target.keys.push_back(prepareExpression(line_, at_ + 1, close));
            at_ = close + 1;
        }
        return true;
    }

    const ParsedScriptLine& line_;
    ParsedAssignment result_;
    std::uint32_t at_ = 0;
};

void readNestLabel(ParsedScriptLine& line) {
    if (line.tokens.size() < 2) return;
    if (line.analysis[1].kind != TokenKind::String)
        throw std::runtime_error("nest labels must be string literals");
    line.nestLabel = decodeStringToken(line.tokens[1]);
    if (line.nestLabel.empty()) throw std::runtime_error("nest label must not be empty");
    line.hasNestLabel = true;
}

bool hasCondition(ParsedLineKind kind) {
    return kind == ParsedLineKind::If || kind == ParsedLineKind::ElseIf || kind == ParsedLineKind::While ||
           kind == ParsedLineKind::Until;
}

class BlockMatcher {
public:
    explicit BlockMatcher(std::vector<ParsedScriptLine>& lines) : lines_(lines) {}

    void run() {
        for (std::uint32_t i = 0; i < lines_.size(); ++i) visit(i);
    }

private:
    struct Block {
        ParsedLineKind kind;
        std::vector<std::uint32_t> branches;  // the opener, then the further branches of an if
    };

    void visit(std::uint32_t index) {
        const ParsedLineKind kind = lines_[index].kind;
        switch (kind) {
            case ParsedLineKind::If:
            case ParsedLineKind::While:
            case ParsedLineKind::For:
            case ParsedLineKind::Nest:
            case ParsedLineKind::Repeat:
                open_.push_back({kind, {index}});
                break;
            case ParsedLineKind::ElseIf:
            case ParsedLineKind::Else:
                addBranch(index);
                break;
            case ParsedLineKind::Until:
                close(index, true);
                break;
            case ParsedLineKind::End:
                close(index, false);
                break;
            default:
                if (isFunctionKind(kind)) open_.push_back({kind, {index}});
                break;
        }
    }
    void addBranch(std::uint32_t index) {
        if (open_.empty() || open_.back().kind != ParsedLineKind::If) return;
        lines_[open_.back().branches.back()].nextBranchIndex = index;
        open_.back().branches.push_back(index);
    }
    void close(std::uint32_t index, bool isUntil) {
        if (open_.empty() || (open_.back().kind == ParsedLineKind::Repeat) != isUntil) return;
        for (const std::uint32_t branch : open_.back().branches) lines_[branch].endIndex = index;
        open_.pop_back();
    }

    std::vector<ParsedScriptLine>& lines_;
    std::vector<Block> open_;
};

}  // namespace

void prepareLine(ParsedScriptLine& line) {
    line.kind = classifyLine(line);
    line.hasNestLabel = false;
    line.endIndex = noLine;
    line.nextBranchIndex = noLine;
    line.assignment.reset();
    line.returnValues.clear();
    line.expression = {};
    line.nestLabel.clear();
    line.forHeader.reset();
    line.functionHeader.reset();
    const auto end = static_cast<std::uint32_t>(line.tokens.size());
    if (line.kind == ParsedLineKind::Other) {
        line.assignment = AssignmentReader(line).read();
        if (!line.assignment) line.expression = prepareExpression(line, 0, end);
    }
    if (hasCondition(line.kind)) line.expression = prepareExpression(line, 1, end);
    if (line.kind == ParsedLineKind::Return && line.tokens.size() > 1)
        line.returnValues = splitAtCommas(line, 1, end);
    if (line.kind == ParsedLineKind::For)
        line.forHeader = std::make_shared<const ParsedFor>(parseForHeader(line));
    if (isFunctionKind(line.kind))
        line.functionHeader = std::make_shared<const ParsedFunctionHeader>(parseFunctionHeader(line));
    if (line.kind == ParsedLineKind::Nest) readNestLabel(line);
}

void linkBlocks(std::vector<ParsedScriptLine>& lines) {
    BlockMatcher(lines).run();
}

void prepareParsedLines(std::vector<ParsedScriptLine>& lines) {
    for (ParsedScriptLine& line : lines) prepareLine(line);
    linkBlocks(lines);
}

}  // namespace kelmora
