#include "basekit2/path.h"

#include <cwctype>

namespace basekit2 {
namespace {

struct char_eq
{
    bool case_sensitive;
    bool operator()(wchar_t pattern, wchar_t c) const
    {
        if (pattern == L'?')
            return true;
        return case_sensitive ? pattern == c : std::towlower(pattern) == std::towlower(c);
    }
};

// Does the '*'-free segment match text at position pos?
bool segment_at(std::wstring_view text, size_t pos, std::wstring_view segment, char_eq eq)
{
    if (pos + segment.size() > text.size())
        return false;
    for (size_t i = 0; i < segment.size(); ++i)
        if (!eq(segment[i], text[pos + i]))
            return false;
    return true;
}

} // namespace

// The mask is split at '*' into segments. The first segment must match at the
// start, the last at the end, and the ones between are placed greedily at
// their leftmost match: leftmost placement never loses a match, so no
// backtracking is needed.
bool wildcard_match(std::wstring_view text, std::wstring_view mask, bool case_sensitive)
{
    const char_eq eq{case_sensitive};
    const size_t first_star = mask.find(L'*');
    if (first_star == std::wstring_view::npos)
        return mask.size() == text.size() && segment_at(text, 0, mask, eq);

    const std::wstring_view head = mask.substr(0, first_star);
    const size_t last_star = mask.rfind(L'*');
    const std::wstring_view tail = mask.substr(last_star + 1);
    if (head.size() + tail.size() > text.size())
        return false;
    if (!segment_at(text, 0, head, eq) || !segment_at(text, text.size() - tail.size(), tail, eq))
        return false;

    size_t pos = head.size();
    const size_t limit = text.size() - tail.size();
    size_t i = first_star + 1;
    while (i < last_star) {
        const size_t next = mask.find(L'*', i);
        const std::wstring_view segment = mask.substr(i, next - i);
        i = next + 1;
        if (segment.empty())
            continue;
        bool found = false;
        if (case_sensitive && segment.find(L'?') == std::wstring_view::npos) {
            // Plain text: the library's search (vectorised) finds it fastest.
            const size_t at = text.substr(0, limit).find(segment, pos);
            found = at != std::wstring_view::npos;
            pos = found ? at : pos;
        } else {
            for (; pos + segment.size() <= limit; ++pos) {
                if (segment_at(text, pos, segment, eq)) {
                    found = true;
                    break;
                }
            }
        }
        if (!found)
            return false;
        pos += segment.size();
    }
    return true;
}

} // namespace basekit2
