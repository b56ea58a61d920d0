// The profile factory in real windows: debugger settings read from and
// written to a real project file, the debugger panel only in the IDE client,
// the configurator's placements and the combo-box profile.
#include "launch_support.h"

#include "corr_dialogs2/collect_panels.h"
#include "corr_dialogs2/profile_factory.h"

#include "settings2/config_descriptor.h"
#include "settings2/property_storage.h"

#include "shareddlg3/resources.h"
#include "wxkit1/image_loader.h"

#include <wx/combobox.h>
#include <wx/listbox.h>
#include <wx/radiobut.h>
#include <wx/statbmp.h>
#include <wx/treectrl.h>

using corr_dialogs2::debugger_panel_t;
using corr_dialogs2::profile_factory_t;
using launch_test::info_provider_t;
namespace fs = std::filesystem;

namespace {

// The project's own storage, counting the puts that reach the file.
class counting_storage_t : public settings2::file_property_storage_t
{
public:
    using file_property_storage_t::file_property_storage_t;
    bool put(const std::wstring& key, const basekit2::variant_bag_t& bag) override
    {
        ++puts;
        return file_property_storage_t::put(key, bag);
    }
    int puts = 0;
};

class top_right_t : public corr_dialogs2::top_right_panel_t
{
public:
    struct item : item_t
    {
        bool value;
        explicit item(bool v) : value(v) {}
        bool query() const override { return value; }
    };
    explicit top_right_t(bool flag) : m_flag(flag) {}
    int get_width() const override { return 120; }
    std::shared_ptr<item_t> get_item() const override { return std::make_shared<item>(m_flag); }
    wxWindow* create(wxWindow* parent) override
    {
        created = new wxPanel(parent, wxID_ANY, wxDefaultPosition, wxSize(120, 20), 0, "TopRight");
        return created;
    }
    wxWindow* created = nullptr;

private:
    bool m_flag;
};

// A type that supplies a top-right panel.
class type_with_panel_t : public runctl2::analysis_type_t
{
public:
    type_with_panel_t(std::wstring id, bool flag)
        : analysis_type_t({std::move(id), L"With a panel", L"", runctl2::analyser_t::memcheck, {}, {}}),
          panel(std::make_shared<top_right_t>(flag))
    {
    }
    std::shared_ptr<void> queryObject(const std::string& type) const override
    {
        return type == corr_dialogs2::top_right_panel_t::dynamic_type ? panel : nullptr;
    }
    std::shared_ptr<top_right_t> panel;
};

class ProfileFactory : public launch_test::frame_test
{
protected:
    void SetUp() override
    {
        frame_test::SetUp();
        const auto* info = testing::UnitTest::GetInstance()->current_test_info();
        m_dir = fs::temp_directory_path() /
                (std::string("corr launch Ä ") + info->name() + "_" +
                 std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()));
        fs::create_directories(m_dir);
    }
    void TearDown() override
    {
        m_profile.reset();
        frame_test::TearDown();
        std::error_code ec;
        fs::remove_all(m_dir, ec);
    }

    std::shared_ptr<counting_storage_t> storage()
    {
        return std::make_shared<counting_storage_t>(basekit2::path_t::from_utf8((m_dir / "project.corrproj").string()));
    }
    void store_settings(const platkit::types::variant& mode, const platkit::types::variant& at)
    {
        basekit2::variant_bag_t bag;
        bag.put(L"debugger_mode", mode);
        bag.put(L"at_cliname", at);
        ASSERT_TRUE(storage()->put(L"debugger_settings", bag));
    }
    basekit2::variant_bag_t stored_settings()
    {
        basekit2::variant_bag_t bag;
        storage()->get(L"debugger_settings", bag);
        return bag;
    }

