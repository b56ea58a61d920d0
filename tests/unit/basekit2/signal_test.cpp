#include "basekit2/signal.h"

#include <gtest/gtest.h>

#include <thread>

using basekit2::_internal::signal_t;

TEST(Signal, SubscribersRunInOrderOnTheRaisingThread)
{
    signal_t<int, bool> sig;
    std::vector<std::pair<int, bool>> seen;
    std::thread::id where;
    sig.connect([&](int r, bool on) { seen.emplace_back(r, on); });
    sig.connect([&](int, bool) { where = std::this_thread::get_id(); });
    std::thread t([&] { sig(3, true); });
    const auto worker = t.get_id();
    t.join();
    ASSERT_EQ(seen.size(), 1u);
    EXPECT_EQ(seen[0], std::make_pair(3, true));
    EXPECT_EQ(where, worker);
}

TEST(Signal, DisconnectInsideAnEmission)
{
    signal_t<> sig;
    int a = 0, b = 0;
    basekit2::_internal::connection_id id_a = 0;
    id_a = sig.connect([&] {
        ++a;
        sig.disconnect(id_a);
    });
    sig.connect([&] { ++b; });
    sig();
    sig();
    EXPECT_EQ(a, 1);
    EXPECT_EQ(b, 2);
    EXPECT_EQ(sig.size(), 1u);
    EXPECT_FALSE(sig.disconnect(id_a));
}

TEST(Signal, CopiesDoNotShareSubscribers)
{
    signal_t<int> sig;
    int calls = 0;
    sig.connect([&](int) { ++calls; });
    signal_t<int> copy(sig);
    copy(1);
    EXPECT_EQ(calls, 0);
}

TEST(Subscriber, ConnectionsEndWithTheSubscriber)
{
    basekit2::_internal::signal_t<int> signal;
    int seen = 0;
    {
        basekit2::subscriber_t subscriber;
        subscriber.subscribe(signal, [&](int v) { seen += v; });
        subscriber.subscribe(signal, [&](int v) { seen += 10 * v; });
        EXPECT_EQ(subscriber.subscription_count(), 2u);
        signal(1);
        EXPECT_EQ(seen, 11);
    }
    EXPECT_TRUE(signal.empty());
    signal(1);
    EXPECT_EQ(seen, 11) << "a destroyed subscriber is not called";
}
