// Packing real result folders into real zip archives, read back with libzip.
#include "archive_support.h"
#include "corr_engine/progress_guard.h"

#include <chrono>
#include <random>

namespace fs = std::filesystem;
using corr_engine::archiver_t;
using corr_engine::pack_options_t;
using corr_engine::pack_source_t;
using corr_engine::zipfile_impl_t;

namespace {

using namespace archiver_test;

class ArchiverTest : public testing::TestWithParam<unsigned>
{
protected:
    void SetUp() override
    {
        static int counter = 0;
        m_root = fs::temp_directory_path() /
                 ("corr-archiver-test-" +
                  std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()) +
                  "-" + std::to_string(counter++));
        fs::remove_all(m_root);
        m_result = m_root / "results" / "run1";
        write_file(m_result / "run1.corr", "format=1\nname=run1\n");
        for (const char* name :
             {"memcheck_double_free.xml", "helgrind_race_counter.xml", "asan_overflow.txt"})
            write_file(m_result / "data" / name,
                       read_file(fs::path(CORR_SAMPLES_DIR) / "recorded" / name));
        std::mt19937 rng(42);
        std::string noise(1 << 20, '\0');
        for (auto& c : noise)
            c = static_cast<char>(rng());
        write_file(m_result / "data" / "noise.bin", noise);
        std::string text;
        while (text.size() < (3u << 20))
            text += "<frame><fn>worker_" + std::to_string(rng() % 1000) + "</fn><line>" +
                    std::to_string(rng() % 5000) + "</line></frame>\n";
        write_file(m_result / "data" / "large.xml", text);
        write_file(m_result / "suppressions" / "default.sup", "corr-suppressions 2\n");
        fs::create_directories(m_result / "suppressions" / "old");
        m_target = m_root / "out" / "run1.corrz";
        fs::create_directories(m_target.parent_path());
    }
    void TearDown() override { fs::remove_all(m_root); }

    pack_options_t options() const
    {
        pack_options_t o;
        o.threads = GetParam();
        return o;
    }

    // What the archive must hold for the result folder alone.
    std::map<std::string, std::string> expected_result_entries() const
    {
        std::map<std::string, std::string> out{{"run1/", ""}};
        for (auto it = fs::recursive_directory_iterator(m_result);
             it != fs::recursive_directory_iterator(); ++it) {
            const std::string name =
                "run1/" + it->path().lexically_relative(m_result).generic_string();
            out[it->is_directory() ? name + "/" : name] =
                it->is_directory() ? "" : read_file(it->path());
        }
        return out;
    }

    std::vector<fs::path> leftovers() const
    {
        std::vector<fs::path> out;
        for (const auto& e : fs::directory_iterator(m_target.parent_path()))
            out.push_back(e.path());
        return out;
    }

    fs::path m_root, m_result, m_target;
};

} // namespace

TEST_P(ArchiverTest, PacksTheResultFolderAndReadsBackTheSame)
{
    zipfile_impl_t zip;
    ASSERT_TRUE(zip.open_for_writing(m_target)) << zip.get_error().size();
    collected_messages messages;
    recording_progress progress;
    ASSERT_EQ(archiver_t::success,
              archiver_t::pack({m_result, {}}, zip, 0, &messages, &progress, options()));
    EXPECT_FALSE(zip.is_open());
    EXPECT_TRUE(messages.list.empty());

    const auto archive = read_archive(m_target);
    std::map<std::string, std::string> got;
    for (const auto& [name, e] : archive)
        got[name] = e.data;
    EXPECT_EQ(expected_result_entries(), got);
    EXPECT_EQ(ZIP_CM_STORE, archive.at("run1/data/noise.bin").method) << "random data is stored";
    EXPECT_EQ(ZIP_CM_DEFLATE, archive.at("run1/data/large.xml").method);
    EXPECT_LT(fs::file_size(m_target),
              fs::file_size(m_result / "data" / "large.xml") / 3 + (1 << 20) + 65536);

    EXPECT_TRUE(progress.monotonic);
    EXPECT_GT(progress.reports, 2);
    EXPECT_NEAR(progress.total, progress.position, progress.total * 1e-9);
    EXPECT_EQ((std::vector<fs::path>{m_target}), leftovers())
        << "no shard or probe files stay behind";
}

