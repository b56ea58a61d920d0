// Wrapping by font metrics and the custom tool-tip, in real windows.
#include "gui_test.h"

#include <gtest/gtest.h>

#include "corr_dialogs2/ui_utils.h"
#include "wxkit1/text.h"
#include "wxkit1/tooltip.h"

#include <wx/button.h>
#include <wx/frame.h>
#include <wx/tokenzr.h>
#include <wx/uiaction.h>

#include <vector>

namespace {

std::vector<std::wstring> lines_of(const std::wstring& text)
{
    std::vector<std::wstring> lines;
    for (const wxString& line : wxSplit(text, '\n', 0))
        lines.push_back(line.ToStdWstring());
    return lines;
}

std::wstring words_of(const std::wstring& text)
{
    wxString joined = text;
    joined.Replace("\n", " ");
    return joined.ToStdWstring();
}

class Tooltips : public testing::Test
{
protected:
    void SetUp() override
    {
        m_frame = new wxFrame(nullptr, wxID_ANY, "tips", wxPoint(100, 100), wxSize(400, 200));
        m_button = new wxButton(m_frame, wxID_ANY, "hover me", wxPoint(20, 20), wxSize(150, 40));
        m_frame->Show();
        ASSERT_TRUE(corr_test::wait_until([&] { return m_button->IsShownOnScreen(); }));
    }
    void TearDown() override
    {
        m_frame->Destroy();
        corr_test::pump_events();
    }

    int width_of(const std::wstring& line) const { return m_button->GetTextExtent(line).x; }

    wxFrame* m_frame = nullptr;
    wxButton* m_button = nullptr;
};

const std::wstring long_text =
    L"The suppression file lies outside the suppressions folder of the current result, so other "
    L"results of the project will not use it unless it is added to the project properties; choose a "
    L"file in the suppressions folder to share the rule with every result of the project, or keep "
    L"this file when the rule is meant for this one result only.";

} // namespace

TEST_F(Tooltips, WrapBreaksAtBlanksWithinTheWidth)
{
    int widest = 0;
    const std::wstring wrapped = wxkit1::wrap_text(long_text, 300, m_button, widest);
    const auto lines = lines_of(wrapped);
    ASSERT_GE(lines.size(), 3u);
    int measured_widest = 0;
    for (size_t i = 0; i < lines.size(); ++i) {
        EXPECT_LE(width_of(lines[i]), 300) << wxString(lines[i]);
        measured_widest = std::max(measured_widest, width_of(lines[i]));
        if (i + 1 < lines.size()) {
            // Greedy: the next word would not have fitted on this line.
            const std::wstring next_word = lines[i + 1].substr(0, lines[i + 1].find(L' '));
            EXPECT_GT(width_of(lines[i] + L" " + next_word), 300) << wxString(lines[i]);
        }
    }
    EXPECT_EQ(widest, measured_widest);
    EXPECT_EQ(words_of(wrapped), long_text) << "no word is lost, split or reordered";
}

TEST_F(Tooltips, WrapKeepsLineBreaksBreaksLongWordsAndLimitsLines)
{
    int widest = 0;
    EXPECT_EQ(wxkit1::wrap_text(L"first\n\nthird", 600, m_button, widest), L"first\n\nthird");
    EXPECT_EQ(wxkit1::wrap_text(L"a   b", 600, m_button, widest), L"a b");
    EXPECT_EQ(wxkit1::wrap_text(long_text, 0, m_button, widest), long_text) << "no width, no wrapping";

    const std::wstring path = L"/very/long/path/without/any/blank/to/break/at/libsomething.so.1.2.3";
    const auto pieces = lines_of(wxkit1::wrap_text(path, 80, m_button, widest));
    ASSERT_GE(pieces.size(), 2u);
    std::wstring joined;
    for (const auto& piece : pieces) {
        EXPECT_LE(width_of(piece), 80);
        joined += piece;
    }
    EXPECT_EQ(joined, path);

    const auto limited = lines_of(wxkit1::wrap_text(long_text, 200, m_button, widest, 2));
    ASSERT_EQ(limited.size(), 2u);
    EXPECT_EQ(limited[1].substr(limited[1].size() - 3), L"...");
    EXPECT_LE(width_of(limited[1]), 200);

    // Without a window the normal GUI font measures.
    const auto no_window = lines_of(wxkit1::wrap_text(long_text, 300, nullptr, widest));
    EXPECT_GE(no_window.size(), 3u);
}