    // Builds the profile with one page per type, as the launch dialog does.
    void build(launchdlg3::IProfileFactory& factory, const std::vector<runctl2::analysis_type_ptr>& types)
    {
        m_profile = factory.createProfile(m_frame, &m_callback, false);
        ASSERT_TRUE(m_profile);
        for (const auto& type : types) {
            m_providers.push_back(std::make_unique<info_provider_t>(type->getCliName(), std::vector<std::wstring>{L"memcheck"}));
            settings2::simple_config_descriptor_t descriptor(type->getId(), type->getTitle());
            launchdlg3::IProfilePage* page =
                factory.createPage(descriptor, m_profile->getPageParent(), m_providers.back().get());
            m_profile->addPage(type, page);
        }
        auto* sizer = new wxBoxSizer(wxVERTICAL);
        sizer->Add(m_profile->getPageParent(), 1, wxEXPAND);
        m_frame->SetSizer(sizer, true);
        m_frame->Layout();
        corr_test::pump_events();
    }
    debugger_panel_t* panel_of(const std::wstring& id)
    {
        launchdlg3::IProfilePage* page = m_profile->getPage(id);
        if (!page)
            return nullptr;
        for (launchdlg3::Panel* p : page->getPanels())
            if (auto* d = dynamic_cast<debugger_panel_t*>(p))
                return d;
        return nullptr;
    }
    static runctl2::analysis_type_ptr type(const wchar_t* id) { return runctl2::find_analysis_type(id); }

    fs::path m_dir;
    launch_test::callback_t m_callback;
    launchdlg3::profile_ptr m_profile;
    std::vector<std::unique_ptr<info_provider_t>> m_providers;
};

} // namespace

TEST(DebugMode, ModeStringsMapToTheirValues)
{
    EXPECT_EQ(profile_factory_t::to_debug_mode(L"off"), 0);
    EXPECT_EQ(profile_factory_t::to_debug_mode(L"on-start"), 1);
    EXPECT_EQ(profile_factory_t::to_debug_mode(L"on-error"), 2);
    EXPECT_EQ(profile_factory_t::to_debug_mode(L"delay-analysis"), 3);
    EXPECT_EQ(profile_factory_t::to_debug_mode(L"On-Error"), 0);
    EXPECT_EQ(profile_factory_t::to_debug_mode(L""), 0);
}

TEST_F(ProfileFactory, WithoutStorageEveryIdePageStartsOff)
{
    launch_test::client_scope ide(L"VS");
    auto factory = profile_factory_t::create(nullptr);
    build(*factory, {type(L"mi1"), type(L"mi2"), type(L"ti1")});
    for (const wchar_t* id : {L"mi1", L"mi2", L"ti1"}) {
        ASSERT_TRUE(m_profile->selectAnalysisType(id));
        debugger_panel_t* panel = panel_of(id);
        ASSERT_NE(panel, nullptr) << wxString(id);
        EXPECT_EQ(panel->get_current_choice().first, L"off") << wxString(id);
        EXPECT_FALSE(panel->IsEnabled()) << "a panel starts disabled unless enabled first";
    }
    EXPECT_EQ(factory->get_debugger_mode(*type(L"mi1")), profile_factory_t::debug_mode_off);
}

TEST_F(ProfileFactory, SavedModeFollowsOnlyTheTypeItWasChosenFor)
{
    store_settings(L"on-error", L"mi2");
    launch_test::client_scope ide(L"VS");
    auto factory = profile_factory_t::create(storage());
    build(*factory, {type(L"mi1"), type(L"mi2"), type(L"mi3")});
    for (const wchar_t* id : {L"mi1", L"mi2", L"mi3"})
        m_profile->selectAnalysisType(id);
    EXPECT_EQ(panel_of(L"mi2")->get_current_choice().first, L"on-error");
    EXPECT_EQ(panel_of(L"mi1")->get_current_choice().first, L"off");
    EXPECT_EQ(panel_of(L"mi3")->get_current_choice().first, L"off");
    EXPECT_EQ(factory->get_debugger_mode(*type(L"mi2")), profile_factory_t::debug_mode_on_error);
}

