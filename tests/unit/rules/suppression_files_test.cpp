// Saving suppression files through the library's wrapper, with real files.
#include "../ruledata/recorded_problems.h"
#include "../ruledata/sup_test_support.h"

#include "corr_dialogs2/suppression_file.h"
#include "probstore3/candidates.h"

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

using namespace corr_dialogs2;
using suppfmt3::suppfmt_errdef;

namespace {

struct recorded_notification : supp_file_error_notification_t
{
    std::vector<std::pair<suppfmt_errdef, std::wstring>> calls;
    void notify(suppfmt_errdef code, const std::wstring& path) override { calls.emplace_back(code, path); }
};

struct recorded_prompt : supp_file_rewrite_prompt_t
{
    bool answer = true;
    std::vector<std::vector<suppression_file_ptr>> asked;
    bool confirm_rewrite(const std::vector<suppression_file_ptr>& files) override
    {
        asked.push_back(files);
        return answer;
    }
};

boost::shared_ptr<probstore3::suppression_file_t> file_with_rule(const std::filesystem::path& path)
{
    auto file = boost::make_shared<probstore3::suppression_file_t>(path.wstring());
    file->add_suppression(recorded::named_set(L"uaf", recorded::use_after_free()));
    return file;
}

} // namespace

TEST(SaveSuppressionFiles, EmptySetSavesNothingAndSucceeds)
{
    auto notification = boost::make_shared<recorded_notification>();
    EXPECT_TRUE(save_suppression_files(std::set<suppression_file_ptr>{}, notification));
    EXPECT_TRUE(save_suppression_files(std::set<boost::shared_ptr<probstore3::suppression_file_t>>{}, notification));
    EXPECT_TRUE(notification->calls.empty());
}

TEST(SaveSuppressionFiles, WrapperWithoutAFileReports27)
{
    auto notification = boost::make_shared<recorded_notification>();
    const auto empty = boost::make_shared<suppression_file_impl_t>(nullptr);
    EXPECT_EQ(empty->save(), suppfmt3::se_no_file);
    EXPECT_EQ(static_cast<int>(suppfmt3::se_no_file), 27);
    EXPECT_TRUE(empty->is_current_format());
    EXPECT_EQ(empty->get_path(), L"");
    EXPECT_FALSE(save_suppression_files(std::set<suppression_file_ptr>{empty}, notification));
    ASSERT_EQ(notification->calls.size(), 1u);
    EXPECT_EQ(notification->calls[0].first, suppfmt3::se_no_file);
    EXPECT_EQ(notification->calls[0].second, L"");
    // Without a notification the failure shows only in the result.
    EXPECT_FALSE(save_suppression_files(std::set<suppression_file_ptr>{empty}, nullptr));
}

TEST(SaveSuppressionFiles, OlderFormatIsWrittenInTheCurrentOneByTheFirstSave)
{
    sup_test::temp_dir dir;
    std::filesystem::copy_file(sup_test::data_dir() / "previous_v1.sup", dir / "old.sup");
    const auto file = wrap_suppression_file(probstore3::suppression_file_t::open((dir / "old.sup").wstring()));
    ASSERT_TRUE(file->get_file());
    EXPECT_FALSE(file->is_current_format());
    EXPECT_EQ(file->save(), suppfmt3::se_success);
    EXPECT_TRUE(file->is_current_format());
    EXPECT_EQ(sup_test::read_bytes(dir / "old.sup").rfind("corr-suppressions 2\n", 0), 0u);
}

TEST(SuppressionFileWrapper, ASaveMakesWhatItWroteTheSavedStateAndAFailedSaveDoesNot)
{
    sup_test::temp_dir dir;
    std::filesystem::copy_file(sup_test::data_dir() / "previous_v1.sup", dir / "old.sup");
    const auto store = probstore3::suppression_file_t::open((dir / "old.sup").wstring());
    ASSERT_TRUE(store);
    const auto file = wrap_suppression_file(store);
    const auto loaded = store->get_rulesets(false);
    ASSERT_EQ(loaded.size(), 3u);

    // One rule set taken out and one put in: not saved yet.
    const auto added = recorded::named_set(L"race", recorded::race_read());
    file->remove_suppression(loaded[0]);
    file->add_suppression(added);
    ASSERT_EQ(store->get_rulesets(false), loaded);

    // A save that fails (a rule set without rules cannot be written) leaves
    // the saved state as it was.
    const auto empty = boost::make_shared<probstore3::suppression_rule_set_t>(L"empty");
    file->add_suppression(empty);
    EXPECT_EQ(file->save(), suppfmt3::se_empty_rule_set);
    EXPECT_EQ(store->get_rulesets(false), loaded);

    file->remove_suppression(empty);
    ASSERT_EQ(file->save(), suppfmt3::se_success);
    EXPECT_EQ(store->get_rulesets(false),
              (probstore3::suppression_file_t::rule_sets_t{loaded[1], loaded[2], added}));
}

