#pragma once
// The listener list through which a control reports events (a choice in a
// combo box, the end of an edit) to whoever subscribed.
#include <cstddef>
#include <functional>
#include <memory>

namespace uicore7 {

// Base of every listener interface; a control sends to the listeners of its
// list that implement the interface of the event.
class IListener
{
public:
    virtual ~IListener() = default;
};

class ISenderList
{
public:
    virtual ~ISenderList() = default;

    // Null and repeated listeners are ignored. The list does not own them.
    virtual void AddListener(IListener* listener) = 0;
    virtual void RemoveListener(IListener* listener) = 0;
    virtual bool HasListener(IListener* listener) const = 0;
    virtual std::size_t GetListenerCount() const = 0;

    // Calls f for each listener, in the order they were added. A listener
    // removed during the walk is not called afterwards; one added during the
    // walk waits for the next.
    virtual void ForEachListener(const std::function<void(IListener*)>& f) = 0;

    // Sends to each listener that implements L.
    template <class L, class F> void Send(F&& f)
    {
        ForEachListener([&](IListener* l) {
            if (auto* target = dynamic_cast<L*>(l))
                f(*target);
        });
    }
};

std::unique_ptr<ISenderList> CreateDefSenderList();

} // namespace uicore7
