#pragma once
// Fixtures of the engine tests: recorded samples, hand-made inputs, scratch
// folders, and importing into a vector.
#include "corr_engine/result_converter.h"
#include "platkit/strings/convert.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace engine_test {

namespace fs = std::filesystem;

inline fs::path sample(const std::string& name)
{
    return fs::path(CORR_SAMPLES_DIR) / "recorded" / name;
}

inline fs::path test_data(const std::string& name)
{
    return fs::path(CORR_TEST_DATA_DIR) / name;
}

inline std::string read_file(const fs::path& p)
{
    std::ifstream in(p, std::ios::binary);
    EXPECT_TRUE(in.good()) << "missing fixture " << p;
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

inline void write_file(const fs::path& p, const std::string& text)
{
    std::ofstream out(p, std::ios::binary | std::ios::trunc);
    out << text;
}

inline size_t count_of(const std::string& text, const std::string& part)
{
    size_t n = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size()))
        ++n;
    return n;
}

// Recorded files of one kind, sorted; a missing folder fails the caller.
inline std::vector<fs::path> samples_matching(const std::string& prefix, const std::string& ext)
{
    std::vector<fs::path> out;
    for (const auto& e : fs::directory_iterator(fs::path(CORR_SAMPLES_DIR) / "recorded"))
        if (e.path().extension() == ext && e.path().filename().string().rfind(prefix, 0) == 0)
            out.push_back(e.path());
    std::sort(out.begin(), out.end());
    return out;
}

struct imported_t
{
    corr_engine::import_report_t report;
    std::vector<probstore3::problem_t> problems;
};

inline imported_t import_with(const corr_engine::result_importer_t& importer, const fs::path& file,
                              const corr_engine::import_context_t& context = {})
{
    imported_t out;
    out.report = importer.import_file(basekit2::path_t(file), context, [&](probstore3::problem_t&& p) {
        out.problems.push_back(std::move(p));
    });
    return out;
}

// A scratch folder, removed with everything in it at the end of the test.
class temp_dir_t
{
public:
    temp_dir_t()
    {
        std::random_device rd;
        m_path = fs::temp_directory_path() /
                 ("corr_engine_test_" + std::to_string(rd()) + std::to_string(rd()));
        fs::create_directories(m_path);
    }
    ~temp_dir_t()
    {
        std::error_code ec;
        fs::remove_all(m_path, ec);
    }
    temp_dir_t(const temp_dir_t&) = delete;
    temp_dir_t& operator=(const temp_dir_t&) = delete;

    const fs::path& path() const { return m_path; }
    fs::path operator/(const std::string& leaf) const { return m_path / leaf; }

private:
    fs::path m_path;
};

// Every file and its bytes under a folder: to show that a failed operation
// changed nothing.
inline std::map<std::string, std::string> snapshot(const fs::path& dir)
{
    std::map<std::string, std::string> out;
    for (const auto& e : fs::recursive_directory_iterator(dir))
        out[fs::relative(e.path(), dir).string()] =
            e.is_regular_file() ? read_file(e.path()) : "<dir>";
    return out;
}

} // namespace engine_test
