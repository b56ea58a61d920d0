#pragma once
// UTF-8 <-> wide conversion. Rule data is kept in UTF-8; everything the GUI
// shows is a wide string. Malformed input never throws: bad UTF-8 sequences
// become U+FFFD.
#include <string>
#include <string_view>

namespace platkit::strings {

std::wstring utf8_to_wide(std::string_view utf8);
std::string wide_to_utf8(std::wstring_view wide);

} // namespace platkit::strings
