#include "grid_host.h"

#include <wx/dcmemory.h>
#include <wx/renderer.h>

namespace corr_dialogs2::detail {

std::vector<wxBitmap> make_check_images(wxWindow* window)
{
    const wxSize box = wxRendererNative::Get().GetCheckBoxSize(window);
    std::vector<wxBitmap> images;
    for (const int flags : {0, static_cast<int>(wxCONTROL_CHECKED)}) {
        wxBitmap bitmap(box.x, box.y, 32);
        wxMemoryDC dc(bitmap);
        dc.SetBackground(*wxWHITE_BRUSH);
        dc.Clear();
        wxRendererNative::Get().DrawCheckBox(window, dc, wxRect(box), flags);
        dc.SelectObject(wxNullBitmap);
        images.push_back(bitmap);
    }
    return images;
}

void grid_host_t::create(wxWindow* placeholder)
{
    if (!placeholder || m_control)
        return;
    m_control = new uiframe7::CBaseControl(placeholder);
    m_grid = new gridview8::CGrid(m_control);
}

void grid_host_t::detach()
{
    if (m_grid)
        m_grid->DetachModels();
}

uicore7::ISysWindow* grid_host_t::sys_window() const { return m_control ? m_control->GetSysWindow() : nullptr; }

} // namespace corr_dialogs2::detail
