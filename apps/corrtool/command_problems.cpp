// corrtool problems DIR [--json]
#include "arguments.h"
#include "command.h"
#include "result_suppressions.h"
#include "text.h"

#include "corr_engine/engine.h"
#include "probstore3/suppression_matcher.h"

#include <nlohmann/json.hpp>

#include <ostream>

namespace corrtool {
namespace {

using nlohmann::json;

json frame_json(const probstore3::frame_t& f)
{
    return json{{"module", f.module},
                {"function", f.function},
                {"source", f.source},
                {"line", f.line == probstore3::no_line ? json(nullptr) : json(f.line)}};
}

json problem_json(const probstore3::problem_t& p, const std::optional<std::string>& suppressed_by)
{
    json stacks = json::array(), titles = json::array();
    for (const auto& s : p.stacks) {
        json frames = json::array();
        for (const auto& f : s.frames)
            frames.push_back(frame_json(f));
        stacks.push_back(std::move(frames));
        titles.push_back(s.title);
    }
    return json{{"id", p.id},
                {"tool", p.tool},
                {"kind", p.kind},
                {"type", p.type},
                {"description", p.description},
                {"aux", p.aux},
                {"stacks", std::move(stacks)},
                {"stack_titles", std::move(titles)},
                {"best_level", p.best_level},
                {"leaked_bytes", p.leaked_bytes},
                {"leaked_blocks", p.leaked_blocks},
                {"suppressed_by", suppressed_by ? json(*suppressed_by) : json(nullptr)}};
}

void print_text(const probstore3::problem_t& p, const std::optional<std::string>& suppressed_by,
                std::ostream& out)
{
    out << "#" << p.id << " " << shown(p.type) << ": " << shown(p.description);
    if (suppressed_by)
        out << " (suppressed by " << shown(*suppressed_by) << ")";
    out << "\n";
    if (const auto* f = p.best_frame()) {
        out << "    at " << (f->function.empty() ? "???" : shown(f->function));
        if (!f->source.empty()) {
            out << " (" << shown(f->source);
            if (f->line != probstore3::no_line)
                out << ":" << f->line;
            out << ")";
        }
        if (!f->module.empty())
            out << " [" << shown(f->module) << "]";
        out << "\n";
    }
}

} // namespace

int run_problems(const std::vector<std::string>& args, std::ostream& out, std::ostream& err)
{
    const arguments_t a(args, {"suppressions"}, {"json"});
    if (!a.ok()) {
        err << "corrtool problems: " << a.error() << "\n";
        return exit_error;
    }
    if (a.positional().size() != 1) {
        err << "corrtool problems: usage: corrtool problems DIR [--suppressions FILE]... [--json]\n";
        return exit_error;
    }
    const auto engine = open_result("problems", a.positional()[0], err);
    std::vector<probstore3::file_ptr> files;
    std::vector<corr_engine::native_suppression_file_t> native;
    if (!engine || !load_suppression_files("problems", *engine, a.values("suppressions"), files, err, &native))
        return exit_error;
    const suppressor_t suppressor(files, std::move(native));
    const auto problems = engine->get_problems();
    const auto load = engine->get_load_report();
    json warnings = json::array();
    for (const auto& f : load.files)
        for (const auto& w : f.report.warnings)
            warnings.push_back(utf8(w));

    if (a.has("json")) {
        json problem_list = json::array();
        for (const auto& p : *problems)
            problem_list.push_back(problem_json(p, suppressor.name(p)));
        const json doc{{"format", 1},
                       {"result", utf8(engine->get_result_name())},
                       {"marker", utf8(engine->get_marker_file().str())},
                       {"warnings", warnings},
                       {"problems", std::move(problem_list)}};
        // Text from the analysers is not guaranteed UTF-8; bad bytes become U+FFFD.
        out << doc.dump(2, ' ', false, json::error_handler_t::replace) << "\n";
        return exit_ok;
    }
    for (const auto& w : warnings)
        err << "warning: " << shown(w.get<std::string>()) << "\n";
    for (const auto& p : *problems)
        print_text(p, suppressor.describe(p), out);
    out << problems->size() << (problems->size() == 1 ? " problem" : " problems") << " in \""
        << shown(engine->get_result_name()) << "\"\n";
    return exit_ok;
}

} // namespace corrtool
