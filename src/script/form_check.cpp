#include "script/form_check.h"

#include <stdexcept>

#include "script/expression_walk.h"
#include "script/interpreter.h"

namespace kelmora {
namespace {

class FormChecker {
public:
    FormChecker(Interpreter& script, const ParsedScriptLine& line) : script_(script), line_(line) {}

    std::optional<FormFault> check() {
        switch (line_.kind) {
            case ParsedLineKind::Other:
                return line_.assignment ? checkAssignment()
                                        : checkRange(line_.expression, "Unexpected trailing token");
            case ParsedLineKind::If:
            case ParsedLineKind::ElseIf:
            case ParsedLineKind::While:
            case ParsedLineKind::Until:
                return checkRange(line_.expression,
                                  "Unexpected token after " + line_.tokens[0] + " condition");
            case ParsedLineKind::Return:
                return checkRanges(line_.returnValues, "Unexpected token after return value");
            case ParsedLineKind::For:
                return checkFor(*line_.forHeader);
            default:
                return line_.functionHeader ? checkFunction(*line_.functionHeader) : std::nullopt;
        }
    }

private:
    std::optional<FormFault> checkRange(const PreparedExpression& range, const std::string& leftover) {
        std::uint32_t index = range.first;
        try {
            ExpressionWalk(script_, line_, index, ExpressionWalk::Mode::Check).evaluate();
        } catch (const std::runtime_error& error) {
            return FormFault{reportMessage(error.what()), index};
        }
        if (index == range.last) return std::nullopt;
        return FormFault{leftover, index};
    }
    std::optional<FormFault> checkRanges(const std::vector<PreparedExpression>& ranges,
                                         const std::string& leftover) {
        for (const PreparedExpression& range : ranges)
            if (auto fault = checkRange(range, leftover)) return fault;
        return std::nullopt;
    }
    std::optional<FormFault> checkAssignment() {
        const ParsedAssignment& assignment = *line_.assignment;
        for (const ParsedAssignmentTarget& target : assignment.targets)
            if (auto fault = checkRanges(target.keys, "Expected closing bracket")) return fault;
        return checkRanges(assignment.values, "Unexpected token in assignment expression");
    }
    std::optional<FormFault> checkFor(const ParsedFor& header) {
        if (!header.fault.message.empty()) return headerFault(header.fault);
        if (!header.isNumeric) return checkRange(header.iterator, "Unexpected token after for iterator");
        constexpr const char* missingStop = "Expected ',' after for start value";
        constexpr const char* trailing = "Unexpected token after for clause";
        for (std::size_t i = 0; i < header.bounds.size(); ++i)
            if (auto fault = checkRange(header.bounds[i], i == 0 ? missingStop : trailing)) return fault;
        if (header.bounds.size() < 2) return FormFault{missingStop, endOfLine()};
        if (header.bounds.size() > 3) return FormFault{trailing, header.bounds[3].first - 1};
        return std::nullopt;
    }
    std::optional<FormFault> checkFunction(const ParsedFunctionHeader& header) {
        if (!header.fault.message.empty()) return headerFault(header.fault);
        return checkRanges(header.keys, "Expected closing bracket in function target");
    }
    static FormFault headerFault(const HeaderFault& fault) {
        return {std::string(fault.message), fault.token};
    }
    std::uint32_t endOfLine() const { return static_cast<std::uint32_t>(line_.tokens.size()); }

    Interpreter& script_;
    const ParsedScriptLine& line_;
};

}  // namespace

std::string reportMessage(const std::string& report) {
    constexpr std::string_view head = "VesperScript error: ";
    if (!report.starts_with(head)) return report;
    return report.substr(head.size(), report.find('\n') - head.size());
}

std::optional<FormFault> checkForm(Interpreter& script, const ParsedScriptLine& line, bool isVariadic) {
    const SourceLineGuard guard(script.context);
    script.context.setLine(line);
    if (!isVariadic) return FormChecker(script, line).check();
    script.varargs.emplace_back();
    std::optional<FormFault> fault = FormChecker(script, line).check();
    script.varargs.pop_back();
    return fault;
}

}  // namespace kelmora
