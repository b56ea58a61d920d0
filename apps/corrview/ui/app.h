#pragma once
// The viewer's wxApp: sets up the services, opens the main window on the
// result of the command line (or the sample), and with --screenshot renders
// the window into a PNG once it is painted, then ends.
#include "../host/client_context.h"
#include "../host/command_line.h"

#include <wx/app.h>
#include <wx/timer.h>

#include <exception>
#include <memory>
#include <string>

namespace corrview {

class main_frame_t;

class corrview_app_t : public wxApp
{
public:
    explicit corrview_app_t(options_t options) : m_options(std::move(options)) {}

    bool OnInit() override;
    int OnExit() override;
    bool OnExceptionInMainLoop() override;
    void OnUnhandledException() override;

    main_frame_t* frame() const { return m_frame; }
    // The exit code main() returns (a failed screenshot is 1).
    int exit_code() const { return m_exit_code; }
    const client_context_t& client() const { return m_client; }

private:
    void try_screenshot();

    options_t m_options;
    client_context_t m_client;
    // Under an IDE client: the viewer's messages, as lines on standard output.
    std::unique_ptr<stream_message_bridge_t> m_ide_bridge;
    main_frame_t* m_frame = nullptr;
    wxTimer m_screenshot_timer;
    int m_paints = 0;
    int m_waited_ms = 0;
    int m_exit_code = 0;
};

// A message for an exception no one handled, naming the paths of a
// file-system error.
std::string describe_exception(const std::exception& e);

// Renders a shown top-level window as it is on the screen into a PNG.
bool save_window_png(wxWindow* window, const basekit2::path_t& file, std::wstring& error);

} // namespace corrview
