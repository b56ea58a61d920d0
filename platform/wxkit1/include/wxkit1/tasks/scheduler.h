#pragma once
// The task scheduler of the GUI thread. Any thread may add tasks; they run
// on the GUI thread from the wx event loop, in the order they were added
// (delayed tasks in the order they fall due). The host initialises it once
// after the wxApp has started and shuts it down before the app ends.
#include "wxkit1/tasks/task.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

namespace wxkit1::tasks {

enum error_code_t {
    ok = 0,
    not_initialized = 1, // Initialize has not been called (or Shutdown has)
    null_task = 2,       // a null task was given
    shut_down = 3,       // the scheduler was shut down after it was obtained
};

// Told why Scheduler::Get returned null; not called when it succeeds.
using status_callback_t = std::function<void(error_code_t)>;

// The time by which delayed tasks fall due.
using clock_function_t = std::function<std::chrono::steady_clock::time_point()>;

struct scheduler_stats_t
{
    std::uint64_t added = 0;    // tasks accepted by AddTask and AddDelayedTask
    std::uint64_t executed = 0; // tasks executed on the GUI thread
    std::uint64_t wakeups = 0;  // event-loop wake-ups posted from other threads
};

class Scheduler : public basekit2::object_interface_t
{
public:
    static bool IsInitialized();
    // The scheduler, or null (and status is told why) when there is none.
    static basekit2::intrusive_pointer_t<Scheduler> Get(const status_callback_t& status = {});

    // Starts the scheduler; on the GUI thread, after wxApp initialisation.
    // Calling it again while it runs does nothing.
    static error_code_t Initialize();
    // Stops it on the GUI thread: pending tasks are cancelled and released
    // without running, background tasks are cancelled and their thread
    // joined. Pointers obtained earlier stay valid; adding through them
    // answers shut_down.
    static void Shutdown();

    // Runs task on the GUI thread as soon as the event loop gets to it.
    // name is shown in diagnostics only.
    virtual error_code_t AddTask(const task_ptr_t& task, const std::wstring& name) = 0;
    // Runs task on the GUI thread no earlier than delay_ms after this call.
    virtual error_code_t AddDelayedTask(const task_ptr_t& task, unsigned delay_ms,
                                        const std::wstring& name) = 0;
    // Runs task->DoTask on the background thread, then task->TaskFinished on
    // the GUI thread. Background tasks run one at a time, in order.
    virtual error_code_t AddBackgroundTask(const background_task_ptr_t& task,
                                           const std::wstring& name) = 0;

    virtual scheduler_stats_t GetStats() const = 0;

    // Times delayed tasks by now() instead of the steady clock; an empty
    // function puts the steady clock back. For tests of delays: with a
    // clock of its own the scheduler sets no timer, and whoever moves that
    // clock calls RunDue. now() is called from any thread, under the
    // scheduler's lock.
    virtual void SetClock(clock_function_t now) = 0;
    // GUI thread: runs at once what is ready and what is due by the clock.
    virtual void RunDue() = 0;
};

using scheduler_ptr_t = basekit2::intrusive_pointer_t<Scheduler>;

// Initialises the scheduler for its lifetime; for hosts and test mains.
class scheduler_scope_t
{
public:
    scheduler_scope_t() { Scheduler::Initialize(); }
    ~scheduler_scope_t() { Scheduler::Shutdown(); }
    scheduler_scope_t(const scheduler_scope_t&) = delete;
    scheduler_scope_t& operator=(const scheduler_scope_t&) = delete;
};

} // namespace wxkit1::tasks
