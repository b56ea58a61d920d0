#pragma once
// UTF-8 <-> wide conversion. Rule data is kept in UTF-8; everything the GUI
// shows is a wide string. Malformed input never throws: bad UTF-8 sequences
// become U+FFFD.
#include <string>
#include <string_view>

namespace platkit::strings {

std::wstring utf8_to_wide(std::string_view utf8);
std::string wide_to_utf8(std::wstring_view wide);

// File names. Linux allows any bytes in a name but '/' and NUL, so a name
// need not be UTF-8. native_to_wide() decodes UTF-8 and maps each byte that
// is not part of a valid sequence to the private-use code point
// U+100000 + byte (U+100080..U+1000FF); wide_to_native() maps those code
// points back to their byte. The round trip bytes -> wide -> bytes is exact
// for every name. A name that holds one of those code points as valid UTF-8
// is treated as undecodable bytes too, so that it also comes back unchanged.
// Shown to a user, such a byte is a private-use character; display_name()
// turns it into U+FFFD for messages.
constexpr char32_t escaped_byte_base = 0x100000;
std::wstring native_to_wide(std::string_view bytes);
std::string wide_to_native(std::wstring_view wide);
// The text to show for a name from native_to_wide(): escaped bytes become U+FFFD.
std::wstring display_name(std::wstring_view wide);

} // namespace platkit::strings
