#pragma once
// The classes behind profile_factory_t: the factory itself, the panel
// factory of the debugger panel, the configurator and the non-tree profile.
#include "corr_dialogs2/collect_panels.h"
#include "corr_dialogs2/profile_factory.h"

#include "basekit2/threading/mutex.h"
#include "wxkit1/ui_settings.h"

#include <wx/combobox.h>
#include <wx/event.h>
#include <wx/image.h>
#include <wx/panel.h>
#include <wx/weakref.h>

#include <map>
#include <utility>
#include <vector>

namespace corr_dialogs2 {

using settings_pair_t = std::pair<std::wstring, std::wstring>; // (debugger mode, analysis-type name)

// Builds the debugger panel of a page; until then holds its mode and
// enabled flag, afterwards passes everything on to the panel.
class custom_panel_factory_t : public launchdlg3::IPanelFactory
{
public:
    custom_panel_factory_t(launchdlg3::IAnalysisInfoProvider* info_provider, std::wstring initial_mode,
                           bool enabled = false);

    std::wstring getPanelTitle() const override { return launchdlg3::IPanelFactory::getPanelTitle(); }
    launchdlg3::Panel* createPanel(wxWindow* parent) override;

    debugger_panel_t* get_panel() const { return panel.get(); }
    settings_pair_t get_current_choice() const;
    void set_enabled(bool enable);
    void select_mode(const std::wstring& mode);

private:
    wxWeakRef<debugger_panel_t> panel; // the page owns it
    launchdlg3::IAnalysisInfoProvider* info_provider;
    std::wstring initial_mode;
    bool enabled;
};

class profile_factory_impl_t : public profile_factory_t
{
public:
    explicit profile_factory_impl_t(std::shared_ptr<settings2::IPropertyStorage> storage_);
    profile_factory_impl_t(const profile_factory_impl_t&) = default;
    profile_factory_impl_t& operator=(const profile_factory_impl_t&) = default;

    launchdlg3::profile_ptr createProfile(wxWindow* parent, launchdlg3::IProfileEventCallback* callback,
                                          bool tree) override;
    launchdlg3::IProfilePage* createGroupDescriptionPage(wxWindow* parent,
                                                         const settings2::IConfigDescriptorHierarchyNode& node) override;
    launchdlg3::IProfilePage* createWaitConnectionPage(wxWindow* parent,
                                                       launchdlg3::ITargetSession* target_session) override;
    launchdlg3::IProfilePage* createPage(const settings2::IConfigDescriptor& descriptor, wxWindow* parent,
                                         launchdlg3::IAnalysisInfoProvider* info_provider) override;
    launchdlg3::configurator_ptr createProfileConfigurator(wxWindow* parent) override;

    debug_mode_t get_debugger_mode(const runctl2::IAnalysisType& analysis_type) override;
    void enable_debugger_panel(const runctl2::IAnalysisType& analysis_type, bool enable) override;
    void set_debugger_mode(const runctl2::IAnalysisType& analysis_type, const std::wstring& mode) override;

    void load_debugger_settings();
    void save_debugger_settings(const settings_pair_t& settings);

private:
    custom_panel_factory_t* find_factory(const runctl2::IAnalysisType& analysis_type) const;

    std::shared_ptr<settings2::IPropertyStorage> storage;
    std::map<std::wstring, basekit2::sptr_t<custom_panel_factory_t>> panel_factories;
    settings_pair_t saved_settings;
    settings_pair_t loaded_settings;
};

// Places the profile: every placement 0 to 3 is the profile's outer panel.
class ProfileConfigurator : public launchdlg3::IProfileConfigurator
{
public:
    explicit ProfileConfigurator(wxWindow* parent);
    ~ProfileConfigurator() override;

    launchdlg3::placement_t getPlacement(int index) const override;
    platkit::types::variant getOption(const std::wstring& name) const override;
    wxFont getFont() const override;
    void onProfileShown() override {}
    void onAnalysisStarting() override {}

private:
    void on_size(wxSizeEvent& event);
    void on_show(wxShowEvent& event);
    void on_destroy(wxWindowDestroyEvent& event);

    wxPanel* m_panel = nullptr;
    wxBoxSizer* m_sizer = nullptr;
};

// The profile that lists the analysis types in a combo box above their pages.
class profile_qm_t : public wxEvtHandler, public launchdlg3::IProfile
{
public:
    profile_qm_t(const launchdlg3::configurator_ptr& configurator, wxWindow* parent,
                 launchdlg3::IProfileEventCallback* callback);
    ~profile_qm_t() override;

    void addPage(const runctl2::analysis_type_ptr& type, launchdlg3::IProfilePage* page) override;
    std::wstring getSelectedAnalysisType() const override;
    bool selectAnalysisType(const std::wstring& id) override;
    launchdlg3::IProfilePage* getPage(const std::wstring& id) const override;
    wxWindow* getPageParent() const override { return m_panel; }

    category_panel_t* get_category_panel() const { return m_category_panel; }
    wxComboBox* get_category_selector() const { return m_category_selector; }

private:
    struct page_entry_t
    {
        runctl2::analysis_type_ptr type;
        launchdlg3::IProfilePage* page;
    };
    void on_category_selected(wxCommandEvent& event);
    void on_size(wxSizeEvent& event);
    void show_page(int index, bool notify);
    void choose_category_image(const std::wstring& id);

    mutable basekit2::threading::mutex_t m_mutex;
    launchdlg3::configurator_ptr m_configurator;
    launchdlg3::IProfileEventCallback* m_callback; // not owned
    std::map<std::wstring, std::shared_ptr<top_right_panel_t>> m_top_right_panels;
    std::vector<int> m_top_right_widths;
    wxImage m_category_image;
    wxkit1::style_updater_t m_style_updater{wxkit1::ui_style_t::dialog};
    int m_selected_index = -1;
    int m_previous_index = -1;
    std::wstring m_selected_id;
    std::wstring m_previous_id;
    bool m_notifying = false;
    category_panel_t* m_category_panel = nullptr;
    wxComboBox* m_category_selector = nullptr;

    wxWindow* m_panel = nullptr;
    wxSizer* m_page_sizer = nullptr;
    std::vector<page_entry_t> m_pages;
};

} // namespace corr_dialogs2
