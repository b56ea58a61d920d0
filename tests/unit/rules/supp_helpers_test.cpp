// The rule helpers of the library on rules made from recorded problems.
#include "../ruledata/recorded_problems.h"
#include "../ruledata/sup_test_support.h"
#include "po_catalog.h"

#include "corr_dialogs2/supp_helpers.h"
#include "probstore3/candidates.h"

#include <gtest/gtest.h>

using namespace corr_dialogs2;
using namespace suppfmt3;
namespace helpers = corr_dialogs2::supp_helpers;

static ::testing::Environment* const catalog_env =
    ::testing::AddGlobalTestEnvironment(new rules_test::rules_catalog_environment);

namespace {

rule_ptr rule_of(const probstore3::problem_t& p) { return probstore3::create_rule(p); }

} // namespace

TEST(StackFrameValue, FieldsLinesAndNeutralAnswers)
{
    const auto frames = rule_of(recorded::race_read())->get_stack_item()->get_callstack();
    EXPECT_EQ(helpers::get_stack_frame_value(frames, 0, sdt_function), L"worker");
    EXPECT_EQ(helpers::get_stack_frame_value(frames, 0, sdt_line), L"14");
    EXPECT_EQ(helpers::get_stack_frame_value(frames, 2, sdt_source), L"./nptl/./nptl/pthread_create.c");
    EXPECT_EQ(helpers::get_stack_frame_value(frames, 1, sdt_line), L""); // no line
    EXPECT_EQ(helpers::get_stack_frame_value(frames, 0, sdt_description), L"");
    EXPECT_EQ(helpers::get_stack_frame_value(frames, 4, sdt_module), L"");
    EXPECT_EQ(helpers::get_stack_frame_value(frames, -1, sdt_module), L"");
}

TEST(StackItemActive, LineGoesWithAConcreteSourceOnly)
{
    const rule_ptr rule = rule_of(recorded::race_read());
    const rule_item_ptr item = rule->get_item(sdt_call_stack);
    const auto stack = rule->get_stack(false);

    helpers::set_stack_item_active(item, 0, sdt_source, false);
    EXPECT_FALSE(stack->is_frame_field_active(0, sdt_source));
    EXPECT_FALSE(stack->is_frame_field_active(0, sdt_line));
    helpers::set_stack_item_active(item, 0, sdt_line, true); // source is off
    EXPECT_FALSE(stack->is_frame_field_active(0, sdt_line));
    helpers::set_stack_item_active(item, 0, sdt_source, true);
    helpers::set_stack_item_active(item, 0, sdt_line, true);
    EXPECT_TRUE(stack->is_frame_field_active(0, sdt_line));

    helpers::set_stack_item_active(item, 1, sdt_line, true); // empty source (preload object)
    EXPECT_FALSE(stack->is_frame_field_active(1, sdt_line));
    rule->get_stack_item()->edit_frame(2).source = "*";
    helpers::set_stack_item_active(item, 2, sdt_line, true);
    EXPECT_FALSE(stack->is_frame_field_active(2, sdt_line));

    helpers::set_frame_items_active(item, 0, false);
    for (auto type : frame_datatypes)
        EXPECT_FALSE(stack->is_frame_field_active(0, type)) << type;
    helpers::set_frame_items_active(item, 0, true);
    for (auto type : frame_datatypes)
        EXPECT_TRUE(stack->is_frame_field_active(0, type)) << type;

    // Null, out of range, or not a stack item: nothing happens.
    helpers::set_stack_item_active(rule_item_ptr(), 0, sdt_module, false);
    helpers::set_stack_item_active(item, 4, sdt_module, false);
    helpers::set_frame_items_active(rule->get_item(sdt_problem_type), 0, false);
    EXPECT_TRUE(stack->is_frame_field_active(0, sdt_module));
}

TEST(StackRuleActive, AnAbsentFrameCountsAsActive)
{
    const rule_ptr rule = rule_of(recorded::use_after_free());
    const auto stack = rule->get_stack(false);
    helpers::set_stack_item_active(rule->get_item(sdt_call_stack), 1, sdt_module, false);
    EXPECT_FALSE(helpers::is_stack_rule_active(stack, 1, sdt_module));
    EXPECT_TRUE(helpers::is_stack_rule_active(stack, 2, sdt_module)); // index == size
    EXPECT_TRUE(helpers::is_stack_rule_active(stack, -1, sdt_module));
    EXPECT_TRUE(helpers::is_stack_rule_active(stack_ptr(), 0, sdt_module));
}

