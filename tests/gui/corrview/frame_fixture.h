#pragma once
// A real main window of the viewer on a private copy of the sample result.
#include "gui_test.h"
#include "host_test_support.h"
#include "modal_expectations.h"

#include "ui/main_frame.h"
#include "ui/problems_view.h"
#include "ui/suppressions_view.h"

#include <wx/uiaction.h>

namespace corrview_test {

using namespace host_test;

class frame_test : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_result = copy_sample_result(m_tmp / "sample");
        m_frame = new corrview::main_frame_t;
        m_frame->Show();
        ASSERT_TRUE(m_frame->open_result(basekit2::path_t(m_result)));
        ASSERT_TRUE(corr_test::wait_until([&] { return m_frame->IsShownOnScreen(); }));
    }
    void TearDown() override
    {
        if (m_frame)
            m_frame->Destroy();
        corr_test::pump_events();
    }

    corrview::problems_view_t& problems() { return *m_frame->problems_view(); }

    // The screen point of the middle of a grid cell.
    static wxPoint cell_on_screen(gridview8::CGrid& grid, wxWindow& control, int row, int col)
    {
        const auto rect = grid.GetCellRect(row, col);
        const wxPoint origin = control.ClientToScreen(wxPoint(0, 0));
        const auto grid_origin = grid.ScreenToGrid({origin.x, origin.y});
        return wxPoint(origin.x - grid_origin.x + (rect.left + rect.right) / 2,
                       origin.y - grid_origin.y + (rect.top + rect.bottom) / 2);
    }

    temp_dir_t m_tmp;
    fs::path m_result;
    corrview::main_frame_t* m_frame = nullptr;
};

} // namespace corrview_test
