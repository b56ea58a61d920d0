// Exporting rules to the analysers' own suppression formats, from rules made
// from recorded problems.
#include "corr_engine/native_export.h"
#include "corr_engine/native_suppressions.h"
#include "corr_engine/sanitizer_report_importer.h"
#include "corr_engine/valgrind_xml_importer.h"
#include "probstore3/candidates.h"

#include "test_support.h"

namespace {

using namespace engine_test;
using corr_engine::export_native_suppressions;
using corr_engine::native_format_t;
using probstore3::problem_t;

std::vector<problem_t> recorded(const std::string& name)
{
    const corr_engine::valgrind_xml_importer_t xml;
    const corr_engine::sanitizer_report_importer_t text;
    const bool is_xml = fs::path(name).extension() == ".xml";
    auto got = is_xml ? import_with(xml, sample(name)) : import_with(text, sample(name));
    EXPECT_TRUE(got.report.ok) << name;
    return got.problems;
}

// A named set with one default rule per problem.
probstore3::rule_set_ptr set_of(const std::wstring& name, const std::vector<const problem_t*>& problems)
{
    auto set = probstore3::create_candidate_rule_set(problems);
    set->set_name(name);
    return set;
}

// The block of text from "{" after the first line holding `marker` to "}".
std::string block_after(const std::string& text, const std::string& marker)
{
    const auto at = text.find(marker);
    if (at == std::string::npos)
        return {};
    const auto open = text.find("{\n", at);
    return text.substr(open, text.find("\n}\n", open) + 3 - open);
}

TEST(NativeExport, ValgrindBlocksTakeKindsAndMangledNamesFromTheProblems)
{
    auto problems = recorded("memcheck_mismatched_delete_gensupp.xml");
    const auto leaks = recorded("memcheck_leaks_gensupp.xml");
    const auto overflow = recorded("memcheck_overflow.xml");
    problems.insert(problems.end(), leaks.begin(), leaks.end());
    problems.insert(problems.end(), overflow.begin(), overflow.end());
    ASSERT_EQ(problems.size(), 7u);
    const problem_t* deletes[] = {&problems[0], &problems[1]};
    const auto* possible = &*std::find_if(problems.begin(), problems.end(),
                                          [](const problem_t& p) { return p.kind == "Leak_PossiblyLost"; });
    const auto* write = &*std::find_if(problems.begin(), problems.end(),
                                       [](const problem_t& p) { return p.kind == "InvalidWrite"; });

    const auto out = export_native_suppressions(
        {set_of(L"Deletes", {deletes[0], deletes[1]}), set_of(L"Possible leak", {possible}),
         set_of(L"Deletes", {write})},
        problems, native_format_t::valgrind);
    EXPECT_EQ(out.entries, 4u);
    EXPECT_TRUE(out.not_expressed.empty());
    // C++ frames by the mangled names Valgrind printed; names unique.
    EXPECT_EQ(block_after(out.text, "# \"Deletes\" rule 1"),
              "{\n   Deletes\n   Memcheck:Free\n   ...\n   fun:_ZN7samples11drop_pointsEPNS_5PointE\n}\n");
    EXPECT_EQ(block_after(out.text, "# \"Deletes\" rule 2"),
              "{\n   Deletes (2)\n   Memcheck:Free\n   ...\n   fun:_ZN7samples8drop_rawEPi\n}\n");
    EXPECT_EQ(block_after(out.text, "# \"Possible leak\""),
              "{\n   Possible leak\n   Memcheck:Leak\n   match-leak-kinds: possible\n   ...\n"
              "   fun:possible_leak\n}\n");
    // The access size of the description is the kind; the third set reuses a name.
    EXPECT_NE(out.text.find("{\n   Deletes (3)\n   Memcheck:Addr4\n   ...\n   fun:fill\n}\n"),
              std::string::npos);
    // The leak's description ("... in loss record 3 of 3") cannot be compared: said in the file.
    ASSERT_EQ(out.widened.size(), 3u); // both Free rules and the leak; Addr4 carries the size
    EXPECT_NE(out.widened[2].find("\"Possible leak\": the description is not compared"), std::string::npos);
    EXPECT_NE(out.text.find("#   \"Possible leak\": the description is not compared"), std::string::npos);
}

TEST(NativeExport, NamesValgrindWouldMisreadAreMadeSafeAndTheFileReadsBack)
{
    const auto problems = recorded("memcheck_leaks_gensupp.xml");
    std::vector<probstore3::rule_set_ptr> sets;
    for (const std::wstring name : {L"#1 leak", L"  }  ", L"two\nlines", L"\u00fcber \"quoted\""})
        sets.push_back(set_of(name, {&problems[0]}));
    const auto out = export_native_suppressions(sets, problems, native_format_t::valgrind);
    ASSERT_EQ(out.entries, 4u);
    std::vector<corr_engine::valgrind_suppression_t> read;
    corr_engine::parse_failure_t failure;
    ASSERT_TRUE(corr_engine::parse_valgrind_suppressions(out.text, read, failure))
        << failure.line << ": " << failure.reason << "\n" << out.text;
    ASSERT_EQ(read.size(), 4u);
    EXPECT_EQ(read[0].name, "suppression #1 leak");
    EXPECT_EQ(read[1].name, "suppression }");
    EXPECT_EQ(read[2].name, "two lines");
    EXPECT_EQ(read[3].name, "\xc3\xbc" "ber \"quoted\"");
    for (const auto& s : read)
        EXPECT_TRUE(corr_engine::valgrind_suppression_matches(s, problems[0])) << s.name;
}

TEST(NativeExport, FramesWithoutMangledNamesFallBackToSourceAndSaySo)
{
    // No --gen-suppressions output here: the C++ names cannot be mangled.
    const auto problems = recorded("helgrind_template_race.xml");
    ASSERT_FALSE(problems.empty());
    auto set = set_of(L"Template race", {&problems[0]});
    // Use two frames around an elided one, the best one by source and line too.
    auto stack = set->get_rules()[0]->get_stack_item();
    ASSERT_GE(stack->size(), 4u);
    const int best = stack->get_best_level();
    stack->set_frame_active(static_cast<size_t>(best) + 2, true);
    stack->edit_frame(static_cast<size_t>(best)).line_active = true;

    const auto out = export_native_suppressions({set}, problems, native_format_t::valgrind);
    ASSERT_EQ(out.entries, 1u);
    const auto& best_frame = stack->frame(static_cast<size_t>(best));
    const std::string file = fs::path(best_frame.source).filename().string();
    const std::string expected_best = "   src:" + file + ":" + std::to_string(best_frame.line) + "\n   ...\n";
    EXPECT_NE(out.text.find("   Helgrind:Race\n   ...\n" + expected_best), std::string::npos) << out.text;
    ASSERT_FALSE(out.widened.empty());
    EXPECT_NE(out.widened[0].find("the mangled name of " + best_frame.function + " is not known"),
              std::string::npos);
    EXPECT_NE(out.text.find("#   \"Template race\": the mangled name of"), std::string::npos);
}

TEST(NativeExport, RulesWithoutProblemsUseTheirTypeOrAreListedAsNotExpressible)
{
    const auto leaks = recorded("memcheck_leaks.xml");
    auto from_type = set_of(L"By type", {&leaks[0]});
    auto anything = set_of(L"Any type", {&leaks[0]});
    anything->get_rules()[0]->set_item_active(false, suppfmt3::sdt_problem_type);
    const auto out = export_native_suppressions({from_type, anything}, {}, native_format_t::valgrind);
    EXPECT_EQ(out.entries, 1u);
    EXPECT_NE(out.text.find("   Memcheck:Leak\n   match-leak-kinds: definite\n"), std::string::npos);
    ASSERT_EQ(out.not_expressed.size(), 1u);
    EXPECT_EQ(out.not_expressed[0].rfind("\"Any type\": ", 0), 0u);
    EXPECT_NE(out.text.find("# Rules this format cannot express (left out):\n#   \"Any type\""),
              std::string::npos);
    EXPECT_EQ(out.text.find("{\n   Any type"), std::string::npos);
}

TEST(NativeExport, SanitizerLinesNameOneFrameAndListWhatTheyCannotSay)
{
    auto problems = recorded("lsan_leaks.txt");
    const auto races = recorded("tsan_race_counter.txt");
    const auto ub = recorded("ubsan_multi.txt");
    const auto uaf = recorded("asan_use_after_free.txt");
    const size_t n_leaks = problems.size();
    problems.insert(problems.end(), races.begin(), races.end());
    problems.insert(problems.end(), ub.begin(), ub.end());
    problems.insert(problems.end(), uaf.begin(), uaf.end());
    std::vector<const problem_t*> all;
    for (const auto& p : problems)
        all.push_back(&p);
    const auto sets = std::vector<probstore3::rule_set_ptr>{set_of(L"All", all)};

    const auto lsan = export_native_suppressions(sets, problems, native_format_t::lsan);
    EXPECT_EQ(lsan.entries, n_leaks);
    for (size_t i = 0; i < n_leaks; ++i)
        EXPECT_NE(lsan.text.find("leak:^" + problems[i].best_frame()->function + "$\n"), std::string::npos);
    EXPECT_EQ(lsan.not_expressed.size(), problems.size() - n_leaks);
    EXPECT_EQ(lsan.text.find("race:"), std::string::npos);

    const auto tsan = export_native_suppressions(sets, problems, native_format_t::tsan);
    EXPECT_NE(tsan.text.find("\nrace:^worker$\n"), std::string::npos) << tsan.text;
    EXPECT_EQ(tsan.entries, 1u); // both races name the same function: one line

    const auto ubsan = export_native_suppressions(sets, problems, native_format_t::ubsan);
    for (const auto& p : ub)
        EXPECT_NE(ubsan.text.find("\n" + p.kind + ":^" + p.best_frame()->function + "$\n"), std::string::npos)
            << p.kind;

    // A use after free is not reported from an interceptor: AddressSanitizer
    // has nothing to name it by.
    const auto asan = export_native_suppressions(sets, problems, native_format_t::asan);
    EXPECT_EQ(asan.entries, 0u);
    EXPECT_EQ(asan.not_expressed.size(), problems.size());
    EXPECT_NE(asan.not_expressed.back().find("interceptors"), std::string::npos);
    // Every rule that was written lists what was not compared.
    EXPECT_EQ(lsan.widened.size(), n_leaks);
    EXPECT_NE(lsan.widened[0].find("not compared: the description"), std::string::npos);
}

} // namespace
