// The progress and messenger bridges with the real scheduler in a running
// event loop: what a worker reports reaches the GUI thread merged, late
// enough to coalesce bursts and with the latest values.
#include "corr_dialogs2/msngr_bridge.h"

#include "task_test_util.h"

#include "platkit/debug/assert.h"
#include "wxkit1/tasks/scheduler.h"

#include <gtest/gtest.h>
#include <wx/thread.h>

#include <string>
#include <thread>
#include <vector>

using corr_dialogs2::message_data_t;
using corr_dialogs2::messenger_bridge_t;
using corr_dialogs2::progress_bridge_t;
using corr_test::run_delayed_tasks_due_within;
using corr_test::wait_until;

namespace {

// What reaches the GUI thread from a progress bridge.
struct progress_log
{
    std::vector<int> percents;
    std::vector<std::wstring> texts;
    int firsts = 0;
    int seconds = 0;
    bool off_gui = false;

    explicit progress_log(progress_bridge_t& bridge)
    {
        bridge.percent_changed.connect([this](int p) {
            check_thread();
            percents.push_back(p);
        });
        bridge.status_changed.connect([this](std::wstring t) {
            check_thread();
            texts.push_back(std::move(t));
        });
        bridge.notify_first.connect([this] { ++firsts; });
        bridge.notify_second.connect([this] { ++seconds; });
    }
    void check_thread()
    {
        if (!wxThread::IsMain())
            off_gui = true;
    }
};

// Waits until every progress update due by now has reached the GUI.
bool deliver_progress()
{
    return run_delayed_tasks_due_within(260);
}

} // namespace

TEST(ProgressBridge, ThousandTextUpdatesArriveAsOneWithTheLastText)
{
    auto bridge = progress_bridge_t::create();
    progress_log log(*bridge);
    std::thread worker([&] {
        for (int i = 0; i < 1000; ++i)
            bridge->set_status(L"file " + std::to_wstring(i));
    });
    worker.join();
    ASSERT_TRUE(deliver_progress());
    EXPECT_EQ((std::vector<std::wstring>{L"file 999"}), log.texts);
    EXPECT_FALSE(log.off_gui);
}

TEST(ProgressBridge, PercentChangesOnlyOnWholePercents)
{
    auto bridge = progress_bridge_t::create();
    progress_log log(*bridge);
    bridge->begin(L"packing", 200);
    EXPECT_EQ(200, bridge->get_total());

    // Each step is delivered before the next, so every scheduled update shows.
    for (int step = 1; step <= 6; ++step) {
        bridge->progressed(1);
        ASSERT_TRUE(deliver_progress());
    }
    EXPECT_EQ((std::vector<int>{1, 2, 3}), log.percents);
    EXPECT_EQ((std::vector<std::wstring>{L"packing"}), log.texts);
}

TEST(ProgressBridge, StepPastTheTotalStopsAtHundred)
{
    auto bridge = progress_bridge_t::create();
    progress_log log(*bridge);
    bridge->begin(L"", 10);
    bridge->step(9.5);
    bridge->step(7); // beyond the total
    ASSERT_TRUE(deliver_progress());
    EXPECT_EQ((std::vector<int>{100}), log.percents);
    bridge->progressed(1); // still 100: nothing new
    ASSERT_TRUE(deliver_progress());
    EXPECT_EQ((std::vector<int>{100}), log.percents);
    EXPECT_EQ(10, bridge->get_total());
}

TEST(ProgressBridge, ZeroTotalReportsNothing)
{
    auto bridge = progress_bridge_t::create();
    progress_log log(*bridge);
    bridge->begin(L"", 0);
    bridge->progressed(5);
    ASSERT_TRUE(deliver_progress());
    EXPECT_TRUE(log.percents.empty());
}

TEST(ProgressBridge, UpdatesAfterADeliveryStartANewBurst)
{
    auto bridge = progress_bridge_t::create();
    progress_log log(*bridge);
    std::thread([&] { bridge->set_status(L"one"); }).join();
    ASSERT_TRUE(deliver_progress());
    std::thread([&] {
        bridge->set_status(L"two");
        bridge->set_status(L"three");
    }).join();
    ASSERT_TRUE(deliver_progress());
    EXPECT_EQ((std::vector<std::wstring>{L"one", L"three"}), log.texts);
}

