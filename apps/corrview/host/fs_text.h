#pragma once
// Between std::filesystem paths and text, without the standard library's
// own wide conversion (it follows the C++ locale and throws on a name it
// cannot convert): a path's native form is its bytes, UTF-8 text here.
#include "basekit2/path.h"
#include "platkit/strings/convert.h"

#include <filesystem>
#include <string>

namespace corrview {

inline std::filesystem::path to_fs(const std::wstring& text)
{
    return std::filesystem::path(platkit::strings::wide_to_utf8(text));
}

inline std::filesystem::path to_fs(const basekit2::path_t& path)
{
    return std::filesystem::path(path.utf8());
}

// For showing: bytes that are not UTF-8 show as U+FFFD.
inline std::wstring to_text(const std::filesystem::path& path)
{
    return platkit::strings::utf8_to_wide(path.string());
}

inline basekit2::path_t to_path(const std::filesystem::path& path)
{
    return basekit2::path_t::from_utf8(path.string());
}

} // namespace corrview
