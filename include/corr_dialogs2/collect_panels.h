#pragma once
// The small panels the profile factory places into the launch dialog: the
// debugger panel (how the analysed program meets the debugger), the category
// panel (the picture of the current analysis category on a framed white
// panel) and the custom-analysis page (the user's own analysis types). All
// take their layouts from "collect_dlg_qm.xrc" (resource set "launchdlg_qm")
// and draw their frame through a wxkit1 element adapter.
#include "corr_dialogs2/export.h"

#include "launchdlg3/profile.h"
#include "wxkit1/elements.h"
#include "wxkit1/ui_settings.h"

#include <wx/bitmap.h>
#include <wx/panel.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

class wxListBox;
class wxRadioButton;
class wxStaticBitmap;
class wxStaticText;

namespace corr_dialogs2 {

namespace launch_resources {
inline constexpr const wchar_t* layout_file = L"collect_dlg_qm.xrc";
inline constexpr const wchar_t* resource_set = L"launchdlg_qm";
} // namespace launch_resources

// Loads a layout of "collect_dlg_qm.xrc" into self (a panel not yet created)
// and translates its texts; false, logged, when it cannot be loaded.
CORR_DIALOGS2_API bool load_launch_layout(wxWindow* self, wxWindow* parent, const wchar_t* name);

class CORR_DIALOGS2_API debugger_panel_t : public wxPanel, public launchdlg3::Panel
{
public:
    // Builds the panel and selects the row whose mode string is mode (none
    // when no row has it).
    debugger_panel_t(wxWindow* parent, launchdlg3::IAnalysisInfoProvider* info_provider, const std::wstring& mode);
    ~debugger_panel_t() override;
    debugger_panel_t(const debugger_panel_t&) = delete;
    debugger_panel_t& operator=(const debugger_panel_t&) = delete;

    // (mode string of the selected row, analysis-type name); the mode is
    // empty when no row is selected.
    std::pair<std::wstring, std::wstring> get_current_choice() const;
    // Selects the row of that mode; a mode no row has changes nothing.
    void select_mode(const std::wstring& mode);
    bool has_choices() const { return !m_modes.empty(); }
    // Enables the panel when given false, disables it when given true, and
    // redraws the frame.
    virtual void set_disabled(bool disabled);

    const std::vector<std::wstring>& get_modes() const { return m_modes; }
    const std::vector<std::wstring>& get_descriptions() const { return m_descriptions; }
    const std::vector<wxRadioButton*>& get_radio_buttons() const { return m_radios; }
    const std::vector<wxStaticText*>& get_texts() const { return m_texts; }
    const std::wstring& get_initial_mode() const { return m_initial_mode; }
    const wxkit1::elements::RectangleElement& get_frame() const { return *m_rectangle; }

    // launchdlg3::Panel
    wxWindow* getWindow() override { return this; }
    void updateData() override;
    void applyData() override;

private:
    void on_size(wxSizeEvent& event);
    void colour_frame();

    std::vector<wxRadioButton*> m_radios;
    std::vector<wxStaticText*> m_texts;
    std::vector<std::wstring> m_descriptions;
    std::vector<std::wstring> m_modes;
    wxRadioButton* m_no_row = nullptr;
    launchdlg3::IAnalysisInfoProvider* m_info_provider; // not owned
    std::unique_ptr<wxkit1::elements::ElementAdapter> m_adapter;
    std::shared_ptr<wxkit1::elements::RectangleElement> m_rectangle;
    wxkit1::style_updater_t m_style_updater{wxkit1::ui_style_t::dialog};
    std::wstring m_initial_mode;
    std::wstring m_applied_mode; // what applyData took
};

class CORR_DIALOGS2_API category_panel_t : public wxPanel
{
public:
    explicit category_panel_t(wxWindow* parent, const wxBitmap& image = wxBitmap());
    ~category_panel_t() override;
    category_panel_t(const category_panel_t&) = delete;
    category_panel_t& operator=(const category_panel_t&) = delete;

    void set_image(const wxBitmap& image);
    wxBitmap get_image() const;
    const wxkit1::elements::RectangleElement& get_frame() const { return *m_rectangle; }

private:
    wxStaticBitmap* m_category_image = nullptr;
    wxStaticText* m_staticTextPlaceholder = nullptr;
    std::unique_ptr<wxkit1::elements::ElementAdapter> m_adapter;
    std::shared_ptr<wxkit1::elements::RectangleElement> m_rectangle;
    wxkit1::style_updater_t m_style_updater{wxkit1::ui_style_t::inplace};
};

// The page of the group of all analysis types: the user's own analysis
// types, or a message saying there are none.
class CORR_DIALOGS2_API custom_analysis_page_t : public wxPanel, public launchdlg3::IProfilePage
{
public:
    // custom_types: titles of the user-defined analysis types.
    custom_analysis_page_t(wxWindow* parent, const std::vector<std::wstring>& custom_types = {});

    // Shows these types (the list) or, with none, the message.
    void set_custom_types(const std::vector<std::wstring>& custom_types);
    wxListBox* get_list() const { return m_list; }
    wxStaticText* get_message() const { return m_message; }

    wxWindow* getWindow() override { return this; }

private:
    wxListBox* m_list = nullptr;
    wxStaticText* m_message = nullptr;
    wxkit1::style_updater_t m_style_updater{wxkit1::ui_style_t::dialog};
};

} // namespace corr_dialogs2
