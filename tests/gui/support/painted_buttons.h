#pragma once
// Where a grid's models really drew their push buttons. recording_painter
// passes every call on to the painter that draws and keeps the rectangles
// of DrawButton; painted_buttons puts itself in front of a grid's drawing
// model and hands that model such a painter for every cell. Tests click at
// these rectangles: a point computed by the code that handles the click
// would agree with that code however wrong both were.
#include "gridview8/gridview8.h"
#include "uicore7/painter.h"
#include "uicore7/sys_window.h"

#include <wx/gdicmn.h>

#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace corr_test {

struct drawn_button
{
    // Device pixels: the client area of the window painted in.
    uicore7::rectangle<int> rect;
    std::wstring caption;
};

class recording_painter final : public uicore7::IPainter
{
public:
    // inner draws; without one nothing is drawn, a character measures 7
    // pixels and a line 14.
    explicit recording_painter(uicore7::IPainter* inner = nullptr) : m_inner(inner) {}

    std::vector<drawn_button> buttons;

    uicore7::size<int> GetTextExtent(const std::wstring& text) override
    {
        if (m_inner)
            return m_inner->GetTextExtent(text);
        return {7 * static_cast<int>(text.size()), 14};
    }
    int GetLineHeight() override { return m_inner ? m_inner->GetLineHeight() : 14; }
    void DrawText(const std::wstring& text, const uicore7::rectangle<double>& rect,
                  int align) override
    {
        if (m_inner)
            m_inner->DrawText(text, rect, align);
    }
    void SetTextColor(const wxColour& colour) override
    {
        if (m_inner)
            m_inner->SetTextColor(colour);
    }
    void SetLineColor(const wxColour& colour) override
    {
        if (m_inner)
            m_inner->SetLineColor(colour);
    }
    void SetFillColor(const wxColour& colour) override
    {
        if (m_inner)
            m_inner->SetFillColor(colour);
    }
    void SetBold(bool bold) override
    {
        if (m_inner)
            m_inner->SetBold(bold);
    }
    void DrawLine(double x1, double y1, double x2, double y2) override
    {
        if (m_inner)
            m_inner->DrawLine(x1, y1, x2, y2);
    }
    void DrawRectangle(const uicore7::rectangle<double>& rect) override
    {
        if (m_inner)
            m_inner->DrawRectangle(rect);
    }
    void FillRectangle(const uicore7::rectangle<double>& rect) override
    {
        if (m_inner)
            m_inner->FillRectangle(rect);
    }
    void FillPolygon(const std::vector<uicore7::point<double>>& points) override
    {
        if (m_inner)
            m_inner->FillPolygon(points);
    }
    void DrawFocusRect(const uicore7::rectangle<double>& rect) override
    {
        if (m_inner)
            m_inner->DrawFocusRect(rect);
    }
    void DrawButton(const uicore7::rectangle<double>& rect, const std::wstring& caption,
                    int state) override
    {
        const auto origin = GetOrigin();
        buttons.push_back(
            {{static_cast<int>(rect.left + origin.x), static_cast<int>(rect.top + origin.y),
              static_cast<int>(rect.right + origin.x), static_cast<int>(rect.bottom + origin.y)},
             caption});
        if (m_inner)
            m_inner->DrawButton(rect, caption, state);
    }
    void SetImageList(const std::vector<wxBitmap>* images) override
    {
        if (m_inner)
            m_inner->SetImageList(images);
    }
    int GetImageCount() override { return m_inner ? m_inner->GetImageCount() : 0; }
    uicore7::size<int> GetImageSize() override
    {
        return m_inner ? m_inner->GetImageSize() : uicore7::size<int>{0, 0};
    }
    void DrawImage(int index, double x, double y) override
    {
        if (m_inner)
            m_inner->DrawImage(index, x, y);
    }
    void PushClip(const uicore7::rectangle<double>& rect) override
    {
        if (m_inner)
            m_inner->PushClip(rect);
    }
    void PopClip() override
    {
        if (m_inner)
            m_inner->PopClip();
    }
    void SetOrigin(double x, double y) override
    {
        if (m_inner)
            m_inner->SetOrigin(x, y);
        else
            m_origin = {x, y};
    }
    uicore7::point<double> GetOrigin() override
    {
        return m_inner ? m_inner->GetOrigin() : m_origin;
    }
    wxDC* GetDC() override { return m_inner ? m_inner->GetDC() : nullptr; }

private:
    uicore7::IPainter* m_inner;
    uicore7::point<double> m_origin{0, 0};
};

// While it lives, the grid's drawing model draws through a
// recording_painter; the buttons of each cell, as last painted, are kept.
class painted_buttons final : public gridview8::IDrawingModel
{
public:
    explicit painted_buttons(gridview8::CGrid& grid) : m_grid(grid), m_inner(grid.GetDrawingModel())
    {
        m_grid.SetDrawingModel(this);
        m_grid.RefreshAll();
    }
    ~painted_buttons() override { m_grid.SetDrawingModel(m_inner); }
    painted_buttons(const painted_buttons&) = delete;
    painted_buttons& operator=(const painted_buttons&) = delete;

    // The buttons of a cell as last painted; none when it was not painted.
    std::vector<drawn_button> in_cell(int row, int col) const
    {
        const auto found = m_cells.find({row, col});
        return found == m_cells.end() ? std::vector<drawn_button>{} : found->second;
    }
    // Every cell with a button painted in it.
    std::vector<std::pair<int, int>> cells_with_buttons() const
    {
        std::vector<std::pair<int, int>> cells;
        for (const auto& [cell, buttons] : m_cells)
            if (!buttons.empty())
                cells.push_back(cell);
        return cells;
    }
    int paints() const { return m_paints; }

    bool GetAttr(int row, int col, gridview8::CCellAttr& attr) const override
    {
        return m_inner && m_inner->GetAttr(row, col, attr);
    }
    bool OnDrawCell(uicore7::IPainter* painter, int row, int col,
                    const uicore7::rectangle<double>& rect) override
    {
        ++m_paints;
        recording_painter recorder(painter);
        const bool drawn = m_inner && m_inner->OnDrawCell(&recorder, row, col, rect);
        m_cells[{row, col}] = std::move(recorder.buttons);
        return drawn;
    }
    void GetContentRect(int row, int col, uicore7::rectangle<double>& rect) const override
    {
        if (m_inner)
            m_inner->GetContentRect(row, col, rect);
    }

private:
    gridview8::CGrid& m_grid;
    gridview8::IDrawingModel* m_inner;
    std::map<std::pair<int, int>, std::vector<drawn_button>> m_cells;
    int m_paints = 0;
};

// The middle of a painted button on the desktop, given the window painted in.
inline wxPoint centre_on_screen(const drawn_button& button, uicore7::ISysWindow& window)
{
    const auto p = window.ClientToScreen(
        {(button.rect.left + button.rect.right) / 2, (button.rect.top + button.rect.bottom) / 2});
    return {p.x, p.y};
}

} // namespace corr_test
