#pragma once
// A signal with its own subscriber list under its own mutex. Subscribers run
// on the thread that raises the signal, while the mutex is held.
#include "basekit2/threading/mutex.h"

#include <functional>
#include <utility>
#include <vector>

namespace basekit2::_internal {

using connection_id = unsigned long;

template <class... Args>
class signal_t
{
public:
    using slot_t = std::function<void(Args...)>;

    signal_t() = default;
    // Copies start without subscribers: connections belong to one object.
    signal_t(const signal_t&) {}
    signal_t& operator=(const signal_t&) { return *this; }

    connection_id connect(slot_t slot)
    {
        threading::scoped_lock_t lock(m_mutex);
        m_slots.push_back({++m_last_id, std::move(slot)});
        return m_last_id;
    }

    bool disconnect(connection_id id)
    {
        threading::scoped_lock_t lock(m_mutex);
        for (auto it = m_slots.begin(); it != m_slots.end(); ++it) {
            if (it->id == id) {
                it->slot = nullptr; // erased after any emission in progress
                m_dirty = true;
                if (m_emitting == 0)
                    compact();
                return true;
            }
        }
        return false;
    }

    void disconnect_all()
    {
        threading::scoped_lock_t lock(m_mutex);
        for (auto& s : m_slots)
            s.slot = nullptr;
        m_dirty = true;
        if (m_emitting == 0)
            compact();
    }

    size_t size() const
    {
        threading::scoped_lock_t lock(m_mutex);
        size_t n = 0;
        for (const auto& s : m_slots)
            n += s.slot ? 1 : 0;
        return n;
    }
    bool empty() const { return size() == 0; }

    void operator()(Args... args) const
    {
        threading::scoped_lock_t lock(m_mutex);
        ++m_emitting;
        // Index loop: a subscriber may connect more (they run in this emission).
        for (size_t i = 0; i < m_slots.size(); ++i) {
            if (m_slots[i].slot) {
                auto slot = m_slots[i].slot; // keep alive if it disconnects itself
                slot(args...);
            }
        }
        if (--m_emitting == 0 && m_dirty)
            compact();
    }
    void emit(Args... args) const { (*this)(std::forward<Args>(args)...); }

private:
    struct entry
    {
        connection_id id;
        slot_t slot;
    };
    void compact() const
    {
        std::vector<entry> kept;
        for (auto& s : m_slots)
            if (s.slot)
                kept.push_back(std::move(s));
        m_slots.swap(kept);
        m_dirty = false;
    }

    mutable threading::mutex_t m_mutex;
    mutable std::vector<entry> m_slots;
    mutable int m_emitting = 0;
    mutable bool m_dirty = false;
    connection_id m_last_id = 0;
};

} // namespace basekit2::_internal

namespace basekit2 {

// Base of an object that subscribes to signals: its connections end with it,
// so no signal calls into a destroyed subscriber. The signals must outlive
// the subscriber (or be left with unsubscribe_all() first).
class subscriber_t
{
public:
    subscriber_t() = default;
    subscriber_t(const subscriber_t&) = delete;
    subscriber_t& operator=(const subscriber_t&) = delete;
    virtual ~subscriber_t() { unsubscribe_all(); }

    template <class... Args, class F>
    void subscribe(_internal::signal_t<Args...>& signal, F&& slot)
    {
        const auto id = signal.connect(std::forward<F>(slot));
        m_disconnect.push_back([&signal, id] { signal.disconnect(id); });
    }
    void unsubscribe_all()
    {
        for (auto& d : m_disconnect)
            d();
        m_disconnect.clear();
    }
    size_t subscription_count() const { return m_disconnect.size(); }

private:
    std::vector<std::function<void()>> m_disconnect;
};

} // namespace basekit2
