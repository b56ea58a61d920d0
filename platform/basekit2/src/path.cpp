#include "basekit2/path.h"

#include "platkit/strings/convert.h"

#include <algorithm>
#include <system_error>

namespace fs = std::filesystem;

namespace basekit2 {

std::shared_ptr<const std::wstring> path_t::make_text(std::wstring text)
{
    if (text.empty())
        return nullptr;
    return std::make_shared<const std::wstring>(std::move(text));
}

const std::wstring& path_t::empty_text()
{
    static const std::wstring empty;
    return empty;
}

namespace {
// std::filesystem converts wide text with the global C++ locale, which is
// "C" unless a program sets another, and then throws on any non-ASCII
// letter. On POSIX a path is bytes: go through UTF-8 (lossless both ways).
#ifdef _WIN32
fs::path to_fs(const std::wstring& text) { return fs::path(text); }
std::wstring from_fs(const fs::path& p) { return p.wstring(); }
#else
fs::path to_fs(const std::wstring& text) { return fs::path(platkit::strings::wide_to_utf8(text)); }
std::wstring from_fs(const fs::path& p) { return platkit::strings::utf8_to_wide(p.native()); }
#endif
} // namespace

path_t path_t::from_utf8(const std::string& p) { return path_t(platkit::strings::utf8_to_wide(p)); }

std::string path_t::utf8() const { return platkit::strings::wide_to_utf8(str()); }

path_t path_t::join(const path_t& other) const
{
    if (empty())
        return other;
    if (other.empty())
        return *this;
    return path_t(from_fs(to_fs(str()) / to_fs(other.str())));
}

std::wstring path_t::leaf() const
{
    fs::path p = to_fs(str());
    if (!p.has_filename())
        p = p.parent_path();
    return from_fs(p.filename());
}

path_t path_t::parent() const { return path_t(from_fs(to_fs(str()).parent_path())); }

std::wstring path_t::extension() const
{
    const std::wstring ext = from_fs(to_fs(str()).extension());
    return ext.empty() ? ext : ext.substr(1);
}

std::wstring path_t::stem() const { return from_fs(to_fs(str()).stem()); }

path_t path_t::replace_extension(const std::wstring& ext) const
{
    fs::path p = to_fs(str());
    p.replace_extension(ext.empty() ? fs::path() : to_fs(L"." + ext));
    return path_t(from_fs(p));
}

bool path_t::is_absolute() const { return !empty() && to_fs(str()).is_absolute(); }

bool path_t::exists() const
{
    std::error_code ec;
    return !empty() && fs::exists(to_fs(str()), ec);
}

bool path_t::is_directory() const
{
    std::error_code ec;
    return !empty() && fs::is_directory(to_fs(str()), ec);
}

bool path_t::is_regular_file() const
{
    std::error_code ec;
    return !empty() && fs::is_regular_file(to_fs(str()), ec);
}

bool path_t::match(const std::wstring& mask) const
{
#ifdef _WIN32
    constexpr bool case_sensitive = false;
    const std::wstring text = fs::path(str()).generic_wstring();
#else
    constexpr bool case_sensitive = true;
    const std::wstring& text = str();
#endif
    if (wildcard_match(text, mask, case_sensitive))
        return true;
    if (mask.empty() || mask[0] == L'/' || mask[0] == L'*')
        return false;
    // Not anchored at the start: let it begin at any component boundary
    // (the same as matching "*/" + mask, without building that string for
    // every path of a long list).
    const std::wstring_view view(text);
    for (size_t slash = view.find(L'/'); slash != std::wstring_view::npos; slash = view.find(L'/', slash + 1))
        if (wildcard_match(view.substr(slash + 1), mask, case_sensitive))
            return true;
    return false;
}

std::vector<path_t> find_files(const path_t& dir, const std::wstring& pattern)
{
    std::vector<path_t> out;
    std::error_code ec;
    fs::directory_iterator it(to_fs(dir.str()), ec), end;
    for (; !ec && it != end; it.increment(ec)) {
        std::error_code fec;
        if (!it->is_regular_file(fec))
            continue;
        if (wildcard_match(from_fs(it->path().filename()), pattern))
            out.emplace_back(from_fs(it->path()));
    }
    std::sort(out.begin(), out.end());
    return out;
}

} // namespace basekit2
