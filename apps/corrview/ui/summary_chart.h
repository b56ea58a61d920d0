#pragma once
// The summary beside the problems list: how many problems of each type and
// of each module the filter lets through, as horizontal bars drawn with the
// window's own device context. A click on a bar chooses that type or module
// in the filter; a click on the bar already chosen lets every one through.
#include "../host/problem_filter.h"

#include <wx/window.h>

#include <functional>
#include <optional>
#include <vector>

namespace corrview {

class summary_chart_t : public wxWindow
{
public:
    explicit summary_chart_t(wxWindow* parent);

    // The counts to draw and what the filter has chosen.
    void show(const problem_index_t& index, const filter_result_t& result,
              const problem_filter_t& filter);

    using click_callback_t = std::function<void(facet_t, const std::optional<std::wstring>&)>;
    void on_click(click_callback_t callback) { m_click = std::move(callback); }

    // A bar as the last paint drew it (client coordinates). The row is the
    // bar with its label and count, all of which take the click.
    struct painted_bar_t
    {
        facet_t facet;
        std::wstring name;
        size_t count;
        bool chosen;
        wxRect bar;
        wxRect row;
    };
    const std::vector<painted_bar_t>& painted_bars() const { return m_painted; }
    // The colour bars of a facet are filled with.
    static wxColour bar_colour(facet_t facet, bool chosen);

    // At most this many bars per facet, the largest counts first.
    static constexpr size_t most_bars = 8;

private:
    struct entry_t
    {
        std::wstring name;
        size_t count;
        bool chosen;
    };
    void on_paint(wxPaintEvent&);
    void on_left_down(wxMouseEvent& event);

    std::vector<entry_t> m_entries[2]; // by type, by module
    size_t m_more[2] = {0, 0};         // names left out
    std::vector<painted_bar_t> m_painted;
    click_callback_t m_click;
};

} // namespace corrview
