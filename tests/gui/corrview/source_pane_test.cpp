// The source pane in the viewer's real window: a click on a frame shows its
// source at the line, the viewer's IDE environment answers from the pane, a
// missing file is located and its folder remembered, and the editor is
// started on a double click.
#include "gui_test.h"
#include "host_test_support.h"
#include "modal_expectations.h"

#include "host/fs_text.h"
#include "host/locations.h"
#include "host/source_folders.h"
#include "ui/app.h"
#include "ui/main_frame.h"
#include "ui/problems_view.h"
#include "ui/source_pane.h"
#include "ui/viewer_ide_env.h"

#include "corr_dialogs2/version.h"
#include "eil1/callbacks.h"
#include "eil1/message_bridge.h"

#include <wx/button.h>
#include <wx/clipbrd.h>
#include <wx/frame.h>
#include <wx/image.h>
#include <wx/msgdlg.h>
#include <wx/stattext.h>
#include <wx/statusbr.h>
#include <wx/stc/stc.h>
#include <wx/uiaction.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace {

using namespace host_test;

std::string read_all(const fs::path& file)
{
    std::ifstream in(file, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

// Line n (from 1) of a file, without its end.
std::string line_of(const fs::path& file, int n)
{
    std::istringstream in(read_all(file));
    std::string line;
    for (int i = 0; i < n && std::getline(in, line); ++i) {
    }
    return line;
}

fs::path sample_source(const char* name)
{
    return fs::path(CORR_SAMPLES_DIR) / "src" / name;
}

// An environment variable set for the test's lifetime.
class scoped_env
{
public:
    scoped_env(const char* name, const std::string& value) : m_name(name)
    {
        if (const char* old = std::getenv(name))
            m_old = old, m_had = true;
        ::setenv(name, value.c_str(), 1);
    }
    ~scoped_env()
    {
        if (m_had)
            ::setenv(m_name, m_old.c_str(), 1);
        else
            ::unsetenv(m_name);
    }

private:
    const char* m_name;
    std::string m_old;
    bool m_had = false;
};

class source_pane_test : public ::testing::Test
{
protected:
    // with_sources: the result names the sample programs' folder as its
    // source folder (as the viewer's own sample copy does).
    void open(bool with_sources)
    {
        m_result = copy_sample_result(m_tmp / "sample");
        if (with_sources) {
            std::wstring error;
            ASSERT_TRUE(corrview::attach_sample_sources(
                corrview::to_path(m_result), corrview::to_path(sample_source("")), error));
        }
        m_frame = new corrview::main_frame_t;
        m_frame->Show();
        ASSERT_TRUE(m_frame->open_result(corrview::to_path(m_result)));
        ASSERT_TRUE(corr_test::wait_until([&] { return m_frame->IsShownOnScreen(); }));
        corr_test::pump_events(100);
    }
    void TearDown() override
    {
        if (m_frame) {
            wxUIActionSimulator().MouseMove(m_frame->GetScreenRect().GetBottomRight() +
                                            wxPoint(20, 20));
            corr_test::pump_events();
            m_frame->Destroy();
        }
        corr_test::pump_events();
    }

    corrview::problems_view_t& problems() { return *m_frame->problems_view(); }
    corrview::source_pane_t& pane() { return *m_frame->source_pane(); }

    // Makes a problem current (as a click on its row does).
    void show_problem(size_t problem)
    {
        problems().show_problem(problem);
        corr_test::pump_events(50);
    }

    // The middle of a row of the stack pane, on the screen.
    wxPoint stack_row_on_screen(int row)
    {
        auto& grid = *problems().stack_grid();
        wxWindow& control = *problems().stack_grid_control();
        grid.EnsureRowVisible(row);
        corr_test::pump_events(50);
        const auto rect = grid.GetCellRect(row, corrview::stack_model_t::col_frame);
        const wxPoint origin = control.ClientToScreen(wxPoint(0, 0));
        const auto grid_origin = grid.ScreenToGrid({origin.x, origin.y});
        return {origin.x - grid_origin.x + (rect.left + rect.right) / 2,
                origin.y - grid_origin.y + (rect.top + rect.bottom) / 2};
    }

    void click(const wxPoint& at, bool twice = false)
    {
        wxUIActionSimulator sim;
        sim.MouseMove(at);
        corr_test::pump_events(30);
        if (twice)
            sim.MouseDblClick();
        else
            sim.MouseClick();
        corr_test::pump_events(30);
    }

    void click(wxWindow* window)
    {
        ASSERT_TRUE(window->IsShownOnScreen());
        click(window->GetScreenRect().GetPosition() + window->GetScreenRect().GetSize() / 2);
    }

    // The marked line is in view with lines above and below it.
    void expect_line_in_view(long line)
    {
        wxStyledTextCtrl& text = *pane().text();
        const int index = static_cast<int>(line - 1);
        EXPECT_EQ(text.MarkerGet(index), (1 << corrview::source_pane_t::marker_arrow) |
                                             (1 << corrview::source_pane_t::marker_line));
        EXPECT_EQ(text.MarkerNext(0, 1 << corrview::source_pane_t::marker_line), index);
        EXPECT_EQ(text.MarkerNext(index + 1, 1 << corrview::source_pane_t::marker_line), -1);
        const int first = text.GetFirstVisibleLine();
        EXPECT_LE(first, std::max(0, index - 3));
        EXPECT_GT(first + text.LinesOnScreen(), std::min(index + 3, text.GetLineCount() - 1));
    }

    temp_dir_t m_tmp;
    // The user's own configuration, where the remembered folders go.
    scoped_env m_config{"XDG_CONFIG_HOME", (m_tmp / "config").string()};
    fs::path m_result;
    corrview::main_frame_t* m_frame = nullptr;
};

// Records what the IDE environment tells the front end.
struct recording_callback : eil1::IDECallbackInterface
{
    void OnLoad(eil1::IDE_Env*) override {}
    using eil1::IDECallbackInterface::OnChangeActiveDocumentWindow;
    void OnChangeActiveDocumentWindow(eil1::IWindow* window, const wchar_t* file) override
    {
        windows.push_back(window);
        files.push_back(file);
    }
    std::vector<eil1::IWindow*> windows;
    std::vector<std::wstring> files;
};

TEST_F(source_pane_test, ClickingAFrameShowsItsSourceAtTheLine)
{
    open(true);
    // The first problem: memcheck's invalid read in print_record (line 28),
    // called from main (line 35).
    const fs::path file = sample_source("mem_use_after_free.c");
    ASSERT_EQ(m_frame->session().problems()[0].kind, "InvalidRead");
    // Its best frame shows at once.
    EXPECT_EQ(pane().file(), file);
    EXPECT_EQ(pane().line(), 28);
    EXPECT_TRUE(pane().is_showing_source());

    recording_callback callback;
    auto& env = m_frame->ide_env();
    env.SetCallback(&callback);
    click(stack_row_on_screen(2)); // main, line 35
    ASSERT_TRUE(corr_test::wait_until([&] { return pane().line() == 35; }));
    EXPECT_EQ(pane().file(), file);
    EXPECT_EQ(pane().text()->GetText().utf8_string(), read_all(file));
    expect_line_in_view(35);
    EXPECT_EQ(pane().caption()->GetLabel(), corrview::to_text(file) + L", line 35");
    EXPECT_TRUE(callback.files.empty()) << "the file did not change";
    fs::create_directories(CORR_SCREENSHOT_DIR);
    if (!wxImage::FindHandler(wxBITMAP_TYPE_PNG))
        wxImage::AddHandler(new wxPNGHandler);
    std::wstring error;
    EXPECT_TRUE(corrview::save_window_png(
        m_frame, corrview::to_path(fs::path(CORR_SCREENSHOT_DIR) / "source_pane.png"), error))
        << platkit::strings::wide_to_utf8(error);

    // The IDE environment answers from the pane.
    const std::wstring path = corrview::to_text(file);
    EXPECT_EQ(std::wstring(env.GetActiveEditorFile()), path);
    EXPECT_EQ(env.GetNativeEditor(L"/elsewhere/mem_use_after_free.c"), nullptr);
    eil1::INativeEditor* editor = env.GetNativeEditor(path.c_str());
    ASSERT_NE(editor, nullptr);
    EXPECT_EQ(std::wstring(editor->GetFilePath()), path);
    EXPECT_TRUE(editor->IsReadOnly());
    EXPECT_EQ(editor->GetLineCount(), 39); // 38 lines and the empty one after the last end
    EXPECT_EQ(platkit::strings::wide_to_utf8(editor->GetLineText(35)), line_of(file, 35));
    EXPECT_EQ(std::wstring(editor->GetLineText(40)), L"");
    EXPECT_EQ(editor->GetSelectionSpan().start_line, 0) << "nothing is selected";

    // Select line 33 from its start to its end with the mouse and keyboard.
    wxStyledTextCtrl& text = *pane().text();
    const int start = text.PositionFromLine(32);
    const wxPoint at =
        text.ClientToScreen(text.PointFromPosition(start)) + wxPoint(1, text.TextHeight(32) / 2);
    click(at);
    ASSERT_TRUE(corr_test::wait_until([&] { return text.HasFocus(); }));
    wxUIActionSimulator().Char(WXK_END, wxMOD_SHIFT);
    ASSERT_TRUE(corr_test::wait_until([&] { return text.GetSelectionEnd() > start; }));
    const auto span = editor->GetSelectionSpan();
    const long length = static_cast<long>(wxString::FromUTF8(line_of(file, 33)).length());
    EXPECT_EQ(span.start_line, 33);
    EXPECT_EQ(span.start_column, 1);
    EXPECT_EQ(span.end_line, 33);
    EXPECT_EQ(span.end_column, length + 1);
    // The selection went to the X primary selection; give it up again, as
    // another program taking it would (the toolkit frees its copy then).
    if (wxTheClipboard->Open()) {
        wxTheClipboard->UsePrimarySelection(true);
        wxTheClipboard->Clear();
        wxTheClipboard->UsePrimarySelection(false);
        wxTheClipboard->Close();
    }
    corr_test::pump_events(50);

    // Another problem in another file: the front end hears of it.
    show_problem(1); // memcheck's invalid write in fill(), mem_overflow.c
    EXPECT_EQ(pane().file(), sample_source("mem_overflow.c"));
    ASSERT_EQ(callback.files.size(), 1u);
    EXPECT_EQ(callback.files[0], corrview::to_text(sample_source("mem_overflow.c")));
    EXPECT_EQ(callback.windows[0], editor);
    env.SetCallback(nullptr);
}

TEST_F(source_pane_test, TheEnvironmentOpensAFileThatIsNotUtf8)
{
    open(true);
    const fs::path file = m_tmp / "Qüelle 'alt'" / "latin1.c";
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << "/* gr\xFC\xDF */\nint a;\nint b;\n";
    ASSERT_TRUE(m_frame->ide_env().OpenDocument(corrview::to_text(file).c_str(), 2));
    EXPECT_EQ(pane().file(), file);
    EXPECT_EQ(pane().text()->GetLine(0).ToStdWstring(), L"/* grüß */\n");
    expect_line_in_view(2);
    EXPECT_NE(m_frame->GetStatusBar()->GetStatusText().Find(L"not UTF-8"), wxNOT_FOUND);

    EXPECT_FALSE(m_frame->ide_env().OpenDocument((corrview::to_text(file) + L".gone").c_str(), 1));
    EXPECT_FALSE(pane().is_showing_source());
    EXPECT_NE(pane().message()->GetLabel().Find(L"no longer exists"), wxNOT_FOUND);
    EXPECT_EQ(std::wstring(m_frame->ide_env().GetActiveEditorFile()), L"");
}

TEST_F(source_pane_test, AMissingSourceIsLocatedAndItsFolderRemembered)
{
    open(false);
    const auto& best = *m_frame->session().problems()[0].best_frame();
    ASSERT_FALSE(fs::exists(best.source)) << "the recorded path must not exist here";
    // Not found: the pane says where it looked.
    ASSERT_FALSE(pane().is_showing_source());
    const std::wstring message = pane().message()->GetLabel().ToStdWstring();
    EXPECT_NE(message.find(platkit::strings::utf8_to_wide(best.source)), std::wstring::npos);
    EXPECT_NE(message.find(L"Looked for it in:"), std::wstring::npos) << message;
    EXPECT_TRUE(pane().locate_button()->IsShownOnScreen());

    // The sources moved to a folder of the user's (the old tree's src/ inside it).
    const fs::path tree = m_tmp / "Sourcen ü 'neu'";
    for (const char* name : {"mem_use_after_free.c", "mem_overflow.c"}) {
        fs::create_directories(tree / "src");
        fs::copy_file(sample_source(name), tree / "src" / name);
    }
    // A folder that does not hold them first: it is searched, and named.
    const fs::path empty = m_tmp / "leer";
    fs::create_directories(empty);
    corr_test::modal_expectations modal;
    modal.expect_folder(corrview::to_path(empty));
    click(pane().add_folder_button());
    ASSERT_TRUE(modal.all_met());
    EXPECT_FALSE(pane().is_showing_source());
    EXPECT_NE(pane().message()->GetLabel().ToStdWstring().find(corrview::to_text(empty)),
              std::wstring::npos);

    modal.expect_file(corrview::to_path(tree / "src" / "mem_use_after_free.c"));
    click(pane().locate_button());
    ASSERT_TRUE(modal.all_met());
    ASSERT_TRUE(pane().is_showing_source());
    EXPECT_EQ(pane().file(), tree / "src" / "mem_use_after_free.c");
    EXPECT_EQ(pane().line(), 28);
    expect_line_in_view(28);

    // Remembered for the result (its own project), in the user's configuration.
    corrview::source_folders_t remembered;
    EXPECT_EQ(remembered.get(m_result), (std::vector<fs::path>{empty, tree}));

    // Another file of the same tree is found at once, in this window and the next.
    show_problem(1);
    EXPECT_EQ(pane().file(), tree / "src" / "mem_overflow.c");
    m_frame->Destroy();
    corr_test::pump_events();
    m_frame = new corrview::main_frame_t;
    m_frame->Show();
    ASSERT_TRUE(m_frame->open_result(corrview::to_path(m_result)));
    EXPECT_EQ(pane().file(), tree / "src" / "mem_use_after_free.c");
}

TEST_F(source_pane_test, OpenInEditorAndADoubleClickStartTheUsersEditor)
{
    open(true);
    // A stand-in editor that writes down its arguments.
    const fs::path bin = m_tmp / "bin ü";
    fs::create_directories(bin);
    const fs::path editor = bin / "fake-editor";
    const fs::path args = bin / "args.txt";
    std::ofstream(editor) << "#!/bin/sh\nprintf '%s\\n' \"$@\" > \"$(dirname \"$0\")/args.tmp\"\n"
                             "mv \"$(dirname \"$0\")/args.tmp\" \"$(dirname \"$0\")/args.txt\"\n";
    fs::permissions(editor, fs::perms::owner_all);
    // $VISUAL is a command line: a path with a space in it is quoted.
    scoped_env visual("VISUAL", "'" + editor.string() + "'");
    const fs::path file = sample_source("mem_use_after_free.c");

    click(pane().open_button());
    ASSERT_TRUE(corr_test::wait_until([&] { return fs::exists(args); }, 10000));
    EXPECT_EQ(read_all(args), "+28\n" + file.string() + "\n");
    EXPECT_NE(m_frame->GetStatusBar()->GetStatusText().Find(L"fake-editor"), wxNOT_FOUND);
    fs::remove(args);

    click(stack_row_on_screen(2), true); // main, line 35
    ASSERT_TRUE(corr_test::wait_until([&] { return fs::exists(args); }, 10000));
    EXPECT_EQ(read_all(args), "+35\n" + file.string() + "\n");
    EXPECT_EQ(pane().line(), 35);
}

TEST_F(source_pane_test, AnEditorThatCannotRunIsNamed)
{
    open(true);
    scoped_env visual("VISUAL", "'" + (m_tmp / "no such editor").string() + "' --wait");
    corr_test::modal_expectations modal;
    std::wstring text;
    modal.expect<wxMessageDialog>([&](wxMessageDialog& d) {
        text = d.GetMessage().ToStdWstring();
        return int(wxID_OK);
    });
    EXPECT_FALSE(pane().open_in_editor());
    EXPECT_TRUE(modal.all_met());
    EXPECT_NE(text.find(corrview::to_text(m_tmp / "no such editor")), std::wstring::npos) << text;
    EXPECT_NE(text.find(L"$VISUAL"), std::wstring::npos) << text;
}

// An IDE's bridge that keeps what it is given, or refuses it.
struct recording_bridge : eil1::IMessageBridge
{
    bool ShowMessage(Severity severity, const wchar_t* title, const wchar_t* text) override
    {
        messages.push_back({severity, title, text});
        return accept;
    }
    void ShowStatus(const wchar_t*) override {}
    eil1::IMessageBridgeEx* GetExtension() override { return nullptr; }

    struct message_t
    {
        Severity severity;
        std::wstring title, text;
    };
    std::vector<message_t> messages;
    bool accept = true;
};

TEST_F(source_pane_test, UnderAnIdeTheViewersMessagesGoToItsBridge)
{
    open(true);
    auto& env = m_frame->ide_env();
    EXPECT_EQ(env.GetMessageBridge(), nullptr);
    recording_bridge bridge;
    env.set_message_bridge(&bridge);
    EXPECT_EQ(env.GetMessageBridge(), &bridge);

    // No message box: the IDE shows the error (a box would fail the test).
    EXPECT_FALSE(m_frame->open_result(corrview::to_path(m_tmp / "no result here")));
    ASSERT_EQ(bridge.messages.size(), 1u);
    EXPECT_EQ(bridge.messages[0].severity, eil1::IMessageBridge::Severity::Error);
    EXPECT_EQ(bridge.messages[0].title, L"Cannot Open the Result");
    EXPECT_NE(bridge.messages[0].text.find(L"no result here"), std::wstring::npos);

    // A bridge that cannot show it now: the viewer shows it itself.
    bridge.accept = false;
    corr_test::modal_expectations modal;
    modal.expect<wxMessageDialog>(wxID_OK);
    EXPECT_FALSE(m_frame->open_result(corrview::to_path(m_tmp / "no result here")));
    EXPECT_TRUE(modal.all_met());
    EXPECT_EQ(bridge.messages.size(), 2u);

    env.set_message_bridge(nullptr);
    modal.expect<wxMessageDialog>(wxID_OK);
    EXPECT_FALSE(m_frame->open_result(corrview::to_path(m_tmp / "no result here")));
    EXPECT_TRUE(modal.all_met());
    EXPECT_EQ(bridge.messages.size(), 2u);

    // The rest of what the environment says about the viewer.
    eil1::IDE_Info::IdeVersion version;
    ASSERT_TRUE(env.GetIdeInfo()->GetIdeVersion(&version));
    EXPECT_EQ(std::to_string(version.major_version) + "." + std::to_string(version.minor_version) +
                  ".",
              std::string(corr_dialogs2::library_version()).substr(0, 4));
    EXPECT_EQ(std::wstring(env.GetIdeInfo()->GetIdeName()), L"Correctness Analyzer Viewer");
    env.GetStatusBar()->SetText(L"from the front end");
    EXPECT_EQ(m_frame->GetStatusBar()->GetStatusText(), L"from the front end");
    EXPECT_EQ(std::wstring(env.GetStatusBar()->GetText()), L"from the front end");
    EXPECT_EQ(env.GetMainWindow(), static_cast<wxWindow*>(m_frame));
}

} // namespace
