#pragma once
// Scratch folders and a private copy of the bundled sample result.
#include "host/result_session.h"

#include "basekit2/path.h"
#include "platkit/strings/convert.h"
#include "probstore3/suppression_file.h"

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <string>

namespace host_test {

namespace fs = std::filesystem;

class temp_dir_t
{
public:
    temp_dir_t()
    {
        m_path =
            fs::temp_directory_path() / ("corrview-test-" + std::to_string(std::random_device{}()));
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
    fs::path operator/(const std::string& sub) const { return m_path / sub; }

private:
    fs::path m_path;
};

inline fs::path sample_result()
{
    return fs::path(CORR_SAMPLES_DIR) / "result";
}

inline fs::path recorded(const std::string& name)
{
    return fs::path(CORR_SAMPLES_DIR) / "recorded" / name;
}

// A copy of the sample result at dir (so that tests may write suppressions).
inline fs::path copy_sample_result(const fs::path& dir)
{
    EXPECT_TRUE(fs::is_directory(sample_result())) << "missing fixture " << sample_result();
    fs::create_directories(dir);
    fs::copy(sample_result(), dir, fs::copy_options::recursive);
    fs::create_directories(dir / "suppressions");
    return dir;
}

// Saves the candidate rules of the given problems as one named rule set in
// file (added to what the file holds).
inline void save_rule_set(const corrview::result_session_t& session,
                          const std::vector<size_t>& problems, const fs::path& file,
                          const std::wstring& name)
{
    auto rule_set = session.create_candidates(problems);
    ASSERT_TRUE(rule_set);
    rule_set->set_name(name);
    auto sup = boost::make_shared<probstore3::suppression_file_t>(file.wstring());
    if (fs::exists(file)) {
        ASSERT_EQ(sup->load(file.wstring()), 0);
    }
    sup->add_suppression(rule_set);
    ASSERT_EQ(sup->save(file.wstring(), probstore3::suppression_file_t::get_current_file_format()),
              0)
        << platkit::strings::wide_to_utf8(sup->get_last_error());
}

} // namespace host_test
