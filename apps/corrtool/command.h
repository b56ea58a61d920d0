#pragma once
// The commands of corrtool. Each lives in its own command_<name>.cpp and is
// listed once in commands(); main() only dispatches.
#include <iosfwd>
#include <string>
#include <vector>

namespace corrtool {

// Exit statuses: 0 done, 1 the command ran and found what it reports on
// (for checking commands), 2 bad input or usage (nothing was changed).
enum exit_status_t : int { exit_ok = 0, exit_found = 1, exit_error = 2 };

struct command_t
{
    const char* name;
    const char* usage;   // "import FILE... --result DIR [--name NAME]"
    const char* summary; // one line for --help
    const char* details; // further lines for "corrtool help <command>"
    int (*run)(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
};

const std::vector<command_t>& commands();

int run_import(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
int run_problems(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
int run_suppress(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
int run_suppressions(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
int run_export_suppressions(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
int run_check(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
int run_run(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

} // namespace corrtool