TEST(FrameActive, ThroughTheRule)
{
    const rule_ptr rule = rule_of(recorded::deep_leak());
    EXPECT_TRUE(helpers::is_frame_active(rule, 1));
    EXPECT_FALSE(helpers::is_frame_active(rule, 0));
    helpers::set_frame_active(rule, 9, true);
    EXPECT_TRUE(helpers::is_frame_active(rule, 9));
    EXPECT_EQ(helpers::get_active_frames_count(rule->get_stack(false)), 2);
    helpers::set_frame_active(rule, 10, true);
    EXPECT_FALSE(helpers::is_frame_active(rule, 10));
    EXPECT_FALSE(helpers::is_frame_active(rule_ptr(), 0));
    EXPECT_EQ(helpers::get_active_frames_count(stack_ptr()), 0);
}

TEST(TopNonWildcardFrame, FirstUsedFrameWithAUsedFieldElseTheBestLevel)
{
    const rule_ptr rule = rule_of(recorded::deep_leak()); // best level 1
    const auto stack = rule->get_stack(false);
    EXPECT_EQ(helpers::get_top_nonwidlcard_frame(stack), 1);
    helpers::set_frame_active(rule, 0, true);
    EXPECT_EQ(helpers::get_top_nonwidlcard_frame(stack), 0);
    helpers::set_frame_items_active(rule->get_item(sdt_call_stack), 0, false);
    EXPECT_EQ(helpers::get_top_nonwidlcard_frame(stack), 1);
    for (int i = 0; i < stack->stack_size(); ++i)
        helpers::set_frame_active(rule, i, false);
    EXPECT_EQ(helpers::get_top_nonwidlcard_frame(stack), 1); // the best level, not 0
    EXPECT_EQ(helpers::get_top_nonwidlcard_frame(stack_ptr()), 0);
}

TEST(ResetToDefault, OnlyTheBestFrameWithEveryFieldConcrete)
{
    const rule_ptr rule = rule_of(recorded::deep_leak());
    const rule_item_ptr item = rule->get_item(sdt_call_stack);
    helpers::set_frame_active(rule, 1, false);
    helpers::set_frame_active(rule, 5, true);
    helpers::set_frame_items_active(item, 1, false);
    helpers::set_stack_item_active(item, 5, sdt_function, false);

    helpers::reset_to_default(rule);
    const auto stack = rule->get_stack(false);
    EXPECT_TRUE(stack->is_best_location());
    for (int i = 0; i < stack->stack_size(); ++i) {
        EXPECT_EQ(stack->is_frame_active(i), i == 1) << i;
        EXPECT_TRUE(stack->is_frame_field_active(i, sdt_function)) << i;
        EXPECT_EQ(stack->is_frame_field_active(i, sdt_line), i != 0) << i; // malloc has no source
    }

    // A rule without a best level is left alone.
    auto problem = recorded::use_after_free();
    problem.best_level = -1;
    const rule_ptr whole = rule_of(problem);
    helpers::reset_to_default(whole);
    EXPECT_EQ(helpers::get_active_frames_count(whole->get_stack(false)), 2);
    helpers::reset_to_default(rule_ptr());
}

TEST(StackLine, FramesWildcardsAndElidedFrames)
{
    const rule_ptr rule = rule_of(recorded::race_read());
    const auto stack = rule->get_stack(false);
    EXPECT_EQ(create_stack_line(stack, 0),
              L"thr_race_counter!worker - /work/wt-samples/samples/src/thr_race_counter.c:14");
    EXPECT_EQ(create_stack_line(stack, 1), L"..."); // elided, whatever it holds
    // The preload object has no function and no source, so no usable line either.
    helpers::set_frame_active(rule, 1, true);
    EXPECT_EQ(create_stack_line(stack, 1), L"vgpreload_helgrind-amd64-linux.so! - :[any line]");
    // A used line that the analyser did not know prints empty: the line ends with ':'.
    rule->get_stack_item()->edit_frame(2).line = no_line;
    helpers::set_frame_active(rule, 2, true);
    EXPECT_EQ(create_stack_line(stack, 2), L"libc.so.6!start_thread - ./nptl/./nptl/pthread_create.c:");
    helpers::set_stack_item_active(rule->get_item(sdt_call_stack), 0, sdt_source, false);
    helpers::set_stack_item_active(rule->get_item(sdt_call_stack), 0, sdt_module, false);
    EXPECT_EQ(create_stack_line(stack, 0), L"[any module]!worker - [any source]:[any line]");
    EXPECT_EQ(create_stack_line(stack, 4), L"");
    EXPECT_EQ(create_stack_line(stack_ptr(), 0), L"");
}

