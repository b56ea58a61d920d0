// The built corrview binary itself: --screenshot under the test's display,
// and the message (and exit status 2) without a display.
#include "gui_test.h"
#include "host_test_support.h"

#include <wx/image.h>
#include <wx/imagpng.h>
#include <wx/utils.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>

namespace {

using namespace host_test;

struct run_t
{
    long code = -1;
    std::wstring output;
};

// Runs the viewer with args; env changes the environment (an empty value
// removes the variable).
run_t run_viewer(const wxString& args, const std::map<wxString, wxString>& env)
{
    wxExecuteEnv exec_env;
    wxGetEnvMap(&exec_env.env);
    for (const auto& [name, value] : env) {
        if (value.empty())
            exec_env.env.erase(name);
        else
            exec_env.env[name] = value;
    }
    wxArrayString out, err;
    run_t run;
    run.code = wxExecute(wxString(CORRVIEW_EXE) + " " + args, out, err, wxEXEC_SYNC, &exec_env);
    for (const auto& line : out)
        run.output += line.ToStdWstring() + L"\n";
    for (const auto& line : err)
        run.output += line.ToStdWstring() + L"\n";
    return run;
}

TEST(CorrviewBinary, ScreenshotOfTheSampleResult)
{
    temp_dir_t tmp;
    const fs::path png = tmp / "window.png";
    const auto run = run_viewer("--screenshot " + wxString(png.string()),
                                {{"XDG_DATA_HOME", (tmp / "data").string()}});
    ASSERT_EQ(run.code, 0) << platkit::strings::wide_to_utf8(run.output);
    if (!wxImage::FindHandler(wxBITMAP_TYPE_PNG))
        wxImage::AddHandler(new wxPNGHandler);
    wxImage image;
    ASSERT_TRUE(image.LoadFile(png.string(), wxBITMAP_TYPE_PNG));
    EXPECT_GE(image.GetWidth(), 400);
    EXPECT_GE(image.GetHeight(), 300);
    // A painted window, not a blank rectangle: the grid's rows and text
    // give many colours.
    std::set<unsigned> colours;
    const unsigned char* data = image.GetData();
    for (int i = 0; i < image.GetWidth() * image.GetHeight(); i += 7)
        colours.insert(unsigned(data[3 * i]) << 16 | unsigned(data[3 * i + 1]) << 8 |
                       data[3 * i + 2]);
    EXPECT_GT(colours.size(), 8u);
    // Without an argument the viewer opened a copy of the bundled sample.
    EXPECT_TRUE(fs::exists(tmp / "data" / "corrview" / "sample-result" / "sample.corr"));
}

TEST(CorrviewBinary, WithoutADisplayItSaysHowToRunIt)
{
    const auto run = run_viewer("", {{"DISPLAY", ""}, {"WAYLAND_DISPLAY", ""}});
    EXPECT_EQ(run.code, 2);
    EXPECT_NE(run.output.find(L"cannot open a display"), std::wstring::npos)
        << platkit::strings::wide_to_utf8(run.output);
    EXPECT_NE(run.output.find(L"xvfb-run -a corrview"), std::wstring::npos);

    // An X server that does not answer is the same.
    const auto unreachable = run_viewer("", {{"DISPLAY", ":987"}, {"WAYLAND_DISPLAY", ""}});
    EXPECT_EQ(unreachable.code, 2);
    EXPECT_NE(unreachable.output.find(L"xvfb-run -a corrview"), std::wstring::npos);
}

// The lines of the IDE protocol in a run's output.
std::vector<std::wstring> protocol_lines(const run_t& run)
{
    std::vector<std::wstring> out;
    size_t start = 0;
    while (start < run.output.size()) {
        size_t end = run.output.find(L'\n', start);
        if (end == std::wstring::npos)
            end = run.output.size();
        const std::wstring line = run.output.substr(start, end - start);
        if (line.rfind(L"corrview-", 0) == 0)
            out.push_back(line);
        start = end + 1;
    }
    return out;
}

TEST(CorrviewBinary, UnderAnIdeClientMessagesAndStatusGoToStandardOutput)
{
    temp_dir_t tmp;
    const fs::path missing = tmp / "kein Ergebnis ü";
    const fs::path png = tmp / "window.png";
    // No message box (it would never be answered): the error is a line for the IDE.
    const auto failed = run_viewer("--client VS --screenshot \"" + wxString(png.string()) + "\" \"" +
                                       wxString::FromUTF8(missing.string()) + "\"",
                                   {{"XDG_DATA_HOME", (tmp / "data").string()}});
    EXPECT_EQ(failed.code, 1) << platkit::strings::wide_to_utf8(failed.output);
    const auto lines = protocol_lines(failed);
    const auto error = std::find_if(lines.begin(), lines.end(), [](const std::wstring& l) {
        return l.rfind(L"corrview-message\terror\tCannot Open the Result\t", 0) == 0;
    });
    ASSERT_NE(error, lines.end()) << platkit::strings::wide_to_utf8(failed.output);
    EXPECT_NE(error->find(L"kein Ergebnis ü"), std::wstring::npos);
    EXPECT_TRUE(fs::exists(png));

    // The client named in the environment; the status line follows the viewer's.
    const auto opened = run_viewer("--screenshot \"" + wxString(png.string()) + "\"",
                                   {{"XDG_DATA_HOME", (tmp / "data").string()},
                                    {"CORR_CLIENT_ID", "VS"}});
    EXPECT_EQ(opened.code, 0) << platkit::strings::wide_to_utf8(opened.output);
    const auto status = protocol_lines(opened);
    EXPECT_NE(std::find(status.begin(), status.end(),
                        L"corrview-status\t24 problems, 0 suppressed by 0 suppressions"),
              status.end())
        << platkit::strings::wide_to_utf8(opened.output);
}

TEST(CorrviewBinary, AnotherClientShowsItsOwnMessages)
{
    temp_dir_t tmp;
    const fs::path png = tmp / "window.png";
    // The option wins over the environment: not the IDE, so nothing for it on standard output.
    const auto run = run_viewer("--client cli --screenshot \"" + wxString(png.string()) + "\"",
                                {{"XDG_DATA_HOME", (tmp / "data").string()},
                                 {"CORR_CLIENT_ID", "VS"}});
    EXPECT_EQ(run.code, 0) << platkit::strings::wide_to_utf8(run.output);
    EXPECT_TRUE(protocol_lines(run).empty()) << platkit::strings::wide_to_utf8(run.output);
    EXPECT_TRUE(fs::exists(png));
    const auto bad = run_viewer("--client", {});
    EXPECT_EQ(bad.code, 1);
    EXPECT_NE(bad.output.find(L"--client needs a client name"), std::wstring::npos);
}

TEST(CorrviewBinary, HelpAndBadArguments)
{
    const auto help = run_viewer("--help", {});
    EXPECT_EQ(help.code, 0);
    EXPECT_NE(help.output.find(L"usage: corrview"), std::wstring::npos);
    const auto bad = run_viewer("--frobnicate", {});
    EXPECT_EQ(bad.code, 1);
    EXPECT_NE(bad.output.find(L"unknown option --frobnicate"), std::wstring::npos);
}

} // namespace

