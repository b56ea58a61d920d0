#include "import_job.h"

#include "corr_engine/progress_guard.h"
#include "platkit/strings/convert.h"

#include <cstdlib>
#include <filesystem>

namespace corrview {

import_job_t::import_job_t(std::vector<basekit2::path_t> files, basekit2::path_t result_dir)
    : m_files(std::move(files)), m_result_dir(std::move(result_dir))
{
}

import_job_t::~import_job_t()
{
    join();
}

void import_job_t::start(boost::shared_ptr<notify2::IProgress> progress,
                         boost::shared_ptr<notify2::IMessenger> messenger)
{
    m_finished = false;
    m_thread = boost::thread([this, progress, messenger] { run(progress.get(), messenger.get()); });
}

void import_job_t::run(notify2::IProgress* progress, notify2::IMessenger* messenger)
{
    {
        // The outermost guard raises raise_first() when it ends: the GUI
        // learns from it that the worker is done, whichever way.
        corr_engine::progress_guard_t guard(progress, std::wstring(), 1);
        auto child = guard.create_child(1, 1);
        m_engine = corr_engine::engine_t::create();
        m_ok = m_engine->create_result(m_result_dir, std::wstring(), m_files, {}, m_report,
                                       child.get());
        child.reset();
        if (messenger) {
            for (const auto& file : m_report.files) {
                messenger->message(notify2::msg_info, file.file.str().c_str());
                for (const auto& warning : file.report.warnings)
                    messenger->message(notify2::msg_warning, warning.c_str());
            }
            if (!m_ok && !m_report.cancelled)
                messenger->message(notify2::msg_error, m_report.error.c_str());
        }
        m_finished.store(true, std::memory_order_release);
    }
}

void import_job_t::join()
{
    if (m_thread.joinable())
        m_thread.join();
}

basekit2::path_t default_results_dir()
{
    if (const char* dir = std::getenv("CORR_RESULTS_DIR"); dir && *dir)
        return basekit2::path_t::from_utf8(dir);
    std::filesystem::path data;
    if (const char* xdg = std::getenv("XDG_DATA_HOME"); xdg && *xdg)
        data = xdg;
    else if (const char* home = std::getenv("HOME"); home && *home)
        data = std::filesystem::path(home) / ".local" / "share";
    else
        data = std::filesystem::temp_directory_path();
    return basekit2::path_t(data / "corrview" / "results");
}

basekit2::path_t unique_result_dir(const basekit2::path_t& parent, const std::wstring& stem)
{
    const std::wstring base = stem.empty() ? std::wstring(L"result") : stem;
    basekit2::path_t candidate = parent / basekit2::path_t(base);
    for (int i = 2; candidate.exists(); ++i)
        candidate = parent / basekit2::path_t(base + L"-" + std::to_wstring(i));
    return candidate;
}

} // namespace corrview
