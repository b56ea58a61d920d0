// Sanitizer report import against the recorded samples and hand-made inputs.
#include "corr_engine/result_converter.h"
#include "corr_engine/sanitizer_report_importer.h"
#include "test_support.h"

#include <regex>
#include <sstream>

namespace {

using namespace engine_test;
using corr_engine::sanitizer_report_importer_t;
using probstore3::no_line;

const sanitizer_report_importer_t importer;

imported_t import_text(const std::string& text)
{
    imported_t out;
    out.report = importer.import_buffer(
        text.data(), text.size(), L"report.txt", {},
        [&](probstore3::problem_t&& p) { out.problems.push_back(std::move(p)); });
    return out;
}

// Reports as the samples' README counts them: an ERROR header (a LeakSanitizer
// report counts its entries instead), a ThreadSanitizer warning, a UBSan
// runtime error line.
size_t expected_problems(const std::string& text)
{
    const std::regex error_header(R"(==\d+==ERROR: (\w+):)");
    size_t n = 0;
    for (std::sregex_iterator it(text.begin(), text.end(), error_header), end; it != end; ++it)
        if ((*it)[1] != "LeakSanitizer")
            ++n;
    return n + count_of(text, "Direct leak of ") + count_of(text, "Indirect leak of ") +
           count_of(text, "WARNING: ThreadSanitizer: ") + count_of(text, ": runtime error: ");
}

TEST(SanitizerImport, EveryRecordedReportBecomesProblems)
{
    std::vector<fs::path> files;
    for (const char* prefix : {"asan_", "lsan_", "tsan_", "ubsan_", "gcc_"})
        for (const auto& f : samples_matching(prefix, ".txt"))
            files.push_back(f);
    ASSERT_GE(files.size(), 16u);
    for (const auto& file : files) {
        SCOPED_TRACE(file.filename().string());
        const std::string text = read_file(file);
        ASSERT_TRUE(importer.can_import(text.substr(0, 4096)));
        const auto got = import_with(importer, file);
        ASSERT_TRUE(got.report.ok) << platkit::strings::wide_to_utf8(got.report.error);
        EXPECT_FALSE(got.report.truncated);
        EXPECT_TRUE(got.report.warnings.empty());
        EXPECT_EQ(got.problems.size(), expected_problems(text));
        expect_complete(got.problems);
        for (const auto& p : got.problems) {
            if (p.best_frame() == nullptr)
                continue; // reported by expect_complete
            // The best frame is in the sample programs, never in a runtime.
            EXPECT_NE(p.best_frame()->source.find("/samples/src/"), std::string::npos)
                << p.best_frame()->function;
        }
    }
}

TEST(SanitizerImport, UseAfterFreeHasItsThreeStacks)
{
    const auto got = import_with(importer, sample("asan_use_after_free.txt"));
    ASSERT_EQ(got.problems.size(), 1u);
    const auto& p = got.problems[0];
    EXPECT_EQ(got.report.tool, "asan");
    EXPECT_EQ(p.tool, "asan");
    EXPECT_EQ(p.kind, "heap-use-after-free");
    EXPECT_EQ(p.type, "Heap use after free");
    EXPECT_EQ(p.description, "heap-use-after-free on address 0x602000000030");
    ASSERT_EQ(p.stacks.size(), 3u);
    EXPECT_EQ(p.stacks[1].title, "freed by thread T0 here");
    EXPECT_EQ(p.stacks[2].title, "previously allocated by thread T0 here");
    EXPECT_EQ(p.aux, (std::vector<std::string>{"READ of size 1 at 0x602000000030 thread T0",
                                               "0x602000000030 is located 0 bytes inside of 7-byte "
                                               "region [0x602000000030,0x602000000037)"}));

    ASSERT_EQ(p.stacks[0].frames.size(), 5u);
    const auto& top = p.stacks[0].frames[0];
    EXPECT_EQ(top.function, "print_record");
    EXPECT_EQ(top.source, "/work/wt-samples/samples/src/mem_use_after_free.c");
    EXPECT_EQ(top.line, 28u);
    EXPECT_EQ(top.address, 0x5645020f90f3u);
    EXPECT_EQ(top.module, "");
    const auto& start = p.stacks[0].frames[4];
    EXPECT_EQ(start.function, "_start");
    EXPECT_EQ(start.module, "asan_use_after_free");
    EXPECT_EQ(start.source, "");
    EXPECT_EQ(start.line, no_line);
    const auto& libc = p.stacks[0].frames[2];
    EXPECT_EQ(libc.source, "csu/../sysdeps/nptl/libc_start_call_main.h");
    EXPECT_EQ(libc.line, 58u);
    // The interceptor frame (in the executable: clang links the runtime in)
    // is not the best location of the free stack's problem either.
    EXPECT_EQ(p.stacks[1].frames[0].function, "free");
    EXPECT_EQ(p.stacks[1].frames[0].module, "asan_use_after_free");
    EXPECT_EQ(p.best_level, 0);
}

TEST(SanitizerImport, GccFramesWithoutColumnAndRuntimeSources)
{
    const auto got = import_with(importer, sample("gcc_asan_use_after_free.txt"));
    ASSERT_EQ(got.problems.size(), 1u);
    const auto& freed = got.problems[0].stacks.at(1).frames;
    EXPECT_EQ(freed.at(0).function, "__interceptor_free");
    EXPECT_EQ(freed.at(0).source, "../../../../src/libsanitizer/asan/asan_malloc_linux.cpp");
    EXPECT_EQ(freed.at(0).line, 52u);
    EXPECT_EQ(freed.at(1).line, 23u);
}

TEST(SanitizerImport, LeakReportGivesOneProblemPerEntry)
{
    const auto got = import_with(importer, sample("asan_leaks.txt"));
    ASSERT_EQ(got.problems.size(), 2u);
    EXPECT_EQ(got.report.tool, "lsan");
    const auto& deep = got.problems[1];
    EXPECT_EQ(deep.tool, "lsan");
    EXPECT_EQ(deep.kind, "direct-leak");
    EXPECT_EQ(deep.type, "Memory leak (definite)");
    EXPECT_EQ(deep.description, "Direct leak of 10 byte(s) in 1 object(s)");
    EXPECT_EQ(deep.leaked_bytes, 10u);
    EXPECT_EQ(deep.leaked_blocks, 1u);
    ASSERT_EQ(deep.stacks.size(), 1u);
    EXPECT_EQ(deep.stacks[0].frames.size(), 11u);
    EXPECT_EQ(deep.best_frame()->function, "alloc_token");
    EXPECT_EQ(deep.stacks[0].frames[9].function, "main");
    EXPECT_EQ(deep.stacks[0].frames[9].line, 50u);
    EXPECT_EQ(got.problems[0].leaked_bytes, 64u);
}

TEST(SanitizerImport, ThreadSanitizerSectionsAreTitledStacks)
{
    const auto got = import_with(importer, sample("tsan_race_counter.txt"));
    ASSERT_EQ(got.problems.size(), 1u);
    const auto& p = got.problems[0];
    EXPECT_EQ(p.kind, "data race");
    EXPECT_EQ(p.type, "Data race");
    EXPECT_EQ(p.description, "data race: Write of size 8 at 0x5555569ca258 by thread T2");
    ASSERT_EQ(p.stacks.size(), 4u);
    EXPECT_EQ(p.stacks[1].title, "Previous write of size 8 at 0x5555569ca258 by thread T1");
    EXPECT_EQ(p.stacks[2].title, "Thread T2 (tid=9625, running) created by main thread at");
    const auto& f = p.stacks[0].frames.at(0);
    EXPECT_EQ(f.function, "worker");
    EXPECT_EQ(f.source, "/work/wt-samples/samples/src/thr_race_counter.c");
    EXPECT_EQ(f.line, 14u);
    EXPECT_EQ(f.module, "tsan_race_counter");
    const auto& create = p.stacks[2].frames.at(0);
    EXPECT_EQ(create.function, "pthread_create");
    EXPECT_EQ(create.source, ""); // "<null>"
    EXPECT_EQ(create.line, no_line);
    EXPECT_NE(std::find(p.aux.begin(), p.aux.end(),
                        "Location is global 'counter' of size 8 at 0x5555569ca258 "
                        "(tsan_race_counter+0x1476258)"),
              p.aux.end());

    const auto order = import_with(importer, sample("tsan_lock_order.txt"));
    ASSERT_EQ(order.problems.size(), 1u);
    EXPECT_EQ(order.problems[0].type, "Lock order violation");
    EXPECT_EQ(order.problems[0].kind, "lock-order-inversion");
    EXPECT_EQ(order.problems[0].best_frame()->function, "transfer_ab"); // not pthread_mutex_lock
}

TEST(SanitizerImport, TemplateNamesWithSpacesParseWhole)
{
    const auto got = import_with(importer, sample("tsan_template_race.txt"));
    ASSERT_EQ(got.problems.size(), 2u);
    const auto& frames = got.problems[0].stacks[0].frames;
    ASSERT_EQ(frames.size(), 17u);
    EXPECT_EQ(frames[0].function, "corr::sample::Accumulator<double, 4>::add(double const&, int)");
    EXPECT_EQ(frames[0].line, 19u);
    EXPECT_EQ(frames[16].function, "");
    EXPECT_EQ(frames[16].module, "libstdc++.so.6");
    const auto& location = got.problems[0].stacks.at(2);
    EXPECT_EQ(location.title,
              "Location is heap block of size 40 at 0x7b0c00000000 allocated by main thread");
    EXPECT_EQ(location.frames.at(0).function, "operator new(unsigned long)");
}

TEST(SanitizerImport, UndefinedBehaviourOneLinersWithAndWithoutStacks)
{
    const auto got = import_with(importer, sample("ubsan_multi.txt"));
    ASSERT_EQ(got.problems.size(), 4u);
    EXPECT_EQ(got.problems[0].type, "Undefined behavior");
    EXPECT_EQ(got.problems[0].kind, "signed-integer-overflow");
    EXPECT_EQ(got.problems[0].description,
              "signed integer overflow: 1073741824 * 2 cannot be represented in type 'int'");
    EXPECT_EQ(got.problems[1].kind, "shift-exponent");
    EXPECT_EQ(got.problems[2].kind, "alignment");
    EXPECT_EQ(got.problems[3].kind, "bounds");
    EXPECT_EQ(got.problems[3].best_frame()->function, "lookup");
    EXPECT_EQ(got.problems[3].best_frame()->line, 29u);

    // print_stacktrace=0: the location is the only frame.
    const auto bare =
        import_text("/src/ub.c:12:18: runtime error: signed integer overflow: 1 + 2147483647\n"
                    "program output\n"
                    "/src/ub.c:17:15: runtime error: shift exponent 32 is too large\n");
    ASSERT_TRUE(bare.report.ok);
    ASSERT_EQ(bare.problems.size(), 2u);
    ASSERT_EQ(bare.problems[1].stacks.size(), 1u);
    EXPECT_EQ(bare.problems[1].stacks[0].frames.at(0).source, "/src/ub.c");
    EXPECT_EQ(bare.problems[1].stacks[0].frames.at(0).line, 17u);
    EXPECT_TRUE(bare.problems[0].aux.empty()); // program output is not part of a report

    const auto null = import_with(importer, sample("ubsan_null.txt"));
    ASSERT_EQ(null.problems.size(), 2u);
    EXPECT_EQ(null.problems[0].kind, "null");
    EXPECT_EQ(null.problems[1].kind, "SEGV");
    EXPECT_EQ(null.problems[1].type, "Invalid memory access");
}

TEST(SanitizerImport, PidPrefixOnEveryLineAndCarriageReturns)
{
    std::istringstream in(read_file(sample("asan_overflow_recover.txt")));
    std::string prefixed, line;
    while (std::getline(in, line))
        prefixed += "==4242== " + line + "\r\n";
    // "==4242== " then a line that already has its own prefix still reads.
    const auto got = import_text(prefixed);
    ASSERT_TRUE(got.report.ok) << platkit::strings::wide_to_utf8(got.report.error);
    ASSERT_EQ(got.problems.size(), 2u);
    EXPECT_EQ(got.problems[1].stacks[0].frames.at(0).function, "sum");
    EXPECT_EQ(got.problems[1].aux.at(0), "READ of size 4 at 0x604000000038 thread T0");
}

TEST(SanitizerImport, GarbledFrameIsAnErrorWithItsLine)
{
    const auto path = test_data("sanitizer/malformed_garbled_frame_line.txt");
    const auto got = import_with(importer, path);
    EXPECT_FALSE(got.report.ok);
    EXPECT_EQ(got.report.error.rfind(basekit2::path_t(path).str() +
                                         L":5: malformed stack frame: #1 0x5645@@020f8ed5",
                                     0),
              0u)
        << platkit::strings::wide_to_utf8(got.report.error);
}

TEST(SanitizerImport, ReportCutShortIsSkippedWithAWarning)
{
    const auto got = import_with(importer, test_data("sanitizer/malformed_truncated_report.txt"));
    ASSERT_TRUE(got.report.ok);
    EXPECT_TRUE(got.report.truncated);
    EXPECT_TRUE(got.problems.empty());
    ASSERT_EQ(got.report.warnings.size(), 1u);
    EXPECT_NE(got.report.warnings[0].find(L"report that starts at line 2"), std::wstring::npos);

    // Complete reports before the cut stay.
    const std::string two = read_file(sample("asan_overflow_recover.txt"));
    const auto cut = import_text(two.substr(0, two.rfind("#1 ") + 10));
    EXPECT_TRUE(cut.report.truncated);
    EXPECT_EQ(cut.problems.size(), 1u);
}

TEST(SanitizerImport, RecognisesReportsOnly)
{
    EXPECT_TRUE(
        importer.can_import("hello\n==1==ERROR: AddressSanitizer: heap-use-after-free on address"));
    EXPECT_TRUE(importer.can_import("WARNING: ThreadSanitizer: data race (pid=1)"));
    EXPECT_TRUE(importer.can_import("a.c:1:2: runtime error: division by zero"));
    EXPECT_FALSE(
        importer.can_import("==123== Memcheck, a memory error detector\n==123== ERROR SUMMARY: 0"));
    EXPECT_FALSE(importer.can_import("ERROR: something else: entirely"));
}

// A program's own output first, the sanitizer's report after it: the file is
// still recognised by its later windows, also when a window ends inside the
// report header; a format with a header at the start is not recognised by a
// look-alike further in.
TEST(SanitizerImport, ReportAfterTheProgramsOwnOutputIsRecognised)
{
    const corr_engine::result_converter_t converter;
    const std::string report = read_file(sample("asan_use_after_free.txt"));
    // Where the report's header text starts, counted from the report's start.
    const size_t header_at = report.find("ERROR: AddressSanitizer:");
    ASSERT_NE(std::string::npos, header_at);
    auto output_of = [](size_t bytes) {
        std::string out;
        for (int i = 0; out.size() < bytes; ++i)
            out += "step " + std::to_string(i) + " done\n";
        return out.substr(0, bytes);
    };
    const size_t window = corr_engine::result_converter_t::head_size;
    temp_dir_t tmp;
    struct case_t
    {
        const char* name;
        std::string text;
        bool recognised;
    };
    const std::vector<case_t> cases{
        {"late.log", output_of(3 * window) + "\n" + report, true},
        // The header cut by the end of the first window.
        {"cut.log", output_of(window - 1 - header_at - 10) + "\n" + report, true},
        {"clean.log", output_of(3 * window), false},
        {"late.xml", output_of(2 * window) + read_file(sample("memcheck_overflow.xml")), false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const fs::path file = tmp / c.name;
        write_bytes(file, c.text);
        const auto found = converter.find_importer(basekit2::path_t(file));
        ASSERT_EQ(c.recognised, found != nullptr);
        if (!found)
            continue;
        size_t problems = 0;
        const auto result = found->import(basekit2::path_t(file), [&](probstore3::problem_t&&) { ++problems; });
        EXPECT_TRUE(result.ok) << platkit::strings::wide_to_utf8(result.error);
        EXPECT_EQ(expected_problems(report), problems);
    }
}

} // namespace
