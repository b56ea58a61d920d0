// The import worker: a new result from recorded output on a real thread,
// what it reports, and cancellation.
#include "host/import_job.h"
#include "host_test_support.h"

#include "basekit2/threading/mutex.h"

#include <boost/make_shared.hpp>

#include <atomic>
#include <condition_variable>
#include <mutex>

namespace {

using namespace host_test;
using corrview::import_job_t;

// What a worker reports, kept under a lock (the worker thread writes, the
// test thread reads); cancels when told to.
class recorder_t : public notify2::IProgress, public notify2::IMessenger
{
public:
    void begin(const std::wstring&, double total) override
    {
        lock_and([&] { m_total = total; });
    }
    void progressed(double amount) override
    {
        lock_and([&] { m_position += amount; });
    }
    void set_status(const std::wstring& text) override
    {
        lock_and([&] { statuses.push_back(text); });
    }
    void raise_first() override
    {
        lock_and([&] { ++finished; });
        m_done.notify_all();
    }
    void raise_second() override {}
    double get_total() const override { return m_total; }
    bool is_cancelled() const override { return cancel.load(); }
    void message(std::uint32_t type, const wchar_t* text) override
    {
        lock_and([&] { messages.emplace_back(type, text ? text : L""); });
    }

    bool wait_finished()
    {
        std::unique_lock lock(m_mutex);
        return m_done.wait_for(lock, std::chrono::seconds(60), [&] { return finished > 0; });
    }

    std::atomic<bool> cancel{false};
    int finished = 0;
    std::vector<std::wstring> statuses;
    std::vector<std::pair<std::uint32_t, std::wstring>> messages;

private:
    template <class F> void lock_and(F&& f)
    {
        std::lock_guard lock(m_mutex);
        f();
    }
    std::mutex m_mutex;
    std::condition_variable m_done;
    double m_total = 0, m_position = 0;
};

TEST(ImportJob, WorkerMakesANewResultAndTellsTheEndOnce)
{
    temp_dir_t tmp;
    auto recorder = boost::make_shared<recorder_t>();
    const basekit2::path_t dir =
        corrview::unique_result_dir(basekit2::path_t(tmp.path()), L"leaks");
    import_job_t job({basekit2::path_t(recorded("memcheck_leaks_truncated.xml")),
                      basekit2::path_t(recorded("tsan_race_counter.txt"))},
                     dir);
    job.start(recorder, recorder);
    ASSERT_TRUE(recorder->wait_finished());
    job.join();
    EXPECT_TRUE(job.is_finished());
    EXPECT_EQ(recorder->finished, 1);

    ASSERT_TRUE(job.engine()) << platkit::strings::wide_to_utf8(job.report().error);
    EXPECT_EQ(fs::path(job.engine()->get_result_dir().str()), fs::path(dir.str()));
    EXPECT_EQ(job.engine()->get_result_name(), L"leaks");
    EXPECT_EQ(job.report().files.size(), 2u);
    EXPECT_FALSE(job.engine()->get_problems()->empty());
    // One info per file, and the truncated output's warning.
    int infos = 0, warnings = 0;
    for (const auto& [type, text] : recorder->messages) {
        infos += type == notify2::msg_info;
        warnings += type == notify2::msg_warning;
    }
    EXPECT_EQ(infos, 2);
    EXPECT_GE(warnings, 1);
    ASSERT_EQ(recorder->statuses.size(), 3u) << "the guard's start, then one per file";
    EXPECT_NE(recorder->statuses[2].find(L"tsan_race_counter.txt"), std::wstring::npos);

    // The next result named the same gets a folder of its own.
    EXPECT_EQ(corrview::unique_result_dir(basekit2::path_t(tmp.path()), L"leaks").leaf(),
              L"leaks-2");
}

TEST(ImportJob, FailureAndCancellationLeaveNothing)
{
    temp_dir_t tmp;
    // Not analyser output: the error names the file.
    {
        recorder_t recorder;
        import_job_t job({basekit2::path_t(fs::path(CORR_SAMPLES_DIR) / "src" / "mem_leaks.c")},
                         basekit2::path_t(tmp / "bad"));
        job.run(&recorder, &recorder);
        EXPECT_FALSE(job.engine());
        EXPECT_FALSE(job.report().cancelled);
        EXPECT_NE(job.report().error.find(L"mem_leaks.c"), std::wstring::npos);
        ASSERT_FALSE(recorder.messages.empty());
        EXPECT_EQ(recorder.messages.back().first, std::uint32_t(notify2::msg_error));
        EXPECT_EQ(recorder.finished, 1);
    }
    // Cancelled before it starts: no error message, no folder.
    {
        recorder_t recorder;
        recorder.cancel = true;
        import_job_t job({basekit2::path_t(recorded("memcheck_overflow.xml"))},
                         basekit2::path_t(tmp / "stopped"));
        job.run(&recorder, &recorder);
        EXPECT_FALSE(job.engine());
        EXPECT_TRUE(job.report().cancelled);
        EXPECT_TRUE(recorder.messages.empty());
    }
    EXPECT_TRUE(fs::is_empty(tmp.path()));
}

TEST(ImportJob, ResultsFolderFollowsTheEnvironment)
{
    ::setenv("CORR_RESULTS_DIR", "/data/results", 1);
    EXPECT_EQ(corrview::default_results_dir().str(), L"/data/results");
    ::unsetenv("CORR_RESULTS_DIR");
    ::setenv("XDG_DATA_HOME", "/x/share", 1);
    EXPECT_EQ(corrview::default_results_dir().str(), L"/x/share/corrview/results");
    ::unsetenv("XDG_DATA_HOME");
}

} // namespace
