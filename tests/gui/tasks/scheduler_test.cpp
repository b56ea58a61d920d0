// The GUI task scheduler with a real event loop: tasks added from other
// threads run on the GUI thread, in order, delayed ones not before their
// time, cancelled ones not at all.
#include "task_test_util.h"

#include "wxkit1/tasks/post_signal.h"

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>
#include <wx/thread.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

using namespace wxkit1::tasks;
using corr_test::make_task;
using corr_test::wait_until;
using clock_type = std::chrono::steady_clock;

TEST(Scheduler, TasksFromAWorkerRunOnTheGuiThreadInOrder)
{
    ASSERT_TRUE(Scheduler::IsInitialized());
    std::vector<int> order;
    std::atomic<bool> off_gui{false};
    std::thread worker([&] {
        auto scheduler = Scheduler::Get();
        for (int i = 0; i < 500; ++i)
            EXPECT_EQ(ok, scheduler->AddTask(make_task([&, i] {
                                                 if (!wxThread::IsMain())
                                                     off_gui = true;
                                                 order.push_back(i);
                                             }),
                                             L"test.order"));
    });
    worker.join();
    ASSERT_TRUE(wait_until([&] { return order.size() == 500; }));
    EXPECT_FALSE(off_gui);
    for (int i = 0; i < 500; ++i)
        ASSERT_EQ(i, order[i]);
}

TEST(Scheduler, BurstOfAdditionsWakesTheEventLoopOnce)
{
    auto scheduler = Scheduler::Get();
    const auto before = scheduler->GetStats();
    int runs = 0;
    std::thread worker([&] {
        for (int i = 0; i < 1000; ++i)
            scheduler->AddTask(make_task([&] { ++runs; }), L"test.burst");
    });
    worker.join();
    ASSERT_TRUE(wait_until([&] { return runs == 1000; }));
    const auto after = scheduler->GetStats();
    EXPECT_EQ(1000u, after.added - before.added);
    EXPECT_EQ(1u, after.wakeups - before.wakeups);
}

TEST(Scheduler, DelayedTasksRunNotBeforeTheirTimeAndInDueOrder)
{
    std::vector<int> order;
    std::vector<clock_type::duration> elapsed(2);
    const auto start = clock_type::now();
    std::thread worker([&] {
        auto scheduler = Scheduler::Get();
        scheduler->AddDelayedTask(make_task([&] {
                                      elapsed[0] = clock_type::now() - start;
                                      order.push_back(300);
                                  }),
                                  300, L"test.late");
        scheduler->AddDelayedTask(make_task([&] {
                                      elapsed[1] = clock_type::now() - start;
                                      order.push_back(100);
                                  }),
                                  100, L"test.early");
    });
    worker.join();
    ASSERT_TRUE(wait_until([&] { return order.size() == 2; }));
    EXPECT_EQ((std::vector<int>{100, 300}), order);
    EXPECT_GE(elapsed[0], std::chrono::milliseconds(300));
    EXPECT_GE(elapsed[1], std::chrono::milliseconds(100));
}

TEST(Scheduler, DelayedTasksFollowTheClockTheSchedulerIsGiven)
{
    std::vector<int> ran;
    {
        corr_test::manual_clock clock;
        Scheduler::Get()->AddDelayedTask(make_task([&] { ran.push_back(100); }), 100,
                                         L"test.clock");
        std::thread([&] {
            Scheduler::Get()->AddDelayedTask(make_task([&] { ran.push_back(40); }), 40,
                                             L"test.clock");
        }).join();
        corr_test::pump_events(150); // real time passes; the clock does not
        EXPECT_TRUE(ran.empty());
        clock.advance(std::chrono::milliseconds(39));
        EXPECT_TRUE(ran.empty());
        clock.advance(std::chrono::milliseconds(1));
        EXPECT_EQ(std::vector<int>{40}, ran);
        clock.advance(std::chrono::milliseconds(60));
        EXPECT_EQ((std::vector<int>{40, 100}), ran);
        Scheduler::Get()->AddDelayedTask(make_task([&] { ran.push_back(30); }), 30, L"test.clock");
    }
    // The steady clock is back, and the timer with it.
    ASSERT_TRUE(wait_until([&] { return ran.size() == 3; }));
}

TEST(Scheduler, DelayedTaskAddedOnTheGuiThreadRuns)
{
    bool ran = false;
    const auto start = clock_type::now();
    Scheduler::Get()->AddDelayedTask(make_task([&] { ran = true; }), 50, L"test.gui_delayed");
    ASSERT_TRUE(wait_until([&] { return ran; }));
    EXPECT_GE(clock_type::now() - start, std::chrono::milliseconds(50));
}

