// The stack editor and the stack view in real windows, on rules made from
// recorded problems.
#include "suppdlg_fixture.h"

#include "corr_dialogs2/stack_dialogs.h"
#include "corr_dialogs2/supp_helpers.h"
#include "corr_dialogs2/ui_utils.h"

#include <wx/button.h>
#include <wx/statline.h>
#include <wx/uiaction.h>
#include <wx/xrc/xmlres.h>

using namespace corr_dialogs2;
namespace fs = std::filesystem;

namespace {

// A candidate rule of a problem with a stack of several frames.
class StackDialogs : public testing::Test
{
protected:
    suppdlg_test::temp_dir dir;
    suppdlg_test::result_t result{dir / "result", {"helgrind_template_race.xml"}};
    rule_ptr rule;

    void SetUp() override
    {
        for (const auto& problem : result.problems()) {
            if (!problem.stacks.empty() && problem.stacks[0].frames.size() >= 4 && problem.best_frame()) {
                rule = probstore3::create_rule(problem);
                break;
            }
        }
        ASSERT_TRUE(rule) << "a recorded problem with a deep stack";
        supp_helpers::reset_to_default(rule);
    }

    static void press(wxWindow& dialog, int id)
    {
        wxCommandEvent event(wxEVT_BUTTON, id);
        dialog.GetEventHandler()->ProcessEvent(event);
    }
};

bool only_best_frame_with_every_field(const rule_ptr& rule)
{
    const stack_ptr stack = rule->get_stack(false);
    const int best = stack->get_best_level();
    for (int i = 0; i < stack->stack_size(); ++i)
        if (stack->is_frame_active(i) != (i == best))
            return false;
    return stack->is_frame_field_active(best, suppfmt3::sdt_module) &&
           stack->is_frame_field_active(best, suppfmt3::sdt_function);
}

} // namespace

TEST_F(StackDialogs, EditorShowsTheRuleAndResetRestoresTheDefault)
{
    edit_stack_dlg_t dlg(rule);
    ASSERT_TRUE(dlg.create(nullptr));
    const stack_ptr stack = rule->get_stack(false);
    const int frames = stack->stack_size();
    ASSERT_EQ(dlg.get_model().GetRowCount(), frames);
    EXPECT_EQ(dlg.get_best_level(), stack->get_best_level());
    for (int row = 0; row < frames; ++row)
        EXPECT_EQ(dlg.get_model().is_checked(row), row == dlg.get_best_level()) << row;

    // The user's edits, straight on the rule...
    for (int row = 0; row < frames; ++row)
        supp_helpers::set_frame_active(rule, row, true);
    supp_helpers::set_stack_item_active(stack->get_item(), dlg.get_best_level(), suppfmt3::sdt_function, false);
    dlg.init_checkboxes();
    EXPECT_TRUE(dlg.get_model().is_checked(0) && dlg.get_model().is_checked(frames - 1));
    suppdlg_test::screenshot(dlg, "edit_stack_dialog");

    // ...and Default, clicked for real.
    wxButton* reset = suppdlg_test::control<wxButton>(dlg, "m_btn_reset");
    ASSERT_TRUE(reset);
    wxUIActionSimulator sim;
    sim.MouseMove(reset->GetScreenRect().GetPosition() + reset->GetSize() / 2);
    sim.MouseClick();
    ASSERT_TRUE(corr_test::wait_until([&] { return only_best_frame_with_every_field(rule); }));
    for (int row = 0; row < frames; ++row)
        EXPECT_EQ(dlg.get_model().is_checked(row), row == dlg.get_best_level()) << row;
}

