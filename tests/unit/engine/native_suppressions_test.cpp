// Reading the analysers' own suppression files and matching problems as the
// analysers do.
#include "corr_engine/native_suppressions.h"
#include "corr_engine/sanitizer_report_importer.h"
#include "corr_engine/valgrind_xml_importer.h"

#include "test_support.h"

namespace {

using namespace engine_test;
using namespace corr_engine;
using probstore3::problem_t;

std::vector<problem_t> recorded_xml(const std::string& name)
{
    const valgrind_xml_importer_t importer;
    auto got = import_with(importer, sample(name));
    EXPECT_TRUE(got.report.ok) << name;
    return got.problems;
}

std::vector<valgrind_suppression_t> parse_ok(const std::string& text)
{
    std::vector<valgrind_suppression_t> out;
    parse_failure_t failure;
    EXPECT_TRUE(parse_valgrind_suppressions(text, out, failure)) << failure.line << ": " << failure.reason;
    return out;
}

fs::path default_supp()
{
    for (const char* p : {"/usr/libexec/valgrind/default.supp", "/usr/lib/x86_64-linux-gnu/valgrind/default.supp",
                          "/usr/lib/valgrind/default.supp"})
        if (fs::exists(p))
            return p;
    return {};
}

TEST(NativeSuppressions, ValgrindsDefaultFileReadsAndHidesNoneOfTheRecordedErrors)
{
    const auto path = default_supp();
    if (path.empty())
        GTEST_SKIP() << "Valgrind's default.supp is not installed";
    std::wstring error;
    const auto file = load_native_suppression_file(basekit2::path_t(path), error);
    ASSERT_TRUE(file) << platkit::strings::wide_to_utf8(error);
    EXPECT_TRUE(file->is_valgrind);
    EXPECT_EQ(file->valgrind.size(), count_of(read_file(path), "\n{"));
    // Valgrind ran with this file loaded and still reported every recorded
    // error, so none of them may match it.
    for (const auto& xml : samples_matching("", ".xml")) {
        if (xml.filename() == "memcheck_leaks_truncated.xml")
            continue;
        for (const auto& p : recorded_xml(xml.filename().string()))
            EXPECT_FALSE(file->match(p)) << xml.filename() << " " << p.kind << " by " << *file->match(p);
    }
}

TEST(NativeSuppressions, TheSuppressionValgrindPrintedMatchesItsErrorAndNoOther)
{
    size_t checked = 0;
    for (const auto& name : {"memcheck_leaks_gensupp.xml", "memcheck_mismatched_delete_gensupp.xml",
                             "helgrind_race_counter_gensupp.xml"}) {
        const auto problems = recorded_xml(name);
        for (size_t i = 0; i < problems.size(); ++i) {
            const auto supps = parse_ok(problems[i].native_suppression);
            ASSERT_EQ(supps.size(), 1u) << problems[i].native_suppression;
            EXPECT_TRUE(valgrind_suppression_matches(supps[0], problems[i])) << problems[i].native_suppression;
            for (size_t j = 0; j < problems.size(); ++j) {
                if (problems[j].native_suppression != problems[i].native_suppression) {
                    EXPECT_FALSE(valgrind_suppression_matches(supps[0], problems[j]))
                        << name << " " << i << " matches " << j;
                }
            }
            ++checked;
        }
    }
    EXPECT_EQ(checked, 7u);
}

TEST(NativeSuppressions, ValgrindMatchingFollowsKindsWildcardsAndFrameSpans)
{
    auto problems = recorded_xml("memcheck_leaks_gensupp.xml");
    const auto& deep = *std::find_if(problems.begin(), problems.end(), [](const problem_t& p) {
        return p.best_frame() && p.best_frame()->function == "alloc_token";
    });
    const auto supps = parse_ok(R"(# several tools on the kind line, wildcards, spans
{
   deep token
   exp-dhat,Memcheck:Leak
   match-leak-kinds: definite,possible
   fun:*alloc
   fun:alloc_t?ken
   ...
   fun:load_settings
}
{
   reachable only
   Memcheck:Leak
   match-leak-kinds: reachable
   ...
}
{
   not from the top
   Memcheck:Leak
   fun:alloc_token
}
{
   by source and object
   Memcheck:Leak
   obj:*/vgpreload_memcheck-amd64-linux.so
   src:mem_leaks.c:28
}
{
   wrong line
   Memcheck:Leak
   ...
   src:mem_leaks.c:29
}
{
   other tool only
   drd:ConflictingAccess
   fun:main
}
)");
    ASSERT_EQ(supps.size(), 6u);
    std::vector<bool> got;
    for (const auto& s : supps)
        got.push_back(valgrind_suppression_matches(s, deep));
    EXPECT_EQ(got, (std::vector<bool>{true, false, false, true, false, false}));
    EXPECT_EQ(supps[0].tools, (std::vector<std::string>{"exp-dhat", "Memcheck"}));
    EXPECT_EQ(supps[3].frames[1].line, 28u);

    EXPECT_TRUE(valgrind_wildcard_match("_ZN7samples*Point*", "_ZN7samples11drop_pointsEPNS_5PointE"));
    EXPECT_TRUE(valgrind_wildcard_match("a\\*b", "a*b"));
    EXPECT_FALSE(valgrind_wildcard_match("a\\*b", "axb"));
    EXPECT_FALSE(valgrind_wildcard_match("ma?n", "man"));
    EXPECT_TRUE(sanitizer_template_match("^alloc_token$", "alloc_token"));
    EXPECT_FALSE(sanitizer_template_match("^alloc_token$", "alloc_token2"));
    EXPECT_TRUE(sanitizer_template_match("token", "alloc_token2"));
    EXPECT_TRUE(sanitizer_template_match("alloc*2$", "alloc_token2"));
}

TEST(NativeSuppressions, BadFilesAreRefusedWithLineAndReasonAndNothingRead)
{
    struct bad_t
    {
        std::string text;
        size_t line;
        std::string reason;
    };
    const std::string good = "{\n  ok\n  Memcheck:Free\n  fun:free\n}\n";
    std::string deep = "{\n n\n Memcheck:Cond\n";
    for (int i = 0; i < 25; ++i)
        deep += " fun:f" + std::to_string(i) + "\n";
    deep += "}\n";
    const bad_t cases[] = {
        {good + "fun:x\n", 6, "expected '{'"},
        {good + "{\n}\n", 7, "unexpected '}'"},
        {good + "{\n name\n Memcheck Free\n}\n", 8, "malformed 'tool1,tool2,...:supp' line"},
        {good + "{\n name\n Memcheck:Addr3\n fun:x\n}\n", 8, "unknown Memcheck suppression type 'Addr3'"},
        {good + "{\n name\n Memcheck:Param\n}\n", 9, "the system call parameter"},
        {good + "{\n name\n Memcheck:Leak\n match-leak-kinds: lost\n ...\n}\n", 9, "match-leak-kinds"},
        {good + "{\n name\n Memcheck:Free\n}\n", 9, "missing stack trace"},
        {good + "{\n name\n Memcheck:Free\n func:free\n}\n", 9, "location should be"},
        {good + "{\n name\n Memcheck:Free\n fun:free\n", 9, "unexpected end-of-file"},
        {good + "{\n name\n Foo:Bar\n fun:x\n", 9, "when skipping"},
        {deep, 28, "too many callers"},
        {good + "{\n name\n Memcheck,Helgrind:Leak\n ...\n}\n", 8, "unknown Helgrind suppression type 'Leak'"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        std::vector<valgrind_suppression_t> out{valgrind_suppression_t{}};
        parse_failure_t failure;
        EXPECT_FALSE(parse_valgrind_suppressions(c.text, out, failure));
        EXPECT_EQ(failure.line, c.line);
        EXPECT_NE(failure.reason.find(c.reason), std::string::npos) << failure.reason;
        EXPECT_EQ(out.size(), 1u); // untouched
    }
    // Accepted: comments, blanks around lines, Param's extra line, 24 frames,
    // a tool we do not know (skipped to its brace, as Valgrind does).
    const auto ok = parse_ok("  # comment\n{\n  p\n  Memcheck:Param\n  write(buf)\n  ...\n}\n"
                             "{\n x\n exp-sgcheck:SorG\n fun:x\n}\n");
    ASSERT_EQ(ok.size(), 2u);
    EXPECT_EQ(ok[0].param, "write(buf)");
    EXPECT_EQ(ok[0].line, 2u);

    // A file on disk: its path and line in the error.
    temp_dir_t dir;
    const auto path = dir.path() / "bad file.supp";
    write_bytes(path, "leak:alloc_token\nrace:\n");
    std::wstring error;
    EXPECT_FALSE(load_native_suppression_file(basekit2::path_t(path), error));
    EXPECT_EQ(platkit::strings::wide_to_utf8(error), path.string() + ":2: the suppression 'race:' has no pattern");
    write_bytes(path, "leak:alloc_token\nbogus:x\n");
    EXPECT_FALSE(load_native_suppression_file(basekit2::path_t(path), error));
    EXPECT_NE(platkit::strings::wide_to_utf8(error).find(":2: unknown suppression type 'bogus'"), std::string::npos);
}

TEST(NativeSuppressions, SanitizerLinesMatchAsTheRuntimesDo)
{
    const sanitizer_report_importer_t importer;
    auto leaks = import_with(importer, sample("lsan_leaks.txt")).problems;
    auto races = import_with(importer, sample("tsan_race_counter.txt")).problems;
    auto ub = import_with(importer, sample("ubsan_multi.txt")).problems;
    ASSERT_FALSE(leaks.empty());
    ASSERT_FALSE(races.empty());
    ASSERT_EQ(ub.size(), 4u);
    std::vector<sanitizer_suppression_t> s;
    parse_failure_t failure;
    ASSERT_TRUE(parse_sanitizer_suppressions("# ours\nleak:^alloc_token$\nrace:thr_race_counter.c\n"
                                             "shift-exponent:make_mask\nalignment:*\n",
                                             s, failure));
    size_t token = 0;
    for (const auto& p : leaks)
        token += sanitizer_suppression_matches(s[0], p);
    EXPECT_EQ(token, 1u);
    for (const auto& p : races)
        EXPECT_TRUE(sanitizer_suppression_matches(s[1], p)); // by source file, any frame
    EXPECT_FALSE(sanitizer_suppression_matches(s[1], leaks[0]));
    std::vector<std::string> hidden;
    for (const auto& p : ub)
        for (const auto& one : s)
            if (sanitizer_suppression_matches(one, p))
                hidden.push_back(p.kind);
    EXPECT_EQ(hidden, (std::vector<std::string>{"shift-exponent", "alignment"}));
}

} // namespace