TEST_F(Tooltips, LongToolTipIsWrappedAt600PixelsAndStaysAMinute)
{
    const std::wstring text = long_text + L" " + long_text;
    ASSERT_GT(width_of(text), 600);
    corr_dialogs2::set_tooltip(text, m_button);

    wxkit1::wxCustomTooltip* tooltip = wxkit1::GetTooltip(m_button);
    ASSERT_NE(tooltip, nullptr);
    EXPECT_EQ(tooltip->GetHideDelay(), 60000);
    const auto lines = lines_of(tooltip->GetText().ToStdWstring());
    EXPECT_GE(lines.size(), 2u);
    for (const auto& line : lines)
        EXPECT_LE(width_of(line), 600) << wxString(line);
    EXPECT_EQ(words_of(tooltip->GetText().ToStdWstring()), text);

    // Resting the mouse on the button shows it, on several lines.
    wxUIActionSimulator sim;
    sim.MouseMove(m_button->GetScreenRect().GetPosition() + wxPoint(30, 20));
    corr_test::pump_events(20);
    sim.MouseMove(m_button->GetScreenRect().GetPosition() + wxPoint(32, 21));
    ASSERT_TRUE(corr_test::wait_until([&] { return tooltip->IsShown(); }));
    wxWindow* popup = tooltip->GetPopupWindow();
    ASSERT_NE(popup, nullptr);
    EXPECT_GE(popup->GetSize().y, int(lines.size()) * m_button->GetCharHeight());
    EXPECT_LE(popup->GetSize().x, 600 + 40);

    // Leaving hides it at once.
    sim.MouseMove(m_frame->GetScreenRect().GetPosition() + wxPoint(350, 150));
    EXPECT_TRUE(corr_test::wait_until([&] { return !tooltip->IsShown(); }));
}

TEST_F(Tooltips, OnePerWindowReplacedRemovedAndGoneWithItsWindow)
{
    wxkit1::wxCustomTooltip* first = wxkit1::SetTooltip(m_button, "first", -1, true);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->GetShowDelay(), wxkit1::wxCustomTooltip::default_show_delay);
    wxkit1::wxCustomTooltip* second = wxkit1::SetTooltip(m_button, "second", 100, false);
    ASSERT_EQ(wxkit1::GetTooltip(m_button), second);
    EXPECT_EQ(second->GetText(), "second");
    EXPECT_EQ(second->GetShowDelay(), 100);
    EXPECT_FALSE(second->GetHideOnClick());

    EXPECT_EQ(wxkit1::SetTooltip(m_button, wxString(), -1, true), nullptr);
    EXPECT_EQ(wxkit1::GetTooltip(m_button), nullptr) << "an empty text removes the tool-tip";
    EXPECT_EQ(wxkit1::SetTooltip(nullptr, "x", -1, true), nullptr);

    auto* doomed = new wxButton(m_frame, wxID_ANY, "doomed");
    wxkit1::wxCustomTooltip* tip = wxkit1::SetTooltip(doomed, "bye", -1, true);
    tip->Popup(doomed->GetScreenPosition());
    EXPECT_TRUE(tip->IsShown());
    delete doomed;
    EXPECT_EQ(wxkit1::GetTooltip(doomed), nullptr);
    corr_test::pump_events();
}

TEST_F(Tooltips, AClickHidesItAndTheHideDelayEndsIt)
{
    wxkit1::wxCustomTooltip* tip = wxkit1::SetTooltip(m_button, "click to hide", -1, true);
    tip->Popup(m_button->GetScreenPosition() + wxPoint(0, 50));
    ASSERT_TRUE(tip->IsShown());
    wxUIActionSimulator sim;
    sim.MouseMove(m_button->GetScreenRect().GetPosition() + wxPoint(10, 10));
    corr_test::pump_events(30);
    sim.MouseClick();
    EXPECT_TRUE(corr_test::wait_until([&] { return !tip->IsShown(); }));

    tip->SetHideDelay(150);
    tip->Popup(m_button->GetScreenPosition() + wxPoint(0, 50));
    EXPECT_TRUE(tip->IsShown());
    EXPECT_TRUE(corr_test::wait_until([&] { return !tip->IsShown(); }, 3000));
}