// With HOME in a folder named with letters, spaces and quotes, and in one
// whose name is not UTF-8: the viewer starts, copies its sample under HOME
// and writes the screenshot there.
TEST(CorrviewBinary, StartsWithHomeInAnyFolder)
{
    temp_dir_t tmp;
    for (const std::string& name : {std::string("h\xC3\xA9me 'it''s' \"q\""), std::string("bad \xFF home")}) {
        SCOPED_TRACE(name);
        const fs::path home = tmp / name;
        fs::create_directories(home);
        auto quoted = [](const fs::path& p) {
            std::string out = "'";
            for (char c : p.string())
                out += c == '\'' ? std::string("'\\''") : std::string(1, c);
            return out + "'";
        };
        const fs::path png = home / "shot \xC3\xA9.png";
        std::ofstream(tmp / "run.sh")
            << "unset XDG_DATA_HOME XDG_CONFIG_HOME CORR_RESULTS_DIR\nHOME=" << quoted(home)
            << " exec " << quoted(CORRVIEW_EXE) << " --screenshot " << quoted(png) << " >"
            << quoted(tmp / "out.txt") << " 2>&1\n";
        const int status = std::system(("sh " + quoted(tmp / "run.sh")).c_str());
        std::ifstream log(tmp / "out.txt");
        const std::string output((std::istreambuf_iterator<char>(log)), std::istreambuf_iterator<char>());
        ASSERT_EQ(status, 0) << output;
        EXPECT_GT(fs::file_size(png), 1000u);
        EXPECT_TRUE(fs::exists(home / ".local" / "share" / "corrview" / "sample-result" / "sample.corr"))
            << output;
    }
}
