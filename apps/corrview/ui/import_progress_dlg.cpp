#include "import_progress_dlg.h"

#include "corr_dialogs2/ui_utils.h"

#include <wx/button.h>
#include <wx/gauge.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>
#include <wx/utils.h>

namespace corrview {

using corr_dialogs2::translate;

import_progress_dlg_t::import_progress_dlg_t(wxWindow* parent, std::unique_ptr<import_job_t> job,
                                             done_t done)
    : wxDialog(parent, wxID_ANY, translate(L"corrview.import.progress.title"), wxDefaultPosition,
               wxDefaultSize, wxCAPTION),
      m_job(std::move(job)), m_done(std::move(done))
{
    auto* sizer = new wxBoxSizer(wxVERTICAL);
    m_status = new wxStaticText(this, wxID_ANY, translate(L"corrview.import.progress.starting"),
                                wxDefaultPosition, wxDefaultSize, wxST_ELLIPSIZE_MIDDLE);
    m_gauge = new wxGauge(this, wxID_ANY, 100, wxDefaultPosition, wxSize(FromDIP(420), -1));
    m_log = new wxTextCtrl(this, wxID_ANY, wxEmptyString, wxDefaultPosition,
                           wxSize(-1, FromDIP(90)), wxTE_MULTILINE | wxTE_READONLY);
    m_cancel = new wxButton(this, wxID_CANCEL, translate(L"corrview.button.cancel"));
    sizer->Add(m_status, 0, wxEXPAND | wxALL, FromDIP(10));
    sizer->Add(m_gauge, 0, wxEXPAND | wxLEFT | wxRIGHT, FromDIP(10));
    sizer->Add(m_log, 1, wxEXPAND | wxALL, FromDIP(10));
    sizer->Add(m_cancel, 0, wxALIGN_RIGHT | wxLEFT | wxRIGHT | wxBOTTOM, FromDIP(10));
    SetSizerAndFit(sizer);
    CentreOnParent();
    m_cancel->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { cancel(); });
    // Escape and the close box cancel too; the window goes when the worker has ended.
    Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent& event) {
        if (m_running && event.CanVeto()) {
            cancel();
            event.Veto();
            return;
        }
        event.Skip();
    });
}

import_progress_dlg_t::~import_progress_dlg_t()
{
    if (m_progress) {
        m_progress->cancel();
        m_progress->percent_changed.disconnect_all();
        m_progress->status_changed.disconnect_all();
        m_progress->notify_first.disconnect_all();
    }
    if (m_messenger)
        m_messenger->messages_received.disconnect_all();
    if (m_job)
        m_job->join();
}

void import_progress_dlg_t::start()
{
    m_progress = corr_dialogs2::progress_bridge_t::create();
    m_messenger = corr_dialogs2::messenger_bridge_t::create();
    m_progress->percent_changed.connect([this](int p) { on_percent(p); });
    m_progress->status_changed.connect([this](const std::wstring& s) { on_status(s); });
    m_progress->notify_first.connect([this] { on_finished(); });
    m_messenger->messages_received.connect(
        [this](const std::list<corr_dialogs2::message_data_t>& batch) { on_messages(batch); });
    m_running = true;
    Show();
    m_disabler = std::make_unique<wxWindowDisabler>(this);
    m_job->start(m_progress, m_messenger);
}

void import_progress_dlg_t::cancel()
{
    if (!m_running || !m_progress)
        return;
    m_progress->cancel();
    m_cancel->Disable();
    m_status->SetLabel(translate(L"corrview.import.progress.cancelling"));
}

int import_progress_dlg_t::percent() const
{
    return m_gauge->GetValue();
}

std::wstring import_progress_dlg_t::status() const
{
    return m_status->GetLabel().ToStdWstring();
}

std::wstring import_progress_dlg_t::log() const
{
    return m_log->GetValue().ToStdWstring();
}

void import_progress_dlg_t::on_percent(int percent)
{
    m_gauge->SetValue(std::clamp(percent, 0, 100));
}

void import_progress_dlg_t::on_status(const std::wstring& file)
{
    if (!m_running || m_progress->is_cancelled())
        return;
    m_status->SetLabel(file.empty() ? translate(L"corrview.import.progress.starting")
                                    : translate(L"corrview.import.progress.status",
                                                platkit::generic::varg_list().add(L"file", file)));
}

void import_progress_dlg_t::on_messages(const std::list<corr_dialogs2::message_data_t>& messages)
{
    for (const auto& m : messages) {
        const wchar_t* key = notify2::is_error(m.type)     ? L"corrview.import.log.error"
                             : notify2::is_warning(m.type) ? L"corrview.import.log.warning"
                                                           : L"corrview.import.log.file";
        m_log->AppendText(translate(key, platkit::generic::varg_list().add(L"message", m.text)) +
                          L"\n");
    }
}

void import_progress_dlg_t::on_finished()
{
    if (!m_running)
        return;
    m_running = false;
    m_job->join();
    m_disabler.reset();
    Hide();
    if (m_done)
        m_done(*m_job);
    // Not at once: this runs inside a task of the bridge this window owns.
    CallAfter([this] { Destroy(); });
}

} // namespace corrview
