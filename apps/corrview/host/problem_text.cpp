#include "problem_text.h"

#include "corr_dialogs2/supp_helpers.h"
#include "platkit/strings/convert.h"
#include "probstore3/source_location.h"

#include <boost/make_shared.hpp>

namespace corrview {

using platkit::strings::utf8_to_wide;

std::wstring problem_type_text(const probstore3::problem_t& problem)
{
    return utf8_to_wide(problem.type.empty() ? problem.kind : problem.type);
}

std::wstring problem_description_text(const probstore3::problem_t& problem)
{
    return utf8_to_wide(problem.description);
}

std::wstring best_location_text(const probstore3::problem_t& problem)
{
    return corr_dialogs2::create_stack_line(
        probstore3::agg_source_location_t::from_problem(problem));
}

std::wstring frame_text(const probstore3::frame_t& frame)
{
    return corr_dialogs2::create_stack_line(
        boost::make_shared<probstore3::agg_source_location_t>(frame));
}

std::wstring rule_set_name(const probstore3::rule_set_ptr& rule_set)
{
    return rule_set ? rule_set->get_name() : std::wstring();
}

} // namespace corrview
