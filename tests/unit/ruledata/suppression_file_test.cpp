// Rule sets in a file object, and saving: what is refused, and what a
// failed save leaves behind.
#include "recorded_problems.h"
#include "sup_test_support.h"

#include "probstore3/candidates.h"
#include "probstore3/suppression_file.h"

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

using namespace suppfmt3;
using probstore3::suppression_file_t;
using sup_test::read_bytes;
using sup_test::temp_dir;

using recorded::named_set;

TEST(SuppressionFile, UnsavedChangesAndResync)
{
    temp_dir dir;
    auto file = boost::make_shared<suppression_file_t>((dir / "a.sup").wstring());
    EXPECT_EQ(file->get_file_format(), suppression_file_t::get_current_file_format());
    const auto one = named_set(L"one", recorded::use_after_free());
    const auto two = named_set(L"two", recorded::race_read());
    file->add_suppression(one);
    file->add_suppression(two);
    file->add_suppression(one); // once only
    EXPECT_EQ(file->get_rulesets(true).size(), 2u);
    EXPECT_TRUE(file->get_rulesets(false).empty());
    EXPECT_EQ(one->get_file(), file);
    EXPECT_EQ(one->get_file_path(), (dir / "a.sup").wstring());

    ASSERT_EQ(file->save(file->get_path(), sff_current), se_success);
    file->resync_suppressions();
    EXPECT_EQ(file->get_rulesets(false).size(), 2u);

    file->remove_suppression(one);
    EXPECT_FALSE(one->get_file());
    EXPECT_EQ(file->get_rulesets(true), (suppression_file_t::rule_sets_t{two}));
    EXPECT_EQ(file->get_rulesets(false).size(), 2u);
    file->remove_suppression(one); // not there: nothing happens
    EXPECT_EQ(file->get_rulesets(true).size(), 1u);
}

TEST(SuppressionFile, RefusesWhatItCannotWriteAndLeavesTheDiskAlone)
{
    temp_dir dir;
    auto file = boost::make_shared<suppression_file_t>((dir / "a.sup").wstring());
    auto empty = boost::make_shared<probstore3::suppression_rule_set_t>(L"empty");
    file->add_suppression(empty);
    EXPECT_EQ(file->save(file->get_path(), sff_current), se_empty_rule_set);
    EXPECT_NE(file->get_last_error().find(L"\"empty\""), std::wstring::npos);
    file->remove_suppression(empty);
    file->add_suppression(named_set(L"x", recorded::use_after_free()));
    EXPECT_EQ(file->save(file->get_path(), sff_version_1), se_format_not_writable);
    EXPECT_EQ(file->save(L"", sff_current), se_no_path);
    EXPECT_TRUE(dir.entries().empty());
}

TEST(SuppressionFile, SavingWhereTheParentIsAFileFailsAndCreatesNothing)
{
    temp_dir dir;
    sup_test::write_bytes(dir / "plain", "not a folder\n");
    const auto target = dir / "plain" / "rules.sup";
    auto file = boost::make_shared<suppression_file_t>(target.wstring());
    file->add_suppression(named_set(L"x", recorded::use_after_free()));
    EXPECT_EQ(file->save(file->get_path(), sff_current), se_cannot_create);
    EXPECT_NE(file->get_last_error().find(target.wstring()), std::wstring::npos);
    EXPECT_EQ(dir.entries(), std::vector<std::string>{"plain"});
    EXPECT_EQ(read_bytes(dir / "plain"), "not a folder\n");
    // The object is still whole: a save to a usable path works.
    EXPECT_EQ(file->get_rulesets(true).size(), 1u);
    EXPECT_EQ(file->save((dir / "ok.sup").wstring(), sff_current), se_success);
}

TEST(SuppressionFile, SavingACopyElsewhereLeavesTheFileAsItWas)
{
    temp_dir dir;
    std::filesystem::copy_file(sup_test::data_dir() / "previous_v1.sup", dir / "old.sup");
    const auto file = suppression_file_t::open((dir / "old.sup").wstring());
    ASSERT_TRUE(file);
    ASSERT_EQ(file->save((dir / "copy.sup").wstring(), sff_current), se_success);
    EXPECT_EQ(file->get_file_format(), sff_version_1);
    EXPECT_EQ(file->get_path(), (dir / "old.sup").wstring());
    EXPECT_EQ(read_bytes(dir / "old.sup"), read_bytes(sup_test::data_dir() / "previous_v1.sup"));
    EXPECT_EQ(read_bytes(dir / "copy.sup").rfind("corr-suppressions 2\n", 0), 0u);
}

