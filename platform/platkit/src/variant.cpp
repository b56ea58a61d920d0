#include "platkit/types/variant.h"

#include "platkit/strings/convert.h"

#include <cwchar>
#include <cwctype>

namespace platkit::types {

variant::variant(const std::string& utf8) : m_value(strings::utf8_to_wide(utf8)) {}
variant::variant(const char* utf8) : m_value(strings::utf8_to_wide(utf8 ? utf8 : "")) {}

std::wstring variant::as_wstring() const
{
    struct visitor
    {
        std::wstring operator()(std::monostate) const { return {}; }
        std::wstring operator()(const std::wstring& s) const { return s; }
        std::wstring operator()(std::int64_t v) const { return std::to_wstring(v); }
        std::wstring operator()(std::uint64_t v) const { return std::to_wstring(v); }
        std::wstring operator()(double v) const
        {
            wchar_t buf[64];
            std::swprintf(buf, 64, L"%g", v);
            return buf;
        }
        std::wstring operator()(bool v) const { return v ? L"true" : L"false"; }
    };
    return std::visit(visitor{}, m_value);
}

std::string variant::as_utf8() const { return strings::wide_to_utf8(as_wstring()); }

namespace {
bool parse_bool(const std::wstring& s, bool& out)
{
    std::wstring l;
    for (wchar_t c : s)
        l.push_back(static_cast<wchar_t>(std::towlower(c)));
    if (l == L"true" || l == L"yes" || l == L"1" || l == L"on")
        return out = true, true;
    if (l == L"false" || l == L"no" || l == L"0" || l == L"off")
        return out = false, true;
    return false;
}
} // namespace

std::int64_t variant::as_int(std::int64_t fallback) const
{
    if (auto p = std::get_if<std::int64_t>(&m_value))
        return *p;
    if (auto p = std::get_if<std::uint64_t>(&m_value))
        return static_cast<std::int64_t>(*p);
    if (auto p = std::get_if<double>(&m_value))
        return static_cast<std::int64_t>(*p);
    if (auto p = std::get_if<bool>(&m_value))
        return *p ? 1 : 0;
    if (auto p = std::get_if<std::wstring>(&m_value)) {
        wchar_t* end = nullptr;
        const long long v = std::wcstoll(p->c_str(), &end, 10);
        if (end != p->c_str() && *end == L'\0')
            return v;
    }
    return fallback;
}

std::uint64_t variant::as_uint(std::uint64_t fallback) const
{
    if (auto p = std::get_if<std::uint64_t>(&m_value))
        return *p;
    if (auto p = std::get_if<std::wstring>(&m_value)) {
        wchar_t* end = nullptr;
        const unsigned long long v = std::wcstoull(p->c_str(), &end, 10);
        if (end != p->c_str() && *end == L'\0' && (*p)[0] != L'-')
            return v;
        return fallback;
    }
    if (type() == kind::empty)
        return fallback;
    return static_cast<std::uint64_t>(as_int(static_cast<std::int64_t>(fallback)));
}

double variant::as_double(double fallback) const
{
    if (auto p = std::get_if<double>(&m_value))
        return *p;
    if (auto p = std::get_if<std::wstring>(&m_value)) {
        wchar_t* end = nullptr;
        const double v = std::wcstod(p->c_str(), &end);
        if (end != p->c_str() && *end == L'\0')
            return v;
        return fallback;
    }
    if (auto p = std::get_if<std::uint64_t>(&m_value))
        return static_cast<double>(*p);
    if (type() == kind::empty)
        return fallback;
    return static_cast<double>(as_int());
}

bool variant::as_bool(bool fallback) const
{
    if (auto p = std::get_if<bool>(&m_value))
        return *p;
    if (auto p = std::get_if<std::wstring>(&m_value)) {
        bool b = fallback;
        return parse_bool(*p, b) ? b : fallback;
    }
    if (type() == kind::empty)
        return fallback;
    return as_int() != 0;
}

} // namespace platkit::types