TEST_F(ProfileFactory, NonStringValuesFallBackToTheDefaults)
{
    // A mode that is not a string: the defaults, and the type is not read.
    store_settings(7, L"mi2");
    {
        launch_test::client_scope ide(L"VS");
        auto factory = profile_factory_t::create(storage());
        build(*factory, {type(L"mi1"), type(L"mi2")});
        m_profile->selectAnalysisType(L"mi2");
        EXPECT_EQ(panel_of(L"mi1")->get_current_choice().first, L"off");
        EXPECT_EQ(panel_of(L"mi2")->get_current_choice().first, L"off");
    }
    // A string mode with a type that is not a string: the mode for "mi1".
    store_settings(L"delay-analysis", true);
    launch_test::client_scope ide(L"VS");
    auto factory = profile_factory_t::create(storage());
    build(*factory, {type(L"mi1"), type(L"mi2")});
    m_profile->selectAnalysisType(L"mi2");
    EXPECT_EQ(panel_of(L"mi1")->get_current_choice().first, L"delay-analysis");
    EXPECT_EQ(panel_of(L"mi2")->get_current_choice().first, L"off");
}

TEST_F(ProfileFactory, OutsideTheIdeThereIsNoPanelAndNothingIsWritten)
{
    for (const wchar_t* client : {L"GUI", L"vs", L"VS ", L""}) {
        launch_test::client_scope scope(client);
        auto counted = storage();
        auto factory = profile_factory_t::create(counted);
        build(*factory, {type(L"mi1"), type(L"ti2")});
        m_profile->selectAnalysisType(L"ti2");
        EXPECT_EQ(panel_of(L"mi1"), nullptr) << wxString(client);
        EXPECT_EQ(panel_of(L"ti2"), nullptr) << wxString(client);
        factory->enable_debugger_panel(*type(L"mi1"), true);
        factory->set_debugger_mode(*type(L"mi1"), L"on-error");
        EXPECT_EQ(factory->get_debugger_mode(*type(L"mi1")), 0);
        EXPECT_EQ(factory->get_debugger_mode(*type(L"ti2")), 0);
        EXPECT_EQ(counted->puts, 0);
        EXPECT_FALSE(fs::exists(m_dir / "project.corrproj"));
        m_profile.reset();
    }
    // No client context at all is not the IDE either.
    auto factory = profile_factory_t::create(storage());
    build(*factory, {type(L"mi1")});
    EXPECT_EQ(panel_of(L"mi1"), nullptr);
}

TEST_F(ProfileFactory, ReadingTheModeSavesItOnlyWhenTheChoiceChanged)
{
    launch_test::client_scope ide(L"VS");
    auto counted = storage();
    auto factory = profile_factory_t::create(counted);
    // The first page is shown (and builds its panel) at once; "mi1" never is.
    build(*factory, {type(L"mi3"), type(L"mi1")});
    factory->enable_debugger_panel(*type(L"mi3"), true);
    debugger_panel_t* panel = panel_of(L"mi3");
    ASSERT_NE(panel, nullptr);
    ASSERT_TRUE(panel->IsEnabled());
    EXPECT_EQ(panel_of(L"mi1"), nullptr);

    // The user picks the third row with the mouse.
    launch_test::click(panel->get_radio_buttons()[2]);
    EXPECT_EQ(factory->get_debugger_mode(*type(L"mi3")), profile_factory_t::debug_mode_delay_analysis);
    EXPECT_EQ(factory->get_debugger_mode(*type(L"mi3")), profile_factory_t::debug_mode_delay_analysis);
    EXPECT_EQ(counted->puts, 1) << "an unchanged pair is not written again";
    EXPECT_EQ(stored_settings().get(L"debugger_mode").as_wstring(), L"delay-analysis");
    EXPECT_EQ(stored_settings().get(L"at_cliname").as_wstring(), L"mi3");

    launch_test::click(panel->get_radio_buttons()[1]);
    EXPECT_EQ(factory->get_debugger_mode(*type(L"mi3")), profile_factory_t::debug_mode_on_error);
    EXPECT_EQ(counted->puts, 2);

    // A page whose panel was never built answers its starting mode, and
    // that pair is saved too.
    EXPECT_EQ(factory->get_debugger_mode(*type(L"mi1")), profile_factory_t::debug_mode_off);
    EXPECT_EQ(counted->puts, 3);
    EXPECT_EQ(stored_settings().get(L"at_cliname").as_wstring(), L"mi1");
    EXPECT_EQ(factory->get_debugger_mode(*type(L"mi3")), profile_factory_t::debug_mode_on_error);
    EXPECT_EQ(counted->puts, 4) << "the pair differs from the last one written";

    // A new factory over the project starts the saved type's page at its mode.
    auto again = profile_factory_t::create(storage());
    build(*again, {type(L"mi1"), type(L"mi3")});
    m_profile->selectAnalysisType(L"mi3");
    EXPECT_EQ(panel_of(L"mi3")->get_current_choice().first, L"on-error");
    EXPECT_EQ(panel_of(L"mi1")->get_current_choice().first, L"off");
}

