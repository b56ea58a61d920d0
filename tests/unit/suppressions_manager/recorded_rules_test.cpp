// Suppressions made from the problems the importers read out of the
// recorded analyser output: written to a result's suppression file, read
// back, and matched against every problem of the recordings.
#include "../ruledata/recorded_problems.h"
#include "../ruledata/sup_test_support.h"

#include "corr_engine/sanitizer_report_importer.h"
#include "corr_engine/suppressions_manager.h"
#include "corr_engine/valgrind_xml_importer.h"
#include "probstore3/candidates.h"
#include "probstore3/suppression_matcher.h"

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

namespace fs = std::filesystem;
using probstore3::problem_t;

namespace {

std::vector<problem_t> import(const corr_engine::result_importer_t& importer, const std::string& file)
{
    const fs::path path = fs::path(CORR_SAMPLES_DIR) / "recorded" / file;
    EXPECT_TRUE(fs::exists(path)) << "missing fixture " << path;
    std::vector<problem_t> problems;
    const auto report = importer.import(basekit2::path_t(path), [&](problem_t&& p) { problems.push_back(std::move(p)); });
    EXPECT_TRUE(report.ok) << file;
    EXPECT_FALSE(problems.empty()) << file;
    return problems;
}

} // namespace

TEST(RecordedRules, SuppressionsFromImportedProblemsHideExactlyThoseLocations)
{
    const corr_engine::valgrind_xml_importer_t valgrind;
    const corr_engine::sanitizer_report_importer_t sanitizer;
    const auto races = import(valgrind, "helgrind_race_counter.xml");
    const auto uaf = import(valgrind, "memcheck_use_after_free.xml");
    const auto leaks = import(valgrind, "memcheck_leaks.xml");
    const auto template_races = import(sanitizer, "tsan_template_race.txt");
    ASSERT_GE(races.size(), 2u);

    // A result with a suppression file made from two selected problems.
    sup_test::temp_dir dir;
    fs::create_directories(dir / "r");
    const fs::path marker = dir / "r" / "r.corr";
    sup_test::write_bytes(marker, "corr-result 1\n");
    const corr_engine::suppressions_manager_t manager;
    const auto file = manager.create_suppression(marker.wstring(), std::wstring(L"known.sup"));
    ASSERT_TRUE(file);
    auto set = probstore3::create_candidate_rule_set(std::vector<const problem_t*>{&races[0], &uaf[0]});
    set->set_name(L"Known");
    // The race is suppressed whatever the access: read or write.
    set->get_rules()[0]->set_item_active(false, suppfmt3::sdt_description);
    file->add_suppression(set);
    ASSERT_EQ(file->save(file->get_path(), suppfmt3::sff_current), suppfmt3::se_success);

    const auto loaded = manager.get_result_suppressions(marker.wstring());
    ASSERT_EQ(loaded.size(), 1u);
    const auto matcher = probstore3::suppression_matcher_t::from_files(loaded);

    size_t suppressed_races = 0;
    for (const auto& p : races) {
        // Every race in worker() at the counter's line; other races are not hidden.
        const auto* best = p.best_frame();
        const bool same_place = best && best->function == races[0].best_frame()->function &&
                                best->line == races[0].best_frame()->line && p.type == races[0].type;
        EXPECT_EQ(static_cast<bool>(matcher.match(p)), same_place) << p.description;
        suppressed_races += same_place ? 1 : 0;
    }
    EXPECT_GE(suppressed_races, 2u); // the read and the write
    EXPECT_TRUE(matcher.match(uaf[0]));
    for (const auto& p : leaks)
        EXPECT_FALSE(matcher.match(p)) << p.description;
    for (const auto& p : template_races)
        EXPECT_FALSE(matcher.match(p)) << p.description;
}

TEST(RecordedRules, HandWrittenFixturesAgreeWithTheImporter)
{
    // The rule-data tests build these problems by hand; they must be what
    // the importer makes of the same output, as far as rules use them.
    const corr_engine::valgrind_xml_importer_t valgrind;
    const auto imported = import(valgrind, "memcheck_use_after_free.xml").at(0);
    const auto by_hand = recorded::use_after_free();
    EXPECT_EQ(imported.type, by_hand.type);
    EXPECT_EQ(imported.description, by_hand.description);
    EXPECT_EQ(imported.best_level, by_hand.best_level);
    ASSERT_EQ(imported.stacks.at(0).frames.size(), by_hand.stacks[0].frames.size());
    for (size_t i = 0; i < by_hand.stacks[0].frames.size(); ++i) {
        const auto& a = imported.stacks[0].frames[i];
        const auto& b = by_hand.stacks[0].frames[i];
        EXPECT_EQ(a.module, b.module) << i;
        EXPECT_EQ(a.function, b.function) << i;
        EXPECT_EQ(a.source, b.source) << i;
        EXPECT_EQ(a.line, b.line) << i;
    }
    // A rule from either matches the other.
    EXPECT_TRUE(probstore3::rule_matches(*probstore3::create_rule(by_hand), imported));
    EXPECT_TRUE(probstore3::rule_matches(*probstore3::create_rule(imported), by_hand));
}
