#include "basekit2/path.h"

#include "platkit/strings/convert.h"

#include <algorithm>
#include <system_error>

namespace fs = std::filesystem;

namespace basekit2 {

fs::path to_fs(std::wstring_view text) { return fs::path(platkit::strings::wide_to_native(text)); }

std::wstring from_fs(const fs::path& p) { return platkit::strings::native_to_wide(p.native()); }

std::wstring display(const fs::path& p) { return platkit::strings::display_name(from_fs(p)); }

std::wstring path_t::display() const { return platkit::strings::display_name(str()); }

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

path_t path_t::from_utf8(const std::string& p) { return path_t(platkit::strings::native_to_wide(p)); }

std::string path_t::native() const { return platkit::strings::wide_to_native(str()); }

std::string path_t::utf8() const { return platkit::strings::wide_to_utf8(str()); }

path_t path_t::join(const path_t& other) const
{
    if (empty())
        return other;
    if (other.empty())
        return *this;
    return path_t(fs() / other.fs());
}

std::wstring path_t::leaf() const
{
    fs::path p = fs();
    if (!p.has_filename())
        p = p.parent_path();
    return from_fs(p.filename());
}

path_t path_t::parent() const { return path_t(fs().parent_path()); }

std::wstring path_t::extension() const
{
    const std::wstring ext = from_fs(fs().extension());
    return ext.empty() ? ext : ext.substr(1);
}

std::wstring path_t::stem() const { return from_fs(fs().stem()); }

path_t path_t::replace_extension(const std::wstring& ext) const
{
    fs::path p = fs();
    p.replace_extension(ext.empty() ? fs::path() : to_fs(L"." + ext));
    return path_t(p);
}

bool path_t::is_absolute() const { return !empty() && fs().is_absolute(); }

bool path_t::exists() const
{
    std::error_code ec;
    return !empty() && fs::exists(fs(), ec);
}

bool path_t::is_directory() const
{
    std::error_code ec;
    return !empty() && fs::is_directory(fs(), ec);
}

bool path_t::is_regular_file() const
{
    std::error_code ec;
    return !empty() && fs::is_regular_file(fs(), ec);
}

bool path_t::match(const std::wstring& mask) const
{
#ifdef _WIN32
    constexpr bool case_sensitive = false;
    const std::wstring text = from_fs(fs().generic_string());
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
    fs::directory_iterator it(dir.fs(), ec), end;
    for (; !ec && it != end; it.increment(ec)) {
        std::error_code fec;
        if (!it->is_regular_file(fec))
            continue;
        if (wildcard_match(from_fs(it->path().filename()), pattern))
            out.emplace_back(it->path());
    }
    std::sort(out.begin(), out.end());
    return out;
}

} // namespace basekit2