TEST(StackLine, OfAProblemLocation)
{
    auto problem = recorded::template_race();
    EXPECT_EQ(create_stack_line(probstore3::agg_source_location_t::from_problem(problem)),
              L"tsan_template_race!corr::sample::Accumulator<double, 4>::add(double const&, int) - "
              L"thr_template_race.cpp:19");
    problem.stacks[0].frames[0].line = probstore3::no_line;
    EXPECT_EQ(create_stack_line(probstore3::agg_source_location_t::from_problem(problem)).back(), L':');
    EXPECT_EQ(create_stack_line(boost::shared_ptr<probstore3::agg_source_location_t>()), L"");
}

TEST(RuleDescription, TopFrameWithWildcardsAndForcedAnyValues)
{
    const rule_ptr rule = rule_of(recorded::deep_leak());
    const std::wstring src = L"/work/wt-samples/samples/src/mem_leaks.c";
    EXPECT_EQ(create_rule_description(rule, {}), L"mem_leaks!alloc_token - " + src + L":28");
    EXPECT_EQ(create_rule_description(rule, {sdt_line, sdt_module}),
              L"[any module]!alloc_token - " + src + L":[any line]");

    helpers::set_stack_item_active(rule->get_item(sdt_call_stack), 1, sdt_function, false);
    EXPECT_EQ(create_rule_description(rule, {}), L"mem_leaks![any function] - " + src + L":28");

    rule->set_item_active(false, sdt_call_stack);
    EXPECT_EQ(create_rule_description(rule, {}), L"[any module]![any function] - [any source]:[any line]");

    auto problem = recorded::use_after_free();
    problem.stacks.clear();
    EXPECT_EQ(create_rule_description(rule_of(problem), {}),
              L"[any module]![any function] - [any source]:[any line]");
    EXPECT_EQ(create_rule_description(rule_ptr(), {}), L"");
}

TEST(RuleDescription, ARuleWithOnlyALocationOfItsOwn)
{
    rule_ptr rule(new probstore3::suppression_rule_t);
    rule->set_item(shared_pointer<rule_item>(new value_item_t(sdt_module, "m")));
    rule->set_item(shared_pointer<rule_item>(new value_item_t(sdt_function, "f")));
    rule->set_item(shared_pointer<rule_item>(new value_item_t(sdt_source, "s.c", false)));
    EXPECT_EQ(create_rule_description(rule, {}), L"m!f - [any source]:[any line]");
}

TEST(PathsFromStrings, RelativePathsFoldersAndOrder)
{
    sup_test::temp_dir dir;
    std::filesystem::create_directories(dir / "team");
    sup_test::write_bytes(dir / "team" / "b.sup", "corr-suppressions 2\n");
    sup_test::write_bytes(dir / "team" / "a.sup", "corr-suppressions 2\n");
    sup_test::write_bytes(dir / "team" / "notes.txt", "");
    sup_test::write_bytes(dir / "mine.sup", "corr-suppressions 2\n");
    const std::wstring base = dir.path().wstring();
    const std::vector<std::wstring> lines = {L"mine.sup", L"", L"team", L"/nowhere/gone.sup"};

    auto paths = helpers::get_paths_from_strings(lines, base, false);
    std::vector<std::filesystem::path> got;
    for (const auto& p : paths)
        got.push_back(p.fs());
    EXPECT_EQ(got, (std::vector<std::filesystem::path>{dir / "mine.sup", dir / "team" / "a.sup", dir / "team" / "b.sup",
                                                       "/nowhere/gone.sup"}));
    EXPECT_EQ(helpers::get_paths_from_strings(lines, base, true).size(), 3u);
}