TEST_F(StackDialogs, FrameTicksAndFieldChoicesReachTheRuleOnOk)
{
    edit_stack_dlg_t dlg(rule);
    ASSERT_TRUE(dlg.create(nullptr));
    dlg.Show();
    const int best = dlg.get_best_level();
    const int other = best == 0 ? 1 : 0;
    auto& model = dlg.get_model();
    gridview8::CGrid* grid = dlg.get_grid();
    ASSERT_TRUE(grid);

    model.set_checked(other, true);
    EXPECT_FALSE(supp_helpers::is_frame_active(rule, other)) << "ticks wait for OK";

    // The function of the best frame becomes any value, through the grid's editor.
    const int function_col = 1;
    ASSERT_EQ(model.get_column_datatype(function_col), suppfmt3::sdt_function);
    ASSERT_TRUE(grid->BeginEdit(best, function_col));
    auto* combo = dynamic_cast<uiframe7::CComboBox*>(model.GetEditorInt(best, function_col));
    ASSERT_TRUE(combo);
    ASSERT_EQ(combo->GetCount(), 2);
    EXPECT_EQ(combo->GetString(1), translate(L"dlg.suppression_grid.any_value"));
    combo->SetSelection(1);
    grid->EndEdit(true);

    press(dlg, wxID_OK);
    EXPECT_EQ(dlg.GetReturnCode(), wxID_OK);
    const stack_ptr stack = rule->get_stack(false);
    EXPECT_TRUE(stack->is_frame_active(other));
    EXPECT_TRUE(stack->is_frame_active(best));
    EXPECT_FALSE(stack->is_frame_field_active(best, suppfmt3::sdt_function));
    EXPECT_TRUE(stack->is_frame_field_active(best, suppfmt3::sdt_module));
}

TEST_F(StackDialogs, CancelPutsTheRuleBack)
{
    const std::wstring before = create_stack_line(rule->get_stack(false), rule->get_stack(false)->get_best_level());
    edit_stack_dlg_t dlg(rule);
    ASSERT_TRUE(dlg.create(nullptr));
    const stack_ptr stack = rule->get_stack(false);
    supp_helpers::set_stack_item_active(stack->get_item(), stack->get_best_level(), suppfmt3::sdt_module, false);
    dlg.get_model().set_checked(0, !dlg.get_model().is_checked(0));
    press(dlg, wxID_CANCEL);
    EXPECT_EQ(dlg.GetReturnCode(), wxID_CANCEL);
    EXPECT_TRUE(only_best_frame_with_every_field(rule));
    EXPECT_EQ(create_stack_line(rule->get_stack(false), rule->get_stack(false)->get_best_level()), before);
}

TEST_F(StackDialogs, ViewModeShowsEveryFrameAndSelectsNothing)
{
    const stack_ptr stack = rule->get_stack(true);
    stack_dlg_t dlg(stack, false, 2);
    ASSERT_TRUE(dlg.create(nullptr));
    EXPECT_EQ(dlg.get_title(), translate(L"dlg.suppressions.stack.title.view"));
    EXPECT_EQ(dlg.get_model().GetRowCount(), stack->stack_size());
    EXPECT_EQ(dlg.get_model().GetCellText(stack->get_best_level(), 0), create_stack_line(stack, stack->get_best_level()));
    EXPECT_EQ(dlg.get_selection(), -1);
    EXPECT_FALSE(dlg.has_selection());
    EXPECT_FALSE(suppdlg_test::control<wxButton>(dlg, "m_btn_ok")->IsShown());
    EXPECT_FALSE(suppdlg_test::control<wxStaticLine>(dlg, "m_staticline4")->IsShown());
    suppdlg_test::screenshot(dlg, "stack_dialog_view");
    press(dlg, wxID_CANCEL);
    EXPECT_EQ(dlg.GetReturnCode(), wxID_CANCEL);
}

TEST_F(StackDialogs, SelectModeEndsOnlyWithOneSelectedRow)
{
    const stack_ptr stack = rule->get_stack(false);
    stack_dlg_t dlg(stack, true, 1);
    ASSERT_TRUE(dlg.create(nullptr));
    dlg.Show();
    EXPECT_EQ(dlg.get_title(), translate(L"dlg.suppressions.stack.title.select"));
    EXPECT_TRUE(suppdlg_test::control<wxButton>(dlg, "m_btn_ok")->IsShown());
    EXPECT_EQ(dlg.get_selection(), 1);
    gridview8::CGrid* grid = dlg.get_grid();
    ASSERT_TRUE(grid);
    EXPECT_TRUE(grid->IsRowSelected(1));

    grid->ClearSelection();
    press(dlg, wxID_OK);
    EXPECT_TRUE(dlg.IsShown()) << "no row selected: the dialog stays";

    grid->SelectRow(3, true);
    press(dlg, wxID_OK);
    EXPECT_FALSE(dlg.IsShown());
    EXPECT_EQ(dlg.GetReturnCode(), wxID_OK);
    EXPECT_EQ(dlg.get_selection(), 3);
    EXPECT_TRUE(dlg.has_selection());
}
