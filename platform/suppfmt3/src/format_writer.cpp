#include "suppfmt3/format_writer.h"

#include "text_syntax.h"

namespace suppfmt3 {
namespace {

constexpr const char* header_keyword = "corr-suppressions";

void write_field(std::string& out, const char* key, const std::string& value, bool active)
{
    out += ' ';
    out += key;
    out += ' ';
    if (!active) {
        out += "any";
        if (value.empty())
            return;
        out += ' ';
    }
    syntax::append_quoted(out, value);
}

void write_line_field(std::string& out, std::uint64_t line, bool active)
{
    out += " line ";
    if (!active) {
        out += "any";
        if (line == no_line)
            return;
        out += ' ';
    }
    out += line == no_line ? std::string("none") : std::to_string(line);
}

void write_value_item(std::string& out, const char* key, const suppression_rule_t& rule, suppfmt_datatype type)
{
    const auto item = rule.get_item(type);
    if (!item)
        return;
    out += "    ";
    out += key;
    const auto* value_item = dynamic_cast<const value_item_t*>(item.get());
    const std::string text = value_item ? std::string() : item->get_text();
    const std::string& value = value_item ? value_item->get_value() : text;
    if (!item->is_active()) {
        out += " any";
        if (!value.empty()) {
            out += ' ';
            syntax::append_quoted(out, value);
        }
    } else {
        out += ' ';
        syntax::append_quoted(out, value);
    }
    out += '\n';
}

void write_stack(std::string& out, const stack_item_t& stack)
{
    out += stack.is_active() ? "    stack\n" : "    stack any\n";
    for (size_t i = 0; i < stack.size(); ++i) {
        const auto& f = stack.frame(i);
        out += "      frame";
        if (static_cast<int>(i) == stack.get_best_level())
            out += " best";
        if (!stack.is_frame_active(i))
            out += " elided";
        write_field(out, "module", f.module, f.module_active);
        write_field(out, "function", f.function, f.function_active);
        write_field(out, "source", f.source, f.source_active);
        write_line_field(out, f.line, f.line_active);
        out += '\n';
    }
}

} // namespace

std::string format_writer_t::header_line(suppression_file_format_t format)
{
    return std::string(header_keyword) + ' ' + std::to_string(static_cast<int>(format));
}

void format_writer_t::write_rule_set(std::string& out, std::string_view name, suppression_rule_set_type type,
                                     const std::vector<const suppression_rule_t*>& rules)
{
    out += "suppression ";
    syntax::append_quoted(out, name);
    out += '\n';
    if (type != srt_unspecified) {
        out += "  kind ";
        out += rule_set_type_keyword(type);
        out += '\n';
    }
    for (const auto* rule : rules) {
        if (!rule)
            continue;
        out += "  rule\n";
        write_value_item(out, "type", *rule, sdt_problem_type);
        write_value_item(out, "description", *rule, sdt_description);
        if (const auto stack = rule->make_effective_stack())
            write_stack(out, *stack);
    }
    out += "end\n";
}

const char* rule_set_type_keyword(suppression_rule_set_type type)
{
    switch (type) {
    case srt_best_location:
        return "best-location";
    case srt_custom_stack:
        return "custom-stack";
    default:
        return "unspecified";
    }
}

bool rule_set_type_from_keyword(std::string_view word, suppression_rule_set_type& type)
{
    for (auto t : {srt_unspecified, srt_best_location, srt_custom_stack}) {
        if (word == rule_set_type_keyword(t)) {
            type = t;
            return true;
        }
    }
    return false;
}

} // namespace suppfmt3
