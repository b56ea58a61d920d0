#include "text_syntax.h"

#include <cstring>

namespace suppfmt3::syntax {
namespace {

bool is_blank(char c) { return c == ' ' || c == '\t'; }

int hex_value(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

} // namespace

text_fault find_text_fault(std::string_view text)
{
    const auto* s = reinterpret_cast<const unsigned char*>(text.data());
    const size_t n = text.size();
    size_t i = 0;
    while (i < n) {
        // Most text is printable ASCII: skip it eight bytes at a time. A
        // block with a high bit or a byte below 0x20 is looked at bytewise.
        while (i + 8 <= n) {
            std::uint64_t block;
            std::memcpy(&block, s + i, 8);
            const std::uint64_t below_space = (block - 0x2020202020202020ull) & ~block & 0x8080808080808080ull;
            if ((block & 0x8080808080808080ull) || below_space)
                break;
            i += 8;
        }
        if (i >= n)
            break;
        const unsigned char c = s[i];
        if (c < 0x80) {
            if (c < 0x20 && c != '\t' && c != '\n' && !(c == '\r' && i + 1 < n && s[i + 1] == '\n'))
                return {text_fault::control_character, i};
            ++i;
            continue;
        }
        size_t len = 0;
        std::uint32_t cp = 0;
        if ((c & 0xE0) == 0xC0) {
            len = 2;
            cp = c & 0x1F;
        } else if ((c & 0xF0) == 0xE0) {
            len = 3;
            cp = c & 0x0F;
        } else if ((c & 0xF8) == 0xF0) {
            len = 4;
            cp = c & 0x07;
        } else {
            return {text_fault::invalid_utf8, i};
        }
        if (i + len > n)
            return {text_fault::invalid_utf8, i};
        for (size_t k = 1; k < len; ++k) {
            if ((s[i + k] & 0xC0) != 0x80)
                return {text_fault::invalid_utf8, i};
            cp = (cp << 6) | (s[i + k] & 0x3F);
        }
        // Overlong forms, surrogates and values beyond Unicode are not UTF-8.
        const std::uint32_t min_cp = len == 2 ? 0x80 : len == 3 ? 0x800 : 0x10000;
        if (cp < min_cp || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF))
            return {text_fault::invalid_utf8, i};
        i += len;
    }
    return {};
}

void append_quoted(std::string& out, std::string_view value)
{
    static const char digits[] = "0123456789abcdef";
    out += '"';
    size_t run = 0; // start of the characters not yet appended
    for (size_t i = 0; i < value.size(); ++i) {
        const auto c = static_cast<unsigned char>(value[i]);
        if (c >= 0x20 && c != '"' && c != '\\' && c != 0x7F)
            continue;
        out.append(value.data() + run, i - run);
        run = i + 1;
        switch (c) {
        case '"':
            out += "\\\"";
            break;
        case '\\':
            out += "\\\\";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\t':
            out += "\\t";
            break;
        default:
            out += "\\x";
            out += digits[c >> 4];
            out += digits[c & 0xF];
        }
    }
    out.append(value.data() + run, value.size() - run);
    out += '"';
}

void line_scanner::skip_blanks()
{
    while (m_pos < m_line.size() && is_blank(m_line[m_pos]))
        ++m_pos;
}

bool line_scanner::at_end()
{
    skip_blanks();
    return m_pos >= m_line.size();
}

bool line_scanner::next_is_quote()
{
    skip_blanks();
    return m_pos < m_line.size() && m_line[m_pos] == '"';
}

std::string_view line_scanner::peek_word()
{
    const size_t saved = m_pos;
    const std::string_view w = word();
    m_pos = saved;
    return w;
}

std::string_view line_scanner::word()
{
    skip_blanks();
    if (m_pos >= m_line.size() || m_line[m_pos] == '"')
        return {};
    const size_t start = m_pos;
    while (m_pos < m_line.size() && !is_blank(m_line[m_pos]))
        ++m_pos;
    return m_line.substr(start, m_pos - start);
}

bool line_scanner::quoted(std::string& value, std::string& error)
{
    skip_blanks();
    if (m_pos >= m_line.size() || m_line[m_pos] != '"') {
        error = "expected a quoted string";
        return false;
    }
    ++m_pos;
    value.clear();
    while (m_pos < m_line.size()) {
        // Plain characters are taken as a run up to the next quote or escape.
        size_t end = m_pos;
        while (end < m_line.size()) {
            const char p = m_line[end];
            if (p == '"' || p == '\\' || (static_cast<unsigned char>(p) < 0x20 && p != '\t'))
                break;
            ++end;
        }
        value.append(m_line.data() + m_pos, end - m_pos);
        m_pos = end;
        if (m_pos >= m_line.size())
            break;
        const char c = m_line[m_pos++];
        if (c == '"') {
            if (m_pos < m_line.size() && !is_blank(m_line[m_pos])) {
                error = "a quoted string must be followed by a blank";
                return false;
            }
            return true;
        }
        if (c == '\\') {
            if (m_pos >= m_line.size())
                break;
            const char e = m_line[m_pos++];
            switch (e) {
            case '"':
            case '\\':
                value += e;
                break;
            case 'n':
                value += '\n';
                break;
            case 'r':
                value += '\r';
                break;
            case 't':
                value += '\t';
                break;
            case 'x': {
                const int hi = m_pos < m_line.size() ? hex_value(m_line[m_pos]) : -1;
                const int lo = m_pos + 1 < m_line.size() ? hex_value(m_line[m_pos + 1]) : -1;
                if (hi < 0 || lo < 0 || hi > 7) {
                    error = "'\\x' must be followed by two hex digits of a character below 80";
                    return false;
                }
                value += static_cast<char>(hi * 16 + lo);
                m_pos += 2;
                break;
            }
            default:
                error = std::string("unknown escape sequence '\\") + e + "'";
                return false;
            }
            continue;
        }
        if (static_cast<unsigned char>(c) < 0x20 && c != '\t') {
            error = "control character in a string (write it as an escape sequence)";
            return false;
        }
        value += c;
    }
    error = "the string is not closed by '\"' on this line";
    return false;
}

std::string_view line_scanner::rest()
{
    skip_blanks();
    const std::string_view r = m_line.substr(m_pos);
    m_pos = m_line.size();
    return trim(r);
}

bool parse_uint64(std::string_view text, std::uint64_t& value)
{
    if (text.empty() || text.size() > 20)
        return false;
    std::uint64_t v = 0;
    for (const char c : text) {
        if (c < '0' || c > '9')
            return false;
        const auto d = static_cast<std::uint64_t>(c - '0');
        if (v > (UINT64_MAX - d) / 10)
            return false;
        v = v * 10 + d;
    }
    value = v;
    return true;
}

std::string_view trim(std::string_view text)
{
    while (!text.empty() && is_blank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && is_blank(text.back()))
        text.remove_suffix(1);
    return text;
}

bool is_blank_line(std::string_view line) { return trim(line).empty(); }

bool is_comment_line(std::string_view line)
{
    const std::string_view t = trim(line);
    return !t.empty() && t.front() == '#';
}

} // namespace suppfmt3::syntax
