#pragma once
// The source pane: the source file of the frame the user selected in the
// stack pane, read-only with C and C++ colouring, the frame's line marked
// and the lines around it in view. When the file is not on this machine the
// pane says where it looked and offers to locate the file or to add the
// folder that holds the sources (remembered for the result's project).
// "Open in Editor" opens the shown file at the line in the user's editor.
#include "../host/source_folders.h"
#include "../host/source_locator.h"

#include "probstore3/problem.h"

#include <wx/panel.h>

#include <filesystem>
#include <functional>
#include <string>

class wxButton;
class wxSimplebook;
class wxStaticText;
class wxStyledTextCtrl;

namespace corr_engine {
class engine_t;
}

namespace corrview {

class source_pane_t : public wxPanel
{
public:
    // Markers of the frame's line: an arrow in the margin and a shaded line.
    enum { marker_arrow = 0, marker_line = 1 };

    // folders: where the user's added folders are remembered.
    source_pane_t(wxWindow* parent, source_folders_t folders = source_folders_t());
    ~source_pane_t() override;

    // The result whose frames come next: its source folders, and the
    // folders the user added for its project (null: no result).
    void set_result(corr_engine::engine_t* engine);

    // Shows the source of a frame at its line.
    void show_frame(const probstore3::frame_t& frame);
    // Shows a file at a line (0: from the top); false, with the reason in
    // the pane, when the file cannot be shown.
    bool show_file(const std::filesystem::path& file, long line);
    // Back to the empty pane.
    void clear();

    // Opens the shown file at the marked line in the user's editor, or the
    // frame's file when it is given; false (after telling the user) when
    // there is nothing to open or the editor cannot be started.
    bool open_in_editor();
    bool open_in_editor(const probstore3::frame_t& frame);

    // Locate File and Add Source Folder of the missing-file page: the
    // chosen file shows, and the folder it implies is remembered.
    void on_locate();
    void on_add_folder();

    // The shown file (empty when none) and its marked line (0 when none).
    const std::filesystem::path& file() const { return m_file; }
    long line() const { return m_line; }
    bool is_showing_source() const;

    wxStyledTextCtrl* text() const { return m_text; }
    wxStaticText* caption() const { return m_caption; }
    wxStaticText* message() const { return m_message; }
    wxButton* open_button() const { return m_open; }
    wxButton* locate_button() const { return m_locate; }
    wxButton* add_folder_button() const { return m_add_folder; }
    source_locator_t& locator() { return m_locator; }

    // Told after the shown file changed (also to none).
    void on_file_changed(std::function<void()> callback) { m_file_changed = std::move(callback); }

private:
    void build_text();
    void show_message(const std::wstring& text, bool offer_locate);
    void set_file(const std::filesystem::path& file, long line);
    void mark_line(long line);
    void set_status(const std::wstring& text);
    std::vector<std::filesystem::path> user_folders() const;

    source_folders_t m_folders;
    source_locator_t m_locator;
    std::filesystem::path m_project; // whose folders the user adds to
    std::string m_recorded;          // the missing frame's source, as recorded
    long m_recorded_line = 0;

    std::filesystem::path m_file;
    long m_line = 0;
    std::function<void()> m_file_changed;

    wxStaticText* m_caption = nullptr;
    wxButton* m_open = nullptr;
    wxSimplebook* m_book = nullptr;
    wxStyledTextCtrl* m_text = nullptr;
    wxPanel* m_message_page = nullptr;
    wxStaticText* m_message = nullptr;
    wxButton* m_locate = nullptr;
    wxButton* m_add_folder = nullptr;
};

} // namespace corrview
