#pragma once
// A panel that lists messages (errors, warnings, notes) one below the
// other, each drawn as a shared message window without buttons: for a
// dialog that has several things to tell about a stack or a file at once.
#include "corr_dialogs2/export.h"

#include "shareddlg3/message_window.h"

#include <wx/scrolwin.h>

#include <vector>

class wxPanel;

namespace corr_dialogs2 {

class CORR_DIALOGS2_API stack_panel_t : public wxScrolledWindow
{
public:
    explicit stack_panel_t(wxWindow* parent, wxWindowID id = wxID_ANY);
    ~stack_panel_t() override;

    // Adds the message below the others and returns its panel.
    wxPanel* add_panel(const shareddlg3::message_window_t& message);
    // A message of that icon, title and text, added as a panel.
    wxPanel* show_message(const std::wstring& title, const std::wstring& text,
                          shareddlg3::message_window_t::icon_t icon);

    // Space around each message panel, in pixels; applies to later panels
    // and to those shown already.
    void set_border(int border);
    int get_border() const { return m_border; }

    size_t get_panel_count() const { return m_panels.size(); }
    const std::vector<shareddlg3::message_window_t>& get_messages() const { return m_messages; }
    void clear();

    // The dialog the panel lives in ended with code: the messages were read,
    // so the panel is emptied for the next time the dialog is shown.
    void on_dialog_finished(int code);
    int get_last_result() const { return m_last_result; }

private:
    void relayout();

    std::vector<wxPanel*> m_panels;
    std::vector<shareddlg3::message_window_t> m_messages;
    int m_border = 4;
    int m_last_result = 0;
};

} // namespace corr_dialogs2
