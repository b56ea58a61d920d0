#include "basekit2/intrusive.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace {
struct task_interface : basekit2::object_interface_t
{
    virtual int value() const = 0;
};
struct task : basekit2::intrusive_pointer_impl_t<task_interface>
{
    explicit task(bool* flag) : alive(flag) { *alive = true; }
    ~task() override { *alive = false; }
    int value() const override { return 7; }
    bool* alive;
};
} // namespace

TEST(Intrusive, CountsThroughTheInterface)
{
    bool alive = false;
    {
        basekit2::sptr_t<task_interface> p = basekit2::make_intrusive<task>(&alive);
        basekit2::intrusive_pointer_t<task_interface> q = p;
        EXPECT_EQ(q->value(), 7);
        p.reset();
        EXPECT_TRUE(alive);
    }
    EXPECT_FALSE(alive);
}

TEST(Intrusive, NullDereferenceRaisesTheAssertion)
{
    std::string condition;
    auto previous = platkit::debug::set_assert_handler(
        [&](const platkit::debug::assertion_info& i) { condition = i.condition; });
    basekit2::intrusive_pointer_t<task_interface> empty;
    (void)empty.operator->();
    platkit::debug::set_assert_handler(previous);
    EXPECT_EQ(condition, "m_ptr != 0");
}

namespace {
struct counted_interface : basekit2::object_interface_t
{
};
struct mt_counted : basekit2::ref_counted_t<counted_interface, basekit2::mt_ref_count_impl_t>
{
    explicit mt_counted(int* deaths) : m_deaths(deaths) {}
    ~mt_counted() override { ++*m_deaths; }
    int* m_deaths;
};
struct st_counted : basekit2::ref_counted_t<counted_interface, basekit2::simple_ref_count_impl_t>
{
    explicit st_counted(int* deaths) : m_deaths(deaths) {}
    ~st_counted() override { ++*m_deaths; }
    int* m_deaths;
};
} // namespace

TEST(Intrusive, ThreadSafeCountSurvivesCopiesOnManyThreadsAndDeletesOnce)
{
    int deaths = 0;
    {
        basekit2::sptr_t<mt_counted> shared(new mt_counted(&deaths));
        std::vector<std::thread> threads;
        for (int t = 0; t < 4; ++t)
            threads.emplace_back([shared] {
                for (int i = 0; i < 20000; ++i) {
                    basekit2::sptr_t<counted_interface> copy = shared;
                    copy.reset();
                }
            });
        for (auto& t : threads)
            t.join();
        EXPECT_EQ(shared->ref_count(), 1);
        EXPECT_EQ(deaths, 0);
    }
    EXPECT_EQ(deaths, 1);

    {
        basekit2::sptr_t<st_counted> single(new st_counted(&deaths));
        basekit2::sptr_t<counted_interface> second = single;
        EXPECT_EQ(single->ref_count(), 2);
        single.reset();
        EXPECT_EQ(deaths, 1);
    }
    EXPECT_EQ(deaths, 2);
}
