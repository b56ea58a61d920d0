// Bitmaps and the animation from the built archive, UI settings, and
// keeping windows on screen.
#include "gui_test.h"

#include <gtest/gtest.h>

#include "shareddlg3/resources.h"
#include "shareddlg3/utils.h"
#include "wxkit1/image_loader.h"
#include "wxkit1/tooltip.h"
#include "wxkit1/ui_settings.h"

#include <wx/display.h>
#include <wx/filesys.h>
#include <wx/frame.h>
#include <wx/settings.h>
#include <wx/textctrl.h>

#include <memory>

TEST(Images, EveryBitmapOfTheImageResourceLoads)
{
    const wxkit1::image_loader_t images(shareddlg3::create_resource_filename(L"dialogs2.dat", L"dialogs_images.xrc"));
    ASSERT_TRUE(images.is_loaded());
    for (const wchar_t* name : {L"info-big", L"progress", L"tick", L"warning", L"category1", L"category2"}) {
        const wxBitmap bitmap = images.load_bitmap(name);
        EXPECT_TRUE(bitmap.IsOk()) << wxString(name);
    }
    EXPECT_EQ(images.load_bitmap(L"info-big").GetSize(), wxSize(32, 32));
    EXPECT_EQ(images.load_bitmap(L"tick").GetSize(), wxSize(16, 16));
    const wxImage category = images.load_image(L"category1");
    ASSERT_TRUE(category.IsOk());
    EXPECT_TRUE(category.HasAlpha());
    EXPECT_EQ(category.GetAlpha(0, 0), 0) << "the corners are transparent";

    const wxAnimation progress = images.load_animation(L"progress");
    ASSERT_TRUE(progress.IsOk());
    EXPECT_EQ(progress.GetSize(), wxSize(16, 16));
    // The GTK animation does not count frames; the GIF decoder does.
    wxFileSystem fs;
    std::unique_ptr<wxFSFile> gif(
        fs.OpenFile(shareddlg3::create_resource_filename(L"dialogs2.dat", L"images/progress.gif"),
                    wxFS_READ | wxFS_SEEKABLE));
    ASSERT_TRUE(gif);
    EXPECT_EQ(wxImage::GetImageCount(*gif->GetStream(), wxBITMAP_TYPE_GIF), 8);
}

TEST(Images, MissingBitmapOrFileGivesInvalidBitmapsAndSaysWhich)
{
    const std::wstring file = shareddlg3::create_resource_filename(L"dialogs2.dat", L"dialogs_images.xrc");
    {
        corr_test::log_capture log;
        const wxkit1::image_loader_t images(file);
        EXPECT_FALSE(images.load_bitmap(L"no-such-bitmap").IsOk());
        EXPECT_FALSE(images.load_animation(L"no-such-animation").IsOk());
        EXPECT_TRUE(log.contains(L"\"no-such-bitmap\"")) << wxString(log.text());
        EXPECT_TRUE(log.contains(L"\"no-such-animation\""));
        EXPECT_TRUE(log.contains(file));
    }
    {
        corr_test::log_capture log;
        const std::wstring missing = shareddlg3::create_resource_filename(L"nothere.dat", L"dialogs_images.xrc");
        const wxkit1::image_loader_t images(missing);
        EXPECT_FALSE(images.is_loaded());
        EXPECT_FALSE(images.load_bitmap(L"tick").IsOk());
        EXPECT_TRUE(log.contains(missing)) << wxString(log.text());
    }
}

TEST(UiSettings, OverridesWinNotifyAndResetToTheSystem)
{
    using wxkit1::ui_settings_t;
    EXPECT_EQ(ui_settings_t::get_color(ui_settings_t::color_text_background),
              wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOW));
    EXPECT_EQ(ui_settings_t::color_text_background, 7);
    EXPECT_FALSE(ui_settings_t::get_color(-1).IsOk());
    EXPECT_FALSE(ui_settings_t::get_color(ui_settings_t::color_count).IsOk());
    EXPECT_TRUE(ui_settings_t::get_font(ui_settings_t::font_bold).IsOk());
    EXPECT_EQ(ui_settings_t::get_font(ui_settings_t::font_bold).GetWeight(), wxFONTWEIGHT_BOLD);
    EXPECT_FALSE(ui_settings_t::get_font(99).IsOk());

    auto* frame = new wxFrame(nullptr, wxID_ANY, "styled");
    int updates = 0;
    {
        wxkit1::style_updater_t updater(wxkit1::ui_style_t::dialog);
        updater.attach(frame, [&] { ++updates; });
        EXPECT_EQ(updates, 1) << "applied once when attached";
        ui_settings_t::set_color(ui_settings_t::color_dialog_background, *wxRED);
        EXPECT_EQ(updates, 2);
        EXPECT_EQ(frame->GetBackgroundColour(), *wxRED);
        EXPECT_TRUE(ui_settings_t::is_overridden_color(ui_settings_t::color_dialog_background));
        ui_settings_t::reset();
        EXPECT_EQ(updates, 3);
        EXPECT_EQ(ui_settings_t::get_color(ui_settings_t::color_dialog_background),
                  wxSystemSettings::GetColour(wxSYS_COLOUR_BTNFACE));
    }
    ui_settings_t::set_color(ui_settings_t::color_text, *wxBLUE);
    EXPECT_EQ(updates, 3) << "a destroyed updater hears nothing";
    ui_settings_t::reset();

    // The updater may outlive its window.
    wxkit1::style_updater_t survivor;
    survivor.attach(frame, [&] { ++updates; });
    frame->Destroy();
    corr_test::pump_events();
    EXPECT_EQ(survivor.window(), nullptr);
    ui_settings_t::set_color(ui_settings_t::color_text, *wxBLUE);
    ui_settings_t::reset();
}

TEST(WindowPlacement, WindowsOffTheScreenAreMovedBackOnIt)
{
    const wxRect area = wxDisplay(0u).GetClientArea();
    auto* frame = new wxFrame(nullptr, wxID_ANY, "lost", wxPoint(area.GetRight() + 500, -400), wxSize(300, 200));
    frame->Show();
    corr_test::pump_events();
    shareddlg3::move_to_visible_area(frame);
    corr_test::pump_events();
    EXPECT_TRUE(area.Contains(frame->GetScreenRect())) << frame->GetScreenRect().x << "," << frame->GetScreenRect().y;

    frame->SetSize(area.x + 10, area.y + 10, area.width * 2, 100);
    shareddlg3::move_to_visible_area(frame);
    EXPECT_LE(frame->GetSize().x, area.width);
    frame->Destroy();
    corr_test::pump_events();
}

TEST(InvalidInput, ColourAndToolTipMarkAControlAndAnEmptyTipClearsIt)
{
    auto* frame = new wxFrame(nullptr, wxID_ANY, "marks");
    auto* field = new wxTextCtrl(frame, wxID_ANY);
    shareddlg3::set_color_and_tooltip(field, *wxRED, L"The name cannot be empty.");
    EXPECT_EQ(field->GetBackgroundColour(), *wxRED);
    ASSERT_NE(wxkit1::GetTooltip(field), nullptr);
    EXPECT_EQ(wxkit1::GetTooltip(field)->GetText(), "The name cannot be empty.");
    const wxColour normal = wxkit1::ui_settings_t::get_color(7);
    shareddlg3::set_color_and_tooltip(field, normal, L"");
    EXPECT_EQ(field->GetBackgroundColour(), normal);
    EXPECT_EQ(wxkit1::GetTooltip(field), nullptr);
    frame->Destroy();
    corr_test::pump_events();
}
