#pragma once
// File and folder choosers. Each first goes through the modal hook of
// wxkit1 with a request dialog (file_dialog_t / folder_dialog_t, never
// shown) that says what is asked; a test answers by setting the path on it
// and returning wxID_OK. Without a hook answer the native dialog is shown.
#include "basekit2/path.h"

#include <wx/dialog.h>

#include <string>

namespace shareddlg3 {

enum class file_dlg_mode { open, save };

// What file_dlg asks, as the modal hook sees it.
class file_dialog_t : public wxDialog
{
public:
    file_dialog_t(wxWindow* parent, file_dlg_mode mode, const basekit2::path_t& start,
                  const std::wstring& wildcard, const std::wstring& caption);
    file_dlg_mode mode() const { return m_mode; }
    const basekit2::path_t& start() const { return m_start; }
    const std::wstring& wildcard() const { return m_wildcard; }
    const std::wstring& caption() const { return m_caption; }
    // The chosen file (the test's answer).
    void set_path(const basekit2::path_t& path) { m_path = path; }
    const basekit2::path_t& path() const { return m_path; }

private:
    file_dlg_mode m_mode;
    basekit2::path_t m_start;
    std::wstring m_wildcard;
    std::wstring m_caption;
    basekit2::path_t m_path;
};

// What folder_dlg asks, as the modal hook sees it.
class folder_dialog_t : public wxDialog
{
public:
    folder_dialog_t(wxWindow* parent, const basekit2::path_t& start, const std::wstring& caption);
    const basekit2::path_t& start() const { return m_start; }
    const std::wstring& caption() const { return m_caption; }
    void set_path(const basekit2::path_t& path) { m_path = path; }
    const basekit2::path_t& path() const { return m_path; }

private:
    basekit2::path_t m_start;
    std::wstring m_caption;
    basekit2::path_t m_path;
};

// The wildcard of a file dialog: filter_label as it is when it already holds
// a "|", else filter_label + " (*.ext)|*.ext" (the label alone names the
// filter), else every file.
std::wstring make_file_wildcard(const std::wstring& ext, const std::wstring& filter_label);

// Asks for a file to open (it must exist) or to save (overwriting is
// confirmed; without an extension the file gets ext). start is a folder or a
// file to start from. Returns the chosen path, empty when cancelled.
basekit2::path_t file_dlg(wxWindow* parent, file_dlg_mode mode, const basekit2::path_t& start,
                          const std::wstring& ext, const std::wstring& filter_label,
                          const std::wstring& caption = {});

// Asks for a folder; empty when cancelled.
basekit2::path_t folder_dlg(wxWindow* parent, const basekit2::path_t& start, const std::wstring& caption = {});

} // namespace shareddlg3
