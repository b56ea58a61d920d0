#pragma once
// A custom tool-tip: a popup with the text, shown when the mouse rests on
// the window and hidden after its hide delay, on leaving, or on a click.
// Unlike the native tool-tip its text may be long and multi-line and it can
// stay for as long as the caller wants.
#include <wx/string.h>
#include <wx/timer.h>
#include <wx/weakref.h>

class wxPopupWindow;
class wxWindow;

namespace wxkit1 {

class wxCustomTooltip
{
public:
    static constexpr int default_show_delay = 500;  // ms
    static constexpr int default_hide_delay = 5000; // ms

    // Use SetTooltip(): one tool-tip per window, owned by the window.
    wxCustomTooltip(wxWindow* window, const wxString& text, int show_delay, bool hide_on_click);
    ~wxCustomTooltip();
    wxCustomTooltip(const wxCustomTooltip&) = delete;
    wxCustomTooltip& operator=(const wxCustomTooltip&) = delete;

    const wxString& GetText() const { return m_text; }
    void SetText(const wxString& text);
    // How long the popup stays once shown; 0 keeps it until the mouse leaves.
    void SetHideDelay(int ms) { m_hide_delay = ms; }
    int GetHideDelay() const { return m_hide_delay; }
    void SetShowDelay(int ms) { m_show_delay = ms < 0 ? default_show_delay : ms; }
    int GetShowDelay() const { return m_show_delay; }
    bool GetHideOnClick() const { return m_hide_on_click; }
    wxWindow* GetWindow() const { return m_window; }

    // Shows the popup now near a screen position, as a rest of the mouse would.
    void Popup(const wxPoint& screen_position);
    void Hide();
    bool IsShown() const;
    // The popup while it is shown (null otherwise): what a test measures.
    wxWindow* GetPopupWindow() const;

private:
    friend class tooltip_registry;
    void bind();
    void unbind();
    void window_destroyed();
    void on_enter(wxMouseEvent& e);
    void on_motion(wxMouseEvent& e);
    void on_leave(wxMouseEvent& e);
    void on_click(wxMouseEvent& e);
    void on_key(wxKeyEvent& e);
    void on_show_timer(wxTimerEvent& e);
    void on_hide_timer(wxTimerEvent& e);

    wxWindow* m_window;
    wxString m_text;
    int m_show_delay;
    int m_hide_delay = default_hide_delay;
    bool m_hide_on_click;
    wxPoint m_mouse;
    wxTimer m_show_timer;
    wxTimer m_hide_timer;
    wxWeakRef<wxPopupWindow> m_popup;
};

// Installs a custom tool-tip on window, replacing (and deleting) one set
// before. delay: show delay in ms, -1 for the default. hide_on_click: a click
// or key press in the window hides the popup. Returns the tool-tip, owned by
// the window and deleted with it; null when window is null or text empty
// (an empty text removes the tool-tip).
wxCustomTooltip* SetTooltip(wxWindow* window, const wxString& text, int delay = -1, bool hide_on_click = true);
// The tool-tip installed on window, or null.
wxCustomTooltip* GetTooltip(const wxWindow* window);
void RemoveTooltip(wxWindow* window);

} // namespace wxkit1
