#pragma once
// Small tasks for tests of code that posts to the GUI scheduler.
#include "gui_test.h"
#include "wxkit1/tasks/scheduler.h"

#include <functional>

namespace corr_test {

class function_task_t final
    : public basekit2::intrusive_pointer_impl_t<wxkit1::tasks::DefaultTaskImpl>
{
public:
    explicit function_task_t(std::function<void()> fn) : m_fn(std::move(fn)) {}

protected:
    void Run() override { m_fn(); }

private:
    std::function<void()> m_fn;
};

inline wxkit1::tasks::task_ptr_t make_task(std::function<void()> fn)
{
    return wxkit1::tasks::task_ptr_t(new function_task_t(std::move(fn)));
}

// Waits until a task delayed by delay_ms, added now, has run: every delayed
// task due earlier has run by then.
inline bool run_delayed_tasks_due_within(unsigned delay_ms)
{
    bool done = false;
    wxkit1::tasks::Scheduler::Get()->AddDelayedTask(make_task([&done] { done = true; }), delay_ms,
                                                    L"test.sentinel");
    return wait_until([&done] { return done; }, static_cast<int>(delay_ms) + 10000);
}

} // namespace corr_test
