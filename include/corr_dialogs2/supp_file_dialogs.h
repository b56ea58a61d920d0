#pragma once
// What the user sees when a suppression file cannot be saved, and the
// question asked before files in an older format are rewritten. Both are
// shared message windows (shareddlg3::message_window_t), so tests answer
// them through the modal hook like any other dialog.
#include "corr_dialogs2/export.h"
#include "corr_dialogs2/suppression_file.h"

#include "basekit2/threading/mutex.h"

#include <string>
#include <vector>

class wxWindow;

namespace corr_dialogs2 {

// Shows one error message per failed save: title
// "dlg.suppressions.new.file_error_title", text
// "dlg.suppressions.file_error_description" with {file_path} and {error}.
class CORR_DIALOGS2_API supp_file_error_dialog_t : public supp_file_error_notification_t
{
public:
    // parent: the window the message belongs to; may be null.
    explicit supp_file_error_dialog_t(wxWindow* parent = nullptr);
    ~supp_file_error_dialog_t() override;

    void notify(suppfmt3::suppfmt_errdef code, const std::wstring& path) override;

    // The text the message shows for a failure.
    static std::wstring make_text(suppfmt3::suppfmt_errdef code, const std::wstring& path);

private:
    wxWindow* m_parent;
    basekit2::threading::mutex_t m_mutex;
};

// Asks whether files written in an older format may be rewritten in the
// current one, listing their names. True only for Yes.
class CORR_DIALOGS2_API supp_file_rewrite_dialog_t : public supp_file_rewrite_prompt_t
{
public:
    explicit supp_file_rewrite_dialog_t(wxWindow* parent = nullptr);
    ~supp_file_rewrite_dialog_t() override;

    bool confirm_rewrite(const std::vector<boost::shared_ptr<suppression_file_t>>& files) override;

    // The question for these files: "dlg.suppressions.file_rewrite_description"
    // with {file_name} for one file, "dlg.suppressions.files_rewrite_description"
    // with {file_names} (one a line) for several.
    static std::wstring make_text(const std::vector<boost::shared_ptr<suppression_file_t>>& files);

private:
    wxWindow* m_parent;
};

} // namespace corr_dialogs2
