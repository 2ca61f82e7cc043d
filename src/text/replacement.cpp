#include "text/replacement.h"

namespace kelmora {
namespace {

const regex::Capture* lastTakingPart(const regex::Captures& captures) {
    for (std::size_t i = captures.size(); i-- > 1;)
        if (captures[i].tookPart) return &captures[i];
    return nullptr;
}

}  // namespace

void appendReplacement(std::string& out, std::string_view replacement, const std::string& subject,
                       const regex::Captures& captures) {
    const regex::Capture& whole = captures[0];
    for (std::size_t i = 0; i < replacement.size(); ++i) {
        const char c = replacement[i];
        if (c != '\\' || i + 1 == replacement.size()) {
            out += c;
            continue;
        }
        const char form = replacement[++i];
        if (form == '0' || form == '&') {
            out += whole.in(subject);
        } else if (form >= '1' && form <= '9') {
            const auto group = static_cast<std::size_t>(form - '0');
            if (group < captures.size() && captures[group].tookPart) out += captures[group].in(subject);
        } else if (form == '\'') {
            out.append(subject, whole.end);
        } else if (form == '`') {
            out.append(subject, 0, whole.begin);
        } else if (form == '+') {
            if (const regex::Capture* last = lastTakingPart(captures)) out += last->in(subject);
        } else {
            out += c;
            out += form;
        }
    }
}

}  // namespace kelmora
