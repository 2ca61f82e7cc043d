#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/source_tokens.h"

namespace kelmora {

inline constexpr std::uint32_t noIndex = 0xFFFFFFFFu;

enum class NameUse : std::uint8_t { Read, Write, Function, Local, Parameter, LoopVariable };

// A name in a source: which token it is, and what it stands for as far as the text alone tells.
struct NameOccurrence {
    std::uint32_t token = 0;
    NameUse use = NameUse::Read;
    std::uint32_t binding =
        noIndex;  // of this source; none for names that are looked for outside the function
    std::uint32_t function = noIndex;
};

// A local, a parameter or a loop variable, and the function it belongs to.
struct NameBinding {
    NameUse kind = NameUse::Local;
    std::uint32_t token = 0;  // that makes it
    std::uint32_t function = noIndex;
};

struct FunctionSymbol {
    std::uint32_t first = 0;  // tokens: of its first word
    std::uint32_t name = 0;
    std::uint32_t last = 0;  // of its `end`, or the last one of the source
    std::string path;        // `name`, or `name["key"]` for a member
    std::string parameters;  // with their brackets
    std::uint32_t parent = noIndex;
};

// `nest "label"`
struct LabelSymbol {
    std::string label;
    std::uint32_t token = 0;
    std::uint32_t last = 0;
    std::uint32_t parent = noIndex;
};

// A `name["member"]` that is set.
struct MemberSymbol {
    std::string table;
    std::string member;
    std::uint32_t token = 0;
};

// What names one VesperScript source has and what they mean, also while it is being written: nothing here
// fails.
class SourceSymbols {
public:
    explicit SourceSymbols(std::string source);

    const std::string& source() const { return source_; }
    const std::vector<SourceToken>& tokens() const { return tokens_; }
    // In the order of their tokens.
    const std::vector<NameOccurrence>& occurrences() const { return occurrences_; }
    const std::vector<NameBinding>& bindings() const { return bindings_; }
    const std::vector<FunctionSymbol>& functions() const { return functions_; }
    const std::vector<LabelSymbol>& labels() const { return labels_; }
    const std::vector<MemberSymbol>& members() const { return members_; }

    std::string_view text(std::uint32_t token) const { return textOf(source_, tokens_[token]); }
    // A name without the scope of `name#n`.
    std::string_view name(const NameOccurrence& occurrence) const;
    // Occurrences that no binding of their function explains, by name.
    const std::map<std::string, std::vector<std::uint32_t>, std::less<>>& freeNames() const { return free_; }
    // The token that covers an offset, or ends at it; noIndex when there is none.
    std::uint32_t tokenAt(std::size_t offset) const;
    // The occurrence that a token is, null for other tokens.
    const NameOccurrence* occurrenceAt(std::uint32_t token) const;
    // Names of the locals, parameters and loop variables that can be seen at an offset.
    std::vector<std::string> boundNamesAt(std::size_t offset) const;
    // The comment lines right above a token's line, without their marks.
    std::string commentAbove(std::uint32_t token) const;

private:
    friend class SymbolReader;

    // Where a binding can be seen, in tokens.
    struct Extent {
        std::uint32_t first = 0;
        std::uint32_t last = 0;
    };

    std::string source_;
    std::vector<SourceToken> tokens_;
    std::vector<NameOccurrence> occurrences_;
    std::vector<NameBinding> bindings_;
    std::vector<Extent> extents_;  // of the bindings
    std::vector<FunctionSymbol> functions_;
    std::vector<LabelSymbol> labels_;
    std::vector<MemberSymbol> members_;
    std::map<std::string, std::vector<std::uint32_t>, std::less<>> free_;
};

// A name that a variable may have: no keyword, none of the forms of true and false.
bool isVariableName(std::string_view word);

}  // namespace kelmora
