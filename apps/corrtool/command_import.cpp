// corrtool import FILE... --result DIR [--name NAME] [--source-dir DIR]...
#include "arguments.h"
#include "command.h"
#include "text.h"

#include "corr_engine/engine.h"

#include <algorithm>
#include <filesystem>
#include <ostream>

namespace corrtool {
namespace {

namespace fs = std::filesystem;

bool is_existing_result(const basekit2::path_t& dir)
{
    std::error_code ec;
    if (fs::is_regular_file(dir.fs(), ec))
        return true;
    return fs::is_directory(dir.fs(), ec) && !basekit2::find_files(dir, L"*.corr").empty();
}

void print_report(const corr_engine::import_files_report_t& report, std::ostream& out,
                  std::ostream& err)
{
    for (const auto& f : report.files) {
        out << "imported " << shown(f.file) << " as data/" << shown(f.stored_as) << ": "
            << f.report.problems << (f.report.problems == 1 ? " problem" : " problems");
        if (!f.report.tool.empty())
            out << " (" << f.report.tool << ")";
        out << "\n";
        out.flush(); // keep warnings next to their file on a terminal
        for (const auto& w : f.report.warnings)
            err << "warning: " << shown(w) << "\n";
    }
}

} // namespace

int run_import(const std::vector<std::string>& args, std::ostream& out, std::ostream& err)
{
    const arguments_t a(args, {"result", "name", "source-dir"}, {});
    if (!a.ok()) {
        err << "corrtool import: " << a.error() << "\n";
        return exit_error;
    }
    if (a.positional().empty() || !a.has("result")) {
        err << "corrtool import: usage: corrtool import FILE... --result DIR [--name NAME]\n";
        return exit_error;
    }
    std::vector<basekit2::path_t> files;
    for (const auto& f : a.positional())
        files.push_back(path_arg(f));
    std::vector<basekit2::path_t> source_dirs;
    for (const auto& d : a.values("source-dir")) {
        std::error_code ec;
        if (!fs::is_directory(fs::u8path(d), ec)) {
            err << "corrtool import: " << d << ": no such folder (--source-dir)\n";
            return exit_error;
        }
        source_dirs.push_back(path_arg(d));
    }
    const basekit2::path_t dir = path_arg(a.value("result"));
    const std::wstring name = path_arg(a.value("name")).str();

    auto engine = corr_engine::engine_t::create();
    corr_engine::import_files_report_t report;
    if (is_existing_result(dir)) {
        if (!engine->open_result(dir)) {
            err << "corrtool import: " << shown(engine->last_error()) << "\n";
            return exit_error;
        }
        if (!name.empty() && name != engine->get_result_name()) {
            err << "corrtool import: " << shown(dir) << " already holds the result \""
                << shown(engine->get_result_name()) << "\"; --name only names a new result\n";
            return exit_error;
        }
        if (!engine->import_files(files, report)) {
            err << "corrtool import: " << shown(report.error) << "\n";
            return exit_error;
        }
        if (!source_dirs.empty()) {
            auto dirs = engine->get_source_dirs();
            for (const auto& d : source_dirs) {
                const basekit2::path_t full(fs::absolute(d.fs()).lexically_normal());
                if (std::find(dirs.begin(), dirs.end(), full) == dirs.end())
                    dirs.push_back(full);
            }
            if (!engine->set_source_dirs(dirs))
                err << "warning: " << shown(engine->last_error()) << "\n";
        }
    } else if (!engine->create_result(dir, name, files, source_dirs, report)) {
        err << "corrtool import: "
            << shown(report.error.empty() ? engine->last_error() : report.error) << "\n";
        return exit_error;
    }
    print_report(report, out, err);
    const auto manifest = engine->get_manifest();
    std::uint64_t total = 0;
    for (const auto& f : manifest.data_files)
        total += f.problems;
    out << "result \"" << shown(manifest.name) << "\" in " << shown(engine->get_result_dir())
        << ": " << total << (total == 1 ? " problem" : " problems") << " from "
        << manifest.data_files.size() << (manifest.data_files.size() == 1 ? " file" : " files")
        << "\n";
    return exit_ok;
}

} // namespace corrtool
