#pragma once
// Import of analyser output into a new result, on a worker thread. The
// worker reports only through notify2 interfaces (the GUI hands it the
// bridges); its end is told by progress->raise_first(), after which join()
// returns at once and the outcome can be read.
#include "result_session.h"

#include "notify2/messenger.h"
#include "notify2/progress.h"

#include <boost/shared_ptr.hpp>
#include <boost/thread/thread.hpp>

#include <atomic>
#include <vector>

namespace corrview {

class import_job_t
{
public:
    // files go into a new result in result_dir (which must not exist yet,
    // or be empty), named after the folder.
    import_job_t(std::vector<basekit2::path_t> files, basekit2::path_t result_dir);
    // Waits for a running worker; ask it to stop through the progress first.
    ~import_job_t();
    import_job_t(const import_job_t&) = delete;
    import_job_t& operator=(const import_job_t&) = delete;

    // Starts the worker. It keeps progress and messenger until it ends:
    // each imported file is an info message, each warning a warning message,
    // a failure an error message; cancellation is read from progress.
    void start(boost::shared_ptr<notify2::IProgress> progress,
               boost::shared_ptr<notify2::IMessenger> messenger);
    // Runs the import on the calling thread (what the worker does).
    void run(notify2::IProgress* progress, notify2::IMessenger* messenger);

    void join();
    bool is_finished() const { return m_finished.load(std::memory_order_acquire); }

    const std::vector<basekit2::path_t>& files() const { return m_files; }
    const basekit2::path_t& result_dir() const { return m_result_dir; }
    // After join (or run): what the import did, and the new result's engine
    // (null unless it succeeded).
    const corr_engine::import_files_report_t& report() const { return m_report; }
    engine_ptr engine() const { return m_ok ? m_engine : engine_ptr(); }

private:
    std::vector<basekit2::path_t> m_files;
    basekit2::path_t m_result_dir;
    engine_ptr m_engine;
    corr_engine::import_files_report_t m_report;
    bool m_ok = false;
    std::atomic<bool> m_finished{false};
    boost::thread m_thread;
};

// Where File > Import puts new results: $CORR_RESULTS_DIR, else
// "corrview/results" in the user's data folder ($XDG_DATA_HOME, else
// ~/.local/share).
basekit2::path_t default_results_dir();
// A folder in parent for a result named after stem that does not exist yet:
// stem, stem-2, stem-3, ...
basekit2::path_t unique_result_dir(const basekit2::path_t& parent, const std::wstring& stem);

} // namespace corrview
