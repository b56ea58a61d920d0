#include "probstore3/suppression_rule_set.h"

#include "probstore3/suppression_file.h"

#include "platkit/strings/convert.h"

#include <algorithm>

namespace probstore3 {

suppression_rule_set_t::suppression_rule_set_t(const std::wstring& name, rules_t rules) : m_rules(std::move(rules))
{
    set_name(name);
}

std::wstring suppression_rule_set_t::get_name() const { return platkit::strings::utf8_to_wide(get_name_utf8()); }

void suppression_rule_set_t::set_name(const std::wstring& name)
{
    set_name_utf8(platkit::strings::wide_to_utf8(name));
}

std::uint64_t suppression_rule_set_t::last_change_with_rules() const
{
    std::uint64_t latest = last_change();
    for (const auto& rule : m_rules)
        if (rule)
            latest = std::max(latest, rule->last_change_with_items());
    return latest;
}

std::wstring suppression_rule_set_t::get_file_path() const
{
    const auto file = get_file();
    return file ? file->get_path() : std::wstring();
}

} // namespace probstore3
