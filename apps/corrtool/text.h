#pragma once
// Conversions between the engine's wide strings and the UTF-8 of the console.
#include "basekit2/path.h"
#include "platkit/strings/convert.h"

#include <string>

namespace corrtool {

inline std::string utf8(const std::wstring& s)
{
    return platkit::strings::wide_to_utf8(s);
}

inline basekit2::path_t path_arg(const std::string& arg)
{
    return basekit2::path_t::from_utf8(arg);
}

} // namespace corrtool
