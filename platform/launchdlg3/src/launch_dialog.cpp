#include "launchdlg3/launch_dialog.h"

#include "basekit2/path.h"
#include "wxkit1/ui_settings.h"

#include <wx/button.h>
#include <wx/dirdlg.h>
#include <wx/filedlg.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <unistd.h>

namespace launchdlg3 {

std::vector<std::wstring> split_arguments(const std::wstring& text, std::wstring* error)
{
    std::vector<std::wstring> words;
    std::wstring word;
    bool in_word = false;
    wchar_t quote = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        const wchar_t c = text[i];
        if (quote == L'\'') {
            if (c == L'\'')
                quote = 0;
            else
                word += c;
        } else if (quote == L'"') {
            if (c == L'"')
                quote = 0;
            else if (c == L'\\' && i + 1 < text.size() && (text[i + 1] == L'"' || text[i + 1] == L'\\'))
                word += text[++i];
            else
                word += c;
        } else if (c == L' ' || c == L'\t' || c == L'\n' || c == L'\r') {
            if (in_word)
                words.push_back(std::move(word));
            word.clear();
            in_word = false;
        } else {
            in_word = true;
            if (c == L'\'' || c == L'"')
                quote = c;
            else if (c == L'\\' && i + 1 < text.size())
                word += text[++i];
            else
                word += c;
        }
    }
    if (quote) {
        if (error)
            *error = std::wstring(L"The arguments have an unclosed ") + (quote == L'"' ? L"double" : L"single") +
                     L" quote.";
        return {};
    }
    if (in_word)
        words.push_back(std::move(word));
    if (error)
        error->clear();
    return words;
}

std::wstring join_arguments(const std::vector<std::wstring>& words)
{
    std::wstring text;
    for (const auto& w : words) {
        if (!text.empty())
            text += L' ';
        if (!w.empty() && w.find_first_of(L" \t\n\r'\"\\$`") == std::wstring::npos) {
            text += w;
            continue;
        }
        text += L'\'';
        for (wchar_t c : w)
            text += c == L'\'' ? std::wstring(L"'\\''") : std::wstring(1, c);
        text += L'\'';
    }
    return text;
}

std::vector<std::pair<std::wstring, std::wstring>> parse_environment(const std::wstring& text, std::wstring* error)
{
    std::vector<std::pair<std::wstring, std::wstring>> vars;
    size_t start = 0;
    int line_no = 0;
    auto valid_name = [](const std::wstring& name) {
        if (name.empty() || !(iswalpha(name[0]) || name[0] == L'_') || name[0] > 127)
            return false;
        for (wchar_t c : name)
            if (c > 127 || !(iswalnum(c) || c == L'_'))
                return false;
        return true;
    };
    while (start <= text.size()) {
        size_t end = text.find(L'\n', start);
        if (end == std::wstring::npos)
            end = text.size();
        std::wstring line = text.substr(start, end - start);
        start = end + 1;
        ++line_no;
        if (!line.empty() && line.back() == L'\r')
            line.pop_back();
        if (line.find_first_not_of(L" \t") == std::wstring::npos)
            continue;
        const size_t eq = line.find(L'=');
        const std::wstring name = eq == std::wstring::npos ? line : line.substr(0, eq);
        if (eq == std::wstring::npos || !valid_name(name)) {
            if (error)
                *error = L"Environment line " + std::to_wstring(line_no) + L" (\"" + line +
                         L"\") is not NAME=VALUE with a name of letters, digits and underscores.";
            return {};
        }
        vars.emplace_back(name, line.substr(eq + 1));
    }
    if (error)
        error->clear();
    return vars;
}

std::vector<IAnalysisInfoProvider::entry_t> analysis_info_t::getEntries() const
{
    switch (m_type->getAnalyser()) {
    case runctl2::analyser_t::memcheck:
        return {{L"memcheck", L"Memcheck"}};
    case runctl2::analyser_t::helgrind:
        return {{L"helgrind", L"Helgrind"}};
    case runctl2::analyser_t::drd:
        return {{L"drd", L"DRD"}};
    case runctl2::analyser_t::sanitizer:
        break;
    }
    return {{m_type->getCliName(), m_type->getTitle()}};
}

