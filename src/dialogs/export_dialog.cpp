// The export-result dialog and its worker.
//
// Stopping the worker: Cancel sets the cancel flag of the progress bridge.
// The archiver polls it (through the progress guard's child) several times a
// second while it compresses, and the worker looks at it between loading and
// packing; thread interruption would not reach into libzip. The GUI thread
// never waits for the worker: Cancel shows that the export is being
// cancelled, and the dialog ends when the worker says it has stopped, so
// that the abandoned archive is gone when the dialog returns.
//
// The worker's last acts, in this order: its remaining messages are flushed
// to the GUI thread, the completion (the bridge's second event) is raised
// once packing is over, whatever its result, and the dialog is told that
// the worker has stopped. Tasks posted at once run in the order posted, so
// no message arrives after "finished". The first event, which the outermost
// progress guard raises however the work ends, is not used: a load that
// failed ends the worker without a completion, and the dialog keeps waiting
// (the loader has said why through the messenger, if it could) until the
// user closes it.
#include "corr_dialogs2/export_dialog.h"

#include "corr_dialogs2/ui_utils.h"

#include "corr_engine/archiver.h"
#include "corr_engine/engine.h"
#include "corr_engine/progress_guard.h"
#include "corr_engine/zipfile.h"
#include "platkit/strings/convert.h"
#include "shareddlg3/file_dialogs.h"
#include "shareddlg3/message_window.h"
#include "shareddlg3/resources.h"
#include "shareddlg3/utils.h"
#include "wxkit1/tasks/post_signal.h"
#include "wxkit1/ui_settings.h"

#include <boost/make_shared.hpp>

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/gauge.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>
#include <wx/xrc/xmlres.h>

#include <algorithm>
#include <chrono>
#include <exception>
#include <memory>
#include <mutex>

