#pragma once
// Result codes of reading and writing suppression files.

namespace suppfmt3 {

enum suppfmt_errdef : int
{
    se_success = 0,
    se_cannot_open = 1,          // the file cannot be opened for reading
    se_cannot_read = 2,          // opened, but reading failed
    se_not_suppression_file = 3, // the first line is not a suppression-file header
    se_unsupported_version = 4,  // a header of a format this version does not know
    se_parse_error = 5,          // the text breaks the grammar (file, line and reason are kept)
    se_cannot_create = 6,        // no temporary file can be made in the target folder
    se_cannot_write = 7,         // writing or flushing the temporary file failed
    se_cannot_rename = 8,        // the temporary file cannot replace the target
    se_format_not_writable = 9,  // only the current format is written
    se_empty_rule_set = 10,      // a rule set without rules has no text form
    se_no_path = 11,             // the file has no path to be written to
    se_no_file = 27,             // there is no file object at all
};

} // namespace suppfmt3
