// Rules, stacks and rule sets of the store, made from recorded problems.
#include "recorded_problems.h"

#include "probstore3/aggregator.h"
#include "probstore3/candidates.h"
#include "probstore3/source_location.h"
#include "probstore3/suppression_rule_set.h"

#include <gtest/gtest.h>

using namespace suppfmt3;
using probstore3::rule_ptr;

TEST(RecordedFixtures, MatchTheRecordedOutput)
{
    recorded::check_recorded("memcheck_use_after_free.xml", recorded::use_after_free());
    recorded::check_recorded("helgrind_race_counter.xml", recorded::race_read());
    recorded::check_recorded("helgrind_race_counter.xml", recorded::race_write());
    recorded::check_recorded("memcheck_leaks.xml", recorded::deep_leak());
    recorded::check_recorded("tsan_template_race.txt", recorded::template_race());
}

TEST(CandidateRule, NamesTypeDescriptionAndOnlyTheBestFrame)
{
    const rule_ptr rule = probstore3::create_rule(recorded::deep_leak());
    EXPECT_EQ(rule->get_field_value(sdt_problem_type), L"Memory leak");
    EXPECT_EQ(rule->get_field_value(sdt_description), L"10 bytes in 1 blocks are definitely lost in loss record 1 of 3");
    EXPECT_TRUE(rule->is_item_active(sdt_problem_type));
    EXPECT_TRUE(rule->is_item_active(sdt_call_stack));
    ASSERT_TRUE(rule->get_problem_id().has_value());
    EXPECT_EQ(*rule->get_problem_id(), 4u);

    const auto stack = rule->get_stack(false);
    ASSERT_TRUE(stack);
    ASSERT_EQ(stack->stack_size(), 10);
    EXPECT_EQ(stack->get_best_level(), 1);
    EXPECT_TRUE(stack->is_best_location());
    for (int i = 0; i < stack->stack_size(); ++i)
        EXPECT_EQ(stack->is_frame_active(i), i == 1) << i;
    // malloc in the preload object has no source, so its line is not used.
    EXPECT_FALSE(stack->is_frame_field_active(0, sdt_line));
    EXPECT_TRUE(stack->is_frame_field_active(1, sdt_line));
    EXPECT_EQ(stack->get_frame_field_value(1, sdt_function), L"alloc_token");
    EXPECT_EQ(stack->get_frame_field_value(1, sdt_line), L"28");
    EXPECT_EQ(stack->get_frame_field_value(0, sdt_line), L"");
    // The location fields of a stack rule are those of its best frame.
    EXPECT_EQ(rule->get_field_value(sdt_function), L"alloc_token");
    EXPECT_EQ(rule->get_field_value(sdt_source), L"/work/wt-samples/samples/src/mem_leaks.c");
}

TEST(CandidateRule, ProblemWithoutValidBestLevelUsesEveryFrame)
{
    auto problem = recorded::use_after_free();
    problem.best_level = 7;
    const auto stack = probstore3::create_rule(problem)->get_stack(false);
    EXPECT_EQ(stack->get_best_level(), -1);
    EXPECT_TRUE(stack->is_frame_active(0));
    EXPECT_TRUE(stack->is_frame_active(1));

    problem.stacks.clear();
    const auto bare = probstore3::create_rule(problem);
    EXPECT_FALSE(bare->get_stack(false));
    EXPECT_FALSE(bare->is_item_available(sdt_call_stack));
    EXPECT_FALSE(bare->is_item_available(sdt_module));
}

TEST(CandidateRuleSet, OneRulePerProblemInOrder)
{
    const auto set = probstore3::create_candidate_rule_set(
        std::vector<probstore3::problem_t>{recorded::race_read(), recorded::use_after_free(), recorded::race_write()});
    ASSERT_EQ(set->get_rules().size(), 3u);
    EXPECT_EQ(*set->get_rules()[0]->get_problem_id(), 2u);
    EXPECT_EQ(*set->get_rules()[1]->get_problem_id(), 1u);
    EXPECT_EQ(*set->get_rules()[2]->get_problem_id(), 3u);
    EXPECT_EQ(set->get_type(), srt_best_location);
    EXPECT_FALSE(set->get_file());
    set->set_name(L"Grüße");
    EXPECT_EQ(set->get_name_utf8(), "Gr\xc3\xbc\xc3\x9f" "e");
}

