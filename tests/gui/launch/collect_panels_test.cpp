// The debugger panel, the category panel and the custom-analysis page in
// real windows: rows, tool-tips from the catalogue, the framed background
// as drawn on screen, clicks.
#include "launch_support.h"

#include "corr_dialogs2/collect_panels.h"
#include "corr_dialogs2/ui_utils.h"

#include "settings2/catalog.h"
#include "shareddlg3/resources.h"
#include "wxkit1/image_loader.h"
#include "wxkit1/tooltip.h"

#include <wx/listbox.h>
#include <wx/radiobut.h>
#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

using corr_dialogs2::category_panel_t;
using corr_dialogs2::custom_analysis_page_t;
using corr_dialogs2::debugger_panel_t;
using launch_test::info_provider_t;

namespace {

class DebuggerPanel : public launch_test::frame_test
{
protected:
    debugger_panel_t* build(launchdlg3::IAnalysisInfoProvider* provider, const std::wstring& mode)
    {
        auto* panel = new debugger_panel_t(m_frame, provider, mode);
        auto* sizer = new wxBoxSizer(wxVERTICAL);
        sizer->Add(panel, 0, wxEXPAND | wxALL, 10);
        m_frame->SetSizer(sizer, true);
        m_frame->Layout();
        corr_test::pump_events();
        return panel;
    }
    static std::wstring selected_mode(const debugger_panel_t& panel) { return panel.get_current_choice().first; }
    static std::wstring text(const wchar_t* key)
    {
        return settings2::getMessageCatalog(L"launchdlg_qm")->message(key).raw();
    }
};

} // namespace

TEST_F(DebuggerPanel, ThreeRowsWithTheirModesAndTheStartingModeSelected)
{
    info_provider_t provider(L"mi2", {L"memcheck", L"other"}, L"Debugger Options");
    debugger_panel_t* panel = build(&provider, L"on-error");

    ASSERT_EQ(panel->get_modes(), (std::vector<std::wstring>{L"off", L"on-error", L"delay-analysis"}));
    ASSERT_EQ(panel->get_radio_buttons().size(), 3u);
    const char* names[][2] = {{"m_radioStart", "m_staticText22"},
                              {"m_radioDebug", "m_staticText221"},
                              {"m_radioPaused", "m_staticText222"}};
    for (size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(panel->get_radio_buttons()[i]->GetName(), names[i][0]);
        EXPECT_EQ(panel->get_texts()[i]->GetName(), names[i][1]);
    }
    EXPECT_EQ(panel->get_texts()[0]->GetLabel(), text(L"dlg.collect.off")) << "layout texts are translated";
    EXPECT_FALSE(panel->get_radio_buttons()[0]->GetValue());
    EXPECT_TRUE(panel->get_radio_buttons()[1]->GetValue());
    EXPECT_EQ(panel->get_current_choice(), (std::pair<std::wstring, std::wstring>{L"on-error", L"mi2"}));
    EXPECT_EQ(panel->GetLabel(), "Debugger Options");

    panel->select_mode(L"delay-analysis");
    EXPECT_EQ(selected_mode(*panel), L"delay-analysis");
    panel->select_mode(L"no-such-mode");
    EXPECT_EQ(selected_mode(*panel), L"delay-analysis") << "an unknown mode changes nothing";

    // A click on a button, and one on the text beside it, choose that row.
    launch_test::click(panel->get_radio_buttons()[0]);
    EXPECT_EQ(selected_mode(*panel), L"off");
    launch_test::click_at(panel->get_texts()[1], wxPoint(5, panel->get_texts()[1]->GetSize().y / 2));
    EXPECT_EQ(selected_mode(*panel), L"on-error");
}

TEST_F(DebuggerPanel, OnStartSelectsNoRowAndAnUnknownModeNeither)
{
    info_provider_t provider(L"mi1", {});
    for (const std::wstring mode : {L"on-start", L"", L"OFF"}) {
        debugger_panel_t* panel = build(&provider, mode);
        for (auto* radio : panel->get_radio_buttons())
            EXPECT_FALSE(radio->GetValue()) << wxString(mode) << ": " << radio->GetName();
        EXPECT_EQ(selected_mode(*panel), L"");
        EXPECT_EQ(panel->get_initial_mode(), mode);
        panel->Destroy();
    }
}

