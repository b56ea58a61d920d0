#pragma once
// IPainter over a wxDC.
#include "uicore7/painter.h"

#include <wx/font.h>

#include <vector>

namespace uicore7 {

class CWxPainter : public IPainter
{
public:
    // window may be null (then button frames are drawn by hand instead of by
    // the native renderer); the dc must outlive the painter.
    CWxPainter(wxDC& dc, wxWindow* window);
    ~CWxPainter() override;
    CWxPainter(const CWxPainter&) = delete;
    CWxPainter& operator=(const CWxPainter&) = delete;

    size<int> GetTextExtent(const std::wstring& text) override;
    int GetLineHeight() override;
    void DrawText(const std::wstring& text, const rectangle<double>& rect, int align) override;

    void SetTextColor(const wxColour& colour) override;
    void SetLineColor(const wxColour& colour) override;
    void SetFillColor(const wxColour& colour) override;
    void SetBold(bool bold) override;

    void DrawLine(double x1, double y1, double x2, double y2) override;
    void DrawRectangle(const rectangle<double>& rect) override;
    void FillRectangle(const rectangle<double>& rect) override;
    void FillPolygon(const std::vector<point<double>>& points) override;
    void DrawFocusRect(const rectangle<double>& rect) override;
    void DrawButton(const rectangle<double>& rect, const std::wstring& caption, int state) override;

    void SetImageList(const std::vector<wxBitmap>* images) override;
    int GetImageCount() override;
    size<int> GetImageSize() override;
    void DrawImage(int index, double x, double y) override;

    void PushClip(const rectangle<double>& rect) override;
    void PopClip() override;
    void SetOrigin(double x, double y) override;
    point<double> GetOrigin() override;

    wxDC* GetDC() override { return &m_dc; }

private:
    wxRect device_rect(const rectangle<double>& r) const;
    void apply_clip();

    wxDC& m_dc;
    wxWindow* m_window;
    const std::vector<wxBitmap>* m_images = nullptr;
    double m_origin_x = 0;
    double m_origin_y = 0;
    std::vector<wxRect> m_clips; // device coordinates, already intersected
    wxFont m_normal_font;
    wxFont m_bold_font;
    bool m_bold = false;
    int m_line_height = -1;
};

} // namespace uicore7
