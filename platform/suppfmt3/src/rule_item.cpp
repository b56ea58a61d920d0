#include "suppfmt3/rule_item.h"

namespace suppfmt3 {

bool callstack_frame_t::operator==(const callstack_frame_t& o) const
{
    return module == o.module && module_active == o.module_active && function == o.function &&
           function_active == o.function_active && source == o.source && source_active == o.source_active &&
           line == o.line && line_active == o.line_active;
}

bool is_concrete_source(const std::string& source) { return !source.empty() && source != wildcard_source; }

bool is_frame_field_active(const callstack_frame_t& frame, suppfmt_datatype type)
{
    switch (type) {
    case sdt_module:
        return frame.module_active;
    case sdt_function:
        return frame.function_active;
    case sdt_source:
        return frame.source_active;
    case sdt_line:
        return frame.line_active;
    default:
        return false;
    }
}

void set_frame_field_active(callstack_frame_t& frame, suppfmt_datatype type, bool on)
{
    switch (type) {
    case sdt_module:
        frame.module_active = on;
        break;
    case sdt_function:
        frame.function_active = on;
        break;
    case sdt_source:
        frame.source_active = on;
        break;
    case sdt_line:
        frame.line_active = on;
        break;
    default:
        break;
    }
}

std::string frame_field_text(const callstack_frame_t& frame, suppfmt_datatype type)
{
    switch (type) {
    case sdt_module:
        return frame.module;
    case sdt_function:
        return frame.function;
    case sdt_source:
        return frame.source;
    case sdt_line:
        return frame.line == no_line ? std::string() : std::to_string(frame.line);
    default:
        return {};
    }
}

value_item_t::value_item_t(suppfmt_datatype type, std::string value, bool active)
    : rule_item(type, active), m_value(std::move(value))
{
}

shared_pointer<rule_item> value_item_t::clone() const
{
    return shared_pointer<rule_item>(new value_item_t(get_datatype(), m_value, is_active()));
}

line_item_t::line_item_t(std::uint64_t line, bool active) : rule_item(sdt_line, active), m_line(line) {}

std::string line_item_t::get_text() const { return m_line == no_line ? std::string() : std::to_string(m_line); }

shared_pointer<rule_item> line_item_t::clone() const
{
    return shared_pointer<rule_item>(new line_item_t(m_line, is_active()));
}

stack_item_t::stack_item_t() : rule_item(sdt_call_stack, true) {}

stack_item_t::stack_item_t(callstack_t frames, int best_level)
    : rule_item(sdt_call_stack, true), m_frames(std::move(frames)), m_frame_active(m_frames.size(), true),
      m_best_level(best_level)
{
}

void stack_item_t::add_frame(callstack_frame_t frame, bool active)
{
    m_frames.push_back(std::move(frame));
    m_frame_active.push_back(active);
    touch();
}

void stack_item_t::assign(callstack_t frames, std::vector<bool> active)
{
    m_frames = std::move(frames);
    m_frame_active = std::move(active);
    m_frame_active.resize(m_frames.size(), true);
    touch();
}

void stack_item_t::set_frame_active(size_t i, bool on)
{
    if (i < m_frame_active.size() && m_frame_active[i] != on) {
        m_frame_active[i] = on;
        touch();
    }
}

bool stack_item_t::is_best_location() const
{
    if (m_best_level < 0 || static_cast<size_t>(m_best_level) >= m_frames.size())
        return false;
    for (size_t i = 0; i < m_frames.size(); ++i)
        if (m_frame_active[i] != (i == static_cast<size_t>(m_best_level)))
            return false;
    return true;
}

void stack_item_t::normalize()
{
    bool changed = false;
    for (auto& f : m_frames) {
        if (f.line_active && (!f.source_active || !is_concrete_source(f.source))) {
            f.line_active = false;
            changed = true;
        }
    }
    if (m_best_level < -1 || m_best_level >= static_cast<int>(m_frames.size())) {
        m_best_level = -1;
        changed = true;
    }
    if (changed)
        touch();
}

std::string stack_item_t::get_text() const
{
    std::string out;
    for (size_t i = 0; i < m_frames.size(); ++i) {
        if (i)
            out += '\n';
        if (!m_frame_active[i]) {
            out += "...";
            continue;
        }
        const auto& f = m_frames[i];
        out += f.module_active ? f.module : std::string("*");
        out += '!';
        out += f.function_active ? f.function : std::string("*");
        out += " - ";
        out += f.source_active ? f.source : std::string("*");
        out += ':';
        out += f.line_active ? frame_field_text(f, sdt_line) : std::string("*");
    }
    return out;
}

shared_pointer<rule_item> stack_item_t::clone() const
{
    auto* copy = new stack_item_t(m_frames, m_best_level);
    copy->m_frame_active = m_frame_active;
    copy->set_active(is_active());
    return shared_pointer<rule_item>(copy);
}

shared_pointer<stack_item_t> as_stack_item(const shared_pointer<rule_item>& item)
{
    if (!item || item->get_datatype() != sdt_call_stack)
        return {};
    return platkit::memory::pointers::static_pointer_cast<stack_item_t>(item);
}

} // namespace suppfmt3
