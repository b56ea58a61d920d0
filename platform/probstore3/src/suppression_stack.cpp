#include "probstore3/suppression_stack.h"

#include "platkit/strings/convert.h"

namespace probstore3 {

suppression_stack_t::suppression_stack_t(shared_pointer<suppfmt3::stack_item_t> item) : m_item(std::move(item)) {}

bool suppression_stack_t::valid(int frame) const
{
    return m_item && frame >= 0 && static_cast<size_t>(frame) < m_item->size();
}

int suppression_stack_t::stack_size() const { return m_item ? static_cast<int>(m_item->size()) : 0; }

bool suppression_stack_t::is_frame_active(int frame) const
{
    return valid(frame) && m_item->is_frame_active(static_cast<size_t>(frame));
}

void suppression_stack_t::set_frame_active(int frame, bool on)
{
    if (valid(frame))
        m_item->set_frame_active(static_cast<size_t>(frame), on);
}

bool suppression_stack_t::is_frame_field_active(int frame, suppfmt3::suppfmt_datatype type) const
{
    return valid(frame) && suppfmt3::is_frame_field_active(m_item->frame(static_cast<size_t>(frame)), type);
}

std::wstring suppression_stack_t::get_frame_field_value(int frame, suppfmt3::suppfmt_datatype type) const
{
    if (!valid(frame))
        return {};
    return platkit::strings::utf8_to_wide(suppfmt3::frame_field_text(m_item->frame(static_cast<size_t>(frame)), type));
}

int suppression_stack_t::get_best_level() const { return m_item ? m_item->get_best_level() : -1; }

bool suppression_stack_t::is_best_location() const { return m_item && m_item->is_best_location(); }

void suppression_stack_t::normalize()
{
    if (m_item)
        m_item->normalize();
}

} // namespace probstore3
