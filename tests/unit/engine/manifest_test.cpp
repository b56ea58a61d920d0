// The marker file's text form, best-location rules and problem type names.
#include "corr_engine/best_location.h"
#include "corr_engine/problem_types.h"
#include "corr_engine/result_manifest.h"
#include "test_support.h"

namespace {

using namespace engine_test;
using corr_engine::best_location_t;
using corr_engine::result_manifest_t;
using probstore3::frame_t;

TEST(ResultManifest, RoundTripsEveryFieldIncludingAwkwardText)
{
    result_manifest_t m;
    m.name = L"nightly \u00fcber\\run";
    m.analysis_type = L"mixed";
    m.tool = L"memcheck, asan";
    m.command = L"/bin/prog --opt 'a b'\n\tsecond line";
    m.created = L"2025-01-02T03:04:05Z";
    m.source_dirs = {basekit2::path_t(L"/src/a"), basekit2::path_t(L"/src/b c")};
    m.data_files = {{L"one.xml", L"memcheck", 3}, {L"two.txt", L"asan, lsan", 0}};
    const std::string text = m.to_text();
    EXPECT_EQ(text.rfind("corr-result 1\n", 0), 0u);
    EXPECT_EQ(count_of(text, "\n"),
              10u); // one line per field: the newline in the command is escaped

    result_manifest_t back;
    std::wstring error;
    ASSERT_TRUE(back.from_text(text, L"x.corr", error)) << platkit::strings::wide_to_utf8(error);
    EXPECT_EQ(back.name, m.name);
    EXPECT_EQ(back.command, m.command);
    EXPECT_EQ(back.created, m.created);
    EXPECT_EQ(back.source_dirs, m.source_dirs);
    EXPECT_EQ(back.data_files, m.data_files);
    EXPECT_EQ(back.to_text(), text);
}

TEST(ResultManifest, BadMarkerFilesNameTheLineAndReason)
{
    const struct
    {
        const char* text;
        const wchar_t* message;
    } cases[] = {
        {"", L"m.corr:1: not a result marker file"},
        {"<?xml version=\"1.0\"?>\n", L"m.corr:1: not a result marker file"},
        {"corr-result 7\nname = x\n", L"m.corr:1: result format version 7 is not supported"},
        {"corr-result 1\nname x\n", L"m.corr:2: expected \"key = value\""},
        {"# made by hand\ncorr-result 1\ndata = a.xml\n",
         L"m.corr:3: expected \"data = <file> | <tool> | <problems>\""},
        {"corr-result 1\ndata = ../a.xml | memcheck | 1\n",
         L"m.corr:2: a data file must be a plain file name"},
    };
    for (const auto& c : cases) {
        result_manifest_t m;
        m.name = L"kept";
        std::wstring error;
        EXPECT_FALSE(m.from_text(c.text, L"m.corr", error)) << c.text;
        EXPECT_EQ(error.rfind(c.message, 0), 0u) << platkit::strings::wide_to_utf8(error);
        EXPECT_EQ(m.name, L"kept");
    }
    // Keys of a newer writer are ignored, not fatal.
    result_manifest_t m;
    std::wstring error;
    EXPECT_TRUE(m.from_text("corr-result 1\nname = n\nfuture_key = 1\n", L"m.corr", error));
    EXPECT_EQ(m.name, L"n");
}

TEST(ResultManifest, ToolsAndAnalysisTypeFollowTheDataFiles)
{
    result_manifest_t m;
    m.data_files = {
        {L"a.xml", L"memcheck", 1}, {L"b.txt", L"asan, lsan", 1}, {L"c.txt", L"lsan", 0}};
    m.update_tools();
    EXPECT_EQ(m.tool, L"memcheck, asan, lsan");
    EXPECT_EQ(m.analysis_type, L"memory");
    m.data_files.push_back({L"d.xml", L"helgrind", 2});
    m.update_tools();
    EXPECT_EQ(m.analysis_type, L"mixed");
    EXPECT_EQ(corr_engine::analysis_type_of({L"tsan", L"drd"}), L"threading");
    EXPECT_EQ(corr_engine::analysis_type_of({}), L"");
}

frame_t frame(const char* module, const char* function, const char* source)
{
    frame_t f;
    f.module = module;
    f.function = function;
    f.source = source;
    return f;
}

TEST(BestLocation, SkipsRuntimesAndPrefersTheProgram)
{
    EXPECT_TRUE(best_location_t::is_runtime_frame(
        frame("vgpreload_memcheck-amd64-linux.so", "malloc", "")));
    EXPECT_TRUE(best_location_t::is_runtime_frame(
        frame("libc.so.6", "start_thread", "./nptl/pthread_create.c")));
    EXPECT_TRUE(best_location_t::is_runtime_frame(frame("prog", "__interceptor_malloc", "")));
    EXPECT_TRUE(
        best_location_t::is_runtime_frame(frame("prog", "free", ""))); // static sanitizer runtime
    EXPECT_FALSE(best_location_t::is_runtime_frame(
        frame("prog", "free", "/src/my_free.c"))); // the program's own
    EXPECT_TRUE(
        best_location_t::is_runtime_frame(frame("", "__libc_start_call_main", "csu/../x.h")));
    EXPECT_TRUE(best_location_t::is_runtime_frame(frame("libstdc++.so.6", "", "")));
    EXPECT_TRUE(best_location_t::is_runtime_frame(frame("", "", "")));

    const best_location_t plain;
    const std::vector<frame_t> stack{
        frame("vgpreload_memcheck-amd64-linux.so", "malloc", ""),
        frame("libbuggy.so", "buggy_label", "/home/me/src/lib.c"),
        frame("prog", "std::vector<int>::at", "/usr/include/c++/12/bits/stl_vector.h"),
        frame("prog", "main", "/home/me/src/main.c")};
    EXPECT_EQ(plain.best_level(stack, "prog"), 3);
    EXPECT_EQ(plain.best_level(stack, ""), 1); // no program known: the first frame past the runtime
    const best_location_t with_sources({"/home/me/src/../src"});
    EXPECT_EQ(with_sources.best_level(stack, "prog"), 1);
    EXPECT_EQ(plain.best_level({frame("libc.so.6", "abort", "")}, "prog"), 0);
    EXPECT_EQ(plain.best_level({}, "prog"), 0);
}

TEST(ProblemTypes, ReadableNamesForKnownAndUnknownKinds)
{
    EXPECT_EQ(corr_engine::readable_problem_type("memcheck", "UninitCondition"),
              "Uninitialized value");
    EXPECT_EQ(corr_engine::readable_problem_type("helgrind", "Race"), "Data race");
    EXPECT_EQ(corr_engine::readable_problem_type("asan", "heap-buffer-overflow"),
              "Heap buffer overflow");
    EXPECT_EQ(corr_engine::readable_problem_type("ubsan", "shift-exponent"), "Undefined behavior");
    EXPECT_EQ(corr_engine::readable_problem_type("memcheck", "SomeNewKind"), "Some new kind");
    EXPECT_EQ(corr_engine::readable_problem_type("asan", "new-kind_here"), "New kind here");
}

} // namespace
