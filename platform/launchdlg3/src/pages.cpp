#include "launchdlg3/profile.h"

#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/treectrl.h>

#include <map>

namespace launchdlg3 {

void IProfilePage::addPanelFactory(const panel_factory_ptr&) {}

namespace {

// A page that is a panel: it goes with its window.
class default_page_t : public wxPanel, public IProfilePage
{
public:
    default_page_t(wxWindow* parent, const std::wstring& title, const std::wstring& description)
        : wxPanel(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxTAB_TRAVERSAL, "DefaultPage")
    {
        auto* sizer = new wxBoxSizer(wxVERTICAL);
        auto* heading = new wxStaticText(this, wxID_ANY, title, wxDefaultPosition, wxDefaultSize, 0, "PageTitle");
        heading->SetFont(heading->GetFont().Bold());
        sizer->Add(heading, 0, wxALL, 5);
        if (!description.empty()) {
            auto* text = new wxStaticText(this, wxID_ANY, description, wxDefaultPosition, wxDefaultSize, 0,
                                          "PageDescription");
            sizer->Add(text, 0, wxLEFT | wxRIGHT | wxBOTTOM | wxEXPAND, 5);
        }
        SetSizer(sizer);
    }

    wxWindow* getWindow() override { return this; }
    void addPanelFactory(const panel_factory_ptr& factory) override
    {
        if (factory)
            m_factories.push_back(factory);
    }
    void activate() override
    {
        if (m_built)
            return;
        m_built = true;
        for (const auto& factory : m_factories) {
            Panel* panel = factory->createPanel(this);
            if (!panel || !panel->getWindow())
                continue;
            m_panels.push_back(panel);
            GetSizer()->Add(panel->getWindow(), 0, wxEXPAND | wxALL, panel->isLeftShifted() ? 0 : 5);
        }
        Layout();
    }
    std::vector<Panel*> getPanels() const override { return m_panels; }

private:
    std::vector<panel_factory_ptr> m_factories;
    std::vector<Panel*> m_panels; // their windows are children of the page
    bool m_built = false;
};

class tree_profile_t : public basekit2::ref_counted_t<IProfile, basekit2::mt_ref_count_impl_t>
{
public:
    tree_profile_t(configurator_ptr configurator, IProfileEventCallback* callback)
        : m_configurator(std::move(configurator)), m_callback(callback)
    {
        if (m_callback)
            m_callback->setProfile(this);
        const placement_t where = m_configurator ? m_configurator->getPlacement(2) : placement_t{};
        m_parent = where.window;
        if (!m_parent || !where.sizer)
            return;
        m_tree = new wxTreeCtrl(m_parent, wxID_ANY, wxDefaultPosition, wxSize(220, -1),
                                wxTR_HIDE_ROOT | wxTR_SINGLE | wxTR_HAS_BUTTONS | wxTR_LINES_AT_ROOT,
                                wxDefaultValidator, "AnalysisTypeTree");
        m_root = m_tree->AddRoot(L"");
        m_pages = new wxBoxSizer(wxVERTICAL);
        auto* row = new wxBoxSizer(wxHORIZONTAL);
        row->Add(m_tree, 0, wxEXPAND | wxALL, 0);
        row->Add(m_pages, 1, wxEXPAND | wxLEFT, 5);
        where.sizer->Add(row, 1, wxEXPAND);
        m_tree->Bind(wxEVT_TREE_SEL_CHANGED, [this](wxTreeEvent& e) {
            if (m_selecting)
                return;
            for (const auto& [id, item] : m_items)
                if (item == e.GetItem())
                    show(id, true);
        });
    }

    void addPage(const runctl2::analysis_type_ptr& type, IProfilePage* page) override
    {
        if (!type || !page || !m_tree)
            return;
        const std::wstring id = type->getId();
        m_items[id] = m_tree->AppendItem(m_root, type->getTitle());
        m_page_of[id] = page;
        m_pages->Add(page->getWindow(), 1, wxEXPAND);
        page->getWindow()->Hide();
        if (m_selected.empty())
            show(id, false);
    }
    std::wstring getSelectedAnalysisType() const override { return m_selected; }
    bool selectAnalysisType(const std::wstring& id) override
    {
        if (!m_page_of.count(id))
            return false;
        show(id, true);
        return true;
    }
    IProfilePage* getPage(const std::wstring& id) const override
    {
        const auto it = m_page_of.find(id);
        return it == m_page_of.end() ? nullptr : it->second;
    }

    wxWindow* getPageParent() const override { return m_parent; }

private:
    void show(const std::wstring& id, bool notify)
    {
        m_selected = id;
        for (const auto& [other, page] : m_page_of)
            page->getWindow()->Show(other == id);
        m_selecting = true;
        m_tree->SelectItem(m_items[id]);
        m_selecting = false;
        m_page_of[id]->activate();
        m_parent->Layout();
        if (notify && m_callback)
            m_callback->onAnalysisTypeSelected(id);
    }

    configurator_ptr m_configurator;
    IProfileEventCallback* m_callback;
    wxWindow* m_parent = nullptr;
    wxTreeCtrl* m_tree = nullptr;
    wxTreeItemId m_root;
    wxBoxSizer* m_pages = nullptr;
    std::map<std::wstring, wxTreeItemId> m_items;
    std::map<std::wstring, IProfilePage*> m_page_of;
    std::wstring m_selected;
    bool m_selecting = false;
};

} // namespace

IProfilePage* createDefaultPage(const settings2::IConfigDescriptor& descriptor, wxWindow* parent,
                                IAnalysisInfoProvider*, ITargetSession*)
{
    return new default_page_t(parent, descriptor.getTitle(), descriptor.getDescription());
}

IProfilePage* createDefaultGroupDescriptionPage(wxWindow* parent, const settings2::IConfigDescriptorHierarchyNode& node)
{
    std::wstring list;
    for (const auto& child : node.getChildren())
        list += L"\u2022 " + child->getTitle() + L"\n";
    return new default_page_t(parent, node.getTitle(), list);
}

IProfilePage* createDefaultWaitConnectionPage(wxWindow* parent, ITargetSession* target_session)
{
    const std::wstring what = target_session ? target_session->getDescription() : std::wstring(L"the analysed program");
    return new default_page_t(parent, L"Waiting for a connection",
                              L"The analysis starts when " + what + L" connects.");
}

profile_ptr createTreeProfile(const configurator_ptr& configurator, IProfileEventCallback* callback, bool)
{
    return profile_ptr(new tree_profile_t(configurator, callback));
}

} // namespace launchdlg3
