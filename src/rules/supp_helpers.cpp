#include "corr_dialogs2/supp_helpers.h"

#include "corr_dialogs2/ui_utils.h"

#include "platkit/strings/convert.h"

#include <array>

namespace corr_dialogs2 {

using namespace suppfmt3;

namespace {

constexpr std::array<suppfmt_datatype, 4> stack_datatypes = {sdt_module, sdt_function, sdt_source, sdt_line};

// Built on first use (on the GUI thread) and kept for the process.
const std::array<std::wstring, 4>& any_words()
{
    static const std::array<std::wstring, 4> words = {translate(L"supp.any_module"), translate(L"supp.any_function"),
                                                      translate(L"supp.any_source"), translate(L"supp.any_line")};
    return words;
}

const std::array<std::wstring, 4>& separators()
{
    static const std::array<std::wstring, 4> seps = {L"!", L" - ", L":", L""};
    return seps;
}

const std::wstring open_bracket = L"[";
const std::wstring close_bracket = L"]";
const std::wstring elided_frame = L"...";

std::wstring any_value(size_t field) { return open_bracket + any_words()[field] + close_bracket; }

platkit::memory::pointers::shared_pointer<stack_item_t> stack_frame_item(const rule_item_ptr& item, int frame)
{
    auto stack = as_stack_item(item);
    if (!stack || frame < 0 || static_cast<size_t>(frame) >= stack->size())
        return {};
    return stack;
}

} // namespace

namespace supp_helpers {

std::wstring get_stack_frame_value(suppression_rule_t::callstack_t frames, int frame, suppfmt_datatype type)
{
    if (frame < 0 || static_cast<size_t>(frame) >= frames.size() || !is_frame_datatype(type))
        return {};
    return platkit::strings::utf8_to_wide(frame_field_text(frames[static_cast<size_t>(frame)], type));
}

bool is_stack_rule_active(stack_ptr stack, int frame, suppfmt_datatype type)
{
    if (!stack || frame < 0 || frame >= stack->stack_size())
        return true;
    return stack->is_frame_field_active(frame, type);
}

void set_stack_item_active(rule_item_ptr item, int frame, suppfmt_datatype type, bool on)
{
    const auto stack = stack_frame_item(item, frame);
    if (!stack)
        return;
    auto& f = stack->edit_frame(static_cast<size_t>(frame));
    switch (type) {
    case sdt_module:
        f.module_active = on;
        break;
    case sdt_function:
        f.function_active = on;
        break;
    case sdt_source:
        f.source_active = on;
        if (!on)
            f.line_active = false;
        break;
    case sdt_line:
        // A line means nothing without the file it is in.
        f.line_active = on && f.source_active && is_concrete_source(f.source);
        break;
    default:
        break;
    }
}

void set_frame_items_active(rule_item_ptr item, int frame, bool on)
{
    if (!stack_frame_item(item, frame))
        return;
    for (const auto type : stack_datatypes)
        set_stack_item_active(item, frame, type, on);
}

bool is_frame_active(rule_ptr rule, int frame)
{
    if (!rule)
        return false;
    const auto stack = rule->get_stack(false);
    return stack && frame >= 0 && frame < stack->stack_size() && stack->is_frame_active(frame);
}

void set_frame_active(rule_ptr rule, int frame, bool on)
{
    if (!rule)
        return;
    const auto stack = rule->get_stack(false);
    if (stack && frame >= 0 && frame < stack->stack_size())
        stack->set_frame_active(frame, on);
}

int get_top_nonwidlcard_frame(stack_ptr stack)
{
    if (!stack)
        return 0;
    for (int i = 0; i < stack->stack_size(); ++i) {
        if (!stack->is_frame_active(i))
            continue;
        for (const auto type : stack_datatypes)
            if (stack->is_frame_field_active(i, type))
                return i;
    }
    return stack->get_best_level();
}

int get_active_frames_count(stack_ptr stack)
{
    if (!stack)
        return 0;
    int count = 0;
    for (int i = 0; i < stack->stack_size(); ++i)
        count += stack->is_frame_active(i) ? 1 : 0;
    return count;
}

void reset_to_default(rule_ptr rule)
{
    if (!rule)
        return;
    const auto stack = rule->get_stack(false);
    if (!stack)
        return;
    const int best = stack->get_best_level();
    if (best < 0)
        return;
    for (int i = 0; i < stack->stack_size(); ++i) {
        set_frame_items_active(rule->get_item(sdt_call_stack), i, true);
        set_frame_active(rule, i, false);
    }
    set_frame_active(rule, best, true);
}

std::vector<basekit2::path_t> get_paths_from_strings(const std::vector<std::wstring>& strings,
                                                     const std::wstring& base, bool only_existing)
{
    std::vector<basekit2::path_t> out;
    for (const auto& s : strings) {
        if (s.empty())
            continue;
        basekit2::path_t path(s);
        if (!path.is_absolute())
            path = basekit2::path_t(base).join(path);
        if (path.is_directory()) {
            const auto files = basekit2::find_files(path, L"*.sup");
            out.insert(out.end(), files.begin(), files.end());
        } else if (!only_existing || path.exists()) {
            out.push_back(path);
        }
    }
    return out;
}

} // namespace supp_helpers

std::wstring create_stack_line(stack_ptr stack, int frame)
{
    if (!stack || frame < 0 || frame >= stack->stack_size())
        return {};
    if (!stack->is_frame_active(frame))
        return elided_frame;
    std::wstring line;
    for (size_t i = 0; i < stack_datatypes.size(); ++i) {
        const auto type = stack_datatypes[i];
        line += supp_helpers::is_stack_rule_active(stack, frame, type) ? stack->get_frame_field_value(frame, type)
                                                                       : any_value(i);
        line += separators()[i];
    }
    return line;
}

std::wstring create_stack_line(boost::shared_ptr<probstore3::agg_source_location_t> location)
{
    if (!location)
        return {};
    const std::uint64_t line_number = location->get_line();
    const std::array<std::wstring, 4> values = {
        location->exact_short_mod_name().as_wstring(), location->func_name().as_wstring(),
        location->short_file().as_wstring(),
        line_number == no_line ? std::wstring() : std::to_wstring(line_number)};
    std::wstring line;
    for (size_t i = 0; i < values.size(); ++i)
        line += values[i] + separators()[i];
    return line;
}

std::wstring create_rule_description(rule_ptr rule, std::set<int> any_types)
{
    if (!rule || separators().size() != stack_datatypes.size())
        return {};
    const auto own_stack = rule->get_stack_item();
    const bool stack_used = !own_stack || own_stack->is_active();
    const auto stack = stack_used ? rule->get_stack(true) : stack_ptr();
    const int top = supp_helpers::get_top_nonwidlcard_frame(stack);
    const bool top_used = stack && stack->is_frame_active(top);
    std::wstring text;
    for (size_t i = 0; i < stack_datatypes.size(); ++i) {
        const auto type = stack_datatypes[i];
        const bool concrete = top_used && stack->is_frame_field_active(top, type) && any_types.count(type) == 0;
        text += concrete ? stack->get_frame_field_value(top, type) : any_value(i);
        text += separators()[i];
    }
    return text;
}

} // namespace corr_dialogs2
