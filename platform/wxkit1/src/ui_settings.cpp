#include "wxkit1/ui_settings.h"

#include <wx/settings.h>
#include <wx/window.h>

#include <array>

namespace wxkit1 {
namespace {

struct settings_state
{
    basekit2::threading::mutex_t mutex;
    std::array<wxColour, ui_settings_t::color_count> colours;
    std::array<wxFont, ui_settings_t::font_count> fonts;
    basekit2::_internal::signal_t<> changed;
};

settings_state& state()
{
    static settings_state s;
    return s;
}

wxColour default_color(int index)
{
    static const std::array<wxSystemColour, ui_settings_t::color_count> system = {
        wxSYS_COLOUR_BTNFACE,   wxSYS_COLOUR_BTNTEXT,    wxSYS_COLOUR_HIGHLIGHT, wxSYS_COLOUR_HIGHLIGHTTEXT,
        wxSYS_COLOUR_GRAYTEXT,  wxSYS_COLOUR_3DLIGHT,    wxSYS_COLOUR_WINDOW,    wxSYS_COLOUR_WINDOW,
        wxSYS_COLOUR_WINDOWTEXT, wxSYS_COLOUR_INFOBK,    wxSYS_COLOUR_INFOTEXT,  wxSYS_COLOUR_HOTLIGHT,
    };
    if (index == ui_settings_t::color_invalid_input)
        return wxColour(255, 200, 200); // a light red that keeps the text readable
    return wxSystemSettings::GetColour(system[size_t(index)]);
}

wxFont default_font(int index)
{
    wxFont font = wxSystemSettings::GetFont(wxSYS_DEFAULT_GUI_FONT);
    switch (index) {
    case ui_settings_t::font_bold:
        return font.Bold();
    case ui_settings_t::font_small:
        return font.Smaller();
    case ui_settings_t::font_fixed: {
        wxFont fixed = wxSystemSettings::GetFont(wxSYS_ANSI_FIXED_FONT);
        fixed.SetPointSize(font.GetPointSize());
        return fixed;
    }
    case ui_settings_t::font_title:
        return font.Bold().Larger();
    default:
        return font;
    }
}

bool valid_color(int index) { return index >= 0 && index < ui_settings_t::color_count; }
bool valid_font(int index) { return index >= 0 && index < ui_settings_t::font_count; }

} // namespace

wxColour ui_settings_t::get_color(int index)
{
    if (!valid_color(index))
        return wxColour();
    basekit2::threading::scoped_lock_t lock(state().mutex);
    const wxColour& c = state().colours[size_t(index)];
    return c.IsOk() ? c : default_color(index);
}

wxFont ui_settings_t::get_font(int index)
{
    if (!valid_font(index))
        return wxFont();
    basekit2::threading::scoped_lock_t lock(state().mutex);
    const wxFont& f = state().fonts[size_t(index)];
    return f.IsOk() ? f : default_font(index);
}

void ui_settings_t::set_color(int index, const wxColour& colour)
{
    if (!valid_color(index))
        return;
    {
        basekit2::threading::scoped_lock_t lock(state().mutex);
        state().colours[size_t(index)] = colour.IsOk() ? colour : wxColour();
    }
    state().changed();
}

void ui_settings_t::set_font(int index, const wxFont& font)
{
    if (!valid_font(index))
        return;
    {
        basekit2::threading::scoped_lock_t lock(state().mutex);
        state().fonts[size_t(index)] = font.IsOk() ? font : wxFont();
    }
    state().changed();
}

bool ui_settings_t::is_overridden_color(int index)
{
    if (!valid_color(index))
        return false;
    basekit2::threading::scoped_lock_t lock(state().mutex);
    return state().colours[size_t(index)].IsOk();
}

void ui_settings_t::reset()
{
    {
        basekit2::threading::scoped_lock_t lock(state().mutex);
        state().colours.fill(wxColour());
        state().fonts.fill(wxFont());
    }
    state().changed();
}

basekit2::threading::mutex_t& ui_settings_t::get_mutex() { return state().mutex; }

basekit2::_internal::signal_t<>& ui_settings_t::changed() { return state().changed; }

style_updater_t::style_updater_t(ui_style_t style) : m_style(style) {}

style_updater_t::~style_updater_t() { detach(); }

void style_updater_t::attach(wxWindow* window, std::function<void()> on_update)
{
    detach();
    if (!window)
        return;
    m_window = window;
    m_on_update = std::move(on_update);
    m_connection = ui_settings_t::changed().connect([this] { update(); });
    m_window->Bind(wxEVT_SYS_COLOUR_CHANGED, &style_updater_t::on_system_colours, this);
    update();
}

void style_updater_t::detach()
{
    if (m_connection)
        ui_settings_t::changed().disconnect(m_connection);
    m_connection = 0;
    if (m_window)
        m_window->Unbind(wxEVT_SYS_COLOUR_CHANGED, &style_updater_t::on_system_colours, this);
    m_window = nullptr;
    m_on_update = nullptr;
    m_registered.clear();
}

void style_updater_t::register_window(wxWindow* window)
{
    if (!window)
        return;
    m_registered.emplace_back(window);
    update();
}

void style_updater_t::on_system_colours(wxSysColourChangedEvent& e)
{
    e.Skip();
    update();
}

void style_updater_t::update()
{
    if (!m_window)
        return;
    // Only what the host overrode is applied: the system theme is the default.
    if (m_style != ui_style_t::page && m_style != ui_style_t::inplace &&
        ui_settings_t::is_overridden_color(ui_settings_t::color_dialog_background)) {
        m_window->SetBackgroundColour(ui_settings_t::get_color(ui_settings_t::color_dialog_background));
        m_window->Refresh();
    }
    if (ui_settings_t::is_overridden_color(ui_settings_t::color_dialog_text)) {
        for (auto& w : m_registered)
            if (w)
                w->SetForegroundColour(ui_settings_t::get_color(ui_settings_t::color_dialog_text));
    }
    if (m_on_update)
        m_on_update();
}

} // namespace wxkit1
