#pragma once
// The source location of a problem (its best frame), as the viewer shows it.
#include "probstore3/problem.h"

#include "platkit/types/variant.h"

#include <boost/shared_ptr.hpp>

namespace probstore3 {

class agg_source_location_t
{
public:
    agg_source_location_t() = default;
    explicit agg_source_location_t(const frame_t& frame) : m_frame(frame) {}

    // The best frame of a problem; null when it has none.
    static boost::shared_ptr<agg_source_location_t> from_problem(const problem_t& problem);

    // The module's file name without folders ("libc.so.6").
    platkit::types::variant exact_short_mod_name() const;
    platkit::types::variant func_name() const;
    // The source's file name without folders ("main.c").
    platkit::types::variant short_file() const;
    // The source as recorded, with its folders.
    platkit::types::variant full_file() const;
    // The line, or probstore3::no_line.
    std::uint64_t get_line() const { return m_frame.line; }

private:
    frame_t m_frame;
};

} // namespace probstore3
