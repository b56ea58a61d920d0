// The GUI-thread scheduler: a hidden event handler drains the queue of
// ready tasks when woken through the event loop, and one wxTimer, armed for
// the earliest due delayed task, runs delayed tasks. Other threads only
// append to the queues under the lock and post at most one wake-up at a
// time, so a burst of additions costs one event-loop round trip.
#include "wxkit1/tasks/scheduler.h"
#include "wxkit1/tasks/post_signal.h"

#include "platkit/debug/assert.h"
#include "platkit/strings/convert.h"

#include <wx/event.h>
#include <wx/thread.h>
#include <wx/timer.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <exception>
#include <memory>
#include <mutex>
#include <optional>
#include <queue>
#include <string>
#include <thread>
#include <vector>

namespace wxkit1::tasks {
namespace {

using clock_type = std::chrono::steady_clock;

struct ready_entry
{
    task_ptr_t task;
    std::wstring name;
};

struct delayed_entry
{
    clock_type::time_point due;
    std::uint64_t seq; // keeps tasks due at the same time in the order added
    ready_entry entry;
};

struct later_first
{
    bool operator()(const delayed_entry& a, const delayed_entry& b) const
    {
        return a.due != b.due ? a.due > b.due : a.seq > b.seq;
    }
};

void run_task(const ready_entry& e)
{
    try {
        e.task->Execute();
    } catch (const std::exception& ex) {
        const std::string what =
            "task \"" + platkit::strings::wide_to_utf8(e.name) + "\" threw: " + ex.what();
        PLATKIT_ASSERT_MSG(!"a task threw an exception", what.c_str());
    }
}

class scheduler_impl_t;

// Lives on the GUI thread; owns the timer. Deleting it drops its pending
// wake-up events.
class dispatcher_t : public wxEvtHandler
{
public:
    explicit dispatcher_t(scheduler_impl_t& owner);
    ~dispatcher_t() override { m_timer.Stop(); }
    void arm(clock_type::duration wait);
    void disarm() { m_timer.Stop(); }

private:
    scheduler_impl_t& m_owner;
    wxTimer m_timer;
};

// The background thread: runs DoTask of background tasks one at a time.
class background_runner_t
{
public:
    struct job
    {
        background_task_ptr_t task;
        std::wstring name;
    };
    using finish_t = std::function<void(job)>;

    explicit background_runner_t(finish_t finish) : m_finish(std::move(finish)) {}
    ~background_runner_t() { stop(); }

    void add(job j)
    {
        std::lock_guard lock(m_mutex);
        if (m_stopping) {
            j.task->Cancel();
            return;
        }
        m_jobs.push_back(std::move(j));
        if (!m_thread.joinable())
            m_thread = std::thread([this] { loop(); });
        m_wake.notify_one();
    }

    // Cancels queued and running tasks and joins the thread.
    void stop()
    {
        std::deque<job> dropped;
        {
            std::lock_guard lock(m_mutex);
            m_stopping = true;
            dropped.swap(m_jobs);
            if (m_running)
                m_running->Cancel();
            m_wake.notify_one();
        }
        for (auto& j : dropped)
            j.task->Cancel();
        if (m_thread.joinable())
            m_thread.join();
    }

private:
    void loop()
    {
        std::unique_lock lock(m_mutex);
        for (;;) {
            m_wake.wait(lock, [this] { return m_stopping || !m_jobs.empty(); });
            if (m_stopping)
                return;
            job j = std::move(m_jobs.front());
            m_jobs.pop_front();
            m_running = j.task;
            lock.unlock();
            if (!j.task->IsCancelled()) {
                try {
                    j.task->DoTask();
                } catch (const std::exception& ex) {
                    const std::string what = "background task \"" +
                                             platkit::strings::wide_to_utf8(j.name) +
                                             "\" threw: " + ex.what();
                    PLATKIT_ASSERT_MSG(!"a background task threw an exception", what.c_str());
                    j.task->Cancel();
                } catch (...) {
                    PLATKIT_ASSERT_MSG(!"a background task threw an exception", "unknown exception");
                    j.task->Cancel();
                }
            }
            if (!j.task->IsCancelled())
                m_finish(std::move(j));
            lock.lock();
            m_running.reset();
        }
    }

