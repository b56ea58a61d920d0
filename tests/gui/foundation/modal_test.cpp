// The modal flavour in real windows: what it disables for the modal loop and
// enables again, the hook that answers without showing, and the harness
// that fails a test on a dialog nobody expected.
#include "gui_test.h"

#include <gtest/gtest.h>
#include "modal_expectations.h"

#include "wxkit1/modal.h"

#include <gtest/gtest-spi.h>
#include <wx/frame.h>
#include <wx/msgdlg.h>
#include <wx/panel.h>
#include <wx/textctrl.h>

namespace {

using flavoured_dialog = wxkit1::modal_flavor<wxDialog>;

class ModalFlavor : public testing::Test
{
protected:
    void SetUp() override
    {
        m_parent = new wxFrame(nullptr, wxID_ANY, "parent", wxPoint(20, 20), wxSize(300, 200));
        m_panel = new wxPanel(m_parent);
        m_other = new wxFrame(nullptr, wxID_ANY, "other", wxPoint(340, 20), wxSize(200, 150));
        m_disabled = new wxFrame(nullptr, wxID_ANY, "disabled before", wxPoint(560, 20), wxSize(200, 150));
        for (wxFrame* frame : {m_parent, m_other, m_disabled})
            frame->Show();
        m_disabled->Disable();
    }
    void TearDown() override
    {
        for (wxFrame* frame : {m_parent, m_other, m_disabled})
            frame->Destroy();
        corr_test::pump_events();
    }

    struct states
    {
        bool parent, other, disabled, dialog;
    };
    states read(wxDialog& dialog) const
    {
        return {m_parent->IsEnabled(), m_other->IsEnabled(), m_disabled->IsEnabled(), dialog.IsEnabled()};
    }

    wxFrame* m_parent = nullptr;
    wxPanel* m_panel = nullptr;
    wxFrame* m_other = nullptr;
    wxFrame* m_disabled = nullptr;
};

} // namespace

