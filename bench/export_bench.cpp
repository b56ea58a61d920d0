// Export of a ~200 MB result folder (generated: analyser XML, already
// compressed blobs, many small source files) by the archiver, next to
// `zip -r -6` on the same folder: time and size. Also how long a cancel
// takes to stop the packing.
//   export_bench [work folder]   (default: $TMPDIR/corr-export-bench)
#include "corr_engine/archiver.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

namespace fs = std::filesystem;
using clock_type = std::chrono::steady_clock;

namespace {

void write(const fs::path& p, const std::string& data)
{
    fs::create_directories(p.parent_path());
    std::ofstream(p, std::ios::binary) << data;
}

// Deterministic content of the usual kinds and proportions.
void generate(const fs::path& result)
{
    if (fs::exists(result / "bench.corr"))
        return;
    std::mt19937_64 rng(7);
    const char* fns[] = {"main",     "worker_thread", "std::vector<int>::push_back",
                         "malloc",   "operator new",  "parse_config",
                         "run_loop", "handle_request"};
    for (int f = 0; f < 6; ++f) {
        std::string xml = "<?xml version=\"1.0\"?>\n<valgrindoutput>\n";
        while (xml.size() < (20u << 20)) {
            xml += "<error>\n  <unique>0x" + std::to_string(rng() % 100000) + "</unique>\n  <tid>" +
                   std::to_string(rng() % 8) +
                   "</tid>\n  <kind>InvalidRead</kind>\n  <what>Invalid read of size " +
                   std::to_string(1 << (rng() % 4)) + "</what>\n  <stack>\n";
            for (int k = 3 + rng() % 9; k > 0; --k)
                xml += "    <frame><ip>0x" + std::to_string(rng() % (1ull << 40)) +
                       "</ip><obj>/usr/lib/libfoo.so." + std::to_string(rng() % 5) + "</obj><fn>" +
                       fns[rng() % 8] + "</fn><dir>/home/me/src</dir><file>file" +
                       std::to_string(rng() % 300) + ".cpp</file><line>" +
                       std::to_string(rng() % 5000) + "</line></frame>\n";
            xml += "  </stack>\n</error>\n";
        }
        write(result / "data" / ("memcheck." + std::to_string(f) + ".xml"),
              xml + "</valgrindoutput>\n");
    }
    for (int f = 0; f < 4; ++f) {
        std::string blob(10u << 20, '\0');
        for (size_t i = 0; i + 8 <= blob.size(); i += 8) {
            const auto v = rng();
            std::memcpy(&blob[i], &v, 8);
        }
        write(result / "data" / ("core." + std::to_string(f) + ".gz"), blob);
    }
    const char* words[] = {"int",         "return", "if",    "for",  "while",
                           "std::string", "auto",   "const", "void", "class"};
    for (int f = 0; f < 3000; ++f) {
        std::string src;
        for (int line = 0; line < 250; ++line) {
            for (int w = 0; w < 8; ++w)
                src += std::string(words[rng() % 10]) + std::to_string(rng() % 100) + " ";
            src += "\n";
        }
        write(result / "data" / "src" / ("file" + std::to_string(f) + ".cpp"), src);
    }
    for (int f = 0; f < 5; ++f) {
        std::string sup = "corr-suppressions 2\n";
        for (int r = 0; r < 1000; ++r)
            sup += "rule r" + std::to_string(r) +
                   "\n  problem invalid_read\n  frame * ! worker_thread\n";
        write(result / "suppressions" / ("s" + std::to_string(f) + ".sup"), sup);
    }
    write(result / "bench.corr", "format=1\nname=bench\n");
}

std::uintmax_t folder_size(const fs::path& dir)
{
    std::uintmax_t n = 0;
    for (const auto& e : fs::recursive_directory_iterator(dir))
        if (e.is_regular_file())
            n += e.file_size();
    return n;
}

struct cancel_after final : notify2::IProgress
{
    double total = 0, position = 0, share = 2;
    clock_type::time_point asked{};
    void begin(const std::wstring&, double t) override { total = t; }
    void progressed(double a) override { position += a; }
    void set_status(const std::wstring&) override {}
    void raise_first() override {}
    void raise_second() override {}
    double get_total() const override { return total; }
    bool is_cancelled() const override
    {
        const bool stop = total > 0 && position >= share * total;
        if (stop && asked == clock_type::time_point{})
            const_cast<cancel_after*>(this)->asked = clock_type::now();
        return stop;
    }
};

double pack(const fs::path& result, const fs::path& out, unsigned threads, std::uintmax_t& size)
{
    fs::remove(out);
    corr_engine::zipfile_impl_t zip;
    if (!zip.open_for_writing(out)) {
        std::fprintf(stderr, "cannot open %s\n", out.c_str());
        std::exit(1);
    }
    corr_engine::pack_options_t options;
    options.threads = threads;
    const auto t0 = clock_type::now();
    const auto rc = corr_engine::archiver_t::pack({result, {}}, zip, 0, nullptr, nullptr, options);
    const double s = std::chrono::duration<double>(clock_type::now() - t0).count();
    if (rc != corr_engine::archiver_t::success) {
        std::fprintf(stderr, "pack failed: %d\n", rc);
        std::exit(1);
    }
    size = fs::file_size(out);
    return s;
}

} // namespace

