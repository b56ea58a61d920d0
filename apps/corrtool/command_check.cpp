// corrtool check DIR [--suppressions FILE.sup]...
#include "arguments.h"
#include "command.h"
#include "result_suppressions.h"
#include "text.h"

#include "probstore3/suppression_matcher.h"

#include <ostream>

namespace corrtool {

int run_check(const std::vector<std::string>& args, std::ostream& out, std::ostream& err)
{
    const arguments_t a(args, {"suppressions"}, {});
    if (!a.ok()) {
        err << "corrtool check: " << a.error() << "\n";
        return exit_error;
    }
    if (a.positional().size() != 1) {
        err << "corrtool check: usage: corrtool check DIR [--suppressions FILE.sup]...\n";
        return exit_error;
    }
    const auto engine = open_result("check", a.positional()[0], err);
    std::vector<probstore3::file_ptr> files;
    std::vector<corr_engine::native_suppression_file_t> native;
    if (!engine || !load_suppression_files("check", *engine, a.values("suppressions"), files, err, &native))
        return exit_error;
    const suppressor_t suppressor(files, std::move(native));
    const auto problems = engine->get_problems();
    size_t open = 0;
    for (const auto& p : *problems) {
        if (suppressor.name(p))
            continue;
        ++open;
        out << "not suppressed: #" << p.id << " " << shown(p.type) << ": " << shown(p.description) << "\n";
    }
    const size_t total = problems->size();
    out << total << (total == 1 ? " problem, " : " problems, ") << total - open << " suppressed, " << open
        << " not suppressed\n";
    return open ? exit_found : exit_ok;
}

} // namespace corrtool
