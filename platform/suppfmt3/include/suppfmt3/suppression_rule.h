#pragma once
// A suppression rule: which aspects of a problem it names and whether each
// is used (active) or matches anything. A rule either has a call stack, or
// (read from a previous-format file) a single location of its own, which
// convert_to_stack turns into a one-frame stack.
#include "suppfmt3/rule_item.h"

#include <array>
#include <string>

namespace suppfmt3 {

class suppression_rule_t : public shared_object, public change_stamped
{
public:
    using callstack_t = suppfmt3::callstack_t;
    using frame_t = callstack_frame_t;
    using item_ptr = shared_pointer<rule_item>;

    suppression_rule_t() = default;

    // Whether the rule has the aspect at all. The location fields (module,
    // function, source, line) are available from the rule's own location or,
    // once it has a stack, from any of its frames.
    bool is_item_available(suppfmt_datatype type) const;
    // Whether the aspect is used. For the location fields of a stack rule:
    // whether the field is used in at least one active frame.
    bool is_item_active(suppfmt_datatype type) const;
    // Switches an aspect on or off. For the location fields of a stack rule
    // this sets the field in every frame; a line is only switched on where
    // the frame's source is used and concrete.
    void set_item_active(bool on, suppfmt_datatype type);

    // The rule's own item of that aspect; null when it has none.
    item_ptr get_item(suppfmt_datatype type) const;
    // Adds or replaces the item of the item's aspect.
    void set_item(item_ptr item);
    void remove_item(suppfmt_datatype type);

    shared_pointer<stack_item_t> get_stack_item() const;
    // Turns the rule's own location into a stack of one frame (the best
    // one) and drops the location items. Does nothing when the rule already
    // has a stack or has no location. Returns whether a stack was made.
    bool convert_to_stack();
    // The stack the rule stands for: its stack item, or the one frame of its
    // own location, as a new item. Null when it has neither.
    shared_pointer<stack_item_t> make_effective_stack() const;

    // The value of an aspect as UTF-8 text (location fields of a stack rule
    // come from the best frame); empty when unavailable.
    std::string get_value_text(suppfmt_datatype type) const;

    // A deep copy with items of its own.
    void copy_items_from(const suppression_rule_t& other);

    // The time of the latest change of the rule or of any of its items.
    std::uint64_t last_change_with_items() const;

protected:
    ~suppression_rule_t() override = default;

private:
    static int slot(suppfmt_datatype type);
    bool has_own_location() const;

    std::array<item_ptr, rule_datatypes.size()> m_items;
};

} // namespace suppfmt3
