#include "corr_dialogs2/suppression_file.h"

#include <boost/make_shared.hpp>

namespace corr_dialogs2 {

suppression_file_t::~suppression_file_t() = default;
supp_file_error_notification_t::~supp_file_error_notification_t() = default;
supp_file_rewrite_prompt_t::~supp_file_rewrite_prompt_t() = default;

suppression_file_impl_t::suppression_file_impl_t(boost::shared_ptr<probstore3::suppression_file_t> file)
    : m_file(std::move(file))
{
}

suppression_file_impl_t::~suppression_file_impl_t() = default;

suppfmt3::suppfmt_errdef suppression_file_impl_t::save()
{
    if (!m_file)
        return suppfmt3::se_no_file;
    // Whatever format the file was read in, it is written in the current one.
    const auto result = m_file->save(m_file->get_path(), probstore3::suppression_file_t::get_current_file_format());
    if (result == suppfmt3::se_success)
        m_file->resync_suppressions();
    return result;
}

std::wstring suppression_file_impl_t::get_path() const { return m_file ? m_file->get_path() : std::wstring(); }

bool suppression_file_impl_t::is_current_format() const
{
    return !m_file || m_file->get_file_format() == probstore3::suppression_file_t::get_current_file_format();
}

void suppression_file_impl_t::add_suppression(const boost::shared_ptr<probstore3::suppression_rule_set_t>& rule_set)
{
    if (m_file)
        m_file->add_suppression(rule_set);
}

void suppression_file_impl_t::remove_suppression(
    const boost::shared_ptr<probstore3::suppression_rule_set_t>& rule_set)
{
    if (m_file)
        m_file->remove_suppression(rule_set);
}

bool save_suppression_files(const std::set<boost::shared_ptr<suppression_file_t>>& files,
                            boost::shared_ptr<supp_file_error_notification_t> notification)
{
    bool all_saved = true;
    for (const auto& file : files) {
        const auto result = file ? file->save() : suppfmt3::se_no_file;
        if (result == suppfmt3::se_success)
            continue;
        all_saved = false;
        if (notification)
            notification->notify(result, file ? file->get_path() : std::wstring());
    }
    return all_saved;
}

bool save_suppression_files(const std::set<boost::shared_ptr<probstore3::suppression_file_t>>& files,
                            boost::shared_ptr<supp_file_error_notification_t> notification)
{
    // Wrapped one by one so that the order of the given set is kept.
    bool all_saved = true;
    for (const auto& file : files) {
        std::set<suppression_file_ptr> one{wrap_suppression_file(file)};
        all_saved = save_suppression_files(one, notification) && all_saved;
    }
    return all_saved;
}

suppression_file_ptr wrap_suppression_file(boost::shared_ptr<probstore3::suppression_file_t> file)
{
    return boost::make_shared<suppression_file_impl_t>(std::move(file));
}

std::vector<suppression_file_ptr> get_files_to_rewrite(const std::set<boost::shared_ptr<suppression_file_t>>& files)
{
    std::vector<suppression_file_ptr> out;
    for (const auto& f : files)
        if (f && !f->is_current_format())
            out.push_back(f);
    return out;
}

bool confirm_rewrite_if_needed(boost::shared_ptr<supp_file_rewrite_prompt_t> prompt,
                               const std::set<boost::shared_ptr<suppression_file_t>>& files)
{
    const auto old_files = get_files_to_rewrite(files);
    if (old_files.empty() || !prompt)
        return true;
    return prompt->confirm_rewrite(old_files);
}

} // namespace corr_dialogs2
