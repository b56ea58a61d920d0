#include "corr_dialogs2/filter_files_task.h"

#include "wxkit1/tasks/scheduler.h"

#include <mutex>

namespace corr_dialogs2::util {

namespace {
// How many files are matched between two looks at the cancel flag: a
// superseded filtering of a million paths stops within a millisecond or so.
constexpr size_t cancel_check_interval = 4096;
} // namespace

filter_files_task_t::filter_files_task_t(std::wstring mask,
                                         std::shared_ptr<const file_list_t> files,
                                         filter_complete_t on_complete)
    : m_mask(std::move(mask)),
      m_files(files ? std::move(files) : std::make_shared<const file_list_t>()),
      m_on_complete(std::move(on_complete))
{
}

filter_files_task_t::filter_files_task_t(std::wstring mask, const file_list_t& files,
                                         filter_complete_t on_complete)
    : filter_files_task_t(std::move(mask), std::make_shared<const file_list_t>(files),
                          std::move(on_complete))
{
}

file_list_t filter_files_task_t::get_files_by_mask(const std::wstring& mask,
                                                   const file_list_t& files,
                                                   const wxkit1::tasks::ICancellable* cancel)
{
    file_list_t out;
    out.reserve(files.size()); // untouched capacity costs address space only; growing costs copies
    for (size_t i = 0; i < files.size(); ++i) {
        if (cancel && i % cancel_check_interval == 0 && cancel->IsCancelled())
            break;
        if (files[i].match(mask))
            out.push_back(files[i]);
    }
    return out;
}

void filter_files_task_t::DoTask()
{
    file_list_t result = get_files_by_mask(m_mask, *m_files, this);
    std::lock_guard lock(m_mutex);
    m_result.swap(result);
}

void filter_files_task_t::TaskFinished()
{
    std::lock_guard lock(m_mutex);
    if (m_on_complete)
        m_on_complete(m_result);
}

file_list_t filter_files_task_t::get_result() const
{
    std::lock_guard lock(m_mutex);
    return m_result;
}

filter_files_runner_t::filter_files_runner_t(const file_list_t& files,
                                             filter_complete_t on_complete)
    : m_files(std::make_shared<const file_list_t>(files)), m_on_complete(std::move(on_complete))
{
}

filter_files_runner_t::~filter_files_runner_t()
{
    if (m_current)
        m_current->Cancel();
}

bool filter_files_runner_t::start(const std::wstring& mask)
{
    if (m_current)
        m_current->Cancel();
    m_current.reset();
    const std::uint64_t generation = ++m_generation;
    // The generation check is a second guard next to the cancellation: a
    // result can only be taken while its filtering is the newest one.
    basekit2::intrusive_pointer_t<filter_files_task_t> task(
        new filter_files_task_t(mask, m_files, [this, generation](const file_list_t& matching) {
            if (generation != m_generation)
                return;
            m_current.reset();
            if (m_on_complete)
                m_on_complete(matching);
        }));
    const auto scheduler = wxkit1::tasks::Scheduler::Get();
    if (!scheduler || scheduler->AddBackgroundTask(task, L"files_filter") != wxkit1::tasks::ok)
        return false;
    m_current = task;
    return true;
}

} // namespace corr_dialogs2::util
