// Selecting a frame shows its source: the viewer's source pane finds the
// file, reads it, loads it into the text control, marks the line, scrolls
// it into the middle and paints, for two generated 20,000-line C files
// taken in turn (every selection loads a file), and for new lines of the
// file already shown. Needs a display:
//   xvfb-run -a build/bench/source_pane_bench [selections]   (default 200)
#include "host/fs_text.h"
#include "ui/source_pane.h"

#include <wx/app.h>
#include <wx/frame.h>
#include <wx/init.h>
#include <wx/sizer.h>
#include <wx/stc/stc.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
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

constexpr int file_lines = 20000;

// C source of the usual shape: comments, functions, strings, numbers.
void write_source(const fs::path& file, int seed)
{
    std::ofstream out(file);
    int line = 0;
    for (int f = 0; line < file_lines; ++f) {
        out << "/* Function " << f << " of generated file " << seed << ". */\n";
        out << "static int compute_" << f << "(const char *name, int count)\n{\n";
        out << "    int total = " << f * 7 + seed << ";\n";
        out << "    for (int i = 0; i < count; ++i)\n";
        out << "        total += name[i % 8] * 0x" << std::hex << f << std::dec << ";\n";
        out << "    printf(\"%s: %d\\n\", name, total); // report\n";
        out << "    return total;\n}\n\n";
        line += 10;
    }
}

struct figures
{
    double median = 0, p90 = 0, max = 0;
};

figures summarise(std::vector<double> ms)
{
    std::sort(ms.begin(), ms.end());
    return {ms[ms.size() / 2], ms[ms.size() * 9 / 10], ms.back()};
}

} // namespace

int main(int argc, char** argv)
{
    const int selections = argc > 1 ? std::max(10, std::atoi(argv[1])) : 200;
    wxApp::SetInstance(new bench_app);
    if (!wxEntryStart(argc, argv)) {
        std::fprintf(stderr, "no display: run under xvfb-run -a\n");
        return 2;
    }
    wxTheApp->CallOnInit();

    const fs::path dir =
        fs::temp_directory_path() / ("source_pane_bench-" + std::to_string(std::random_device{}()));
    fs::create_directories(dir);
    const fs::path files[2] = {dir / "big_one.c", dir / "big_two.c"};
    write_source(files[0], 1);
    write_source(files[1], 2);

    auto* frame =
        new wxFrame(nullptr, wxID_ANY, "source pane", wxDefaultPosition, wxSize(900, 800));
    // The store of added folders is never touched: the files are found as recorded.
    auto* pane = new corrview::source_pane_t(
        frame, corrview::source_folders_t(corrview::to_path(dir / "folders.xml")));
    frame->SetSizer(new wxBoxSizer(wxVERTICAL));
    frame->GetSizer()->Add(pane, 1, wxEXPAND);
    frame->Show();
    for (int i = 0; i < 50 && !frame->IsShownOnScreen(); ++i)
        wxTheApp->Yield(true), wxMilliSleep(20);
    wxTheApp->Yield(true);

    std::mt19937 random(42);
    std::uniform_int_distribution<int> any_line(1, file_lines);
    std::vector<double> paint; // of each selection, the paint alone
    auto select = [&](const fs::path& file, int line) {
        probstore3::frame_t f;
        f.source = file.string();
        f.line = static_cast<std::uint64_t>(line);
        const auto t0 = clock_type::now();
        pane->show_frame(f);
        const auto t1 = clock_type::now();
        pane->Update(); // the paint, as the user sees it
        const auto t2 = clock_type::now();
        paint.push_back(std::chrono::duration<double, std::milli>(t2 - t1).count());
        const double ms = std::chrono::duration<double, std::milli>(t2 - t0).count();
        wxTheApp->Yield(true);
        if (pane->file() != file || pane->line() != line ||
            pane->text()->MarkerGet(line - 1) == 0) {
            std::fprintf(stderr, "the pane does not show %s:%d\n", file.c_str(), line);
            std::exit(1);
        }
        return ms;
    };

    std::vector<double> other_file, same_file;
    for (int i = 0; i < selections; ++i)
        other_file.push_back(select(files[i % 2], any_line(random)));
    const figures paint_other = summarise(paint);
    paint.clear();
    for (int i = 0; i < selections; ++i)
        same_file.push_back(select(files[(selections - 1) % 2], any_line(random)));
    const figures paint_same = summarise(paint);

    std::printf("file of %d lines, %ju bytes; %d selections each\n", file_lines,
                static_cast<std::uintmax_t>(fs::file_size(files[0])), selections);
    const struct
    {
        const char* what;
        figures all, paint;
    } rows[] = {{"frame in another file", summarise(other_file), paint_other},
                {"frame in the shown file", summarise(same_file), paint_same}};
    for (const auto& row : rows)
        std::printf("%-24s median %6.2f ms  p90 %6.2f ms  max %6.2f ms  (the paint alone: "
                    "median %5.2f ms)  target < 50 ms\n",
                    row.what, row.all.median, row.all.p90, row.all.max, row.paint.median);
    frame->Destroy();
    wxTheApp->Yield(true);
    std::error_code ec;
    fs::remove_all(dir, ec);
    wxTheApp->OnExit();
    wxEntryCleanup();
    return 0;
}
