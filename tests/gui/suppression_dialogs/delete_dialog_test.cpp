// The delete-suppression dialog in a real window, on a suppression file
// written for rules made from recorded problems.
#include "suppdlg_fixture.h"

#include "corr_dialogs2/delete_suppression_dlg.h"
#include "corr_dialogs2/stack_dialogs.h"
#include "corr_dialogs2/ui_utils.h"
#include "modal_expectations.h"

#include "shareddlg3/message_window.h"

#include <boost/make_shared.hpp>

#include <wx/button.h>
#include <wx/xrc/xmlres.h>

#include <fstream>

using namespace corr_dialogs2;
namespace fs = std::filesystem;

namespace {

class DeleteSuppressionDialog : public testing::Test
{
protected:
    suppdlg_test::temp_dir dir;
    suppdlg_test::result_t result{dir / "result", {"memcheck_overflow.xml", "memcheck_use_after_free.xml"}};
    fs::path file_path;
    probstore3::file_ptr file;

    // team.sup with one suppression per problem, named "s1", "s2", ...
    void SetUp() override
    {
        file_path = result.suppressions() / "team.sup";
        fs::create_directories(file_path.parent_path());
        auto made = boost::make_shared<probstore3::suppression_file_t>(file_path.wstring());
        int n = 0;
        for (const auto& problem : result.problems()) {
            auto set = probstore3::create_candidate_rule_set(std::vector<probstore3::problem_t>{problem});
            set->set_name(L"s" + std::to_wstring(++n));
            made->add_suppression(set);
            if (n == 3)
                break;
        }
        ASSERT_EQ(n, 3);
        ASSERT_EQ(made->save(file_path.wstring(), probstore3::suppression_file_t::get_current_file_format()),
                  suppfmt3::se_success);
        // Loaded as a host loads it.
        file = probstore3::suppression_file_t::open(file_path.wstring());
        ASSERT_TRUE(file);
    }

    std::vector<std::wstring> names_on_disk()
    {
        std::vector<std::wstring> names;
        for (const auto& set : probstore3::suppression_file_t::open(file_path.wstring())->get_rulesets(true))
            names.push_back(set->get_name());
        return names;
    }

    static wxButton* ok(wxDialog& dlg) { return suppdlg_test::control<wxButton>(dlg, "m_btn_ok"); }
    static void press_ok(wxDialog& dlg)
    {
        wxCommandEvent event(wxEVT_BUTTON, wxID_OK);
        ok(dlg)->GetEventHandler()->ProcessEvent(event);
    }
};

} // namespace

TEST_F(DeleteSuppressionDialog, TickedRowsOfOneFileAreRemovedWithOneSave)
{
    const auto sets = file->get_rulesets(true);
    delete_suppression_dlg_t dlg({sets[0], sets[2]});
    ASSERT_TRUE(dlg.create(nullptr));
    ASSERT_EQ(dlg.get_model().GetRowCount(), 2);
    EXPECT_EQ(dlg.get_title(), translate(L"dlg.suppressions.del.title"));
    EXPECT_TRUE(dlg.get_model().is_checked(0) && dlg.get_model().is_checked(1));
    EXPECT_EQ(dlg.get_model().GetCellText(0, suppression_grid_model_t::name_column), L"s1");
    EXPECT_TRUE(ok(dlg)->IsEnabled());
    suppdlg_test::screenshot(dlg, "delete_suppression_dialog");

    // Unticking all disables OK; ticking one enables it again.
    dlg.get_model().set_checked(0, false);
    dlg.get_model().set_checked(1, false);
    EXPECT_FALSE(ok(dlg)->IsEnabled());
    dlg.get_model().set_checked(0, true);
    dlg.get_model().set_checked(1, true);
    EXPECT_TRUE(ok(dlg)->IsEnabled());

    // Both rows live in one file: it is saved once.
    const auto updated = dlg.get_updated_files();
    ASSERT_EQ(updated.size(), 1u);
    EXPECT_EQ((*updated.begin())->get_path(), file_path.wstring());

    press_ok(dlg);
    EXPECT_EQ(dlg.GetReturnCode(), wxID_OK);
    EXPECT_TRUE(dlg.is_saved());
    EXPECT_EQ(names_on_disk(), std::vector<std::wstring>{L"s2"});
}

