#pragma once
// Which suppression hides a problem. A rule matches a problem when every
// active aspect matches: the type and the description by exact value, and
// the stack as a pattern over the problem's main stack. The pattern's active
// frames must appear in order; an elided frame between them stands for any
// number of frames (zero or more), adjacent active frames must be adjacent
// in the problem, and the pattern may start and end anywhere in the stack.
// Within an active frame every active field matches by exact value, and the
// source "*" matches any source.
//
// The matcher takes a snapshot of the rules when it is built (rebuild it
// after editing rules) and indexes them by a concrete function, module or
// problem type, so a problem is compared only with rules that can match it.
// match() is const and may be called from several threads at once.
#include "probstore3/problem.h"
#include "probstore3/suppression_file.h"
#include "probstore3/suppression_rule_set.h"

#include <memory>
#include <vector>

namespace probstore3 {

class suppression_matcher_t
{
public:
    explicit suppression_matcher_t(const std::vector<rule_set_ptr>& rule_sets);
    // Every rule set of the files, in file order.
    static suppression_matcher_t from_files(const std::vector<file_ptr>& files);
    ~suppression_matcher_t();
    suppression_matcher_t(suppression_matcher_t&&) noexcept;
    suppression_matcher_t& operator=(suppression_matcher_t&&) noexcept;

    struct match_t
    {
        rule_set_ptr rule_set;
        rule_ptr rule;
        explicit operator bool() const { return static_cast<bool>(rule_set); }
    };

    // The first rule set (in the order given) with a rule that matches; null when none.
    rule_set_ptr match(const problem_t& problem) const;
    // The same, with the rule that matched.
    match_t find(const problem_t& problem) const;

    size_t rule_count() const;

private:
    struct index;
    std::unique_ptr<index> m;
};

// The same test for one rule, without an index.
bool rule_matches(const suppfmt3::suppression_rule_t& rule, const problem_t& problem);

} // namespace probstore3
