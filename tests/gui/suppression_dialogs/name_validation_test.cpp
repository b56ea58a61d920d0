// The checks on the file and rule-set names of the create-suppression
// dialog, as values: which problem is reported first and what the tool-tip
// says (texts of the built "shareddlg" catalogue).
#include "corr_dialogs2/supp_name_validation.h"
#include "corr_dialogs2/ui_utils.h"

#include "settings2/catalog.h"
#include "shareddlg3/utils.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>

using namespace corr_dialogs2;

namespace {

const std::wstring folder = L"/results/r1/suppressions";

std::wstring shared(const std::wstring& key)
{
    const auto catalog = settings2::getMessageCatalog(L"shareddlg");
    return catalog && catalog->has_message(key) ? catalog->message(key).as_ustring({}) : L"<missing " + key + L">";
}

// A name that makes folder + "/" + name exactly `total` characters long.
std::wstring name_for_length(size_t total)
{
    const size_t name_length = total - folder.size() - 1;
    return std::wstring(name_length - 4, L'a') + L".sup";
}

} // namespace

TEST(SuppressionNameChecks, AcceptsPlainNamesAndTrimsBlanks)
{
    EXPECT_EQ(check_suppression_file_name(L"team.sup", folder), file_name_problem_t::none);
    EXPECT_EQ(check_suppression_file_name(L"  team.sup\t", folder), file_name_problem_t::none);
    EXPECT_EQ(check_suppression_file_name(L"console.sup", folder), file_name_problem_t::none) << "CON only as a whole name";
    EXPECT_EQ(trim_text(L" \t a b \n"), L"a b");
}

TEST(SuppressionNameChecks, EachFailureHasItsTooltip)
{
    EXPECT_EQ(check_suppression_file_name(L".", folder), file_name_problem_t::dots);
    EXPECT_EQ(check_suppression_file_name(L"..", folder), file_name_problem_t::dots);
    EXPECT_EQ(check_suppression_file_name(L"", folder), file_name_problem_t::empty);
    EXPECT_EQ(check_suppression_file_name(L"   ", folder), file_name_problem_t::empty);
    for (const std::wstring reserved : {L"CON", L"con", L"Con.sup", L"nul", L"PRN", L"aux.txt", L"com1", L"LPT9"})
        EXPECT_EQ(check_suppression_file_name(reserved, folder), file_name_problem_t::reserved)
            << std::string(reserved.begin(), reserved.end());

    EXPECT_EQ(get_file_name_tooltip(file_name_problem_t::reserved), shared(L"reserved_filename"));
    EXPECT_EQ(get_file_name_tooltip(file_name_problem_t::dots), shared(L"dots_filename"));
    EXPECT_EQ(get_file_name_tooltip(file_name_problem_t::empty), shared(L"filename_empty"));
    EXPECT_EQ(get_file_name_tooltip(file_name_problem_t::too_long), shared(L"filename_bad_lenght"));
    const std::wstring chars_tip = get_file_name_tooltip(file_name_problem_t::bad_chars);
    EXPECT_EQ(chars_tip, shareddlg3::get_disabled_tooltip_text(L"\\/:*?\"<>|"));
    EXPECT_NE(chars_tip.find(L'|'), std::wstring::npos) << "the tool-tip names the characters";
    EXPECT_TRUE(get_file_name_tooltip(file_name_problem_t::none).empty());
    for (auto problem : {file_name_problem_t::reserved, file_name_problem_t::dots, file_name_problem_t::empty,
                         file_name_problem_t::too_long})
        EXPECT_EQ(get_file_name_tooltip(problem).find(L"not found"), std::wstring::npos);
}

TEST(SuppressionNameChecks, EveryForbiddenCharacterIsRefused)
{
    const std::wstring forbidden = L"\\/:*?\"<>|";
    ASSERT_EQ(forbidden.size(), 9u);
    for (const wchar_t c : forbidden) {
        const std::wstring name = std::wstring(L"my") + c + L"rules.sup";
        EXPECT_EQ(check_suppression_file_name(name, folder), file_name_problem_t::bad_chars)
            << "character " << static_cast<int>(c);
    }
}

TEST(SuppressionNameChecks, FullPathOf259IsAcceptedAnd260Refused)
{
    const std::wstring name259 = name_for_length(259);
    const std::wstring name260 = name_for_length(260);
    ASSERT_EQ(full_suppression_path(folder, name259).size(), 259u);
    ASSERT_EQ(full_suppression_path(folder, name260).size(), 260u);
    EXPECT_EQ(check_suppression_file_name(name259, folder), file_name_problem_t::none);
    EXPECT_EQ(check_suppression_file_name(name260, folder), file_name_problem_t::too_long);
}

