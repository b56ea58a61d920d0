// corrtool suppress DIR --problem ID... --file FILE.sup --name NAME [--any-problem]
#include "arguments.h"
#include "command.h"
#include "result_suppressions.h"
#include "text.h"

#include "corr_engine/suppressions_manager.h"
#include "probstore3/candidates.h"

#include <algorithm>
#include <charconv>
#include <ostream>

namespace corrtool {
namespace {

bool parse_id(const std::string& text, std::uint64_t& id)
{
    const char* end = text.data() + text.size();
    const auto r = std::from_chars(text.data(), end, id);
    return !text.empty() && r.ec == std::errc() && r.ptr == end;
}

// The problems named by ids, in the order given (each once); false after a
// message on err when an id is not a number or not in the result.
bool select_problems(const std::vector<std::string>& ids, const corr_engine::problem_list_t& all,
                     std::vector<const probstore3::problem_t*>& selected, std::ostream& err)
{
    for (const auto& text : ids) {
        std::uint64_t id = 0;
        if (!parse_id(text, id)) {
            err << "corrtool suppress: --problem " << text << ": not a problem id\n";
            return false;
        }
        const probstore3::problem_t* found = nullptr;
        for (const auto& p : all)
            if (p.id == id)
                found = &p;
        if (!found) {
            err << "corrtool suppress: --problem " << text << ": no such problem in the result\n";
            return false;
        }
        if (std::find(selected.begin(), selected.end(), found) == selected.end())
            selected.push_back(found);
    }
    return true;
}

} // namespace

int run_suppress(const std::vector<std::string>& args, std::ostream& out, std::ostream& err)
{
    const arguments_t a(args, {"problem", "file", "name"}, {"any-problem"});
    if (!a.ok()) {
        err << "corrtool suppress: " << a.error() << "\n";
        return exit_error;
    }
    if (a.positional().size() != 1 || !a.has("problem") || a.value("file").empty() ||
        a.value("name").empty()) {
        err << "corrtool suppress: usage: corrtool suppress DIR --problem ID... --file FILE.sup "
               "--name NAME [--any-problem]\n";
        return exit_error;
    }
    const auto engine = open_result("suppress", a.positional()[0], err);
    if (!engine)
        return exit_error;
    const auto problems = engine->get_problems();
    std::vector<const probstore3::problem_t*> selected;
    if (!select_problems(a.values("problem"), *problems, selected, err))
        return exit_error;

    const corr_engine::suppressions_manager_t manager;
    const auto file = manager.create_suppression(engine->get_marker_file(), path_arg(a.value("file")));
    if (!file) {
        for (const auto& e : manager.get_last_errors())
            err << "corrtool suppress: " << shown(e) << "\n";
        return exit_error;
    }
    const std::string name = a.value("name");
    for (const auto& set : file->get_rulesets())
        if (set->get_name_utf8() == name) {
            err << "corrtool suppress: " << shown(basekit2::path_t(file->get_path())) << " already holds a suppression named \""
                << name << "\"\n";
            return exit_error;
        }

    // The rules the create-suppression dialog starts from: each uses its
    // problem's best frame only.
    const auto rule_set = probstore3::create_candidate_rule_set(selected);
    rule_set->set_name_utf8(name);
    if (a.has("any-problem"))
        for (const auto& rule : rule_set->get_rules())
            rule->set_item_active(false, suppfmt3::sdt_problem_type);

    const bool existed = basekit2::path_t(file->get_path()).exists();
    const bool old_format = file->get_file_format() != probstore3::suppression_file_t::get_current_file_format();
    file->add_suppression(rule_set);
    if (file->save(file->get_path(), probstore3::suppression_file_t::get_current_file_format()) !=
        suppfmt3::se_success) {
        err << "corrtool suppress: " << shown(file->get_last_error()) << "\n";
        return exit_error;
    }
    if (!existed)
        out << "created " << shown(basekit2::path_t(file->get_path())) << "\n";
    out << "added suppression \"" << name << "\" to " << shown(basekit2::path_t(file->get_path())) << ": "
        << selected.size() << (selected.size() == 1 ? " rule, problem " : " rules, problems ");
    for (size_t i = 0; i < selected.size(); ++i)
        out << (i ? ", " : "") << selected[i]->id;
    if (a.has("any-problem"))
        out << ", any problem type";
    out << "\n";
    if (old_format)
        out << shown(basekit2::path_t(file->get_path())) << " was rewritten in the current format\n";
    return exit_ok;
}

} // namespace corrtool