int main(int argc, char** argv)
{
    const char* tmp = std::getenv("TMPDIR");
    const fs::path work =
        argc > 1 ? fs::path(argv[1]) : fs::path(tmp ? tmp : "/tmp") / "corr-export-bench";
    const fs::path result = work / "bench";
    generate(result);
    std::printf("result folder: %s, %.1f MB\n", result.c_str(), folder_size(result) / 1048576.0);

    const fs::path zip_out = work / "zip-r.zip";
    fs::remove(zip_out);
    const std::string cmd =
        "cd '" + work.string() + "' && zip -q -r -6 '" + zip_out.string() + "' bench";
    auto t0 = clock_type::now();
    if (std::system(cmd.c_str()) != 0) {
        std::fprintf(stderr, "zip failed (is it installed?)\n");
        return 1;
    }
    const double zip_s = std::chrono::duration<double>(clock_type::now() - t0).count();
    const auto zip_size = fs::file_size(zip_out);
    std::printf("%-28s %7.2f s %10.2f MB\n", "zip -r -6", zip_s, zip_size / 1048576.0);

    for (unsigned threads : {1u, 0u}) {
        std::uintmax_t size = 0;
        const double s = pack(result, work / "archiver.corrz", threads, size);
        std::printf("%-28s %7.2f s %10.2f MB   time %+.0f %%, size %+.2f %%\n",
                    threads == 1 ? "archiver, one thread" : "archiver, one per core", s,
                    size / 1048576.0, (s / zip_s - 1) * 100,
                    (double(size) / double(zip_size) - 1) * 100);
    }

    // Cancel at 30 %: how long until pack returns.
    for (unsigned threads : {1u, 0u}) {
        corr_engine::zipfile_impl_t zip;
        zip.open_for_writing(work / "cancelled.corrz");
        cancel_after progress;
        progress.share = 0.3;
        corr_engine::pack_options_t options;
        options.threads = threads;
        const auto rc =
            corr_engine::archiver_t::pack({result, {}}, zip, 0, nullptr, &progress, options);
        const double latency =
            std::chrono::duration<double>(clock_type::now() - progress.asked).count();
        std::printf("cancel at 30 %%, %-14s rc %d, stopped %.0f ms after the request, archive %s\n",
                    threads == 1 ? "one thread:" : "per core:", rc, latency * 1000,
                    fs::exists(work / "cancelled.corrz") ? "LEFT BEHIND" : "removed");
    }
    fs::remove(zip_out);
    fs::remove(work / "archiver.corrz");
    return 0;
}
