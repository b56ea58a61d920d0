#include "app.h"

#include "main_frame.h"
#include "problems_view.h"
#include "startup.h"
#include "viewer_ide_env.h"

#include "platkit/strings/convert.h"

#include <wx/dcmemory.h>
#include <wx/dcscreen.h>
#include <wx/image.h>

#include <wx/mstream.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>

namespace corrview {

bool corrview_app_t::OnInit()
{
    wxInitAllImageHandlers();
    const product_paths_t paths = find_product_paths(executable_dir());
    for (const auto& problem : initialise_services(paths))
        std::cerr << "corrview: " << platkit::strings::wide_to_utf8(problem) << "\n";
    start_scheduler();

    m_frame = new main_frame_t;
    m_client = resolve_client(m_options.client, std::getenv("CORR_CLIENT_ID"));
    if (m_client.is_ide()) {
        m_ide_bridge = std::make_unique<stream_message_bridge_t>(std::cout);
        m_frame->ide_env().set_message_bridge(m_ide_bridge.get());
    }
    m_frame->Show();
    basekit2::path_t result = m_options.result;
    if (result.empty()) {
        std::wstring error;
        result = prepare_sample_copy(paths.sample_result, default_sample_copy_dir(), error);
        if (result.empty() || !attach_sample_sources(result, paths.sample_sources, error))
            std::cerr << "corrview: " << platkit::strings::wide_to_utf8(error) << "\n";
    }
    if (!result.empty() && !m_frame->open_result(result) && !m_options.screenshot.empty())
        m_exit_code = 1;

    if (!m_options.screenshot.empty()) {
        // Counted on the problems grid, the last thing to get its first paint.
        m_frame->problems_view()->grid_control()->Bind(wxEVT_PAINT, [this](wxPaintEvent& event) {
            ++m_paints;
            event.Skip();
        });
        m_screenshot_timer.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { try_screenshot(); });
        m_screenshot_timer.Start(100);
    }
    return true;
}

void corrview_app_t::try_screenshot()
{
    m_waited_ms += 100;
    // Painted, and nothing left to do: the window is as a user would see it.
    const bool ready = m_paints > 0 && !Pending() && m_frame->IsShownOnScreen();
    if (!ready && m_waited_ms < 20000)
        return;
    m_screenshot_timer.Stop();
    std::wstring error;
    if (!ready) {
        error = L"the window was not painted within 20 seconds";
    } else if (save_window_png(m_frame, m_options.screenshot, error)) {
        std::cout << "corrview: wrote " << m_options.screenshot.native() << "\n";
    }
    if (!error.empty()) {
        std::cerr << "corrview: " << platkit::strings::wide_to_utf8(error) << "\n";
        m_exit_code = 1;
    }
    m_frame->Close(true);
}

bool corrview_app_t::OnExceptionInMainLoop()
{
    // A failure no handler caught: say what it was and keep the window (and
    // the user's unsaved work) alive rather than ending in std::terminate.
    try {
        throw;
    } catch (const std::exception& e) {
        std::cerr << "corrview: " << describe_exception(e) << "\n";
    } catch (...) {
        std::cerr << "corrview: unexpected error\n";
    }
    return true;
}

void corrview_app_t::OnUnhandledException()
{
    try {
        throw;
    } catch (const std::exception& e) {
        std::cerr << "corrview: " << describe_exception(e) << "\n";
    } catch (...) {
        std::cerr << "corrview: unexpected error\n";
    }
}

std::string describe_exception(const std::exception& e)
{
    if (const auto* f = dynamic_cast<const std::filesystem::filesystem_error*>(&e)) {
        std::string out = f->code().message();
        for (const auto* p : {&f->path1(), &f->path2()})
            if (!p->empty())
                out += ": \"" + p->native() + "\"";
        return out;
    }
    return e.what();
}

int corrview_app_t::OnExit()
{
    shutdown_services();
    return wxApp::OnExit();
}

bool save_window_png(wxWindow* window, const basekit2::path_t& file, std::wstring& error)
{
    const wxRect rect = window->GetScreenRect();
    if (rect.IsEmpty()) {
        error = L"the window has no size";
        return false;
    }
    wxBitmap bitmap(rect.GetWidth(), rect.GetHeight(), 24);
    {
        wxScreenDC screen;
        wxMemoryDC memory(bitmap);
        if (!memory.Blit(0, 0, rect.GetWidth(), rect.GetHeight(), &screen, rect.GetX(),
                         rect.GetY())) {
            error = L"cannot read the window from the screen";
            return false;
        }
    }
    // Encoded in memory and written by the standard library: the toolkit's
    // own file names follow the locale and miss names that are not in it.
    wxMemoryOutputStream png;
    if (!bitmap.ConvertToImage().SaveFile(png, wxBITMAP_TYPE_PNG)) {
        error = file.display() + L": cannot encode the PNG image";
        return false;
    }
    const auto* data = static_cast<const char*>(png.GetOutputStreamBuffer()->GetBufferStart());
    std::ofstream out(file.fs(), std::ios::binary | std::ios::trunc);
    out.write(data, static_cast<std::streamsize>(png.GetSize()));
    out.close();
    if (!out) {
        error = file.display() + L": cannot write the PNG file";
        return false;
    }
    return true;
}

} // namespace corrview