TEST(ProgressBridge, NotificationsArriveAtOnceAndCancelSetsTheFlag)
{
    auto bridge = progress_bridge_t::create();
    progress_log log(*bridge);
    EXPECT_FALSE(bridge->is_cancelled());
    std::thread([&] {
        bridge->raise_first();
        bridge->raise_second();
        bridge->raise_second();
    }).join();
    ASSERT_TRUE(wait_until([&] { return log.firsts == 1 && log.seconds == 2; }));
    bridge->cancel();
    EXPECT_TRUE(bridge->is_cancelled());
}

TEST(ProgressBridge, BridgeReleasedBeforeDeliveryEmitsNothing)
{
    int delivered = 0;
    {
        auto bridge = progress_bridge_t::create();
        bridge->status_changed.connect([&](const std::wstring&) { ++delivered; });
        bridge->begin(L"gone", 1);
        bridge->progressed(1);
    }
    ASSERT_TRUE(deliver_progress());
    EXPECT_EQ(0, delivered);
}

TEST(ProgressBridge, UninitialisedSchedulerAssertsAndPostsNothing)
{
    auto bridge = progress_bridge_t::create();
    progress_log log(*bridge);
    std::vector<std::string> conditions, messages;
    auto previous =
        platkit::debug::set_assert_handler([&](const platkit::debug::assertion_info& info) {
            conditions.emplace_back(info.condition);
            messages.emplace_back(info.message);
        });
    wxkit1::tasks::Scheduler::Shutdown();
    bridge->raise_first();
    wxkit1::tasks::Scheduler::Initialize();
    platkit::debug::set_assert_handler(previous);

    ASSERT_EQ(1u, conditions.size());
    EXPECT_EQ("Scheduler::IsInitialized()", conditions[0]);
    EXPECT_EQ("Attempt to schedule a task in uninitialized Scheduler. Task will not complete.",
              messages[0]);
    corr_test::pump_events(20);
    EXPECT_EQ(0, log.firsts);
}

TEST(MessengerBridge, TenMessagesArriveAsOneBatchInOrder)
{
    auto bridge = messenger_bridge_t::create();
    std::vector<std::list<message_data_t>> batches;
    bool batch_off_gui = false;
    bridge->messages_received.connect([&](std::list<message_data_t> batch) {
        batch_off_gui = batch_off_gui || !wxThread::IsMain();
        batches.push_back(std::move(batch));
    });
    std::vector<std::thread::id> async_threads;
    bridge->message_received.connect(
        [&](const message_data_t&) { async_threads.push_back(std::this_thread::get_id()); });

    std::thread worker([&] {
        for (unsigned i = 0; i < 10; ++i) {
            const std::wstring text = L"message " + std::to_wstring(i);
            bridge->message(i % 2 ? notify2::msg_warning : notify2::msg_error, text.c_str());
        }
    });
    const auto worker_id = worker.get_id();
    worker.join();
    ASSERT_TRUE(run_delayed_tasks_due_within(510));

    ASSERT_EQ(1u, batches.size());
    ASSERT_EQ(10u, batches[0].size());
    unsigned i = 0;
    for (const auto& m : batches[0]) {
        EXPECT_EQ(L"message " + std::to_wstring(i), m.text);
        EXPECT_EQ(i % 2 ? 2u : 4u, m.type);
        ++i;
    }
    EXPECT_FALSE(batch_off_gui);
    EXPECT_EQ(std::vector<std::thread::id>(10, worker_id), async_threads);
}

TEST(MessengerBridge, NullTextIsAnEmptyMessage)
{
    auto bridge = messenger_bridge_t::create();
    std::list<message_data_t> got;
    bridge->messages_received.connect(
        [&](std::list<message_data_t> batch) { got = std::move(batch); });
    bridge->message(notify2::msg_info, nullptr);
    ASSERT_TRUE(run_delayed_tasks_due_within(510));
    ASSERT_EQ(1u, got.size());
    EXPECT_EQ(L"", got.front().text);
    EXPECT_EQ(1u, got.front().type);
}

// With the scheduler's clock in the test's hands: a worker that reports every
// 10 ms for a while. Each value arrives 250 ms (a batch of messages 500 ms)
// after the first of its burst, never sooner and no later than the next
// tick, and what was reported last always arrives.
namespace {

using std::chrono::milliseconds;

constexpr milliseconds tick{10};

// The times between consecutive deliveries, and from the start to the first.
std::vector<long> intervals(const std::vector<long>& times)
{
    std::vector<long> out;
    long previous = 0;
    for (const long t : times) {
        out.push_back(t - previous);
        previous = t;
    }
    return out;
}

} // namespace

