#pragma once
// Between std::filesystem paths and text, without the standard library's
// own wide conversion (it follows the C++ locale and throws on a name it
// cannot convert); see basekit2/path.h.
#include "basekit2/path.h"
#include "platkit/strings/convert.h"

#include <filesystem>
#include <string>

namespace corrview {

inline std::filesystem::path to_fs(const std::wstring& text)
{
    return basekit2::to_fs(text);
}

inline std::filesystem::path to_fs(const basekit2::path_t& path)
{
    return path.fs();
}

// Lossless: a name that is not UTF-8 comes back from to_fs() unchanged.
inline std::wstring to_text(const std::filesystem::path& path)
{
    return basekit2::from_fs(path);
}

inline basekit2::path_t to_path(const std::filesystem::path& path)
{
    return basekit2::path_t(path);
}

} // namespace corrview
