#include "workbench/nearest.h"

#include <algorithm>
#include <vector>

namespace kelmora {
namespace {

// Letters to change, insert, take away or swap with their neighbour. Words are short: three rows will do.
std::size_t editDistance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> before(b.size() + 1);
    std::vector<std::size_t> last(b.size() + 1);
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) last[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1)});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                row[j] = std::min(row[j], before[j - 2] + 1);
        }
        std::swap(before, last);
        std::swap(last, row);
    }
    return last[b.size()];
}

}  // namespace

std::string nearestWord(std::string_view word, std::span<const std::string> known) {
    const std::size_t allowed = word.size() < 3 ? 0 : word.size() < 6 ? 1 : 2;
    std::size_t best = allowed + 1;
    std::string nearest;
    for (const std::string& candidate : known) {
        const std::size_t longer = std::max(candidate.size(), word.size());
        if (longer - std::min(candidate.size(), word.size()) >= best) continue;
        const std::size_t distance = editDistance(word, candidate);
        if (distance >= best) continue;
        best = distance;
        nearest = candidate;
    }
    return nearest;
}

}  // namespace kelmora
