#include "launch/profile_internal.h"

#include "corr_dialogs2/ui_utils.h"

#include "shareddlg3/resources.h"
#include "wxkit1/image_loader.h"

#include <wx/sizer.h>
#include <wx/xrc/xmlres.h>

namespace corr_dialogs2 {
namespace {

wxImage load_category_image(const wchar_t* name)
{
    const wxkit1::image_loader_t images(
        shareddlg3::create_resource_filename(resources::catalog_file, resources::image_file));
    return images.load_image(name);
}

} // namespace

// ---- ProfileConfigurator

ProfileConfigurator::ProfileConfigurator(wxWindow* parent)
{
    m_panel = new wxPanel();
    if (!load_launch_layout(m_panel, parent, L"ProfilePanel"))
        m_panel->Create(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxTAB_TRAVERSAL, "ProfilePanel");
    m_sizer = new wxBoxSizer(wxVERTICAL);
    m_panel->SetSizer(m_sizer);
    m_panel->Bind(wxEVT_SIZE, &ProfileConfigurator::on_size, this);
    m_panel->Bind(wxEVT_SHOW, &ProfileConfigurator::on_show, this);
    m_panel->Bind(wxEVT_DESTROY, &ProfileConfigurator::on_destroy, this);
}

ProfileConfigurator::~ProfileConfigurator()
{
    if (!m_panel)
        return;
    m_panel->Unbind(wxEVT_SIZE, &ProfileConfigurator::on_size, this);
    m_panel->Unbind(wxEVT_SHOW, &ProfileConfigurator::on_show, this);
    m_panel->Unbind(wxEVT_DESTROY, &ProfileConfigurator::on_destroy, this);
}

launchdlg3::placement_t ProfileConfigurator::getPlacement(int index) const
{
    if (index < 0 || index > 3 || !m_panel)
        return {};
    return {m_panel, m_sizer, 1, wxEXPAND};
}

platkit::types::variant ProfileConfigurator::getOption(const std::wstring&) const
{
    return {};
}

wxFont ProfileConfigurator::getFont() const
{
    basekit2::threading::scoped_lock_t lock(wxkit1::ui_settings_t::get_mutex());
    return wxkit1::ui_settings_t::get_font(wxkit1::ui_settings_t::font_normal);
}

void ProfileConfigurator::on_size(wxSizeEvent& event)
{
    event.Skip();
    m_panel->Layout();
}

void ProfileConfigurator::on_show(wxShowEvent& event)
{
    event.Skip();
    if (event.IsShown())
        m_panel->Layout();
}

void ProfileConfigurator::on_destroy(wxWindowDestroyEvent& event)
{
    event.Skip();
    if (event.GetWindow() == m_panel) {
        m_panel = nullptr; // the window went with its parent
        m_sizer = nullptr;
    }
}

// ---- profile_qm_t

profile_qm_t::profile_qm_t(const launchdlg3::configurator_ptr& configurator, wxWindow*,
                           launchdlg3::IProfileEventCallback* callback)
    : m_configurator(configurator), m_callback(callback)
{
    if (m_callback)
        m_callback->setProfile(this);
    const launchdlg3::placement_t where = m_configurator ? m_configurator->getPlacement(2) : launchdlg3::placement_t{};
    m_panel = where.window;
    m_page_sizer = where.sizer;
    if (!m_panel || !m_page_sizer)
        return;
    m_style_updater.attach(m_panel);
    auto* sizer = new wxBoxSizer(wxVERTICAL);
    m_category_image = load_category_image(L"category1");
    wxXmlResource::Get()->Load(shareddlg3::create_resource_filename(resources::catalog_file, launch_resources::layout_file));
    m_category_panel = new category_panel_t(m_panel, wxBitmap(m_category_image));
    m_category_selector = new wxComboBox(m_panel, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize, 0, nullptr,
                                         wxCB_READONLY | wxCB_DROPDOWN, wxDefaultValidator, "CategoryCombobox");
    m_category_selector->Bind(wxEVT_COMBOBOX, &profile_qm_t::on_category_selected, this);
    m_panel->Bind(wxEVT_SIZE, &profile_qm_t::on_size, this);
    m_style_updater.register_window(m_category_selector);
    sizer->Add(m_category_panel, 0, wxEXPAND | wxALL, 0);
    sizer->Add(m_category_selector, 0, wxEXPAND | wxLEFT | wxTOP, 5);
    m_page_sizer->Add(sizer, 0, wxEXPAND);
}

profile_qm_t::~profile_qm_t()
{
    m_style_updater.detach();
    if (m_category_selector && m_configurator && m_configurator->getPlacement(2).window == m_panel) {
        m_category_selector->Unbind(wxEVT_COMBOBOX, &profile_qm_t::on_category_selected, this);
        m_panel->Unbind(wxEVT_SIZE, &profile_qm_t::on_size, this);
    }
}

void profile_qm_t::addPage(const runctl2::analysis_type_ptr& type, launchdlg3::IProfilePage* page)
{
    if (!type || !page || !m_page_sizer)
        return;
    wxWindow* window = page->getWindow();
    m_page_sizer->Add(window, 1, wxEXPAND | wxTOP, 5);
    const std::wstring id = type->getId();
    {
        basekit2::threading::scoped_lock_t lock(m_mutex);
        m_pages.push_back({type, page});
    }
    if (auto object = type->queryObject(top_right_panel_t::dynamic_type)) {
        auto panel = std::static_pointer_cast<top_right_panel_t>(object);
        m_top_right_panels[id] = panel;
        m_top_right_widths.push_back(panel->get_width());
        panel->create(window);
    }
    choose_category_image(id);
    m_category_selector->Append(type->getTitle());
    if (m_selected_index < 0)
        show_page(0, false);
    else
        window->Hide();
    m_panel->Layout();
}

void profile_qm_t::choose_category_image(const std::wstring& id)
{
    bool second = false;
    const auto it = m_top_right_panels.find(id);
    if (it != m_top_right_panels.end()) {
        const auto item = it->second->get_item();
        second = item && item->query();
    }
    m_category_image = load_category_image(second ? L"category2" : L"category1");
    if (m_category_panel)
        m_category_panel->set_image(wxBitmap(m_category_image));
}

std::wstring profile_qm_t::getSelectedAnalysisType() const
{
    basekit2::threading::scoped_lock_t lock(m_mutex);
    return m_selected_id;
}

bool profile_qm_t::selectAnalysisType(const std::wstring& id)
{
    for (size_t i = 0; i < m_pages.size(); ++i) {
        if (m_pages[i].type->getId() == id) {
            show_page(static_cast<int>(i), true);
            return true;
        }
    }
    return false;
}

launchdlg3::IProfilePage* profile_qm_t::getPage(const std::wstring& id) const
{
    basekit2::threading::scoped_lock_t lock(m_mutex);
    for (const auto& entry : m_pages)
        if (entry.type->getId() == id)
            return entry.page;
    return nullptr;
}

void profile_qm_t::on_category_selected(wxCommandEvent& event)
{
    event.Skip();
    const int index = m_category_selector->GetSelection();
    if (index >= 0 && index != m_selected_index)
        show_page(index, true);
}

void profile_qm_t::on_size(wxSizeEvent& event)
{
    event.Skip();
    if (m_category_panel)
        m_category_panel->Refresh();
}

void profile_qm_t::show_page(int index, bool notify)
{
    if (index < 0 || index >= static_cast<int>(m_pages.size()))
        return;
    {
        basekit2::threading::scoped_lock_t lock(m_mutex);
        m_previous_index = m_selected_index;
        m_previous_id = m_selected_id;
        m_selected_index = index;
        m_selected_id = m_pages[index].type->getId();
    }
    for (size_t i = 0; i < m_pages.size(); ++i)
        m_pages[i].page->getWindow()->Show(static_cast<int>(i) == index);
    if (m_category_selector->GetSelection() != index)
        m_category_selector->SetSelection(index);
    m_pages[index].page->activate();
    choose_category_image(m_selected_id);
    m_panel->Layout();
    // A callback that selects again must not recurse into itself.
    if (notify && m_callback && !m_notifying) {
        m_notifying = true;
        m_callback->onAnalysisTypeSelected(m_selected_id);
        m_notifying = false;
    }
}

} // namespace corr_dialogs2
