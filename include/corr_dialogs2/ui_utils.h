#pragma once
// Resource names, message translation and the small UI helpers every dialog
// of the library shares.
#include "corr_dialogs2/export.h"

#include "platkit/generic/argument.h"

#include <string>
#include <vector>

class wxWindow;

namespace corr_dialogs2 {

namespace resources {
inline constexpr const wchar_t* catalog_file = L"dialogs2.dat";
inline constexpr const wchar_t* layout_file = L"dialogs.xrc";
inline constexpr const wchar_t* image_file = L"dialogs_images.xrc";
inline constexpr const wchar_t* resource_set = L"dialogs";
inline constexpr const wchar_t* shared_catalog_file = L"shareddlg3.dat";
inline constexpr const wchar_t* help_prefix = L"korrin.hlp.ctx.";
} // namespace resources

// The text of a message key, formatted with args followed by the product
// arguments (prod_name, product_ascii_name, prod_short_name). A missing
// catalogue or key gives a visible fall-back text, never an error.
CORR_DIALOGS2_API std::wstring translate(const std::wstring& key,
                                         const platkit::generic::varg_list& args = {});

// Installs a wrapped (600 px), long-lived (60 s) tool-tip on a window.
CORR_DIALOGS2_API void set_tooltip(const std::wstring& text, wxWindow* window);

// Extensions (no dot) of the analyser output that can be imported.
CORR_DIALOGS2_API std::vector<std::wstring> get_import_extensions();

// Wildcard for the open-result file dialog: "Name(*.ext)|*.ext|...".
CORR_DIALOGS2_API std::wstring prepare_file_dialog_string();

} // namespace corr_dialogs2
