// Result directories: create, open, extend, reload; failures change nothing.
#include "corr_engine/engine.h"
#include "test_support.h"

namespace {

using namespace engine_test;
using basekit2::path_t;
using corr_engine::engine_t;
using corr_engine::import_files_report_t;

std::string utf8(const std::wstring& s)
{
    return platkit::strings::wide_to_utf8(s);
}

std::vector<path_t> paths(std::initializer_list<fs::path> files)
{
    return std::vector<path_t>(files.begin(), files.end());
}

TEST(Engine, CreateImportAndReopenRoundTrip)
{
    temp_dir_t tmp;
    const fs::path dir = tmp / "run1";
    auto engine = engine_t::create();
    EXPECT_FALSE(engine->has_result());
    ASSERT_TRUE(engine->create_result(path_t(dir), L"Nightly run")) << utf8(engine->last_error());
    EXPECT_EQ(engine->get_result_name(), L"Nightly run");
    EXPECT_EQ(engine->get_marker_file(), path_t(dir / "Nightly run.corr"));
    EXPECT_TRUE(fs::is_directory(dir / "data"));
    EXPECT_TRUE(fs::is_directory(dir / "suppressions"));
    EXPECT_TRUE(engine->get_problems()->empty());

    import_files_report_t report;
    ASSERT_TRUE(engine->import_files(
        paths({sample("memcheck_overflow.xml"), sample("asan_use_after_free.txt")}), report))
        << utf8(report.error);
    ASSERT_EQ(report.files.size(), 2u);
    EXPECT_EQ(report.files[0].stored_as, L"memcheck_overflow.xml");
    EXPECT_EQ(report.files[0].report.problems, 2u);
    EXPECT_EQ(report.files[1].report.tool, "asan");
    // Kept byte for byte.
    EXPECT_EQ(read_file(dir / "data" / "asan_use_after_free.txt"),
              read_file(sample("asan_use_after_free.txt")));

    const auto first = engine->get_problems();
    ASSERT_EQ(first->size(), 3u);
    EXPECT_EQ((*first)[0].id, 1u);
    EXPECT_EQ((*first)[2].id, 3u);
    EXPECT_EQ((*first)[2].tool, "asan");

    const auto manifest = engine->get_manifest();
    EXPECT_EQ(manifest.tool, L"memcheck, asan");
    EXPECT_EQ(manifest.analysis_type, L"memory");
    EXPECT_NE(manifest.command.find(L"mem_overflow"), std::wstring::npos);
    EXPECT_FALSE(manifest.created.empty());

    // Reopen through the folder and through the marker file: same problems.
    for (const fs::path& where : {dir, dir / "Nightly run.corr"}) {
        auto again = engine_t::create();
        ASSERT_TRUE(again->open_result(path_t(where))) << utf8(again->last_error());
        EXPECT_EQ(again->get_result_name(), L"Nightly run");
        EXPECT_EQ(again->get_result_dir(), path_t(dir));
        EXPECT_EQ(again->get_data_files().size(), 2u);
        const auto reloaded = again->get_problems();
        ASSERT_EQ(reloaded->size(), first->size());
        for (size_t i = 0; i < first->size(); ++i) {
            EXPECT_EQ((*reloaded)[i].id, (*first)[i].id);
            EXPECT_EQ((*reloaded)[i].stacks, (*first)[i].stacks);
            EXPECT_EQ((*reloaded)[i].description, (*first)[i].description);
        }
    }
}

TEST(Engine, ExtendingKeepsIdsAndRenamesClashingFiles)
{
    temp_dir_t tmp;
    auto engine = engine_t::create();
    import_files_report_t report;
    ASSERT_TRUE(engine->create_result(path_t(tmp / "r"), L"", paths({sample("memcheck_leaks.xml")}),
                                      {}, report))
        << utf8(report.error);
    EXPECT_EQ(engine->get_result_name(), L"r");
    const auto before = *engine->get_problems();
    ASSERT_EQ(before.size(), 3u);

    // A second file of the same name, and one with a cut-short output.
    const fs::path other = tmp / "memcheck_leaks.xml";
    fs::copy_file(sample("memcheck_use_after_free.xml"), other);
    ASSERT_TRUE(
        engine->import_files(paths({other, sample("memcheck_leaks_truncated.xml")}), report));
    EXPECT_EQ(report.files[0].stored_as, L"memcheck_leaks-2.xml");
    EXPECT_TRUE(report.files[1].report.truncated);
    EXPECT_EQ(report.files[1].report.warnings.size(), 1u);

    const auto after = engine->get_problems();
    ASSERT_EQ(after->size(), 5u);
    for (size_t i = 0; i < before.size(); ++i)
        EXPECT_EQ((*after)[i].id, before[i].id);
    EXPECT_EQ((*after)[3].id, 4u);
    EXPECT_EQ((*after)[3].kind, "InvalidRead");
    EXPECT_EQ((*after)[4].id, 5u);
    // The truncation is reported again when the problems are read back.
    const auto load = engine->get_load_report();
    EXPECT_TRUE(load.ok);
    EXPECT_EQ(load.files.at(2).report.warnings.size(), 1u);
}

TEST(Engine, FailedImportLeavesTheResultUnchanged)
{
    temp_dir_t tmp;
    auto engine = engine_t::create();
    import_files_report_t report;
    const fs::path dir = tmp / "r";
    ASSERT_TRUE(engine->create_result(path_t(dir), L"r", paths({sample("memcheck_overflow.xml")}),
                                      {}, report));
    const auto before = snapshot(dir);

    const fs::path bad[] = {test_data("valgrind/malformed_not_well_formed.xml"),
                            tmp / "missing.xml",
                            test_data("sanitizer/malformed_garbled_frame_line.txt"),
                            sample("memcheck_leaks.txt"), fs::path(CORR_SAMPLES_DIR) / "README.md"};
    for (const auto& file : bad) {
        SCOPED_TRACE(file.string());
        // A good file first: it must not stay behind either.
        EXPECT_FALSE(
            engine->import_files(paths({sample("helgrind_race_counter.xml"), file}), report));
        EXPECT_FALSE(report.ok);
        EXPECT_NE(report.error.find(path_t(file).str()), std::wstring::npos) << utf8(report.error);
        EXPECT_EQ(snapshot(dir), before);
        EXPECT_EQ(engine->get_problems()->size(), 2u);
    }
}

TEST(Engine, FailedCreateLeavesNoFolder)
{
    temp_dir_t tmp;
    auto engine = engine_t::create();
    import_files_report_t report;
    EXPECT_FALSE(
        engine->create_result(path_t(tmp / "new"), L"",
                              paths({sample("memcheck_overflow.xml"),
                                     test_data("valgrind/malformed_wrong_root_element.xml")}),
                              {}, report));
    EXPECT_NE(report.error.find(L"not <valgrindoutput>"), std::wstring::npos);
    EXPECT_TRUE(fs::is_empty(tmp.path())) << "left: " << fs::directory_iterator(tmp.path())->path();
    EXPECT_FALSE(engine->has_result());

    // An existing, non-empty folder is not taken over.
    write_bytes(tmp / "notes.txt", "mine");
    EXPECT_FALSE(engine->create_result(path_t(tmp.path()), L"x"));
    EXPECT_NE(engine->last_error().find(L"already exists"), std::wstring::npos);
}

TEST(Engine, OpeningSomethingElseSaysWhat)
{
    temp_dir_t tmp;
    auto engine = engine_t::create();
    EXPECT_FALSE(engine->open_result(path_t(tmp / "nothing")));
    EXPECT_NE(engine->last_error().find(L"no such result"), std::wstring::npos);
    EXPECT_FALSE(engine->open_result(path_t(tmp.path())));
    EXPECT_NE(engine->last_error().find(L"holds no *.corr marker file"), std::wstring::npos);
    write_bytes(tmp / "a.corr", "corr-result 1\nname = a\n");
    write_bytes(tmp / "b.corr", "corr-result 1\nname = b\n");
    EXPECT_FALSE(engine->open_result(path_t(tmp.path())));
    EXPECT_NE(engine->last_error().find(L"several marker files (a.corr, b.corr)"),
              std::wstring::npos);
    ASSERT_TRUE(engine->open_result(path_t(tmp / "a.corr")));
    write_bytes(tmp / "c.corr", "corr-result 9\n");
    EXPECT_FALSE(engine->open_result(path_t(tmp / "c.corr")));
    EXPECT_NE(engine->last_error().find(L"c.corr:1: result format version 9"), std::wstring::npos);
    EXPECT_EQ(engine->get_result_name(), L"a"); // still the one that opened
    write_bytes(tmp / "x.txt", "corr-result 1\n");
    EXPECT_FALSE(engine->open_result(path_t(tmp / "x.txt")));
    EXPECT_NE(engine->last_error().find(L"not a result marker file"), std::wstring::npos);
}

TEST(Engine, SourceDirectoriesAreKeptAndUsed)
{
    temp_dir_t tmp;
    auto engine = engine_t::create();
    import_files_report_t report;
    ASSERT_TRUE(engine->create_result(path_t(tmp / "r"), L"r",
                                      paths({sample("memcheck_libbuggy.xml")}), {}, report));
    EXPECT_EQ(engine->get_problems()->at(0).best_frame()->function, "summarise");
    // The recorded paths name the samples' own checkout.
    fs::create_directories(tmp / "src");
    ASSERT_TRUE(engine->set_source_dirs({path_t(L"/work/wt-samples/samples/src")}));
    EXPECT_EQ(engine->get_problems()->at(0).best_frame()->function, "buggy_average");
    auto again = engine_t::create();
    ASSERT_TRUE(again->open_result(path_t(tmp / "r")));
    EXPECT_EQ(again->get_source_dirs(),
              std::vector<path_t>{path_t(L"/work/wt-samples/samples/src")});
}

TEST(Engine, TheBundledSampleResultOpensAndMatchesTheRecordings)
{
    auto engine = engine_t::create();
    ASSERT_TRUE(engine->open_result(path_t(fs::path(CORR_SAMPLES_DIR) / "result")))
        << utf8(engine->last_error());
    EXPECT_EQ(engine->get_result_name(), L"sample");
    EXPECT_TRUE(fs::exists(fs::path(CORR_SAMPLES_DIR) / "result" / "suppressions" / ".gitkeep"));
    const auto manifest = engine->get_manifest();
    ASSERT_GE(manifest.data_files.size(), 8u);
    std::uint64_t expected = 0;
    for (const auto& data : manifest.data_files) {
        expected += data.problems;
        // Kept unchanged: each is a byte-for-byte copy of its recording.
        EXPECT_EQ(read_file(fs::path(CORR_SAMPLES_DIR) / "result" / "data" / data.name),
                  read_file(sample(utf8(data.name))))
            << utf8(data.name);
    }
    const auto problems = engine->get_problems();
    EXPECT_EQ(problems->size(), expected);
    EXPECT_TRUE(engine->get_load_report().ok);
    for (size_t i = 0; i < problems->size(); ++i)
        EXPECT_EQ((*problems)[i].id, i + 1);
}

TEST(Engine, SourceFilesForExportAndTheSuppressionsFolder)
{
    temp_dir_t tmp;
    fs::create_directories(tmp / "src" / "lib");
    write_bytes(tmp / "src" / "a.c", "int main() {}\n");
    write_bytes(tmp / "src" / "lib" / "b.c", "int f() {}\n");
    const fs::path report = tmp / "ub.txt";
    const std::string src = (tmp / "src").string();
    write_bytes(
        report,
        src + "/a.c:3:5: runtime error: division by zero\n" + src +
            "/lib/b.c:7:1: runtime error: shift exponent 40 is too large\n" + src +
            "/gone.c:1:1: runtime error: division by zero\n/elsewhere/x.c:2:2: runtime error: x\n");
    auto engine = engine_t::create();
    import_files_report_t result;
    ASSERT_TRUE(engine->create_result(path_t(tmp / "r"), L"r", paths({report}), {}, result))
        << utf8(result.error);
    EXPECT_EQ(
        engine->get_source_files(),
        (std::vector<path_t>{path_t(tmp / "src" / "a.c"), path_t(tmp / "src" / "lib" / "b.c")}));
    ASSERT_TRUE(engine->set_source_dirs({path_t(tmp / "src" / "lib")}));
    const auto pack = engine->get_pack_source();
    EXPECT_EQ(pack.result_dir, path_t(tmp / "r"));
    EXPECT_EQ(pack.source_files, std::vector<path_t>{path_t(tmp / "src" / "lib" / "b.c")});
    EXPECT_EQ(engine->get_suppressions_manager().get_result_suppressions_folder(
                  engine->get_marker_file()),
              engine->get_suppressions_dir());
}

TEST(Engine, DataFileThatNoLongerReadsIsReportedOnLoad)
{
    temp_dir_t tmp;
    auto engine = engine_t::create();
    import_files_report_t report;
    ASSERT_TRUE(
        engine->create_result(path_t(tmp / "r"), L"r",
                              paths({sample("memcheck_overflow.xml"), sample("memcheck_uninit.xml"),
                                     sample("memcheck_double_free.xml")}),
                              {}, report));
    const fs::path data = tmp / "r" / "data";
    write_bytes(data / "memcheck_overflow.xml",
               "<valgrindoutput><protocolversion>4</protocolversion><error>");
    write_bytes(data / "memcheck_double_free.xml", "<valgrindoutput><protocolversion>4</protocol>");
    auto again = engine_t::create();
    ASSERT_TRUE(again->open_result(path_t(tmp / "r")));
    const auto problems = again->get_problems();
    // The readable file's problems keep their ids.
    ASSERT_EQ(problems->size(), 2u);
    EXPECT_EQ(problems->at(0).id, 3u);
    const auto load = again->get_load_report();
    EXPECT_TRUE(load.files.at(0).report.ok); // cut short: a warning
    EXPECT_TRUE(load.files.at(0).report.truncated);
    EXPECT_FALSE(load.ok);
    EXPECT_NE(load.error.find(L"memcheck_double_free.xml:1:"), std::wstring::npos)
        << utf8(load.error);
}

// A progress that records what the import reports and cancels once a given
// number of files has been announced.
class recording_progress_t : public notify2::IProgress
{
public:
    explicit recording_progress_t(int cancel_at_file = -1) : m_cancel_at(cancel_at_file) {}
    void begin(const std::wstring&, double total) override { m_total = total; }
    void progressed(double amount) override { m_position += amount; }
    void set_status(const std::wstring& text) override { statuses.push_back(text); }
    void raise_first() override {}
    void raise_second() override {}
    double get_total() const override { return m_total; }
    bool is_cancelled() const override
    {
        return m_cancel_at >= 0 && static_cast<int>(statuses.size()) >= m_cancel_at;
    }
    double position() const { return m_position; }

