#pragma once
// Emitting a parameterless signal on the GUI thread from any thread.
#include "basekit2/signal.h"
#include "wxkit1/tasks/scheduler.h"

#include <boost/smart_ptr/weak_ptr.hpp>

namespace wxkit1::tasks {

using parameterless_signal_t = basekit2::_internal::signal_t<>;

// A task that emits a signal when it runs. The signal belongs to some owner
// object; the task holds the owner weakly and emits nothing once the owner
// is gone, and keeps it alive while the subscribers run.
class PostSignalTask final : public basekit2::intrusive_pointer_impl_t<DefaultTaskImpl>
{
public:
    PostSignalTask(const parameterless_signal_t& signal, boost::weak_ptr<const void> owner)
        : m_signal(&signal), m_owner(std::move(owner))
    {
    }

protected:
    void Run() override
    {
        const auto keep = m_owner.lock();
        if (keep)
            (*m_signal)();
    }

private:
    const parameterless_signal_t* m_signal;
    boost::weak_ptr<const void> m_owner;
};

// Adds a PostSignalTask for signal (owned by owner) to the scheduler. When
// the scheduler is not initialised this is a programming error: it asserts
// and nothing is posted.
error_code_t PostSignal(const parameterless_signal_t& signal, boost::weak_ptr<const void> owner,
                        const std::wstring& name);

} // namespace wxkit1::tasks
