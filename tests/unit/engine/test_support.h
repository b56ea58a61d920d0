#pragma once
// Fixtures of the engine tests: recorded samples, hand-made inputs, scratch
// folders, and importing into a vector.
#include "corr_engine/result_converter.h"
#include "platkit/strings/convert.h"
#include "../ruledata/sup_test_support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
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

using sup_test::write_bytes;

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

// What every imported problem carries, whatever the tool.
inline void expect_complete(const std::vector<probstore3::problem_t>& problems)
{
    for (const auto& p : problems) {
        EXPECT_FALSE(p.kind.empty());
        EXPECT_FALSE(p.type.empty());
        EXPECT_FALSE(p.description.empty());
        ASSERT_FALSE(p.stacks.empty());
        EXPECT_FALSE(p.stacks[0].frames.empty());
        ASSERT_NE(p.best_frame(), nullptr);
    }
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
using temp_dir_t = sup_test::temp_dir;

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
