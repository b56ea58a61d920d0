#include "platkit/debug/assert.h"

#include <cstdio>
#include <mutex>

namespace platkit::debug {
namespace {
std::mutex g_handler_mutex;
assert_handler_t g_handler;
} // namespace

assert_handler_t set_assert_handler(assert_handler_t handler)
{
    std::lock_guard lock(g_handler_mutex);
    std::swap(g_handler, handler);
    return handler;
}

void assertion_failed(const char* file, int line, const char* function, const char* condition,
                      const char* message)
{
    const assertion_info info{file, line, function, condition, message ? message : ""};
    assert_handler_t handler;
    {
        std::lock_guard lock(g_handler_mutex);
        handler = g_handler;
    }
    if (handler) {
        handler(info);
        return;
    }
    std::fprintf(stderr, "%s:%d: assertion \"%s\" failed in %s%s%s\n", info.file, info.line,
                 info.condition, info.function, *info.message ? ": " : "", info.message);
}

} // namespace platkit::debug
