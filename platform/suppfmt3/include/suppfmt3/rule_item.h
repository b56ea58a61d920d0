#pragma once
// The aspects of a rule as objects: a value (problem type, description, one
// location field), a line, or a call stack. Items are shared: a stack view,
// a grid model and the rule itself may hold the same item, and an edit made
// through one is seen by all.
#include "suppfmt3/change_stamp.h"
#include "suppfmt3/datatype.h"

#include "platkit/memory/pointers/shared_pointer.h"

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace suppfmt3 {

using platkit::memory::pointers::shared_object;
using platkit::memory::pointers::shared_pointer;

// A line number that says "no line".
inline constexpr std::uint64_t no_line = std::numeric_limits<std::uint64_t>::max();
// A source string that stands for any source file.
inline constexpr const char* wildcard_source = "*";

// One frame of a rule's call stack. Strings are UTF-8. An inactive field is
// a wildcard: it matches any value, and its value is only remembered.
struct callstack_frame_t
{
    std::string module;
    bool module_active = true;
    std::string function;
    bool function_active = true;
    std::string source;
    bool source_active = true;
    std::uint64_t line = no_line;
    bool line_active = false;

    bool operator==(const callstack_frame_t& o) const;
    bool operator!=(const callstack_frame_t& o) const { return !(*this == o); }
};

using callstack_t = std::vector<callstack_frame_t>;

// A source that names a file: not empty and not the wildcard "*".
bool is_concrete_source(const std::string& source);

// Field access by datatype (module, function, source, line); other datatypes
// read as inactive and empty, and are ignored when set.
bool is_frame_field_active(const callstack_frame_t& frame, suppfmt_datatype type);
void set_frame_field_active(callstack_frame_t& frame, suppfmt_datatype type, bool on);
// The field as text; the line in decimal, empty for no line.
std::string frame_field_text(const callstack_frame_t& frame, suppfmt_datatype type);

class rule_item : public shared_object, public change_stamped
{
public:
    suppfmt_datatype get_datatype() const { return m_type; }
    bool is_active() const { return m_active; }
    void set_active(bool on)
    {
        if (on != m_active) {
            m_active = on;
            touch();
        }
    }

    // The value as UTF-8 text (a line in decimal; a stack as one frame a line).
    virtual std::string get_text() const = 0;
    // A deep copy: editing the copy leaves this item alone.
    virtual shared_pointer<rule_item> clone() const = 0;

protected:
    rule_item(suppfmt_datatype type, bool active) : m_type(type), m_active(active) {}
    ~rule_item() override = default;

private:
    suppfmt_datatype m_type;
    bool m_active;
};

// Problem type, description, or one field of a rule's own location.
class value_item_t : public rule_item
{
public:
    value_item_t(suppfmt_datatype type, std::string value, bool active = true);

    const std::string& get_value() const { return m_value; }
    void set_value(std::string value)
    {
        if (value != m_value) {
            m_value = std::move(value);
            touch();
        }
    }

    std::string get_text() const override { return m_value; }
    shared_pointer<rule_item> clone() const override;

private:
    std::string m_value;
};

// The line of a rule's own location.
class line_item_t : public rule_item
{
public:
    explicit line_item_t(std::uint64_t line, bool active = true);

    std::uint64_t get_line() const { return m_line; }
    void set_line(std::uint64_t line)
    {
        if (line != m_line) {
            m_line = line;
            touch();
        }
    }

    std::string get_text() const override;
    shared_pointer<rule_item> clone() const override;

private:
    std::uint64_t m_line;
};

// The call stack of a rule: frames (0 = innermost), a flag per frame that
// says whether the frame takes part in the rule or is elided, and the frame
// the store considers the problem's best location (-1 when none).
class stack_item_t : public rule_item
{
public:
    stack_item_t();
    stack_item_t(callstack_t frames, int best_level);

    size_t size() const { return m_frames.size(); }
    bool empty() const { return m_frames.empty(); }
    const callstack_t& get_callstack() const { return m_frames; }
    const callstack_frame_t& frame(size_t i) const { return m_frames[i]; }
    // A frame to change; counts as a change of the stack.
    callstack_frame_t& edit_frame(size_t i)
    {
        touch();
        return m_frames[i];
    }

    void add_frame(callstack_frame_t frame, bool active = true);
    // Replaces every frame; a missing active flag counts as active.
    void assign(callstack_t frames, std::vector<bool> active);
    bool is_frame_active(size_t i) const { return i < m_frame_active.size() && m_frame_active[i]; }
    void set_frame_active(size_t i, bool on);

    int get_best_level() const { return m_best_level; }
    void set_best_level(int level)
    {
        if (level != m_best_level) {
            m_best_level = level;
            touch();
        }
    }
    // Whether exactly the best frame is active: the default selection.
    bool is_best_location() const;

    // Brings the stack into a consistent state after edits: a line is used
    // only with a concrete, used source, and the best level is a frame
    // index or -1.
    void normalize();

    std::string get_text() const override;
    shared_pointer<rule_item> clone() const override;

private:
    callstack_t m_frames;
    std::vector<bool> m_frame_active;
    int m_best_level = -1;
};

// The stack item behind an item pointer, or null for another kind of item.
shared_pointer<stack_item_t> as_stack_item(const shared_pointer<rule_item>& item);

} // namespace suppfmt3
