#include "shareddlg3/resources.h"

#include "settings2/catalog.h"
#include "settings2/product_locations.h"

namespace shareddlg3 {

std::wstring create_resource_filename(const std::wstring& catalog_file, const std::wstring& xrc_file)
{
    const auto locations = settings2::IProductLocations::get();
    const basekit2::path_t dir = locations ? locations->getResourceDirectory() : basekit2::path_t();
    return (dir / basekit2::path_t(catalog_file)).str() + L"#zip:" + xrc_file;
}

std::wstring translate_shared(const std::wstring& key, const platkit::generic::varg_list& args)
{
    const std::wstring set = shared_resource_set;
    const auto catalog = settings2::getMessageCatalog(set);
    if (!catalog)
        return L"Message catalog '" + set + L"' is not loaded. Message: " + key;
    if (!catalog->has_message(key))
        return L"Message is not found: '" + key + L"'";
    platkit::generic::varg_list effective = args;
    effective.append(settings2::product_name_arguments());
    return catalog->message(key).as_ustring(effective);
}

} // namespace shareddlg3
