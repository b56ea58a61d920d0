#pragma once
// Helpers for tests that run in real windows.
#include <wx/app.h>
#include <wx/log.h>
#include <wx/timer.h>
#include <wx/utils.h>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace corr_test {

// Runs the event loop until cond holds or timeout_ms pass; returns cond().
// This is the only way GUI tests wait: for a condition, with a bound.
inline bool wait_until(const std::function<bool()>& cond, int timeout_ms = 5000)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeout_ms);
    while (!cond()) {
        if (std::chrono::steady_clock::now() > deadline)
            return cond();
        wxTheApp->Yield(true);
        wxMilliSleep(2);
    }
    return true;
}

// Runs the event loop for a while (to let pending paints and timers happen).
inline void pump_events(int ms = 50)
{
    wait_until([] { return false; }, ms);
}

// Collects what is logged while it lives (and shows none of it).
class log_capture : public wxLog
{
public:
    log_capture() : m_previous(wxLog::SetActiveTarget(this)) {}
    ~log_capture() override { wxLog::SetActiveTarget(m_previous); }
    log_capture(const log_capture&) = delete;
    log_capture& operator=(const log_capture&) = delete;

    const std::vector<std::wstring>& messages() const { return m_messages; }
    // All messages, one a line.
    std::wstring text() const
    {
        std::wstring all;
        for (const auto& m : m_messages)
            all += m + L"\n";
        return all;
    }
    bool contains(const std::wstring& part) const { return text().find(part) != std::wstring::npos; }

protected:
    void DoLogTextAtLevel(wxLogLevel, const wxString& msg) override { m_messages.push_back(msg.ToStdWstring()); }

private:
    wxLog* m_previous;
    std::vector<std::wstring> m_messages;
};

} // namespace corr_test
