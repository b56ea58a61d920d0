#pragma once
// Tasks that the scheduler runs on the GUI thread. A task is reference
// counted (see basekit2::intrusive_pointer_impl_t) so that the thread that
// adds it and the scheduler that runs it can both hold it.
#include "basekit2/intrusive.h"

#include <atomic>

namespace wxkit1::tasks {

class ICancellable
{
public:
    // Asks the task not to run, or to stop early. Any thread.
    virtual void Cancel() = 0;
    virtual bool IsCancelled() const = 0;

protected:
    ~ICancellable() = default;
};

class ITask : public basekit2::object_interface_t, public ICancellable
{
public:
    // Called once by the scheduler on the GUI thread, also when the task was
    // cancelled meanwhile (the task decides; DefaultTaskImpl skips Run then).
    virtual void Execute() = 0;
    // True once Execute has run the task's work.
    virtual bool IsDone() const = 0;
};

using task_ptr_t = basekit2::intrusive_pointer_t<ITask>;

// Cancellation and the done flag; a concrete task derives from
// basekit2::intrusive_pointer_impl_t<DefaultTaskImpl> and implements Run.
class DefaultTaskImpl : public ITask
{
public:
    void Cancel() override { m_cancelled.store(true, std::memory_order_release); }
    bool IsCancelled() const override { return m_cancelled.load(std::memory_order_acquire); }
    bool IsDone() const override { return m_done.load(std::memory_order_acquire); }

    void Execute() override
    {
        if (IsCancelled())
            return;
        Run();
        m_done.store(true, std::memory_order_release);
    }

protected:
    // The task's work, on the GUI thread.
    virtual void Run() = 0;

private:
    std::atomic<bool> m_cancelled{false};
    std::atomic<bool> m_done{false};
};

// Work that must not run on the GUI thread: DoTask runs on the scheduler's
// background thread, then TaskFinished on the GUI thread. A task cancelled
// before DoTask is skipped; one cancelled before TaskFinished gets no
// TaskFinished call, so a superseded result never reaches the GUI.
class IBackgroundTask : public basekit2::object_interface_t, public ICancellable
{
public:
    virtual void DoTask() = 0;
    virtual void TaskFinished() = 0;
};

using background_task_ptr_t = basekit2::intrusive_pointer_t<IBackgroundTask>;

class BackgroundTaskImpl : public IBackgroundTask
{
public:
    void Cancel() override { m_cancelled.store(true, std::memory_order_release); }
    bool IsCancelled() const override { return m_cancelled.load(std::memory_order_acquire); }

private:
    std::atomic<bool> m_cancelled{false};
};

} // namespace wxkit1::tasks
