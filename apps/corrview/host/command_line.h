#pragma once
// corrview's command line: corrview [--client NAME] [--screenshot FILE.png] [DIR]
#include "basekit2/path.h"

#include <optional>
#include <string>
#include <vector>

namespace corrview {

struct options_t
{
    bool help = false;
    basekit2::path_t result;     // a result folder or marker file; empty: the sample
    basekit2::path_t screenshot; // render the window into this PNG and exit
    std::optional<std::string> client; // --client NAME (see client_context.h)
    std::string error;           // what is wrong with the arguments; empty when nothing
};

// args without the program name.
options_t parse_command_line(const std::vector<std::string>& args);
std::string usage_text();
// What the viewer prints when it finds no display to open its window on.
std::string no_display_text();

} // namespace corrview
