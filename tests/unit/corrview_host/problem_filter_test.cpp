// Which problems the problems view lists, and the count each choice of the
// filter bar shows.
#include "host/problem_filter.h"
#include "host/result_session.h"
#include "host_test_support.h"

#include <set>

namespace {

using namespace host_test;
using corrview::facet_t;
using corrview::problem_filter_t;
using corrview::problem_index_t;

probstore3::frame_t frame(std::string module, std::string function, std::string source,
                          uint64_t line)
{
    probstore3::frame_t f;
    f.module = std::move(module);
    f.function = std::move(function);
    f.source = std::move(source);
    f.line = line;
    return f;
}

probstore3::problem_t problem(std::string tool, std::string type, std::string description,
                              std::vector<probstore3::frame_t> frames,
                              std::vector<probstore3::frame_t> second_stack = {})
{
    probstore3::problem_t p;
    p.tool = std::move(tool);
    p.type = std::move(type);
    p.description = std::move(description);
    p.stacks.push_back({"", std::move(frames)});
    if (!second_stack.empty())
        p.stacks.push_back({"Address is in a block freed at", std::move(second_stack)});
    return p;
}

// Six problems of three tools, four types and three modules (one without any frame).
corr_engine::problem_list_t mixed_problems()
{
    return {
        problem("memcheck", "Invalid read", "Invalid read of size 4",
                {frame("app", "read_rec", "/src/rec.c", 28), frame("app", "main", "/src/main.c", 9)},
                {frame("libc.so.6", "free", "", probstore3::no_line),
                 frame("app", "drop_cache", "/src/Cache.c", 77)}),
        problem("memcheck", "Invalid read", "Invalid read of size 8",
                {frame("libz.so", "inflate", "", probstore3::no_line)}),
        problem("memcheck", "Leak", "40 bytes definitely lost",
                {frame("app", "make_grüße", "/src/Grüße.c", 5)}),
        problem("helgrind", "Data race", "Possible data race during write",
                {frame("app", "worker", "/src/pool.c", 12)}),
        problem("asan", "Invalid read", "heap-use-after-free on address 0x6020",
                {frame("libz.so", "inflate", "", probstore3::no_line)}),
        problem("ubsan", "Undefined behavior", "signed integer overflow", {}),
    };
}

std::set<size_t> visible(const corrview::filter_result_t& result)
{
    std::set<size_t> out;
    for (size_t i = 0; i < result.visible.size(); ++i)
        if (result.visible[i])
            out.insert(i);
    EXPECT_EQ(out.size(), result.visible_count);
    return out;
}

// The count shown beside a name.
size_t count(const problem_index_t& index, const corrview::filter_result_t& result,
             facet_t facet, const std::wstring& name)
{
    const int at = index.name_index(facet, name);
    EXPECT_GE(at, 0) << "no choice named " << platkit::strings::wide_to_utf8(name);
    return at < 0 ? 0 : result[facet][static_cast<size_t>(at)];
}

TEST(ProblemFilter, ChoicesAreSortedAndEachCountsWhatChoosingItWouldShow)
{
    const auto problems = mixed_problems();
    problem_index_t index;
    index.build(problems, nullptr);
    EXPECT_EQ(index.names(facet_t::tool),
              (std::vector<std::wstring>{L"asan", L"helgrind", L"memcheck", L"ubsan"}));
    EXPECT_EQ(index.names(facet_t::type), (std::vector<std::wstring>{L"Data race", L"Invalid read",
                                                                      L"Leak", L"Undefined behavior"}));
    // The module is the best frame's; the problem without frames has none.
    EXPECT_EQ(index.names(facet_t::module), (std::vector<std::wstring>{L"", L"app", L"libz.so"}));

    auto all = index.apply({});
    EXPECT_EQ(visible(all).size(), 6u);
    EXPECT_EQ(count(index, all, facet_t::type, L"Invalid read"), 3u);
    EXPECT_EQ(count(index, all, facet_t::module, L"app"), 3u);
    EXPECT_EQ(count(index, all, facet_t::module, L""), 1u);

    // Choosing a tool: the types and modules count within it, the tools
    // still count every tool (each says what choosing it instead would show).
    problem_filter_t filter;
    filter[facet_t::tool] = L"memcheck";
    auto memcheck = index.apply(filter);
    EXPECT_EQ(visible(memcheck), (std::set<size_t>{0, 1, 2}));
    EXPECT_EQ(count(index, memcheck, facet_t::type, L"Invalid read"), 2u);
    EXPECT_EQ(count(index, memcheck, facet_t::type, L"Data race"), 0u);
    EXPECT_EQ(count(index, memcheck, facet_t::tool, L"asan"), 1u);
    EXPECT_EQ(count(index, memcheck, facet_t::tool, L"memcheck"), 3u);
    EXPECT_EQ(count(index, memcheck, facet_t::module, L"libz.so"), 1u);

    // Two choices at once.
    filter[facet_t::module] = L"libz.so";
    auto both = index.apply(filter);
    EXPECT_EQ(visible(both), (std::set<size_t>{1}));
    EXPECT_EQ(count(index, both, facet_t::tool, L"asan"), 1u); // asan within libz.so
    EXPECT_EQ(count(index, both, facet_t::module, L"app"), 2u); // app within memcheck

    // "No module" is a choice of its own, not "any".
    problem_filter_t no_module;
    no_module[facet_t::module] = L"";
    EXPECT_EQ(visible(index.apply(no_module)), (std::set<size_t>{5}));

    // A name that no problem has (a choice left from another result) shows nothing.
    filter[facet_t::module] = L"gone.so";
    auto none = index.apply(filter);
    EXPECT_TRUE(visible(none).empty());
    for (size_t c : none[facet_t::type])
        EXPECT_EQ(c, 0u);
}

TEST(ProblemFilter, TextIsFoundInDescriptionsAndAnyFrameIgnoringCase)
{
    const auto problems = mixed_problems();
    problem_index_t index;
    index.build(problems, nullptr);
    auto shown = [&](const std::wstring& text) {
        problem_filter_t filter;
        filter.text = text;
        return visible(index.apply(filter));
    };
    EXPECT_EQ(shown(L"INVALID READ"), (std::set<size_t>{0, 1}));
    // A frame of the second stack, by file and by "file:line".
    EXPECT_EQ(shown(L"cache.c"), (std::set<size_t>{0}));
    EXPECT_EQ(shown(L"cache.c:77"), (std::set<size_t>{0}));
    EXPECT_EQ(shown(L"cache.c:78"), std::set<size_t>{});
    // Module!function, and non-ASCII letters in either case.
    EXPECT_EQ(shown(L"libz.so!inflate"), (std::set<size_t>{1, 4}));
    EXPECT_EQ(shown(L"GRÜSSE"), std::set<size_t>{});
    EXPECT_EQ(shown(L"GRÜßE"), (std::set<size_t>{2}));
    EXPECT_EQ(shown(L"overflow"), (std::set<size_t>{5}));
    EXPECT_EQ(shown(L"no such text"), std::set<size_t>{});

    // The counts follow the search.
    problem_filter_t filter;
    filter.text = L"inflate";
    const auto result = index.apply(filter);
    EXPECT_EQ(count(index, result, facet_t::tool, L"asan"), 1u);
    EXPECT_EQ(count(index, result, facet_t::tool, L"helgrind"), 0u);
    EXPECT_EQ(count(index, result, facet_t::module, L"libz.so"), 2u);
}

TEST(ProblemFilter, SuppressedProblemsHideAndLeaveTheCounts)
{
    const auto problems = mixed_problems();
    problem_index_t index;
    index.build(problems, [](size_t i) { return i == 1 || i == 3; });
    problem_filter_t filter;
    EXPECT_EQ(visible(index.apply(filter)).size(), 6u);
    filter.show_suppressed = false;
    auto result = index.apply(filter);
    EXPECT_EQ(visible(result), (std::set<size_t>{0, 2, 4, 5}));
    EXPECT_EQ(result.hidden_suppressed, 2u);
    EXPECT_EQ(count(index, result, facet_t::tool, L"helgrind"), 0u);
    EXPECT_EQ(count(index, result, facet_t::type, L"Invalid read"), 2u);

    // After a change of suppressions.
    index.update_suppressed([](size_t i) { return i == 5; });
    result = index.apply(filter);
    EXPECT_EQ(visible(result), (std::set<size_t>{0, 1, 2, 3, 4}));
    EXPECT_EQ(result.hidden_suppressed, 1u);
    filter[facet_t::tool] = L"memcheck";
    EXPECT_EQ(index.apply(filter).hidden_suppressed, 0u);
}

TEST(ProblemFilter, SampleResultEveryChoiceShowsExactlyItsProblems)
{
    temp_dir_t tmp;
    corrview::result_session_t session;
    ASSERT_TRUE(session.open(basekit2::path_t(copy_sample_result(tmp / "sample"))));
    const auto& problems = session.problems();
    problem_index_t index;
    index.build(problems, [&](size_t i) { return static_cast<bool>(session.suppressed_by(i)); });
    EXPECT_GE(index.names(facet_t::tool).size(), 3u);
    for (facet_t facet : {facet_t::type, facet_t::tool, facet_t::module}) {
        size_t total = 0;
        const auto all = index.apply({});
        for (size_t n = 0; n < index.names(facet).size(); ++n) {
            problem_filter_t filter;
            filter[facet] = index.names(facet)[n];
            const auto shown = visible(index.apply(filter));
            EXPECT_EQ(shown.size(), all[facet][n]);
            for (size_t p = 0; p < problems.size(); ++p)
                EXPECT_EQ(shown.count(p) == 1, index.name_of(facet, p) == *filter[facet]);
            total += shown.size();
        }
        EXPECT_EQ(total, problems.size());
    }
}

} // namespace
