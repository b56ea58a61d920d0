#pragma once
// The export-result dialog: packs one result into an archive chosen by the
// user. One window with two pages: the options (target file, sources check
// box, Export) and the progress (gauge, status line, message log). Packing
// runs on a worker thread that reports only through the progress and
// messenger bridges; the dialog stays open after the end until the user
// closes it.
//
//   corr_dialogs2::export_dlg_t dlg(engine, folder);   // or (load callback, folder)
//   dlg.show_modal(parent);
#include "corr_dialogs2/export.h"
#include "corr_dialogs2/msngr_bridge.h"

#include "basekit2/intrusive.h"
#include "basekit2/path.h"
#include "basekit2/threading/mutex.h"
#include "shareddlg3/dialog_base.h"

#include <boost/shared_ptr.hpp>
#include <boost/thread/thread.hpp>

#include <future>
#include <list>
#include <string>

class wxButton;
class wxCheckBox;
class wxGauge;
class wxPanel;
class wxStaticText;
class wxTextCtrl;

namespace corr_engine {
class engine_t;
}

namespace corr_dialogs2 {

class CORR_DIALOGS2_API export_dlg_t : public shareddlg3::dialog_base_t
{
public:
    using engine_ptr_t = basekit2::intrusive_pointer_t<corr_engine::engine_t>;

    // Exports the result open in engine; the proposed archive is
    // <target folder>/<result name>.<archive extension>.
    export_dlg_t(const engine_ptr_t& engine, const basekit2::path_t& target_folder);
    // Exports the result that callback loads on the worker thread (its name
    // is known before).
    export_dlg_t(const boost::shared_ptr<load_result_callback_t>& callback,
                 const basekit2::path_t& target_folder);
    // Asks a running worker to stop and leaves it to finish on its own, cut
    // off from the dialog; never waits for it.
    ~export_dlg_t() override;
    export_dlg_t(const export_dlg_t&) = delete;
    export_dlg_t& operator=(const export_dlg_t&) = delete;

    // The engine's result name, else the load callback's; empty without both.
    std::wstring get_result_name() const;

    // Starts packing into the archive named by the target field (a name
    // without folders lies in the target folder; the archive extension is
    // appended when missing). False, after telling the user, when the
    // archive cannot be created: nothing is started then.
    bool start_export();

    // The archive: proposed at construction, the one written once Export
    // was pressed.
    const basekit2::path_t& get_target() const { return m_target; }
    // A warning was reported during the export.
    bool has_warnings() const;
    // The worker ended after packing (successfully or not).
    bool is_finished() const { return m_finished; }
    // Cancel was pressed while the worker ran; the dialog ends once the
    // worker has stopped.
    bool is_cancelling() const { return m_cancelling; }

protected:
    void on_init_dialog() override;
    void on_update_ui_settings() override;
    void set_max_text_limit() override;

    void on_export(wxCommandEvent& event);
    // Cancel, and Close once finished; Escape comes here too, the close box
    // to on_close_window. Neither waits for a running worker: it is asked
    // to stop, the dialog says so, and on_worker_stopped ends the dialog.
    void on_cancel_button(wxCommandEvent& event);
    void on_close_window(wxCloseEvent& event);
    void on_browse_target(wxCommandEvent& event);
    void on_target_folder_edit(wxCommandEvent& event);

    // GUI thread, from the bridges.
    void on_progress_changed(int percent);
    void on_progress_status_changed(const std::wstring& text);
    void on_message_received(const std::list<message_data_t>& messages);
    // Worker thread: must not touch a window.
    void on_message_received_async(const message_data_t& message);
    void on_finish();
    // GUI thread: the worker's last act, however the work ended.
    void on_worker_stopped();

private:
    void initialize_internals(const basekit2::path_t& target_folder);
    void show_options_page(bool options);
    // What the target field names, as the archive to write.
    basekit2::path_t target_from_field() const;
    // True when target may be written: it does not exist, the user agreed
    // to replace it in Browse's save dialog, or agrees now.
    bool confirm_replace(const basekit2::path_t& target);
    // Removes characters a path cannot hold, marks the field and enables
    // Export accordingly.
    void check_target_field();
    void mark_target_field();
    void update_export_button();
    // Ends the dialog when no worker runs (true); otherwise asks it to stop
    // and shows that the export is being cancelled (false).
    bool request_close();
    bool worker_has_ended() const;
    void disconnect_bridges();

    engine_ptr_t m_engine;
    boost::shared_ptr<load_result_callback_t> m_load_callback;
    std::wstring m_result_name;
    basekit2::path_t m_target_folder;
    basekit2::path_t m_target;
    basekit2::path_t m_replace_agreed; // an existing file chosen through Browse

    boost::shared_ptr<messenger_bridge_t> m_messenger;
    boost::shared_ptr<progress_bridge_t> m_progress;
    boost::thread m_worker;
    std::future<void> m_worker_done; // ready once the worker has done its work
    // Raised on the GUI thread when the worker has stopped; shared with the
    // worker, which may outlive the dialog.
    struct worker_end_t
    {
        basekit2::_internal::signal_t<> stopped;
    };
    boost::shared_ptr<worker_end_t> m_worker_end;

    mutable basekit2::threading::mutex_t m_mutex; // the flags the worker sets
    bool m_warning = false;
    bool m_finished = false;   // GUI thread only
    bool m_cancelling = false; // GUI thread only
    // chars_removed: the last edit lost characters a path cannot hold.
    enum class target_state_t { ok, chars_removed, empty };
    target_state_t m_target_state = target_state_t::ok;

    wxPanel* m_options_panel = nullptr;
    wxPanel* m_progress_panel = nullptr;
    wxTextCtrl* m_target_file = nullptr;
    wxGauge* m_gauge = nullptr;
    wxStaticText* m_status_text = nullptr;
    wxTextCtrl* m_log = nullptr;
    wxButton* m_export_btn = nullptr;
    wxCheckBox* m_src_files_cb = nullptr;
    wxButton* m_btn_cancel = nullptr;
    wxButton* m_browse_btn = nullptr;

    wxDECLARE_EVENT_TABLE();
};

} // namespace corr_dialogs2
