// Cost of a progress report on the worker thread, and how many GUI tasks
// reach the event loop, for the progress bridge and for a naive bridge that
// posts one CallAfter per report. Needs a display:
//   xvfb-run -a build/bench/bridge_bench [reports]      (default 10,000,000)
#include "corr_dialogs2/msngr_bridge.h"

#include "wxkit1/tasks/scheduler.h"

#include <wx/app.h>
#include <wx/evtloop.h>
#include <wx/init.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <thread>

using clock_type = std::chrono::steady_clock;

namespace {

class bench_app : public wxApp
{
public:
    bool OnInit() override { return true; }
};

struct outcome
{
    double worker_ns_per_report = 0;
    double seconds = 0; // worker start to the last delivery
    std::uint64_t gui_calls = 0;
    std::uint64_t deliveries = 0;
};

// Runs work on a worker thread while the GUI event loop runs; the loop ends
// once the worker is done and a task due after every pending update has run.
outcome run(const std::function<void()>& work)
{
    outcome out;
    wxGUIEventLoop loop;
    const auto start = clock_type::now();
    std::thread worker([&] {
        const auto t0 = clock_type::now();
        work();
        out.worker_ns_per_report =
            std::chrono::duration<double, std::nano>(clock_type::now() - t0).count();
        wxTheApp->CallAfter([&] { // behind every CallAfter of a naive bridge
            struct exit_task final
                : basekit2::intrusive_pointer_impl_t<wxkit1::tasks::DefaultTaskImpl>
            {
                wxGUIEventLoop* loop;
                explicit exit_task(wxGUIEventLoop* l) : loop(l) {}
                void Run() override { loop->ScheduleExit(); }
            };
            wxkit1::tasks::Scheduler::Get()->AddDelayedTask(
                wxkit1::tasks::task_ptr_t(new exit_task(&loop)), 600, L"bench.exit");
        });
    });
    loop.Run();
    worker.join();
    out.seconds = std::chrono::duration<double>(clock_type::now() - start).count() - 0.6;
    return out;
}

void print(const char* what, std::uint64_t reports, const outcome& o)
{
    std::printf("%-34s %9llu reports  %7.1f ns/report  %9llu GUI calls in %.2f s\n", what,
                static_cast<unsigned long long>(reports), o.worker_ns_per_report / double(reports),
                static_cast<unsigned long long>(o.gui_calls), o.seconds);
}

} // namespace

int main(int argc, char** argv)
{
    const std::uint64_t reports = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 10000000ull;
    wxApp::SetInstance(new bench_app);
    if (!wxEntryStart(argc, argv)) {
        std::fprintf(stderr, "no display: run under xvfb-run -a\n");
        return 2;
    }
    wxTheApp->CallOnInit();
    wxkit1::tasks::Scheduler::Initialize();
    const auto scheduler = wxkit1::tasks::Scheduler::Get();

    {
        auto bridge = corr_dialogs2::progress_bridge_t::create();
        std::uint64_t deliveries = 0;
        int last = -1;
        bridge->percent_changed.connect([&](int p) {
            ++deliveries;
            last = p;
        });
        const auto before = scheduler->GetStats().executed;
        outcome o = run([&] {
            bridge->begin(L"", double(reports));
            for (std::uint64_t i = 0; i < reports; ++i)
                bridge->progressed(1);
        });
        o.gui_calls = scheduler->GetStats().executed - before - 1;
        o.deliveries = deliveries;
        print("bridge, progressed(1)", reports, o);
        std::printf("%34s last percent delivered: %d\n", "", last);
    }
    {
        auto bridge = corr_dialogs2::progress_bridge_t::create();
        std::uint64_t deliveries = 0;
        bridge->status_changed.connect([&](const std::wstring&) { ++deliveries; });
        const std::wstring texts[2] = {L"Packing data/memcheck.0.xml",
                                       L"Packing data/memcheck.1.xml"};
        const auto before = scheduler->GetStats().executed;
        outcome o = run([&] {
            for (std::uint64_t i = 0; i < reports; ++i)
                bridge->set_status(texts[i & 1]);
        });
        o.gui_calls = scheduler->GetStats().executed - before - 1;
        o.deliveries = deliveries;
        print("bridge, set_status(text)", reports, o);
    }
    {
        // The same reports spread over three seconds: the bridge delivers
        // at most one percent update per 250 ms however fast they come.
        auto bridge = corr_dialogs2::progress_bridge_t::create();
        std::uint64_t deliveries = 0;
        bridge->percent_changed.connect([&](int) { ++deliveries; });
        const auto before = scheduler->GetStats().executed;
        outcome o = run([&] {
            bridge->begin(L"", double(reports));
            const auto t0 = clock_type::now();
            const double span_ns = 3e9;
            for (std::uint64_t i = 0; i < reports; ++i) {
                if (i % 1024 == 0)
                    while (
                        std::chrono::duration<double, std::nano>(clock_type::now() - t0).count() <
                        span_ns * double(i) / double(reports))
                        ;
                bridge->progressed(1);
            }
        });
        o.gui_calls = scheduler->GetStats().executed - before - 1;
        o.deliveries = deliveries;
        std::printf(
            "%-34s %9llu reports over %.1f s  %9llu GUI calls  %6.2f GUI calls/s per value\n",
            "bridge, progressed(1), paced", static_cast<unsigned long long>(reports), o.seconds,
            static_cast<unsigned long long>(o.gui_calls), double(o.deliveries) / o.seconds);
    }
    {
        // The naive way: every report becomes a CallAfter. Limited to a
        // tenth of the reports: the queue grows by ~100 bytes a report.
        const std::uint64_t n = std::max<std::uint64_t>(1, reports / 10);
        std::atomic<std::uint64_t> calls{0};
        int gauge = 0;
        outcome o = run([&] {
            for (std::uint64_t i = 0; i < n; ++i) {
                const int percent = static_cast<int>(double(i + 1) / double(n) * 100.0);
                wxTheApp->CallAfter([&, percent] {
                    gauge = percent;
                    ++calls;
                });
            }
        });
        o.gui_calls = calls;
        o.deliveries = calls;
        print("naive, CallAfter per report", n, o);
        std::printf("%34s last percent shown: %d\n", "", gauge);
    }

    wxkit1::tasks::Scheduler::Shutdown();
    wxTheApp->OnExit();
    wxEntryCleanup();
    return 0;
}
