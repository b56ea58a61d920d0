#pragma once
// Fixtures of the suppression dialog tests: a real result imported from
// recorded analyser output, candidate rules made from its problems, a
// private user configuration, and screenshots of real windows.
#include "gui_test.h"

#include "corr_engine/engine.h"
#include "corr_engine/suppressions_manager.h"
#include "platkit/strings/convert.h"
#include "probstore3/candidates.h"
#include "probstore3/suppression_file.h"
#include "wxkit1/tooltip.h"

#include <gtest/gtest.h>

#include <wx/image.h>
#include <wx/imagpng.h>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <wx/toplevel.h>
#include <wx/window.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace suppdlg_test {

namespace fs = std::filesystem;

inline fs::path sample(const std::string& name) { return fs::path(CORR_SAMPLES_DIR) / "recorded" / name; }
inline fs::path test_data(const std::string& name) { return fs::path(CORR_TEST_DATA_DIR) / name; }

inline std::string read_bytes(const fs::path& p)
{
    std::ifstream in(p, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

// A folder of the running test, and a user configuration folder in it (so
// that no real configuration of the machine reaches the dialog).
class temp_dir
{
public:
    temp_dir()
    {
        m_path = fs::temp_directory_path() /
                 (std::string("corr_suppdlg_") + testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(m_path);
        fs::create_directories(m_path / "config");
        const char* old = std::getenv("XDG_CONFIG_HOME");
        m_old_config = old ? old : "";
        m_had_config = old != nullptr;
        setenv("XDG_CONFIG_HOME", (m_path / "config").c_str(), 1);
    }
    ~temp_dir()
    {
        if (m_had_config)
            setenv("XDG_CONFIG_HOME", m_old_config.c_str(), 1);
        else
            unsetenv("XDG_CONFIG_HOME");
        fs::remove_all(m_path);
    }
    temp_dir(const temp_dir&) = delete;
    temp_dir& operator=(const temp_dir&) = delete;
    const fs::path& path() const { return m_path; }
    fs::path operator/(const std::string& name) const { return m_path / name; }

private:
    fs::path m_path;
    std::string m_old_config;
    bool m_had_config = false;
};

// A result made from recorded Valgrind output, opened by an engine.
struct result_t
{
    basekit2::intrusive_pointer_t<corr_engine::engine_t> engine = corr_engine::engine_t::create();
    fs::path dir;

    result_t(const fs::path& where, const std::vector<std::string>& recorded)
    {
        dir = where;
        std::vector<basekit2::path_t> files;
        for (const auto& name : recorded)
            files.emplace_back(sample(name));
        corr_engine::import_files_report_t report;
        const bool created = engine->create_result(basekit2::path_t(dir), L"r", files, {}, report);
        EXPECT_TRUE(created) << platkit::strings::wide_to_utf8(report.error + engine->last_error());
    }

    fs::path suppressions() const { return engine->get_suppressions_dir().fs(); }
    std::vector<probstore3::problem_t> problems() const
    {
        const auto list = engine->get_problems();
        return list ? *list : std::vector<probstore3::problem_t>{};
    }
};

// Two problems of the result with different best frames.
inline std::vector<probstore3::problem_t> two_problems(const result_t& result)
{
    std::vector<probstore3::problem_t> out;
    for (const auto& p : result.problems()) {
        const auto* best = p.best_frame();
        if (!best || best->function.empty())
            continue;
        if (!out.empty() && out.front().best_frame()->function == best->function)
            continue;
        out.push_back(p);
        if (out.size() == 2)
            break;
    }
    EXPECT_EQ(out.size(), 2u) << "the recorded output should hold two problems at different places";
    return out;
}

// A control of a loaded layout by its XRC name (standard buttons too).
template <class T>
T* control(wxWindow& dialog, const char* name)
{
    T* found = dynamic_cast<T*>(wxWindow::FindWindowByName(name, &dialog));
    EXPECT_TRUE(found) << "no control " << name;
    return found;
}

inline std::wstring tooltip_of(const wxWindow* window)
{
    const wxkit1::wxCustomTooltip* tip = wxkit1::GetTooltip(window);
    return tip ? tip->GetText().ToStdWstring() : std::wstring();
}

// Shows a top-level window, waits until it is on screen and painted, and
// saves what the screen shows of it as <screenshot dir>/<name>.png.
inline void screenshot(wxTopLevelWindow& window, const std::string& name)
{
    window.Show();
    window.Raise();
    ASSERT_TRUE(corr_test::wait_until([&] { return window.IsShownOnScreen(); }));
    window.Update();
    corr_test::pump_events(300);
    // Read straight from the X server: wxScreenDC hands back a stale image
    // after its first use with GTK 3.
    const wxRect rect = window.GetScreenRect().Intersect(wxRect(wxGetDisplaySize()));
    ASSERT_FALSE(rect.IsEmpty()) << name << " is off screen";
    Display* display = XOpenDisplay(nullptr);
    ASSERT_TRUE(display);
    XImage* shot = XGetImage(display, DefaultRootWindow(display), rect.x, rect.y, unsigned(rect.width),
                             unsigned(rect.height), AllPlanes, ZPixmap);
    ASSERT_TRUE(shot);
    wxImage image(rect.width, rect.height);
    for (int y = 0; y < rect.height; ++y)
        for (int x = 0; x < rect.width; ++x) {
            const unsigned long pixel = XGetPixel(shot, x, y);
            image.SetRGB(x, y, (pixel >> 16) & 0xff, (pixel >> 8) & 0xff, pixel & 0xff);
        }
    XDestroyImage(shot);
    XCloseDisplay(display);
    if (!wxImage::FindHandler(wxBITMAP_TYPE_PNG))
        wxImage::AddHandler(new wxPNGHandler);
    fs::create_directories(CORR_SCREENSHOT_DIR);
    const fs::path file = fs::path(CORR_SCREENSHOT_DIR) / (name + ".png");
    EXPECT_TRUE(image.SaveFile(file.string(), wxBITMAP_TYPE_PNG)) << file;
}

} // namespace suppdlg_test
