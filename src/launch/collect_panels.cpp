#include "corr_dialogs2/collect_panels.h"

#include "corr_dialogs2/ui_utils.h"

#include "settings2/catalog.h"
#include "shareddlg3/dialog_base.h"
#include "shareddlg3/resources.h"

#include <wx/listbox.h>
#include <wx/radiobut.h>
#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>
#include <wx/xrc/xmlres.h>

namespace corr_dialogs2 {
namespace {

struct row_t
{
    const wchar_t* radio;
    const wchar_t* text;
    const wchar_t* mode;
    const wchar_t* description_key;
};

// The rows of the debugger panel, in order.
const row_t debugger_rows[] = {
    {L"m_radioStart", L"m_staticText22", L"off", L"dlg.collect.off.description"},
    {L"m_radioDebug", L"m_staticText221", L"on-error", L"dlg.collect.on.error.description"},
    {L"m_radioPaused", L"m_staticText222", L"delay-analysis", L"dlg.collect.paused.description"},
};

// The frame of the launch pages: background from the UI settings, border in
// the colour of inactive captions.
void colour_rectangle(wxkit1::elements::RectangleElement& rect)
{
    rect.SetBackgroundColour(wxkit1::ui_settings_t::get_color(wxkit1::ui_settings_t::color_text_background));
    rect.SetBorderColour(wxSystemSettings::GetColour(wxSYS_COLOUR_INACTIVECAPTION));
}

std::shared_ptr<wxkit1::elements::RectangleElement> framed(wxkit1::elements::ElementAdapter& adapter)
{
    auto rect = std::make_shared<wxkit1::elements::RectangleElement>();
    rect->ShowBorder(true);
    adapter.SetRootElement(rect);
    return rect;
}

template <class T>
T* find_child(wxWindow* root, const wchar_t* name)
{
    wxWindow* found = shareddlg3::detail::find_named_control(
        root, name, root->GetName().ToStdWstring(),
        shareddlg3::create_resource_filename(resources::catalog_file, launch_resources::layout_file));
    if (!found)
        return nullptr;
    T* typed = dynamic_cast<T*>(found);
    if (!typed)
        shareddlg3::detail::report_wrong_class(name, root->GetName().ToStdWstring(), found,
                                               typeid(T).name());
    return typed;
}

} // namespace

bool load_launch_layout(wxWindow* self, wxWindow* parent, const wchar_t* name)
{
    return shareddlg3::detail::load_layout(
        self, shareddlg3::detail::layout_kind::panel, parent,
        shareddlg3::create_resource_filename(resources::catalog_file, launch_resources::layout_file), name,
        launch_resources::resource_set);
}

debugger_panel_t::debugger_panel_t(wxWindow* parent, launchdlg3::IAnalysisInfoProvider* info_provider,
                                   const std::wstring& mode)
    : m_info_provider(info_provider), m_initial_mode(mode)
{
    if (!load_launch_layout(this, parent, L"DebuggerPanel"))
        Create(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxTAB_TRAVERSAL, "DebuggerPanel");
    m_adapter = std::make_unique<wxkit1::elements::ElementAdapter>(this);
    m_rectangle = framed(*m_adapter);

    const auto catalog = settings2::getMessageCatalog(launch_resources::resource_set);
    std::vector<launchdlg3::IAnalysisInfoProvider::entry_t> entries;
    if (m_info_provider)
        entries = m_info_provider->getEntries();
    for (size_t i = 0; i < std::size(debugger_rows); ++i) {
        const row_t& row = debugger_rows[i];
        auto* radio = find_child<wxRadioButton>(this, row.radio);
        auto* text = find_child<wxStaticText>(this, row.text);
        if (!radio || !text)
            continue;
        std::wstring key = row.description_key;
        if (i == 1 && entries.size() == 1)
            key += L"." + entries.front().name;
        const std::wstring description = catalog ? catalog->message(key).as_ustring({}) : key;
        m_radios.push_back(radio);
        m_texts.push_back(text);
        m_modes.push_back(row.mode);
        m_descriptions.push_back(description);
        set_tooltip(description, radio);
        set_tooltip(description, text);
        // A click on the text beside a button chooses it, as a label would.
        text->Bind(wxEVT_LEFT_DOWN, [radio](wxMouseEvent&) {
            if (radio->IsEnabled()) {
                radio->SetValue(true);
                radio->SetFocus();
            }
        });
    }
    // A group of radio buttons always has one set: a hidden last member of
    // the group stands for "no row", which a mode no row carries (such as
    // "on-start") selects.
    if (!m_radios.empty()) {
        m_no_row = new wxRadioButton(this, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize, 0,
                                     wxDefaultValidator, "NoRow");
        m_no_row->Hide();
        m_no_row->SetValue(true);
    }
    select_mode(mode);

    m_style_updater.attach(this, [this] {
        colour_frame();
        m_adapter->Redraw();
    });
    Bind(wxEVT_SIZE, &debugger_panel_t::on_size, this);
    colour_frame();
    if (m_info_provider)
        SetLabel(m_info_provider->getDebuggerPanelLabel());
}

debugger_panel_t::~debugger_panel_t()
{
    m_style_updater.detach();
}

void debugger_panel_t::colour_frame()
{
    colour_rectangle(*m_rectangle);
    // Texts and buttons take the frame's background.
    for (auto* radio : m_radios)
        radio->SetBackgroundColour(m_rectangle->GetBackgroundColour());
    for (auto* text : m_texts)
        text->SetBackgroundColour(m_rectangle->GetBackgroundColour());
}

void debugger_panel_t::on_size(wxSizeEvent& event)
{
    event.Skip();
    m_adapter->Redraw();
}

std::pair<std::wstring, std::wstring> debugger_panel_t::get_current_choice() const
{
    std::wstring mode;
    for (size_t i = 0; i < m_radios.size(); ++i)
        if (m_radios[i]->GetValue())
            mode = m_modes[i];
    return {mode, m_info_provider ? m_info_provider->getAnalysisTypeName() : std::wstring()};
}

void debugger_panel_t::select_mode(const std::wstring& mode)
{
    for (size_t i = 0; i < m_modes.size(); ++i)
        if (m_modes[i] == mode)
            m_radios[i]->SetValue(true);
}

void debugger_panel_t::set_disabled(bool disabled)
{
    Enable(!disabled);
    m_adapter->Redraw();
}

void debugger_panel_t::updateData()
{
    if (!m_applied_mode.empty())
        select_mode(m_applied_mode);
}

void debugger_panel_t::applyData()
{
    m_applied_mode = get_current_choice().first;
}

category_panel_t::category_panel_t(wxWindow* parent, const wxBitmap& image)
{
    if (!load_launch_layout(this, parent, L"WhitePanel"))
        Create(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxTAB_TRAVERSAL, "WhitePanel");
    m_category_image = find_child<wxStaticBitmap>(this, L"m_category_image");
    m_staticTextPlaceholder = find_child<wxStaticText>(this, L"m_staticTextPlaceholder");
    m_adapter = std::make_unique<wxkit1::elements::ElementAdapter>(this);
    m_rectangle = framed(*m_adapter);
    m_style_updater.attach(this, [this] {
        colour_rectangle(*m_rectangle);
        m_adapter->Redraw();
    });
    colour_rectangle(*m_rectangle);
    if (m_staticTextPlaceholder)
        m_staticTextPlaceholder->SetBackgroundColour(m_rectangle->GetBackgroundColour());
    if (image.IsOk())
        set_image(image);
}

category_panel_t::~category_panel_t()
{
    m_style_updater.detach();
}

void category_panel_t::set_image(const wxBitmap& image)
{
    if (!m_category_image)
        return;
    m_category_image->SetBitmap(image);
    Layout();
    m_adapter->Redraw();
}

wxBitmap category_panel_t::get_image() const
{
    return m_category_image ? m_category_image->GetBitmap() : wxBitmap();
}

custom_analysis_page_t::custom_analysis_page_t(wxWindow* parent, const std::vector<std::wstring>& custom_types)
    : wxPanel(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxTAB_TRAVERSAL, "CustomAnalysisPage")
{
    auto* sizer = new wxBoxSizer(wxVERTICAL);
    m_list = new wxListBox(this, wxID_ANY, wxDefaultPosition, wxDefaultSize, 0, nullptr, wxLB_SINGLE | wxLB_HSCROLL,
                           wxDefaultValidator, "CustomATListBox");
    m_message = new wxStaticText(this, wxID_ANY, translate(L"dlg.collect.no.custom.analysis"));
    sizer->Add(m_list, 0, wxEXPAND | wxALL, 0);
    sizer->Add(m_message, 1, wxEXPAND | wxALL, 10);
    SetSizer(sizer);
    m_style_updater.attach(this);
    set_custom_types(custom_types);
}

void custom_analysis_page_t::set_custom_types(const std::vector<std::wstring>& custom_types)
{
    m_list->Clear();
    for (const auto& type : custom_types)
        m_list->Append(type);
    const bool any = !custom_types.empty();
    m_list->Show(any);
    m_message->Show(!any);
    // The list takes the page when it shows.
    GetSizer()->GetItem(m_list)->SetProportion(any ? 1 : 0);
    Layout();
}

} // namespace corr_dialogs2
