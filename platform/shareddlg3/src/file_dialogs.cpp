#include "shareddlg3/file_dialogs.h"

#include "wxkit1/modal.h"

#include <wx/dirdlg.h>
#include <wx/filedlg.h>

namespace shareddlg3 {

file_dialog_t::file_dialog_t(wxWindow* parent, file_dlg_mode mode, const basekit2::path_t& start,
                             const std::wstring& wildcard, const std::wstring& caption)
    : wxDialog(parent, wxID_ANY, wxString(caption)), m_mode(mode), m_start(start), m_wildcard(wildcard),
      m_caption(caption)
{
}

folder_dialog_t::folder_dialog_t(wxWindow* parent, const basekit2::path_t& start, const std::wstring& caption)
    : wxDialog(parent, wxID_ANY, wxString(caption)), m_start(start), m_caption(caption)
{
}

std::wstring make_file_wildcard(const std::wstring& ext, const std::wstring& filter_label)
{
    if (filter_label.find(L'|') != std::wstring::npos)
        return filter_label;
    if (ext.empty())
        return L"*";
    return filter_label + L" (*." + ext + L")|*." + ext;
}

basekit2::path_t file_dlg(wxWindow* parent, file_dlg_mode mode, const basekit2::path_t& start,
                          const std::wstring& ext, const std::wstring& filter_label, const std::wstring& caption)
{
    const std::wstring wildcard = make_file_wildcard(ext, filter_label);
    basekit2::path_t chosen;
    int answer = 0;
    if (const auto hook = wxkit1::get_modal_callback()) {
        file_dialog_t request(parent, mode, start, wildcard, caption);
        answer = hook(request);
        if (answer == wxID_OK)
            chosen = request.path();
    }
    if (answer == 0) {
        wxString folder, file;
        if (start.is_directory()) {
            folder = start.str();
        } else if (!start.empty()) {
            folder = start.parent().str();
            file = start.leaf();
        }
        const long style = mode == file_dlg_mode::open ? wxFD_OPEN | wxFD_FILE_MUST_EXIST
                                                       : wxFD_SAVE | wxFD_OVERWRITE_PROMPT;
        wxFileDialog dialog(parent, caption.empty() ? wxString(wxFileSelectorPromptStr) : wxString(caption),
                            folder, file, wildcard, style);
        if (dialog.ShowModal() == wxID_OK)
            chosen = basekit2::path_t(dialog.GetPath().ToStdWstring());
    }
    if (mode == file_dlg_mode::save && !chosen.empty() && !ext.empty() && chosen.extension().empty())
        chosen = chosen.replace_extension(ext);
    return chosen;
}

basekit2::path_t folder_dlg(wxWindow* parent, const basekit2::path_t& start, const std::wstring& caption)
{
    if (const auto hook = wxkit1::get_modal_callback()) {
        folder_dialog_t request(parent, start, caption);
        if (const int answer = hook(request))
            return answer == wxID_OK ? request.path() : basekit2::path_t();
    }
    wxDirDialog dialog(parent, caption.empty() ? wxString(wxDirSelectorPromptStr) : wxString(caption),
                       start.str(), wxDD_DEFAULT_STYLE);
    if (dialog.ShowModal() == wxID_OK)
        return basekit2::path_t(dialog.GetPath().ToStdWstring());
    return {};
}

} // namespace shareddlg3
