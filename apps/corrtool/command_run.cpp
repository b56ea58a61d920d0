// corrtool run --type NAME --result DIR [--project P] [--] PROGRAM ARGS...
#include "arguments.h"
#include "command.h"
#include "result_suppressions.h"
#include "text.h"

#include "corr_engine/engine.h"
#include "probstore3/suppression_matcher.h"
#include "runctl2/runner.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <ostream>

namespace corrtool {
namespace {

namespace fs = std::filesystem;

// Through UTF-8: path_t::fs() converts with the locale and throws on
// non-ASCII names under "C".
fs::path native(const basekit2::path_t& p)
{
    return fs::path(p.utf8());
}

// The folder the analyser writes into, beside the result; gone afterwards.
class scratch_folder
{
public:
    explicit scratch_folder(const basekit2::path_t& result)
        : m_path(result.parent() / basekit2::path_t(L"." + result.leaf() + L".run-" + std::to_wstring(::getpid())))
    {
        std::error_code ec;
        fs::remove_all(native(m_path), ec);
        fs::create_directories(native(m_path), ec);
    }
    ~scratch_folder()
    {
        std::error_code ec;
        fs::remove_all(native(m_path), ec);
    }
    scratch_folder(const scratch_folder&) = delete;
    scratch_folder& operator=(const scratch_folder&) = delete;
    const basekit2::path_t& path() const { return m_path; }

private:
    basekit2::path_t m_path;
};

std::string type_names()
{
    std::string names;
    for (const auto& t : runctl2::builtin_analysis_types())
        names += (names.empty() ? "" : ", ") + utf8(t->getCliName());
    return names;
}

} // namespace

int run_run(const std::vector<std::string>& all_args, std::ostream& out, std::ostream& err)
{
    // Options end at "--" or at the first word that is not one: the rest is
    // the program and its own arguments, options included.
    std::vector<std::string> options, command;
    for (size_t i = 0; i < all_args.size(); ++i) {
        const std::string& a = all_args[i];
        if (a == "--") {
            command.assign(all_args.begin() + long(i) + 1, all_args.end());
            break;
        }
        const bool takes_value = a == "--type" || a == "--result" || a == "--project";
        if (a.rfind("--", 0) != 0) {
            command.assign(all_args.begin() + long(i), all_args.end());
            break;
        }
        options.push_back(a);
        if (takes_value && i + 1 < all_args.size())
            options.push_back(all_args[++i]);
    }
    const arguments_t a(options, {"type", "result", "project"}, {});
    if (!a.ok()) {
        err << "corrtool run: " << a.error() << "\n";
        return exit_error;
    }
    if (!a.has("type") || !a.has("result") || command.empty()) {
        err << "corrtool run: usage: corrtool run --type NAME --result DIR [--project P] [--] PROGRAM ARGS...\n";
        return exit_error;
    }
    const auto type = runctl2::find_analysis_type(path_arg(a.value("type")).str());
    if (!type) {
        err << "corrtool run: unknown analysis type \"" << a.value("type") << "\" (one of " << type_names() << ")\n";
        return exit_error;
    }
    basekit2::path_t result = path_arg(a.value("result"));
    if (a.has("project")) {
        const basekit2::path_t project = path_arg(a.value("project"));
        std::error_code ec;
        fs::create_directories(native(project), ec);
        const fs::path marker = native(project / basekit2::path_t(L"project.corrproj"));
        if (!fs::exists(marker, ec))
            std::ofstream(marker) << "corr-project 1\n";
        if (!fs::is_regular_file(marker, ec)) {
            err << "corrtool run: " << utf8(project.str()) << ": cannot make a project there\n";
            return exit_error;
        }
        if (!result.is_absolute())
            result = project / result;
    }
    {
        std::error_code ec;
        if (fs::exists(native(result), ec) && !(fs::is_directory(native(result), ec) && fs::is_empty(native(result), ec))) {
            err << "corrtool run: " << utf8(result.str()) << " already exists; a run makes a new result\n";
            return exit_error;
        }
        fs::create_directories(native(result.parent()), ec);
        result = basekit2::path_t::from_utf8(fs::absolute(native(result), ec).native());
    }

    runctl2::run_request_t request;
    request.type = type;
    request.program = command[0].find('/') == std::string::npos ? runctl2::find_in_path(command[0]) : path_arg(command[0]);
    if (request.program.empty())
        request.program = path_arg(command[0]);
    for (size_t i = 1; i < command.size(); ++i)
        request.arguments.push_back(path_arg(command[i]).str());
    const std::wstring problem = runctl2::check_request(request);
    if (!problem.empty()) {
        err << "corrtool run: " << utf8(problem) << "\n";
        return exit_error;
    }

    scratch_folder scratch(result);
    request.output_folder = scratch.path();
    err << "corrtool run: " << runctl2::command_text(runctl2::plan_run(request)) << "\n";
    const runctl2::run_outcome_t outcome = runctl2::run_analysis(request);
    if (!outcome.started) {
        err << "corrtool run: " << utf8(outcome.error) << "\n";
        return exit_error;
    }
    if (outcome.outputs.empty()) {
        err << "corrtool run: the analyser wrote no report (it ended with "
            << (outcome.signal ? "signal " + std::to_string(outcome.signal)
                               : "status " + std::to_string(outcome.exit_code))
            << "); no result was made\n";
        return exit_error;
    }
    // Sanitizer reports are "<prefix>.<pid>": the importer knows them as text reports.
    std::vector<basekit2::path_t> files;
    for (const auto& f : outcome.outputs) {
        if (f.extension() == L"xml") {
            files.push_back(f);
            continue;
        }
        const basekit2::path_t renamed(f.str() + L".txt");
        std::error_code ec;
        fs::rename(native(f), native(renamed), ec);
        files.push_back(ec ? f : renamed);
    }

    auto engine = corr_engine::engine_t::create();
    corr_engine::import_files_report_t report;
    if (!engine->create_result(result, std::wstring(), files, {}, report)) {
        err << "corrtool run: the analyser's output cannot be read ("
            << utf8(report.error.empty() ? engine->last_error() : report.error) << "); no result was made\n";
        std::error_code ec;
        fs::remove(native(result), ec); // only when still empty
        return exit_error;
    }

    const auto opened = open_result("run", result.utf8(), err);
    std::vector<probstore3::file_ptr> suppressions;
    if (!opened || !load_suppression_files("run", *opened, {}, suppressions, err))
        return exit_error;
    const auto matcher = probstore3::suppression_matcher_t::from_files(suppressions);
    const auto problems = opened->get_problems();
    size_t open = 0;
    for (const auto& p : *problems)
        if (!matcher.match(p))
            ++open;
    out << "result \"" << utf8(opened->get_result_name()) << "\" in " << utf8(result.str()) << ": "
        << problems->size() << (problems->size() == 1 ? " problem, " : " problems, ") << open
        << " not suppressed\n";
    return open ? exit_found : exit_ok;
}

} // namespace corrtool
