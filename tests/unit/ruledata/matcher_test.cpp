// Which suppression hides which problem.
#include "recorded_problems.h"

#include "probstore3/candidates.h"
#include "probstore3/suppression_matcher.h"

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

#include <random>

using namespace suppfmt3;
using probstore3::problem_t;
using probstore3::rule_ptr;
using probstore3::suppression_matcher_t;

namespace {

probstore3::rule_set_ptr set_of(const std::wstring& name, std::vector<rule_ptr> rules)
{
    return boost::make_shared<probstore3::suppression_rule_set_t>(name, std::move(rules));
}

// A stack rule whose frames are given as function names; "..." is an
// elided frame. Only functions are used.
rule_ptr stack_rule(const std::vector<std::string>& functions)
{
    rule_ptr rule(new probstore3::suppression_rule_t);
    shared_pointer<stack_item_t> stack(new stack_item_t);
    for (const auto& fn : functions) {
        callstack_frame_t f;
        f.function = fn == "..." ? "" : fn;
        f.module_active = false;
        f.source_active = false;
        stack->add_frame(f, fn != "...");
    }
    rule->set_item(stack);
    return rule;
}

problem_t problem_with(const std::vector<std::string>& functions, std::string type = "Data race")
{
    problem_t p;
    p.type = std::move(type);
    p.description = "d";
    probstore3::stack_t s;
    for (const auto& fn : functions)
        s.frames.push_back(recorded::frame("m", fn, "s.c", 1));
    p.stacks.push_back(s);
    return p;
}

bool matches(const rule_ptr& rule, const problem_t& p)
{
    const bool direct = probstore3::rule_matches(*rule, p);
    const bool indexed = static_cast<bool>(suppression_matcher_t({set_of(L"s", {rule})}).match(p));
    EXPECT_EQ(direct, indexed);
    return direct;
}

} // namespace

TEST(Matcher, DefaultRuleMatchesItsLocationWhereverItStands)
{
    const auto problem = recorded::use_after_free();
    const rule_ptr rule = probstore3::create_rule(problem);
    EXPECT_TRUE(matches(rule, problem));

    // The same read reached through other callers, or one call deeper.
    auto other_caller = problem;
    other_caller.stacks[0].frames[1].function = "report_all";
    EXPECT_TRUE(matches(rule, other_caller));
    auto deeper = problem;
    deeper.stacks[0].frames.insert(deeper.stacks[0].frames.begin(), recorded::frame("libc.so.6", "strlen"));
    EXPECT_TRUE(matches(rule, deeper));

    auto other_line = problem;
    other_line.stacks[0].frames[0].line = 29;
    EXPECT_FALSE(matches(rule, other_line));
    auto other_type = problem;
    other_type.type = "Invalid write";
    EXPECT_FALSE(matches(rule, other_type));
    auto no_stack = problem;
    no_stack.stacks.clear();
    EXPECT_FALSE(matches(rule, no_stack));
}

TEST(Matcher, ElidedFrameStandsForAnyNumberOfFrames)
{
    const rule_ptr gap = stack_rule({"a", "...", "b"});
    EXPECT_TRUE(matches(gap, problem_with({"a", "b"})));           // zero frames
    EXPECT_TRUE(matches(gap, problem_with({"a", "x", "b"})));      // one
    EXPECT_TRUE(matches(gap, problem_with({"q", "a", "x", "y", "z", "b", "r"}))); // several, anywhere
    EXPECT_FALSE(matches(gap, problem_with({"b", "a"})));          // order counts
    EXPECT_FALSE(matches(gap, problem_with({"a"})));

    const rule_ptr adjacent = stack_rule({"a", "b"});
    EXPECT_TRUE(matches(adjacent, problem_with({"x", "a", "b"})));
    EXPECT_FALSE(matches(adjacent, problem_with({"a", "x", "b"})));

    // The first "a" is followed by the wrong frame; the second one fits.
    const rule_ptr retry = stack_rule({"a", "c", "...", "d"});
    EXPECT_TRUE(matches(retry, problem_with({"a", "b", "a", "c", "d"})));
    EXPECT_FALSE(matches(retry, problem_with({"a", "c"})));

    const rule_ptr all_elided = stack_rule({"...", "..."});
    EXPECT_TRUE(matches(all_elided, problem_with({})));
}

TEST(Matcher, DeepLeakWithOnlyTheEndsOfItsStack)
{
    const auto leak = recorded::deep_leak();
    const rule_ptr rule = probstore3::create_rule(leak);
    auto stack = rule->get_stack(false);
    stack->set_frame_active(9, true); // main, with alloc_token (the best frame) and all between elided
    EXPECT_TRUE(matches(rule, leak));
    auto shallow = leak;
    auto& frames = shallow.stacks[0].frames;
    frames.erase(frames.begin() + 2, frames.begin() + 9); // alloc_token called from main directly
    frames[2].line = 50;
    EXPECT_TRUE(matches(rule, shallow));
    frames[2].function = "not_main";
    EXPECT_FALSE(matches(rule, shallow));
}

