// Exporting the result open in an engine: a real sanitizer report imported
// into a real result directory, its referenced sources packed on request.
#include "archive_support.h"
#include "corr_engine/engine.h"

#include <chrono>

namespace fs = std::filesystem;
using corr_engine::archiver_t;
using corr_engine::engine_t;
using corr_engine::zipfile_impl_t;

namespace {

using namespace archiver_test;

// The folder everything lives in: plain, with letters, spaces and quotes,
// and with a byte that is not UTF-8.
class ArchiverEngine : public testing::TestWithParam<std::string>
{
protected:
    void SetUp() override
    {
        const std::string stamp =
            std::to_string(std::chrono::steady_clock::now().time_since_epoch().count());
        m_root = fs::temp_directory_path() / ("corr-archiver-engine-" + stamp + GetParam());
        // Analyser output is made valid UTF-8 on import, so sources are found
        // only in folders whose names are UTF-8; the result, its data and the
        // archive still live in the folder under test.
        const bool utf8_name = GetParam().find('\xFF') == std::string::npos;
        m_src = utf8_name ? m_root / "src" : fs::temp_directory_path() / ("corr-archiver-src-" + stamp) / "src";
        fs::create_directories(m_root);
        fs::create_directories(m_src);
        const fs::path samples(CORR_SAMPLES_DIR);
        fs::copy_file(samples / "src" / "mem_overflow.c", m_src / "mem_overflow.c");
        // The recorded report names the folder it was recorded in; point it
        // at this copy of the sources.
        std::string report = read_file(samples / "recorded" / "asan_overflow.txt");
        const std::string recorded_dir = "/work/wt-samples/samples/src";
        ASSERT_NE(std::string::npos, report.find(recorded_dir));
        for (size_t at; (at = report.find(recorded_dir)) != std::string::npos;)
            report.replace(at, recorded_dir.size(), (m_src).string());
        std::ofstream(m_root / "asan_overflow.txt") << report;
    }
    void TearDown() override
    {
        fs::remove_all(m_root);
        fs::remove_all(m_src.parent_path());
    }

    basekit2::intrusive_pointer_t<engine_t>
    make_result(const std::vector<basekit2::path_t>& source_dirs)
    {
        auto engine = engine_t::create();
        corr_engine::import_files_report_t report;
        EXPECT_TRUE(engine->create_result(m_root / "results" / "run1", L"run1",
                                          {m_root / "asan_overflow.txt"}, source_dirs, report));
        return engine;
    }

    fs::path m_root, m_src;
};

} // namespace

TEST_P(ArchiverEngine, PacksTheResultWithTheSourcesItsProblemsName)
{
    // With a source folder only the file in it counts, not the C library's;
    // without one, the named files that exist are taken.
    basekit2::intrusive_pointer_t<engine_t> engine;
    for (const bool with_dirs : {false, true}) {
        SCOPED_TRACE(with_dirs ? "with source folder" : "without source folder");
        fs::remove_all(m_root / "results");
        engine = make_result(with_dirs ? std::vector<basekit2::path_t>{m_src}
                                            : std::vector<basekit2::path_t>{});
        const auto sources = archiver_t::get_source_files(*engine);
        ASSERT_EQ(1u, sources.size());
        EXPECT_EQ(m_src / "mem_overflow.c", sources[0].fs());
    }

    // The last one, with the source folder, is packed.
    zipfile_impl_t zip;
    ASSERT_TRUE(zip.open_for_writing(m_root / "run1.corrz"));
    collected_messages messages;
    ASSERT_EQ(archiver_t::success,
              archiver_t::pack(engine, zip, archiver_t::include_sources, &messages, nullptr));
    EXPECT_TRUE(messages.list.empty());
    const auto names = read_archive(m_root / "run1.corrz");
    EXPECT_TRUE(names.count("run1/run1.corr"));
    EXPECT_TRUE(names.count("run1/data/asan_overflow.txt"));
    EXPECT_TRUE(names.count("run1/sources/" +
                            (m_src / "mem_overflow.c").relative_path().generic_string()));

    // Filtering the sources by a mask sees the same names.
    const auto sources = archiver_t::get_source_files(*engine);
    ASSERT_EQ(1u, sources.size());
    EXPECT_TRUE(sources[0].match(L"src/*.c"));
    EXPECT_TRUE(sources[0].match(basekit2::from_fs(m_src) + L"/*"));
    EXPECT_FALSE(sources[0].match(L"src/*.h"));
}

TEST_P(ArchiverEngine, RelativeSourcesNeverLeadOutOfTheSourceFolder)
{
    // Frames naming "../outside.c" and a link in the folder that leads out.
    write_file(m_src.parent_path() / "outside.c", "int outside;");
    fs::create_symlink(m_src.parent_path() / "outside.c", m_src / "link.c");
    std::string report = read_file(m_root / "asan_overflow.txt");
    const std::string after = "#1 ";
    const auto at = report.find("    " + after);
    ASSERT_NE(at, std::string::npos);
    report.insert(at, "    #1 0x1 in up ../outside.c:1:1\n    #1 0x2 in deep ../../../../../../../../etc/passwd:1:1\n"
                      "    #1 0x3 in linked link.c:1:1\n");
    write_file(m_root / "asan_overflow.txt", report);

    const auto engine = make_result({m_src});
    const auto sources = archiver_t::get_source_files(*engine);
    ASSERT_EQ(1u, sources.size());
    EXPECT_EQ(m_src / "mem_overflow.c", sources[0].fs());
}

TEST_P(ArchiverEngine, NoEngineOrNoResultIsNoResult)
{
    zipfile_impl_t zip;
    ASSERT_TRUE(zip.open_for_writing(m_root / "x.corrz"));
    collected_messages messages;
    EXPECT_EQ(archiver_t::no_result, archiver_t::pack(nullptr, zip, 0, &messages, nullptr));
    EXPECT_FALSE(zip.is_open());
    ASSERT_TRUE(zip.open_for_writing(m_root / "x.corrz"));
    EXPECT_EQ(archiver_t::no_result,
              archiver_t::pack(engine_t::create(), zip, 0, &messages, nullptr));
    EXPECT_EQ(2u, messages.list.size());
    EXPECT_FALSE(fs::exists(m_root / "x.corrz"));
}

std::string folder_kind(const testing::TestParamInfo<std::string>& param)
{
    static const char* const kinds[] = {"Plain", "Letters", "NotUtf8"};
    return kinds[param.index];
}

INSTANTIATE_TEST_SUITE_P(Folders, ArchiverEngine,
                         testing::Values(std::string(), std::string(" caf\xC3\xA9 'it''s' \"q\""),
                                         std::string(" \xFF\xFE")),
                         folder_kind);