TEST(StackView, EditsThroughOneViewAreSeenByTheRuleAndOtherViews)
{
    const rule_ptr rule = probstore3::create_rule(recorded::race_read());
    const auto a = rule->get_stack(false);
    const auto b = rule->get_stack(false);
    a->set_frame_active(2, true);
    EXPECT_TRUE(b->is_frame_active(2));
    EXPECT_TRUE(rule->get_stack_item()->is_frame_active(2));
    rule->get_stack_item()->edit_frame(2).function_active = false;
    EXPECT_FALSE(a->is_frame_field_active(2, sdt_function));

    // Out of range: neutral answers, no change.
    a->set_frame_active(4, true);
    a->set_frame_active(-1, true);
    EXPECT_FALSE(a->is_frame_active(4));
    EXPECT_FALSE(a->is_frame_field_active(-1, sdt_module));
    EXPECT_EQ(a->get_frame_field_value(4, sdt_module), L"");
    EXPECT_EQ(a->get_frame_field_value(0, sdt_description), L"");
}

TEST(StackView, ReadOnlyStackIsANormalisedCopy)
{
    const rule_ptr rule = probstore3::create_rule(recorded::use_after_free());
    auto& frame = rule->get_stack_item()->edit_frame(0);
    frame.source = wildcard_source;
    frame.line_active = true; // inconsistent: a line in any file
    const auto copy = rule->get_stack(true);
    EXPECT_FALSE(copy->is_frame_field_active(0, sdt_line));
    EXPECT_TRUE(frame.line_active);
    copy->set_frame_active(1, true);
    EXPECT_FALSE(rule->get_stack(false)->is_frame_active(1));
}

TEST(RuleItems, LocationFieldsOfAStackRuleActOnEveryFrame)
{
    const rule_ptr rule = probstore3::create_rule(recorded::race_read());
    EXPECT_TRUE(rule->is_item_available(sdt_source));
    EXPECT_TRUE(rule->is_item_active(sdt_source));
    EXPECT_FALSE(rule->get_item(sdt_source)); // no item of its own

    rule->set_item_active(false, sdt_source);
    EXPECT_FALSE(rule->is_item_active(sdt_source));
    EXPECT_FALSE(rule->is_item_active(sdt_line)); // the line goes with its source
    rule->set_item_active(true, sdt_line);
    EXPECT_FALSE(rule->is_item_active(sdt_line)); // still no source
    rule->set_item_active(true, sdt_source);
    rule->set_item_active(true, sdt_line);
    const auto stack = rule->get_stack(false);
    EXPECT_TRUE(stack->is_frame_field_active(0, sdt_line));
    EXPECT_FALSE(stack->is_frame_field_active(1, sdt_line)); // the preload object has no source

    rule->set_item_active(false, sdt_call_stack);
    EXPECT_FALSE(rule->is_item_active(sdt_call_stack));
    EXPECT_TRUE(rule->is_item_available(sdt_call_stack));
}

TEST(RuleItems, ConvertToStackTurnsALocationIntoOneFrame)
{
    rule_ptr rule(new probstore3::suppression_rule_t);
    rule->set_item(shared_pointer<rule_item>(new value_item_t(sdt_module, "mem_use_after_free")));
    rule->set_item(shared_pointer<rule_item>(new value_item_t(sdt_function, "print_record", false)));
    rule->set_item(shared_pointer<rule_item>(new value_item_t(sdt_source, "/src/m.c")));
    rule->set_item(shared_pointer<rule_item>(new line_item_t(28)));
    EXPECT_FALSE(rule->get_stack(false));
    const auto shown = rule->get_stack(true); // printing works before the conversion
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->get_frame_field_value(0, sdt_function), L"print_record");

    EXPECT_TRUE(rule->convert_to_stack());
    EXPECT_FALSE(rule->get_item(sdt_module));
    const auto stack = rule->get_stack(false);
    ASSERT_TRUE(stack);
    ASSERT_EQ(stack->stack_size(), 1);
    EXPECT_EQ(stack->get_best_level(), 0);
    EXPECT_TRUE(stack->is_frame_active(0));
    EXPECT_FALSE(stack->is_frame_field_active(0, sdt_function));
    EXPECT_TRUE(stack->is_frame_field_active(0, sdt_line));
    EXPECT_EQ(stack->get_frame_field_value(0, sdt_line), L"28");
    EXPECT_FALSE(rule->convert_to_stack());
}

