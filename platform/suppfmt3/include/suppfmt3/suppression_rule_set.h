#pragma once
// A suppression: a named set of rules. The store's rule set (probstore3)
// adds the rules themselves and the file that holds it.
#include "suppfmt3/change_stamp.h"

#include <string>

namespace suppfmt3 {

// How the rules of a set were made; kept in the file so that tools can tell
// a default rule from one whose stack the user edited.
enum suppression_rule_set_type : int
{
    srt_unspecified = 0,
    srt_best_location = 1, // each rule uses only its problem's best frame
    srt_custom_stack = 2,  // the rules use frames the user chose
};

class suppression_rule_set_t : public change_stamped
{
public:
    virtual ~suppression_rule_set_t() = default;

    suppression_rule_set_type get_type() const { return m_type; }
    void set_type(suppression_rule_set_type type)
    {
        if (type != m_type) {
            m_type = type;
            touch();
        }
    }

    // The name as UTF-8, as the file holds it.
    const std::string& get_name_utf8() const { return m_name; }
    void set_name_utf8(std::string name)
    {
        if (name != m_name) {
            m_name = std::move(name);
            touch();
        }
    }

private:
    std::string m_name;
    suppression_rule_set_type m_type = srt_unspecified;
};

} // namespace suppfmt3