TEST(SuppressionFile, RestoreTakesBackWhatWasAddedAndRemovedSinceTheSnapshot)
{
    temp_dir dir;
    auto file = boost::make_shared<suppression_file_t>((dir / "a.sup").wstring());
    const auto one = named_set(L"one", recorded::use_after_free());
    const auto two = named_set(L"two", recorded::race_read());
    file->add_suppression(one);
    file->add_suppression(two);
    ASSERT_EQ(file->save(file->get_path(), sff_current), se_success);
    file->resync_suppressions();
    const std::string text = file->to_text();

    const auto snapshot = file->take_snapshot();
    const auto three = named_set(L"three", recorded::use_after_free());
    file->remove_suppression(one);
    file->add_suppression(three);
    ASSERT_EQ(file->get_rulesets(true), (suppression_file_t::rule_sets_t{two, three}));
    file->restore(*snapshot);

    EXPECT_EQ(file->get_rulesets(true), (suppression_file_t::rule_sets_t{one, two}));
    EXPECT_EQ(file->get_rulesets(false), (suppression_file_t::rule_sets_t{one, two}));
    EXPECT_EQ(file->to_text(), text);
    EXPECT_EQ(one->get_file(), file);
    EXPECT_FALSE(three->get_file());
    // The restored file goes on as before: a removal saves as usual.
    file->remove_suppression(two);
    ASSERT_EQ(file->save(file->get_path(), sff_current), se_success);
    EXPECT_EQ(read_bytes(dir / "a.sup").find("\"two\""), std::string::npos);
    EXPECT_NE(read_bytes(dir / "a.sup").find("\"one\""), std::string::npos);
}

// Two programs on one file: what the other one saved is never silently
// written over; after a reload the change is made on top of it.
TEST(SuppressionFile, AChangeOnDiskSinceLoadingIsNotOverwritten)
{
    temp_dir dir;
    const std::wstring path = (dir / "team.sup").wstring();
    auto first = boost::make_shared<suppression_file_t>(path);
    first->add_suppression(named_set(L"first", recorded::use_after_free()));
    ASSERT_EQ(first->save(path, sff_current), se_success);

    // Both open the file; the other one adds and saves first.
    auto mine = suppression_file_t::open(path);
    auto other = suppression_file_t::open(path);
    ASSERT_TRUE(mine && other);
    other->add_suppression(named_set(L"from corrtool", recorded::race_read()));
    ASSERT_EQ(other->save(path, sff_current), se_success);
    const std::string theirs = read_bytes(dir / "team.sup");

    mine->add_suppression(named_set(L"mine", recorded::deep_leak()));
    EXPECT_EQ(mine->save(path, sff_current), se_cannot_write);
    EXPECT_NE(mine->get_last_error().find(L"changed by another program"), std::wstring::npos);
    EXPECT_NE(mine->get_last_error().find(L"reload"), std::wstring::npos);
    EXPECT_EQ(read_bytes(dir / "team.sup"), theirs);
    EXPECT_EQ(dir.entries(), std::vector<std::string>{"team.sup"});

    // Saving its own latest text again is fine, and so is a copy elsewhere.
    EXPECT_EQ(other->save(path, sff_current), se_success);
    EXPECT_EQ(mine->save((dir / "copy.sup").wstring(), sff_current), se_success);

    auto reloaded = suppression_file_t::open(path);
    ASSERT_TRUE(reloaded);
    reloaded->add_suppression(named_set(L"mine", recorded::deep_leak()));
    ASSERT_EQ(reloaded->save(path, sff_current), se_success);
    auto check = suppression_file_t::open(path);
    ASSERT_TRUE(check);
    EXPECT_EQ(check->get_rulesets(false).size(), 3u);
}

// A file written on another system keeps its line ends and its byte-order
// mark when a suppression is added.
TEST(SuppressionFile, CrlfAndByteOrderMarkAreKept)
{
    temp_dir dir;
    const std::wstring path = (dir / "dos.sup").wstring();
    auto first = boost::make_shared<suppression_file_t>(path);
    first->add_suppression(named_set(L"first", recorded::use_after_free()));
    ASSERT_EQ(first->save(path, sff_current), se_success);
    std::string text = read_bytes(dir / "dos.sup");
    std::string dos = "\xEF\xBB\xBF";
    for (char c : text)
        dos += c == '\n' ? std::string("\r\n") : std::string(1, c);
    {
        std::ofstream out(dir / "dos.sup", std::ios::binary | std::ios::trunc);
        out << dos;
    }

    auto file = suppression_file_t::open(path);
    ASSERT_TRUE(file) << "a BOM and CRLF are read";
    file->add_suppression(named_set(L"second", recorded::race_read()));
    ASSERT_EQ(file->save(path, sff_current), se_success);
    const std::string saved = read_bytes(dir / "dos.sup");
    EXPECT_EQ(saved.compare(0, 3, "\xEF\xBB\xBF"), 0);
    EXPECT_EQ(saved.compare(0, dos.size(), dos), 0) << "the old text is kept as it was";
    size_t lf = 0, crlf = 0;
    for (size_t i = 0; i < saved.size(); ++i)
        if (saved[i] == '\n') {
            ++lf;
            crlf += i > 0 && saved[i - 1] == '\r';
        }
    EXPECT_GT(lf, 4u);
    EXPECT_EQ(crlf, lf) << saved;
}
