#pragma once
// Conversions between the engine's wide strings and the UTF-8 of the console.
#include "basekit2/path.h"
#include "platkit/strings/convert.h"

#include <string>
#include <string_view>

namespace corrtool {

inline std::string utf8(const std::wstring& s)
{
    return platkit::strings::wide_to_utf8(s);
}

// Text for the terminal. Analyser output holds whatever the program printed;
// control characters (escape sequences among them) are shown as \xNN
// instead of reaching the terminal. Tab stays.
inline std::string shown(std::string_view text)
{
    static const char digits[] = "0123456789ABCDEF";
    std::string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        const bool c1 = c == 0xC2 && i + 1 < text.size() &&
                        static_cast<unsigned char>(text[i + 1]) >= 0x80 &&
                        static_cast<unsigned char>(text[i + 1]) <= 0x9F; // U+0080..U+009F
        if ((c < 0x20 && c != '\t') || c == 0x7F) {
            out += "\\x";
            out += digits[c >> 4];
            out += digits[c & 0xF];
        } else if (c1) {
            const auto code = static_cast<unsigned char>(text[++i]);
            out += "\\u00";
            out += digits[code >> 4];
            out += digits[code & 0xF];
        } else {
            out += static_cast<char>(c);
        }
    }
    return out;
}

inline std::string shown(const std::wstring& text) { return shown(utf8(text)); }

// A path as its bytes, which need not be UTF-8 (the terminal shows them as
// ls does), with control characters escaped.
inline std::string shown(const basekit2::path_t& path) { return shown(path.native()); }

inline basekit2::path_t path_arg(const std::string& arg)
{
    return basekit2::path_t::from_utf8(arg);
}

} // namespace corrtool