    std::vector<std::wstring> statuses;

private:
    int m_cancel_at;
    double m_total = 0, m_position = 0;
};

TEST(Engine, ImportReportsProgressByBytesAndStopsWhenCancelled)
{
    temp_dir_t tmp;
    const auto files = paths({sample("memcheck_overflow.xml"), sample("asan_use_after_free.txt")});
    const double bytes = static_cast<double>(fs::file_size(sample("memcheck_overflow.xml")) +
                                             fs::file_size(sample("asan_use_after_free.txt")));

    auto engine = engine_t::create();
    recording_progress_t progress;
    import_files_report_t report;
    ASSERT_TRUE(engine->create_result(path_t(tmp / "done"), L"", files, {}, report, &progress))
        << utf8(report.error);
    EXPECT_EQ(progress.get_total(), bytes);
    EXPECT_EQ(progress.position(), bytes);
    ASSERT_EQ(progress.statuses.size(), 2u);
    EXPECT_NE(progress.statuses[1].find(L"asan_use_after_free.txt"), std::wstring::npos);

    // Cancelled while the second file is at work: no result, no trace.
    recording_progress_t cancelling(2);
    auto other = engine_t::create();
    EXPECT_FALSE(other->create_result(path_t(tmp / "cancelled"), L"", files, {}, report, &cancelling));
    EXPECT_TRUE(report.cancelled);
    EXPECT_FALSE(report.ok);
    EXPECT_FALSE(other->has_result());
    EXPECT_FALSE(fs::exists(tmp / "cancelled"));
    EXPECT_EQ(std::distance(fs::directory_iterator(tmp.path()), fs::directory_iterator()), 1);

    // Extending an open result: a cancelled import leaves it as it was.
    recording_progress_t at_once(0);
    EXPECT_FALSE(engine->import_files(paths({sample("ubsan_multi.txt")}), report, &at_once));
    EXPECT_TRUE(report.cancelled);
    EXPECT_EQ(engine->get_data_files().size(), 2u);
    EXPECT_EQ(engine->get_problems()->size(), 3u);
}

} // namespace
