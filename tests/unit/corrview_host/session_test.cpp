// The viewer's session without windows: problems of a result, which rule set
// suppresses which problem, the candidate rules for a selection.
#include "host/problem_text.h"
#include "host/result_session.h"
#include "host_test_support.h"

#include "corr_engine/suppressions_manager.h"
#include "probstore3/suppression_file.h"
#include "suppfmt3/datatype.h"

#include <boost/make_shared.hpp>

#include <fstream>
#include <set>

namespace {

using namespace host_test;
using corrview::result_session_t;

// Index of the first problem of a tool and kind in the sample result.
size_t find_problem(const result_session_t& session, const std::string& tool,
                    const std::string& kind)
{
    const auto& problems = session.problems();
    for (size_t i = 0; i < problems.size(); ++i)
        if (problems[i].tool == tool && problems[i].kind == kind)
            return i;
    ADD_FAILURE() << "the sample result has no " << tool << " " << kind;
    return 0;
}

TEST(Session, SampleResultProblemsAndWhatASuppressionFileHides)
{
    temp_dir_t tmp;
    const fs::path result = copy_sample_result(tmp / "sample");
    result_session_t session;
    ASSERT_TRUE(session.open(basekit2::path_t(result)))
        << platkit::strings::wide_to_utf8(session.last_error());
    ASSERT_EQ(session.problems().size(), 24u);
    EXPECT_EQ(session.suppressed_count(), 0u);
    EXPECT_TRUE(session.rule_sets().empty());
    EXPECT_TRUE(session.warnings().empty());

    const size_t use_after_free = find_problem(session, "memcheck", "InvalidRead");
    const size_t race = find_problem(session, "helgrind", "Race");
    EXPECT_EQ(corrview::best_location_text(session.problems()[use_after_free]),
              L"mem_use_after_free!print_record - mem_use_after_free.c:28");

    save_rule_set(session, {use_after_free, race}, result / "suppressions" / "team.sup",
                  L"Known problems");
    // Nothing changes until the files are read again.
    EXPECT_EQ(session.suppressed_count(), 0u);
    session.reload_suppressions();

    ASSERT_EQ(session.rule_sets().size(), 1u);
    const auto stored = session.rule_sets().front();
    EXPECT_EQ(stored.rule_set->get_name(), L"Known problems");
    EXPECT_EQ(stored.rule_set->get_rules().size(), 2u);
    EXPECT_FALSE(stored.from_project);
    EXPECT_EQ(fs::path(stored.file->get_path()), result / "suppressions" / "team.sup");

    EXPECT_EQ(corrview::rule_set_name(session.suppressed_by(use_after_free)), L"Known problems");
    EXPECT_EQ(corrview::rule_set_name(session.suppressed_by(race)), L"Known problems");
    // The default rule keeps only the best frame: problems elsewhere stay visible.
    const std::set<std::wstring> places = {
        corrview::best_location_text(session.problems()[use_after_free]),
        corrview::best_location_text(session.problems()[race])};
    for (size_t i = 0; i < session.problems().size(); ++i)
        if (places.count(corrview::best_location_text(session.problems()[i])) == 0) {
            EXPECT_FALSE(session.suppressed_by(i)) << "problem " << i;
        }
    EXPECT_GE(session.suppressed_count(), 2u);
    EXPECT_FALSE(session.suppressed_by(session.problems().size())) << "out of range is none";
}

TEST(Session, ProjectFilesCountAfterTheResultsAndBrokenFilesAreReported)
{
    temp_dir_t tmp;
    // A project around the result: its suppressions apply too.
    std::ofstream(tmp / "project.corrproj") << "corr-project 1\n";
    fs::create_directories(tmp / "suppressions");
    const fs::path result = copy_sample_result(tmp / "sample");

    result_session_t session;
    ASSERT_TRUE(session.open(basekit2::path_t(result / "sample.corr")));
    const size_t leak = find_problem(session, "lsan", "direct-leak");
    save_rule_set(session, {leak}, tmp / "suppressions" / "project.sup", L"Project leak");
    save_rule_set(session, {leak}, result / "suppressions" / "a.sup", L"Result leak");
    std::ofstream(result / "suppressions" / "broken.sup")
        << "corr-suppressions 2\nsuppression \"x\"\n  rule\n    line 12x\n";
    session.reload_suppressions();

    const auto sets = session.rule_sets();
    ASSERT_EQ(sets.size(), 2u);
    EXPECT_EQ(sets[0].rule_set->get_name(), L"Result leak");
    EXPECT_FALSE(sets[0].from_project);
    EXPECT_EQ(sets[1].rule_set->get_name(), L"Project leak");
    EXPECT_TRUE(sets[1].from_project);
    // The result's own files are matched first.
    EXPECT_EQ(corrview::rule_set_name(session.suppressed_by(leak)), L"Result leak");

    ASSERT_EQ(session.warnings().size(), 1u);
    EXPECT_NE(session.warnings()[0].find(L"broken.sup:"), std::wstring::npos)
        << platkit::strings::wide_to_utf8(session.warnings()[0]);
}

TEST(Session, CandidateRulesFromTwoSelectedProblems)
{
    temp_dir_t tmp;
    result_session_t session;
    ASSERT_TRUE(session.open(basekit2::path_t(copy_sample_result(tmp / "sample"))));
    const size_t overflow_write = find_problem(session, "memcheck", "InvalidWrite");
    const size_t ubsan = find_problem(session, "ubsan", "signed-integer-overflow");
    const auto& problems = session.problems();

    // In the order of the selection, not of the result; invalid indexes are skipped.
    const auto rule_set = session.create_candidates({ubsan, problems.size() + 3, overflow_write});
    ASSERT_TRUE(rule_set);
    const auto& rules = rule_set->get_rules();
    ASSERT_EQ(rules.size(), 2u);
    EXPECT_TRUE(rule_set->get_name().empty());
    const size_t order[] = {ubsan, overflow_write};
    for (size_t r = 0; r < 2; ++r) {
        const auto& p = problems[order[r]];
        const auto& rule = rules[r];
        EXPECT_EQ(rule->get_problem_id(), p.id);
        EXPECT_EQ(rule->get_field_value(suppfmt3::suppfmt_datatype(9)),
                  corrview::problem_type_text(p));
        EXPECT_EQ(rule->get_field_value(suppfmt3::suppfmt_datatype(60)),
                  corrview::problem_description_text(p));
        const auto stack = rule->get_stack(true);
        ASSERT_TRUE(stack);
        ASSERT_EQ(stack->stack_size(), static_cast<int>(p.stacks[0].frames.size()));
        EXPECT_EQ(stack->get_best_level(), p.best_level);
        for (int f = 0; f < stack->stack_size(); ++f)
            EXPECT_EQ(stack->is_frame_active(f), f == p.best_level) << "frame " << f;
    }
    EXPECT_FALSE(session.create_candidates({}));
    EXPECT_FALSE(session.create_candidates({problems.size()}));
}

TEST(Session, SourceFilesAreTheFramesSourcesOnce)
{
    temp_dir_t tmp;
    result_session_t session;
    ASSERT_TRUE(session.open(basekit2::path_t(copy_sample_result(tmp / "sample"))));
    const auto files = session.source_files();
    ASSERT_FALSE(files.empty());
    EXPECT_TRUE(std::is_sorted(files.begin(), files.end()));
    EXPECT_EQ(std::adjacent_find(files.begin(), files.end()), files.end());
    const bool has_race_source =
        std::any_of(files.begin(), files.end(),
                    [](const basekit2::path_t& f) { return f.leaf() == L"thr_race_counter.c"; });
    EXPECT_TRUE(has_race_source);
}

TEST(Session, FailedOpenKeepsWhatWasOpen)
{
    temp_dir_t tmp;
    result_session_t session;
    ASSERT_TRUE(session.open(basekit2::path_t(copy_sample_result(tmp / "sample"))));
    EXPECT_FALSE(session.open(basekit2::path_t(tmp / "nothing-here")));
    EXPECT_FALSE(session.last_error().empty());
    EXPECT_EQ(session.problems().size(), 24u);
    // A name the file system layer cannot take is an error naming it, not an exception.
    const auto odd = basekit2::path_t::from_utf8((tmp / "kein Ergebnis").string() + " \xc3\xbc");
    EXPECT_FALSE(session.open(odd));
    EXPECT_NE(session.last_error().find(L"kein Ergebnis \u00fc"), std::wstring::npos);
    EXPECT_EQ(session.problems().size(), 24u);
    EXPECT_FALSE(result_session_t().is_open());
    EXPECT_TRUE(result_session_t().problems().empty());
}

} // namespace
