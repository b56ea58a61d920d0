#include "basekit2/variant_bag.h"

namespace basekit2 {

platkit::types::variant variant_bag_t::get(const std::wstring& key) const
{
    const auto it = m_values.find(key);
    return it == m_values.end() ? platkit::types::variant() : it->second;
}

platkit::types::variant variant_bag_t::get(const std::wstring& key,
                                           const platkit::types::variant& fallback) const
{
    const auto it = m_values.find(key);
    return it == m_values.end() ? fallback : it->second;
}

void variant_bag_t::put(const std::wstring& key, platkit::types::variant value)
{
    m_values[key] = std::move(value);
}

} // namespace basekit2