TEST_F(ProfileFactory, EnablingBeforeThePanelExistsAndSelectingAModeAfter)
{
    launch_test::client_scope ide(L"VS");
    auto factory = profile_factory_t::create(storage());
    build(*factory, {type(L"mi1"), type(L"mi2"), type(L"ti1")});
    factory->enable_debugger_panel(*type(L"mi2"), true);
    factory->set_debugger_mode(*type(L"mi2"), L"delay-analysis"); // no panel yet: nothing
    m_profile->selectAnalysisType(L"mi2");
    m_profile->selectAnalysisType(L"ti1");
    ASSERT_TRUE(panel_of(L"mi2"));
    EXPECT_TRUE(panel_of(L"mi2")->IsEnabled());
    EXPECT_EQ(panel_of(L"mi2")->get_current_choice().first, L"off");
    EXPECT_FALSE(panel_of(L"ti1")->IsEnabled());

    factory->set_debugger_mode(*type(L"mi2"), L"delay-analysis");
    EXPECT_EQ(panel_of(L"mi2")->get_current_choice().first, L"delay-analysis");
    factory->set_debugger_mode(*type(L"mi2"), L"on-start");
    EXPECT_EQ(panel_of(L"mi2")->get_current_choice().first, L"delay-analysis") << "no row has that mode";

    factory->enable_debugger_panel(*type(L"ti1"), true);
    EXPECT_TRUE(panel_of(L"ti1")->IsEnabled());
    factory->enable_debugger_panel(*type(L"mi2"), false);
    EXPECT_FALSE(panel_of(L"mi2")->IsEnabled());
    // A type the factory has no page for is ignored.
    factory->enable_debugger_panel(*type(L"asan"), true);
    EXPECT_EQ(factory->get_debugger_mode(*type(L"asan")), 0);
}

TEST_F(ProfileFactory, ConfiguratorPlacesEverythingOnTheProfilePanel)
{
    auto factory = profile_factory_t::create(nullptr);
    launchdlg3::IProfileFactory& contract = *factory;
    auto configurator = contract.createProfileConfigurator(m_frame);
    ASSERT_TRUE(configurator);
    const launchdlg3::placement_t first = configurator->getPlacement(0);
    ASSERT_NE(first.window, nullptr);
    EXPECT_EQ(first.window->GetName(), "ProfilePanel");
    EXPECT_EQ(first.window->GetParent(), m_frame);
    EXPECT_EQ(first.sizer, first.window->GetSizer());
    auto* box = dynamic_cast<wxBoxSizer*>(first.sizer);
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->GetOrientation(), wxVERTICAL);
    for (int i = 0; i <= 3; ++i) {
        const launchdlg3::placement_t p = configurator->getPlacement(i);
        EXPECT_EQ(p.window, first.window);
        EXPECT_EQ(p.sizer, first.sizer);
        EXPECT_EQ(p.proportion, 1);
        EXPECT_EQ(p.flags, wxEXPAND);
    }
    for (int i : {4, 5, 100}) {
        const launchdlg3::placement_t p = configurator->getPlacement(i);
        EXPECT_EQ(p.window, nullptr);
        EXPECT_EQ(p.sizer, nullptr);
        EXPECT_EQ(p.proportion, 0);
        EXPECT_EQ(p.flags, 0);
    }
    EXPECT_TRUE(configurator->getOption(L"anything").empty());
    EXPECT_EQ(configurator->getFont(), wxkit1::ui_settings_t::get_font(wxkit1::ui_settings_t::font_normal));

    // The panel goes with its parent; the configurator then places nothing.
    first.window->Destroy();
    corr_test::pump_events();
    EXPECT_EQ(configurator->getPlacement(1).window, nullptr);
}

