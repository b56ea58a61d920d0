// A save that the operating system cuts short half-way, as on a full disk.
#include "recorded_problems.h"
#include "sup_test_support.h"

#include "probstore3/candidates.h"
#include "probstore3/suppression_file.h"

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

#include <cstdlib>

using namespace suppfmt3;
using probstore3::suppression_file_t;
using sup_test::read_bytes;
using sup_test::temp_dir;

using recorded::named_set;

// Run by its own CTest entry under a file-size limit (see CMakeLists.txt).
TEST(SuppressionFileUnderSizeLimit, FailedWriteLeavesTheOldFileIntact)
{
    ASSERT_TRUE(std::getenv("CORR_TEST_UNDER_FILE_SIZE_LIMIT")) << "run through ctest: it sets the limit";
    const size_t bytes = 1 << 20; // far above the limit

    temp_dir dir;
    const auto target = dir / "rules.sup";
    auto file = boost::make_shared<suppression_file_t>(target.wstring());
    file->add_suppression(named_set(L"small", recorded::use_after_free()));
    ASSERT_EQ(file->save(file->get_path(), sff_current), se_success);
    const std::string old_bytes = read_bytes(target);
    ASSERT_LT(old_bytes.size(), 4096u);

    for (int i = 0; file->to_text().size() <= bytes; i += 100)
        for (int k = 0; k < 100; ++k)
            file->add_suppression(named_set(L"big " + std::to_wstring(i + k), recorded::deep_leak()));
    EXPECT_EQ(file->save(file->get_path(), sff_current), se_cannot_write);
    EXPECT_EQ(read_bytes(target), old_bytes);
    EXPECT_EQ(dir.entries(), std::vector<std::string>{"rules.sup"}); // no temporary file left
    EXPECT_NE(file->get_last_error().find(L"cannot write"), std::wstring::npos);
}
