#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace kelmora {

struct Code;

// Keeps what was compiled from a source for each interpreter that runs it. A copy starts without.
class CodeCache {
public:
    CodeCache() = default;
    CodeCache(const CodeCache&) {}
    CodeCache& operator=(const CodeCache&) {
        rows_.clear();
        return *this;
    }
    CodeCache(CodeCache&&) = default;
    CodeCache& operator=(CodeCache&&) = default;

    // The code at this index in the interpreter's row.
    template <typename Make>
    const Code& get(std::uint64_t interpreter, std::size_t index, Make&& make) {
        std::vector<std::shared_ptr<const Code>>& row = rowOf(interpreter);
        if (index >= row.size()) row.resize(index + 1);
        if (!row[index]) row[index] = make();
        return *row[index];
    }

private:
    struct Row {
        std::uint64_t interpreter;
        std::vector<std::shared_ptr<const Code>> codes;
    };
    std::vector<std::shared_ptr<const Code>>& rowOf(std::uint64_t interpreter) {
        for (Row& row : rows_)
            if (row.interpreter == interpreter) return row.codes;
        return rows_.emplace_back(Row{interpreter, {}}).codes;
    }
    std::vector<Row> rows_;
};

}  // namespace kelmora
