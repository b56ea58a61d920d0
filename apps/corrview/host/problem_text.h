#pragma once
// How the viewer writes a problem and its frames: the columns of the
// problems view and the lines of the stack pane.
#include "probstore3/problem.h"
#include "probstore3/suppression_rule_set.h"

#include <string>

namespace corrview {

std::wstring problem_type_text(const probstore3::problem_t& problem);
std::wstring problem_description_text(const probstore3::problem_t& problem);
// The best frame as a stack line ("module!function - file:line"); empty
// when the problem has none.
std::wstring best_location_text(const probstore3::problem_t& problem);
// One frame as a stack line.
std::wstring frame_text(const probstore3::frame_t& frame);
// The name of the rule set, or empty for none.
std::wstring rule_set_name(const probstore3::rule_set_ptr& rule_set);

} // namespace corrview
