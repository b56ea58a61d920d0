#pragma once
// Temporary folders and file helpers of the suppression-file tests, shared
// with the other unit-test folders that need scratch files.
#include <algorithm>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace sup_test {

inline std::filesystem::path data_dir() { return std::filesystem::path(CORR_TEST_DATA_DIR) / "sup"; }

inline std::string read_bytes(const std::filesystem::path& p)
{
    std::ifstream in(p, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

inline void write_bytes(const std::filesystem::path& p, const std::string& bytes)
{
    std::ofstream out(p, std::ios::binary | std::ios::trunc);
    out << bytes;
}

// A fresh folder for one test, removed afterwards.
class temp_dir
{
public:
    temp_dir()
    {
        std::random_device rd;
        m_path = std::filesystem::temp_directory_path() /
                 ("corr-sup-test-" + std::to_string(rd()) + "-" + std::to_string(rd()));
        std::filesystem::create_directories(m_path);
    }
    ~temp_dir()
    {
        std::error_code ec;
        std::filesystem::permissions(m_path, std::filesystem::perms::owner_all, ec);
        std::filesystem::remove_all(m_path, ec);
    }
    temp_dir(const temp_dir&) = delete;
    temp_dir& operator=(const temp_dir&) = delete;

    const std::filesystem::path& path() const { return m_path; }
    std::filesystem::path operator/(const std::string& leaf) const { return m_path / leaf; }

    // Names of the entries in the folder, sorted.
    std::vector<std::string> entries() const
    {
        std::vector<std::string> out;
        for (const auto& e : std::filesystem::directory_iterator(m_path))
            out.push_back(e.path().filename().string());
        std::sort(out.begin(), out.end());
        return out;
    }

private:
    std::filesystem::path m_path;
};

} // namespace sup_test
