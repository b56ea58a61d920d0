#pragma once
// The files filter dialog: the user types a file mask and sees, live, which
// of a given list of files match it. Matching runs as a background task; a
// progress animation turns while it runs and a tick shows when it is done.
//
//   corr_dialogs2::files_filter_dlg_t dlg(files);
//   if (dlg.show_modal(parent) == wxID_OK) use(dlg.get_mask(), dlg.get_files());
#include "corr_dialogs2/export.h"
#include "corr_dialogs2/filter_files_task.h"

#include "basekit2/path.h"
#include "shareddlg3/dialog_base.h"

#include <memory>
#include <string>
#include <vector>

class wxAnimationCtrl;
class wxButton;
class wxListBox;
class wxStaticText;
class wxTextCtrl;

namespace corr_dialogs2 {

class CORR_DIALOGS2_API files_filter_dlg_t : public shareddlg3::dialog_base_t
{
public:
    explicit files_filter_dlg_t(const std::vector<basekit2::path_t>& files);
    ~files_filter_dlg_t() override;
    files_filter_dlg_t(const files_filter_dlg_t&) = delete;
    files_filter_dlg_t& operator=(const files_filter_dlg_t&) = delete;

    // The files that matched the last completed filtering, in input order.
    const std::vector<basekit2::path_t>& get_files() const { return m_files; }
    // The text of the mask field.
    std::wstring get_mask() const;

    // Characters a mask may not hold: " < > |.
    static const std::wstring& restricted_chars();
    // A filtering is running.
    bool is_busy() const;

protected:
    void on_init_dialog() override;
    void on_update_ui_settings() override;

    // Every change of the mask field: a mask with a restricted character
    // marks the field (with a tool-tip naming them) and filters nothing; any
    // other mask starts a filtering that supersedes one still running.
    void on_text_changed(wxCommandEvent& event);
    // Filters with mask; an empty mask shows every file.
    void start_filter_task(const std::wstring& mask);
    // GUI thread: the result of the newest filtering.
    void on_filter_task_complete(const std::vector<basekit2::path_t>& files);
    // The busy animation while filtering, the tick when done.
    void update_image();

private:
    void mark_mask_field();
    void update_ok_button();

    const std::vector<basekit2::path_t> m_input;
    std::vector<basekit2::path_t> m_files;
    std::unique_ptr<util::filter_files_runner_t> m_runner;
    bool m_mask_valid = true;

    wxTextCtrl* m_prefix_edit = nullptr;
    wxListBox* m_listBox1 = nullptr;
    wxAnimationCtrl* m_animCtrl1 = nullptr;
    wxStaticText* m_count_text = nullptr;
    wxButton* m_btn_ok = nullptr;

    wxDECLARE_EVENT_TABLE();
};

} // namespace corr_dialogs2