TEST(ProgressBridge, UpdatesSpreadOverTimeArriveEvery250msAndTheLastOneAlways)
{
    // 100 steps end just before a delivery; 76 just after one, so that the
    // last value starts a burst of its own.
    for (const int steps : {100, 76}) {
        SCOPED_TRACE("steps " + std::to_string(steps));
        corr_test::manual_clock clock;
        auto bridge = progress_bridge_t::create();
        std::vector<long> percent_times, text_times;
        std::vector<int> percents;
        std::vector<std::wstring> texts;
        bridge->percent_changed.connect([&](int p) {
            percent_times.push_back(static_cast<long>(clock.elapsed().count()));
            percents.push_back(p);
        });
        bridge->status_changed.connect([&](std::wstring t) {
            text_times.push_back(static_cast<long>(clock.elapsed().count()));
            texts.push_back(std::move(t));
        });

        bridge->begin(L"start", 10.0 * steps);
        for (int i = 1; i <= steps; ++i) {
            bridge->progressed(10); // a new whole percent every step
            bridge->set_status(L"step " + std::to_wstring(i));
            clock.advance(tick);
        }
        for (int i = 0; i < 30; ++i)
            clock.advance(tick);

        for (const auto* times : {&percent_times, &text_times}) {
            ASSERT_GE(times->size(), 3u);
            for (const long gap : intervals(*times)) {
                EXPECT_GE(gap, 250);
                EXPECT_LE(gap, 250 + tick.count());
            }
        }
        EXPECT_EQ(percents.back(), 100);
        EXPECT_EQ(texts.back(), L"step " + std::to_wstring(steps));
        EXPECT_LE(percent_times.back(), steps * tick.count() + 250);
    }
}

TEST(MessengerBridge, MessagesSpreadOverTimeArriveInBatchesEvery500msAllOfThemInOrder)
{
    corr_test::manual_clock clock;
    auto bridge = messenger_bridge_t::create();
    std::vector<long> times;
    std::vector<std::wstring> received;
    bridge->messages_received.connect([&](std::list<message_data_t> batch) {
        times.push_back(static_cast<long>(clock.elapsed().count()));
        for (auto& m : batch)
            received.push_back(std::move(m.text));
    });
    std::vector<std::wstring> sent;
    for (int i = 0; i < 150; ++i) {
        sent.push_back(L"message " + std::to_wstring(i));
        bridge->message(notify2::msg_info, sent.back().c_str());
        clock.advance(tick);
    }
    for (int i = 0; i < 60; ++i)
        clock.advance(tick);

    EXPECT_EQ(received, sent);
    ASSERT_GE(times.size(), 3u);
    for (const long gap : intervals(times)) {
        EXPECT_GE(gap, 500);
        EXPECT_LE(gap, 500 + tick.count());
    }
}

TEST(MessengerBridge, AFlushedBatchArrivesBeforeWhatIsPostedAfterItAndOnlyOnce)
{
    corr_test::manual_clock clock;
    auto messenger = messenger_bridge_t::create();
    auto progress = progress_bridge_t::create();
    std::vector<std::wstring> events;
    int batches = 0;
    messenger->messages_received.connect([&](std::list<message_data_t> batch) {
        ++batches;
        for (const auto& m : batch)
            events.push_back(m.text);
    });
    progress->notify_second.connect([&] { events.push_back(L"finished"); });

    // A worker's last words, then its end.
    std::thread([&] {
        messenger->message(notify2::msg_error, L"Cannot write the archive");
        messenger->flush();
        messenger->message(notify2::msg_warning, L"and one more");
        progress->raise_second();
    }).join();
    clock.advance(milliseconds(0)); // no time has passed: nothing was due by delay
    EXPECT_EQ(events, (std::vector<std::wstring>{L"Cannot write the archive", L"and one more",
                                                 L"finished"}));
    for (int i = 0; i < 60; ++i)
        clock.advance(tick);
    EXPECT_EQ(batches, 1) << "the delayed entry of the flushed batch delivers nothing";
    messenger->flush(); // nothing pending: nothing happens
    clock.advance(tick);
    EXPECT_EQ(batches, 1);
    EXPECT_EQ(events.size(), 3u);
}
