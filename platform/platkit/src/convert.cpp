#include "platkit/strings/convert.h"

namespace platkit::strings {
namespace {
constexpr char32_t replacement = 0xFFFD;

void append_code_point(std::wstring& out, char32_t cp)
{
    if constexpr (sizeof(wchar_t) == 2) {
        if (cp >= 0x10000) {
            cp -= 0x10000;
            out.push_back(static_cast<wchar_t>(0xD800 + (cp >> 10)));
            out.push_back(static_cast<wchar_t>(0xDC00 + (cp & 0x3FF)));
            return;
        }
    }
    out.push_back(static_cast<wchar_t>(cp));
}

void append_utf8(std::string& out, char32_t cp)
{
    if (cp < 0x80) {
        out.push_back(static_cast<char>(cp));
    } else if (cp < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else if (cp < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
        out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else {
        out.push_back(static_cast<char>(0xF0 | (cp >> 18)));
        out.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    }
}

// Decodes one UTF-8 sequence at in[i]; returns its length, 0 when it is not
// a valid sequence.
size_t decode_one(std::string_view in, size_t i, char32_t& out)
{
    const auto c = static_cast<unsigned char>(in[i]);
    if (c < 0x80) {
        out = c;
        return 1;
    }
    int extra = 0;
    char32_t cp = 0;
    char32_t min = 0;
    if ((c & 0xE0) == 0xC0)
        extra = 1, cp = c & 0x1F, min = 0x80;
    else if ((c & 0xF0) == 0xE0)
        extra = 2, cp = c & 0x0F, min = 0x800;
    else if ((c & 0xF8) == 0xF0)
        extra = 3, cp = c & 0x07, min = 0x10000;
    else
        return 0;
    if (i + extra >= in.size())
        return 0;
    for (int k = 1; k <= extra; ++k) {
        const auto cc = static_cast<unsigned char>(in[i + k]);
        if ((cc & 0xC0) != 0x80)
            return 0;
        cp = (cp << 6) | (cc & 0x3F);
    }
    if (cp < min || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF))
        return 0;
    out = cp;
    return static_cast<size_t>(extra) + 1;
}

bool is_escaped_byte(char32_t cp) { return cp >= escaped_byte_base && cp <= escaped_byte_base + 0xFF; }

char32_t code_point_at(std::wstring_view in, size_t& i)
{
    char32_t cp = static_cast<char32_t>(in[i]);
    if constexpr (sizeof(wchar_t) == 2) {
        if (cp >= 0xD800 && cp <= 0xDBFF && i + 1 < in.size()) {
            const char32_t lo = static_cast<char32_t>(in[i + 1]);
            if (lo >= 0xDC00 && lo <= 0xDFFF) {
                cp = 0x10000 + ((cp - 0xD800) << 10) + (lo - 0xDC00);
                ++i;
            }
        }
    }
    return cp;
}
} // namespace

std::wstring native_to_wide(std::string_view in)
{
    std::wstring out;
    out.reserve(in.size());
    size_t i = 0;
    while (i < in.size()) {
        char32_t cp = 0;
        const size_t n = decode_one(in, i, cp);
        if (n == 0 || is_escaped_byte(cp)) {
            // Not text, or text that would read back as an escaped byte: keep
            // the bytes, one code point each.
            const size_t count = n == 0 ? 1 : n;
            for (size_t k = 0; k < count; ++k)
                append_code_point(out, escaped_byte_base + static_cast<unsigned char>(in[i + k]));
            i += count;
            continue;
        }
        append_code_point(out, cp);
        i += n;
    }
    return out;
}

std::string wide_to_native(std::wstring_view in)
{
    std::string out;
    out.reserve(in.size());
    for (size_t i = 0; i < in.size(); ++i) {
        char32_t cp = code_point_at(in, i);
        if (is_escaped_byte(cp)) {
            out.push_back(static_cast<char>(cp - escaped_byte_base));
            continue;
        }
        if (cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF))
            cp = replacement;
        append_utf8(out, cp);
    }
    return out;
}

std::wstring display_name(std::wstring_view in)
{
    std::wstring out;
    out.reserve(in.size());
    for (size_t i = 0; i < in.size(); ++i) {
        const size_t start = i;
        const char32_t cp = code_point_at(in, i);
        if (is_escaped_byte(cp))
            append_code_point(out, replacement);
        else
            out.append(in.substr(start, i - start + 1));
    }
    return out;
}

std::wstring utf8_to_wide(std::string_view in)
{
    std::wstring out;
    out.reserve(in.size());
    size_t i = 0;
    while (i < in.size()) {
        const auto c = static_cast<unsigned char>(in[i]);
        if (c < 0x80) {
            out.push_back(static_cast<wchar_t>(c));
            ++i;
            continue;
        }
        int extra = 0;
        char32_t cp = 0;
        char32_t min = 0;
        if ((c & 0xE0) == 0xC0) {
            extra = 1, cp = c & 0x1F, min = 0x80;
        } else if ((c & 0xF0) == 0xE0) {
            extra = 2, cp = c & 0x0F, min = 0x800;
        } else if ((c & 0xF8) == 0xF0) {
            extra = 3, cp = c & 0x07, min = 0x10000;
        } else {
            append_code_point(out, replacement);
            ++i;
            continue;
        }
        if (i + extra >= in.size()) { // sequence cut off by the end of the input
            append_code_point(out, replacement);
            break;
        }
        bool ok = true;
        for (int k = 1; k <= extra; ++k) {
            const auto cc = static_cast<unsigned char>(in[i + k]);
            if ((cc & 0xC0) != 0x80) {
                ok = false;
                break;
            }
            cp = (cp << 6) | (cc & 0x3F);
        }
        if (!ok || cp < min || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) {
            append_code_point(out, replacement);
            ++i;
            continue;
        }
        append_code_point(out, cp);
        i += extra + 1;
    }
    return out;
}

std::string wide_to_utf8(std::wstring_view in)
{
    std::string out;
    out.reserve(in.size());
    for (size_t i = 0; i < in.size(); ++i) {
        char32_t cp = static_cast<char32_t>(in[i]);
        if constexpr (sizeof(wchar_t) == 2) {
            if (cp >= 0xD800 && cp <= 0xDBFF && i + 1 < in.size()) {
                const char32_t lo = static_cast<char32_t>(in[i + 1]);
                if (lo >= 0xDC00 && lo <= 0xDFFF) {
                    cp = 0x10000 + ((cp - 0xD800) << 10) + (lo - 0xDC00);
                    ++i;
                }
            }
        }
        if (cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF))
            cp = replacement;
        append_utf8(out, cp);
    }
    return out;
}

} // namespace platkit::strings