TEST_F(ProfileFactory, ComboProfileShowsOnePageAtATimeAndTheCategoryPicture)
{
    auto factory = profile_factory_t::create(nullptr);
    auto plain = type(L"mi1");
    auto flagged = std::make_shared<type_with_panel_t>(L"flagged", true);
    auto unflagged = std::make_shared<type_with_panel_t>(L"unflagged", false);
    build(*factory, {plain, flagged, unflagged});
    EXPECT_EQ(m_callback.profile, m_profile.get()) << "the profile introduces itself first";

    wxWindow* panel = m_profile->getPageParent();
    auto* combo = dynamic_cast<wxComboBox*>(panel->FindWindow("CategoryCombobox"));
    ASSERT_NE(combo, nullptr);
    EXPECT_TRUE(combo->HasFlag(wxCB_READONLY));
    ASSERT_EQ(combo->GetCount(), 3u);
    EXPECT_EQ(combo->GetString(0), wxString(plain->getTitle()));
    EXPECT_EQ(m_profile->getSelectedAnalysisType(), L"mi1");
    EXPECT_TRUE(m_profile->getPage(L"mi1")->getWindow()->IsShown());
    EXPECT_FALSE(m_profile->getPage(L"flagged")->getWindow()->IsShown());
    EXPECT_NE(flagged->panel->created, nullptr);
    EXPECT_EQ(flagged->panel->created->GetParent(), m_profile->getPage(L"flagged")->getWindow());

    // Layout: category panel and combo in a sizer of their own, pages below.
    auto* category = dynamic_cast<corr_dialogs2::category_panel_t*>(panel->FindWindow("WhitePanel"));
    ASSERT_NE(category, nullptr);
    wxSizerItem* category_item = panel->GetSizer()->GetItem(category, true);
    ASSERT_NE(category_item, nullptr);
    EXPECT_EQ(category_item->GetProportion(), 0);
    EXPECT_EQ(category_item->GetFlag(), wxEXPAND | wxALL);
    EXPECT_EQ(category_item->GetBorder(), 0);
    wxSizerItem* combo_item = panel->GetSizer()->GetItem(combo, true);
    EXPECT_EQ(combo_item->GetFlag(), wxEXPAND | wxLEFT | wxTOP);
    EXPECT_EQ(combo_item->GetBorder(), 5);
    wxSizerItem* page_item = panel->GetSizer()->GetItem(m_profile->getPage(L"mi1")->getWindow());
    ASSERT_NE(page_item, nullptr);
    EXPECT_EQ(page_item->GetProportion(), 1);
    EXPECT_EQ(page_item->GetFlag(), wxEXPAND | wxTOP);
    EXPECT_EQ(page_item->GetBorder(), 5);
    wxSizerItem* header = panel->GetSizer()->GetItem(size_t(0));
    ASSERT_TRUE(header->IsSizer());
    EXPECT_EQ(header->GetProportion(), 0);
    EXPECT_EQ(header->GetFlag(), wxEXPAND);

    const wxkit1::image_loader_t images(shareddlg3::create_resource_filename(L"dialogs2.dat", L"dialogs_images.xrc"));
    auto same = [](const wxBitmap& a, const wxImage& b) {
        const wxImage ia = a.ConvertToImage();
        return ia.GetSize() == b.GetSize() &&
               std::equal(ia.GetData(), ia.GetData() + ia.GetWidth() * ia.GetHeight() * 3, b.GetData());
    };
    const wxImage category1 = images.load_image(L"category1");
    const wxImage category2 = images.load_image(L"category2");
    EXPECT_TRUE(same(category->get_image(), category1));

    // The user picks the second type in the combo box, with the keyboard.
    combo->SetFocus();
    corr_test::pump_events();
    wxUIActionSimulator sim;
    sim.Char(WXK_DOWN);
    ASSERT_TRUE(corr_test::wait_until([&] { return m_profile->getSelectedAnalysisType() == L"flagged"; }, 3000));
    EXPECT_EQ(m_callback.selected, (std::vector<std::wstring>{L"flagged"}));
    EXPECT_TRUE(m_profile->getPage(L"flagged")->getWindow()->IsShown());
    EXPECT_FALSE(m_profile->getPage(L"mi1")->getWindow()->IsShown());
    EXPECT_TRUE(same(category->get_image(), category2)) << "its top-right item's query is true";

    EXPECT_TRUE(m_profile->selectAnalysisType(L"unflagged"));
    EXPECT_EQ(combo->GetSelection(), 2);
    EXPECT_TRUE(same(category->get_image(), category1));
    EXPECT_FALSE(m_profile->selectAnalysisType(L"no-such-type"));
    EXPECT_EQ(m_profile->getSelectedAnalysisType(), L"unflagged");
}

