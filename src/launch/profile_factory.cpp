#include "launch/profile_internal.h"

#include "runctl2/client_context.h"
#include "settings2/config_descriptor.h"

namespace corr_dialogs2 {
namespace {

using platkit::types::variant;

// The name of the root group of a fresh registry, computed once.
const std::wstring& root_group_name()
{
    static const std::wstring name = settings2::createConfigDescriptorRegistry()->getRootNode()->getName();
    return name;
}

std::vector<std::wstring> custom_type_names(const std::shared_ptr<settings2::IPropertyStorage>& storage)
{
    std::vector<std::wstring> names;
    basekit2::variant_bag_t bag;
    if (storage && storage->get(launch_settings::custom_analysis_types, bag))
        for (const auto& [name, value] : bag.values())
            names.push_back(name);
    return names;
}

} // namespace

// ---- custom_panel_factory_t

custom_panel_factory_t::custom_panel_factory_t(launchdlg3::IAnalysisInfoProvider* info_provider_,
                                               std::wstring initial_mode_, bool enabled_)
    : info_provider(info_provider_), initial_mode(std::move(initial_mode_)), enabled(enabled_)
{
}

launchdlg3::Panel* custom_panel_factory_t::createPanel(wxWindow* parent)
{
    auto* created = new debugger_panel_t(parent, info_provider, initial_mode);
    panel = created;
    created->set_disabled(!enabled);
    return created;
}

settings_pair_t custom_panel_factory_t::get_current_choice() const
{
    if (panel)
        return panel->get_current_choice();
    return {initial_mode, info_provider ? info_provider->getAnalysisTypeName() : std::wstring()};
}

void custom_panel_factory_t::set_enabled(bool enable)
{
    if (panel)
        panel->set_disabled(!enable);
    else
        enabled = enable;
}

void custom_panel_factory_t::select_mode(const std::wstring& mode)
{
    if (panel && panel->has_choices())
        panel->select_mode(mode);
}

// ---- profile_factory_t

basekit2::sptr_t<profile_factory_t> profile_factory_t::create(const std::shared_ptr<settings2::IPropertyStorage>& storage)
{
    using impl = basekit2::ref_counted_t<profile_factory_impl_t, basekit2::mt_ref_count_impl_t>;
    return basekit2::sptr_t<profile_factory_t>(new impl(storage));
}

profile_factory_t::debug_mode_t profile_factory_t::to_debug_mode(const std::wstring& mode)
{
    if (mode == L"on-start")
        return debug_mode_on_start;
    if (mode == L"on-error")
        return debug_mode_on_error;
    if (mode == L"delay-analysis")
        return debug_mode_delay_analysis;
    return debug_mode_off;
}

// ---- profile_factory_impl_t

profile_factory_impl_t::profile_factory_impl_t(std::shared_ptr<settings2::IPropertyStorage> storage_)
    : storage(std::move(storage_))
{
    load_debugger_settings();
}

void profile_factory_impl_t::load_debugger_settings()
{
    if (!storage)
        return;
    settings_pair_t settings{L"off", L"mi1"};
    basekit2::variant_bag_t bag;
    storage->get(launch_settings::debugger_settings, bag);
    const variant mode = bag.get(launch_settings::debugger_mode, variant(L"off"));
    if (mode.type() == variant::kind::string) {
        settings.first = mode.as_wstring();
        // The type is only trusted together with a mode.
        const variant at = bag.get(launch_settings::at_cliname, variant(L"mi1"));
        if (at.type() == variant::kind::string)
            settings.second = at.as_wstring();
    }
    loaded_settings = settings;
}

void profile_factory_impl_t::save_debugger_settings(const settings_pair_t& settings)
{
    if (!storage)
        return;
    if (settings == saved_settings)
        return;
    basekit2::variant_bag_t bag;
    bag.put(launch_settings::debugger_mode, settings.first);
    bag.put(launch_settings::at_cliname, settings.second);
    storage->put(launch_settings::debugger_settings, bag);
    saved_settings = settings;
}

launchdlg3::profile_ptr profile_factory_impl_t::createProfile(wxWindow* parent,
                                                              launchdlg3::IProfileEventCallback* callback, bool tree)
{
    launchdlg3::IProfileFactory& contract = *this;
    const launchdlg3::configurator_ptr configurator = contract.createProfileConfigurator(parent);
    if (tree)
        return launchdlg3::createTreeProfile(configurator, callback, tree);
    using impl = basekit2::ref_counted_t<profile_qm_t, basekit2::mt_ref_count_impl_t>;
    return launchdlg3::profile_ptr(new impl(configurator, parent, callback));
}

launchdlg3::IProfilePage* profile_factory_impl_t::createGroupDescriptionPage(
    wxWindow* parent, const settings2::IConfigDescriptorHierarchyNode& node)
{
    if (node.getName() == root_group_name())
        return new custom_analysis_page_t(parent, custom_type_names(storage));
    return launchdlg3::createDefaultGroupDescriptionPage(parent, node);
}

launchdlg3::IProfilePage* profile_factory_impl_t::createWaitConnectionPage(wxWindow* parent,
                                                                           launchdlg3::ITargetSession* target_session)
{
    return launchdlg3::createDefaultWaitConnectionPage(parent, target_session);
}

launchdlg3::IProfilePage* profile_factory_impl_t::createPage(const settings2::IConfigDescriptor& descriptor,
                                                             wxWindow* parent,
                                                             launchdlg3::IAnalysisInfoProvider* info_provider)
{
    launchdlg3::IProfilePage* page = launchdlg3::createDefaultPage(descriptor, parent, info_provider, nullptr);
    const auto context = runctl2::IClientContext::get();
    // The debugger choice exists only inside the IDE integration.
    if (!context || context->getString(runctl2::CLIENT_ID) != runctl2::client_id_ide)
        return page;

    const std::wstring name = descriptor.getName();
    // A saved mode follows only the analysis type it was chosen for.
    const std::wstring mode = name == loaded_settings.second ? loaded_settings.first : std::wstring(L"off");
    using impl = basekit2::ref_counted_t<custom_panel_factory_t, basekit2::simple_ref_count_impl_t>;
    basekit2::sptr_t<custom_panel_factory_t> factory(new impl(info_provider, mode, false));
    panel_factories[name] = factory;
    page->addPanelFactory(factory);
    return page;
}

launchdlg3::configurator_ptr profile_factory_impl_t::createProfileConfigurator(wxWindow* parent)
{
    using impl = basekit2::ref_counted_t<ProfileConfigurator, basekit2::mt_ref_count_impl_t>;
    return launchdlg3::configurator_ptr(new impl(parent));
}

custom_panel_factory_t* profile_factory_impl_t::find_factory(const runctl2::IAnalysisType& analysis_type) const
{
    const auto it = panel_factories.find(analysis_type.getId());
    return it == panel_factories.end() ? nullptr : it->second.get();
}

profile_factory_t::debug_mode_t profile_factory_impl_t::get_debugger_mode(const runctl2::IAnalysisType& analysis_type)
{
    custom_panel_factory_t* factory = find_factory(analysis_type);
    if (!factory)
        return debug_mode_off;
    const settings_pair_t choice = factory->get_current_choice();
    const debug_mode_t mode = to_debug_mode(choice.first);
    save_debugger_settings(choice);
    return mode;
}

void profile_factory_impl_t::enable_debugger_panel(const runctl2::IAnalysisType& analysis_type, bool enable)
{
    if (custom_panel_factory_t* factory = find_factory(analysis_type))
        factory->set_enabled(enable);
}

void profile_factory_impl_t::set_debugger_mode(const runctl2::IAnalysisType& analysis_type, const std::wstring& mode)
{
    if (custom_panel_factory_t* factory = find_factory(analysis_type))
        factory->select_mode(mode);
}

} // namespace corr_dialogs2