TEST_P(ArchiverTest, SourcesAreAddedOnRequestAndMissingOnesAreWarnedAbout)
{
    const fs::path src_dir = fs::path(CORR_SAMPLES_DIR) / "src";
    const fs::path missing = m_root / "gone" / "missing.c";
    pack_source_t source{m_result,
                         {src_dir / "mem_leaks.c", src_dir / "thr_race_counter.c", missing,
                          src_dir / "mem_leaks.c"}};
    zipfile_impl_t zip;
    ASSERT_TRUE(zip.open_for_writing(m_target));
    collected_messages messages;
    ASSERT_EQ(archiver_t::success, archiver_t::pack(source, zip, archiver_t::include_sources,
                                                    &messages, nullptr, options()));

    const auto archive = read_archive(m_target);
    const std::string prefix = "run1/sources/" + src_dir.relative_path().generic_string() + "/";
    ASSERT_TRUE(archive.count(prefix + "mem_leaks.c"));
    EXPECT_EQ(read_file(src_dir / "mem_leaks.c"), archive.at(prefix + "mem_leaks.c").data);
    EXPECT_EQ(read_file(src_dir / "thr_race_counter.c"),
              archive.at(prefix + "thr_race_counter.c").data);
    EXPECT_EQ(expected_result_entries().size() + 3, archive.size())
        << "two sources and their folder";

    ASSERT_EQ(1u, messages.list.size());
    EXPECT_EQ(static_cast<std::uint32_t>(notify2::msg_warning), messages.list[0].first);
    EXPECT_NE(std::wstring::npos, messages.list[0].second.find(missing.wstring()));

    // Without the flag the sources stay out.
    zipfile_impl_t again;
    ASSERT_TRUE(again.open_for_writing(m_target));
    ASSERT_EQ(archiver_t::success, archiver_t::pack(source, again, 0, nullptr, nullptr, options()));
    EXPECT_EQ(expected_result_entries().size(), read_archive(m_target).size());
}

TEST_P(ArchiverTest, CancelledPackLeavesNoArchiveAndKeepsAnOldOne)
{
    write_file(m_target, "the previous export");
    zipfile_impl_t zip;
    ASSERT_TRUE(zip.open_for_writing(m_target));
    recording_progress progress;
    progress.cancel_at = GetParam() > 1 ? 0 : 0.3; // parallel parts are polled every 50 ms
    EXPECT_EQ(archiver_t::cancelled,
              archiver_t::pack({m_result, {}}, zip, 0, nullptr, &progress, options()));
    EXPECT_FALSE(zip.is_open());
    EXPECT_EQ("the previous export", read_file(m_target));
    EXPECT_EQ((std::vector<fs::path>{m_target}), leftovers());
    if (GetParam() <= 1) {
        EXPECT_LT(progress.position, progress.total * 0.5) << "stopped soon after the request";
    }
}

TEST_P(ArchiverTest, FolderThatVanishesBeforeWritingFailsCleanly)
{
    const fs::path target = m_root / "doomed" / "run1.corrz";
    fs::create_directories(target.parent_path());
    zipfile_impl_t zip;
    ASSERT_TRUE(zip.open_for_writing(target));
    fs::remove_all(target.parent_path());
    collected_messages messages;
    EXPECT_EQ(archiver_t::write_failed,
              archiver_t::pack({m_result, {}}, zip, 0, &messages, nullptr, options()));
    EXPECT_FALSE(zip.is_open());
    EXPECT_FALSE(fs::exists(target));
    ASSERT_FALSE(messages.list.empty());
    EXPECT_TRUE(notify2::is_error(messages.list.back().first));
    EXPECT_NE(std::wstring::npos, messages.list.back().second.find(target.wstring()));
}

