#include "dialog_services.h"

#include "corr_dialogs2/ui_utils.h"
#include "corr_engine/result_manifest.h"

#include "eil1/message_bridge.h"
#include "shareddlg3/file_dialogs.h"
#include "shareddlg3/message_window.h"

namespace corrview {
namespace {

// Only the GUI thread shows messages, so no lock.
eil1::IMessageBridge* g_bridge = nullptr;

bool sent_to_ide(eil1::IMessageBridge::Severity severity, const std::wstring& title,
                 const std::wstring& text)
{
    return g_bridge && g_bridge->ShowMessage(severity, title.c_str(), text.c_str());
}

} // namespace

void set_message_bridge(eil1::IMessageBridge* bridge)
{
    g_bridge = bridge;
}

basekit2::path_t ask_import_file(wxWindow* parent, const basekit2::path_t& start)
{
    // The wildcard already holds "|", so it is taken as it is.
    return shareddlg3::file_dlg(parent, shareddlg3::file_dlg_mode::open, start, std::wstring(),
                                corr_dialogs2::prepare_file_dialog_string(),
                                corr_dialogs2::translate(L"corrview.import.caption"));
}

basekit2::path_t ask_result_file(wxWindow* parent, const basekit2::path_t& start)
{
    return shareddlg3::file_dlg(parent, shareddlg3::file_dlg_mode::open, start,
                                corr_engine::result_manifest_t::marker_extension,
                                corr_dialogs2::translate(L"corrview.open.filter"),
                                corr_dialogs2::translate(L"corrview.open.caption"));
}

void show_error(wxWindow* parent, const std::wstring& title, const std::wstring& text)
{
    if (!sent_to_ide(eil1::IMessageBridge::Severity::Error, title, text))
        shareddlg3::show_msg_box(parent, title, text, wxOK | wxICON_ERROR);
}

void show_info(wxWindow* parent, const std::wstring& title, const std::wstring& text)
{
    if (!sent_to_ide(eil1::IMessageBridge::Severity::Info, title, text))
        shareddlg3::show_msg_box(parent, title, text, wxOK | wxICON_INFORMATION);
}

} // namespace corrview
