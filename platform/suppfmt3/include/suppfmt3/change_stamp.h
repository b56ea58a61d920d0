#pragma once
// A process-wide clock that every change of rule data advances. Each rule,
// item and rule set keeps the time of its last change, so the file writer
// can tell that nothing changed since a moment without comparing contents.
#include <cstdint>

namespace suppfmt3 {

// Advances the clock and returns the new time.
std::uint64_t next_change_stamp();
// The time of the latest change so far.
std::uint64_t current_change_stamp();

class change_stamped
{
public:
    change_stamped() : m_stamp(next_change_stamp()) {}
    // A copy is a new object: it changes now.
    change_stamped(const change_stamped&) : m_stamp(next_change_stamp()) {}
    change_stamped& operator=(const change_stamped&)
    {
        touch();
        return *this;
    }

    std::uint64_t last_change() const { return m_stamp; }

protected:
    ~change_stamped() = default;
    void touch() { m_stamp = next_change_stamp(); }

private:
    std::uint64_t m_stamp;
};

} // namespace suppfmt3
