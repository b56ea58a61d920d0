#include "corr_dialogs2/stack_panel.h"

#include <wx/panel.h>
#include <wx/sizer.h>

namespace corr_dialogs2 {

stack_panel_t::stack_panel_t(wxWindow* parent, wxWindowID id)
    : wxScrolledWindow(parent, id, wxDefaultPosition, wxDefaultSize, wxVSCROLL)
{
    SetSizer(new wxBoxSizer(wxVERTICAL));
    SetScrollRate(0, 8);
}

stack_panel_t::~stack_panel_t() = default;

wxPanel* stack_panel_t::add_panel(const shareddlg3::message_window_t& message)
{
    wxPanel* panel = message.create_panel(this);
    GetSizer()->Add(panel, 0, wxEXPAND | wxALL, m_border);
    m_panels.push_back(panel);
    m_messages.push_back(message);
    relayout();
    return panel;
}

wxPanel* stack_panel_t::show_message(const std::wstring& title, const std::wstring& text,
                                     shareddlg3::message_window_t::icon_t icon)
{
    return add_panel(shareddlg3::message_window_t(title, text, shareddlg3::message_window_t::btn_ok, icon));
}

void stack_panel_t::set_border(int border)
{
    m_border = border < 0 ? 0 : border;
    for (wxSizerItem* item : GetSizer()->GetChildren())
        item->SetBorder(m_border);
    relayout();
}

void stack_panel_t::clear()
{
    for (wxPanel* panel : m_panels)
        panel->Destroy();
    m_panels.clear();
    m_messages.clear();
    GetSizer()->Clear();
    relayout();
}

void stack_panel_t::on_dialog_finished(int code)
{
    m_last_result = code;
    clear();
}

void stack_panel_t::relayout()
{
    FitInside();
    Layout();
}

} // namespace corr_dialogs2
