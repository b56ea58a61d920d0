// The suppression grid (with its check column, as the delete dialog shows
// it) over 1,000 and 100,000 rule sets of two to four rules each, made from
// the recorded analyser output: filling the model and installing it in a
// grid up to the first page drawn, scrolling one page, and the bytes the
// model and the grid keep beyond the rule data. Needs a display:
//   xvfb-run -a -s "-screen 0 1600x1200x24" build-bench/bench/suppression_grid_bench
#include "counting_allocator.h"

#include "corr_dialogs2/suppression_grid_model.h"
#include "corr_engine/valgrind_xml_importer.h"
#include "probstore3/candidates.h"
#include "probstore3/suppression_file.h"
#include "settings2/catalog.h"

#include <benchmark/benchmark.h>
#include <boost/make_shared.hpp>
#include <wx/app.h>
#include <wx/dcmemory.h>
#include <wx/frame.h>
#include <wx/init.h>
#include <wx/panel.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace {

using corr_dialogs2::editable_suppression_grid_model_t;
using rule_set_ptr = boost::shared_ptr<probstore3::suppression_rule_set_t>;

struct rule_data
{
    std::vector<rule_set_ptr> sets;
    corr_dialogs2::suppression_file_ptr file;
};

// Rules of every recorded Valgrind file; the rule sets share them (the
// grid only reads rules, and the rule data is not what is measured).
std::vector<probstore3::rule_ptr> recorded_rules()
{
    corr_engine::valgrind_xml_importer_t importer;
    std::vector<probstore3::rule_ptr> rules;
    for (const auto& entry : std::filesystem::directory_iterator(
             std::filesystem::path(CORR_SAMPLES_DIR) / "recorded")) {
        if (entry.path().extension() != ".xml" ||
            entry.path().filename().string().find("truncated") != std::string::npos)
            continue;
        importer.import(basekit2::path_t(entry.path()), [&](probstore3::problem_t&& p) {
            rules.push_back(probstore3::create_rule(p));
        });
    }
    return rules;
}

rule_data make_rule_data(int count)
{
    static const std::vector<probstore3::rule_ptr> pool = recorded_rules();
    rule_data data;
    data.file = corr_dialogs2::wrap_suppression_file(
        boost::make_shared<probstore3::suppression_file_t>(L"/tmp/bench/suppressions/team.sup"));
    data.sets.reserve(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) {
        probstore3::suppression_rule_set_t::rules_t rules;
        const int n = 2 + i % 3;
        for (int r = 0; r < n; ++r)
            rules.push_back(pool[static_cast<size_t>(i * 7 + r * 3) % pool.size()]);
        data.sets.push_back(boost::make_shared<probstore3::suppression_rule_set_t>(
            L"Suppression " + std::to_wstring(i), rules));
    }
    return data;
}

const rule_data& data_for(int rows)
{
    static rule_data small = make_rule_data(1000);
    static rule_data large = make_rule_data(100000);
    return rows == 1000 ? small : large;
}

struct bench_window
{
    wxFrame* frame = nullptr;
    uiframe7::CBaseControl* control = nullptr;
    gridview8::CGrid* grid = nullptr;
};
bench_window* g_window = nullptr;

void render()
{
    const wxSize size = g_window->control->GetClientSize();
    static wxBitmap bitmap;
    if (!bitmap.IsOk() || bitmap.GetSize() != size)
        bitmap = wxBitmap(size);
    wxMemoryDC dc(bitmap);
    g_window->control->Render(dc, wxRect(size));
}

// The models a dialog keeps while its grid shows them.
struct installed
{
    editable_suppression_grid_model_t model;
    corr_dialogs2::header_vis_model_t header;
    gridview8::CProportionalResizingModelEx resizing;
    std::unique_ptr<corr_dialogs2::tooltip_model_t> tooltips;
};

void fill(installed& m, const rule_data& data)
{
    m.model.add_rules(data.sets, data.file);
    m.model.set_count(m.model.GetRowCount());
}

