#pragma once
// A rule's call stack as the store hands it out: a view on the rule's stack
// item, so an edit made through the view is seen by the rule and by every
// other view. Frames are indexed from 0 (the innermost); an index out of
// range gives a neutral answer (false, empty) and changes nothing.
#include "suppfmt3/rule_item.h"

#include <string>

namespace probstore3 {

using platkit::memory::pointers::shared_pointer;

class suppression_stack_t : public platkit::memory::pointers::shared_object
{
public:
    explicit suppression_stack_t(shared_pointer<suppfmt3::stack_item_t> item);

    int stack_size() const;
    // Whether the frame takes part in the rule; an inactive frame is elided
    // ("...") and stands for any number of frames.
    bool is_frame_active(int frame) const;
    void set_frame_active(int frame, bool on);
    // Whether one field (module, function, source, line) of a frame is
    // used; an unused field matches any value.
    bool is_frame_field_active(int frame, suppfmt3::suppfmt_datatype type) const;
    // The field's value; the line in decimal, empty when there is none.
    std::wstring get_frame_field_value(int frame, suppfmt3::suppfmt_datatype type) const;

    int get_best_level() const;
    bool is_best_location() const;
    void normalize();

    const shared_pointer<suppfmt3::stack_item_t>& get_item() const { return m_item; }

private:
    bool valid(int frame) const;

    shared_pointer<suppfmt3::stack_item_t> m_item;
};

} // namespace probstore3
