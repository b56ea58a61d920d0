#pragma once
// Reference counting in the object and the pointer that drives it.
#include "platkit/debug/assert.h"

#include <atomic>
#include <utility>

namespace basekit2 {

class object_interface_t
{
public:
    virtual void add_ref() const = 0;
    virtual void release() const = 0;

protected:
    virtual ~object_interface_t() = default;
};

class mt_ref_count_impl_t
{
public:
    long increment() const noexcept { return m_count.fetch_add(1, std::memory_order_relaxed) + 1; }
    long decrement() const noexcept { return m_count.fetch_sub(1, std::memory_order_acq_rel) - 1; }
    long count() const noexcept { return m_count.load(std::memory_order_relaxed); }

private:
    mutable std::atomic<long> m_count{0};
};

// For objects that never leave one thread.
class simple_ref_count_impl_t
{
public:
    long increment() const noexcept { return ++m_count; }
    long decrement() const noexcept { return --m_count; }
    long count() const noexcept { return m_count; }

private:
    mutable long m_count = 0;
};

// Implements add_ref/release of Interface with the counting policy Count; the
// object deletes itself when the last reference goes.
template <class Interface = object_interface_t, class Count = mt_ref_count_impl_t>
class ref_counted_t : public Interface
{
public:
    template <class... Args>
    explicit ref_counted_t(Args&&... args) : Interface(std::forward<Args>(args)...)
    {
    }
    void add_ref() const override { m_refs.increment(); }
    void release() const override
    {
        if (m_refs.decrement() == 0)
            delete this;
    }
    long ref_count() const { return m_refs.count(); }

protected:
    ~ref_counted_t() override = default;

private:
    Count m_refs;
};

template <class Interface, class Count = mt_ref_count_impl_t>
using intrusive_pointer_impl_t = ref_counted_t<Interface, Count>;

template <class T>
class intrusive_pointer_t
{
public:
    using element_type = T;

    intrusive_pointer_t() noexcept = default;
    intrusive_pointer_t(std::nullptr_t) noexcept {}
    intrusive_pointer_t(T* p, bool add_ref = true) noexcept : m_ptr(p)
    {
        if (m_ptr && add_ref)
            m_ptr->add_ref();
    }
    intrusive_pointer_t(const intrusive_pointer_t& o) noexcept : intrusive_pointer_t(o.m_ptr) {}
    intrusive_pointer_t(intrusive_pointer_t&& o) noexcept : m_ptr(std::exchange(o.m_ptr, nullptr)) {}
    template <class U>
    intrusive_pointer_t(const intrusive_pointer_t<U>& o) noexcept : intrusive_pointer_t(o.get())
    {
    }
    ~intrusive_pointer_t()
    {
        if (m_ptr)
            m_ptr->release();
    }
    intrusive_pointer_t& operator=(intrusive_pointer_t o) noexcept
    {
        std::swap(m_ptr, o.m_ptr);
        return *this;
    }

    T* get() const noexcept { return m_ptr; }
    T* operator->() const
    {
        PLATKIT_ASSERT_MSG(m_ptr != 0, "null intrusive pointer dereferenced");
        return m_ptr;
    }
    T& operator*() const
    {
        PLATKIT_ASSERT_MSG(m_ptr != 0, "null intrusive pointer dereferenced");
        return *m_ptr;
    }
    explicit operator bool() const noexcept { return m_ptr != nullptr; }
    void reset() noexcept { intrusive_pointer_t().swap(*this); }
    void swap(intrusive_pointer_t& o) noexcept { std::swap(m_ptr, o.m_ptr); }

    friend bool operator==(const intrusive_pointer_t& a, const intrusive_pointer_t& b) { return a.m_ptr == b.m_ptr; }
    friend bool operator!=(const intrusive_pointer_t& a, const intrusive_pointer_t& b) { return a.m_ptr != b.m_ptr; }
    friend bool operator<(const intrusive_pointer_t& a, const intrusive_pointer_t& b) { return a.m_ptr < b.m_ptr; }

private:
    T* m_ptr = nullptr;
};

template <class T>
using sptr_t = intrusive_pointer_t<T>;

// Creates Impl (which implements the counting) and hands it out as a pointer to T.
template <class Impl, class... Args>
intrusive_pointer_t<Impl> make_intrusive(Args&&... args)
{
    return intrusive_pointer_t<Impl>(new Impl(std::forward<Args>(args)...));
}

} // namespace basekit2