launch_dialog_t::launch_dialog_t(wxWindow* parent, const profile_factory_ptr& factory,
                                 const std::vector<runctl2::analysis_type_ptr>& types, const launch_request_t& initial)
    : wxDialog(parent, wxID_ANY, L"New Analysis", wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER, "LaunchDialog"),
      m_factory(factory), m_types(types)
{
    auto* outer = new wxBoxSizer(wxVERTICAL);
    auto* grid = new wxFlexGridSizer(3, 6, 6);
    grid->AddGrowableCol(1);
    auto label = [&](const wchar_t* text) {
        grid->Add(new wxStaticText(this, wxID_ANY, text), 0, wxALIGN_CENTER_VERTICAL);
    };
    label(L"Program:");
    m_program = new wxTextCtrl(this, wxID_ANY, initial.program, wxDefaultPosition, wxSize(360, -1), 0,
                               wxDefaultValidator, "ProgramText");
    grid->Add(m_program, 1, wxEXPAND);
    auto* browse_program = new wxButton(this, wxID_ANY, L"Browse…", wxDefaultPosition, wxDefaultSize, 0,
                                        wxDefaultValidator, "BrowseProgram");
    grid->Add(browse_program);
    label(L"Arguments:");
    m_arguments = new wxTextCtrl(this, wxID_ANY, join_arguments(initial.arguments), wxDefaultPosition,
                                 wxDefaultSize, 0, wxDefaultValidator, "ArgumentsText");
    grid->Add(m_arguments, 1, wxEXPAND);
    grid->AddSpacer(0);
    label(L"Working folder:");
    m_folder = new wxTextCtrl(this, wxID_ANY, initial.working_folder, wxDefaultPosition, wxDefaultSize, 0,
                              wxDefaultValidator, "WorkingFolderText");
    grid->Add(m_folder, 1, wxEXPAND);
    auto* browse_folder = new wxButton(this, wxID_ANY, L"Browse…", wxDefaultPosition, wxDefaultSize, 0,
                                       wxDefaultValidator, "BrowseFolder");
    grid->Add(browse_folder);
    label(L"Environment:");
    std::wstring env;
    for (const auto& [name, value] : initial.environment)
        env += name + L"=" + value + L"\n";
    m_environment = new wxTextCtrl(this, wxID_ANY, env, wxDefaultPosition, wxSize(-1, 60), wxTE_MULTILINE,
                                   wxDefaultValidator, "EnvironmentText");
    grid->Add(m_environment, 1, wxEXPAND);
    grid->AddSpacer(0);
    outer->Add(grid, 0, wxEXPAND | wxALL, 10);

    if (m_factory)
        m_profile = m_factory->createProfile(this, this, false);
    if (m_profile && m_profile->getPageParent()) {
        for (const auto& type : m_types) {
            m_infos.push_back(std::make_unique<analysis_info_t>(type));
            settings2::simple_config_descriptor_t descriptor(type->getId(), type->getTitle(), type->getDescription());
            IProfilePage* page = m_factory->createPage(descriptor, m_profile->getPageParent(), m_infos.back().get());
            m_profile->addPage(type, page);
        }
        if (!initial.analysis_type.empty())
            m_profile->selectAnalysisType(initial.analysis_type);
        outer->Add(m_profile->getPageParent(), 1, wxEXPAND | wxLEFT | wxRIGHT, 10);
    }

    auto* buttons = new wxStdDialogButtonSizer();
    m_start = new wxButton(this, wxID_OK, L"Start", wxDefaultPosition, wxDefaultSize, 0, wxDefaultValidator,
                           "StartButton");
    m_start->SetDefault();
    buttons->AddButton(m_start);
    buttons->AddButton(new wxButton(this, wxID_CANCEL, L"Cancel", wxDefaultPosition, wxDefaultSize, 0,
                                    wxDefaultValidator, "CancelButton"));
    buttons->Realize();
    outer->Add(buttons, 0, wxEXPAND | wxALL, 10);
    SetSizerAndFit(outer);
    SetMinSize(wxSize(560, 480));
    SetSize(wxSize(std::max(GetSize().x, 640), std::max(GetSize().y, 560)));

    for (wxTextCtrl* field : {m_program, m_arguments, m_folder, m_environment})
        field->Bind(wxEVT_TEXT, [this](wxCommandEvent& e) {
            e.Skip();
            validate();
        });
    m_start->Bind(wxEVT_BUTTON, &launch_dialog_t::on_start, this);
    browse_program->Bind(wxEVT_BUTTON, &launch_dialog_t::on_browse_program, this);
    browse_folder->Bind(wxEVT_BUTTON, &launch_dialog_t::on_browse_folder, this);
    validate();
}

