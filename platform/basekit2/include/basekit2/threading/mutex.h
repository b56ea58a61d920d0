#pragma once
#include <mutex>

namespace basekit2::threading {

// Recursive, so that a subscriber called under a signal's lock may connect
// or disconnect on the same signal.
class mutex_t
{
public:
    void lock() { m_mutex.lock(); }
    void unlock() { m_mutex.unlock(); }
    bool try_lock() { return m_mutex.try_lock(); }

private:
    std::recursive_mutex m_mutex;
};

using scoped_lock_t = std::lock_guard<mutex_t>;

} // namespace basekit2::threading