TEST_F(ModalFlavor, WhatTheParentDisablesAndExactlyThatIsEnabledAgain)
{
    // A top-level parent or none: every window of the application waits; a
    // child window as parent: only its top-level window does.
    const struct
    {
        const char* name;
        wxWindow* parent;
        bool other_enabled_during;
    } cases[] = {{"top-level parent", m_parent, false}, {"child parent", m_panel, true}, {"no parent", nullptr, false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        states during{};
        bool was_modal = false;
        corr_test::modal_expectations modal;
        modal.expect_shown<flavoured_dialog>([&](flavoured_dialog& d) {
            was_modal = d.IsModal();
            during = read(d);
            d.EndModal(wxID_OK);
        });

        flavoured_dialog dialog(c.parent, wxID_ANY, c.name);
        EXPECT_EQ(dialog.ShowModal(), wxID_OK);
        EXPECT_TRUE(was_modal);
        EXPECT_FALSE(during.parent);
        EXPECT_EQ(during.other, c.other_enabled_during);
        EXPECT_FALSE(during.disabled);
        EXPECT_TRUE(during.dialog);

        EXPECT_TRUE(m_parent->IsEnabled());
        EXPECT_TRUE(m_other->IsEnabled());
        EXPECT_FALSE(m_disabled->IsEnabled()) << "a window disabled before stays disabled";
    }
}

TEST_F(ModalFlavor, NestedModalDialogsEachRestoreTheirOwnWindows)
{
    bool outer_during_inner = true;
    corr_test::modal_expectations modal;
    modal.expect_shown<flavoured_dialog>([&](flavoured_dialog& outer) {
        flavoured_dialog inner(&outer, wxID_ANY, "inner");
        EXPECT_EQ(inner.ShowModal(), wxID_NO);
        EXPECT_TRUE(outer.IsEnabled()) << "the inner dialog gave its parent back";
        EXPECT_FALSE(m_parent->IsEnabled()) << "the outer dialog still holds the application";
        outer.EndModal(wxID_OK);
    });
    modal.expect_shown<flavoured_dialog>([&](flavoured_dialog& inner) {
        outer_during_inner = inner.GetParent()->IsEnabled();
        inner.EndModal(wxID_NO);
    });
    flavoured_dialog outer(m_parent, wxID_ANY, "outer");
    EXPECT_EQ(outer.ShowModal(), wxID_OK);
    EXPECT_FALSE(outer_during_inner);
    EXPECT_TRUE(m_parent->IsEnabled());
    EXPECT_TRUE(m_other->IsEnabled());
}

TEST_F(ModalFlavor, TheHookAnswersWithoutShowingAndZeroLetsItShow)
{
    int hook_calls = 0;
    bool shown_in_hook = true;
    const auto previous = wxkit1::set_modal_callback([&](wxDialog& d) {
        ++hook_calls;
        shown_in_hook = d.IsShown();
        return 4711;
    });
    flavoured_dialog dialog(m_parent, wxID_ANY, "answered");
    EXPECT_EQ(dialog.ShowModal(), 4711);
    EXPECT_EQ(hook_calls, 1);
    EXPECT_FALSE(shown_in_hook);
    EXPECT_FALSE(dialog.IsShown());
    EXPECT_TRUE(m_parent->IsEnabled()) << "nothing was disabled for an answered dialog";
    wxkit1::set_modal_callback(previous);

    // EndModal on a dialog the hook answered keeps the code instead of asserting.
    dialog.EndModal(wxID_APPLY);
    EXPECT_EQ(dialog.GetReturnCode(), wxID_APPLY);
}

TEST_F(ModalFlavor, FocusGoesBackToTheWindowThatHadIt)
{
    auto* edit = new wxTextCtrl(m_panel, wxID_ANY);
    m_parent->Raise();
    edit->SetFocus();
    if (!corr_test::wait_until([&] { return wxWindow::FindFocus() == edit; }, 2000))
        GTEST_SKIP() << "this X server gives no keyboard focus without a window manager";

    corr_test::modal_expectations modal;
    modal.expect_shown<flavoured_dialog>([](flavoured_dialog& d) {
        auto* own = new wxTextCtrl(&d, wxID_ANY);
        own->SetFocus();
        corr_test::pump_events(50);
        d.EndModal(wxID_OK);
    });
    flavoured_dialog dialog(m_parent, wxID_ANY, "steals focus");
    dialog.ShowModal();
    EXPECT_TRUE(corr_test::wait_until([&] { return wxWindow::FindFocus() == edit; }));
}

namespace {
// EXPECT_NONFATAL_FAILURE cannot see locals.
int g_unexpected_answer = 0;
void show_unexpected_dialog()
{
    flavoured_dialog dialog(nullptr, wxID_ANY, "nobody expects me");
    g_unexpected_answer = dialog.ShowModal();
}
void show_plain_message_box()
{
    wxMessageDialog dialog(nullptr, "bypasses the flavour", "plain");
    g_unexpected_answer = dialog.ShowModal();
}
void expect_a_message_but_show_a_dialog()
{
    corr_test::modal_expectations modal;
    modal.expect_message(1);
    show_unexpected_dialog();
}
} // namespace

TEST(ModalHarness, UnexpectedDialogsFailTheTestAndAreCancelled)
{
    EXPECT_NONFATAL_FAILURE(show_unexpected_dialog(), "unexpected modal dialog");
    EXPECT_EQ(g_unexpected_answer, wxID_CANCEL);
    g_unexpected_answer = 0;
    EXPECT_NONFATAL_FAILURE(show_plain_message_box(), "'plain'");
    EXPECT_EQ(g_unexpected_answer, wxID_CANCEL);
    EXPECT_NONFATAL_FAILURE(expect_a_message_but_show_a_dialog(), "but got");
}
