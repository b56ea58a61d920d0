#pragma once
// Scoped progress of one phase of work, and child progress objects that let
// a sub-operation report into a slice of its parent's range.
#include "notify2/progress.h"

#include <memory>
#include <string>

namespace corr_engine {

class progress_guard_t
{
public:
    // Starts a phase on progress: begin(text, total). progress may be null
    // (nothing is reported, nothing is cancelled); it must outlive the guard.
    progress_guard_t(notify2::IProgress* progress, const std::wstring& text, double total);
    // The outermost guard (one whose progress is not a child of another
    // guard) raises the completion event, raise_first(), when it ends, so
    // the listener learns that the whole operation is over, whichever way.
    ~progress_guard_t();
    progress_guard_t(const progress_guard_t&) = delete;
    progress_guard_t& operator=(const progress_guard_t&) = delete;

    void progressed(double amount);
    void set_status(const std::wstring& text);
    bool is_cancelled() const;
    notify2::IProgress* get() const { return m_progress; }

    // A progress for a sub-operation. Its whole range (100 % of whatever
    // total it is given) maps onto the next `span` units of this guard,
    // counted from the current position. `child_total` is the child's total
    // until the sub-operation calls begin() on it with its own; a new
    // begin() maps the new range onto what is left of the span. The child
    // forwards status texts, cancellation and raise_second; it swallows
    // raise_first, which only the outermost guard raises. Use it on the
    // thread that uses this guard, and drop it before the guard ends.
    // The export worker's create_child(2, 1) after progressed(1) of a total
    // of 3 hands the last two thirds of the bar to the archiver.
    std::shared_ptr<notify2::IProgress> create_child(double span, double child_total = 1);

private:
    notify2::IProgress* m_progress;
    bool m_outermost;
};

} // namespace corr_engine
