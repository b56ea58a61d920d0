#include "uicore7/sender_list.h"

#include <algorithm>
#include <vector>

namespace uicore7 {
namespace {

class CDefSenderList final : public ISenderList
{
public:
    void AddListener(IListener* listener) override
    {
        if (!listener || HasListener(listener))
            return;
        m_listeners.push_back(listener);
    }

    void RemoveListener(IListener* listener) override
    {
        auto it = std::find(m_listeners.begin(), m_listeners.end(), listener);
        if (it != m_listeners.end())
            m_listeners.erase(it);
    }

    bool HasListener(IListener* listener) const override
    {
        return std::find(m_listeners.begin(), m_listeners.end(), listener) != m_listeners.end();
    }

    std::size_t GetListenerCount() const override { return m_listeners.size(); }

    void ForEachListener(const std::function<void(IListener*)>& f) override
    {
        // Walk a snapshot, but skip whoever left the list in the meantime.
        const std::vector<IListener*> snapshot = m_listeners;
        for (IListener* l : snapshot)
            if (HasListener(l))
                f(l);
    }

private:
    std::vector<IListener*> m_listeners;
};

} // namespace

std::unique_ptr<ISenderList> CreateDefSenderList()
{
    return std::make_unique<CDefSenderList>();
}

} // namespace uicore7
