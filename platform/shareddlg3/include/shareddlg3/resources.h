#pragma once
// Names of resources inside the resource archives, and the texts of the
// shared dialogs' own catalogue.
#include "platkit/generic/argument.h"

#include <string>

namespace shareddlg3 {

// "<resource dir>/<catalog_file>#zip:<xrc_file>", the resource directory
// coming from settings2::IProductLocations (just "<catalog_file>#zip:..."
// when no service is installed). This is the only place such a name is made.
std::wstring create_resource_filename(const std::wstring& catalog_file, const std::wstring& xrc_file);

// Resource set of the shared dialogs' catalogue ("shareddlg", in shareddlg3.dat).
inline constexpr const wchar_t* shared_resource_set = L"shareddlg";

// A text of the "shareddlg" catalogue, formatted with args followed by the
// product arguments. Like the library's translate(), a missing catalogue or
// key gives a visible fall-back text instead of an error.
std::wstring translate_shared(const std::wstring& key, const platkit::generic::varg_list& args = {});

} // namespace shareddlg3
