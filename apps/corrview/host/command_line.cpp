#include "command_line.h"

namespace corrview {

options_t parse_command_line(const std::vector<std::string>& args)
{
    options_t options;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a == "-h" || a == "--help") {
            options.help = true;
        } else if (a == "--screenshot" || a.rfind("--screenshot=", 0) == 0) {
            std::string value;
            if (a == "--screenshot") {
                if (i + 1 >= args.size()) {
                    options.error = "--screenshot needs a file name";
                    return options;
                }
                value = args[++i];
            } else {
                value = a.substr(a.find('=') + 1);
            }
            if (value.empty()) {
                options.error = "--screenshot needs a file name";
                return options;
            }
            options.screenshot = basekit2::path_t::from_utf8(value);
        } else if (a == "--client" || a.rfind("--client=", 0) == 0) {
            if (a == "--client") {
                if (i + 1 >= args.size()) {
                    options.error = "--client needs a client name";
                    return options;
                }
                options.client = args[++i];
            } else {
                options.client = a.substr(a.find('=') + 1);
            }
        } else if (a.size() > 1 && a[0] == '-') {
            options.error = "unknown option " + a;
            return options;
        } else if (!options.result.empty()) {
            options.error = "only one result can be opened: " + a;
            return options;
        } else {
            options.result = basekit2::path_t::from_utf8(a);
        }
    }
    return options;
}

std::string usage_text()
{
    return "usage: corrview [--client NAME] [--screenshot FILE.png] [DIR]\n"
           "\n"
           "Shows the problems of an analysis result and keeps its suppression rules.\n"
           "\n"
           "  DIR                 a result folder (or its .corr marker file); without it\n"
           "                      the bundled sample result opens (a copy of it in the\n"
           "                      user's data folder, so the bundled one stays as it is)\n"
           "  --screenshot FILE   open the result, render the main window into FILE (PNG)\n"
           "                      and exit\n"
           "  --client NAME       the client the viewer runs for: VS is an IDE's\n"
           "                      integration, which reads the viewer's messages as\n"
           "                      lines on standard output instead of message boxes\n"
           "  -h, --help          show this text\n"
           "\n"
           "Environment: CORR_RESOURCE_DIR (resource archives), CORR_RESULTS_DIR (where\n"
           "File > Import puts new results), CORR_CLIENT_ID (the client, when --client\n"
           "is not given).\n";
}

std::string no_display_text()
{
    return "corrview: cannot open a display (DISPLAY is not set or the X server does not answer).\n"
           "corrview is a graphical program; to run it without a screen, start it under Xvfb:\n"
           "    xvfb-run -a corrview\n";
}

} // namespace corrview
