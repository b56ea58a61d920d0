#include "filter_bar.h"

#include "corr_dialogs2/ui_utils.h"

#include <wx/checkbox.h>
#include <wx/choice.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <algorithm>

namespace corrview {

using corr_dialogs2::translate;
using platkit::generic::varg_list;

filter_bar_t::filter_bar_t(wxWindow* parent) : wxPanel(parent)
{
    auto* sizer = new wxBoxSizer(wxHORIZONTAL);
    for (size_t f = 0; f < facet_count; ++f) {
        m_choice[f] = new wxChoice(this, wxID_ANY);
        m_choice[f]->Append(any_label(static_cast<facet_t>(f), 0));
        m_choice[f]->SetSelection(0);
        m_choice[f]->SetMinSize(FromDIP(wxSize(130, -1)));
        m_choice[f]->Bind(wxEVT_CHOICE, [this](wxCommandEvent&) { changed(); });
        sizer->Add(m_choice[f], 0, wxALIGN_CENTER_VERTICAL | wxRIGHT, FromDIP(4));
    }
    m_search = new wxTextCtrl(this, wxID_ANY);
    m_search->SetHint(translate(L"corrview.filter.search_hint"));
    m_search->SetMinSize(FromDIP(wxSize(180, -1)));
    m_search->Bind(wxEVT_TEXT, [this](wxCommandEvent&) { changed(); });
    sizer->Add(m_search, 1, wxALIGN_CENTER_VERTICAL | wxRIGHT, FromDIP(8));
    m_show_suppressed = new wxCheckBox(this, wxID_ANY, translate(L"corrview.filter.show_suppressed"));
    m_show_suppressed->SetValue(true);
    m_show_suppressed->Bind(wxEVT_CHECKBOX, [this](wxCommandEvent&) { changed(); });
    sizer->Add(m_show_suppressed, 0, wxALIGN_CENTER_VERTICAL | wxRIGHT, FromDIP(8));
    m_shown = new wxStaticText(this, wxID_ANY, wxEmptyString);
    sizer->Add(m_shown, 0, wxALIGN_CENTER_VERTICAL);
    auto* outer = new wxBoxSizer(wxVERTICAL);
    outer->Add(sizer, 0, wxEXPAND | wxALL, FromDIP(4));
    SetSizer(outer);
}

std::wstring filter_bar_t::entry_label(facet_t facet, const std::wstring& name, size_t count)
{
    const std::wstring shown =
        name.empty() && facet == facet_t::module ? translate(L"corrview.filter.no_module") : name;
    return translate(L"corrview.filter.entry", varg_list().add(L"name", shown).add(L"count", count));
}

std::wstring filter_bar_t::any_label(facet_t facet, size_t count)
{
    const auto args = varg_list().add(L"count", count);
    switch (facet) {
    case facet_t::type:
        return translate(L"corrview.filter.any_type", args);
    case facet_t::tool:
        return translate(L"corrview.filter.any_tool", args);
    case facet_t::module:
        return translate(L"corrview.filter.any_module", args);
    }
    return {};
}

problem_filter_t filter_bar_t::filter() const
{
    problem_filter_t out;
    for (size_t f = 0; f < facet_count; ++f) {
        const int at = m_choice[f]->GetSelection();
        if (at > 0 && static_cast<size_t>(at) <= m_names[f].size())
            out.choice[f] = m_names[f][static_cast<size_t>(at - 1)];
    }
    out.text = m_search->GetValue().ToStdWstring();
    out.show_suppressed = m_show_suppressed->GetValue();
    return out;
}

void filter_bar_t::show_counts(const problem_index_t& index, const filter_result_t& result)
{
    m_filling = true;
    for (size_t f = 0; f < facet_count; ++f) {
        const auto facet = static_cast<facet_t>(f);
        wxChoice* choice = m_choice[f];
        const auto& names = index.names(facet);
        const auto& counts = result.counts[f];
        if (names != m_names[f]) {
            // Another result: new entries, keeping the chosen name if it is there.
            const int at = choice->GetSelection();
            std::optional<std::wstring> chosen;
            if (at > 0 && static_cast<size_t>(at) <= m_names[f].size())
                chosen = m_names[f][size_t(at - 1)];
            m_names[f] = names;
            wxArrayString items;
            items.Add(any_label(facet, 0));
            for (size_t n = 0; n < names.size(); ++n)
                items.Add(entry_label(facet, names[n], 0));
            choice->Set(items);
            const int again = chosen ? index.name_index(facet, *chosen) : -1;
            choice->SetSelection(again < 0 ? 0 : again + 1);
        }
        // Only entries whose text changes are set again: a keystroke must not
        // rebuild a list of hundreds of modules.
        size_t any = 0;
        for (size_t n = 0; n < names.size() && n < counts.size(); ++n) {
            any += counts[n];
            const wxString label = entry_label(facet, names[n], counts[n]);
            if (choice->GetString(static_cast<unsigned>(n + 1)) != label)
                choice->SetString(static_cast<unsigned>(n + 1), label);
        }
        const wxString label = any_label(facet, any);
        if (choice->GetString(0) != label)
            choice->SetString(0, label);
    }
    m_shown->SetLabel(translate(L"corrview.filter.shown", varg_list()
                                                             .add(L"shown", result.visible_count)
                                                             .add(L"count", index.size())));
    m_filling = false;
    Layout();
}

void filter_bar_t::choose(facet_t facet, const std::optional<std::wstring>& name)
{
    const auto f = static_cast<size_t>(facet);
    int at = 0;
    if (name) {
        const auto found = std::find(m_names[f].begin(), m_names[f].end(), *name);
        if (found == m_names[f].end())
            return;
        at = static_cast<int>(found - m_names[f].begin()) + 1;
    }
    if (m_choice[f]->GetSelection() == at)
        return;
    m_choice[f]->SetSelection(at);
    changed();
}

void filter_bar_t::focus_search()
{
    m_search->SetFocus();
    m_search->SelectAll();
}

void filter_bar_t::changed()
{
    if (!m_filling && m_changed)
        m_changed();
}

} // namespace corrview
