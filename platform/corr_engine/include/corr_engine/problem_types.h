#pragma once
// Readable problem types for the kinds the analysers report.
#include <string>
#include <string_view>

namespace corr_engine {

// ("memcheck", "InvalidRead") -> "Invalid read"; ("tsan", "data race") ->
// "Data race". A kind nobody named yet still reads well: "SomeNewKind" ->
// "Some new kind", "some-new-kind" -> "Some new kind".
std::string readable_problem_type(std::string_view tool, std::string_view kind);

} // namespace corr_engine
