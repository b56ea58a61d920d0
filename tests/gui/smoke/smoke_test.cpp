// The harness itself: a real top-level window appears and gets painted.
#include "gui_test.h"

#include <gtest/gtest.h>
#include <wx/frame.h>
#include <wx/panel.h>

TEST(GuiHarness, RealWindowIsShownAndPainted)
{
    auto* frame = new wxFrame(nullptr, wxID_ANY, "harness", wxDefaultPosition, wxSize(200, 100));
    bool painted = false;
    auto* panel = new wxPanel(frame);
    panel->Bind(wxEVT_PAINT, [&](wxPaintEvent& e) {
        painted = true;
        e.Skip();
    });
    frame->Show();
    EXPECT_TRUE(corr_test::wait_until([&] { return painted; }));
    EXPECT_TRUE(frame->IsShownOnScreen());
    frame->Destroy();
    corr_test::pump_events();
}