    finish_t m_finish;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::deque<job> m_jobs;
    background_task_ptr_t m_running;
    bool m_stopping = false;
    std::thread m_thread;
};

// Calls TaskFinished on the GUI thread unless the task was cancelled after
// its DoTask ended.
class finish_task_t final : public basekit2::intrusive_pointer_impl_t<DefaultTaskImpl>
{
public:
    explicit finish_task_t(background_task_ptr_t task) : m_task(std::move(task)) {}

protected:
    void Run() override
    {
        if (!m_task->IsCancelled())
            m_task->TaskFinished();
    }

private:
    background_task_ptr_t m_task;
};

class scheduler_impl_t final : public basekit2::intrusive_pointer_impl_t<Scheduler>
{
public:
    scheduler_impl_t()
        : m_background([this](background_runner_t::job j) {
              AddTask(task_ptr_t(new finish_task_t(std::move(j.task))), j.name);
          })
    {
        m_dispatcher = new dispatcher_t(*this);
    }

    error_code_t AddTask(const task_ptr_t& task, const std::wstring& name) override
    {
        if (!task)
            return null_task;
        std::lock_guard lock(m_mutex);
        if (!m_dispatcher)
            return shut_down;
        m_ready.push_back({task, name});
        ++m_stats.added;
        request_dispatch();
        return ok;
    }

    error_code_t AddDelayedTask(const task_ptr_t& task, unsigned delay_ms,
                                const std::wstring& name) override
    {
        if (!task)
            return null_task;
        std::lock_guard lock(m_mutex);
        if (!m_dispatcher)
            return shut_down;
        const auto due = now_locked() + std::chrono::milliseconds(delay_ms);
        m_delayed.push({due, ++m_seq, {task, name}});
        ++m_stats.added;
        if (!m_armed_for || due < *m_armed_for) {
            // The timer belongs to the GUI thread: arm it here or have the
            // GUI thread do it.
            if (wxThread::IsMain())
                arm_locked();
            else
                request_dispatch();
        }
        return ok;
    }

    error_code_t AddBackgroundTask(const background_task_ptr_t& task,
                                   const std::wstring& name) override
    {
        if (!task)
            return null_task;
        {
            std::lock_guard lock(m_mutex);
            if (!m_dispatcher)
                return shut_down;
        }
        m_background.add({task, name});
        return ok;
    }

    scheduler_stats_t GetStats() const override
    {
        std::lock_guard lock(m_mutex);
        scheduler_stats_t s = m_stats;
        s.executed = m_executed.load(std::memory_order_relaxed);
        return s;
    }

    void SetClock(clock_function_t now) override
    {
        std::lock_guard lock(m_mutex);
        m_clock = std::move(now);
        if (m_dispatcher && wxThread::IsMain())
            arm_locked();
    }

    void RunDue() override
    {
        PLATKIT_ASSERT_MSG(wxThread::IsMain(), "Tasks run on the GUI thread.");
        dispatch();
    }

    // GUI thread: run what is ready and what is due, then re-arm the timer.
    void dispatch()
    {
        // A task may shut the scheduler down; stay alive until this returns.
        const basekit2::intrusive_pointer_t<scheduler_impl_t> self(this);
        std::vector<ready_entry> batch;
        {
            std::lock_guard lock(m_mutex);
            m_wake_posted = false;
            batch.swap(m_ready);
            take_due_locked(batch);
        }
        run_batch(batch);
        std::lock_guard lock(m_mutex);
        if (m_dispatcher)
            arm_locked();
    }

    void on_timer()
    {
        const basekit2::intrusive_pointer_t<scheduler_impl_t> self(this);
        std::vector<ready_entry> batch;
        {
            std::lock_guard lock(m_mutex);
            m_armed_for.reset();
            take_due_locked(batch);
        }
        run_batch(batch);
        std::lock_guard lock(m_mutex);
        if (m_dispatcher)
            arm_locked();
    }

    void shutdown()
    {
        m_background.stop();
        dispatcher_t* dispatcher = nullptr;
        std::vector<ready_entry> dropped;
        {
            std::lock_guard lock(m_mutex);
            std::swap(dispatcher, m_dispatcher);
            dropped.swap(m_ready);
            while (!m_delayed.empty()) {
                dropped.push_back(m_delayed.top().entry);
                m_delayed.pop();
            }
            m_armed_for.reset();
        }
        for (auto& e : dropped)
            e.task->Cancel();
        dropped.clear(); // released outside the lock: a task's destructor may add tasks
        delete dispatcher;
    }

private:
    void request_dispatch()
    {
        if (m_wake_posted)
            return;
        m_wake_posted = true;
        ++m_stats.wakeups;
        m_dispatcher->CallAfter([this] { dispatch(); });
    }

