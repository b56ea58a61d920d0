#include "shareddlg3/dialog_base.h"

#include "basekit2/path.h"
#include "platkit/debug/assert.h"
#include "settings2/catalog.h"
#include "settings2/product_locations.h"
#include "settings2/resource_catalogs.h"

#include <wx/bookctrl.h>
#include <wx/ctrlsub.h>
#include <wx/display.h>
#include <wx/log.h>
#include <wx/module.h>
#include <wx/radiobox.h>
#include <wx/textentry.h>
#include <wx/toplevel.h>
#include <wx/xrc/xmlres.h>

#ifdef __GNUG__
#include <cxxabi.h>
#endif

#include <algorithm>
#include <cstdlib>
#include <cwchar>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>

namespace shareddlg3 {
namespace {

std::mutex g_help_mutex;
help_handler_t g_help_handler;

// Layout resources by file; GUI thread only. Emptied when wxWidgets shuts
// down, while the windows they describe can still be freed.
std::map<std::wstring, std::unique_ptr<wxXmlResource>>& layout_cache()
{
    static std::map<std::wstring, std::unique_ptr<wxXmlResource>> resources;
    return resources;
}

class shareddlg3_layout_cache_module : public wxModule
{
public:
    bool OnInit() override { return true; }
    void OnExit() override { layout_cache().clear(); }

private:
    wxDECLARE_DYNAMIC_CLASS(shareddlg3_layout_cache_module);
};

// The archive part of "<dir>/x.dat#zip:y.xrc".
std::wstring archive_of(const std::wstring& resource_file)
{
    const size_t hash = resource_file.find(L'#');
    return hash == std::wstring::npos ? resource_file : resource_file.substr(0, hash);
}

wxXmlResource* open_layouts(const std::wstring& resource_file, const std::wstring& name)
{
    if (const auto it = layout_cache().find(resource_file); it != layout_cache().end())
        return it->second.get();

    std::error_code ec;
    const std::wstring archive = archive_of(resource_file);
    if (!std::filesystem::is_regular_file(basekit2::to_fs(archive), ec)) {
        wxLogError("Cannot load the layout \"%s\": the resource archive %s does not exist.", name, archive);
        return nullptr;
    }
    settings2::ensure_archive_handler();
    // No wxXRC_USE_LOCALE: texts are message keys, translated by us.
    auto resource = std::make_unique<wxXmlResource>(wxXRC_NO_SUBCLASSING);
    resource->InitAllHandlers();
    bool loaded = false;
    {
        wxLogNull quiet; // the message below says more than wxWidgets would
        loaded = resource->Load(resource_file);
    }
    if (!loaded) {
        wxLogError("Cannot load the layout \"%s\": %s is missing from its archive or is not "
                   "a well-formed layout file.",
                   name, resource_file);
        return nullptr;
    }
    wxXmlResource* result = resource.get();
    layout_cache()[resource_file] = std::move(resource);
    return result;
}

struct standard_button
{
    const wchar_t* name;
    wxWindowID id;
};
constexpr standard_button standard_buttons[] = {
    {L"m_btn_ok", wxID_OK}, {L"m_btn_cancel", wxID_CANCEL}, {L"m_btn_help", wxID_HELP}};

void assign_standard_ids(wxWindow* root)
{
    for (const auto& button : standard_buttons) {
        if (wxWindow* window = root->FindWindow(wxXmlResource::GetXRCID(button.name)))
            window->SetId(button.id);
    }
}

// Texts of a layout are message keys; XRC turns "_" into "&" (its mnemonic
// marker) on the way in, and keys never hold "&", so map it back.
class key_translator
{
public:
    explicit key_translator(platkit::i18n::catalog_ptr catalog)
        : m_catalog(std::move(catalog)), m_args(settings2::product_name_arguments())
    {
    }

