#include "corr_dialogs2/ui_utils.h"

#include "corr_engine/result_converter.h"
#include "settings2/catalog.h"
#include "settings2/product_locations.h"

namespace corr_dialogs2 {
namespace {

// Built once, on the first translation, and kept for the process.
const platkit::generic::varg_list& product_arguments()
{
    static const platkit::generic::varg_list args = settings2::product_name_arguments();
    return args;
}

} // namespace

std::wstring translate(const std::wstring& key, const platkit::generic::varg_list& args)
{
    platkit::generic::varg_list effective;
    if (!args.empty())
        effective = args;
    effective.append(product_arguments());

    const std::wstring set = resources::resource_set;
    const auto catalog = settings2::getMessageCatalog(set);
    if (!catalog)
        return L"Message catalog '" + set + L"' is not loaded. Message: " + key;
    if (!catalog->has_message(key))
        return L"Message is not found: '" + key + L"'";
    return catalog->message(key).as_ustring(effective);
}

std::vector<std::wstring> get_import_extensions()
{
    if (!settings2::IProductLocations::get())
        return {};
    return corr_engine::result_converter_t().get_supported_extensions();
}

std::wstring prepare_file_dialog_string()
{
    const std::vector<std::wstring> extensions = get_import_extensions();
    std::wstring out;
    for (size_t i = 0; i < extensions.size(); ++i) {
        const std::wstring& ext = extensions[i];
        const std::wstring name = translate(L"dlg.import.product_name." + ext);
        if (name.empty())
            continue;
        out += name + L"(*." + ext + L")|*." + ext;
        // The separator follows the position in the full list, so a skipped
        // last extension leaves a trailing "|".
        if (i + 1 != extensions.size())
            out += L"|";
    }
    return out;
}

} // namespace corr_dialogs2
