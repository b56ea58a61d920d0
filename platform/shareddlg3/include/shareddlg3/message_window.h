#pragma once
// Message boxes of the shared dialogs. Both go through the modal hook of
// wxkit1, so tests answer them without a window appearing.
#include "wxkit1/modal.h"

#include <wx/dialog.h>

#include <string>

class wxPanel;

namespace shareddlg3 {

// What a message window says and asks.
class message_window_t
{
public:
    enum icon_t { icon_none, icon_info, icon_warning, icon_error, icon_question };
    // Buttons, combined with |. yes_to_all and ok_always both give answer 3.
    enum button_t {
        btn_ok = 1 << 0,
        btn_cancel = 1 << 1,
        btn_yes = 1 << 2,
        btn_no = 1 << 3,
        btn_yes_to_all = 1 << 4,
        btn_ok_always = 1 << 5,
    };
    // Answers of show_modal(message_window_t, parent).
    enum answer_t {
        answer_cancel = 0, // Cancel, Escape or the close box
        answer_yes = 1,    // Yes or OK
        answer_no = 2,     // No
        answer_all = 3,    // Yes to all or OK always
    };

    message_window_t() = default;
    message_window_t(std::wstring title, std::wstring text, int buttons = btn_ok, icon_t icon = icon_info)
        : m_title(std::move(title)), m_text(std::move(text)), m_buttons(buttons), m_icon(icon)
    {
    }

    const std::wstring& title() const { return m_title; }
    const std::wstring& text() const { return m_text; }
    int buttons() const { return m_buttons; }
    icon_t icon() const { return m_icon; }
    void set_title(const std::wstring& title) { m_title = title; }
    void set_text(const std::wstring& text) { m_text = text; }
    void set_buttons(int buttons) { m_buttons = buttons; }
    void set_icon(icon_t icon) { m_icon = icon; }

    // The icon, title and text as a panel (without buttons), for a window
    // that lists several messages.
    wxPanel* create_panel(wxWindow* parent) const;

private:
    std::wstring m_title;
    std::wstring m_text;
    int m_buttons = btn_ok;
    icon_t m_icon = icon_info;
};

// The window that shows a message_window_t. It ends with the wx id of the
// button pressed: wxID_OK, wxID_YES, wxID_NO, wxID_YESTOALL (yes to all and
// OK always) or wxID_CANCEL; a test answers it through the modal hook with
// one of those ids.
class message_dialog_t : public wxkit1::modal_flavor<wxDialog>
{
public:
    message_dialog_t(wxWindow* parent, const message_window_t& message);
    const message_window_t& message() const { return m_message; }

    // The answer code of a button id.
    static int answer_of(int id);
    // The button id that gives an answer code (wxID_CANCEL for 0).
    static int id_of(int answer);

private:
    message_window_t m_message;
};

// Shows the message modally; returns its answer_t code.
int show_modal(const message_window_t& message, wxWindow* parent);

// A plain wxWidgets message box (wxMessageDialog) with title and text;
// style as for wxMessageBox (wxOK, wxYES_NO, wxICON_ERROR, ...). Returns the
// wx id of the answer (wxID_OK, wxID_YES, ...).
int show_msg_box(wxWindow* parent, const std::wstring& title, const std::wstring& text, long style = wxOK);

} // namespace shareddlg3
