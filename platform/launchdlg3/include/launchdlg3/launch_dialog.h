#pragma once
// The analysis-launch dialog: the program to analyse, its arguments, working
// folder and environment, and the analysis type, chosen on the profile the
// front end's factory supplies. Start ends it with wxID_OK when the program
// is an executable file and the other fields can be read; the caller then
// reads get_request() (and asks the factory for the debugger mode).
#include "launchdlg3/profile.h"

#include <wx/dialog.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

class wxButton;
class wxTextCtrl;

namespace launchdlg3 {

struct launch_request_t
{
    std::wstring program;
    std::vector<std::wstring> arguments;
    std::wstring working_folder; // empty: the program's folder
    std::vector<std::pair<std::wstring, std::wstring>> environment; // added to the inherited one
    std::wstring analysis_type;                                     // identifier
};

// Splits a command line as a POSIX shell would split words: blanks separate,
// '...' keeps everything, "..." keeps all but \" and \\ escapes, a backslash
// outside quotes escapes the next character. An unclosed quote is an error
// (its text in *error); the words are then empty.
std::vector<std::wstring> split_arguments(const std::wstring& text, std::wstring* error = nullptr);
// Joins words so that split_arguments gives them back.
std::wstring join_arguments(const std::vector<std::wstring>& words);
// One NAME=VALUE a line (blank lines skipped). A line without '=' or with a
// name that is not [A-Za-z_][A-Za-z0-9_]* is an error naming the line.
std::vector<std::pair<std::wstring, std::wstring>> parse_environment(const std::wstring& text,
                                                                     std::wstring* error = nullptr);

// What the dialog knows of an analysis type, for its page.
class analysis_info_t : public IAnalysisInfoProvider
{
public:
    explicit analysis_info_t(runctl2::analysis_type_ptr type) : m_type(std::move(type)) {}
    std::vector<entry_t> getEntries() const override;
    std::wstring getDebuggerPanelLabel() const override { return L"Debugger"; }
    std::wstring getAnalysisTypeName() const override { return m_type->getCliName(); }

private:
    runctl2::analysis_type_ptr m_type;
};

class launch_dialog_t : public wxDialog, private IProfileEventCallback
{
public:
    launch_dialog_t(wxWindow* parent, const profile_factory_ptr& factory,
                    const std::vector<runctl2::analysis_type_ptr>& types, const launch_request_t& initial = {});
    ~launch_dialog_t() override;

    // The fields as entered (valid once the dialog ended with wxID_OK).
    launch_request_t get_request() const;
    // Why Start is disabled; empty when it is enabled.
    std::wstring get_problem() const { return m_problem; }
    IProfile* get_profile() const { return m_profile.get(); }
    runctl2::analysis_type_ptr get_selected_type() const;

    wxTextCtrl* get_program_field() const { return m_program; }
    wxTextCtrl* get_arguments_field() const { return m_arguments; }
    wxTextCtrl* get_folder_field() const { return m_folder; }
    wxTextCtrl* get_environment_field() const { return m_environment; }
    wxButton* get_start_button() const { return m_start; }

private:
    void setProfile(IProfile* profile) override;
    void onAnalysisTypeSelected(const std::wstring& id) override;
    void validate();
    void mark(wxTextCtrl* field, const std::wstring& problem);
    void on_start(wxCommandEvent& event);
    void on_browse_program(wxCommandEvent& event);
    void on_browse_folder(wxCommandEvent& event);

    profile_factory_ptr m_factory;
    profile_ptr m_profile;
    std::vector<runctl2::analysis_type_ptr> m_types;
    std::vector<std::unique_ptr<analysis_info_t>> m_infos;
    wxTextCtrl* m_program = nullptr;
    wxTextCtrl* m_arguments = nullptr;
    wxTextCtrl* m_folder = nullptr;
    wxTextCtrl* m_environment = nullptr;
    wxButton* m_start = nullptr;
    std::wstring m_problem;
};

} // namespace launchdlg3
