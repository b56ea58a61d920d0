#pragma once
// The library's view of a suppression file: save it (always in the current
// format), learn whether it is still in an older format, and report
// failures through small callback objects that the dialogs implement.
#include "corr_dialogs2/export.h"

#include "probstore3/suppression_file.h"
#include "suppfmt3/errdef.h"

#include <boost/shared_ptr.hpp>

#include <set>
#include <string>
#include <vector>

namespace corr_dialogs2 {

class CORR_DIALOGS2_API suppression_file_t
{
public:
    virtual ~suppression_file_t();
    // Writes the file to its own path in the current format; 0 on success.
    virtual suppfmt3::suppfmt_errdef save() = 0;
    virtual std::wstring get_path() const = 0;
    // Whether the file is in the format this version writes.
    virtual bool is_current_format() const = 0;

    // The rule sets the dialogs add to or remove from the file; the change
    // reaches the disk with the next save.
    virtual void add_suppression(const boost::shared_ptr<probstore3::suppression_rule_set_t>& rule_set) = 0;
    virtual void remove_suppression(const boost::shared_ptr<probstore3::suppression_rule_set_t>& rule_set) = 0;
    // The problem store's file; may be null.
    virtual boost::shared_ptr<probstore3::suppression_file_t> get_file() const = 0;
};

class CORR_DIALOGS2_API suppression_file_impl_t : public suppression_file_t
{
public:
    explicit suppression_file_impl_t(boost::shared_ptr<probstore3::suppression_file_t> file);
    ~suppression_file_impl_t() override;

    // Without a file: error 27 (se_no_file). Otherwise the file's own save
    // in the current format, followed on success by resync_suppressions().
    suppfmt3::suppfmt_errdef save() override;
    // Empty without a file.
    std::wstring get_path() const override;
    // True without a file.
    bool is_current_format() const override;

    void add_suppression(const boost::shared_ptr<probstore3::suppression_rule_set_t>& rule_set) override;
    void remove_suppression(const boost::shared_ptr<probstore3::suppression_rule_set_t>& rule_set) override;
    boost::shared_ptr<probstore3::suppression_file_t> get_file() const override { return m_file; }

private:
    boost::shared_ptr<probstore3::suppression_file_t> m_file;
};

// Told once for each file whose save failed.
class CORR_DIALOGS2_API supp_file_error_notification_t
{
public:
    virtual ~supp_file_error_notification_t();
    virtual void notify(suppfmt3::suppfmt_errdef code, const std::wstring& path) = 0;
};

// Asked before files in an older format are rewritten in the current one.
class CORR_DIALOGS2_API supp_file_rewrite_prompt_t
{
public:
    virtual ~supp_file_rewrite_prompt_t();
    // files: those that would be rewritten. True when rewriting may go ahead.
    virtual bool confirm_rewrite(const std::vector<boost::shared_ptr<suppression_file_t>>& files) = 0;
};

using suppression_file_ptr = boost::shared_ptr<suppression_file_t>;

// Saves every file in the set's order; a failure does not stop the others.
// Each failure is reported to notification (when given) with the error
// code and the file's path. True only when every file was saved.
CORR_DIALOGS2_API bool save_suppression_files(const std::set<boost::shared_ptr<suppression_file_t>>& files,
                                              boost::shared_ptr<supp_file_error_notification_t> notification);
CORR_DIALOGS2_API bool
save_suppression_files(const std::set<boost::shared_ptr<probstore3::suppression_file_t>>& files,
                       boost::shared_ptr<supp_file_error_notification_t> notification);

// The wrapper of a problem-store file.
CORR_DIALOGS2_API suppression_file_ptr wrap_suppression_file(boost::shared_ptr<probstore3::suppression_file_t> file);

// The files of the set that fail the current-format test, in the set's order.
CORR_DIALOGS2_API std::vector<suppression_file_ptr>
get_files_to_rewrite(const std::set<boost::shared_ptr<suppression_file_t>>& files);

// Asks prompt about the files that are in an older format. True without
// asking when there are none or there is no prompt.
CORR_DIALOGS2_API bool confirm_rewrite_if_needed(boost::shared_ptr<supp_file_rewrite_prompt_t> prompt,
                                                 const std::set<boost::shared_ptr<suppression_file_t>>& files);

} // namespace corr_dialogs2
