#pragma once
// Intrusive shared pointer: the count lives in the object (shared_object), is
// atomic, and a raw pointer can be turned back into a shared one at any time.
#include <atomic>
#include <cstddef>
#include <utility>

namespace platkit::memory::pointers {

class shared_object
{
public:
    shared_object() = default;
    shared_object(const shared_object&) : m_refs(0) {}
    shared_object& operator=(const shared_object&) { return *this; }

    void add_ref() const noexcept { m_refs.fetch_add(1, std::memory_order_relaxed); }
    void release() const noexcept
    {
        if (m_refs.fetch_sub(1, std::memory_order_acq_rel) == 1)
            delete this;
    }
    long use_count() const noexcept { return m_refs.load(std::memory_order_relaxed); }

protected:
    virtual ~shared_object() = default;

private:
    mutable std::atomic<long> m_refs{0};
};

template <class T>
class shared_pointer
{
public:
    using element_type = T;

    shared_pointer() noexcept = default;
    shared_pointer(std::nullptr_t) noexcept {}
    explicit shared_pointer(T* p) noexcept : m_ptr(p)
    {
        if (m_ptr)
            m_ptr->add_ref();
    }
    shared_pointer(const shared_pointer& o) noexcept : shared_pointer(o.m_ptr) {}
    shared_pointer(shared_pointer&& o) noexcept : m_ptr(std::exchange(o.m_ptr, nullptr)) {}
    template <class U>
    shared_pointer(const shared_pointer<U>& o) noexcept : shared_pointer(o.get())
    {
    }
    ~shared_pointer()
    {
        if (m_ptr)
            m_ptr->release();
    }

    shared_pointer& operator=(shared_pointer o) noexcept
    {
        std::swap(m_ptr, o.m_ptr);
        return *this;
    }

    T* get() const noexcept { return m_ptr; }
    T* operator->() const noexcept { return m_ptr; }
    T& operator*() const noexcept { return *m_ptr; }
    explicit operator bool() const noexcept { return m_ptr != nullptr; }
    void reset() noexcept { shared_pointer().swap(*this); }
    void swap(shared_pointer& o) noexcept { std::swap(m_ptr, o.m_ptr); }

    friend bool operator==(const shared_pointer& a, const shared_pointer& b) { return a.m_ptr == b.m_ptr; }
    friend bool operator!=(const shared_pointer& a, const shared_pointer& b) { return a.m_ptr != b.m_ptr; }
    friend bool operator<(const shared_pointer& a, const shared_pointer& b) { return a.m_ptr < b.m_ptr; }
    friend bool operator==(const shared_pointer& a, std::nullptr_t) { return !a.m_ptr; }
    friend bool operator!=(const shared_pointer& a, std::nullptr_t) { return a.m_ptr != nullptr; }

private:
    T* m_ptr = nullptr;
};

template <class T, class... Args>
shared_pointer<T> make_shared_pointer(Args&&... args)
{
    return shared_pointer<T>(new T(std::forward<Args>(args)...));
}

template <class T, class U>
shared_pointer<T> static_pointer_cast(const shared_pointer<U>& p)
{
    return shared_pointer<T>(static_cast<T*>(p.get()));
}

template <class T, class U>
shared_pointer<T> dynamic_pointer_cast(const shared_pointer<U>& p)
{
    return shared_pointer<T>(dynamic_cast<T*>(p.get()));
}

} // namespace platkit::memory::pointers