    // True (and the text in out) when text is a key of the catalogue.
    bool translate(const wxString& text, wxString& out) const
    {
        if (text.empty())
            return false;
        std::wstring key = text.ToStdWstring();
        if (!m_catalog->has_message(key)) {
            std::replace(key.begin(), key.end(), L'&', L'_');
            if (!m_catalog->has_message(key))
                return false;
        }
        out = m_catalog->message(key).as_ustring(m_args);
        return true;
    }

private:
    platkit::i18n::catalog_ptr m_catalog;
    platkit::generic::varg_list m_args;
};

void translate_window(wxWindow* window, const key_translator& tr, bool is_root)
{
    wxString text;
    if (is_root || !window->IsTopLevel()) {
        if (tr.translate(window->GetLabel(), text))
            window->SetLabel(text);
        if (tr.translate(window->GetToolTipText(), text))
            window->SetToolTip(text);
    }
    if (auto* book = dynamic_cast<wxBookCtrlBase*>(window)) {
        for (size_t i = 0; i < book->GetPageCount(); ++i)
            if (tr.translate(book->GetPageText(i), text))
                book->SetPageText(i, text);
    }
    if (auto* radio = dynamic_cast<wxRadioBox*>(window)) {
        for (unsigned i = 0; i < radio->GetCount(); ++i)
            if (tr.translate(radio->GetString(i), text))
                radio->SetString(i, text);
    } else if (auto* items = dynamic_cast<wxItemContainer*>(window)) {
        for (unsigned i = 0; i < items->GetCount(); ++i)
            if (tr.translate(items->GetString(i), text))
                items->SetString(i, text);
    }
    if (auto* entry = dynamic_cast<wxTextEntry*>(window)) {
        if (tr.translate(entry->GetHint(), text))
            entry->SetHint(text);
    }
    for (wxWindow* child : window->GetChildren()) {
        if (!child->IsTopLevel())
            translate_window(child, tr, false);
    }
}

} // namespace

wxIMPLEMENT_DYNAMIC_CLASS(shareddlg3_layout_cache_module, wxModule);

help_handler_t set_help_handler(help_handler_t handler)
{
    std::lock_guard lock(g_help_mutex);
    std::swap(g_help_handler, handler);
    return handler;
}

help_handler_t get_help_handler()
{
    std::lock_guard lock(g_help_mutex);
    return g_help_handler;
}

namespace detail {

bool load_layout(wxWindow* self, layout_kind kind, wxWindow* parent, const std::wstring& resource_file,
                 const std::wstring& name, const std::wstring& set)
{
    wxXmlResource* resource = open_layouts(resource_file, name);
    if (!resource)
        return false;
    if (!resource->GetResourceNode(name)) {
        wxLogError("Cannot load the layout \"%s\": %s has no layout of that name.", name, resource_file);
        return false;
    }
    bool loaded = false;
    {
        wxLogNull quiet;
        loaded = kind == layout_kind::dialog
                     ? resource->LoadDialog(static_cast<wxDialog*>(self), parent, name)
                     : resource->LoadPanel(static_cast<wxPanel*>(self), parent, name);
    }
    if (!loaded) {
        wxLogError("Cannot load the layout \"%s\" from %s: it is not a %s layout.", name, resource_file,
                   kind == layout_kind::dialog ? "dialog" : "panel");
        return false;
    }
    assign_standard_ids(self);
    translate_texts(self, set);
    return true;
}

void translate_texts(wxWindow* root, const std::wstring& set)
{
    const auto catalog = settings2::getMessageCatalog(set);
    if (!catalog) {
        // The keys stay on screen, which shows what is missing.
        wxLogError("Message catalog '%s' is not loaded: the texts of \"%s\" stay untranslated.", set,
                   root->GetName());
        return;
    }
    translate_window(root, key_translator(catalog), true);
}

wxWindow* find_named_control(wxWindow* root, const wchar_t* name, const std::wstring& layout,
                             const std::wstring& resource_file)
{
    for (const auto& button : standard_buttons) {
        if (std::wcscmp(button.name, name) == 0) {
            if (wxWindow* window = root->FindWindow(button.id))
                return window;
        }
    }
    const int id = wxXmlResource::GetXRCID(name, wxID_NONE);
    wxWindow* window = id == wxID_NONE ? nullptr : root->FindWindow(id);
    if (!window)
        wxLogError("Control \"%s\" is missing from the layout \"%s\" in %s.", name, layout, resource_file);
    return window;
}

void report_wrong_class(const wchar_t* name, const std::wstring& layout, wxWindow* found, const char* expected)
{
    std::string readable = expected;
#ifdef __GNUG__
    int status = 0;
    if (char* demangled = abi::__cxa_demangle(expected, nullptr, nullptr, &status)) {
        readable = demangled;
        std::free(demangled);
    }
#endif
    const wxString message = wxString::Format("control \"%s\" of the layout \"%s\" is a %s, not a %s", name,
                                              layout, found->GetClassInfo()->GetClassName(), readable);
    wxFAIL_MSG(message);
}

wxSize proportional_size(const wxWindow* window, double fx, double fy, const wxSize& base)
{
    wxSize size = window->GetBestSize();
    if (base.x > 0 && base.y > 0)
        size.IncTo(window->ConvertDialogToPixels(base));
    const int index = wxDisplay::GetFromWindow(window);
    const wxRect area = wxDisplay(index == wxNOT_FOUND ? 0u : unsigned(index)).GetClientArea();
    size.DecTo(wxSize(int(area.width * fx), int(area.height * fy)));
    return size;
}

void end_containing_dialog(wxWindow* window, int code)
{
    if (auto* dialog = dynamic_cast<wxDialog*>(wxGetTopLevelParent(window))) {
        if (dialog->IsModal()) {
            dialog->EndModal(code);
        } else {
            dialog->SetReturnCode(code);
            dialog->Hide();
        }
    }
}

} // namespace detail

// clang-format off
wxBEGIN_EVENT_TABLE(dialog_base_t, wxDialog)
    EVT_BUTTON(wxID_OK, dialog_base_t::on_ok_button)
    EVT_BUTTON(wxID_CANCEL, dialog_base_t::on_cancel_button)
    EVT_BUTTON(wxID_HELP, dialog_base_t::on_help_button)
    EVT_TIMER(wxID_ANY, dialog_base_t::on_timer)
wxEND_EVENT_TABLE()
// clang-format on

} // namespace shareddlg3
