#pragma once

#include <cstddef>
#include <string>

#include "tool/editor/json_rpc.h"
#include "tool/editor/script_workspace.h"
#include "workbench/text_positions.h"
#include "workbench/word_book.h"

// What an editor asks about an open script, in the language server protocol's shapes.
namespace kelmora {

// A place in a script of a project.
struct QueryPlace {
    const ScriptProject& project;
    const SourceSymbols& symbols;
    std::string path;
    std::size_t offset = 0;
};

// Turns paths into the addresses that the editor knows them by.
class ScriptAddresses {
public:
    virtual ~ScriptAddresses() = default;
    virtual std::string uriOf(const std::string& path) const = 0;
};

Json rangeJson(const TextPositions& positions, std::size_t begin, std::size_t end);

Json completionAt(const QueryPlace& place, const WordBook& words);
// The item with its documentation.
Json completionDocumented(const Json& item, const WordBook& words);
Json hoverAt(const QueryPlace& place, const WordBook& words);
Json locationsJson(const QueryPlace& place, const std::vector<SourceSpan>& spans,
                   const ScriptAddresses& addresses);
Json outlineOf(const SourceSymbols& symbols);
// A workspace edit. Raises RpcError when the rename is refused.
Json renameAt(const QueryPlace& place, const std::string& newName, const ScriptAddresses& addresses);
// The edits of the lines that change. Raises RpcError for what cannot be formatted.
Json formattingOf(const std::string& source);
Json diagnosticsJson(const std::string& source, const std::vector<Diagnostic>& faults);

}  // namespace kelmora
