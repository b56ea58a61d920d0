#pragma once
// Filtering a list of files by a mask off the GUI thread, for the files
// filter dialog: the matching runs as a background task of the wxkit1
// scheduler and the result comes back on the GUI thread.
#include "corr_dialogs2/export.h"

#include "basekit2/path.h"
#include "basekit2/threading/mutex.h"
#include "wxkit1/tasks/task.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace corr_dialogs2::util {

using file_list_t = std::vector<basekit2::path_t>;
using filter_complete_t = std::function<void(const file_list_t& matching)>;

class CORR_DIALOGS2_API filter_files_task_t
    : public basekit2::intrusive_pointer_impl_t<wxkit1::tasks::BackgroundTaskImpl>
{
public:
    // Holds the mask, the input files (shared, never changed: a dialog's
    // list is copied once, not per keystroke) and on_complete, which
    // TaskFinished calls on the GUI thread.
    filter_files_task_t(std::wstring mask, std::shared_ptr<const file_list_t> files,
                        filter_complete_t on_complete);
    // Same with a copy of files.
    filter_files_task_t(std::wstring mask, const file_list_t& files, filter_complete_t on_complete);

    // Worker thread: the files whose path matches the mask, in input order.
    void DoTask() override;
    // GUI thread, under the task's mutex: hands the result to on_complete.
    void TaskFinished() override;

    const std::wstring& get_mask() const { return m_mask; }
    file_list_t get_result() const;

    // The matching itself (basekit2::path_t::match), input order kept.
    // Checks cancel (may be null) every few thousand files and returns what
    // it has so far when asked to stop.
    static file_list_t get_files_by_mask(const std::wstring& mask, const file_list_t& files,
                                         const wxkit1::tasks::ICancellable* cancel = nullptr);

private:
    mutable basekit2::threading::mutex_t m_mutex;
    const std::wstring m_mask;
    const std::shared_ptr<const file_list_t> m_files;
    file_list_t m_result;
    filter_complete_t m_on_complete;
};

// Runs the filterings of one dialog. Starting a filtering while an earlier
// one runs supersedes it: the earlier task is cancelled, and since both the
// cancellation and the delivery happen on the GUI thread, its result is
// never delivered once a newer filtering has started. Use on the GUI thread.
class CORR_DIALOGS2_API filter_files_runner_t
{
public:
    // files: the dialog's input list, copied once.
    filter_files_runner_t(const file_list_t& files, filter_complete_t on_complete);
    // Cancels a filtering still running.
    ~filter_files_runner_t();
    filter_files_runner_t(const filter_files_runner_t&) = delete;
    filter_files_runner_t& operator=(const filter_files_runner_t&) = delete;

    // Starts filtering with mask; false when the scheduler refused it.
    bool start(const std::wstring& mask);
    // True from start until its result was delivered.
    bool is_busy() const { return static_cast<bool>(m_current); }
    // Number of filterings started so far.
    std::uint64_t generation() const { return m_generation; }

private:
    std::shared_ptr<const file_list_t> m_files;
    filter_complete_t m_on_complete;
    basekit2::intrusive_pointer_t<filter_files_task_t> m_current;
    std::uint64_t m_generation = 0;
};

} // namespace corr_dialogs2::util