TEST(Matcher, WildcardFieldsAndAspects)
{
    const auto read = recorded::race_read();
    const auto write = recorded::race_write();
    const rule_ptr rule = probstore3::create_rule(read);
    EXPECT_FALSE(matches(rule, write)); // the description differs
    rule->set_item_active(false, sdt_description);
    EXPECT_TRUE(matches(rule, write));

    // A frame of the preload object: only its module is known.
    auto stack = rule->get_stack(false);
    stack->set_frame_active(1, true);
    EXPECT_TRUE(matches(rule, write));
    auto other_preload = write;
    other_preload.stacks[0].frames[1].module = "vgpreload_drd-amd64-linux.so";
    EXPECT_FALSE(matches(rule, other_preload));
    rule->get_stack_item()->edit_frame(1).module_active = false;
    EXPECT_TRUE(matches(rule, other_preload));

    // Source "*" matches any source even when used.
    auto moved = write;
    moved.stacks[0].frames[0].source = "/elsewhere/thr_race_counter.c";
    EXPECT_FALSE(matches(rule, moved));
    auto& f = rule->get_stack_item()->edit_frame(0);
    f.source = wildcard_source;
    f.line_active = false;
    EXPECT_TRUE(matches(rule, moved));

    // Without the stack aspect any stack matches; without the type any type.
    auto elsewhere = recorded::template_race();
    elsewhere.description = read.description;
    EXPECT_FALSE(matches(rule, elsewhere));
    rule->set_item_active(false, sdt_call_stack);
    EXPECT_TRUE(matches(rule, elsewhere));
    elsewhere.type = "Lock order";
    EXPECT_FALSE(matches(rule, elsewhere));
    rule->set_item_active(false, sdt_problem_type);
    EXPECT_TRUE(matches(rule, elsewhere));
}

TEST(Matcher, FirstMatchingRuleSetInOrderWins)
{
    const auto uaf = recorded::use_after_free();
    rule_ptr any_read(new probstore3::suppression_rule_t);
    any_read->set_item(shared_pointer<rule_item>(new value_item_t(sdt_problem_type, "Invalid read")));
    const auto broad = set_of(L"broad", {any_read});
    const auto exact = set_of(L"exact", {probstore3::create_rule(recorded::race_read()), probstore3::create_rule(uaf)});
    const suppression_matcher_t matcher({exact, broad});
    const auto found = matcher.find(uaf);
    ASSERT_TRUE(found);
    EXPECT_EQ(found.rule_set, exact);
    EXPECT_EQ(found.rule, exact->get_rules()[1]);
    EXPECT_EQ(suppression_matcher_t({broad, exact}).match(uaf), broad);
    EXPECT_EQ(matcher.rule_count(), 3u);
    EXPECT_FALSE(matcher.match(recorded::template_race()));
}

TEST(Matcher, IndexedMatchAgreesWithComparingEveryRule)
{
    // Rules keyed by function, by module, by type, or by nothing, over
    // random small stacks: the index must never miss a rule.
    std::mt19937 rng(12345);
    auto pick = [&](int n) { return static_cast<int>(rng() % static_cast<unsigned>(n)); };
    const std::vector<std::string> fns = {"a", "b", "c", "d", "e"};
    const std::vector<std::string> mods = {"m1", "m2"};
    const std::vector<std::string> types = {"Data race", "Invalid read"};

    std::vector<probstore3::rule_set_ptr> sets;
    for (int r = 0; r < 300; ++r) {
        rule_ptr rule(new probstore3::suppression_rule_t);
        if (pick(2))
            rule->set_item(shared_pointer<rule_item>(new value_item_t(sdt_problem_type, types[pick(2)])));
        shared_pointer<stack_item_t> stack(new stack_item_t);
        const int n = pick(4);
        for (int i = 0; i < n; ++i) {
            callstack_frame_t f;
            f.function = fns[pick(5)];
            f.function_active = pick(3) != 0;
            f.module = mods[pick(2)];
            f.module_active = pick(2) != 0;
            f.source_active = false;
            stack->add_frame(f, pick(4) != 0);
        }
        rule->set_item(stack);
        sets.push_back(set_of(L"r" + std::to_wstring(r), {rule}));
    }
    const suppression_matcher_t matcher(sets);
    int matched = 0;
    for (int p = 0; p < 500; ++p) {
        problem_t problem;
        problem.type = types[pick(2)];
        problem.stacks.emplace_back();
        const int n = pick(7);
        for (int i = 0; i < n; ++i)
            problem.stacks[0].frames.push_back(recorded::frame(mods[pick(2)], fns[pick(5)]));
        probstore3::rule_set_ptr expected;
        for (const auto& s : sets)
            if (probstore3::rule_matches(*s->get_rules()[0], problem)) {
                expected = s;
                break;
            }
        EXPECT_EQ(matcher.match(problem), expected) << p;
        matched += expected ? 1 : 0;
    }
    EXPECT_GT(matched, 100); // the test exercises matches, not only misses
}
