// The launch dialog in a real window, typed into and clicked like a user:
// Start only for an executable program and readable fields, the request it
// hands back, and the debugger panel only for the IDE client.
#include "launch_support.h"

#include "corr_dialogs2/collect_panels.h"
#include "corr_dialogs2/profile_factory.h"
#include "launchdlg3/launch_dialog.h"

#include <wx/button.h>
#include <wx/radiobut.h>
#include <wx/combobox.h>
#include <wx/textctrl.h>

#include <fstream>

namespace fs = std::filesystem;
using launchdlg3::launch_dialog_t;

namespace {

class LaunchDialog : public testing::Test
{
protected:
    void SetUp() override
    {
        m_dir = fs::temp_directory_path() /
                ("corr launch dialog ü " +
                 std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()));
        fs::create_directories(m_dir);
        m_program = m_dir / "my prög";
        fs::copy_file("/bin/true", m_program);
        fs::permissions(m_program, fs::perms::owner_all);
        m_plain = m_dir / "notes.txt";
        std::ofstream(m_plain) << "not a program\n";
    }
    void TearDown() override
    {
        if (m_dialog)
            m_dialog->Destroy();
        corr_test::pump_events();
        std::error_code ec;
        fs::remove_all(m_dir, ec);
    }

    launch_dialog_t* open(const launchdlg3::launch_request_t& initial = {})
    {
        m_factory = corr_dialogs2::profile_factory_t::create(nullptr);
        m_dialog = new launch_dialog_t(nullptr, m_factory, runctl2::builtin_analysis_types(), initial);
        m_dialog->Show();
        EXPECT_TRUE(corr_test::wait_until([&] { return m_dialog->IsShownOnScreen(); }));
        corr_test::pump_events();
        return m_dialog;
    }
    void replace_text(wxTextCtrl* field, const std::string& utf8)
    {
        launch_test::click(field);
        corr_test::wait_until([&] { return field->HasFocus(); }, 1000);
        field->SelectAll();
        wxUIActionSimulator sim;
        sim.Char(WXK_DELETE);
        corr_test::pump_events(20);
        // The simulator types ASCII; the rest of a path is pasted as a user would.
        field->WriteText(wxString::FromUTF8(utf8));
        corr_test::pump_events(20);
    }

    fs::path m_dir, m_program, m_plain;
    basekit2::sptr_t<corr_dialogs2::profile_factory_t> m_factory;
    launch_dialog_t* m_dialog = nullptr;
};

} // namespace

