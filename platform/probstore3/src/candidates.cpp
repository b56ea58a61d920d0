#include "probstore3/candidates.h"

#include <boost/make_shared.hpp>

namespace probstore3 {

using namespace suppfmt3;

rule_ptr create_rule(const problem_t& problem)
{
    rule_ptr rule(new suppression_rule_t);
    rule->set_item(shared_pointer<rule_item>(new value_item_t(sdt_problem_type, problem.type)));
    rule->set_item(shared_pointer<rule_item>(new value_item_t(sdt_description, problem.description)));
    rule->set_problem_id(problem.id);
    if (problem.stacks.empty() || problem.stacks.front().frames.empty())
        return rule;

    const auto& frames = problem.stacks.front().frames;
    const bool best_valid = problem.best_level >= 0 && static_cast<size_t>(problem.best_level) < frames.size();
    shared_pointer<stack_item_t> stack(new stack_item_t);
    for (size_t i = 0; i < frames.size(); ++i) {
        const frame_t& in = frames[i];
        callstack_frame_t f;
        f.module = in.module;
        f.function = in.function;
        f.source = in.source;
        f.line = in.line;
        f.line_active = is_concrete_source(f.source);
        stack->add_frame(std::move(f), !best_valid || static_cast<int>(i) == problem.best_level);
    }
    stack->set_best_level(best_valid ? problem.best_level : -1);
    rule->set_item(stack);
    return rule;
}

rule_set_ptr create_candidate_rule_set(const std::vector<const problem_t*>& problems)
{
    auto set = boost::make_shared<suppression_rule_set_t>();
    suppression_rule_set_t::rules_t rules;
    rules.reserve(problems.size());
    for (const problem_t* p : problems)
        if (p)
            rules.push_back(create_rule(*p));
    set->set_rules(std::move(rules));
    set->set_type(srt_best_location);
    return set;
}

rule_set_ptr create_candidate_rule_set(const std::vector<problem_t>& problems)
{
    std::vector<const problem_t*> pointers;
    pointers.reserve(problems.size());
    for (const auto& p : problems)
        pointers.push_back(&p);
    return create_candidate_rule_set(pointers);
}

} // namespace probstore3