// The wiring order of the dialogs.
void install(installed& m)
{
    gridview8::CGrid* grid = g_window->grid;
    m.model.set_window(g_window->control->GetSysWindow());
    m.model.enable_button(true);
    m.model.set_button_text(L"View");
    m.model.init_header_vis_model(m.header);
    grid->SetModel(&m.model, &m.header, true);
    grid->SetDrawingModel(&m.model);
    grid->GetViewer()->AddEventHandler(&m.model);
    grid->SetResizingModel(&m.resizing);
    grid->GetHeader()->SetStyle(1);
    m.tooltips = std::make_unique<corr_dialogs2::tooltip_model_t>(grid, &m.model);
    grid->SetTooltipModel(m.tooltips.get());
}

void BM_InstallAndFirstPage(benchmark::State& state)
{
    const rule_data& data = data_for(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        auto m = std::make_unique<installed>();
        fill(*m, data);
        install(*m);
        render();
        state.PauseTiming();
        g_window->grid->DetachModels();
        m.reset();
        state.ResumeTiming();
    }
}

void BM_ScrollOnePage(benchmark::State& state)
{
    const rule_data& data = data_for(static_cast<int>(state.range(0)));
    auto m = std::make_unique<installed>();
    fill(*m, data);
    install(*m);
    render();
    auto* view = g_window->grid->GetRowViewModel();
    for (auto _ : state) {
        const int start = view->GetStartItem();
        const int next = start >= view->GetMaxStartItem() ? 0 : view->GetLastFullyVisibleItem();
        g_window->grid->SetStartRow(next);
        render();
    }
    g_window->grid->DetachModels();
}

void BM_Memory(benchmark::State& state)
{
    const int rows = static_cast<int>(state.range(0));
    const rule_data& data = data_for(rows);
    render(); // warm the drawing caches of the toolkit
    for (auto _ : state) {
        const long long start = bench_memory::live_bytes();
        auto m = std::make_unique<installed>();
        fill(*m, data);
        m->model.UpdateModelState();
        const long long filled = bench_memory::live_bytes();
        install(*m);
        render();
        g_window->grid->SetStartRow(rows / 2);
        render();
        const long long shown = bench_memory::live_bytes();
        state.counters["model_bytes"] = static_cast<double>(filled - start);
        state.counters["model_bytes_per_row"] = static_cast<double>(filled - start) / rows;
        state.counters["grid_bytes"] = static_cast<double>(shown - filled);
        g_window->grid->DetachModels();
    }
}

} // namespace

BENCHMARK(BM_InstallAndFirstPage)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ScrollOnePage)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Memory)->Arg(1000)->Arg(100000)->Iterations(1)->Unit(benchmark::kMillisecond);

namespace {
class bench_app : public wxApp
{
public:
    bool OnInit() override { return true; }
};
} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    wxApp::SetInstance(new bench_app);
    if (!wxEntryStart(argc, argv)) {
        std::fprintf(stderr, "suppression_grid_bench needs a display (run it under xvfb-run).\n");
        return 2;
    }
    wxTheApp->CallOnInit();
    // The words of the grid; only their length matters here.
    settings2::registerMessageCatalog(
        L"dialogs",
        std::make_shared<settings2::map_catalog_t>(
            L"dialogs",
            std::map<std::wstring, std::wstring>{
                {L"dlg.suppression_grid.frames_used", L"Frames used: {used} of {total}"},
                {L"dlg.suppression_grid.any_problem", L"Any problem"},
                {L"dlg.suppression_grid.any_description", L"Any description"},
                {L"supp.any_module", L"any module"},
                {L"supp.any_function", L"any function"},
                {L"supp.any_source", L"any source"},
                {L"supp.any_line", L"any line"}}));
    data_for(1000); // rule data is made once, before anything is timed
    {
        bench_window window;
        window.frame = new wxFrame(nullptr, wxID_ANY, "suppression grid bench", wxPoint(0, 0),
                                   wxSize(1100, 700));
        auto* panel = new wxPanel(window.frame);
        window.control = new uiframe7::CBaseControl(panel);
        window.grid = new gridview8::CGrid(window.control);
        window.frame->Show();
        for (int i = 0; i < 20; ++i)
            wxTheApp->Yield(true);
        g_window = &window;
        benchmark::RunSpecifiedBenchmarks();
        g_window = nullptr;
        window.grid->DetachModels();
        window.frame->Destroy();
        wxTheApp->Yield(true);
    }
    benchmark::Shutdown();
    wxTheApp->OnExit();
    wxEntryCleanup();
    return 0;
}
