#include "corr_dialogs2/supp_file_dialogs.h"

#include "corr_dialogs2/ui_utils.h"

#include "probstore3/aggregator.h"
#include "shareddlg3/message_window.h"

namespace corr_dialogs2 {

namespace {

wxWindow* live_parent(wxWindow* parent)
{
    // A parent that is being destroyed cannot own a modal window any more.
    return parent && !parent->IsBeingDeleted() ? parent : nullptr;
}

} // namespace

supp_file_error_dialog_t::supp_file_error_dialog_t(wxWindow* parent) : m_parent(parent) {}

supp_file_error_dialog_t::~supp_file_error_dialog_t() = default;

std::wstring supp_file_error_dialog_t::make_text(suppfmt3::suppfmt_errdef code, const std::wstring& path)
{
    platkit::generic::varg_list args;
    args.add(L"file_path", path);
    args.add(L"error", probstore3::aggregator_t::get_suppfmt_errdef_string(code));
    return translate(L"dlg.suppressions.file_error_description", args);
}

void supp_file_error_dialog_t::notify(suppfmt3::suppfmt_errdef code, const std::wstring& path)
{
    // One message at a time, even when saves report from nested loops.
    basekit2::threading::scoped_lock_t lock(m_mutex);
    const shareddlg3::message_window_t message(translate(L"dlg.suppressions.new.file_error_title"),
                                               make_text(code, path), shareddlg3::message_window_t::btn_ok,
                                               shareddlg3::message_window_t::icon_error);
    shareddlg3::show_modal(message, live_parent(m_parent));
}

supp_file_rewrite_dialog_t::supp_file_rewrite_dialog_t(wxWindow* parent) : m_parent(parent) {}

supp_file_rewrite_dialog_t::~supp_file_rewrite_dialog_t() = default;

std::wstring supp_file_rewrite_dialog_t::make_text(const std::vector<boost::shared_ptr<suppression_file_t>>& files)
{
    std::vector<std::wstring> paths;
    for (const auto& file : files)
        if (file)
            paths.push_back(file->get_path());
    if (paths.size() == 1)
        return translate(L"dlg.suppressions.file_rewrite_description", {{L"file_name", paths.front()}});
    std::wstring names;
    for (const auto& path : paths) {
        if (!names.empty())
            names += L"\n";
        names += path;
    }
    return translate(L"dlg.suppressions.files_rewrite_description", {{L"file_names", names}});
}

bool supp_file_rewrite_dialog_t::confirm_rewrite(const std::vector<boost::shared_ptr<suppression_file_t>>& files)
{
    if (files.empty())
        return true;
    const shareddlg3::message_window_t message(
        translate(L"dlg.suppressions.files_rewrite_title"), make_text(files),
        shareddlg3::message_window_t::btn_yes | shareddlg3::message_window_t::btn_no,
        shareddlg3::message_window_t::icon_question);
    return shareddlg3::show_modal(message, live_parent(m_parent)) == shareddlg3::message_window_t::answer_yes;
}

} // namespace corr_dialogs2
