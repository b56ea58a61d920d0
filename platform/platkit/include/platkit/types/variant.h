#pragma once
// A small tagged value: what configuration, property storage and message
// arguments carry. Strings are wide; UTF-8 text is converted on the way in.
#include <cstdint>
#include <string>
#include <variant>

namespace platkit::types {

class variant
{
public:
    enum class kind { empty, string, integer, unsigned_integer, floating, boolean };

    variant() = default;
    variant(std::wstring v) : m_value(std::move(v)) {}
    variant(const wchar_t* v) : m_value(std::wstring(v ? v : L"")) {}
    variant(const std::string& utf8);
    variant(const char* utf8);
    variant(int v) : m_value(std::int64_t{v}) {}
    variant(long v) : m_value(std::int64_t{v}) {}
    variant(long long v) : m_value(std::int64_t{v}) {}
    variant(unsigned v) : m_value(std::uint64_t{v}) {}
    variant(unsigned long v) : m_value(std::uint64_t{v}) {}
    variant(unsigned long long v) : m_value(std::uint64_t{v}) {}
    variant(double v) : m_value(v) {}
    variant(bool v) : m_value(v) {}

    kind type() const { return static_cast<kind>(m_value.index()); }
    bool empty() const { return type() == kind::empty; }

    // Conversions never throw: a value of another kind is converted where
    // that makes sense (number <-> text) and gives the fallback otherwise.
    std::wstring as_wstring() const;
    std::string as_utf8() const;
    std::int64_t as_int(std::int64_t fallback = 0) const;
    std::uint64_t as_uint(std::uint64_t fallback = 0) const;
    double as_double(double fallback = 0.0) const;
    bool as_bool(bool fallback = false) const;

    bool operator==(const variant& other) const { return m_value == other.m_value; }
    bool operator!=(const variant& other) const { return !(*this == other); }

    using storage_t =
        std::variant<std::monostate, std::wstring, std::int64_t, std::uint64_t, double, bool>;
    const storage_t& storage() const { return m_value; }

private:
    storage_t m_value;
};

} // namespace platkit::types
