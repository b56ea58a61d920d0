// The grid over 1,000 and 100,000 rows of a simple multi-line model:
// installing the model and drawing the first page, scrolling one page, and
// the bytes the grid keeps (the model's own row offsets apart). Needs a display:
//   xvfb-run -a -s "-screen 0 1600x1200x24" build-bench/bench/grid_bench
// Drawing goes through CBaseControl::Render, the paint handler's own path,
// into a memory bitmap, so the figures do not depend on the X server's timing.
#include "counting_allocator.h"
#include "gridview8/gridview8.h"

#include <benchmark/benchmark.h>
#include <wx/app.h>
#include <wx/dcmemory.h>
#include <wx/frame.h>
#include <wx/init.h>
#include <wx/panel.h>

#include <memory>
#include <string>

namespace {

// Texts are made on demand, so the model holds nothing per row but the row
// view model's offsets; every fourth row has two lines in its first column.
class multiline_model : public gridview8::CDefPlainModel,
                        public uiframe7::CSimpleDiscreteItemViewModel
{
public:
    multiline_model(int rows, int line_height) : m_rows(rows), m_line_height(line_height) {}

    int GetRowCount() const override { return m_rows; }
    int GetColumnCount() const override { return 3; }
    std::wstring GetColumnCaption(int col) const override
    {
        return col == 0 ? L"Problem" : col == 1 ? L"Location" : L"Count";
    }
    std::wstring GetCellText(int row, int col) const override
    {
        switch (col) {
        case 0:
            return L"Invalid read of size " + std::to_wstring(row % 8 + 1) +
                   (row % 4 == 0 ? L"\nAddress is 0 bytes after a block" : L"");
        case 1:
            return L"libdemo.so!parse_input - parser.cpp:" + std::to_wstring(row % 900 + 10);
        default:
            return std::to_wstring(row);
        }
    }
    int GetItemSize(int item) const override
    {
        const std::wstring text = GetCellText(item, 0);
        int lines = 1;
        for (wchar_t c : text)
            lines += c == L'\n';
        return lines * m_line_height + 6;
    }

private:
    int m_rows;
    int m_line_height;
};

struct bench_window
{
    wxFrame* frame = nullptr;
    uiframe7::CBaseControl* control = nullptr;
    gridview8::CGrid* grid = nullptr;
    int line_height = 16;
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

std::unique_ptr<multiline_model> install(int rows)
{
    auto model = std::make_unique<multiline_model>(rows, g_window->line_height);
    model->SetCount(rows);
    g_window->grid->SetModel(model.get(), nullptr, true);
    return model;
}

void BM_InstallAndFirstPage(benchmark::State& state)
{
    const int rows = static_cast<int>(state.range(0));
    for (auto _ : state) {
        auto model = install(rows);
        render();
        state.PauseTiming();
        g_window->grid->DetachModels();
        model.reset();
        state.ResumeTiming();
    }
}

void BM_ScrollOnePage(benchmark::State& state)
{
    const int rows = static_cast<int>(state.range(0));
    auto model = install(rows);
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

void BM_GridMemory(benchmark::State& state)
{
    const int rows = static_cast<int>(state.range(0));
    for (auto _ : state) {
        auto model = std::make_unique<multiline_model>(rows, g_window->line_height);
        model->SetCount(rows);
        model->UpdateModelState(); // the model's offsets: its own memory, counted apart
        render();                  // warm the drawing caches of the toolkit
        const long long before = bench_memory::live_bytes();
        g_window->grid->SetModel(model.get(), nullptr, true);
        render();
        g_window->grid->SetStartRow(rows / 2);
        render();
        const long long after = bench_memory::live_bytes();
        state.counters["grid_bytes"] = static_cast<double>(after - before);
        state.counters["model_offset_bytes"] = static_cast<double>((rows + 1) * sizeof(int));
        g_window->grid->DetachModels();
    }
}

} // namespace

BENCHMARK(BM_InstallAndFirstPage)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ScrollOnePage)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_GridMemory)->Arg(1000)->Arg(100000)->Iterations(1)->Unit(benchmark::kMillisecond);

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
        std::fprintf(stderr, "grid_bench needs a display (run it under xvfb-run).\n");
        return 2;
    }
    wxTheApp->CallOnInit();
    {
        bench_window window;
        window.frame =
            new wxFrame(nullptr, wxID_ANY, "grid bench", wxPoint(0, 0), wxSize(900, 700));
        auto* panel = new wxPanel(window.frame);
        window.control = new uiframe7::CBaseControl(panel);
        window.grid = new gridview8::CGrid(window.control);
        window.frame->Show();
        for (int i = 0; i < 20; ++i)
            wxTheApp->Yield(true);
        window.line_height = window.control->GetSysWindow()->GetPainter()->GetLineHeight();
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
