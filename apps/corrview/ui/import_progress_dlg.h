#pragma once
// The window of an import running on a worker thread: progress, the file at
// work, what the worker reported, and Cancel. It owns the job and the
// bridges that carry the worker's reports to the GUI thread; the rest of
// the application is disabled (but keeps painting) until the job ends.
#include "../host/import_job.h"

#include "corr_dialogs2/msngr_bridge.h"

#include <wx/dialog.h>

#include <functional>
#include <memory>

class wxButton;
class wxGauge;
class wxStaticText;
class wxTextCtrl;
class wxWindowDisabler;

namespace corrview {

class import_progress_dlg_t : public wxDialog
{
public:
    // Told on the GUI thread once the worker has ended (joined), whichever way.
    using done_t = std::function<void(import_job_t& job)>;

    import_progress_dlg_t(wxWindow* parent, std::unique_ptr<import_job_t> job, done_t done);
    ~import_progress_dlg_t() override;

    // Shows the window and starts the worker.
    void start();
    // Asks the worker to stop (the Cancel button).
    void cancel();

    bool is_running() const { return m_running; }
    int percent() const;
    std::wstring status() const;
    std::wstring log() const;
    wxButton* cancel_button() const { return m_cancel; }

private:
    void on_percent(int percent);
    void on_status(const std::wstring& file);
    void on_messages(const std::list<corr_dialogs2::message_data_t>& messages);
    void on_finished();

    std::unique_ptr<import_job_t> m_job;
    done_t m_done;
    boost::shared_ptr<corr_dialogs2::progress_bridge_t> m_progress;
    boost::shared_ptr<corr_dialogs2::messenger_bridge_t> m_messenger;
    std::unique_ptr<wxWindowDisabler> m_disabler;
    bool m_running = false;

    wxStaticText* m_status = nullptr;
    wxGauge* m_gauge = nullptr;
    wxTextCtrl* m_log = nullptr;
    wxButton* m_cancel = nullptr;
};

} // namespace corrview
