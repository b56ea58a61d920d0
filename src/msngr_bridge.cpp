// The progress and messenger bridges: worker-thread reports become signals
// on the GUI thread, through coalescing tasks of the wxkit1 scheduler.
#include "corr_dialogs2/msngr_bridge.h"

#include "basekit2/threading/mutex.h"
#include "platkit/debug/assert.h"
#include "wxkit1/tasks/post_signal.h"
#include "wxkit1/tasks/scheduler.h"

#include <boost/enable_shared_from_this.hpp>
#include <boost/make_shared.hpp>

#include <algorithm>
#include <mutex>

namespace corr_dialogs2 {
namespace {

constexpr unsigned progress_delay_ms = 250;
constexpr unsigned messages_delay_ms = 500;

// A GUI task that emits signal with the value it holds. Until it runs, the
// reporting thread may replace (or extend) the value under the task's lock,
// so one task carries a whole burst. The signal belongs to the bridge that
// owner points to; a task whose bridge is gone emits nothing.
template <class T>
class value_update_task_t final
    : public basekit2::intrusive_pointer_impl_t<wxkit1::tasks::DefaultTaskImpl>
{
public:
    using signal_type = basekit2::_internal::signal_t<T>;

    value_update_task_t(T value, const signal_type& signal, boost::weak_ptr<const void> owner)
        : m_value(std::move(value)), m_signal(&signal), m_owner(std::move(owner))
    {
    }

    // Applies change to the held value unless the task has taken it to emit
    // already; false then, and the caller schedules a new task.
    template <class Change> bool update_unless_run(Change&& change)
    {
        std::lock_guard lock(m_mutex);
        if (m_has_run)
            return false;
        change(m_value);
        return true;
    }

    bool has_run() const
    {
        std::lock_guard lock(m_mutex);
        return m_has_run;
    }

protected:
    void Run() override
    {
        T value;
        {
            std::lock_guard lock(m_mutex);
            // A flushed task is in the scheduler twice: its delayed entry
            // finds nothing left to deliver.
            if (m_has_run)
                return;
            m_has_run = true;
            value = std::move(m_value);
        }
        if (const auto keep = m_owner.lock())
            (*m_signal)(std::move(value));
    }

private:
    mutable basekit2::threading::mutex_t m_mutex;
    T m_value;
    bool m_has_run = false;
    const signal_type* m_signal;
    boost::weak_ptr<const void> m_owner;
};

template <class T> using task_slot_t = basekit2::intrusive_pointer_t<value_update_task_t<T>>;

// Puts value into the pending task of slot when that has not run yet;
// otherwise schedules a new delayed task for it. Called under the bridge lock.
template <class T, class Change>
void deliver(task_slot_t<T>& slot, const Change& change,
             const basekit2::_internal::signal_t<T>& signal,
             const boost::weak_ptr<const void>& owner, unsigned delay_ms, const wchar_t* name)
{
    if (slot && slot->update_unless_run(change))
        return;
    T initial{};
    change(initial);
    slot = task_slot_t<T>(new value_update_task_t<T>(std::move(initial), signal, owner));
    const auto scheduler = wxkit1::tasks::Scheduler::Get();
    PLATKIT_ASSERT_MSG(scheduler, "No task scheduler: the update will not reach the GUI.");
    if (scheduler)
        scheduler->AddDelayedTask(slot, delay_ms, name);
}

int whole_percent(double position, double total)
{
    if (!(total > 0))
        return 0;
    return static_cast<int>(position / total * 100.0);
}

class progress_bridge_impl_t final : public progress_bridge_t,
                                     public boost::enable_shared_from_this<progress_bridge_impl_t>
{
public:
    void begin(const std::wstring& text, double total) override
    {
        set_status(text);
        std::lock_guard lock(m_mutex);
        m_total = total;
        m_position = 0;
    }

    void progressed(double amount) override
    {
        std::lock_guard lock(m_mutex);
        const double old = m_position;
        m_position = std::max(0.0, std::min(m_total, m_position + amount));
        const int old_percent = whole_percent(old, m_total);
        const int new_percent = whole_percent(m_position, m_total);
        if (old_percent == new_percent)
            return;
        deliver(
            m_pending_percent, [new_percent](int& v) { v = new_percent; }, percent_changed,
            weak_from_this(), progress_delay_ms, L"progress_bridge.percent");
    }

    void set_status(const std::wstring& text) override
    {
        std::lock_guard lock(m_mutex);
        deliver(
            m_pending_text, [&text](std::wstring& v) { v = text; }, status_changed,
            weak_from_this(), progress_delay_ms, L"progress_bridge.status");
    }

    void raise_first() override
    {
        wxkit1::tasks::PostSignal(notify_first, weak_from_this(), L"progress_bridge.notify_first");
    }

    void raise_second() override
    {
        wxkit1::tasks::PostSignal(notify_second, weak_from_this(),
                                  L"progress_bridge.notify_second");
    }

    double get_total() const override
    {
        std::lock_guard lock(m_mutex);
        return m_total;
    }

    bool is_cancelled() const override
    {
        std::lock_guard lock(m_mutex);
        return m_cancelled;
    }

    void cancel() override
    {
        std::lock_guard lock(m_mutex);
        m_cancelled = true;
    }

    ~progress_bridge_impl_t() override
    {
        // Pending tasks would find the bridge gone and emit nothing; cancel
        // them so the scheduler drops them without running.
        for (auto* t : {static_cast<wxkit1::tasks::ITask*>(m_pending_percent.get()),
                        static_cast<wxkit1::tasks::ITask*>(m_pending_text.get())})
            if (t)
                t->Cancel();
    }

private:
    mutable basekit2::threading::mutex_t m_mutex;
    double m_total = 0;
    double m_position = 0;
    bool m_cancelled = false;
    task_slot_t<int> m_pending_percent;
    task_slot_t<std::wstring> m_pending_text;
};

class messenger_bridge_impl_t final : public messenger_bridge_t,
                                      public boost::enable_shared_from_this<messenger_bridge_impl_t>
{
public:
    void message(std::uint32_t type, const wchar_t* text) override
    {
        const message_data_t data{type, text ? std::wstring(text) : std::wstring()};
        message_received(data);
        std::lock_guard lock(m_mutex);
        deliver(
            m_pending_batch, [&data](std::list<message_data_t>& batch) { batch.push_back(data); },
            messages_received, weak_from_this(), messages_delay_ms, L"messenger_bridge.batch");
    }

    void flush() override
    {
        std::lock_guard lock(m_mutex);
        if (!m_pending_batch || m_pending_batch->has_run())
            return;
        if (const auto scheduler = wxkit1::tasks::Scheduler::Get())
            scheduler->AddTask(m_pending_batch, L"messenger_bridge.flush");
    }

    ~messenger_bridge_impl_t() override
    {
        if (m_pending_batch)
            m_pending_batch->Cancel();
    }

private:
    basekit2::threading::mutex_t m_mutex;
    task_slot_t<std::list<message_data_t>> m_pending_batch;
};

} // namespace

boost::shared_ptr<progress_bridge_t> progress_bridge_t::create()
{
    return boost::make_shared<progress_bridge_impl_t>();
}

boost::shared_ptr<messenger_bridge_t> messenger_bridge_t::create()
{
    return boost::make_shared<messenger_bridge_impl_t>();
}

load_result_callback_t::~load_result_callback_t() = default;

} // namespace corr_dialogs2
