// The viewer on a big result: opening it and the first paint of the main
// window, then the filter bar's search typed one key at a time (each key
// refilters the list, recounts every choice and the chart, and repaints).
// Needs a display and a result (bench/problems_view_bench.sh makes one of
// 100,000 problems):
//   xvfb-run -a build/bench/problems_view_bench RESULT_DIR [TEXT]
#include "ui/filter_bar.h"
#include "ui/main_frame.h"
#include "ui/problems_view.h"
#include "ui/startup.h"

#include "uiframe7/base_control.h"

#include <wx/app.h>
#include <wx/init.h>
#include <wx/textctrl.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

using clock_type = std::chrono::steady_clock;

namespace {

class bench_app : public wxApp
{
public:
    bool OnInit() override { return true; }
};

double ms_since(clock_type::time_point t0)
{
    return std::chrono::duration<double, std::milli>(clock_type::now() - t0).count();
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s RESULT_DIR [TEXT]\n", argv[0]);
        return 2;
    }
    const std::string result = argv[1];
    const std::string typed = argc > 2 ? argv[2] : "print_record";
    wxApp::SetInstance(new bench_app);
    int wx_argc = 1;
    if (!wxEntryStart(wx_argc, argv)) {
        std::fprintf(stderr, "no display: run under xvfb-run -a\n");
        return 2;
    }
    wxTheApp->CallOnInit();
    for (const auto& problem :
         corrview::initialise_services(corrview::find_product_paths(corrview::executable_dir())))
        std::fprintf(stderr, "%ls\n", problem.c_str());
    corrview::start_scheduler();

    // First paint: from an empty window to the problems painted.
    const auto t0 = clock_type::now();
    auto* frame = new corrview::main_frame_t;
    frame->Show();
    const auto t_open = clock_type::now();
    if (!frame->open_result(basekit2::path_t::from_utf8(result))) {
        std::fprintf(stderr, "cannot open %s\n", result.c_str());
        return 1;
    }
    const double open_ms = ms_since(t_open);
    auto* view = frame->problems_view();
    int paints = 0;
    view->grid_control()->Bind(wxEVT_PAINT, [&](wxPaintEvent& event) {
        ++paints;
        event.Skip();
    });
    while (paints == 0 && ms_since(t0) < 60000)
        wxTheApp->Yield(true);
    const double first_paint_ms = ms_since(t0);
    const size_t problems = frame->session().problems().size();

    // Each key as the text control gets it: the text changes, the view follows,
    // the window paints.
    wxTextCtrl* search = view->filter_bar()->search();
    std::vector<double> keys;
    std::vector<size_t> shown;
    for (int round = 0; round < 3; ++round) {
        search->ChangeValue(wxEmptyString);
        view->apply_filter();
        wxTheApp->Yield(true);
        for (char c : typed) {
            const auto k0 = clock_type::now();
            search->AppendText(wxString(c)); // sends the text event, as typing does
            frame->Update();
            keys.push_back(ms_since(k0));
            shown.push_back(static_cast<size_t>(view->model().GetRowCount()));
            wxTheApp->Yield(true);
        }
    }
    // Where the opening goes: the session alone (engine, problems,
    // suppressions), then the filter's index over its problems.
    const auto s0 = clock_type::now();
    corrview::result_session_t alone;
    alone.open(basekit2::path_t::from_utf8(result));
    const double session_ms = ms_since(s0);
    const auto i0 = clock_type::now();
    corrview::problem_index_t index;
    index.build(alone.problems(), [&](size_t i) { return static_cast<bool>(alone.suppressed_by(i)); });
    const double index_ms = ms_since(i0);

    std::vector<double> sorted = keys;
    std::sort(sorted.begin(), sorted.end());

    std::printf("result: %zu problems\n", problems);
    std::printf("open (read problems and suppressions, build the view): %8.1f ms\n", open_ms);
    std::printf("  of which the session alone (engine, problems, suppressions): %8.1f ms\n",
                session_ms);
    std::printf("  of which the filter's index:                                %8.1f ms\n",
                index_ms);
    std::printf("first paint of the viewer (window, open, paint):       %8.1f ms  target < 1000 ms\n",
                first_paint_ms);
    std::printf("search \"%s\" typed key by key, 3 rounds: median %.1f ms  p90 %.1f ms  max %.1f ms"
                "  target < 100 ms\n",
                typed.c_str(), sorted[sorted.size() / 2], sorted[sorted.size() * 9 / 10],
                sorted.back());
    std::printf("rows after each key:");
    for (size_t i = 0; i < typed.size(); ++i)
        std::printf(" %zu", shown[i]);
    std::printf("\n");
    frame->Destroy();
    wxTheApp->Yield(true);
    corrview::shutdown_services();
    wxTheApp->OnExit();
    wxEntryCleanup();
    return 0;
}
