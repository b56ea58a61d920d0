// corrview: the viewer of analysis results.
#include "host/command_line.h"
#include "ui/app.h"

#include <wx/init.h>

#include <cstdlib>
#include <iostream>

namespace {

int run(int argc, char** argv)
{
    const corrview::options_t options =
        corrview::parse_command_line(std::vector<std::string>(argv + 1, argv + argc));
    if (options.help) {
        std::cout << corrview::usage_text();
        return 0;
    }
    if (!options.error.empty()) {
        std::cerr << "corrview: " << options.error << "\n" << corrview::usage_text();
        return 1;
    }
    // Without a display the toolkit cannot start; say so instead of failing
    // inside it.
    const char* display = std::getenv("DISPLAY");
    const char* wayland = std::getenv("WAYLAND_DISPLAY");
    if ((!display || !*display) && (!wayland || !*wayland)) {
        std::cerr << corrview::no_display_text();
        return 2;
    }
    auto* app = new corrview::corrview_app_t(options);
    wxApp::SetInstance(app);
    int wx_argc = 1; // the options are ours, not the toolkit's
    if (!wxEntryStart(wx_argc, argv)) {
        std::cerr << corrview::no_display_text();
        return 2;
    }
    int code = 1;
    if (wxTheApp->CallOnInit()) {
        wxTheApp->OnRun();
        code = app->exit_code();
    }
    wxTheApp->OnExit();
    wxEntryCleanup();
    return code;
}

} // namespace

int main(int argc, char** argv)
{
    try {
        return run(argc, argv);
    } catch (const std::exception& e) {
        std::cerr << "corrview: " << corrview::describe_exception(e) << "\n";
    } catch (...) {
        std::cerr << "corrview: unexpected error\n";
    }
    return 2;
}
