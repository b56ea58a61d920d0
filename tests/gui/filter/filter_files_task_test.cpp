// Filtering files by a mask on the background thread, with the result
// delivered on the GUI thread; newer filterings supersede older ones.
#include "corr_dialogs2/filter_files_task.h"

#include "gui_test.h"

#include <gtest/gtest.h>
#include <wx/thread.h>

#include <string>
#include <vector>

using corr_dialogs2::util::file_list_t;
using corr_dialogs2::util::filter_files_runner_t;
using corr_dialogs2::util::filter_files_task_t;

namespace {

file_list_t many_files(size_t n)
{
    file_list_t out;
    out.reserve(n);
    const wchar_t* dirs[] = {L"/home/me/proj/src/", L"/home/me/proj/tests/", L"/usr/include/"};
    const wchar_t* exts[] = {L".cpp", L".h", L".c"};
    for (size_t i = 0; i < n; ++i)
        out.emplace_back(std::wstring(dirs[i % 3]) + L"file" + std::to_wstring(i) +
                         exts[(i / 3) % 3]);
    return out;
}

struct cancelled_flag final : wxkit1::tasks::ICancellable
{
    void Cancel() override {}
    bool IsCancelled() const override { return true; }
};

} // namespace

TEST(FilterFilesTask, MatchesKeepTheInputOrder)
{
    const file_list_t files{L"/p/src/b.cpp", L"/p/include/a.h", L"/p/src/a.cpp",
                            L"/p/src/sub/c.cpp", L"/p/x.cpp"};
    EXPECT_EQ((file_list_t{L"/p/src/b.cpp", L"/p/src/a.cpp", L"/p/src/sub/c.cpp", L"/p/x.cpp"}),
              filter_files_task_t::get_files_by_mask(L"*.cpp", files));
    EXPECT_EQ((file_list_t{L"/p/src/b.cpp", L"/p/src/a.cpp", L"/p/src/sub/c.cpp"}),
              filter_files_task_t::get_files_by_mask(L"src/*", files));
    EXPECT_TRUE(filter_files_task_t::get_files_by_mask(L"*.java", files).empty());
    EXPECT_TRUE(filter_files_task_t::get_files_by_mask(L"*", {}).empty());
    cancelled_flag stop;
    EXPECT_TRUE(filter_files_task_t::get_files_by_mask(L"*", many_files(10000), &stop).empty());
}

TEST(FilterFilesTask, ResultArrivesOnTheGuiThread)
{
    const file_list_t files = many_files(3000);
    int deliveries = 0;
    bool on_gui = false;
    file_list_t got;
    filter_files_runner_t runner(files, [&](const file_list_t& matching) {
        ++deliveries;
        on_gui = wxThread::IsMain();
        got = matching;
    });
    ASSERT_TRUE(runner.start(L"tests/*.h"));
    EXPECT_TRUE(runner.is_busy());
    ASSERT_TRUE(corr_test::wait_until([&] { return deliveries == 1; }));
    EXPECT_TRUE(on_gui);
    EXPECT_FALSE(runner.is_busy());
    EXPECT_EQ(filter_files_task_t::get_files_by_mask(L"tests/*.h", files), got);
    EXPECT_EQ(333u, got.size());
}

TEST(FilterFilesTask, EmptyInputGivesAnEmptyResult)
{
    int deliveries = 0;
    file_list_t got{L"stale"};
    filter_files_runner_t runner({}, [&](const file_list_t& matching) {
        ++deliveries;
        got = matching;
    });
    ASSERT_TRUE(runner.start(L"*"));
    ASSERT_TRUE(corr_test::wait_until([&] { return deliveries == 1; }));
    EXPECT_TRUE(got.empty());
}

TEST(FilterFilesTask, NewerFilteringSupersedesTheRunningOne)
{
    const file_list_t files = many_files(300000);
    std::vector<file_list_t> delivered;
    filter_files_runner_t runner(
        files, [&](const file_list_t& matching) { delivered.push_back(matching); });
    // Typing "*.c", then "*.cp", then "*.cpp" faster than the filter runs.
    ASSERT_TRUE(runner.start(L"*.c"));
    ASSERT_TRUE(runner.start(L"*.cp"));
    ASSERT_TRUE(runner.start(L"*.cpp"));
    EXPECT_EQ(3u, runner.generation());
    ASSERT_TRUE(corr_test::wait_until([&] { return !runner.is_busy(); }, 20000));
    corr_test::pump_events(50); // a superseded result would show up by now
    ASSERT_EQ(1u, delivered.size());
    EXPECT_EQ(filter_files_task_t::get_files_by_mask(L"*.cpp", files), delivered[0]);
    EXPECT_EQ(L"/home/me/proj/src/file0.cpp", delivered[0].front().str());

    // Once delivered, the next filtering is delivered too.
    ASSERT_TRUE(runner.start(L"include/file2.cpp"));
    ASSERT_TRUE(corr_test::wait_until([&] { return delivered.size() == 2; }, 20000));
    EXPECT_EQ((file_list_t{L"/usr/include/file2.cpp"}), delivered[1]);
}

TEST(FilterFilesTask, RunnerGoneBeforeTheResultDeliversNothing)
{
    int deliveries = 0;
    {
        filter_files_runner_t runner(many_files(100000), [&](const file_list_t&) { ++deliveries; });
        ASSERT_TRUE(runner.start(L"*"));
    }
    bool later = false;
    filter_files_runner_t probe({}, [&](const file_list_t&) { later = true; });
    ASSERT_TRUE(probe.start(L"*")); // background tasks run in order: this one ends last
    ASSERT_TRUE(corr_test::wait_until([&] { return later; }, 20000));
    EXPECT_EQ(0, deliveries);
}
