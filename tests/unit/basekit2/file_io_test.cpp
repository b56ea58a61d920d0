// Replacing files keeps what the user had: a symlink, the permissions, and
// no temporary file left behind. Real files in a folder with an awkward name.
#include "basekit2/file_io.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

namespace fs = std::filesystem;

std::string contents(const fs::path& p)
{
    std::ifstream in(p, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

class AtomicWrite : public testing::Test
{
protected:
    void SetUp() override
    {
        m_dir = fs::temp_directory_path() /
                ("write caf\xC3\xA9 \xFF " +
                 std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()));
        fs::create_directories(m_dir / "real");
    }
    void TearDown() override { fs::remove_all(m_dir); }

    size_t entries(const fs::path& dir)
    {
        size_t n = 0;
        for ([[maybe_unused]] const auto& e : fs::directory_iterator(dir))
            ++n;
        return n;
    }

    fs::path m_dir;
};

} // namespace

TEST_F(AtomicWrite, ASymlinkStaysASymlinkAndTheTargetKeepsItsMode)
{
    const fs::path target = m_dir / "real" / "team.sup";
    std::ofstream(target) << "old\r\n";
    fs::permissions(target, fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    const fs::path link = m_dir / "team.sup";
    fs::create_symlink(fs::path("real") / "team.sup", link);

    std::wstring error;
    ASSERT_EQ(basekit2::write_file_atomically(basekit2::path_t(link), "new\r\n", error),
              basekit2::write_error::none)
        << std::string(error.begin(), error.end());
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(fs::read_symlink(link), fs::path("real") / "team.sup");
    EXPECT_EQ(contents(target), "new\r\n");
    EXPECT_EQ(fs::status(target).permissions() & fs::perms::mask,
              fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    // The temporary file was made beside the target and is gone.
    EXPECT_EQ(entries(m_dir / "real"), 1u);
    EXPECT_EQ(entries(m_dir), 2u);
}

TEST_F(AtomicWrite, ANewFileGetsTheUsualPermissionsAndManyWritersEachLand)
{
    const fs::path file = m_dir / "new.sup";
    std::wstring error;
    ASSERT_EQ(basekit2::write_file_atomically(basekit2::path_t(file), "x", error),
              basekit2::write_error::none);
    // Readable and writable by its owner, never executable (the umask may
    // take group and others' bits away).
    const auto perms = fs::status(file).permissions();
    EXPECT_NE(perms & fs::perms::owner_read, fs::perms::none);
    EXPECT_NE(perms & fs::perms::owner_write, fs::perms::none);
    EXPECT_EQ(perms & (fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec),
              fs::perms::none);

    // Writers in a row each get a temporary name of their own; the last wins
    // whole and nothing is left over.
    for (int i = 0; i < 50; ++i)
        ASSERT_EQ(basekit2::write_file_atomically(basekit2::path_t(file), std::to_string(i), error),
                  basekit2::write_error::none);
    EXPECT_EQ(contents(file), "49");
    EXPECT_EQ(entries(m_dir), 2u);
}
