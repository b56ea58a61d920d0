// The problems view as a place to work, in the viewer's real window: the
// filter bar typed into and clicked, the summary chart clicked where its
// bars are drawn, and the keyboard (arrows, Enter, Ctrl+F).
#include "frame_fixture.h"

#include "host/fs_text.h"
#include "host/locations.h"
#include "host/problem_filter.h"
#include "host/problem_text.h"
#include "ui/app.h"
#include "ui/filter_bar.h"
#include "ui/summary_chart.h"

#include "platkit/strings/convert.h"

#include <wx/checkbox.h>
#include <wx/choice.h>
#include <wx/dcmemory.h>
#include <wx/dcscreen.h>
#include <wx/imagpng.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace {

using namespace corrview_test;
using corrview::facet_t;

class problems_filter_test : public frame_test
{
protected:
    corrview::filter_bar_t& bar() { return *problems().filter_bar(); }
    corrview::summary_chart_t& chart() { return *problems().chart(); }

    void click_at(const wxPoint& at)
    {
        wxUIActionSimulator sim;
        sim.MouseMove(at);
        corr_test::pump_events(30);
        sim.MouseClick();
        corr_test::pump_events(30);
    }
    void click(wxWindow& window)
    {
        ASSERT_TRUE(window.IsShownOnScreen());
        const wxRect r = window.GetScreenRect();
        click_at(r.GetPosition() + r.GetSize() / 2);
    }

    // The problems the list shows, in row order.
    std::vector<size_t> listed()
    {
        std::vector<size_t> out;
        for (int row = 0; row < problems().model().GetRowCount(); ++row)
            out.push_back(static_cast<size_t>(problems().model().problem_at(row)));
        return out;
    }
    const probstore3::problem_t& problem(size_t i) { return m_frame->session().problems()[i]; }

