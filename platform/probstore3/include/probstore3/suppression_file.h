#pragma once
// A suppression file ("*.sup"): its rule sets, read from and written to
// disk in the text format of docs/suppression-files.md. Reading is all or
// nothing; writing replaces the file atomically, so a failed save leaves the
// old file as it was. Comments and, for rule sets that did not change, the
// exact text survive a rewrite.
#include "probstore3/suppression_rule_set.h"

#include "suppfmt3/errdef.h"
#include "suppfmt3/file_format.h"
#include "suppfmt3/format_reader.h"

#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>

#include <memory>
#include <string>
#include <vector>

namespace probstore3 {

class suppression_file_t : public boost::enable_shared_from_this<suppression_file_t>
{
public:
    using rule_sets_t = std::vector<boost::shared_ptr<suppression_rule_set_t>>;

    // An empty file object for path, in the current format; nothing is
    // read or written until load or save. Make it with boost::make_shared so
    // that its rule sets can name it (suppression_rule_set_t::get_file).
    explicit suppression_file_t(std::wstring path = {});
    ~suppression_file_t();
    suppression_file_t(const suppression_file_t&) = delete;
    suppression_file_t& operator=(const suppression_file_t&) = delete;

    // Reads path and takes it as the file's path. On failure nothing
    // changes and get_last_error() says what and where
    // ("<path>:<line>: <reason>").
    suppfmt3::suppfmt_errdef load(const std::wstring& path);
    // A new file object read from path; null on failure, with the reason in
    // error when given.
    static boost::shared_ptr<suppression_file_t> open(const std::wstring& path, std::wstring* error = nullptr);

    // include_unsaved true: the rule sets as they are now; false: as they
    // were when the file was last read or written.
    rule_sets_t get_rulesets(bool include_unsaved = true) const;
    // Appends a rule set (once) and makes this file its file.
    void add_suppression(const boost::shared_ptr<suppression_rule_set_t>& rule_set);
    // Takes a rule set out; the blank and comment lines above it that are
    // separated from it by a blank line stay in the file.
    void remove_suppression(const boost::shared_ptr<suppression_rule_set_t>& rule_set);
    // After a save: makes this file the file of each of its rule sets and
    // the saved state the current one.
    void resync_suppressions();

    // The file as it is in memory now: its rule sets (shared, not copied),
    // the text around them and what was last saved. restore() puts it back,
    // so that edits which could not be saved leave memory as it was, in
    // step with the file on disk.
    class snapshot_t;
    std::shared_ptr<const snapshot_t> take_snapshot() const;
    // Rule sets added since the snapshot no longer name this file; those
    // removed since name it again. The last error is kept.
    void restore(const snapshot_t& snapshot);

    // Writes the rule sets to path in format, which must be the current
    // one. Writing to the file's own path also makes the file current-format
    // and the written text the reference for the next rewrite.
    suppfmt3::suppfmt_errdef save(const std::wstring& path, suppfmt3::suppression_file_format_t format);
    // The text save would write.
    std::string to_text() const;

    // The format the file was read in (the current one for a new file).
    suppfmt3::suppression_file_format_t get_file_format() const;
    static suppfmt3::suppression_file_format_t get_current_file_format();

    const std::wstring& get_path() const;
    // The last failure of load or save, in words, with path (and line).
    const std::wstring& get_last_error() const;
    // The last parse failure (line and reason); code se_success when none.
    const suppfmt3::parse_error_t& get_last_parse_error() const;

private:
    struct state;
    std::unique_ptr<state> m;
};

using file_ptr = boost::shared_ptr<suppression_file_t>;

} // namespace probstore3
