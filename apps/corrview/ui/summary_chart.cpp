#include "summary_chart.h"

#include "corr_dialogs2/ui_utils.h"

#include <wx/control.h>
#include <wx/dcbuffer.h>
#include <wx/settings.h>

#include <algorithm>

namespace corrview {

using corr_dialogs2::translate;
using platkit::generic::varg_list;

namespace {

constexpr facet_t chart_facets[2] = {facet_t::type, facet_t::module};

} // namespace

summary_chart_t::summary_chart_t(wxWindow* parent)
    : wxWindow(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxFULL_REPAINT_ON_RESIZE)
{
    SetBackgroundStyle(wxBG_STYLE_PAINT);
    SetMinSize(FromDIP(wxSize(240, 120)));
    Bind(wxEVT_PAINT, &summary_chart_t::on_paint, this);
    Bind(wxEVT_LEFT_DOWN, &summary_chart_t::on_left_down, this);
}

wxColour summary_chart_t::bar_colour(facet_t facet, bool chosen)
{
    if (facet == facet_t::type)
        return chosen ? wxColour(0xB0, 0x3A, 0x2E) : wxColour(0xE0, 0x7B, 0x53);
    return chosen ? wxColour(0x1F, 0x4E, 0x8C) : wxColour(0x5B, 0x8F, 0xD0);
}

void summary_chart_t::show(const problem_index_t& index, const filter_result_t& result,
                           const problem_filter_t& filter)
{
    for (size_t s = 0; s < 2; ++s) {
        const facet_t facet = chart_facets[s];
        const auto& names = index.names(facet);
        const auto& counts = result[facet];
        const auto& chosen = filter[facet];
        std::vector<entry_t> entries;
        for (size_t n = 0; n < names.size() && n < counts.size(); ++n)
            if (counts[n] > 0 || (chosen && *chosen == names[n]))
                entries.push_back({names[n], counts[n], chosen && *chosen == names[n]});
        std::stable_sort(entries.begin(), entries.end(),
                         [](const entry_t& a, const entry_t& b) { return a.count > b.count; });
        m_more[s] = 0;
        if (entries.size() > most_bars) {
            // The chosen bar stays in sight however small it is.
            const auto chosen_at =
                std::find_if(entries.begin(), entries.end(), [](const entry_t& e) { return e.chosen; });
            if (chosen_at != entries.end() && chosen_at - entries.begin() >= long(most_bars))
                std::rotate(entries.begin() + long(most_bars) - 1, chosen_at, chosen_at + 1);
            m_more[s] = entries.size() - most_bars;
            entries.resize(most_bars);
        }
        m_entries[s] = std::move(entries);
    }
    Refresh();
}

void summary_chart_t::on_paint(wxPaintEvent&)
{
    wxAutoBufferedPaintDC dc(this);
    dc.SetBackground(wxBrush(wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOW)));
    dc.Clear();
    m_painted.clear();
    const wxSize size = GetClientSize();
    const int pad = FromDIP(6);
    const wxFont normal = GetFont();
    const wxFont bold = normal.Bold();
    const int line = dc.GetCharHeight() + FromDIP(6);
    const int label_width = std::max(FromDIP(60), (size.x - 2 * pad) * 2 / 5);
    const int count_width = dc.GetTextExtent(wxT("000000")).x;
    const int bar_left = pad + label_width + pad;
    const int bar_room = std::max(FromDIP(10), size.x - bar_left - count_width - 2 * pad);
    const wxColour text = wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOWTEXT);
    dc.SetTextForeground(text);

    int y = pad;
    for (size_t s = 0; s < 2; ++s) {
        const facet_t facet = chart_facets[s];
        dc.SetFont(bold);
        dc.DrawText(facet == facet_t::type ? translate(L"corrview.chart.by_type")
                                           : translate(L"corrview.chart.by_module"),
                    pad, y);
        y += line;
        const auto& entries = m_entries[s];
        size_t largest = 1;
        for (const auto& e : entries)
            largest = std::max(largest, e.count);
        if (entries.empty()) {
            dc.SetFont(normal);
            dc.DrawText(translate(L"corrview.chart.none"), pad, y);
            y += line;
        }
        for (const auto& e : entries) {
            dc.SetFont(e.chosen ? bold : normal);
            std::wstring label = e.name.empty() && facet == facet_t::module
                                     ? translate(L"corrview.filter.no_module")
                                     : e.name;
            const wxString shown = wxControl::Ellipsize(label, dc, wxELLIPSIZE_END, label_width);
            const int text_y = y + (line - dc.GetCharHeight()) / 2;
            dc.DrawText(shown, pad, text_y);
            const int width =
                std::max(FromDIP(2), static_cast<int>(double(bar_room) * double(e.count) / double(largest)));
            const wxRect bar(bar_left, y + FromDIP(2), width, line - FromDIP(4));
            dc.SetPen(*wxTRANSPARENT_PEN);
            dc.SetBrush(wxBrush(bar_colour(facet, e.chosen)));
            dc.DrawRectangle(bar);
            dc.DrawText(std::to_wstring(e.count), bar.GetRight() + pad, text_y);
            m_painted.push_back(
                {facet, e.name, e.count, e.chosen, bar, wxRect(0, y, size.x, line)});
            y += line;
        }
        if (m_more[s] > 0) {
            dc.SetFont(normal);
            dc.SetTextForeground(wxSystemSettings::GetColour(wxSYS_COLOUR_GRAYTEXT));
            dc.DrawText(translate(L"corrview.chart.more", varg_list().add(L"count", m_more[s])), pad, y);
            dc.SetTextForeground(text);
            y += line;
        }
        y += pad;
    }
}

void summary_chart_t::on_left_down(wxMouseEvent& event)
{
    const wxPoint at = event.GetPosition();
    for (const auto& painted : m_painted) {
        if (!painted.row.Contains(at))
            continue;
        if (m_click) {
            // Copies: the callback refilters, and the next paint replaces these.
            const facet_t facet = painted.facet;
            const std::optional<std::wstring> name =
                painted.chosen ? std::nullopt : std::optional<std::wstring>(painted.name);
            m_click(facet, name);
        }
        return;
    }
    event.Skip();
}

} // namespace corrview
