#pragma once
// A bag of named values (what property storage and configuration hand out).
#include "platkit/types/variant.h"

#include <map>
#include <string>

namespace basekit2 {

class variant_bag_t
{
public:
    using map_t = std::map<std::wstring, platkit::types::variant>;

    bool has(const std::wstring& key) const { return m_values.count(key) != 0; }
    // The value of a key, or an empty variant.
    platkit::types::variant get(const std::wstring& key) const;
    // The value of a key, or fallback when the key is absent.
    platkit::types::variant get(const std::wstring& key, const platkit::types::variant& fallback) const;
    void put(const std::wstring& key, platkit::types::variant value);
    bool erase(const std::wstring& key) { return m_values.erase(key) != 0; }
    bool empty() const { return m_values.empty(); }
    const map_t& values() const { return m_values; }

    bool operator==(const variant_bag_t& o) const { return m_values == o.m_values; }

private:
    map_t m_values;
};

} // namespace basekit2