TEST(SaveSuppressionFiles, AFailureIsReportedOnceAndTheOtherFilesAreStillSaved)
{
    sup_test::temp_dir dir;
    sup_test::write_bytes(dir / "plain", "x");
    const auto bad = wrap_suppression_file(file_with_rule(dir / "plain" / "bad.sup"));
    const auto good1 = wrap_suppression_file(file_with_rule(dir / "one.sup"));
    const auto good2 = wrap_suppression_file(file_with_rule(dir / "two.sup"));
    auto notification = boost::make_shared<recorded_notification>();
    EXPECT_FALSE(save_suppression_files(std::set<suppression_file_ptr>{good1, bad, good2}, notification));
    ASSERT_EQ(notification->calls.size(), 1u);
    EXPECT_EQ(notification->calls[0].first, suppfmt3::se_cannot_create);
    EXPECT_EQ(notification->calls[0].second, (dir / "plain" / "bad.sup").wstring());
    EXPECT_TRUE(std::filesystem::exists(dir / "one.sup"));
    EXPECT_TRUE(std::filesystem::exists(dir / "two.sup"));

    // The same through the problem store's files directly.
    auto direct = boost::make_shared<recorded_notification>();
    EXPECT_FALSE(save_suppression_files(
        std::set<boost::shared_ptr<probstore3::suppression_file_t>>{file_with_rule(dir / "three.sup"), bad->get_file()},
        direct));
    EXPECT_EQ(direct->calls.size(), 1u);
    EXPECT_TRUE(std::filesystem::exists(dir / "three.sup"));
}

TEST(RewritePrompt, AskedOnlyAboutFilesInAnOlderFormat)
{
    sup_test::temp_dir dir;
    std::filesystem::copy_file(sup_test::data_dir() / "previous_v1.sup", dir / "old.sup");
    const auto old_file = wrap_suppression_file(probstore3::suppression_file_t::open((dir / "old.sup").wstring()));
    const auto new_file = wrap_suppression_file(file_with_rule(dir / "new.sup"));
    auto prompt = boost::make_shared<recorded_prompt>();

    EXPECT_TRUE(confirm_rewrite_if_needed(prompt, {new_file}));
    EXPECT_TRUE(prompt->asked.empty());
    prompt->answer = false;
    EXPECT_FALSE(confirm_rewrite_if_needed(prompt, {new_file, old_file}));
    ASSERT_EQ(prompt->asked.size(), 1u);
    EXPECT_EQ(prompt->asked[0], std::vector<suppression_file_ptr>{old_file});
    EXPECT_TRUE(confirm_rewrite_if_needed(nullptr, {old_file}));
}

TEST(SuppressionFileWrapper, AddAndRemoveReachTheDiskOnSave)
{
    sup_test::temp_dir dir;
    const auto file = wrap_suppression_file(boost::make_shared<probstore3::suppression_file_t>((dir / "a.sup").wstring()));
    const auto set = recorded::named_set(L"race", recorded::race_read());
    file->add_suppression(set);
    ASSERT_EQ(file->save(), suppfmt3::se_success);
    EXPECT_NE(sup_test::read_bytes(dir / "a.sup").find("suppression \"race\""), std::string::npos);
    EXPECT_EQ(set->get_file(), file->get_file());
    file->remove_suppression(set);
    ASSERT_EQ(file->save(), suppfmt3::se_success);
    EXPECT_EQ(sup_test::read_bytes(dir / "a.sup"), "corr-suppressions 2\n");
}
