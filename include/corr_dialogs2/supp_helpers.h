#pragma once
// Reading, toggling and printing the aspects and stack frames of suppression
// rules: what every grid model and suppression dialog uses. None of these
// reports an error: a null pointer or an index out of range gives a neutral
// result (empty text, 0, false; true for is_stack_rule_active) and changes
// nothing. GUI thread only.
#include "corr_dialogs2/export.h"

#include "basekit2/path.h"
#include "probstore3/source_location.h"
#include "probstore3/suppression_rule.h"
#include "probstore3/suppression_stack.h"
#include "suppfmt3/datatype.h"
#include "suppfmt3/suppression_rule.h"

#include <boost/shared_ptr.hpp>

#include <set>
#include <string>
#include <vector>

namespace corr_dialogs2 {

using rule_ptr = platkit::memory::pointers::shared_pointer<probstore3::suppression_rule_t>;
using stack_ptr = platkit::memory::pointers::shared_pointer<probstore3::suppression_stack_t>;
using rule_item_ptr = platkit::memory::pointers::shared_pointer<suppfmt3::rule_item>;

namespace supp_helpers {

// A frame field as text: module, function or source; the line in decimal
// (empty for no line); empty for another datatype or an index out of range.
CORR_DIALOGS2_API std::wstring get_stack_frame_value(suppfmt3::suppression_rule_t::callstack_t frames, int frame,
                                                     suppfmt3::suppfmt_datatype type);

// Whether a frame field is used; true for a null stack or an absent frame.
CORR_DIALOGS2_API bool is_stack_rule_active(stack_ptr stack, int frame, suppfmt3::suppfmt_datatype type);

// Switches one field of a frame of a stack item. Switching the source off
// also switches the line off; the line is only ever on together with a
// used, concrete source (not empty, not "*").
CORR_DIALOGS2_API void set_stack_item_active(rule_item_ptr item, int frame, suppfmt3::suppfmt_datatype type,
                                             bool on);
// The same for the four fields of a frame, module, function, source, line.
CORR_DIALOGS2_API void set_frame_items_active(rule_item_ptr item, int frame, bool on);

// Whether a frame of the rule's stack is used (not elided).
CORR_DIALOGS2_API bool is_frame_active(rule_ptr rule, int frame);
CORR_DIALOGS2_API void set_frame_active(rule_ptr rule, int frame, bool on);

// The first used frame with at least one used field; the stack's best level
// when there is none; 0 for a null stack.
CORR_DIALOGS2_API int get_top_nonwidlcard_frame(stack_ptr stack);
CORR_DIALOGS2_API int get_active_frames_count(stack_ptr stack);

// The default selection: every field of every frame on (a line only with a
// concrete source), every frame elided except the best one.
CORR_DIALOGS2_API void reset_to_default(rule_ptr rule);

// Paths from the text lines of a suppression-file list: empty lines are
// skipped, relative ones are taken in base, a folder stands for the "*.sup"
// files in it; with only_existing, a file path that does not exist is
// skipped. The order of the lines is kept.
CORR_DIALOGS2_API std::vector<basekit2::path_t> get_paths_from_strings(const std::vector<std::wstring>& strings,
                                                                       const std::wstring& base,
                                                                       bool only_existing);

} // namespace supp_helpers

// A frame as one line, "module!function - source:line", a wildcard field as
// "[" any-value word "]", an elided frame as "...".
CORR_DIALOGS2_API std::wstring create_stack_line(stack_ptr stack, int frame);
// A problem's source location in the same layout.
CORR_DIALOGS2_API std::wstring create_stack_line(boost::shared_ptr<probstore3::agg_source_location_t> location);

// A rule as one line: the fields of its top non-wildcard frame in the stack
// line layout. Fields whose datatype is in any_types, fields not used in
// that frame, and every field of a rule without a (used) stack are shown as
// bracketed any-value words.
CORR_DIALOGS2_API std::wstring create_rule_description(rule_ptr rule, std::set<int> any_types);

} // namespace corr_dialogs2
