// Filtering 1,000,000 paths by a mask, as the files filter does on every
// keystroke (the matching of filter_files_task_t, without the threads).
#include "corr_dialogs2/filter_files_task.h"

#include <benchmark/benchmark.h>

using corr_dialogs2::util::file_list_t;
using corr_dialogs2::util::filter_files_task_t;

namespace {

const file_list_t& paths()
{
    static const file_list_t list = [] {
        file_list_t out;
        out.reserve(1000000);
        const wchar_t* roots[] = {L"/home/dev/project/src/", L"/home/dev/project/tests/unit/",
                                  L"/usr/include/c++/12/bits/",
                                  L"/home/dev/project/third_party/zlib/"};
        const wchar_t* exts[] = {L".cpp", L".h", L".c", L".hpp", L".inl"};
        for (int i = 0; i < 1000000; ++i)
            out.emplace_back(std::wstring(roots[i % 4]) + L"module" + std::to_wstring(i % 977) +
                             L"/file_" + std::to_wstring(i) + exts[(i / 4) % 5]);
        return out;
    }();
    return list;
}

void filter(benchmark::State& state, const wchar_t* mask)
{
    const auto& files = paths();
    size_t matched = 0;
    for (auto _ : state) {
        const auto result = filter_files_task_t::get_files_by_mask(mask, files);
        matched = result.size();
        benchmark::DoNotOptimize(result.data());
    }
    state.counters["matched"] = static_cast<double>(matched);
    state.counters["paths"] = static_cast<double>(files.size());
}

} // namespace

BENCHMARK_CAPTURE(filter, extension, L"*.cpp")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(filter, folder_and_name, L"src/*/file_1*")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(filter, substring, L"*zlib*")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(filter, exact_leaf, L"file_999999.hpp")->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