TEST_P(ArchiverTest, LinksAreNotFollowedAndLeftoverPartsAreNeitherPackedNorKept)
{
    const fs::path secret = m_root / "secret.txt";
    write_file(secret, "not the user's to hand out");
    fs::create_symlink(secret, m_result / "data" / "link.txt");
    fs::create_directory_symlink(m_root, m_result / "data" / "up");
    // A killed export left its parts beside the target, and one inside the
    // result folder when the result folder itself is the target's.
    write_file(m_target.string() + ".part0-123", "half");
    write_file(m_target.string() + ".part1-123", "half");
    write_file(m_target.parent_path() / "run1.corrz.partial notes", "kept: not a part");

    zipfile_impl_t zip;
    ASSERT_TRUE(zip.open_for_writing(m_target));
    collected_messages messages;
    ASSERT_EQ(archiver_t::success, archiver_t::pack({m_result, {}}, zip, 0, &messages, nullptr, options()));
    const auto archive = read_archive(m_target);
    for (const auto& [name, e] : archive) {
        EXPECT_EQ(name.find("link.txt"), std::string::npos) << name;
        EXPECT_EQ(name.find("up/"), std::string::npos) << name;
        EXPECT_NE(e.data, "not the user's to hand out") << name;
    }
    EXPECT_EQ(messages.list.size(), 2u); // one line per link
    EXPECT_FALSE(fs::exists(m_target.string() + ".part0-123"));
    EXPECT_FALSE(fs::exists(m_target.string() + ".part1-123"));
    EXPECT_TRUE(fs::exists(m_target.parent_path() / "run1.corrz.partial notes"));
    EXPECT_TRUE(fs::is_symlink(m_result / "data" / "link.txt")); // the result is left alone
}

INSTANTIATE_TEST_SUITE_P(Threads, ArchiverTest, testing::Values(1u, 2u),
                         [](const testing::TestParamInfo<unsigned>& param) {
                             return param.param == 1 ? std::string("OneThread")
                                                     : std::string("TwoThreads");
                         });

TEST(Zipfile, UnwritableTargetsAreRefusedAtOnce)
{
    const fs::path root = fs::temp_directory_path() / "corr-zipfile-test";
    fs::create_directories(root / "a-folder.corrz");
    zipfile_impl_t zip;
    EXPECT_FALSE(zip.open_for_writing(root / "no-such-folder" / "x.corrz"));
    EXPECT_NE(std::wstring::npos, zip.get_error().find(L"no-such-folder"));
    EXPECT_FALSE(zip.is_open());
    EXPECT_FALSE(zip.open_for_writing(root / "a-folder.corrz"));
    EXPECT_FALSE(zip.open_for_writing(basekit2::path_t()));
    EXPECT_FALSE(fs::exists(root / "no-such-folder"));
    fs::remove_all(root);
}

TEST(Archiver, RefusesAFolderWithoutAResultAndAClosedArchive)
{
    const fs::path root = fs::temp_directory_path() / "corr-archiver-refuse";
    write_file(root / "not-a-result" / "readme.txt", "hello");
    collected_messages messages;
    zipfile_impl_t zip;
    ASSERT_TRUE(zip.open_for_writing(root / "x.corrz"));
    EXPECT_EQ(archiver_t::no_result,
              archiver_t::pack({root / "not-a-result", {}}, zip, 0, &messages, nullptr));
    EXPECT_FALSE(zip.is_open()) << "a failed pack discards the archive";
    EXPECT_EQ(archiver_t::write_failed,
              archiver_t::pack({root / "not-a-result", {}}, zip, 0, &messages, nullptr));
    ASSERT_TRUE(zip.open_for_writing(root / "x.corrz"));
    EXPECT_EQ(archiver_t::no_result,
              archiver_t::pack({root / "missing", {}}, zip, 0, &messages, nullptr));
    EXPECT_EQ(3u, messages.list.size());
    EXPECT_FALSE(fs::exists(root / "x.corrz"));
    EXPECT_EQ(L"corrz", archiver_t::get_default_file_ext());
    fs::remove_all(root);
}