TEST_F(DebuggerPanel, RowTwoDescribesTheOnlyEntryOfTheAnalysis)
{
    auto tooltip_of = [](wxWindow* w) {
        auto* tip = wxkit1::GetTooltip(w);
        return tip ? launch_test::unwrapped(tip->GetText()) : std::wstring(L"<none>");
    };
    const std::wstring plain = text(L"dlg.collect.on.error.description");
    const std::wstring memcheck = text(L"dlg.collect.on.error.description.memcheck");
    ASSERT_NE(plain, memcheck);

    info_provider_t two(L"mi1", {L"memcheck", L"helgrind"});
    debugger_panel_t* panel = build(&two, L"off");
    EXPECT_EQ(panel->get_descriptions()[1], plain);
    EXPECT_EQ(tooltip_of(panel->get_radio_buttons()[1]), plain);
    EXPECT_EQ(tooltip_of(panel->get_texts()[1]), plain);
    EXPECT_EQ(panel->get_descriptions()[0], text(L"dlg.collect.off.description"));
    EXPECT_EQ(panel->get_descriptions()[2], text(L"dlg.collect.paused.description"));
    panel->Destroy();

    info_provider_t one(L"mi1", {L"memcheck"});
    panel = build(&one, L"off");
    EXPECT_EQ(panel->get_descriptions()[1], memcheck);
    EXPECT_EQ(tooltip_of(panel->get_radio_buttons()[1]), memcheck);
    EXPECT_EQ(panel->get_descriptions()[0], text(L"dlg.collect.off.description")) << "only row 2 is specialised";
    panel->Destroy();

    // An entry without a text of its own shows the key that was looked up.
    info_provider_t unknown(L"x", {L"X"});
    panel = build(&unknown, L"off");
    EXPECT_EQ(panel->get_descriptions()[1], L"dlg.collect.on.error.description.X");
    panel->Destroy();

    info_provider_t none(L"x", {});
    panel = build(&none, L"off");
    EXPECT_EQ(panel->get_descriptions()[1], plain);
}

TEST_F(DebuggerPanel, WithoutACatalogueTheKeysAreTheToolTips)
{
    const auto catalog = settings2::getMessageCatalog(L"launchdlg_qm");
    ASSERT_TRUE(catalog);
    settings2::registerMessageCatalog(L"launchdlg_qm", nullptr);
    info_provider_t one(L"mi1", {L"memcheck"});
    debugger_panel_t* panel = build(&one, L"off");
    settings2::registerMessageCatalog(L"launchdlg_qm", catalog);
    EXPECT_EQ(panel->get_descriptions(),
              (std::vector<std::wstring>{L"dlg.collect.off.description", L"dlg.collect.on.error.description.memcheck",
                                         L"dlg.collect.paused.description"}));
}

TEST_F(DebuggerPanel, DisabledAndEnabledAgainWithItsFrameDrawn)
{
    info_provider_t provider(L"mi1", {L"memcheck"});
    debugger_panel_t* panel = build(&provider, L"off");
    const wxColour border = wxSystemSettings::GetColour(wxSYS_COLOUR_INACTIVECAPTION);
    EXPECT_EQ(panel->get_frame().GetBorderColour(), border);
    EXPECT_TRUE(panel->get_frame().IsBorderShown());

    panel->set_disabled(true);
    EXPECT_FALSE(panel->IsEnabled());
    EXPECT_FALSE(panel->get_radio_buttons()[1]->IsEnabled());
    // A disabled panel ignores clicks.
    launch_test::click(panel->get_radio_buttons()[2]);
    EXPECT_EQ(selected_mode(*panel), L"off");

    panel->set_disabled(false);
    EXPECT_TRUE(panel->IsEnabled());
    EXPECT_TRUE(panel->get_radio_buttons()[2]->IsEnabled());

    // The frame as the screen shows it: border on the edge, background inside.
    const wxImage shot = launch_test::capture(panel);
    const wxSize size = panel->GetClientSize();
    EXPECT_EQ(launch_test::pixel(shot, 0, size.y / 2), border);
    EXPECT_EQ(launch_test::pixel(shot, size.x - 1, size.y - 1), border);
    EXPECT_EQ(launch_test::pixel(shot, size.x - 3, size.y - 3), panel->get_frame().GetBackgroundColour());

    launch_test::click(panel->get_radio_buttons()[2]);
    EXPECT_EQ(selected_mode(*panel), L"delay-analysis");
}