TEST_F(LaunchDialog, StartOnlyForAnExecutableProgramAndReadableFields)
{
    launch_dialog_t* dialog = open();
    wxButton* start = dialog->get_start_button();
    EXPECT_FALSE(start->IsEnabled());
    EXPECT_EQ(dialog->get_problem(), L"Choose the program to analyse.");

    replace_text(dialog->get_program_field(), (m_dir / "missing").string());
    EXPECT_FALSE(start->IsEnabled());
    EXPECT_NE(dialog->get_problem().find(L"There is no file"), std::wstring::npos);
    EXPECT_NE(dialog->get_program_field()->GetToolTipText(), "");

    replace_text(dialog->get_program_field(), m_plain.string());
    EXPECT_FALSE(start->IsEnabled());
    EXPECT_NE(dialog->get_problem().find(L"is not executable"), std::wstring::npos);

    replace_text(dialog->get_program_field(), m_dir.string());
    EXPECT_NE(dialog->get_problem().find(L"is not a file"), std::wstring::npos);

    replace_text(dialog->get_program_field(), m_program.string());
    EXPECT_TRUE(start->IsEnabled()) << wxString(dialog->get_problem());
    EXPECT_EQ(dialog->get_program_field()->GetToolTipText(), "");

    // Typed with the keyboard: an unclosed quote, then a closed one.
    launch_test::click(dialog->get_arguments_field());
    wxUIActionSimulator sim;
    sim.Text("--size 3 \"two words");
    corr_test::pump_events();
    EXPECT_FALSE(start->IsEnabled());
    EXPECT_NE(dialog->get_problem().find(L"unclosed double quote"), std::wstring::npos);
    sim.Text("\" 'x y'");
    corr_test::pump_events();
    EXPECT_TRUE(start->IsEnabled()) << wxString(dialog->get_problem());

    replace_text(dialog->get_environment_field(), "GOOD=1\n2BAD=x\n");
    EXPECT_FALSE(start->IsEnabled());
    EXPECT_NE(dialog->get_problem().find(L"line 2"), std::wstring::npos);
    replace_text(dialog->get_environment_field(), "GOOD=1\nTEXT=a=b c\n");
    replace_text(dialog->get_folder_field(), (m_dir / "nowhere").string());
    EXPECT_FALSE(start->IsEnabled());
    replace_text(dialog->get_folder_field(), m_dir.string());
    ASSERT_TRUE(start->IsEnabled()) << wxString(dialog->get_problem());

    // The analysis type is chosen in the profile's combo box.
    auto* combo = dynamic_cast<wxComboBox*>(dialog->FindWindow("CategoryCombobox"));
    ASSERT_NE(combo, nullptr);
    EXPECT_EQ(combo->GetCount(), runctl2::builtin_analysis_types().size());
    combo->SetFocus();
    corr_test::pump_events();
    sim.Char(WXK_DOWN);
    ASSERT_TRUE(corr_test::wait_until([&] { return dialog->get_request().analysis_type == L"mi2"; }, 3000));

    launch_test::click(start);
    ASSERT_TRUE(corr_test::wait_until([&] { return !dialog->IsShown(); }, 3000));
    EXPECT_EQ(dialog->GetReturnCode(), wxID_OK);
    const launchdlg3::launch_request_t request = dialog->get_request();
    EXPECT_EQ(request.program, wxString::FromUTF8(m_program.string()).ToStdWstring());
    EXPECT_EQ(request.arguments, (std::vector<std::wstring>{L"--size", L"3", L"two words", L"x y"}));
    EXPECT_EQ(request.working_folder, wxString::FromUTF8(m_dir.string()).ToStdWstring());
    ASSERT_EQ(request.environment.size(), 2u);
    EXPECT_EQ(request.environment[1], (std::pair<std::wstring, std::wstring>{L"TEXT", L"a=b c"}));
    EXPECT_EQ(request.analysis_type, L"mi2");
}

TEST_F(LaunchDialog, StartsFromAnEarlierRequest)
{
    launchdlg3::launch_request_t initial;
    initial.program = wxString::FromUTF8(m_program.string()).ToStdWstring();
    initial.arguments = {L"it's", L"", L"a b"};
    initial.environment = {{L"A", L"1"}};
    initial.analysis_type = L"ti2";
    launch_dialog_t* dialog = open(initial);
    EXPECT_TRUE(dialog->get_start_button()->IsEnabled()) << wxString(dialog->get_problem());
    const auto request = dialog->get_request();
    EXPECT_EQ(request.arguments, initial.arguments);
    EXPECT_EQ(request.environment, initial.environment);
    EXPECT_EQ(request.analysis_type, L"ti2");
}

TEST_F(LaunchDialog, DebuggerPanelOnlyForTheIdeClient)
{
    auto debugger_panel = [](wxWindow* dialog) {
        return dynamic_cast<corr_dialogs2::debugger_panel_t*>(dialog->FindWindow("DebuggerPanel"));
    };
    {
        launch_test::client_scope viewer(L"GUI");
        launch_dialog_t* dialog = open();
        EXPECT_EQ(debugger_panel(dialog), nullptr);
        dialog->Destroy();
        m_dialog = nullptr;
        corr_test::pump_events();
    }
    launch_test::client_scope ide(L"VS");
    launch_dialog_t* dialog = open();
    corr_dialogs2::debugger_panel_t* panel = debugger_panel(dialog);
    ASSERT_NE(panel, nullptr);
    EXPECT_TRUE(panel->IsShownOnScreen());
    // The host enables it for a type that can meet a debugger.
    m_factory->enable_debugger_panel(*runctl2::find_analysis_type(L"mi1"), true);
    EXPECT_TRUE(panel->IsEnabled());
    launch_test::click(panel->get_radio_buttons()[1]);
    EXPECT_EQ(m_factory->get_debugger_mode(*runctl2::find_analysis_type(L"mi1")),
              corr_dialogs2::profile_factory_t::debug_mode_on_error);
}