namespace corr_dialogs2 {
namespace {

using corr_engine::archiver_t;

// Longest path a user can type into the target field.
constexpr unsigned long max_target_length = 4096;

// Looked up once per process: the shared catalogue does not change.
const std::wstring& restricted_chars_tooltip()
{
    static const std::wstring text =
        shareddlg3::get_disabled_tooltip_text(shareddlg3::path_disabled_chars);
    return text;
}

const std::wstring& empty_target_tooltip()
{
    static const std::wstring text =
        shareddlg3::translate_shared(L"pref.result_saving.undefined_tooltip_text");
    return text;
}

// Everything the worker uses: its own references, so that it never needs the
// dialog, and texts translated on the GUI thread beforehand.
struct export_job_t
{
    export_dlg_t::engine_ptr_t engine;
    boost::shared_ptr<load_result_callback_t> load_callback;
    std::shared_ptr<corr_engine::zipfile_impl_t> zip;
    unsigned flags = 0;
    boost::shared_ptr<messenger_bridge_t> messenger;
    boost::shared_ptr<progress_bridge_t> progress;
    std::wstring loading_text;
    std::wstring cancelled_text;
    std::wstring failed_text;
};

archiver_t::error_code_t load_and_pack(const export_job_t& job, bool& loaded)
{
    corr_engine::progress_guard_t guard(job.progress.get(), job.loading_text, 3);
    export_dlg_t::engine_ptr_t engine = job.engine;
    if (!engine) {
        loaded = job.load_callback->load(*job.messenger);
        if (!loaded)
            return archiver_t::no_result;
        engine = job.load_callback->get_engine();
    }
    guard.progressed(1);
    if (!engine)
        return archiver_t::no_result; // loaded, yet nothing to pack
    if (guard.is_cancelled())
        return archiver_t::cancelled;
    const auto child = guard.create_child(2, 1);
    return archiver_t::pack(engine, *job.zip, job.flags, job.messenger.get(), child.get());
}

void run_export(export_job_t job)
{
    if (!job.engine && !job.load_callback)
        return;
    bool loaded = true;
    archiver_t::error_code_t rc = archiver_t::write_failed;
    try {
        rc = load_and_pack(job, loaded);
    } catch (const std::exception& e) {
        const std::wstring what = platkit::strings::utf8_to_wide(e.what());
        job.messenger->message(notify2::msg_error, what.c_str());
    } catch (...) {
    }
    if (!loaded) {
        job.messenger->flush();
        return; // the dialog keeps waiting; see the top of the file
    }
    if (rc == archiver_t::cancelled) {
        // The archiver wrote nothing at the target path: what it had packed
        // lay in a temporary file that is gone now. A file that was at the
        // target before is an earlier export, not a partial one, and stays.
        job.zip->discard();
        job.messenger->message(notify2::msg_warning, job.cancelled_text.c_str());
    } else if (rc != archiver_t::success) {
        job.messenger->message(notify2::msg_error, job.failed_text.c_str());
    }
    job.zip.reset();
    job.messenger->flush();
    job.progress->raise_second();
}

} // namespace

export_dlg_t::export_dlg_t(const engine_ptr_t& engine, const basekit2::path_t& target_folder)
    : m_engine(engine), m_worker_end(boost::make_shared<worker_end_t>())
{
    initialize_internals(target_folder);
}

export_dlg_t::export_dlg_t(const boost::shared_ptr<load_result_callback_t>& callback,
                           const basekit2::path_t& target_folder)
    : m_load_callback(callback), m_worker_end(boost::make_shared<worker_end_t>())
{
    initialize_internals(target_folder);
}

export_dlg_t::~export_dlg_t()
{
    // Cut the worker off first: from now on it reaches no part of the dialog.
    disconnect_bridges();
    m_worker_end->stopped.disconnect_all();
    if (!m_worker.joinable())
        return;
    if (worker_has_ended()) {
        m_worker.join(); // it is leaving: nothing to wait for
        return;
    }
    // Asked to stop, and left to end on its own: it holds its own references.
    if (m_progress)
        m_progress->cancel();
    if (m_load_callback)
        m_load_callback->cancel();
    m_worker.detach();
}

void export_dlg_t::initialize_internals(const basekit2::path_t& target_folder)
{
    set_resource_file(
        shareddlg3::create_resource_filename(resources::catalog_file, resources::layout_file));
    set_dialog_name(L"dlg.export");
    set_resource_set(resources::resource_set);
    set_help_topic(L"korrin.hlp.ctx.export_result_f3420");
    set_default_size(360, 225);

    // Asked once: a loader is busy on the worker thread later on.
    if (m_engine)
        m_result_name = m_engine->get_result_name();
    else if (m_load_callback)
        m_result_name = m_load_callback->get_result_name();
    m_target_folder = target_folder;
    m_target = target_folder.join(basekit2::path_t(m_result_name))
                   .replace_extension(archiver_t::get_default_file_ext());
}

std::wstring export_dlg_t::get_result_name() const
{
    return m_result_name;
}

bool export_dlg_t::has_warnings() const
{
    std::lock_guard lock(m_mutex);
    return m_warning;
}

void export_dlg_t::on_init_dialog()
{
    m_options_panel = find_control<wxPanel>(L"m_options_panel");
    m_progress_panel = find_control<wxPanel>(L"m_progress_panel");
    m_target_file = find_control<wxTextCtrl>(L"m_target_file");
    m_gauge = find_control<wxGauge>(L"m_gauge");
    m_status_text = find_control<wxStaticText>(L"m_status_text");
    m_log = find_control<wxTextCtrl>(L"m_log");
    m_export_btn = find_control<wxButton>(L"m_export_btn");
    m_src_files_cb = find_control<wxCheckBox>(L"m_src_files_cb");
    m_btn_cancel = find_control<wxButton>(L"m_btn_cancel");
    m_browse_btn = find_control<wxButton>(L"m_browse_btn");

    set_title(translate(L"dlg.export.title", {{L"result_name", get_result_name()}}));
    if (m_target_file)
        m_target_file->ChangeValue(m_target.str());
    if (m_gauge)
        m_gauge->SetRange(100);
    check_target_field();
    show_options_page(true);
    SetSize(get_proportional_size(0.6, 0.6, get_default_size()));
    CentreOnParent();
}

void export_dlg_t::on_update_ui_settings()
{
    // The marking colour may have changed with the settings.
    if (m_target_file)
        mark_target_field();
}

void export_dlg_t::set_max_text_limit()
{
    if (m_target_file)
        m_target_file->SetMaxLength(max_target_length);
}

void export_dlg_t::show_options_page(bool options)
{
    if (m_options_panel)
        m_options_panel->Show(options);
    if (m_progress_panel)
        m_progress_panel->Show(!options);
    Layout();
}

void export_dlg_t::on_export(wxCommandEvent&)
{
    if (!m_export_btn || !m_gauge || !m_status_text)
        return;
    m_export_btn->Disable();
    show_options_page(false);
    m_gauge->SetValue(0);
    m_status_text->SetLabelText(wxString());
    if (!start_export()) {
        show_options_page(true);
        update_export_button();
    }
}

basekit2::path_t export_dlg_t::target_from_field() const
{
    basekit2::path_t target(m_target_file ? m_target_file->GetValue().ToStdWstring()
                                          : m_target.str());
    if (!target.is_absolute())
        target = m_target_folder.join(target); // a bare name lies in the proposed folder
    const std::wstring ext = archiver_t::get_default_file_ext();
    if (target.extension() != ext)
        target = basekit2::path_t(target.str() + L"." + ext); // "name.txt" -> "name.txt.<ext>"
    return target;
}

bool export_dlg_t::confirm_replace(const basekit2::path_t& target)
{
    if (!target.exists() || target == m_replace_agreed)
        return true;
    const shareddlg3::message_window_t question(
        translate(L"dlg.export.title", {{L"result_name", get_result_name()}}),
        translate(L"dlg.export.replace", {{L"file", target.str()}}),
        shareddlg3::message_window_t::btn_yes | shareddlg3::message_window_t::btn_no,
        shareddlg3::message_window_t::icon_question);
    return shareddlg3::show_modal(question, this) == shareddlg3::message_window_t::answer_yes;
}

bool export_dlg_t::start_export()
{
    if (m_worker.joinable())
        return false; // one export per dialog
    // An earlier archive is replaced only when the user says so; it stays as
    // it was until the new one is complete (the archive is written beside
    // it and renamed over it at the end).
    if (!confirm_replace(target_from_field()))
        return false;

    m_messenger = messenger_bridge_t::create();
    m_messenger->messages_received.connect(
        [this](std::list<message_data_t> messages) { on_message_received(messages); });
    m_messenger->message_received.connect(
        [this](const message_data_t& message) { on_message_received_async(message); });

    m_progress = progress_bridge_t::create();
    m_progress->percent_changed.connect([this](int percent) { on_progress_changed(percent); });
    m_progress->status_changed.connect(
        [this](std::wstring text) { on_progress_status_changed(text); });
    m_progress->notify_second.connect([this] { on_finish(); });
    m_worker_end->stopped.disconnect_all();
    m_worker_end->stopped.connect([this] { on_worker_stopped(); });

    m_target = target_from_field();
    auto zip = std::make_shared<corr_engine::zipfile_impl_t>();
    if (!zip->open_for_writing(m_target)) {
        disconnect_bridges();
        m_messenger.reset();
        m_progress.reset();
        const shareddlg3::message_window_t message(
            translate(L"dlg.export.title", {{L"result_name", get_result_name()}}),
            translate(L"dlg.export.error.nozip") + L"\n\n" + zip->get_error(),
            shareddlg3::message_window_t::btn_ok, shareddlg3::message_window_t::icon_error);
        shareddlg3::show_modal(message, this);
        return false;
    }

    export_job_t job;
    job.engine = m_engine;
    job.load_callback = m_load_callback;
    job.zip = std::move(zip);
    job.flags = m_src_files_cb && m_src_files_cb->IsChecked() ? archiver_t::include_sources : 0u;
    job.messenger = m_messenger;
    job.progress = m_progress;
    job.loading_text = translate(L"dlg.export.loading_result");
    job.cancelled_text = translate(L"dlg.export.warning.canceled");
    job.failed_text = translate(L"dlg.export.error.general");
    auto done = std::make_shared<std::promise<void>>();
    m_worker_done = done->get_future();
    m_worker = boost::thread([job = std::move(job), done, end = m_worker_end]() mutable {
        // However the work ends: the dialog learns that the worker has
        // stopped, after everything else the worker posted.
        struct signal_done_t
        {
            std::promise<void>& promise;
            const boost::shared_ptr<worker_end_t>& end;
            ~signal_done_t()
            {
                promise.set_value();
                wxkit1::tasks::PostSignal(end->stopped, end, L"export_dlg.worker_stopped");
            }
        } signal_done{*done, end};
        try {
            run_export(std::move(job));
        } catch (...) {
            // Reported as far as it could be; the worker must not take the
            // program down with it.
        }
    });
    return true;
}

void export_dlg_t::on_progress_changed(int percent)
{
    if (m_gauge)
        m_gauge->SetValue(std::clamp(percent, 0, 100));
    // Percent and status travel with a delay; the completion does not. Once
    // finished, the title and status say so, whatever arrives late.
    if (!m_finished)
        set_title(translate(L"dlg.export.title.progress",
                            {{L"progress", percent}, {L"result_name", get_result_name()}}));
}

void export_dlg_t::on_progress_status_changed(const std::wstring& text)
{
    if (m_status_text && !m_finished && !m_cancelling)
        m_status_text->SetLabelText(text);
}

void export_dlg_t::on_message_received(const std::list<message_data_t>& messages)
{
    std::wstring lines;
    for (const auto& message : messages) {
        std::wstring line;
        if (notify2::is_warning(message.type))
            line = translate(L"dlg.export.warning.msg", {{L"message", message.text}});
        else if (notify2::is_error(message.type))
            line = translate(L"dlg.export.error.msg", {{L"message", message.text}});
        else
            line = message.text;
        if (!lines.empty())
            lines += L"\r\n";
        lines += line;
    }
    if (!m_log || lines.empty())
        return;
    // The log's lines are joined by CR LF; the control gets the line breaks
    // of this platform.
    if (!m_log->IsEmpty())
        lines = L"\r\n" + lines;
    m_log->AppendText(shareddlg3::restore_line_endings(lines));
}

void export_dlg_t::on_message_received_async(const message_data_t& message)
{
    if (notify2::is_warning(message.type)) {
        std::lock_guard lock(m_mutex);
        m_warning = true;
    }
}

void export_dlg_t::on_finish()
{
    m_finished = true;
    if (m_cancelling)
        return; // the dialog goes as soon as the worker has stopped
    set_title(translate(L"dlg.export.title.done", {{L"result_name", get_result_name()}}));
    if (m_status_text)
        m_status_text->SetLabelText(translate(L"dlg.export.status.done"));
    if (m_btn_cancel)
        m_btn_cancel->SetLabel(translate(L"btn.close"));
    Layout();
}

void export_dlg_t::on_cancel_button(wxCommandEvent&)
{
    request_close();
}

void export_dlg_t::on_close_window(wxCloseEvent& event)
{
    if (!request_close() && event.CanVeto())
        event.Veto();
}

bool export_dlg_t::request_close()
{
    if (m_cancelling)
        return false; // the dialog ends once the worker has stopped
    if (m_load_callback)
        m_load_callback->cancel();
    if (!m_worker.joinable() || worker_has_ended()) {
        if (m_worker.joinable())
            m_worker.join(); // it is leaving: nothing to wait for
        end_dialog(wxID_CANCEL);
        return true;
    }
    m_cancelling = true;
    if (m_progress)
        m_progress->cancel();
    if (m_status_text)
        m_status_text->SetLabelText(translate(L"dlg.export.status.cancelling"));
    if (m_btn_cancel)
        m_btn_cancel->Disable();
    Layout();
    return false;
}

void export_dlg_t::on_worker_stopped()
{
    if (m_worker.joinable())
        m_worker.join(); // its last act was to say so: it is leaving
    if (m_cancelling) {
        m_cancelling = false;
        if (m_btn_cancel)
            m_btn_cancel->Enable();
        end_dialog(wxID_CANCEL);
    }
}

bool export_dlg_t::worker_has_ended() const
{
    return !m_worker_done.valid() ||
           m_worker_done.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
}

void export_dlg_t::disconnect_bridges()
{
    // Disconnecting waits for a subscriber running on the worker thread.
    if (m_messenger) {
        m_messenger->messages_received.disconnect_all();
        m_messenger->message_received.disconnect_all();
    }
    if (m_progress) {
        m_progress->percent_changed.disconnect_all();
        m_progress->status_changed.disconnect_all();
        m_progress->notify_first.disconnect_all();
        m_progress->notify_second.disconnect_all();
    }
}

void export_dlg_t::on_browse_target(wxCommandEvent&)
{
    const basekit2::path_t chosen =
        shareddlg3::file_dlg(this, shareddlg3::file_dlg_mode::save, target_from_field(),
                             archiver_t::get_default_file_ext(),
                             translate(L"dlg.export.browse_mask"), translate(L"btn.save_as"));
    if (chosen.empty())
        return;
    if (chosen.exists())
        m_replace_agreed = chosen; // the save dialog asked already
    if (m_target_file)
        m_target_file->SetValue(chosen.str()); // an edit: the field is checked again
}

void export_dlg_t::on_target_folder_edit(wxCommandEvent&)
{
    check_target_field();
}

void export_dlg_t::check_target_field()
{
    if (!m_target_file)
        return;
    const std::wstring text = m_target_file->GetValue().ToStdWstring();
    const std::wstring cleaned =
        shareddlg3::replace_disabled_chars(text, shareddlg3::path_disabled_chars);
    if (cleaned != text) {
        // The characters go at once; the marking says why they went.
        const long removed = static_cast<long>(text.size() - cleaned.size());
        const long at = m_target_file->GetInsertionPoint();
        m_target_file->ChangeValue(cleaned);
        m_target_file->SetInsertionPoint(std::max(0L, at - removed));
        m_target_state = target_state_t::chars_removed;
    } else {
        m_target_state = cleaned.empty() ? target_state_t::empty : target_state_t::ok;
    }
    mark_target_field();
    update_export_button();
}

void export_dlg_t::mark_target_field()
{
    const wxColour invalid =
        wxkit1::ui_settings_t::get_color(wxkit1::ui_settings_t::color_invalid_input);
    switch (m_target_state) {
    case target_state_t::chars_removed:
        shareddlg3::set_color_and_tooltip(m_target_file, invalid, restricted_chars_tooltip());
        break;
    case target_state_t::empty:
        shareddlg3::set_color_and_tooltip(m_target_file, invalid, empty_target_tooltip());
        break;
    case target_state_t::ok:
        shareddlg3::set_color_and_tooltip(m_target_file, wxNullColour, std::wstring());
        break;
    }
}

void export_dlg_t::update_export_button()
{
    if (m_export_btn)
        m_export_btn->Enable(m_target_state != target_state_t::empty && !m_worker.joinable());
}

// clang-format off
wxBEGIN_EVENT_TABLE(export_dlg_t, shareddlg3::dialog_base_t)
    EVT_BUTTON(XRCID("m_export_btn"), export_dlg_t::on_export)
    EVT_BUTTON(wxID_CANCEL, export_dlg_t::on_cancel_button)
    EVT_CLOSE(export_dlg_t::on_close_window)
    EVT_BUTTON(XRCID("m_browse_btn"), export_dlg_t::on_browse_target)
    EVT_TEXT(XRCID("m_target_file"), export_dlg_t::on_target_folder_edit)
wxEND_EVENT_TABLE()
// clang-format on

} // namespace corr_dialogs2