namespace {
using CategoryPanel = launch_test::frame_test;
using CustomAnalysisPage = launch_test::frame_test;
} // namespace

TEST_F(CategoryPanel, ShowsTheCategoryPictureInAFramedWhitePanel)
{
    const wxkit1::image_loader_t images(shareddlg3::create_resource_filename(
        corr_dialogs2::resources::catalog_file, corr_dialogs2::resources::image_file));
    const wxBitmap first = images.load_bitmap(L"category1");
    const wxBitmap second = images.load_bitmap(L"category2");
    ASSERT_TRUE(first.IsOk());
    ASSERT_TRUE(second.IsOk());

    auto* panel = new category_panel_t(m_frame, first);
    auto* sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(panel, 0, wxEXPAND | wxALL, 10);
    m_frame->SetSizer(sizer);
    m_frame->Layout();
    EXPECT_EQ(panel->GetName(), "WhitePanel");
    EXPECT_EQ(panel->get_image().ConvertToImage().GetData()[0], first.ConvertToImage().GetData()[0]);

    panel->set_image(second);
    const wxImage drawn = panel->get_image().ConvertToImage();
    const wxImage expected = second.ConvertToImage();
    ASSERT_EQ(drawn.GetSize(), expected.GetSize());
    EXPECT_TRUE(std::equal(drawn.GetData(), drawn.GetData() + drawn.GetWidth() * drawn.GetHeight() * 3,
                           expected.GetData()));

    const wxImage shot = launch_test::capture(panel);
    EXPECT_EQ(launch_test::pixel(shot, 0, 0), wxSystemSettings::GetColour(wxSYS_COLOUR_INACTIVECAPTION));
    EXPECT_EQ(launch_test::pixel(shot, panel->GetClientSize().x - 3, 2), panel->get_frame().GetBackgroundColour());
}

TEST_F(CustomAnalysisPage, SaysSoWhenThereAreNoneAndListsThemOtherwise)
{
    auto* page = new custom_analysis_page_t(m_frame);
    auto* sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(page, 1, wxEXPAND);
    m_frame->SetSizer(sizer);
    m_frame->Layout();
    corr_test::pump_events();
    ASSERT_EQ(page->get_list()->GetName(), "CustomATListBox");
    EXPECT_TRUE(page->get_list()->HasFlag(wxLB_SINGLE));
    EXPECT_TRUE(page->get_list()->HasFlag(wxLB_HSCROLL));
    EXPECT_EQ(page->get_message()->GetLabel(), corr_dialogs2::translate(L"dlg.collect.no.custom.analysis"));
    EXPECT_TRUE(page->get_message()->IsShownOnScreen());
    EXPECT_FALSE(page->get_list()->IsShownOnScreen());
    const wxSizerItem* message_item = page->GetSizer()->GetItem(page->get_message());
    ASSERT_TRUE(message_item);
    EXPECT_EQ(message_item->GetProportion(), 1);
    EXPECT_EQ(message_item->GetBorder(), 10);
    EXPECT_EQ(message_item->GetFlag() & (wxEXPAND | wxALL), wxEXPAND | wxALL);
    EXPECT_EQ(page->GetSizer()->GetItem(page->get_list())->GetBorder(), 0);

    page->set_custom_types({L"Leaks with «suppressions»", L"Deep"});
    corr_test::pump_events();
    EXPECT_TRUE(page->get_list()->IsShownOnScreen());
    EXPECT_FALSE(page->get_message()->IsShownOnScreen());
    ASSERT_EQ(page->get_list()->GetCount(), 2u);
    EXPECT_EQ(page->get_list()->GetString(0), wxString(L"Leaks with «suppressions»"));
    EXPECT_GT(page->get_list()->GetSize().y, 100) << "the list takes the page when it shows";
}
