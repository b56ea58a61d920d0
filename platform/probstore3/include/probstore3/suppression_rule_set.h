#pragma once
// A suppression as the store holds it: a named set of rules and the file
// that holds it. A problem is suppressed when any rule of the set matches.
#include "probstore3/suppression_rule.h"

#include "suppfmt3/suppression_rule_set.h"

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <string>
#include <vector>

namespace probstore3 {

class suppression_file_t;

class suppression_rule_set_t : public suppfmt3::suppression_rule_set_t
{
public:
    using rules_t = std::vector<shared_pointer<suppression_rule_t>>;

    suppression_rule_set_t() = default;
    explicit suppression_rule_set_t(const std::wstring& name, rules_t rules = {});

    const rules_t& get_rules() const { return m_rules; }
    void set_rules(const rules_t& rules)
    {
        m_rules = rules;
        touch();
    }
    void set_rules(rules_t&& rules)
    {
        m_rules = std::move(rules);
        touch();
    }

    // The time of the latest change of the set, its rules or their items.
    std::uint64_t last_change_with_rules() const;

    std::wstring get_name() const;
    void set_name(const std::wstring& name);

    // The file the set was read from or last added to; null when none (or
    // when that file object is gone).
    boost::shared_ptr<suppression_file_t> get_file() const { return m_file.lock(); }
    // Its path, empty without a file.
    std::wstring get_file_path() const;

private:
    friend class suppression_file_t;
    void set_file(boost::weak_ptr<suppression_file_t> file) { m_file = std::move(file); }

    rules_t m_rules;
    boost::weak_ptr<suppression_file_t> m_file;
};

using rule_set_ptr = boost::shared_ptr<suppression_rule_set_t>;

} // namespace probstore3
