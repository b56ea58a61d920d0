// Suppression files at scale: loading and saving a file of 100,000
// suppressions (targets: under 0.5 s each), and matching 100,000 problems
// against 10,000 rules (target: under 1 s).
#include "probstore3/candidates.h"
#include "probstore3/suppression_file.h"
#include "probstore3/suppression_matcher.h"

#include <benchmark/benchmark.h>

#include <boost/make_shared.hpp>

#include <filesystem>
#include <random>

namespace {

namespace fs = std::filesystem;

const std::string src_dir = "/home/dev/project/src/";

// A problem as an importer makes one: a memcheck-like stack of `depth`
// frames in a few modules, with functions drawn from `functions` names.
probstore3::problem_t make_problem(std::mt19937& rng, size_t functions, size_t depth, std::uint64_t id)
{
    probstore3::problem_t p;
    p.id = id;
    p.type = rng() % 4 ? "Invalid read" : "Data race";
    p.description = "Invalid read of size " + std::to_string(1u << (rng() % 4));
    probstore3::stack_t s;
    for (size_t i = 0; i < depth; ++i) {
        const size_t fn = rng() % functions;
        probstore3::frame_t f;
        f.module = "libmodule" + std::to_string(fn % 40) + ".so";
        f.function = "ns::component" + std::to_string(fn % 97) + "::function_" + std::to_string(fn);
        f.source = src_dir + "component" + std::to_string(fn % 97) + "/file" + std::to_string(fn % 1000) + ".cpp";
        f.line = 10 + rng() % 2000;
        s.frames.push_back(std::move(f));
    }
    p.stacks.push_back(std::move(s));
    p.best_level = static_cast<int>(rng() % 2);
    return p;
}

// A file of n suppressions, one default rule each, written once per run.
const fs::path& large_file(size_t n)
{
    static const fs::path path = [n] {
        const fs::path p = fs::temp_directory_path() / "corr-bench-100k.sup";
        std::mt19937 rng(7);
        auto file = boost::make_shared<probstore3::suppression_file_t>(p.wstring());
        for (size_t i = 0; i < n; ++i) {
            auto set = probstore3::create_candidate_rule_set(
                std::vector<probstore3::problem_t>{make_problem(rng, 50000, 6, i)});
            set->set_name(L"Suppression " + std::to_wstring(i));
            file->add_suppression(set);
        }
        if (file->save(p.wstring(), suppfmt3::sff_current) != suppfmt3::se_success)
            std::abort();
        return p;
    }();
    return path;
}

constexpr size_t rule_sets = 100000;

void BM_LoadSuppressionFile(benchmark::State& state)
{
    const auto& path = large_file(rule_sets);
    for (auto _ : state) {
        auto file = probstore3::suppression_file_t::open(path.wstring());
        state.PauseTiming(); // freeing the file is not part of loading it
        if (!file || file->get_rulesets(true).size() != rule_sets)
            state.SkipWithError("load failed");
        file.reset();
        state.ResumeTiming();
    }
    state.counters["MB"] = static_cast<double>(fs::file_size(path)) / 1e6;
}
BENCHMARK(BM_LoadSuppressionFile)->Unit(benchmark::kMillisecond)->Iterations(3);

// An unchanged file: every suppression keeps its text.
void BM_SaveUnchangedSuppressionFile(benchmark::State& state)
{
    const auto& path = large_file(rule_sets);
    const auto file = probstore3::suppression_file_t::open(path.wstring());
    const auto copy = (fs::temp_directory_path() / "corr-bench-100k-copy.sup").wstring();
    for (auto _ : state)
        if (file->save(copy, suppfmt3::sff_current) != suppfmt3::se_success)
            state.SkipWithError("save failed");
    fs::remove(copy);
}
BENCHMARK(BM_SaveUnchangedSuppressionFile)->Unit(benchmark::kMillisecond)->Iterations(3);

// Every suppression changed: all of them written in the canonical layout.
void BM_SaveRewrittenSuppressionFile(benchmark::State& state)
{
    const auto& path = large_file(rule_sets);
    const auto file = probstore3::suppression_file_t::open(path.wstring());
    for (const auto& set : file->get_rulesets(true))
        set->set_name(set->get_name() + L" (edited)");
    const auto copy = (fs::temp_directory_path() / "corr-bench-100k-edited.sup").wstring();
    for (auto _ : state)
        if (file->save(copy, suppfmt3::sff_current) != suppfmt3::se_success)
            state.SkipWithError("save failed");
    fs::remove(copy);
}
BENCHMARK(BM_SaveRewrittenSuppressionFile)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_Match100kProblemsAgainst10kRules(benchmark::State& state)
{
    std::mt19937 rng(11);
    std::vector<probstore3::problem_t> problems;
    problems.reserve(100000);
    for (size_t i = 0; i < 100000; ++i)
        problems.push_back(make_problem(rng, 50000, 12, i));
    // Rules from every tenth problem: their default rules (best frame only)
    // and, for a quarter, the stack with its ends and everything between elided.
    std::vector<probstore3::rule_set_ptr> sets;
    for (size_t i = 0; i < 10000; ++i) {
        auto set = probstore3::create_candidate_rule_set(std::vector<const probstore3::problem_t*>{&problems[i * 10]});
        if (i % 4 == 0)
            set->get_rules()[0]->get_stack(false)->set_frame_active(11, true);
        sets.push_back(set);
    }
    const probstore3::suppression_matcher_t matcher(sets);
    size_t suppressed = 0;
    for (auto _ : state) {
        suppressed = 0;
        for (const auto& p : problems)
            suppressed += matcher.match(p) ? 1 : 0;
    }
    state.counters["suppressed"] = static_cast<double>(suppressed);
}
BENCHMARK(BM_Match100kProblemsAgainst10kRules)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace

BENCHMARK_MAIN();
