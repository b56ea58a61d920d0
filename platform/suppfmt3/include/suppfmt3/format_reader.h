#pragma once
// Reads the text of a suppression file (both the current and the previous
// format) into rule sets, keeping what a rewrite needs to preserve: the
// comment and blank lines around each rule set and where its text lies.
#include "suppfmt3/errdef.h"
#include "suppfmt3/file_format.h"
#include "suppfmt3/suppression_rule.h"
#include "suppfmt3/suppression_rule_set.h"

#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace suppfmt3 {

struct parse_error_t
{
    suppfmt_errdef code = se_success;
    size_t line = 0;    // 1-based; 0 when the error is not tied to a line
    std::string reason; // UTF-8
};

struct parsed_rule_set_t
{
    std::string name;
    suppression_rule_set_type type = srt_unspecified;
    std::vector<shared_pointer<suppression_rule_t>> rules;
    // Lines before the rule set: up to and including the last blank line
    // (they stay in place when the set is removed), then the comment lines
    // directly above it (they go with it).
    std::vector<std::string> detached;
    std::vector<std::string> attached;
    // Comment lines inside the block; a canonical rewrite moves them above.
    std::vector<std::string> inner;
    // The block's bytes in the source, from "suppression" to the line
    // ending after "end".
    size_t text_begin = 0;
    size_t text_end = 0;
    size_t first_line = 0;
};

struct parsed_file_t
{
    suppression_file_format_t format = sff_unknown;
    std::string header; // the first line as written, without byte-order mark and line ending
    std::deque<parsed_rule_set_t> rule_sets;
    std::vector<std::string> trailer; // blank and comment lines after the last rule set
};

// Makes the rule objects the reader fills; the problem store passes one
// that makes its own rule class.
using rule_factory_t = std::function<shared_pointer<suppression_rule_t>()>;

class format_reader_t
{
public:
    explicit format_reader_t(rule_factory_t factory = {});

    // Reads a whole file. On failure returns false, error says why and on
    // which line, and out is left empty: a file is read completely or not at all.
    bool read(std::string_view text, parsed_file_t& out, parse_error_t& error) const;
    // Reads the text of one current-format block ("suppression" to "end").
    bool read_block(std::string_view text, parsed_rule_set_t& out, parse_error_t& error) const;

private:
    rule_factory_t m_factory;
};

} // namespace suppfmt3
