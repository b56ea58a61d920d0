#include "wxkit1/tooltip.h"

#include <wx/display.h>
#include <wx/popupwin.h>
#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/window.h>

#include <map>
#include <set>
#include <memory>

namespace wxkit1 {

// Tool-tips by window; GUI thread only.
class tooltip_registry
{
public:
    static std::map<const wxWindow*, std::unique_ptr<wxCustomTooltip>>& map()
    {
        static std::map<const wxWindow*, std::unique_ptr<wxCustomTooltip>> tooltips;
        return tooltips;
    }
    // Windows whose destruction is watched; once per window, however often
    // its tool-tip is replaced.
    static std::set<const wxWindow*>& watched()
    {
        static std::set<const wxWindow*> windows;
        return windows;
    }
    static void destroyed(const wxWindow* window)
    {
        watched().erase(window);
        const auto it = map().find(window);
        if (it == map().end())
            return;
        it->second->window_destroyed();
        map().erase(it);
    }
};

wxCustomTooltip::wxCustomTooltip(wxWindow* window, const wxString& text, int show_delay, bool hide_on_click)
    : m_window(window), m_text(text), m_show_delay(show_delay < 0 ? default_show_delay : show_delay),
      m_hide_on_click(hide_on_click)
{
    m_show_timer.Bind(wxEVT_TIMER, [this](wxTimerEvent& e) { on_show_timer(e); });
    m_hide_timer.Bind(wxEVT_TIMER, [this](wxTimerEvent& e) { on_hide_timer(e); });
    bind();
}

wxCustomTooltip::~wxCustomTooltip()
{
    m_show_timer.Stop();
    m_hide_timer.Stop();
    Hide();
    if (m_window)
        unbind();
}

void wxCustomTooltip::bind()
{
    m_window->Bind(wxEVT_ENTER_WINDOW, &wxCustomTooltip::on_enter, this);
    m_window->Bind(wxEVT_MOTION, &wxCustomTooltip::on_motion, this);
    m_window->Bind(wxEVT_LEAVE_WINDOW, &wxCustomTooltip::on_leave, this);
    m_window->Bind(wxEVT_LEFT_DOWN, &wxCustomTooltip::on_click, this);
    m_window->Bind(wxEVT_RIGHT_DOWN, &wxCustomTooltip::on_click, this);
    m_window->Bind(wxEVT_KEY_DOWN, &wxCustomTooltip::on_key, this);
}

void wxCustomTooltip::unbind()
{
    m_window->Unbind(wxEVT_ENTER_WINDOW, &wxCustomTooltip::on_enter, this);
    m_window->Unbind(wxEVT_MOTION, &wxCustomTooltip::on_motion, this);
    m_window->Unbind(wxEVT_LEAVE_WINDOW, &wxCustomTooltip::on_leave, this);
    m_window->Unbind(wxEVT_LEFT_DOWN, &wxCustomTooltip::on_click, this);
    m_window->Unbind(wxEVT_RIGHT_DOWN, &wxCustomTooltip::on_click, this);
    m_window->Unbind(wxEVT_KEY_DOWN, &wxCustomTooltip::on_key, this);
}

void wxCustomTooltip::window_destroyed()
{
    // The window is on its way out and takes its event table with it: no
    // unbinding, but the popup (its child) must go first.
    Hide();
    m_window = nullptr;
}

void wxCustomTooltip::SetText(const wxString& text)
{
    m_text = text;
    if (IsShown()) {
        const wxPoint where = m_popup->GetPosition();
        Hide();
        Popup(where);
    }
}

void wxCustomTooltip::on_enter(wxMouseEvent& e)
{
    e.Skip();
    m_mouse = m_window->ClientToScreen(e.GetPosition());
    if (!IsShown())
        m_show_timer.StartOnce(m_show_delay > 0 ? m_show_delay : 1);
}

void wxCustomTooltip::on_motion(wxMouseEvent& e)
{
    e.Skip();
    m_mouse = m_window->ClientToScreen(e.GetPosition());
    if (!IsShown())
        m_show_timer.StartOnce(m_show_delay > 0 ? m_show_delay : 1); // rest, then show
}

void wxCustomTooltip::on_leave(wxMouseEvent& e)
{
    e.Skip();
    m_show_timer.Stop();
    Hide();
}

void wxCustomTooltip::on_click(wxMouseEvent& e)
{
    e.Skip();
    if (m_hide_on_click) {
        m_show_timer.Stop();
        Hide();
    }
}

void wxCustomTooltip::on_key(wxKeyEvent& e)
{
    e.Skip();
    if (m_hide_on_click) {
        m_show_timer.Stop();
        Hide();
    }
}

void wxCustomTooltip::on_show_timer(wxTimerEvent&)
{
    if (m_window && m_window->IsShownOnScreen())
        Popup(m_mouse + wxPoint(0, 20));
}

void wxCustomTooltip::on_hide_timer(wxTimerEvent&) { Hide(); }

void wxCustomTooltip::Popup(const wxPoint& screen_position)
{
    if (!m_window || m_text.empty())
        return;
    Hide();
    auto* popup = new wxPopupWindow(m_window, wxBORDER_SIMPLE);
    popup->SetBackgroundColour(wxSystemSettings::GetColour(wxSYS_COLOUR_INFOBK));
    auto* label = new wxStaticText(popup, wxID_ANY, m_text);
    label->SetForegroundColour(wxSystemSettings::GetColour(wxSYS_COLOUR_INFOTEXT));
    auto* sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(label, 0, wxALL, popup->FromDIP(4));
    popup->SetSizerAndFit(sizer);

    // Keep the popup on the display the mouse is on.
    const int index = wxDisplay::GetFromPoint(screen_position);
    const wxRect area = wxDisplay(index == wxNOT_FOUND ? 0 : unsigned(index)).GetClientArea();
    wxRect rect(screen_position, popup->GetSize());
    if (rect.GetRight() > area.GetRight())
        rect.x = std::max(area.x, area.GetRight() - rect.width);
    if (rect.GetBottom() > area.GetBottom())
        rect.y = std::max(area.y, screen_position.y - rect.height - 24);
    popup->Position(rect.GetPosition(), wxSize(0, 0));
    popup->Show();
    m_popup = popup;
    if (m_hide_delay > 0)
        m_hide_timer.StartOnce(m_hide_delay);
}

void wxCustomTooltip::Hide()
{
    m_hide_timer.Stop();
    if (m_popup)
        m_popup->Destroy(); // a popup is destroyed at once, not at idle time
    m_popup = nullptr;
}

bool wxCustomTooltip::IsShown() const { return m_popup && m_popup->IsShown(); }

wxWindow* wxCustomTooltip::GetPopupWindow() const { return IsShown() ? m_popup.get() : nullptr; }

wxCustomTooltip* SetTooltip(wxWindow* window, const wxString& text, int delay, bool hide_on_click)
{
    if (!window)
        return nullptr;
    RemoveTooltip(window);
    if (text.empty())
        return nullptr;
    auto& tooltips = tooltip_registry::map();
    auto tooltip = std::make_unique<wxCustomTooltip>(window, text, delay, hide_on_click);
    wxCustomTooltip* result = tooltip.get();
    tooltips[window] = std::move(tooltip);
    if (tooltip_registry::watched().insert(window).second) {
        window->Bind(wxEVT_DESTROY, [window](wxWindowDestroyEvent& e) {
            e.Skip();
            if (e.GetEventObject() == window)
                tooltip_registry::destroyed(window);
        });
    }
    return result;
}

wxCustomTooltip* GetTooltip(const wxWindow* window)
{
    const auto& tooltips = tooltip_registry::map();
    const auto it = tooltips.find(window);
    return it == tooltips.end() ? nullptr : it->second.get();
}

void RemoveTooltip(wxWindow* window)
{
    tooltip_registry::map().erase(window);
}

} // namespace wxkit1
