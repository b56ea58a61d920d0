#include "shareddlg3/message_window.h"

#include "settings2/catalog.h"
#include "shareddlg3/resources.h"
#include "wxkit1/text.h"
#include "wxkit1/ui_settings.h"

#include <wx/artprov.h>
#include <wx/button.h>
#include <wx/msgdlg.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>

namespace shareddlg3 {
namespace {

constexpr int text_width = 460; // px: a readable line

wxArtID art_of(message_window_t::icon_t icon)
{
    switch (icon) {
    case message_window_t::icon_info:
        return wxART_INFORMATION;
    case message_window_t::icon_warning:
        return wxART_WARNING;
    case message_window_t::icon_error:
        return wxART_ERROR;
    case message_window_t::icon_question:
        return wxART_QUESTION;
    case message_window_t::icon_none:
        break;
    }
    return wxArtID();
}

// Label of a button: the shared catalogue's text, else the stock label
// (which wxWidgets translates), else the key itself so that it shows.
wxString button_label(const wchar_t* key, wxWindowID stock_id)
{
    const auto catalog = settings2::getMessageCatalog(shared_resource_set);
    if (catalog && catalog->has_message(key))
        return translate_shared(key);
    return stock_id != wxID_NONE ? wxGetStockLabel(stock_id) : wxString(key);
}

} // namespace

wxPanel* message_window_t::create_panel(wxWindow* parent) const
{
    auto* panel = new wxPanel(parent);
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    if (const wxArtID art = art_of(m_icon); !art.empty()) {
        const wxBitmap bitmap = wxArtProvider::GetBitmap(art, wxART_MESSAGE_BOX);
        row->Add(new wxStaticBitmap(panel, wxID_ANY, bitmap), 0, wxALL | wxALIGN_TOP, panel->FromDIP(8));
    }
    auto* column = new wxBoxSizer(wxVERTICAL);
    if (!m_title.empty()) {
        auto* title = new wxStaticText(panel, wxID_ANY, wxString(m_title));
        title->SetFont(wxkit1::ui_settings_t::get_font(wxkit1::ui_settings_t::font_bold));
        title->SetName("title");
        column->Add(title, 0, wxBOTTOM, panel->FromDIP(6));
    }
    int width = 0;
    const std::wstring wrapped = wxkit1::wrap_text(m_text, panel->FromDIP(text_width), panel, width);
    auto* text = new wxStaticText(panel, wxID_ANY, wxString(wrapped));
    text->SetName("text");
    column->Add(text, 1, wxEXPAND);
    row->Add(column, 1, wxALL | wxEXPAND, panel->FromDIP(8));
    panel->SetSizer(row);
    return panel;
}

message_dialog_t::message_dialog_t(wxWindow* parent, const message_window_t& message) : m_message(message)
{
    Create(parent, wxID_ANY, wxString(message.title()), wxDefaultPosition, wxDefaultSize,
           wxDEFAULT_DIALOG_STYLE);
    auto* sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(message.create_panel(this), 1, wxEXPAND);

    struct button_kind
    {
        int flag;
        wxWindowID id;
        const wchar_t* key;
        wxWindowID stock;
    };
    const button_kind kinds[] = {
        {message_window_t::btn_yes, wxID_YES, L"msgbox.yes", wxID_YES},
        {message_window_t::btn_yes_to_all, wxID_YESTOALL, L"msgbox.yes_to_all", wxID_NONE},
        {message_window_t::btn_ok, wxID_OK, L"msgbox.ok", wxID_OK},
        {message_window_t::btn_ok_always, wxID_YESTOALL, L"msgbox.ok_always", wxID_NONE},
        {message_window_t::btn_no, wxID_NO, L"msgbox.no", wxID_NO},
        {message_window_t::btn_cancel, wxID_CANCEL, L"msgbox.cancel", wxID_CANCEL},
    };
    auto* buttons = new wxBoxSizer(wxHORIZONTAL);
    buttons->AddStretchSpacer();
    bool first = true;
    for (const auto& kind : kinds) {
        if (!(message.buttons() & kind.flag))
            continue;
        auto* button = new wxButton(this, kind.id, button_label(kind.key, kind.stock));
        button->Bind(wxEVT_BUTTON, [this, id = kind.id](wxCommandEvent&) { EndModal(id); });
        if (first)
            button->SetDefault();
        first = false;
        buttons->Add(button, 0, wxLEFT, FromDIP(6));
    }
    if (first) { // no buttons asked for: still one way out
        auto* ok = new wxButton(this, wxID_OK, button_label(L"msgbox.ok", wxID_OK));
        ok->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { EndModal(wxID_OK); });
        buttons->Add(ok);
    }
    sizer->Add(buttons, 0, wxEXPAND | wxALL, FromDIP(8));
    SetEscapeId(message.buttons() & message_window_t::btn_cancel ? wxID_CANCEL : wxID_ANY);
    SetSizerAndFit(sizer);
    CentreOnParent();
}

int message_dialog_t::answer_of(int id)
{
    switch (id) {
    case wxID_OK:
    case wxID_YES:
        return message_window_t::answer_yes;
    case wxID_NO:
        return message_window_t::answer_no;
    case wxID_YESTOALL:
        return message_window_t::answer_all;
    default:
        return message_window_t::answer_cancel;
    }
}

int message_dialog_t::id_of(int answer)
{
    switch (answer) {
    case message_window_t::answer_yes:
        return wxID_YES;
    case message_window_t::answer_no:
        return wxID_NO;
    case message_window_t::answer_all:
        return wxID_YESTOALL;
    default:
        return wxID_CANCEL;
    }
}

int show_modal(const message_window_t& message, wxWindow* parent)
{
    message_dialog_t dialog(parent, message);
    return message_dialog_t::answer_of(dialog.ShowModal());
}

int show_msg_box(wxWindow* parent, const std::wstring& title, const std::wstring& text, long style)
{
    wxMessageDialog dialog(parent, wxString(text), wxString(title), style);
    return wxkit1::show_modal_hooked(dialog);
}

} // namespace shareddlg3
