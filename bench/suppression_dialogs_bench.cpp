// Time from the constructor of a suppression dialog to the first paint of
// its grid: the create dialog with 1, 100 and 10,000 candidate rules, and
// the delete dialog with 100,000 suppressions. Target: under 300 ms each.
// Needs a display: xvfb-run -a -s "-screen 0 1600x1200x24" ./suppression_dialogs_bench
#include "corr_dialogs2/create_suppression_dlg.h"
#include "corr_dialogs2/delete_suppression_dlg.h"

#include "corr_engine/engine.h"
#include "platkit/strings/convert.h"
#include "probstore3/candidates.h"
#include "probstore3/suppression_file.h"
#include "settings2/product_locations.h"
#include "settings2/resource_catalogs.h"

#include <boost/make_shared.hpp>

#include "uiframe7/base_control.h"

#include <wx/app.h>
#include <wx/dcmemory.h>
#include <wx/init.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace fs = std::filesystem;
using clock_type = std::chrono::steady_clock;

namespace {

class bench_app : public wxApp
{
public:
    bool OnInit() override { return true; }
};

// n problems made from the recorded ones, each at a function of its own.
std::vector<probstore3::problem_t> make_problems(const std::vector<probstore3::problem_t>& recorded, size_t n)
{
    std::vector<probstore3::problem_t> out;
    out.reserve(n);
    for (size_t i = 0; i < n; ++i) {
        probstore3::problem_t p = recorded[i % recorded.size()];
        p.id = i + 1;
        for (auto& frame : p.stacks[0].frames)
            frame.function += "_" + std::to_string(i);
        out.push_back(std::move(p));
    }
    return out;
}

struct timing_t
{
    double rendered = -1; // constructor to the grid's first page drawn (its paint path)
    double on_screen = -1; // constructor to the first paint event on the X server
};

// From make() (which constructs the dialog) to the first paint of the grid
// control inside the placeholder: once drawn through the control's own
// paint path into a bitmap right after the layout is built (what the
// library does), once as the paint event of the shown window (which adds
// the X server's and GTK's mapping, slow without a window manager).
// prepare() runs first, untimed: what the host does before it opens the dialog.
template <class Dialog>
timing_t time_to_first_paint(const std::function<void()>& prepare,
                             const std::function<std::unique_ptr<Dialog>()>& make, const char* placeholder)
{
    timing_t timing;
    if (prepare)
        prepare();
    const auto start = clock_type::now();
    std::unique_ptr<Dialog> dlg = make();
    if (!dlg->create(nullptr))
        return timing;
    wxWindow* panel = wxWindow::FindWindowByName(placeholder, dlg.get());
    auto* control = panel && !panel->GetChildren().empty()
                        ? dynamic_cast<uiframe7::CBaseControl*>(panel->GetChildren().front())
                        : nullptr;
    if (!control)
        return timing;
    {
        const wxSize size = control->GetClientSize();
        wxBitmap bitmap(std::max(size.x, 1), std::max(size.y, 1));
        wxMemoryDC dc(bitmap);
        control->Render(dc, wxRect(size));
    }
    timing.rendered = std::chrono::duration<double, std::milli>(clock_type::now() - start).count();

    bool painted = false;
    control->Bind(wxEVT_PAINT, [&](wxPaintEvent& e) {
        painted = true;
        e.Skip();
    });
    dlg->Show();
    const auto deadline = clock_type::now() + std::chrono::seconds(30);
    while (!painted && clock_type::now() < deadline)
        wxTheApp->Yield(true);
    if (painted)
        timing.on_screen = std::chrono::duration<double, std::milli>(clock_type::now() - start).count();
    dlg->Hide();
    dlg.reset();
    wxTheApp->Yield(true);
    return timing;
}

double median_of(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

void report(const char* what, const std::function<timing_t()>& run)
{
    std::vector<double> rendered;
    std::vector<double> on_screen;
    for (int i = 0; i < 5; ++i) {
        const timing_t t = run();
        rendered.push_back(t.rendered);
        on_screen.push_back(t.on_screen);
    }
    std::printf("%-40s first page drawn: median %7.1f ms (min %.1f)   on screen: median %7.1f ms (min %.1f)\n",
                what, median_of(rendered), *std::min_element(rendered.begin(), rendered.end()),
                median_of(on_screen), *std::min_element(on_screen.begin(), on_screen.end()));
}

} // namespace

int main(int argc, char** argv)
{
    wxApp::SetInstance(new bench_app);
    if (!wxEntryStart(argc, argv)) {
        std::fprintf(stderr, "suppression_dialogs_bench needs a display (run it under xvfb-run).\n");
        return 2;
    }
    wxTheApp->CallOnInit();
    const char* resource_env = std::getenv("CORR_RESOURCE_DIR");
    const std::string resources = resource_env ? resource_env : CORR_BENCH_RESOURCE_DIR;
    settings2::IProductLocations::set(std::make_shared<settings2::product_locations_t>(
        L"Correctness Analyzer", L"corr-analyzer", L"CorrA", basekit2::path_t::from_utf8(resources)));
    if (!settings2::load_resource_catalogs(basekit2::path_t::from_utf8(resources)).ok()) {
        std::fprintf(stderr, "cannot load the resource catalogues from %s\n", resources.c_str());
        return 2;
    }

    const fs::path dir = fs::temp_directory_path() / "corr_suppression_dialogs_bench";
    fs::remove_all(dir);
    auto engine = corr_engine::engine_t::create();
    corr_engine::import_files_report_t imported;
    const std::vector<basekit2::path_t> files{
        basekit2::path_t(fs::path(CORR_BENCH_SAMPLES_DIR) / "recorded" / "helgrind_template_race.xml"),
        basekit2::path_t(fs::path(CORR_BENCH_SAMPLES_DIR) / "recorded" / "memcheck_leaks.xml")};
    if (!engine->create_result(basekit2::path_t(dir / "result"), L"bench", files, {}, imported)) {
        std::fprintf(stderr, "cannot make the result: %s\n", platkit::strings::wide_to_utf8(imported.error).c_str());
        return 2;
    }
    const auto recorded = *engine->get_problems();

    for (const size_t n : {size_t(1), size_t(100), size_t(10000)}) {
        const auto problems = make_problems(recorded, n);
        const std::string what = "create dialog, " + std::to_string(n) + " problems";
        probstore3::rule_set_ptr candidates;
        report(what.c_str(), [&] {
            return time_to_first_paint<corr_dialogs2::create_suppression_dlg_t>(
                [&] { candidates = probstore3::create_candidate_rule_set(problems); },
                [&] { return std::make_unique<corr_dialogs2::create_suppression_dlg_t>(candidates, engine.get()); },
                "m_grid_placeholder");
        });
    }

    {
        const auto problems = make_problems(recorded, 100000);
        auto file = boost::make_shared<probstore3::suppression_file_t>((dir / "big.sup").wstring());
        std::vector<probstore3::rule_set_ptr> sets;
        sets.reserve(problems.size());
        for (const auto& problem : problems) {
            auto set = boost::make_shared<probstore3::suppression_rule_set_t>(
                L"s" + std::to_wstring(problem.id), probstore3::suppression_rule_set_t::rules_t{probstore3::create_rule(problem)});
            file->add_suppression(set);
            sets.push_back(set);
        }
        report("delete dialog, 100,000 suppressions", [&] {
            return time_to_first_paint<corr_dialogs2::delete_suppression_dlg_t>(
                nullptr, [&] { return std::make_unique<corr_dialogs2::delete_suppression_dlg_t>(sets); },
                "m_grid_placeholder1");
        });
    }

    fs::remove_all(dir);
    settings2::IProductLocations::set(nullptr);
    wxTheApp->OnExit();
    wxEntryCleanup();
    return 0;
}