TEST_F(DeleteSuppressionDialog, UntickedRowsStay)
{
    const auto sets = file->get_rulesets(true);
    delete_suppression_dlg_t dlg(sets);
    ASSERT_TRUE(dlg.create(nullptr));
    dlg.get_model().set_checked(1, false);
    press_ok(dlg);
    EXPECT_EQ(names_on_disk(), std::vector<std::wstring>{L"s2"});
}

TEST_F(DeleteSuppressionDialog, EmptyListGivesNoRowsAndNoOk)
{
    delete_suppression_dlg_t dlg({});
    ASSERT_TRUE(dlg.create(nullptr));
    EXPECT_EQ(dlg.get_model().GetRowCount(), 0);
    EXPECT_FALSE(ok(dlg)->IsEnabled());
    EXPECT_TRUE(dlg.get_updated_files().empty());
}

TEST_F(DeleteSuppressionDialog, ViewButtonShowsTheRuleStackReadOnly)
{
    const auto sets = file->get_rulesets(true);
    delete_suppression_dlg_t dlg({sets[1]});
    ASSERT_TRUE(dlg.create(nullptr));
    const rule_ptr rule = dlg.get_model().get_rule(0, 0);
    ASSERT_TRUE(rule);
    corr_test::modal_expectations modal;
    modal.expect_shown<stack_dlg_t>([&](stack_dlg_t& view) {
        EXPECT_FALSE(view.is_select_mode());
        EXPECT_EQ(view.get_model().GetRowCount(), rule->get_stack(true)->stack_size());
        view.EndModal(wxID_CANCEL);
    });
    dlg.on_stack_button(sets[1], rule);
    EXPECT_TRUE(modal.all_met());
}

TEST_F(DeleteSuppressionDialog, OldFormatFileRefusedRewriteStaysByteForByte)
{
    const fs::path old_file = result.suppressions() / "old.sup";
    fs::copy_file(suppdlg_test::test_data("sup/previous_v1.sup"), old_file);
    const std::string before = suppdlg_test::read_bytes(old_file);
    const auto old = probstore3::suppression_file_t::open(old_file.wstring());
    ASSERT_TRUE(old);
    delete_suppression_dlg_t dlg(old->get_rulesets(true));
    ASSERT_TRUE(dlg.create(nullptr));
    {
        corr_test::modal_expectations modal;
        modal.expect_message(shareddlg3::message_window_t::answer_no);
        press_ok(dlg);
        EXPECT_TRUE(modal.all_met());
    }
    EXPECT_FALSE(dlg.is_saved());
    EXPECT_EQ(suppdlg_test::read_bytes(old_file), before);
}

TEST_F(DeleteSuppressionDialog, AFailedSaveKeepsTheRuleSetsAndALaterSaveDropsNoneTheUserKept)
{
    const auto sets = file->get_rulesets(true);
    const std::string on_disk = suppdlg_test::read_bytes(file_path);
    delete_suppression_dlg_t dlg({sets[0], sets[2]});
    ASSERT_TRUE(dlg.create(nullptr));

    // No new file can be written where the file lies: its folder is moved
    // away and a plain file takes its place.
    const fs::path folder = file_path.parent_path();
    const fs::path moved = folder.parent_path() / "weggeräumt ordner";
    fs::rename(folder, moved);
    std::ofstream(folder) << "in the way";
    {
        corr_test::modal_expectations modal;
        modal.expect_message(
            shareddlg3::message_window_t::answer_yes, [&](shareddlg3::message_dialog_t& m) {
                EXPECT_NE(m.message().text().find(file_path.wstring()), std::wstring::npos)
                    << "names the file";
            });
        press_ok(dlg);
        EXPECT_TRUE(modal.all_met());
    }
    EXPECT_FALSE(dlg.is_saved());
    EXPECT_NE(dlg.GetReturnCode(), wxID_OK);
    // Memory says what the file on disk still says.
    EXPECT_EQ(file->get_rulesets(true), sets);
    EXPECT_EQ(file->to_text(), on_disk);
    for (const auto& set : sets)
        EXPECT_EQ(set->get_file(), file);

    // The folder is back; the user keeps s3 after all and confirms again.
    fs::remove(folder);
    fs::rename(moved, folder);
    dlg.get_model().set_checked(1, false);
    press_ok(dlg);
    EXPECT_TRUE(dlg.is_saved());
    EXPECT_EQ(names_on_disk(), (std::vector<std::wstring>{L"s2", L"s3"}));
}