TEST(Scheduler, CancelledTaskDoesNotRun)
{
    bool ran = false;
    auto task = make_task([&] { ran = true; });
    Scheduler::Get()->AddDelayedTask(task, 20, L"test.cancelled");
    task->Cancel();
    ASSERT_TRUE(corr_test::run_delayed_tasks_due_within(40));
    EXPECT_FALSE(ran);
    EXPECT_FALSE(task->IsDone());
}

namespace {

class recording_background_task final
    : public basekit2::intrusive_pointer_impl_t<BackgroundTaskImpl>
{
public:
    std::atomic<bool> did_task{false};
    std::atomic<bool> task_on_gui{true};
    bool finished = false;
    bool finished_on_gui = false;
    std::atomic<bool> hold{false};
    std::atomic<bool> entered{false};

    void DoTask() override
    {
        entered = true;
        task_on_gui = wxThread::IsMain();
        while (hold && !IsCancelled())
            std::this_thread::yield();
        did_task = true;
    }
    void TaskFinished() override
    {
        finished = true;
        finished_on_gui = wxThread::IsMain();
    }
};

} // namespace

TEST(Scheduler, BackgroundTaskWorksOffTheGuiThreadAndFinishesOnIt)
{
    basekit2::intrusive_pointer_t<recording_background_task> task(new recording_background_task);
    ASSERT_EQ(ok, Scheduler::Get()->AddBackgroundTask(task, L"test.background"));
    ASSERT_TRUE(wait_until([&] { return task->finished; }));
    EXPECT_TRUE(task->did_task);
    EXPECT_FALSE(task->task_on_gui);
    EXPECT_TRUE(task->finished_on_gui);
}

TEST(Scheduler, CancelledBackgroundTaskNeverFinishes)
{
    basekit2::intrusive_pointer_t<recording_background_task> first(new recording_background_task);
    basekit2::intrusive_pointer_t<recording_background_task> second(new recording_background_task);
    first->hold = true; // stays in DoTask until cancelled
    auto scheduler = Scheduler::Get();
    scheduler->AddBackgroundTask(first, L"test.first");
    scheduler->AddBackgroundTask(second, L"test.second");
    ASSERT_TRUE(wait_until([&] { return first->entered.load(); }));
    first->Cancel();
    ASSERT_TRUE(wait_until([&] { return second->finished; }));
    EXPECT_TRUE(first->did_task); // it ran, saw the cancellation and stopped
    corr_test::pump_events(20);
    EXPECT_FALSE(first->finished);
}

TEST(Scheduler, AfterShutdownNothingRunsAndAddingFails)
{
    auto old = Scheduler::Get();
    bool ran = false;
    old->AddDelayedTask(make_task([&] { ran = true; }), 10, L"test.dropped");
    Scheduler::Shutdown();
    EXPECT_FALSE(Scheduler::IsInitialized());
    error_code_t why = ok;
    EXPECT_FALSE(Scheduler::Get([&](error_code_t e) { why = e; }));
    EXPECT_EQ(shut_down, why);
    EXPECT_EQ(shut_down, old->AddTask(make_task([&] { ran = true; }), L"test.late"));
    corr_test::pump_events(50);
    EXPECT_FALSE(ran);

    Scheduler::Initialize();
    ASSERT_TRUE(Scheduler::IsInitialized());
    ASSERT_TRUE(corr_test::run_delayed_tasks_due_within(1));
    EXPECT_FALSE(ran);
}

TEST(Scheduler, PostSignalEmitsOnTheGuiThreadWhileTheOwnerLives)
{
    struct owner_t
    {
        parameterless_signal_t signal;
    };
    auto owner = boost::make_shared<owner_t>();
    int emitted = 0;
    owner->signal.connect([&] { ++emitted; });
    std::thread([&] { EXPECT_EQ(ok, PostSignal(owner->signal, owner, L"test.signal")); }).join();
    ASSERT_TRUE(wait_until([&] { return emitted == 1; }));

    // An owner gone before the task runs: nothing is emitted, nothing crashes.
    int emitted_gone = 0;
    owner->signal.connect([&] { ++emitted_gone; });
    PostSignal(owner->signal, owner, L"test.signal");
    owner.reset();
    ASSERT_TRUE(corr_test::run_delayed_tasks_due_within(1));
    EXPECT_EQ(0, emitted_gone);
}
