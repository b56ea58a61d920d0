#include "basekit2/intrusive.h"

#include <gtest/gtest.h>

#include <string>

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
