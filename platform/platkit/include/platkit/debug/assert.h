#pragma once
// Debug assertions of the platform. The handler is process-wide and can be
// replaced, so that a test turns a failed assertion into a test failure.
#include <functional>

namespace platkit::debug {

struct assertion_info
{
    const char* file;
    int line;
    const char* function;
    const char* condition; // the failed condition as written in the source
    const char* message;   // may be empty, never null
};

using assert_handler_t = std::function<void(const assertion_info&)>;

// Installs a handler and returns the previous one. An empty handler restores
// the default, which prints the assertion to stderr and goes on.
assert_handler_t set_assert_handler(assert_handler_t handler);

void assertion_failed(const char* file, int line, const char* function, const char* condition,
                      const char* message);

} // namespace platkit::debug

#define PLATKIT_ASSERT_MSG(cond, msg)                                                              \
    do {                                                                                           \
        if (!(cond))                                                                               \
            ::platkit::debug::assertion_failed(__FILE__, __LINE__, __func__, #cond, msg);          \
    } while (false)
#define PLATKIT_ASSERT(cond) PLATKIT_ASSERT_MSG(cond, "")
