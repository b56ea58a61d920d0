#pragma once
// The factory the launch dialog calls for everything particular to the
// correctness analyser: the profile (the page set listing the analysis
// types), its configurator, the settings page of each analysis type, the
// group-description and wait-for-connection pages. It also keeps the one
// piece of persistent launch state, the debugger settings, in the property
// storage it is created with.
//
//   auto factory = corr_dialogs2::profile_factory_t::create(storage);
//   ... the launch dialog builds its pages through the factory ...
//   auto mode = factory->get_debugger_mode(type);   // also saves the choice
#include "corr_dialogs2/export.h"

#include "basekit2/intrusive.h"
#include "launchdlg3/profile.h"
#include "runctl2/analysis_type.h"
#include "settings2/property_storage.h"

#include <memory>
#include <string>

class wxWindow;

namespace corr_dialogs2 {

class CORR_DIALOGS2_API profile_factory_t : public launchdlg3::IProfileFactory
{
public:
    enum debug_mode_t {
        debug_mode_off = 0,            // "off", and anything unknown
        debug_mode_on_start = 1,       // "on-start"
        debug_mode_on_error = 2,       // "on-error"
        debug_mode_delay_analysis = 3, // "delay-analysis"
    };

    // A new factory over storage (may be null: then nothing is read or
    // written), with the debugger settings read from it.
    static basekit2::sptr_t<profile_factory_t> create(const std::shared_ptr<settings2::IPropertyStorage>& storage);

    // The mode chosen on the type's debugger panel; saving the choice is part
    // of reading it. Off for a type without a panel factory.
    virtual debug_mode_t get_debugger_mode(const runctl2::IAnalysisType& analysis_type) = 0;
    // Enables or disables the type's debugger panel (now, or when it is built).
    virtual void enable_debugger_panel(const runctl2::IAnalysisType& analysis_type, bool enable) = 0;
    // Selects the row of that mode on the type's debugger panel, once built.
    virtual void set_debugger_mode(const runctl2::IAnalysisType& analysis_type, const std::wstring& mode) = 0;

    // The mode of a mode string.
    static debug_mode_t to_debug_mode(const std::wstring& mode);

private:
    // The launch dialog's contract: it reaches these through IProfileFactory.
    using launchdlg3::IProfileFactory::createGroupDescriptionPage;
    using launchdlg3::IProfileFactory::createPage;
    using launchdlg3::IProfileFactory::createProfile;
    using launchdlg3::IProfileFactory::createProfileConfigurator;
    using launchdlg3::IProfileFactory::createWaitConnectionPage;
};

// What an analysis type may supply, queried as
// "dasID_corr_dialogs2::top_right_panel_t": a panel at the top right of its
// page, with a width and an item whose flag picks the category picture.
class CORR_DIALOGS2_API top_right_panel_t
{
public:
    class item_t
    {
    public:
        virtual ~item_t() = default;
        virtual bool query() const = 0;
    };
    virtual ~top_right_panel_t() = default;
    virtual int get_width() const = 0;
    virtual std::shared_ptr<item_t> get_item() const = 0;
    virtual wxWindow* create(wxWindow* parent) = 0;

    static constexpr const char* dynamic_type = "dasID_corr_dialogs2::top_right_panel_t";
};

// Storage keys of the launch settings.
namespace launch_settings {
inline constexpr const wchar_t* debugger_settings = L"debugger_settings";
inline constexpr const wchar_t* debugger_mode = L"debugger_mode";
inline constexpr const wchar_t* at_cliname = L"at_cliname";
// One value per user-defined analysis type: name -> built-in type and options.
inline constexpr const wchar_t* custom_analysis_types = L"custom_analysis_types";
} // namespace launch_settings

} // namespace corr_dialogs2
