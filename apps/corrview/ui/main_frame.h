#pragma once
// The viewer's main window: the problems and suppressions views of one open
// result, and the actions of the menus. Actions are public so that tests
// (and a future toolbar) drive exactly what the menus do.
#include "../host/result_session.h"

#include "corr_dialogs2/supp_helpers.h"

#include <wx/frame.h>

#include <memory>
#include <vector>

class wxNotebook;
class wxSplitterWindow;

namespace corrview {

class problems_view_t;
class source_pane_t;
class suppressions_view_t;
class viewer_ide_env_t;
class import_progress_dlg_t;
class import_job_t;

class main_frame_t : public wxFrame
{
public:
    enum {
        id_import = wxID_HIGHEST + 1,
        id_open,
        id_export,
        id_create_suppression,
        id_delete_suppression,
        id_view_stack,
        id_filter_sources,
        id_find,
    };

    main_frame_t();
    ~main_frame_t() override;

    // Opens a result (marker file or folder); false after telling the user why.
    bool open_result(const basekit2::path_t& where);

    // File > Import: asks for an analyser output and imports it into a new
    // result in the results folder, on a worker thread.
    void on_import();
    // Starts importing files into a new result in result_dir (no question).
    void start_import(const std::vector<basekit2::path_t>& files,
                      const basekit2::path_t& result_dir);
    bool is_importing() const { return m_import_dlg != nullptr; }
    import_progress_dlg_t* import_dialog() const { return m_import_dlg; }

    void on_open();
    void on_exit();
    // File > Export Result: the open result in the export dialog.
    void on_export();
    // Tools > Filter Source Files: the result's source files in the files filter.
    void on_filter_sources();
    void on_about();
    // Tools > Search Problems (Ctrl+F): the filter bar's search, ready to type.
    void on_find();

    // Suppressions > Create: the candidate rules of the selected problems in
    // the create-suppression dialog; after OK the views show what the new
    // rule set suppresses.
    void on_create_suppression();
    // Suppressions > Delete: the rule sets selected in the suppressions view
    // in the delete-suppression dialog.
    void on_delete_suppression();
    // Suppressions > View Stack: the stack of the current suppression's
    // first rule (the view buttons show each rule's own).
    void on_view_stack();
    void view_stack(const corr_dialogs2::rule_ptr& rule);

    result_session_t& session() { return m_session; }
    problems_view_t* problems_view() const { return m_problems; }
    suppressions_view_t* suppressions_view() const { return m_suppressions; }
    wxNotebook* notebook() const { return m_notebook; }
    source_pane_t* source_pane() const { return m_source; }
    // The viewer as an IDE environment, over the source pane.
    viewer_ide_env_t& ide_env() { return *m_ide; }

    // Reads the suppression files again and shows what they now suppress.
    void reload_suppressions();

    // Under an IDE the status line goes to the IDE's bridge as well.
    void SetStatusText(const wxString& text, int number = 0) override;

private:
    void build_menus();
    void show_session();
    void update_title_and_status();
    void update_actions();
    void import_finished(import_job_t& job);

    result_session_t m_session;
    wxSplitterWindow* m_splitter = nullptr;
    wxNotebook* m_notebook = nullptr;
    source_pane_t* m_source = nullptr;
    std::unique_ptr<viewer_ide_env_t> m_ide;
    problems_view_t* m_problems = nullptr;
    suppressions_view_t* m_suppressions = nullptr;
    import_progress_dlg_t* m_import_dlg = nullptr;
};

} // namespace corrview
