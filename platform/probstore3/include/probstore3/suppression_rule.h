#pragma once
// A suppression rule as the store holds it: the rule data plus display
// texts, a stack view, and the problem it was made from.
#include "probstore3/suppression_stack.h"

#include "suppfmt3/suppression_rule.h"

#include <cstdint>
#include <optional>
#include <string>

namespace probstore3 {

class suppression_rule_t : public suppfmt3::suppression_rule_t
{
public:
    suppression_rule_t() = default;

    // The value of an aspect as shown to the user; location fields of a
    // stack rule are those of its best frame, the stack is one frame a line.
    std::wstring get_field_value(suppfmt3::suppfmt_datatype type) const;
    // The store's own display name of an aspect ("Problem type", ...);
    // empty for a number that is no aspect.
    std::wstring get_datatype_international(suppfmt3::suppfmt_datatype type) const;

    // read_only false: a live view on the rule's stack item (null when the
    // rule has no stack); edits change the rule. read_only true: a
    // normalised copy of the stack the rule stands for, also for a rule that
    // only has a location of its own; for printing.
    shared_pointer<suppression_stack_t> get_stack(bool read_only) const;

    // The problem this rule was made from, when it was made from one.
    std::optional<std::uint64_t> get_problem_id() const { return m_problem_id; }
    void set_problem_id(std::optional<std::uint64_t> id) { m_problem_id = id; }

    // A deep copy: items of its own, the same problem id.
    shared_pointer<suppression_rule_t> clone() const;

protected:
    ~suppression_rule_t() override = default;

private:
    std::optional<std::uint64_t> m_problem_id;
};

using rule_ptr = shared_pointer<suppression_rule_t>;

} // namespace probstore3
