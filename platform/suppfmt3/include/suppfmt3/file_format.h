#pragma once
// Versions of the suppression-file format. The first line of a file names it.

namespace suppfmt3 {

enum suppression_file_format_t : int
{
    sff_unknown = 0,
    sff_version_1 = 1, // previous: one rule per suppression, a single location, whole-aspect wildcards
    sff_version_2 = 2, // current: call stacks with elided frames and per-field wildcards
};

inline constexpr suppression_file_format_t sff_previous = sff_version_1;
inline constexpr suppression_file_format_t sff_current = sff_version_2;

} // namespace suppfmt3
