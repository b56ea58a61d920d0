#include "settings2/product_locations.h"

#include <cstdlib>
#include <mutex>

namespace settings2 {
namespace {
std::mutex g_mutex;
std::shared_ptr<IProductLocations> g_service;
} // namespace

std::shared_ptr<IProductLocations> IProductLocations::get()
{
    std::lock_guard lock(g_mutex);
    return g_service;
}

void IProductLocations::set(std::shared_ptr<IProductLocations> service)
{
    std::lock_guard lock(g_mutex);
    g_service = std::move(service);
}

product_locations_t::product_locations_t(std::wstring full_name, std::wstring ascii_name,
                                         std::wstring short_name, basekit2::path_t default_resource_dir)
    : m_full(std::move(full_name)), m_ascii(std::move(ascii_name)), m_short(std::move(short_name)),
      m_resource_dir(std::move(default_resource_dir))
{
}

std::wstring product_locations_t::getProductName(int which) const
{
    switch (which) {
    case 0:
        return m_full;
    case 1:
        return m_ascii;
    case 5:
        return m_short;
    default:
        return {};
    }
}

basekit2::path_t product_locations_t::getResourceDirectory() const
{
    if (const char* dir = std::getenv("CORR_RESOURCE_DIR"); dir && *dir)
        return basekit2::path_t::from_utf8(dir);
    return m_resource_dir;
}

} // namespace settings2
