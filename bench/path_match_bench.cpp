// basekit2::path_t::match against glibc fnmatch (flags 0) over the same
// 1,000,000 generated paths, for the masks "*.cpp" and "src/*/test_*".
//
// path_t::match lets a mask that does not start with "/" or "*" begin at any
// component boundary, so "src/*/test_*" matches ".../src/a/test_b.cpp";
// fnmatch anchors at the start of the text. Both are measured with the mask
// as written, and fnmatch also with "*/src/*/test_*", which asks what
// path_t::match answers. The "matches" counter shows how many paths matched.
#include "basekit2/path.h"

#include <benchmark/benchmark.h>
#include <fnmatch.h>

#include <random>
#include <string>
#include <vector>

namespace {

constexpr size_t path_count = 1'000'000;

struct corpus
{
    std::vector<basekit2::path_t> wide;
    std::vector<std::string> narrow;
};

// Paths like a source tree: a few roots, modules, folders, file kinds; one
// file in eight is a test_ file, one in eight a .cpp.
const corpus& paths()
{
    static const corpus c = [] {
        corpus out;
        out.wide.reserve(path_count);
        out.narrow.reserve(path_count);
        std::mt19937 random(20240601);
        const char* roots[] = {"/home/dev/work/project", "/srv/build/checkout", "/opt/src/corr"};
        const char* tops[] = {"src", "include", "tests", "third_party/src", "tools"};
        const char* exts[] = {"cpp", "h", "c", "txt", "hpp", "cmake", "py", "md"};
        for (size_t i = 0; i < path_count; ++i) {
            std::string p = roots[random() % 3];
            p += '/';
            p += tops[random() % 5];
            p += "/module" + std::to_string(random() % 200);
            if (random() % 2)
                p += "/detail" + std::to_string(random() % 10);
            p += random() % 8 == 0 ? "/test_" : "/file_";
            p += std::to_string(i);
            p += '.';
            p += exts[random() % 8];
            out.wide.push_back(basekit2::path_t::from_utf8(p));
            out.narrow.push_back(std::move(p));
        }
        return out;
    }();
    return c;
}

void path_t_match(benchmark::State& state, const wchar_t* mask)
{
    const auto& c = paths();
    size_t matches = 0;
    for (auto _ : state) {
        matches = 0;
        for (const auto& p : c.wide)
            matches += p.match(mask) ? 1 : 0;
        benchmark::DoNotOptimize(matches);
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * int64_t(c.wide.size()));
    state.counters["matches"] = double(matches);
}

void glibc_fnmatch(benchmark::State& state, const char* mask)
{
    const auto& c = paths();
    size_t matches = 0;
    for (auto _ : state) {
        matches = 0;
        for (const auto& p : c.narrow)
            matches += fnmatch(mask, p.c_str(), 0) == 0 ? 1 : 0;
        benchmark::DoNotOptimize(matches);
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * int64_t(c.narrow.size()));
    state.counters["matches"] = double(matches);
}

} // namespace

BENCHMARK_CAPTURE(path_t_match, star_cpp, L"*.cpp")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(glibc_fnmatch, star_cpp, "*.cpp")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(path_t_match, src_test, L"src/*/test_*")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(glibc_fnmatch, src_test, "src/*/test_*")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(glibc_fnmatch, src_test_unanchored, "*/src/*/test_*")->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