TEST(RuleItems, NormalizeDropsLinesWithoutAConcreteSourceAndBadBestLevels)
{
    stack_item_t stack(callstack_t(3), 5);
    stack.edit_frame(0).source = "a.c";
    stack.edit_frame(0).line_active = true;
    stack.edit_frame(1).source = "*";
    stack.edit_frame(1).line_active = true;
    stack.edit_frame(2).source = "b.c";
    stack.edit_frame(2).source_active = false;
    stack.edit_frame(2).line_active = true;
    stack.normalize();
    EXPECT_TRUE(stack.frame(0).line_active);
    EXPECT_FALSE(stack.frame(1).line_active);
    EXPECT_FALSE(stack.frame(2).line_active);
    EXPECT_EQ(stack.get_best_level(), -1);
}

TEST(RuleData, DisplayNamesAndCloning)
{
    const rule_ptr rule = probstore3::create_rule(recorded::template_race());
    EXPECT_EQ(rule->get_datatype_international(sdt_problem_type), L"Problem type");
    EXPECT_EQ(rule->get_datatype_international(sdt_source), L"Source file");
    EXPECT_EQ(rule->get_datatype_international(sdt_call_stack), L"Call stack");
    EXPECT_EQ(rule->get_datatype_international(static_cast<suppfmt_datatype>(14)), L"");

    const auto copy = rule->clone();
    copy->get_stack(false)->set_frame_active(3, true);
    copy->set_item_active(false, sdt_problem_type);
    EXPECT_FALSE(rule->get_stack(false)->is_frame_active(3));
    EXPECT_TRUE(rule->is_item_active(sdt_problem_type));
    EXPECT_EQ(copy->get_problem_id(), rule->get_problem_id());
}

TEST(SourceLocation, ShortNamesOfTheBestFrame)
{
    auto problem = recorded::race_read();
    problem.stacks[0].frames[0].module = "/work/wt-samples/samples/build/thr_race_counter";
    const auto location = probstore3::agg_source_location_t::from_problem(problem);
    ASSERT_TRUE(location);
    EXPECT_EQ(location->exact_short_mod_name().as_wstring(), L"thr_race_counter");
    EXPECT_EQ(location->func_name().as_wstring(), L"worker");
    EXPECT_EQ(location->short_file().as_wstring(), L"thr_race_counter.c");
    EXPECT_EQ(location->full_file().as_wstring(), L"/work/wt-samples/samples/src/thr_race_counter.c");
    EXPECT_EQ(location->get_line(), 14u);
    problem.best_level = 9;
    EXPECT_FALSE(probstore3::agg_source_location_t::from_problem(problem));
}

TEST(ErrorTexts, EveryCodeHasItsOwnText)
{
    std::set<std::wstring> texts;
    for (int code : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 27})
        texts.insert(probstore3::aggregator_t::get_suppfmt_errdef_string(static_cast<suppfmt_errdef>(code)));
    EXPECT_EQ(texts.size(), 13u);
    EXPECT_EQ(probstore3::aggregator_t::get_suppfmt_errdef_string(se_no_file), L"There is no suppression file.");
    EXPECT_NE(probstore3::aggregator_t::get_suppfmt_errdef_string(static_cast<suppfmt_errdef>(99)).find(L"99"),
              std::wstring::npos);
}
