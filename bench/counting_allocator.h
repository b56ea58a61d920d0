#pragma once
// Counts the live heap bytes of the whole program, for the memory figures of
// the benchmarks. Replaces the global operators new and delete: include it
// in exactly one source file of a benchmark program.
#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace bench_memory {

inline std::atomic<long long> g_live_bytes{0};
inline long long live_bytes()
{
    return g_live_bytes.load();
}

} // namespace bench_memory

namespace {
constexpr std::size_t header_size = alignof(std::max_align_t);

// Kept out of line: inlined into operator delete, the compiler would take
// the header arithmetic for an error.
[[gnu::noinline]] void* counted_alloc(std::size_t size)
{
    auto* block = static_cast<unsigned char*>(std::malloc(size + header_size));
    if (!block)
        return nullptr;
    *reinterpret_cast<std::size_t*>(block) = size;
    bench_memory::g_live_bytes += static_cast<long long>(size);
    return block + header_size;
}

[[gnu::noinline]] void counted_free(void* p)
{
    if (!p)
        return;
    auto* block = static_cast<unsigned char*>(p) - header_size;
    bench_memory::g_live_bytes -= static_cast<long long>(*reinterpret_cast<std::size_t*>(block));
    std::free(block);
}
} // namespace

void* operator new(std::size_t size)
{
    if (void* p = counted_alloc(size))
        return p;
    throw std::bad_alloc();
}
void* operator new[](std::size_t size)
{
    return operator new(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return counted_alloc(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return counted_alloc(size);
}
void operator delete(void* p) noexcept
{
    counted_free(p);
}
void operator delete[](void* p) noexcept
{
    counted_free(p);
}
void operator delete(void* p, std::size_t) noexcept
{
    counted_free(p);
}
void operator delete[](void* p, std::size_t) noexcept
{
    counted_free(p);
}
