#pragma once
// Colours and fonts of the user interface, by index. Defaults follow the
// system; a host may override any of them. Every access takes the settings'
// own mutex; the wx objects handed out are copies.
#include "basekit2/signal.h"
#include "basekit2/threading/mutex.h"

#include <wx/colour.h>
#include <wx/font.h>
#include <wx/weakref.h>
#include <wx/window.h>

#include <functional>
#include <vector>

namespace wxkit1 {

class ui_settings_t
{
public:
    enum color_index {
        color_dialog_background = 0,
        color_dialog_text = 1,
        color_selection = 2,
        color_selection_text = 3,
        color_disabled_text = 4,
        color_grid_lines = 5,
        color_invalid_input = 6,
        color_text_background = 7, // normal background of text fields
        color_text = 8,
        color_tooltip_background = 9,
        color_tooltip_text = 10,
        color_link = 11,
        color_count
    };
    enum font_index { font_normal = 0, font_bold = 1, font_small = 2, font_fixed = 3, font_title = 4, font_count };

    // An index out of range gives an invalid colour or font.
    static wxColour get_color(int index);
    static wxFont get_font(int index);
    // Overrides one entry; an invalid colour or font goes back to the default.
    static void set_color(int index, const wxColour& colour);
    static void set_font(int index, const wxFont& font);
    static bool is_overridden_color(int index);
    // Drops every override.
    static void reset();

    // The settings' mutex, for a caller that reads several entries as one.
    static basekit2::threading::mutex_t& get_mutex();
    // Raised (on the thread that changed them) after the settings changed.
    static basekit2::_internal::signal_t<>& changed();
};

// inplace: a panel drawn inside another window's area (it keeps its own background).
enum class ui_style_t { dialog, panel, page, inplace };

// Keeps a window in step with the UI settings: applies them when attached
// and again whenever they or the system colours change, then calls back so
// the owner can refresh what it draws itself.
class style_updater_t
{
public:
    explicit style_updater_t(ui_style_t style = ui_style_t::dialog);
    ~style_updater_t();
    style_updater_t(const style_updater_t&) = delete;
    style_updater_t& operator=(const style_updater_t&) = delete;

    void attach(wxWindow* window, std::function<void()> on_update = {});
    void detach();
    // Keeps a further window (a child control) in step as well.
    void register_window(wxWindow* window);
    size_t registered_count() const { return m_registered.size(); }
    // Applies the settings now and calls back.
    void update();
    ui_style_t style() const { return m_style; }
    wxWindow* window() const { return m_window.get(); }

private:
    void on_system_colours(wxSysColourChangedEvent& e);

    ui_style_t m_style;
    wxWeakRef<wxWindow> m_window; // the updater may outlive its window
    std::vector<wxWeakRef<wxWindow>> m_registered;
    std::function<void()> m_on_update;
    basekit2::_internal::connection_id m_connection = 0;
};

} // namespace wxkit1
