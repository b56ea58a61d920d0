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

platkit::generic::varg_list product_name_arguments()
{
    const auto locations = IProductLocations::get();
    auto name = [&](int which) { return locations ? locations->getProductName(which) : std::wstring(); };
    platkit::generic::varg_list list;
    list.add(L"prod_name", name(0));
    list.add(L"product_ascii_name", name(1));
    list.add(L"prod_short_name", name(5));
    return list;
}

} // namespace settings2