launch_dialog_t::~launch_dialog_t()
{
    // The profile's handlers go before the windows they are bound to.
    m_profile.reset();
}

void launch_dialog_t::setProfile(IProfile*) {}

void launch_dialog_t::onAnalysisTypeSelected(const std::wstring&)
{
    validate();
}

runctl2::analysis_type_ptr launch_dialog_t::get_selected_type() const
{
    const std::wstring id = m_profile ? m_profile->getSelectedAnalysisType() : std::wstring();
    for (const auto& type : m_types)
        if (type->getId() == id)
            return type;
    return nullptr;
}

launch_request_t launch_dialog_t::get_request() const
{
    launch_request_t request;
    request.program = m_program->GetValue().ToStdWstring();
    request.arguments = split_arguments(m_arguments->GetValue().ToStdWstring());
    request.working_folder = m_folder->GetValue().ToStdWstring();
    request.environment = parse_environment(m_environment->GetValue().ToStdWstring());
    if (auto type = get_selected_type())
        request.analysis_type = type->getId();
    return request;
}

void launch_dialog_t::mark(wxTextCtrl* field, const std::wstring& problem)
{
    if (problem.empty()) {
        field->SetBackgroundColour(wxNullColour);
        field->UnsetToolTip();
    } else {
        field->SetBackgroundColour(wxkit1::ui_settings_t::get_color(wxkit1::ui_settings_t::color_invalid_input));
        field->SetToolTip(problem);
    }
    field->Refresh();
}

void launch_dialog_t::validate()
{
    if (!m_start)
        return; // still being built: the constructor validates at its end
    std::wstring program_problem, arguments_problem, folder_problem, environment_problem;
    const basekit2::path_t program(m_program->GetValue().ToStdWstring());
    if (program.empty())
        program_problem = L"Choose the program to analyse.";
    else if (!program.exists())
        program_problem = L"There is no file " + program.str() + L".";
    else if (!program.is_regular_file())
        program_problem = program.str() + L" is not a file.";
    else if (::access(program.utf8().c_str(), X_OK) != 0)
        program_problem = program.str() + L" is not executable.";
    split_arguments(m_arguments->GetValue().ToStdWstring(), &arguments_problem);
    const basekit2::path_t folder(m_folder->GetValue().ToStdWstring());
    if (!folder.empty() && !folder.is_directory())
        folder_problem = L"There is no folder " + folder.str() + L".";
    parse_environment(m_environment->GetValue().ToStdWstring(), &environment_problem);
    mark(m_program, program_problem);
    mark(m_arguments, arguments_problem);
    mark(m_folder, folder_problem);
    mark(m_environment, environment_problem);

    m_problem.clear();
    for (const auto* p : {&program_problem, &arguments_problem, &folder_problem, &environment_problem})
        if (m_problem.empty())
            m_problem = *p;
    if (m_problem.empty() && !get_selected_type())
        m_problem = L"Choose the analysis type.";
    m_start->Enable(m_problem.empty());
}

void launch_dialog_t::on_start(wxCommandEvent&)
{
    validate();
    if (!m_problem.empty())
        return;
    if (IsModal())
        EndModal(wxID_OK);
    else
        SetReturnCode(wxID_OK), Hide();
}

void launch_dialog_t::on_browse_program(wxCommandEvent&)
{
    wxFileDialog dialog(this, L"Program to analyse", wxString(), m_program->GetValue(), wxFileSelectorDefaultWildcardStr,
                        wxFD_OPEN | wxFD_FILE_MUST_EXIST);
    if (dialog.ShowModal() == wxID_OK)
        m_program->SetValue(dialog.GetPath());
}

void launch_dialog_t::on_browse_folder(wxCommandEvent&)
{
    wxDirDialog dialog(this, L"Working folder", m_folder->GetValue(), wxDD_DIR_MUST_EXIST);
    if (dialog.ShowModal() == wxID_OK)
        m_folder->SetValue(dialog.GetPath());
}

} // namespace launchdlg3