TEST(SuppressionNameChecks, FirstFailingCheckWins)
{
    // Reserved and too long: reserved is checked first.
    const std::wstring long_reserved = L"CON." + std::wstring(300, L'x');
    EXPECT_EQ(check_suppression_file_name(long_reserved, folder), file_name_problem_t::reserved);
    // Forbidden characters and too long: the characters come first.
    EXPECT_EQ(check_suppression_file_name(std::wstring(300, L'x') + L"?", folder), file_name_problem_t::bad_chars);
    // A valid name without a suppressions folder is still not usable.
    EXPECT_EQ(check_suppression_file_name(L"team.sup", L""), file_name_problem_t::no_folder);
}

TEST(SuppressionNameChecks, AbsolutePathsAreCheckedByTheirLastComponent)
{
    EXPECT_EQ(check_suppression_file_name(L"/home/me/suppressions/team.sup", folder), file_name_problem_t::none);
    EXPECT_EQ(check_suppression_file_name(L"/home/me/NUL", folder), file_name_problem_t::reserved);
    EXPECT_EQ(check_suppression_file_name(L"/home/me/a:b.sup", folder), file_name_problem_t::bad_chars);
    EXPECT_EQ(check_suppression_file_name(L"/home/m*e/team.sup", folder), file_name_problem_t::bad_chars);
    EXPECT_EQ(check_suppression_file_name(L"/home/me/..", folder), file_name_problem_t::dots);
    EXPECT_EQ(check_suppression_file_name(L"/" + std::wstring(260, L'a'), folder), file_name_problem_t::too_long);
}

TEST(SuppressionNameChecks, RuleSetNameAndOkEnabling)
{
    EXPECT_TRUE(is_rule_set_name_valid(L"Known races"));
    EXPECT_FALSE(is_rule_set_name_valid(L""));
    EXPECT_FALSE(is_rule_set_name_valid(L" \t "));
    EXPECT_EQ(get_rule_set_name_tooltip(), shared(L"filename_empty"));

    EXPECT_TRUE(is_create_ok_enabled(file_name_problem_t::none, true, true));
    EXPECT_FALSE(is_create_ok_enabled(file_name_problem_t::none, false, true)) << "no checked row";
    EXPECT_FALSE(is_create_ok_enabled(file_name_problem_t::none, true, false)) << "blank rule-set name";
    EXPECT_FALSE(is_create_ok_enabled(file_name_problem_t::too_long, true, true));
    EXPECT_FALSE(is_create_ok_enabled(file_name_problem_t::no_folder, true, true));
}

TEST(SuppressionNameChecks, AFolderIsNoFileName)
{
    // A real suppressions folder with a folder in it.
    const std::filesystem::path real = std::filesystem::temp_directory_path() /
                                       ("corr names " + std::to_string(std::random_device()()));
    std::filesystem::create_directories(real / "suppressions" / "older");
    const std::wstring suppressions = (real / "suppressions").wstring();

    EXPECT_EQ(check_suppression_file_name(L"/home/me/rules/", suppressions),
              file_name_problem_t::folder);
    EXPECT_EQ(check_suppression_file_name(suppressions + L"/", suppressions),
              file_name_problem_t::folder);
    EXPECT_EQ(check_suppression_file_name(suppressions + L"/older", suppressions),
              file_name_problem_t::folder);
    EXPECT_EQ(check_suppression_file_name(L"older", suppressions), file_name_problem_t::folder);
    EXPECT_EQ(check_suppression_file_name(L"older.sup", suppressions), file_name_problem_t::none);
    EXPECT_EQ(check_suppression_file_name(L"known-leaks", suppressions), file_name_problem_t::none);
    // The characters a name cannot hold are still reported first.
    EXPECT_EQ(check_suppression_file_name(L"older/", suppressions), file_name_problem_t::bad_chars);

    const std::wstring tip = get_file_name_tooltip(file_name_problem_t::folder);
    EXPECT_EQ(tip, translate(L"dlg.suppressions.new.filename_is_folder"));
    EXPECT_NE(tip.find(L"folder"), std::wstring::npos)
        << "a text of the catalogue, not a fall-back";
    std::filesystem::remove_all(real);
}
