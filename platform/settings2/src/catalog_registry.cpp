#include "settings2/catalog.h"

#include <mutex>

namespace settings2 {
namespace {
std::mutex g_mutex;
std::map<std::wstring, platkit::i18n::catalog_ptr>& registry()
{
    static std::map<std::wstring, platkit::i18n::catalog_ptr> catalogs;
    return catalogs;
}
} // namespace

platkit::i18n::catalog_ptr getMessageCatalog(const std::wstring& name)
{
    std::lock_guard lock(g_mutex);
    const auto it = registry().find(name);
    return it == registry().end() ? nullptr : it->second;
}

void registerMessageCatalog(const std::wstring& name, platkit::i18n::catalog_ptr catalog)
{
    std::lock_guard lock(g_mutex);
    if (catalog)
        registry()[name] = std::move(catalog);
    else
        registry().erase(name);
}

platkit::i18n::message_t map_catalog_t::message(const std::wstring& key) const
{
    const auto it = m_messages.find(key);
    return platkit::i18n::message_t(it == m_messages.end() ? key : it->second);
}

} // namespace settings2
