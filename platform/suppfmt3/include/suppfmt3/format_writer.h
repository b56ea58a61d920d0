#pragma once
// Writes rule sets in the canonical text of the current format. The output
// depends only on the rule data, so writing the same data twice gives the
// same bytes.
#include "suppfmt3/file_format.h"
#include "suppfmt3/suppression_rule.h"
#include "suppfmt3/suppression_rule_set.h"

#include <string>
#include <string_view>
#include <vector>

namespace suppfmt3 {

class format_writer_t
{
public:
    // "corr-suppressions 2": the first line of a file of that format.
    static std::string header_line(suppression_file_format_t format = sff_current);

    // Appends one block, every line ended by '\n'. A rule without a stack
    // but with a location of its own is written as a stack of that one frame.
    static void write_rule_set(std::string& out, std::string_view name, suppression_rule_set_type type,
                               const std::vector<const suppression_rule_t*>& rules);
};

// The keyword of a rule-set type in the file ("best-location"), and back.
const char* rule_set_type_keyword(suppression_rule_set_type type);
bool rule_set_type_from_keyword(std::string_view word, suppression_rule_set_type& type);

} // namespace suppfmt3
