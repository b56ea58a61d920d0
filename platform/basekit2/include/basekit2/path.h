#pragma once
// path_t: a file-system path held as a wide string, over std::filesystem.
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace basekit2 {

// A value: every operation makes a new path. The text is shared between
// copies and never changed, so copying a path (a filter's result, a list
// handed to another thread) costs a reference count, not an allocation.
class path_t
{
public:
    path_t() = default;
    path_t(std::wstring p) : m_text(make_text(std::move(p))) {}
    path_t(const wchar_t* p) : path_t(std::wstring(p ? p : L"")) {}
    path_t(const std::filesystem::path& p) : path_t(p.wstring()) {}
    static path_t from_utf8(const std::string& p);

    const std::wstring& str() const { return m_text ? *m_text : empty_text(); }
    std::string utf8() const;
    std::filesystem::path fs() const { return std::filesystem::path(str()); }
    bool empty() const { return !m_text; }

    // this / other; an absolute other replaces this, as with std::filesystem.
    path_t join(const path_t& other) const;
    path_t operator/(const path_t& other) const { return join(other); }

    std::wstring leaf() const;      // last component: "a/b.sup" -> "b.sup"
    path_t parent() const;          // "a/b.sup" -> "a"
    std::wstring extension() const; // without the dot: "b.sup" -> "sup"; "" when none
    std::wstring stem() const;      // "b.sup" -> "b"
    // Replaces (or adds) the extension; ext is given without a dot.
    path_t replace_extension(const std::wstring& ext) const;

    bool is_absolute() const;
    bool exists() const;
    bool is_directory() const;
    bool is_regular_file() const;

    // Wildcard match of the path against mask: '*' any run of characters
    // (separators included), '?' exactly one character. A mask that does not
    // start with a separator or '*' also matches at any component boundary,
    // so "src/*/test_*" matches "/home/me/proj/src/a/test_b.cpp". Case
    // sensitive where the file system is. Linear in the path length for a
    // given mask: no backtracking blow-up on masks like "a*a*a*a*b".
    bool match(const std::wstring& mask) const;

    bool operator==(const path_t& o) const { return m_text == o.m_text || str() == o.str(); }
    bool operator!=(const path_t& o) const { return !(*this == o); }
    bool operator<(const path_t& o) const { return str() < o.str(); }

private:
    // Null for the empty path.
    static std::shared_ptr<const std::wstring> make_text(std::wstring text);
    static const std::wstring& empty_text();

    std::shared_ptr<const std::wstring> m_text;
};

// Glob matching of a whole text ('*' and '?'), the engine behind path_t::match.
bool wildcard_match(std::wstring_view text, std::wstring_view mask, bool case_sensitive = true);

// Files (not directories) directly inside dir whose name matches pattern,
// sorted by name. A missing or unreadable directory gives an empty list.
std::vector<path_t> find_files(const path_t& dir, const std::wstring& pattern);

} // namespace basekit2
