#pragma once
// Small tasks for tests of code that posts to the GUI scheduler.
#include "gui_test.h"
#include "wxkit1/tasks/scheduler.h"

#include <atomic>
#include <chrono>
#include <cstdint>
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

// The scheduler's clock while it lives: it stands still until the test
// moves it with advance(), which then runs what fell due, so delays are
// checked exactly and however slow the machine is. GUI thread.
class manual_clock
{
public:
    using time_point = std::chrono::steady_clock::time_point;

    manual_clock() : m_start(std::chrono::steady_clock::now())
    {
        wxkit1::tasks::Scheduler::Get()->SetClock([this] { return now(); });
    }
    ~manual_clock()
    {
        if (const auto scheduler = wxkit1::tasks::Scheduler::Get())
            scheduler->SetClock({});
    }
    manual_clock(const manual_clock&) = delete;
    manual_clock& operator=(const manual_clock&) = delete;

    time_point now() const { return m_start + elapsed(); }
    std::chrono::milliseconds elapsed() const
    {
        return std::chrono::milliseconds(m_elapsed_ms.load());
    }
    void advance(std::chrono::milliseconds by)
    {
        m_elapsed_ms += by.count();
        wxkit1::tasks::Scheduler::Get()->RunDue();
    }

private:
    const time_point m_start;
    std::atomic<std::int64_t> m_elapsed_ms{0};
};

} // namespace corr_test