    // Whether a text is in a problem's description or any of its frames, by
    // plain ASCII case folding (the sample's texts are ASCII).
    static std::string lower(std::string s)
    {
        std::transform(s.begin(), s.end(), s.begin(),
                       [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        return s;
    }
    bool mentions(const probstore3::problem_t& p, const std::string& text)
    {
        const std::string t = lower(text);
        if (lower(p.description).find(t) != std::string::npos)
            return true;
        for (const auto& aux : p.aux)
            if (lower(aux).find(t) != std::string::npos)
                return true;
        for (const auto& stack : p.stacks)
            for (const auto& f : stack.frames)
                if (lower(f.function).find(t) != std::string::npos ||
                    lower(f.source).find(t) != std::string::npos ||
                    lower(f.module).find(t) != std::string::npos)
                    return true;
        return false;
    }

    // The screen as the user sees it around a window.
    wxImage grab(wxWindow& window)
    {
        const wxRect r = window.GetScreenRect();
        wxBitmap bitmap(r.GetWidth(), r.GetHeight(), 24);
        {
            wxScreenDC screen;
            wxMemoryDC memory(bitmap);
            memory.Blit(0, 0, r.GetWidth(), r.GetHeight(), &screen, r.GetX(), r.GetY());
        }
        return bitmap.ConvertToImage();
    }

    // The painted bar of a name; waits for the paint that shows it.
    corrview::summary_chart_t::painted_bar_t painted_bar(facet_t facet, const std::wstring& name)
    {
        corrview::summary_chart_t::painted_bar_t found{};
        const bool seen = corr_test::wait_until([&] {
            corr_test::pump_events(20);
            for (const auto& bar : chart().painted_bars())
                if (bar.facet == facet && bar.name == name) {
                    found = bar;
                    return true;
                }
            return false;
        });
        EXPECT_TRUE(seen) << "no bar drawn for " << platkit::strings::wide_to_utf8(name);
        return found;
    }
};

TEST_F(problems_filter_test, TypingInTheSearchNarrowsTheListAtEachKey)
{
    ASSERT_EQ(listed().size(), 24u);
    EXPECT_EQ(bar().shown_label()->GetLabel(), L"24 of 24 shown");
    click(*bar().search());
    ASSERT_TRUE(corr_test::wait_until([&] { return wxWindow::FindFocus() == bar().search(); }));

    wxUIActionSimulator sim;
    // A function of the use after free, in the wrong case; each key refilters.
    const std::string typed = "PRINT_REC";
    size_t before = listed().size();
    for (size_t i = 0; i < typed.size(); ++i) {
        sim.Text(typed.substr(i, 1).c_str());
        ASSERT_TRUE(corr_test::wait_until(
            [&] { return bar().search()->GetValue() == wxString(typed.substr(0, i + 1)); }));
        corr_test::pump_events(10);
        const auto now = listed();
        EXPECT_LE(now.size(), before);
        before = now.size();
    }
    const auto shown = listed();
    ASSERT_FALSE(shown.empty());
    for (size_t p = 0; p < 24; ++p)
        EXPECT_EQ(std::count(shown.begin(), shown.end(), p) == 1, mentions(problem(p), "print_rec"))
            << "problem " << p << ": " << problem(p).description;
    EXPECT_LT(shown.size(), 24u);
    EXPECT_EQ(bar().shown_label()->GetLabel(),
              wxString::Format("%zu of 24 shown", shown.size()));
    // The first problem left is current, and its stacks are shown.
    EXPECT_EQ(problems().current_problem(), static_cast<int>(shown[0]));
    EXPECT_EQ(problems().stack_model().shown_problem(), static_cast<int>(shown[0]));

    // Nothing matches: an empty list and no current problem.
    sim.Text("zzz");
    ASSERT_TRUE(corr_test::wait_until([&] { return listed().empty(); }));
    EXPECT_EQ(problems().current_problem(), -1);
    EXPECT_EQ(bar().choice(facet_t::tool)->GetString(0), L"All tools (0)");

    // Erased with the keyboard: every problem again.
    sim.Char('A', wxMOD_CONTROL);
    sim.Char(WXK_BACK);
    ASSERT_TRUE(corr_test::wait_until([&] { return listed().size() == 24u; }));
    EXPECT_EQ(bar().choice(facet_t::tool)->GetString(0), L"All tools (24)");
}

TEST_F(problems_filter_test, ChoicesShowTheirCountsAndNarrowTheList)
{
    const auto& index = problems().index();
    wxChoice& tools = *bar().choice(facet_t::tool);
    const auto& names = index.names(facet_t::tool);
    ASSERT_EQ(tools.GetCount(), names.size() + 1);
    // Every entry counts its problems, read from the session, not the index.
    for (size_t n = 0; n < names.size(); ++n) {
        const auto count = std::count_if(
            m_frame->session().problems().begin(), m_frame->session().problems().end(),
            [&](const probstore3::problem_t& p) {
                return platkit::strings::utf8_to_wide(p.tool) == names[n];
            });
        EXPECT_EQ(tools.GetString(static_cast<unsigned>(n + 1)).ToStdWstring(),
                  names[n] + L" (" + std::to_wstring(count) + L")");
    }

    // The keyboard on the focused choice picks the next entry: the first tool.
    tools.SetFocus();
    ASSERT_TRUE(corr_test::wait_until([&] { return wxWindow::FindFocus() == &tools; }));
    wxUIActionSimulator().Char(WXK_DOWN);
    ASSERT_TRUE(corr_test::wait_until([&] { return tools.GetSelection() == 1; }));
    ASSERT_TRUE(corr_test::wait_until([&] { return listed().size() < 24u; }));
    for (size_t p : listed())
        EXPECT_EQ(platkit::strings::utf8_to_wide(problem(p).tool), names[0]);
    // The types now count within that tool: their sum is the list.
    wxChoice& types = *bar().choice(facet_t::type);
    EXPECT_EQ(types.GetString(0), wxString::Format("All types (%zu)", listed().size()));
    EXPECT_EQ(types.GetSelection(), 0);
}

TEST_F(problems_filter_test, SuppressedProblemsHideWithTheCheckBox)
{
    save_rule_set(m_frame->session(), {0, 8}, m_result / "suppressions" / "team.sup", L"Known");
    m_frame->reload_suppressions();
    const size_t suppressed = m_frame->session().suppressed_count();
    ASSERT_GE(suppressed, 2u);
    EXPECT_EQ(listed().size(), 24u);

    wxCheckBox& box = *bar().show_suppressed();
    EXPECT_TRUE(box.GetValue());
    click(box);
    ASSERT_TRUE(corr_test::wait_until([&] { return !box.GetValue(); }));
    ASSERT_TRUE(corr_test::wait_until([&] { return listed().size() == 24u - suppressed; }));
    for (size_t p : listed())
        EXPECT_FALSE(m_frame->session().suppressed_by(p));
    click(box);
    ASSERT_TRUE(corr_test::wait_until([&] { return listed().size() == 24u; }));
}

TEST_F(problems_filter_test, ClickingABarOfTheChartFilters)
{
    const std::wstring race = L"Data race";
    const auto bar_before = painted_bar(facet_t::type, race);
    ASSERT_GT(bar_before.count, 0u);
    EXPECT_FALSE(bar_before.chosen);
    // Clicked where the paint drew the bar.
    const wxPoint middle = bar_before.bar.GetPosition() + bar_before.bar.GetSize() / 2;
    click_at(chart().ClientToScreen(middle));
    ASSERT_TRUE(corr_test::wait_until([&] { return listed().size() == bar_before.count; }));
    for (size_t p : listed())
        EXPECT_EQ(corrview::problem_type_text(problem(p)), race);
    wxChoice& types = *bar().choice(facet_t::type);
    EXPECT_EQ(types.GetStringSelection(),
              race + L" (" + std::to_wstring(bar_before.count) + L")");
    ASSERT_TRUE(corr_test::wait_until([&] {
        corr_test::pump_events(20);
        const auto& bars = chart().painted_bars();
        return std::any_of(bars.begin(), bars.end(),
                           [&](const auto& b) { return b.name == race && b.chosen; });
    }));
    // The picture, to look at after a run.
    m_frame->Update();
    corr_test::pump_events(500);
    fs::create_directories(CORR_SCREENSHOT_DIR);
    if (!wxImage::FindHandler(wxBITMAP_TYPE_PNG))
        wxImage::AddHandler(new wxPNGHandler);
    std::wstring error;
    const fs::path shots(CORR_SCREENSHOT_DIR);
    EXPECT_TRUE(corrview::save_window_png(
        m_frame, corrview::to_path(shots / "corrview-chart-filtered.png"), error));
    EXPECT_TRUE(
        corrview::save_window_png(&bar(), corrview::to_path(shots / "corrview-filter-bar.png"), error));
    EXPECT_TRUE(
        corrview::save_window_png(&chart(), corrview::to_path(shots / "corrview-chart.png"), error));
    // The chosen bar is on the screen where the paint says, in the chosen colour.
    // (Read from the screen last: after a read, this display shows no new paint.)
    const auto chosen = painted_bar(facet_t::type, race);
    const wxPoint at = chosen.bar.GetPosition() + chosen.bar.GetSize() / 2;
    const wxImage seen = grab(chart());
    EXPECT_EQ(wxColour(seen.GetRed(at.x, at.y), seen.GetGreen(at.x, at.y), seen.GetBlue(at.x, at.y)),
              corrview::summary_chart_t::bar_colour(facet_t::type, true));

    // A module bar narrows further; the chosen type stays.
    const auto modules = chart().painted_bars();
    const auto module_bar = std::find_if(modules.begin(), modules.end(),
                                         [](const auto& b) { return b.facet == facet_t::module; });
    ASSERT_NE(module_bar, modules.end());
    const std::wstring module = module_bar->name;
    click_at(chart().ClientToScreen(module_bar->bar.GetPosition() + module_bar->bar.GetSize() / 2));
    ASSERT_TRUE(corr_test::wait_until([&] { return listed().size() == module_bar->count; }));
    for (size_t p : listed()) {
        EXPECT_EQ(corrview::problem_type_text(problem(p)), race);
        EXPECT_EQ(problems().index().name_of(facet_t::module, p), module);
    }

    // The chosen type's bar again: every type.
    const auto again = painted_bar(facet_t::type, race);
    ASSERT_TRUE(again.chosen);
    click_at(chart().ClientToScreen(again.bar.GetPosition() + again.bar.GetSize() / 2));
    ASSERT_TRUE(corr_test::wait_until([&] { return types.GetSelection() == 0; }));
    EXPECT_GE(listed().size(), module_bar->count);
}

TEST_F(problems_filter_test, ArrowsEnterAndCtrlF)
{
    // A stand-in editor that writes down its arguments, with the sample's sources found.
    std::wstring error;
    ASSERT_TRUE(corrview::attach_sample_sources(
        corrview::to_path(m_result), corrview::to_path(fs::path(CORR_SAMPLES_DIR) / "src"), error));
    ASSERT_TRUE(m_frame->open_result(corrview::to_path(m_result)));
    const fs::path bin = m_tmp / "bin ü";
    fs::create_directories(bin);
    const fs::path editor = bin / "fake-editor";
    const fs::path args = bin / "args.txt";
    std::ofstream(editor) << "#!/bin/sh\nprintf '%s\\n' \"$@\" > \"$(dirname \"$0\")/args.tmp\"\n"
                             "mv \"$(dirname \"$0\")/args.tmp\" \"$(dirname \"$0\")/args.txt\"\n";
    fs::permissions(editor, fs::perms::owner_all);
    const std::string old_visual = std::getenv("VISUAL") ? std::getenv("VISUAL") : "";
    ::setenv("VISUAL", ("'" + editor.string() + "'").c_str(), 1);

    auto* grid = problems().grid();
    click_at(cell_on_screen(*grid, *problems().grid_control(), 0, 1));
    ASSERT_TRUE(corr_test::wait_until([&] { return problems().current_problem() == 0; }));
    wxUIActionSimulator sim;
    sim.Char(WXK_DOWN);
    sim.Char(WXK_DOWN);
    ASSERT_TRUE(corr_test::wait_until([&] { return problems().current_problem() == 2; }));
    sim.Char(WXK_UP);
    ASSERT_TRUE(corr_test::wait_until([&] { return problems().current_problem() == 1; }));
    EXPECT_EQ(problems().stack_model().shown_problem(), 1);

    // Enter opens the best frame of the current problem in the editor.
    const auto* best = problem(1).best_frame();
    ASSERT_NE(best, nullptr);
    sim.Char(WXK_RETURN);
    const bool opened = corr_test::wait_until([&] { return fs::exists(args); }, 10000);
    if (old_visual.empty())
        ::unsetenv("VISUAL");
    else
        ::setenv("VISUAL", old_visual.c_str(), 1);
    ASSERT_TRUE(opened);
    std::ifstream in(args);
    std::string line_arg, file_arg;
    std::getline(in, line_arg);
    std::getline(in, file_arg);
    EXPECT_EQ(line_arg, "+" + std::to_string(best->line));
    EXPECT_EQ(fs::path(file_arg).filename(), fs::path(best->source).filename());

    // Ctrl+F from the list: the search has the keys.
    sim.Char('F', wxMOD_CONTROL);
    ASSERT_TRUE(corr_test::wait_until([&] { return wxWindow::FindFocus() == bar().search(); }));
    sim.Text("race");
    ASSERT_TRUE(corr_test::wait_until([&] { return bar().search()->GetValue() == "race"; }));
    ASSERT_TRUE(corr_test::wait_until([&] { return listed().size() < 24u; }));
}

} // namespace
