#pragma once
// Readable problem types for the kinds the analysers report.
#include "probstore3/problem.h"

#include <string>
#include <string_view>

namespace corr_engine {

// ("memcheck", "InvalidRead") -> "Invalid read"; ("tsan", "data race") ->
// "Data race". A kind nobody named yet still reads well: "SomeNewKind" ->
// "Some new kind", "some-new-kind" -> "Some new kind".
// Never empty.
std::string readable_problem_type(std::string_view tool, std::string_view kind);

// Analysers print whatever bytes the program had (file names, symbols).
// Every text of an imported problem is made valid UTF-8: a byte that is not
// part of a valid sequence, and NUL, become U+FFFD. Everything built from a
// problem (a rule, a suppression file, JSON) is then valid text.
void make_valid_utf8(std::string& text);
void make_valid_utf8(probstore3::problem_t& problem);

} // namespace corr_engine
