#pragma once
// The aspects of a suppression rule. The numbers are part of the interface:
// hosts and stored settings pass them as plain ints.
#include <array>

namespace suppfmt3 {

enum suppfmt_datatype : int
{
    sdt_none = 0,
    sdt_problem_type = 9,
    sdt_module = 13,
    sdt_source = 16,
    sdt_function = 20,
    sdt_line = 21,
    sdt_description = 60,
    sdt_call_stack = 95,
};

// Every aspect, in the order rules are shown and written.
inline constexpr std::array<suppfmt_datatype, 7> rule_datatypes = {
    sdt_problem_type, sdt_description, sdt_module, sdt_function, sdt_source, sdt_line, sdt_call_stack};

// The fields of a stack frame, in the order they are shown and written.
inline constexpr std::array<suppfmt_datatype, 4> frame_datatypes = {sdt_module, sdt_function, sdt_source,
                                                                    sdt_line};

inline constexpr bool is_frame_datatype(int type)
{
    return type == sdt_module || type == sdt_function || type == sdt_source || type == sdt_line;
}

} // namespace suppfmt3