TEST_F(ProfileFactory, TreeProfileGroupAndWaitPages)
{
    auto factory = profile_factory_t::create(nullptr);
    launchdlg3::IProfileFactory& contract = *factory;
    auto tree = contract.createProfile(m_frame, &m_callback, true);
    ASSERT_TRUE(tree);
    EXPECT_EQ(m_callback.profile, tree.get());
    EXPECT_NE(tree->getPageParent()->FindWindow("AnalysisTypeTree"), nullptr);
    EXPECT_EQ(tree->getPageParent()->FindWindow("CategoryCombobox"), nullptr);

    auto registry = settings2::createConfigDescriptorRegistry();
    registry->addDescriptor(std::make_shared<settings2::simple_config_descriptor_t>(L"mi1", L"Leaks"), L"memory");
    launchdlg3::IProfilePage* root = contract.createGroupDescriptionPage(m_frame, *registry->getRootNode());
    EXPECT_NE(dynamic_cast<corr_dialogs2::custom_analysis_page_t*>(root), nullptr);
    // Any fresh registry's root is the same group.
    launchdlg3::IProfilePage* other_root =
        contract.createGroupDescriptionPage(m_frame, *settings2::createConfigDescriptorRegistry()->getRootNode());
    EXPECT_NE(dynamic_cast<corr_dialogs2::custom_analysis_page_t*>(other_root), nullptr);
    launchdlg3::IProfilePage* group = contract.createGroupDescriptionPage(m_frame, *registry->findNode(L"memory"));
    ASSERT_NE(group, nullptr);
    EXPECT_EQ(dynamic_cast<corr_dialogs2::custom_analysis_page_t*>(group), nullptr);
    EXPECT_NE(contract.createWaitConnectionPage(m_frame, nullptr), nullptr);
}

TEST_F(ProfileFactory, CustomTypesOfTheProjectAreListed)
{
    basekit2::variant_bag_t custom;
    custom.put(L"Deep leaks", L"mi3 --num-callers=40");
    ASSERT_TRUE(storage()->put(L"custom_analysis_types", custom));
    auto factory = profile_factory_t::create(storage());
    launchdlg3::IProfileFactory& contract = *factory;
    auto* page = dynamic_cast<corr_dialogs2::custom_analysis_page_t*>(
        contract.createGroupDescriptionPage(m_frame, *settings2::createConfigDescriptorRegistry()->getRootNode()));
    ASSERT_NE(page, nullptr);
    ASSERT_EQ(page->get_list()->GetCount(), 1u);
    EXPECT_EQ(page->get_list()->GetString(0), "Deep leaks");
}
