#include "result_suppressions.h"

#include "text.h"

#include "basekit2/file_io.h"
#include "corr_engine/suppressions_manager.h"

#include <filesystem>
#include <ostream>

namespace corrtool {

engine_ptr open_result(const std::string& command, const std::string& dir, std::ostream& err)
{
    auto engine = corr_engine::engine_t::create();
    if (!engine->open_result(path_arg(dir))) {
        err << "corrtool " << command << ": " << shown(engine->last_error()) << "\n";
        return {};
    }
    engine->get_problems();
    const auto load = engine->get_load_report();
    if (!load.ok) {
        err << "corrtool " << command << ": " << shown(load.error) << "\n";
        return {};
    }
    return engine;
}

bool load_suppression_files(const std::string& command, const corr_engine::engine_t& engine,
                            const std::vector<std::string>& extra_files,
                            std::vector<probstore3::file_ptr>& files, std::ostream& err,
                            std::vector<corr_engine::native_suppression_file_t>* native)
{
    const corr_engine::suppressions_manager_t manager;
    const auto marker = engine.get_marker_file();
    auto report = [&](const std::vector<std::wstring>& errors) {
        for (const auto& e : errors)
            err << "corrtool " << command << ": " << shown(e) << "\n";
        return errors.empty();
    };
    files = manager.get_result_suppressions(marker);
    bool ok = report(manager.get_last_errors());
    for (auto& f : manager.get_project_suppressions(marker))
        files.push_back(std::move(f));
    ok = report(manager.get_last_errors()) && ok;
    for (const auto& path : extra_files) {
        std::string head;
        std::wstring read_error;
        if (native && basekit2::read_file(path_arg(path), head, read_error) &&
            corr_engine::is_native_suppression_text(head)) {
            std::wstring error;
            if (auto f = corr_engine::load_native_suppression_file(path_arg(path), error)) {
                native->push_back(std::move(*f));
            } else {
                err << "corrtool " << command << ": " << utf8(error) << "\n";
                ok = false;
            }
            continue;
        }
        if (auto f = open_suppression_file(command, path, err))
            files.push_back(std::move(f));
        else
            ok = false;
    }
    return ok;
}

probstore3::file_ptr open_suppression_file(const std::string& command, const std::string& path,
                                           std::ostream& err)
{
    std::error_code ec;
    if (!std::filesystem::is_regular_file(std::filesystem::u8path(path), ec)) {
        err << "corrtool " << command << ": " << path << ": no such file\n";
        return {};
    }
    std::wstring error;
    auto file = probstore3::suppression_file_t::open(path_arg(path).str(), &error);
    if (!file)
        err << "corrtool " << command << ": " << shown(error) << "\n";
    return file;
}

suppressor_t::suppressor_t(const std::vector<probstore3::file_ptr>& files,
                           std::vector<corr_engine::native_suppression_file_t> native)
    : m_matcher(probstore3::suppression_matcher_t::from_files(files)), m_native(std::move(native))
{
}

std::optional<std::string> suppressor_t::name(const probstore3::problem_t& problem) const
{
    if (const auto set = m_matcher.match(problem))
        return set->get_name_utf8();
    for (const auto& f : m_native)
        if (auto n = f.match(problem))
            return n;
    return std::nullopt;
}

std::optional<std::string> suppressor_t::describe(const probstore3::problem_t& problem) const
{
    if (const auto set = m_matcher.match(problem))
        return "\"" + set->get_name_utf8() + "\"";
    for (const auto& f : m_native)
        if (auto n = f.match(problem))
            return std::string(f.is_valgrind ? "Valgrind suppression \"" : "sanitizer suppression \"") + *n +
                   "\" in " + f.path.utf8();
    return std::nullopt;
}

} // namespace corrtool
