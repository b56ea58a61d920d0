#include "suppfmt3/suppression_rule.h"

namespace suppfmt3 {

int suppression_rule_t::slot(suppfmt_datatype type)
{
    for (size_t i = 0; i < rule_datatypes.size(); ++i)
        if (rule_datatypes[i] == type)
            return static_cast<int>(i);
    return -1;
}

bool suppression_rule_t::has_own_location() const
{
    for (auto type : frame_datatypes)
        if (m_items[static_cast<size_t>(slot(type))])
            return true;
    return false;
}

suppression_rule_t::item_ptr suppression_rule_t::get_item(suppfmt_datatype type) const
{
    const int s = slot(type);
    return s < 0 ? item_ptr() : m_items[static_cast<size_t>(s)];
}

void suppression_rule_t::set_item(item_ptr item)
{
    if (!item)
        return;
    const int s = slot(item->get_datatype());
    if (s >= 0) {
        m_items[static_cast<size_t>(s)] = std::move(item);
        touch();
    }
}

void suppression_rule_t::remove_item(suppfmt_datatype type)
{
    const int s = slot(type);
    if (s >= 0 && m_items[static_cast<size_t>(s)]) {
        m_items[static_cast<size_t>(s)].reset();
        touch();
    }
}

shared_pointer<stack_item_t> suppression_rule_t::get_stack_item() const
{
    return as_stack_item(get_item(sdt_call_stack));
}

bool suppression_rule_t::is_item_available(suppfmt_datatype type) const
{
    if (get_item(type))
        return true;
    if (!is_frame_datatype(type))
        return false;
    const auto stack = get_stack_item();
    return stack && !stack->empty();
}

bool suppression_rule_t::is_item_active(suppfmt_datatype type) const
{
    if (const auto item = get_item(type))
        return item->is_active();
    if (!is_frame_datatype(type))
        return false;
    const auto stack = get_stack_item();
    if (!stack)
        return false;
    for (size_t i = 0; i < stack->size(); ++i)
        if (stack->is_frame_active(i) && is_frame_field_active(stack->frame(i), type))
            return true;
    return false;
}

void suppression_rule_t::set_item_active(bool on, suppfmt_datatype type)
{
    if (const auto item = get_item(type)) {
        item->set_active(on);
        return;
    }
    if (!is_frame_datatype(type))
        return;
    const auto stack = get_stack_item();
    if (!stack)
        return;
    for (size_t i = 0; i < stack->size(); ++i) {
        auto& f = stack->edit_frame(i);
        if (type == sdt_line) {
            f.line_active = on && f.source_active && is_concrete_source(f.source);
        } else {
            set_frame_field_active(f, type, on);
            if (type == sdt_source && !on)
                f.line_active = false;
        }
    }
}

shared_pointer<stack_item_t> suppression_rule_t::make_effective_stack() const
{
    if (const auto stack = get_stack_item())
        return stack;
    if (!has_own_location())
        return {};
    callstack_frame_t frame;
    auto take = [this](suppfmt_datatype type, std::string& value, bool& active) {
        const auto item = get_item(type);
        value = item ? item->get_text() : std::string();
        active = item && item->is_active();
    };
    take(sdt_module, frame.module, frame.module_active);
    take(sdt_function, frame.function, frame.function_active);
    take(sdt_source, frame.source, frame.source_active);
    const auto line = get_item(sdt_line);
    if (const auto* line_item = dynamic_cast<const line_item_t*>(line.get())) {
        frame.line = line_item->get_line();
        frame.line_active = line_item->is_active();
    } else {
        frame.line_active = false;
    }
    shared_pointer<stack_item_t> stack(new stack_item_t({frame}, 0));
    return stack;
}

bool suppression_rule_t::convert_to_stack()
{
    if (get_stack_item() || !has_own_location())
        return false;
    set_item(make_effective_stack());
    for (auto type : frame_datatypes)
        remove_item(type);
    return true;
}

std::string suppression_rule_t::get_value_text(suppfmt_datatype type) const
{
    if (const auto item = get_item(type))
        return item->get_text();
    if (!is_frame_datatype(type))
        return {};
    const auto stack = get_stack_item();
    if (!stack)
        return {};
    const int best = stack->get_best_level();
    if (best < 0 || static_cast<size_t>(best) >= stack->size())
        return {};
    return frame_field_text(stack->frame(static_cast<size_t>(best)), type);
}

void suppression_rule_t::copy_items_from(const suppression_rule_t& other)
{
    for (size_t i = 0; i < m_items.size(); ++i)
        m_items[i] = other.m_items[i] ? other.m_items[i]->clone() : item_ptr();
    touch();
}

std::uint64_t suppression_rule_t::last_change_with_items() const
{
    std::uint64_t latest = last_change();
    for (const auto& item : m_items)
        if (item && item->last_change() > latest)
            latest = item->last_change();
    return latest;
}

} // namespace suppfmt3
