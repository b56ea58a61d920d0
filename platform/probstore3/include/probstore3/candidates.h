#pragma once
// Candidate rules made from problems: what a host hands to the
// create-suppression dialog for the problems the user selected.
#include "probstore3/problem.h"
#include "probstore3/suppression_rule_set.h"

#include <vector>

namespace probstore3 {

// A rule naming the problem's type, its description and its main stack,
// every field of every frame concrete (a line only with a concrete source),
// and only the best frame used; a problem without a valid best level uses
// every frame. The rule remembers the problem's id.
rule_ptr create_rule(const problem_t& problem);

// One rule per problem, in the given order; no name yet, type best-location.
rule_set_ptr create_candidate_rule_set(const std::vector<const problem_t*>& problems);
rule_set_ptr create_candidate_rule_set(const std::vector<problem_t>& problems);

} // namespace probstore3
