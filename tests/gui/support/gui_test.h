#pragma once
// Helpers for tests that run in real windows.
#include <wx/app.h>
#include <wx/timer.h>
#include <wx/utils.h>

#include <chrono>
#include <functional>

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

} // namespace corr_test
