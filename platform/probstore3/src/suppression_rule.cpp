#include "probstore3/suppression_rule.h"

#include "platkit/strings/convert.h"

namespace probstore3 {

using namespace suppfmt3;

std::wstring suppression_rule_t::get_field_value(suppfmt_datatype type) const
{
    if (type == sdt_call_stack) {
        const auto stack = make_effective_stack();
        return stack ? platkit::strings::utf8_to_wide(stack->get_text()) : std::wstring();
    }
    return platkit::strings::utf8_to_wide(get_value_text(type));
}

std::wstring suppression_rule_t::get_datatype_international(suppfmt_datatype type) const
{
    switch (type) {
    case sdt_problem_type:
        return L"Problem type";
    case sdt_description:
        return L"Description";
    case sdt_module:
        return L"Module";
    case sdt_function:
        return L"Function";
    case sdt_source:
        return L"Source file";
    case sdt_line:
        return L"Line";
    case sdt_call_stack:
        return L"Call stack";
    default:
        return {};
    }
}

shared_pointer<suppression_stack_t> suppression_rule_t::get_stack(bool read_only) const
{
    if (!read_only) {
        const auto item = get_stack_item();
        return item ? shared_pointer<suppression_stack_t>(new suppression_stack_t(item))
                    : shared_pointer<suppression_stack_t>();
    }
    const auto effective = make_effective_stack();
    if (!effective)
        return {};
    auto copy = as_stack_item(effective->clone());
    copy->normalize();
    return shared_pointer<suppression_stack_t>(new suppression_stack_t(copy));
}

shared_pointer<suppression_rule_t> suppression_rule_t::clone() const
{
    shared_pointer<suppression_rule_t> copy(new suppression_rule_t);
    copy->copy_items_from(*this);
    copy->m_problem_id = m_problem_id;
    return copy;
}

} // namespace probstore3
