#include "suppfmt3/change_stamp.h"

#include <atomic>

namespace suppfmt3 {
namespace {
std::atomic<std::uint64_t> clock_value{0};
} // namespace

std::uint64_t next_change_stamp() { return clock_value.fetch_add(1, std::memory_order_relaxed) + 1; }

std::uint64_t current_change_stamp() { return clock_value.load(std::memory_order_relaxed); }

} // namespace suppfmt3
