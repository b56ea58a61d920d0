#include "uiframe7/header.h"

#include "uicore7/painter.h"
#include "uiframe7/item_view_model.h"

#include <wx/settings.h>

#include <algorithm>

namespace uiframe7 {

using uicore7::rectangle;

void CHeader::SetStyle(int style)
{
    if (style == m_style)
        return;
    m_style = style;
    m_pressed = m_hot = -1;
    Refresh();
}

void CHeader::SetContent(IHeaderContent* content)
{
    m_content = content;
    m_pressed = m_hot = -1;
    Refresh();
}

void CHeader::SetColumnViewModel(IContinuousItemViewModel* columns)
{
    m_columns = columns;
    Refresh();
}

void CHeader::SetRowHeight(int height)
{
    m_row_height = std::max(1, height);
    Refresh();
}

int CHeader::GetRowCount() const
{
    return m_content ? std::max(1, m_content->GetHeaderRowCount()) : 1;
}

int CHeader::GetPreferredHeight() const
{
    return GetRowCount() * m_row_height;
}

rectangle<int> CHeader::cell_rect(const HeaderCell& cell) const
{
    if (!m_columns)
        return {};
    const ItemRange first = m_columns->GetItemRange(cell.first);
    const ItemRange last = m_columns->GetItemRange(cell.last);
    return {first.start, cell.row * m_row_height, last.end,
            (cell.row + cell.row_span) * m_row_height};
}

int CHeader::HitTestCell(int x, int y, HeaderCell* cell) const
{
    if (!m_content || !m_columns)
        return -1;
    const auto cells = m_content->GetHeaderCells();
    for (size_t i = 0; i < cells.size(); ++i) {
        const auto r = cell_rect(cells[i]);
        if (x >= r.left && x < r.right && y >= r.top && y < r.bottom) {
            if (cell)
                *cell = cells[i];
            return static_cast<int>(i);
        }
    }
    return -1;
}

void CHeader::paint_cell(uicore7::IPainter& painter, const HeaderCell& cell, bool pressed, bool hot)
{
    const rectangle<int> r = cell_rect(cell);
    if (r.empty())
        return;
    rectangle<double> box = rectangle<double>::from(r);
    const bool flat = m_style == hsFlatSortable;
    if (flat) {
        wxColour face = wxSystemSettings::GetColour(wxSYS_COLOUR_BTNFACE);
        if (pressed)
            face = face.ChangeLightness(90);
        else if (hot && !cell.is_group)
            face = face.ChangeLightness(106);
        painter.SetFillColor(face);
        painter.FillRectangle(box);
        painter.SetLineColor(wxSystemSettings::GetColour(wxSYS_COLOUR_BTNSHADOW));
        painter.DrawLine(box.right - 1, box.top + 2, box.right - 1, box.bottom - 2);
        painter.DrawLine(box.left, box.bottom - 1, box.right, box.bottom - 1);
    } else {
        painter.DrawButton(box, std::wstring(), uicore7::bsNormal);
    }

    rectangle<double> content = box;
    content.inflate(-4, 0);
    if (flat && cell.sort != 0 && !cell.is_group) {
        // A small triangle at the right: pointing up for ascending.
        const double cx = content.right - 5;
        const double cy = (content.top + content.bottom) / 2;
        painter.SetFillColor(wxSystemSettings::GetColour(wxSYS_COLOUR_BTNTEXT));
        if (cell.sort == 1)
            painter.FillPolygon({{cx - 4, cy + 2}, {cx + 4, cy + 2}, {cx, cy - 2}});
        else
            painter.FillPolygon({{cx - 4, cy - 2}, {cx + 4, cy - 2}, {cx, cy + 2}});
        content.right -= 12;
    }
    if (cell.image >= 0 && painter.GetImageCount() > cell.image) {
        const auto size = painter.GetImageSize();
        const double iy = content.top + (content.height() - size.height) / 2;
        double ix = content.left;
        if (cell.caption.empty() && (cell.align & uicore7::taHCenter))
            ix = content.left + (content.width() - size.width) / 2;
        painter.DrawImage(cell.image, ix, iy);
        content.left += size.width + 3;
    }
    painter.SetTextColor(wxSystemSettings::GetColour(wxSYS_COLOUR_BTNTEXT));
    painter.DrawText(cell.caption, content, cell.align);
}

void CHeader::OnPaint(uicore7::IPainter& painter, const rectangle<int>& update)
{
    painter.SetFillColor(wxSystemSettings::GetColour(wxSYS_COLOUR_BTNFACE));
    painter.FillRectangle(rectangle<double>::from(update));
    if (!m_content || !m_columns)
        return;
    painter.SetImageList(m_images);
    for (const HeaderCell& cell : m_content->GetHeaderCells()) {
        const auto r = cell_rect(cell);
        if (!r.intersects(update))
            continue;
        const bool active = !cell.is_group && cell.id == m_pressed;
        const bool hot = !cell.is_group && cell.id == m_hot;
        painter.PushClip(rectangle<double>::from(r));
        paint_cell(painter, cell, active, hot);
        painter.PopClip();
    }
}

bool CHeader::OnMouseDown(int x, int y, int, uicore7::MouseButton button)
{
    if (m_style != hsFlatSortable || button != uicore7::mbLeft)
        return true; // the header swallows presses: they are not the viewer's
    HeaderCell cell;
    if (HitTestCell(x, y, &cell) < 0 || cell.is_group)
        return true;
    m_pressed = cell.id;
    CaptureMouse();
    Refresh();
    return true;
}

bool CHeader::OnMouseUp(int x, int y, int, uicore7::MouseButton button)
{
    if (m_pressed < 0 || button != uicore7::mbLeft)
        return true;
    const int pressed = m_pressed;
    m_pressed = -1;
    ReleaseMouse();
    Refresh();
    HeaderCell cell;
    if (m_content && HitTestCell(x, y, &cell) >= 0 && !cell.is_group && cell.id == pressed)
        m_content->OnHeaderCellClick(cell);
    return true;
}

bool CHeader::OnMouseMove(int x, int y, int)
{
    if (m_style != hsFlatSortable)
        return true;
    HeaderCell cell;
    const int hot = (HitTestCell(x, y, &cell) >= 0 && !cell.is_group) ? cell.id : -1;
    if (hot != m_hot) {
        m_hot = hot;
        Refresh();
    }
    return true;
}

void CHeader::OnMouseLeave()
{
    if (m_hot >= 0) {
        m_hot = -1;
        Refresh();
    }
}

void CHeader::OnCaptureLost()
{
    m_pressed = -1;
    Refresh();
}

} // namespace uiframe7