    clock_type::time_point now_locked() const { return m_clock ? m_clock() : clock_type::now(); }

    void take_due_locked(std::vector<ready_entry>& out)
    {
        const auto now = now_locked();
        while (!m_delayed.empty() && m_delayed.top().due <= now) {
            out.push_back(m_delayed.top().entry);
            m_delayed.pop();
        }
    }

    void arm_locked()
    {
        // A clock of someone else's moves when they say: no timer can wait for it.
        if (m_delayed.empty() || m_clock) {
            m_dispatcher->disarm();
            m_armed_for.reset();
            return;
        }
        const auto due = m_delayed.top().due;
        m_armed_for = due;
        m_dispatcher->arm(due - now_locked());
    }

    void run_batch(std::vector<ready_entry>& batch)
    {
        for (auto& e : batch) {
            run_task(e);
            m_executed.fetch_add(1, std::memory_order_relaxed);
            e.task.reset();
        }
    }

    mutable std::mutex m_mutex;
    dispatcher_t* m_dispatcher = nullptr; // null once shut down
    std::vector<ready_entry> m_ready;
    std::priority_queue<delayed_entry, std::vector<delayed_entry>, later_first> m_delayed;
    std::optional<clock_type::time_point> m_armed_for;
    clock_function_t m_clock; // empty: the steady clock
    std::uint64_t m_seq = 0;
    bool m_wake_posted = false;
    scheduler_stats_t m_stats;
    std::atomic<std::uint64_t> m_executed{0};
    background_runner_t m_background;
};

dispatcher_t::dispatcher_t(scheduler_impl_t& owner) : m_owner(owner), m_timer(this)
{
    Bind(wxEVT_TIMER, [this](wxTimerEvent&) { m_owner.on_timer(); });
}

void dispatcher_t::arm(clock_type::duration wait)
{
    // Round up: a timer that fires a fraction early would find nothing due.
    const auto ms = std::chrono::ceil<std::chrono::milliseconds>(wait).count();
    m_timer.StartOnce(static_cast<int>(std::max<long long>(1, ms)));
}

std::mutex g_instance_mutex;
basekit2::intrusive_pointer_t<scheduler_impl_t> g_instance;
bool g_was_shut_down = false;

} // namespace

bool Scheduler::IsInitialized()
{
    std::lock_guard lock(g_instance_mutex);
    return static_cast<bool>(g_instance);
}

basekit2::intrusive_pointer_t<Scheduler> Scheduler::Get(const status_callback_t& status)
{
    error_code_t why = ok;
    {
        std::lock_guard lock(g_instance_mutex);
        if (g_instance)
            return g_instance;
        why = g_was_shut_down ? shut_down : not_initialized;
    }
    if (status)
        status(why);
    return nullptr;
}

error_code_t Scheduler::Initialize()
{
    PLATKIT_ASSERT_MSG(wxThread::IsMain(), "The task scheduler belongs to the GUI thread.");
    std::lock_guard lock(g_instance_mutex);
    if (!g_instance)
        g_instance = new scheduler_impl_t;
    g_was_shut_down = false;
    return ok;
}

void Scheduler::Shutdown()
{
    PLATKIT_ASSERT_MSG(wxThread::IsMain(), "The task scheduler belongs to the GUI thread.");
    basekit2::intrusive_pointer_t<scheduler_impl_t> instance;
    {
        std::lock_guard lock(g_instance_mutex);
        instance.swap(g_instance);
        if (instance)
            g_was_shut_down = true;
    }
    if (instance)
        instance->shutdown();
}

error_code_t PostSignal(const parameterless_signal_t& signal, boost::weak_ptr<const void> owner,
                        const std::wstring& name)
{
    PLATKIT_ASSERT_MSG(
        Scheduler::IsInitialized(),
        "Attempt to schedule a task in uninitialized Scheduler. Task will not complete.");
    auto scheduler = Scheduler::Get();
    if (!scheduler)
        return not_initialized;
    return scheduler->AddTask(task_ptr_t(new PostSignalTask(signal, std::move(owner))), name);
}

} // namespace wxkit1::tasks
