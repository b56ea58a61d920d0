// corrtool suppressions FILE.sup|DIR [--json]
#include "arguments.h"
#include "command.h"
#include "result_suppressions.h"
#include "text.h"

#include "suppfmt3/format_writer.h"

#include <nlohmann/json.hpp>

#include <filesystem>
#include <ostream>

namespace corrtool {
namespace {

using nlohmann::json;

// A value aspect: its value and whether it is used; null when the rule lacks it.
json aspect_json(const suppfmt3::suppression_rule_t& rule, suppfmt3::suppfmt_datatype type)
{
    if (!rule.is_item_available(type))
        return nullptr;
    return json{{"value", rule.get_value_text(type)}, {"active", rule.is_item_active(type)}};
}

json stack_json(const suppfmt3::suppression_rule_t& rule)
{
    const auto stack = rule.make_effective_stack();
    if (!stack)
        return nullptr;
    json frames = json::array();
    for (size_t i = 0; i < stack->size(); ++i) {
        const auto& f = stack->frame(i);
        frames.push_back(json{{"module", f.module},
                              {"module_active", f.module_active},
                              {"function", f.function},
                              {"function_active", f.function_active},
                              {"source", f.source},
                              {"source_active", f.source_active},
                              {"line", f.line == suppfmt3::no_line ? json(nullptr) : json(f.line)},
                              {"line_active", f.line_active},
                              {"elided", !stack->is_frame_active(i)},
                              {"best", static_cast<int>(i) == stack->get_best_level()}});
    }
    return json{{"active", stack->is_active()}, {"frames", std::move(frames)}};
}

json file_json(const probstore3::suppression_file_t& file)
{
    json sets = json::array();
    for (const auto& set : file.get_rulesets()) {
        json rules = json::array();
        for (const auto& rule : set->get_rules())
            rules.push_back(json{{"type", aspect_json(*rule, suppfmt3::sdt_problem_type)},
                                 {"description", aspect_json(*rule, suppfmt3::sdt_description)},
                                 {"stack", stack_json(*rule)}});
        sets.push_back(json{{"name", set->get_name_utf8()},
                            {"kind", suppfmt3::rule_set_type_keyword(set->get_type())},
                            {"rules", std::move(rules)}});
    }
    return json{{"path", utf8(file.get_path())},
                {"file_format", static_cast<int>(file.get_file_format())},
                {"suppressions", std::move(sets)}};
}

// The file's rule sets in the file format's canonical text, under the path.
void print_file(const probstore3::suppression_file_t& file, std::ostream& out)
{
    const auto sets = file.get_rulesets();
    out << "# " << shown(basekit2::path_t(file.get_path())) << ": " << sets.size()
        << (sets.size() == 1 ? " suppression\n" : " suppressions\n");
    for (const auto& set : sets) {
        std::vector<const suppfmt3::suppression_rule_t*> rules;
        for (const auto& rule : set->get_rules())
            rules.push_back(rule.get());
        std::string text;
        suppfmt3::format_writer_t::write_rule_set(text, set->get_name_utf8(), set->get_type(), rules);
        out << text;
    }
}

} // namespace

int run_suppressions(const std::vector<std::string>& args, std::ostream& out, std::ostream& err)
{
    const arguments_t a(args, {}, {"json"});
    if (!a.ok()) {
        err << "corrtool suppressions: " << a.error() << "\n";
        return exit_error;
    }
    if (a.positional().size() != 1) {
        err << "corrtool suppressions: usage: corrtool suppressions FILE.sup|DIR [--json]\n";
        return exit_error;
    }
    const std::string& target = a.positional()[0];
    std::vector<probstore3::file_ptr> files;
    const auto fs_target = std::filesystem::u8path(target);
    std::error_code ec;
    if (fs_target.extension() == ".sup" || (std::filesystem::is_regular_file(fs_target, ec) &&
                                            fs_target.extension() != ".corr")) {
        auto file = open_suppression_file("suppressions", target, err);
        if (!file)
            return exit_error;
        files.push_back(std::move(file));
    } else {
        const auto engine = open_result("suppressions", target, err);
        if (!engine || !load_suppression_files("suppressions", *engine, {}, files, err))
            return exit_error;
    }

    if (a.has("json")) {
        json list = json::array();
        for (const auto& f : files)
            list.push_back(file_json(*f));
        out << json{{"format", 1}, {"files", std::move(list)}}.dump(2, ' ', false,
                                                                     json::error_handler_t::replace)
            << "\n";
        return exit_ok;
    }
    for (size_t i = 0; i < files.size(); ++i) {
        if (i)
            out << "\n";
        print_file(*files[i], out);
    }
    if (files.empty())
        out << "no suppression files\n";
    return exit_ok;
}

} // namespace corrtool
