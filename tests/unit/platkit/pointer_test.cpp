#include "platkit/debug/assert.h"
#include "platkit/memory/pointers/shared_pointer.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

using namespace platkit::memory::pointers;

namespace {
struct counted : shared_object
{
    explicit counted(int* counter) : deaths(counter) {}
    ~counted() override { ++*deaths; }
    int* deaths;
};
} // namespace

TEST(SharedPointer, LastReferenceDeletesAcrossThreads)
{
    int deaths = 0;
    {
        auto p = make_shared_pointer<counted>(&deaths);
        std::vector<std::thread> threads;
        for (int t = 0; t < 4; ++t)
            threads.emplace_back([p] {
                for (int i = 0; i < 10000; ++i) {
                    shared_pointer<counted> copy = p;
                    copy.reset();
                }
            });
        for (auto& th : threads)
            th.join();
        EXPECT_EQ(p->use_count(), 1);
        // A raw pointer can be made shared again: the count is in the object.
        shared_pointer<counted> again(p.get());
        EXPECT_EQ(p->use_count(), 2);
    }
    EXPECT_EQ(deaths, 1);
}

TEST(Assert, ReplaceableHandlerSeesConditionText)
{
    std::string seen;
    auto previous = platkit::debug::set_assert_handler(
        [&](const platkit::debug::assertion_info& info) { seen = info.condition; });
    const int* p = nullptr;
    PLATKIT_ASSERT_MSG(p != 0, "must not be null");
    platkit::debug::set_assert_handler(previous);
    EXPECT_EQ(seen, "p != 0");
}
