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
        {"problems", "problems DIR [--suppressions FILE]... [--json]", "List the problems of a result.",
         "DIR is a result folder or its *.corr marker file. Each problem names the\n"
         "suppression that hides it: the result's, the project's, then those of\n"
         "the files given.\n\n"
         "  --suppressions FILE  a further suppression file (repeatable): ours\n"
         "                       (*.sup) or an analyser's own (Valgrind, sanitizers)\n"
         "  --json               one JSON document (see docs/corrtool.md)\n",
         run_problems},
        {"suppress", "suppress DIR --problem ID... --file FILE.sup --name NAME [--any-problem]",
         "Suppress problems: add one suppression with a rule per problem to a file.",
         "Each rule names the problem's type, its description and its main stack\n"
         "with only the best frame used (the other frames elided), as the\n"
         "create-suppression dialog proposes. FILE is created when missing; a relative\n"
         "FILE is taken in the result's suppressions folder. The file is replaced\n"
         "atomically; on bad input nothing is written and the exit status is 2.\n\n"
         "  --problem ID     a problem id from \"corrtool problems\" (repeatable)\n"
         "  --file FILE.sup  the suppression file to add to\n"
         "  --name NAME      the suppression's name (new in that file)\n"
         "  --any-problem    the rules match whatever the problem type\n",
         run_suppress},
        {"suppressions", "suppressions FILE.sup|DIR [--json]",
         "List suppressions and their rules.",
         "For a result folder (or its *.corr file): the result's suppression files,\n"
         "then its project's. Text output is in the suppression-file format.\n\n"
         "  --json   one JSON document (see docs/corrtool.md)\n",
         run_suppressions},
        {"check", "check DIR [--suppressions FILE.sup]...",
         "Fail (exit status 1) when problems remain that no suppression hides.",
         "Matches the problems of the result against the result's and the project's\n"
         "suppression files and any given with --suppressions (repeatable; ours or\n"
         "an analyser's own: Valgrind's, the sanitizers'), lists\n"
         "the problems none suppresses and ends with the line\n"
         "\"N problems, M suppressed, K not suppressed\". For CI.\n",
         run_check},
        {"export-suppressions",
         "export-suppressions (DIR|FILE.sup)... --format valgrind|lsan|tsan|ubsan|asan -o OUT",
         "Write suppressions in an analyser's own format (valgrind --suppressions=OUT, ...).",
         "Takes the suppressions of each FILE.sup and of each result folder DIR (the\n"
         "result's and its project's files). The problems of the results give each\n"
         "rule its Valgrind kind and the mangled C++ names Valgrind compares. A rule\n"
         "the format can only approximate is listed as \"widened\", one it cannot\n"
         "express as \"not expressible\" (nothing is written for it); both lists are\n"
         "repeated in OUT's comments. OUT is replaced atomically.\n\n"
         "  --format F        valgrind, lsan, tsan, ubsan or asan\n"
         "  -o, --output OUT  the file to write\n",
         run_export_suppressions},
        {"run", "run --type NAME --result DIR [--project P] [--] PROGRAM ARGS...",
         "Run an analysis of a program and import its report into a new result.",
         "NAME is an analysis type (mi1, mi2, mi3: Valgrind memcheck of increasing\n"
         "depth; ti1: helgrind; ti2: drd; asan, tsan, ubsan: a program built with that\n"
         "sanitizer). Valgrind runs with --xml=yes and --gen-suppressions=all; the\n"
         "exact command is printed on stderr. The program runs in a process group of\n"
         "its own. Exit status 0 when no problem is left unsuppressed, 1 when one is,\n"
         "2 when the run could not start or its report could not be read (then no\n"
         "result is made).\n\n"
         "  --type NAME    the analysis type\n"
         "  --result DIR   the new result folder (must not exist, or be empty)\n"
         "  --project P    the project: DIR is taken in it when relative, and its\n"
         "                 suppression files apply (made with project.corrproj if new)\n",
         run_run},
    };
    return list;
}

} // namespace corrtool
