// corrtool export-suppressions (DIR|FILE.sup)... --format F -o OUT
#include "arguments.h"
#include "command.h"
#include "result_suppressions.h"
#include "text.h"

#include "basekit2/file_io.h"
#include "corr_engine/native_export.h"

#include <filesystem>
#include <ostream>

namespace corrtool {

int run_export_suppressions(const std::vector<std::string>& raw_args, std::ostream& out, std::ostream& err)
{
    const char* usage = "usage: corrtool export-suppressions (DIR|FILE.sup)... --format "
                        "valgrind|lsan|tsan|ubsan|asan -o OUT\n";
    std::vector<std::string> args;
    for (const auto& arg : raw_args)
        args.push_back(arg == "-o" ? "--output" : arg);
    const arguments_t a(args, {"format", "output"}, {});
    if (!a.ok()) {
        err << "corrtool export-suppressions: " << a.error() << "\n";
        return exit_error;
    }
    if (a.positional().empty() || !a.has("format") || a.value("output").empty()) {
        err << "corrtool export-suppressions: " << usage;
        return exit_error;
    }
    const auto format = corr_engine::native_format_from_name(a.value("format"));
    if (!format) {
        err << "corrtool export-suppressions: unknown format '" << a.value("format")
            << "' (valgrind, lsan, tsan, ubsan or asan)\n";
        return exit_error;
    }

    // Rule sets from every file; problems from every result, so that a rule
    // finds the kinds and mangled names of the problems it hides.
    std::vector<probstore3::rule_set_ptr> sets;
    std::vector<probstore3::problem_t> problems;
    std::vector<std::string> sources;
    for (const auto& target : a.positional()) {
        const auto path = std::filesystem::u8path(target);
        std::error_code ec;
        std::vector<probstore3::file_ptr> files;
        if (path.extension() == ".sup" ||
            (std::filesystem::is_regular_file(path, ec) && path.extension() != ".corr")) {
            auto file = open_suppression_file("export-suppressions", target, err);
            if (!file)
                return exit_error;
            files.push_back(std::move(file));
        } else {
            const auto engine = open_result("export-suppressions", target, err);
            if (!engine || !load_suppression_files("export-suppressions", *engine, {}, files, err))
                return exit_error;
            const auto list = engine->get_problems();
            problems.insert(problems.end(), list->begin(), list->end());
        }
        for (const auto& f : files) {
            sources.push_back(utf8(f->get_path()));
            for (const auto& s : f->get_rulesets())
                sets.push_back(s);
        }
    }

    const auto result = corr_engine::export_native_suppressions(sets, problems, *format, sources);
    std::wstring error;
    if (basekit2::write_file_atomically(path_arg(a.value("output")), result.text, error) !=
        basekit2::write_error::none) {
        err << "corrtool export-suppressions: " << a.value("output") << ": " << utf8(error) << "\n";
        return exit_error;
    }
    for (const auto& w : result.widened)
        out << "widened: " << w << "\n";
    for (const auto& n : result.not_expressed)
        out << "not expressible: " << n << "\n";
    out << "wrote " << result.entries << (result.entries == 1 ? " suppression" : " suppressions") << " to "
        << a.value("output") << " (" << corr_engine::native_format_name(*format) << ")";
    if (!result.not_expressed.empty())
        out << "; " << result.not_expressed.size()
            << (result.not_expressed.size() == 1 ? " rule" : " rules") << " left out";
    out << "\n";
    return exit_ok;
}

} // namespace corrtool
