#pragma once
// Running an analysis: the command line of a type (Valgrind with XML output
// and generated suppressions, or a sanitizer-built program with its report
// sent to files), started in a process group of its own, waited for, and
// cancelled as a whole (TERM, then KILL after a grace period).
#include "basekit2/path.h"
#include "runctl2/analysis_type.h"

#include <chrono>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace runctl2 {

struct run_request_t
{
    analysis_type_ptr type;
    basekit2::path_t program;
    std::vector<std::wstring> arguments;
    basekit2::path_t working_folder; // empty: the current folder
    std::vector<std::pair<std::wstring, std::wstring>> environment; // added to the inherited one
    basekit2::path_t output_folder;  // where the analyser's output goes (must exist)
    int debug_mode = 0;              // 0 off, 2 stop at the first error, 3 wait before the start
};

// The exact command a request runs.
struct run_plan_t
{
    std::vector<std::string> argv;        // UTF-8 (bytes of the file names as they are)
    std::vector<std::string> environment; // NAME=VALUE added to the inherited environment
    // The analyser output: one file for Valgrind; for a sanitizer the prefix
    // of its files (<prefix>.<pid>).
    basekit2::path_t output;
    bool output_is_prefix = false;
};
run_plan_t plan_run(const run_request_t& request);

// The plan as one shell-quoted line, for people and logs.
std::string command_text(const run_plan_t& plan);

struct run_outcome_t
{
    bool started = false;
    bool cancelled = false;
    std::wstring error;  // why it could not start; empty when it started
    int exit_code = -1;  // of the analysed process (Valgrind's own), when it exited
    int signal = 0;      // the signal that ended it, when one did
    std::vector<basekit2::path_t> outputs; // analyser output files that exist, in name order
};

// Why the request cannot run (no such program, not executable, no analyser
// installed), or empty.
std::wstring check_request(const run_request_t& request);

// Runs the request and waits for it. cancelled is polled every few
// milliseconds; when it answers true the whole process group gets TERM, and
// KILL after grace. Nothing of the group is left running when it returns.
run_outcome_t run_analysis(const run_request_t& request, const std::function<bool()>& cancelled = {},
                           std::chrono::milliseconds grace = std::chrono::milliseconds(500));

// The file of a program found through PATH (or the name itself when it has
// a slash); empty when there is none.
basekit2::path_t find_in_path(const std::string& name);

} // namespace runctl2
