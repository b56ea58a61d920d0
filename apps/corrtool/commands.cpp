#include "command.h"

namespace corrtool {

// Adding a command: write command_<name>.cpp with its run_<name>() and add
// one entry here.
const std::vector<command_t>& commands()
{
    static const std::vector<command_t> list{
        {"import", "import FILE... --result DIR [--name NAME] [--source-dir DIR]...",
         "Import analyser output into a result folder, creating it or adding to it.",
         "FILE is Valgrind XML (*.xml, written with --xml=yes; protocols 4, 5 and 6)\n"
         "or a sanitizer report (*.txt or *.log: AddressSanitizer, LeakSanitizer,\n"
         "ThreadSanitizer, UndefinedBehaviorSanitizer). Each file is kept unchanged\n"
         "under DIR/data/. All files import or none does: on bad input the result is\n"
         "left as it was and the exit status is 2.\n\n"
         "  --result DIR      the result folder (created when missing or empty)\n"
         "  --name NAME       name of a new result (default: the folder's name)\n"
         "  --source-dir DIR  the analysed program's sources (repeatable); frames\n"
         "                    below it count as the program's own code\n",
         run_import},
        {"problems", "problems DIR [--json]", "List the problems of a result.",
         "DIR is a result folder or its *.corr marker file.\n\n"
         "  --json   one JSON document (see docs/corrtool.md)\n",
         run_problems},
    };
    return list;
}

} // namespace corrtool
