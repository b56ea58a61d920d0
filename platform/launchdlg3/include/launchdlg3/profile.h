#pragma once
// The analysis-launch dialog's extension points. The dialog asks one profile
// factory (given by the analyser's front end) for the profile, the page set
// that lists the analysis types; for the configurator that places the
// profile's panel; for one settings page per analysis type; for a
// description page per group of types; and for the wait-for-connection page.
// A page may carry panel factories; it builds their panels when first shown.
#include "basekit2/intrusive.h"
#include "basekit2/signal.h"
#include "platkit/types/variant.h"
#include "runctl2/analysis_type.h"
#include "settings2/config_descriptor.h"

#include <wx/font.h>
#include <wx/sizer.h>
#include <wx/window.h>

#include <memory>
#include <string>
#include <vector>

namespace launchdlg3 {

// What the dialog knows of the analysis a page is for.
class IAnalysisInfoProvider
{
public:
    struct entry_t
    {
        std::wstring name;  // e.g. the analyser's tool name, "memcheck"
        std::wstring title; // for people
    };
    virtual ~IAnalysisInfoProvider() = default;
    // The analyses the page's type runs (one for every built-in type).
    virtual std::vector<entry_t> getEntries() const = 0;
    // The label of the debugger panel of the page.
    virtual std::wstring getDebuggerPanelLabel() const = 0;
    // The command-line name of the page's analysis type ("mi1").
    virtual std::wstring getAnalysisTypeName() const = 0;
};

// A panel a page holds besides its own controls.
class Panel
{
public:
    virtual ~Panel() = default;
    virtual wxWindow* getWindow() = 0;
    // Shows the data in the controls again.
    virtual void updateData() {}
    // Takes the controls' state into the data (before the analysis starts).
    virtual void applyData() {}
    // Whether an IDE project's settings may supply this panel's values.
    virtual bool isIDEInheritable() const { return false; }
    // Whether the page places it at the left edge rather than indented.
    virtual bool isLeftShifted() const { return false; }
};

class IPanelFactory : public basekit2::object_interface_t
{
public:
    virtual std::wstring getPanelTitle() const { return {}; }
    // Creates the panel under parent; the page owns the panel's window.
    virtual Panel* createPanel(wxWindow* parent) = 0;
};
using panel_factory_ptr = basekit2::sptr_t<IPanelFactory>;

// A page of the profile. The page is a window; its parent owns it.
class IProfilePage
{
public:
    virtual ~IProfilePage() = default;
    virtual wxWindow* getWindow() = 0;
    // Adds a factory of a panel the page shows below its own controls.
    virtual void addPanelFactory(const panel_factory_ptr& factory);
    // Called when the page becomes the visible one; the default page builds
    // its panels the first time.
    virtual void activate() {}
    virtual std::vector<Panel*> getPanels() const { return {}; }
};

// Where the profile puts a window: the dialog's placements 0 to 3 (header,
// profile, pages, footer).
struct placement_t
{
    wxWindow* window = nullptr;
    wxSizer* sizer = nullptr;
    int proportion = 0;
    int flags = 0;
};

class IProfileConfigurator : public basekit2::object_interface_t
{
public:
    virtual placement_t getPlacement(int index) const = 0;
    virtual platkit::types::variant getOption(const std::wstring& name) const = 0;
    virtual wxFont getFont() const = 0;
    virtual void onProfileShown() = 0;
    virtual void onAnalysisStarting() = 0;
};
using configurator_ptr = basekit2::sptr_t<IProfileConfigurator>;

class IProfile;

// The launch dialog's side of a profile.
class IProfileEventCallback
{
public:
    virtual ~IProfileEventCallback() = default;
    // The profile introduces itself as it is constructed.
    virtual void setProfile(IProfile* profile) = 0;
    // The user chose another analysis type (its identifier).
    virtual void onAnalysisTypeSelected(const std::wstring& id) = 0;
};

// The page set listing the analysis types.
class IProfile : public basekit2::object_interface_t, public basekit2::subscriber_t
{
public:
    // Adds the page of a type; the first type added is selected.
    virtual void addPage(const runctl2::analysis_type_ptr& type, IProfilePage* page) = 0;
    virtual std::wstring getSelectedAnalysisType() const = 0;
    // Selects the type of that identifier; false when the profile has none.
    virtual bool selectAnalysisType(const std::wstring& id) = 0;
    virtual IProfilePage* getPage(const std::wstring& id) const = 0;
    // The window the pages are to be created under.
    virtual wxWindow* getPageParent() const = 0;
};
using profile_ptr = basekit2::sptr_t<IProfile>;

// A session the wait-for-connection page waits for (an analysed program that
// is to attach); null when none.
class ITargetSession
{
public:
    virtual ~ITargetSession() = default;
    virtual std::wstring getDescription() const = 0;
};

// The factory the analyser's front end gives the dialog.
class IProfileFactory : public basekit2::object_interface_t
{
public:
    virtual profile_ptr createProfile(wxWindow* parent, IProfileEventCallback* callback, bool tree) = 0;
    virtual IProfilePage* createGroupDescriptionPage(wxWindow* parent,
                                                     const settings2::IConfigDescriptorHierarchyNode& node) = 0;
    virtual IProfilePage* createWaitConnectionPage(wxWindow* parent, ITargetSession* target_session) = 0;
    virtual IProfilePage* createPage(const settings2::IConfigDescriptor& descriptor, wxWindow* parent,
                                     IAnalysisInfoProvider* info_provider) = 0;
    virtual configurator_ptr createProfileConfigurator(wxWindow* parent) = 0;
};
using profile_factory_ptr = basekit2::sptr_t<IProfileFactory>;

// The dialog's own pages and profile.
// A page showing the descriptor's title and description, with the panels of
// its factories below.
IProfilePage* createDefaultPage(const settings2::IConfigDescriptor& descriptor, wxWindow* parent,
                                IAnalysisInfoProvider* info_provider, ITargetSession* target_session);
// A page saying what the group holds.
IProfilePage* createDefaultGroupDescriptionPage(wxWindow* parent, const settings2::IConfigDescriptorHierarchyNode& node);
// A page saying that the dialog waits for the target session to connect.
IProfilePage* createDefaultWaitConnectionPage(wxWindow* parent, ITargetSession* target_session);
// A profile listing the types in a tree (placed as the configurator says).
profile_ptr createTreeProfile(const configurator_ptr& configurator, IProfileEventCallback* callback, bool tree);

} // namespace launchdlg3
