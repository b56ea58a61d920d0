#pragma once
// The bar above the problems list: a choice of problem type, tool and
// module (each entry with the number of problems choosing it would show), a
// search over descriptions and stacks, and whether suppressed problems show.
// It holds no problems: the view applies what it says and hands back the
// counts.
#include "../host/problem_filter.h"

#include <wx/panel.h>

#include <array>
#include <functional>

class wxCheckBox;
class wxChoice;
class wxStaticText;
class wxTextCtrl;

namespace corrview {

class filter_bar_t : public wxPanel
{
public:
    explicit filter_bar_t(wxWindow* parent);

    // What the controls say now.
    problem_filter_t filter() const;
    // Told on every change the user makes (each keystroke of the search).
    void on_changed(std::function<void()> callback) { m_changed = std::move(callback); }

    // Fills the choices with the index's names and the result's counts,
    // keeping what is chosen.
    void show_counts(const problem_index_t& index, const filter_result_t& result);
    // Chooses a name of a facet (none: any), as if the user had, and tells.
    void choose(facet_t facet, const std::optional<std::wstring>& name);
    void focus_search();

    wxChoice* choice(facet_t facet) const { return m_choice[static_cast<size_t>(facet)]; }
    wxTextCtrl* search() const { return m_search; }
    wxCheckBox* show_suppressed() const { return m_show_suppressed; }
    wxStaticText* shown_label() const { return m_shown; }

    // The label of a choice entry: "name (count)".
    static std::wstring entry_label(facet_t facet, const std::wstring& name, size_t count);
    static std::wstring any_label(facet_t facet, size_t count);

private:
    void changed();

    std::array<wxChoice*, facet_count> m_choice{};
    // The names behind the entries (after the first, "any"), per facet.
    std::array<std::vector<std::wstring>, facet_count> m_names;
    wxTextCtrl* m_search = nullptr;
    wxCheckBox* m_show_suppressed = nullptr;
    wxStaticText* m_shown = nullptr;
    std::function<void()> m_changed;
    bool m_filling = false;
};

} // namespace corrview
