// What the archiver takes of a result open in the engine: its folder and the
// source files its problems name. The results are recorded sanitizer reports
// whose source paths are moved into a scratch folder.
#include "corr_engine/archiver.h"
#include "corr_engine/engine.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;
using corr_engine::archiver_t;

namespace {

std::string read_file(const fs::path& p)
{
    std::ifstream in(p, std::ios::binary);
    EXPECT_TRUE(in.good()) << "missing fixture " << p;
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

void write_file(const fs::path& p, const std::string& data)
{
    fs::create_directories(p.parent_path());
    std::ofstream(p, std::ios::binary) << data;
}

class EnginePackSource : public testing::Test
{
protected:
    void SetUp() override
    {
        m_root = fs::temp_directory_path() /
                 ("corr-engine-pack-" +
                  std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()));
        m_src = m_root / "src";
        // The reports name <src>/mem_overflow.c, <src>/mem_use_after_free.c
        // and, relative, glibc's "csu/../sysdeps/nptl/libc_start_call_main.h".
        for (const char* name : {"asan_overflow.txt", "asan_use_after_free.txt"}) {
            const std::string text =
                std::regex_replace(read_file(fs::path(CORR_SAMPLES_DIR) / "recorded" / name),
                                   std::regex(R"(/[^\s<>:]*/samples/src)"), m_src.string());
            m_reports.push_back(m_root / "in" / name);
            write_file(m_reports.back(), text);
        }
        write_file(m_src / "mem_overflow.c", "int main(void) { return 0; }\n");
    }
    void TearDown() override { fs::remove_all(m_root); }

    basekit2::intrusive_pointer_t<corr_engine::engine_t>
    result(const std::vector<fs::path>& source_dirs)
    {
        auto engine = corr_engine::engine_t::create();
        corr_engine::import_files_report_t report;
        EXPECT_TRUE(engine->create_result(m_root / "run", L"run",
                                          {m_reports.begin(), m_reports.end()},
                                          {source_dirs.begin(), source_dirs.end()}, report))
            << report.error.c_str();
        return engine;
    }

    fs::path m_root, m_src;
    std::vector<fs::path> m_reports;
};

std::vector<fs::path> paths(const std::vector<basekit2::path_t>& in)
{
    std::vector<fs::path> out;
    for (const auto& p : in)
        out.push_back(p.fs());
    return out;
}

} // namespace

TEST_F(EnginePackSource, WithSourceFoldersTakesEveryNamedFileUnderThemFoundOrNot)
{
    // A relative name is looked up in the source folders.
    fs::create_directories(m_src / "csu");
    write_file(m_src / "sysdeps" / "nptl" / "libc_start_call_main.h", "/* glibc */\n");
    auto engine = result({m_src});

    const auto source = archiver_t::get_pack_source(*engine, archiver_t::include_sources);
    EXPECT_EQ(basekit2::path_t(m_root / "run"), source.result_dir);
    EXPECT_EQ((std::vector<fs::path>{m_src / "mem_overflow.c", m_src / "mem_use_after_free.c",
                                     m_src / "sysdeps" / "nptl" / "libc_start_call_main.h"}),
              paths(source.source_files));

    EXPECT_TRUE(archiver_t::get_pack_source(*engine, 0).source_files.empty())
        << "sources only on request";
}

TEST_F(EnginePackSource, WithoutSourceFoldersTakesOnlyNamedFilesThatExist)
{
    auto engine = result({});
    EXPECT_EQ(
        std::vector<fs::path>{m_src / "mem_overflow.c"},
        paths(archiver_t::get_pack_source(*engine, archiver_t::include_sources).source_files));
}

TEST_F(EnginePackSource, AnEngineWithoutAResultPacksNothing)
{
    auto engine = corr_engine::engine_t::create();
    corr_engine::zipfile_impl_t zip;
    ASSERT_TRUE(zip.open_for_writing(m_root / "none.corrz"));
    EXPECT_EQ(archiver_t::no_result,
              archiver_t::pack(*engine, zip, archiver_t::include_sources, nullptr, nullptr));
    EXPECT_FALSE(fs::exists(m_root / "none.corrz"));
}
