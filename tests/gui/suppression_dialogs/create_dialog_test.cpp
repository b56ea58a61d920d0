// The create-suppression dialog in a real window, on a result imported from
// recorded Valgrind output: the file it writes is read back with the rule
// data library and matched against the problems.
#include "suppdlg_fixture.h"

#include "corr_dialogs2/create_suppression_dlg.h"
#include "corr_dialogs2/stack_dialogs.h"
#include "corr_dialogs2/supp_helpers.h"
#include "corr_dialogs2/ui_utils.h"
#include "modal_expectations.h"

#include "basekit2/config.h"
#include "probstore3/suppression_matcher.h"
#include "shareddlg3/message_window.h"
#include "shareddlg3/utils.h"
#include "wxkit1/ui_settings.h"

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/choice.h>
#include <wx/combobox.h>
#include <wx/msgdlg.h>
#include <wx/textctrl.h>
#include <wx/uiaction.h>
#include <wx/xrc/xmlres.h>

using namespace corr_dialogs2;
namespace fs = std::filesystem;

namespace {

class CreateSuppressionDialog : public testing::Test
{
protected:
    suppdlg_test::temp_dir dir;
    suppdlg_test::result_t result{dir / "result", {"memcheck_overflow.xml", "memcheck_use_after_free.xml"}};
    std::vector<probstore3::problem_t> problems = suppdlg_test::two_problems(result);
    probstore3::rule_set_ptr candidates = probstore3::create_candidate_rule_set(problems);
    std::unique_ptr<create_suppression_dlg_t> dlg;

    void open()
    {
        dlg = std::make_unique<create_suppression_dlg_t>(candidates, result.engine.get());
        ASSERT_TRUE(dlg->create(nullptr));
        dlg->Show();
        ASSERT_TRUE(corr_test::wait_until([&] { return dlg->IsShownOnScreen(); }));
    }
    void TearDown() override { dlg.reset(); }

    wxComboBox* filelist() { return suppdlg_test::control<wxComboBox>(*dlg, "m_filelist"); }
    wxTextCtrl* name() { return suppdlg_test::control<wxTextCtrl>(*dlg, "m_name"); }
    wxButton* ok() { return suppdlg_test::control<wxButton>(*dlg, "m_btn_ok"); }
    void press_ok()
    {
        wxCommandEvent event(wxEVT_BUTTON, wxID_OK);
        event.SetEventObject(ok());
        ok()->GetEventHandler()->ProcessEvent(event);
    }
    bool ended_ok() const { return !dlg->IsShown() && dlg->GetReturnCode() == wxID_OK; }

    std::vector<probstore3::rule_set_ptr> read_back(const fs::path& file)
    {
        std::wstring error;
        const auto loaded = probstore3::suppression_file_t::open(file.wstring(), &error);
        EXPECT_TRUE(loaded) << platkit::strings::wide_to_utf8(error);
        return loaded ? loaded->get_rulesets(true) : std::vector<probstore3::rule_set_ptr>{};
    }
};

} // namespace

TEST_F(CreateSuppressionDialog, NewRelativeFileGetsOneRuleSetOfDefaultRulesThatSuppressBothProblems)
{
    open();
    ASSERT_EQ(dlg->get_model().GetRowCount(), 2);
    EXPECT_TRUE(dlg->get_model().is_checked(0) && dlg->get_model().is_checked(1));
    EXPECT_EQ(name()->GetValue().ToStdWstring(), translate(L"dlg.suppressions.new.sample"));
    EXPECT_FALSE(ok()->IsEnabled()) << "no file chosen yet";
    EXPECT_EQ(suppdlg_test::tooltip_of(filelist()), get_file_name_tooltip(file_name_problem_t::empty));

    // Typed for real, key by key.
    filelist()->SetFocus();
    ASSERT_TRUE(corr_test::wait_until([&] { return filelist()->HasFocus() || wxWindow::FindFocus() != nullptr; }));
    wxUIActionSimulator sim;
    sim.Text("team.sup");
    ASSERT_TRUE(corr_test::wait_until([&] { return filelist()->GetValue() == "team.sup"; }))
        << filelist()->GetValue();
    ASSERT_TRUE(corr_test::wait_until([&] { return ok()->IsEnabled(); }));
    EXPECT_TRUE(suppdlg_test::tooltip_of(filelist()).empty());
    name()->SetValue(L"Overflow and use after free");
    suppdlg_test::screenshot(*dlg, "create_suppression_dialog");

    const wxPoint centre = ok()->GetScreenRect().GetPosition() + ok()->GetSize() / 2;
    sim.MouseMove(centre);
    sim.MouseClick();
    ASSERT_TRUE(corr_test::wait_until([&] { return !dlg->IsShown(); }));
    EXPECT_EQ(dlg->GetReturnCode(), wxID_OK);
    EXPECT_TRUE(dlg->is_saved());
    ASSERT_TRUE(dlg->get_new_suppression_file());

    const fs::path file = result.suppressions() / "team.sup";
    ASSERT_TRUE(fs::exists(file));
    const auto sets = read_back(file);
    ASSERT_EQ(sets.size(), 1u);
    EXPECT_EQ(sets[0]->get_name(), L"Overflow and use after free");
    EXPECT_EQ(sets[0]->get_type(), suppfmt3::srt_best_location);
    ASSERT_EQ(sets[0]->get_rules().size(), 2u);
    for (const auto& rule : sets[0]->get_rules()) {
        EXPECT_TRUE(rule->is_item_active(suppfmt3::sdt_problem_type));
        EXPECT_TRUE(rule->is_item_active(suppfmt3::sdt_description));
        const stack_ptr stack = rule->get_stack(false);
        ASSERT_TRUE(stack);
        EXPECT_EQ(supp_helpers::get_active_frames_count(stack), 1);
        const int best = stack->get_best_level();
        EXPECT_TRUE(stack->is_frame_active(best));
        EXPECT_TRUE(stack->is_frame_field_active(best, suppfmt3::sdt_module));
        EXPECT_TRUE(stack->is_frame_field_active(best, suppfmt3::sdt_function));
    }

    const auto loaded = probstore3::suppression_file_t::open(file.wstring());
    const auto matcher = probstore3::suppression_matcher_t::from_files({loaded});
    for (const auto& problem : problems)
        EXPECT_TRUE(matcher.match(problem)) << "problem " << problem.id << " is suppressed";
    // Another problem of the result, at another place, is not.
    size_t unsuppressed = 0;
    for (const auto& problem : result.problems())
        unsuppressed += matcher.match(problem) ? 0 : 1;
    EXPECT_GT(unsuppressed, 0u);
}

TEST_F(CreateSuppressionDialog, InvalidNamesDisableOkWithTheirTooltipAndHighlight)
{
    open();
    const wxColour highlight = wxkit1::ui_settings_t::get_color(wxkit1::ui_settings_t::color_invalid_input);
    struct case_t
    {
        std::wstring text;
        file_name_problem_t problem;
    };
    const case_t cases[] = {{L"lpt1", file_name_problem_t::reserved},
                            {L"..", file_name_problem_t::dots},
                            {L"   ", file_name_problem_t::empty},
                            {L"a<b.sup", file_name_problem_t::bad_chars},
                            {std::wstring(300, L'x'), file_name_problem_t::too_long},
                            {L"CON." + std::wstring(300, L'x'), file_name_problem_t::reserved}};
    for (const auto& c : cases) {
        filelist()->SetValue(c.text);
        EXPECT_FALSE(ok()->IsEnabled()) << platkit::strings::wide_to_utf8(c.text);
        EXPECT_EQ(suppdlg_test::tooltip_of(filelist()), get_file_name_tooltip(c.problem));
        EXPECT_EQ(filelist()->GetBackgroundColour(), highlight);
    }
    filelist()->SetValue(L"fine.sup");
    EXPECT_TRUE(ok()->IsEnabled());
    EXPECT_NE(filelist()->GetBackgroundColour(), highlight);

    // A blank rule-set name: its own field is marked.
    name()->SetValue(L"  ");
    EXPECT_FALSE(ok()->IsEnabled());
    EXPECT_EQ(suppdlg_test::tooltip_of(name()), get_rule_set_name_tooltip());
    EXPECT_EQ(name()->GetBackgroundColour(), highlight);
    name()->SetValue(L"x");
    EXPECT_TRUE(ok()->IsEnabled());

    // No checked row.
    dlg->get_model().set_checked(0, false);
    EXPECT_TRUE(ok()->IsEnabled());
    dlg->get_model().set_checked(1, false);
    EXPECT_FALSE(ok()->IsEnabled());
    dlg->get_model().set_checked(1, true);
    EXPECT_TRUE(ok()->IsEnabled());
}

TEST_F(CreateSuppressionDialog, UncheckedRowsAndTheAnyProblemChoiceShapeTheRuleSet)
{
    open();
    dlg->get_model().set_checked(0, false);
    wxChoice* problem = suppdlg_test::control<wxChoice>(*dlg, "m_choice_problem");
    ASSERT_EQ(problem->GetCount(), 2u);
    EXPECT_EQ(problem->GetString(1).ToStdWstring(), translate(L"dlg.suppression_grid.any_value"));
    problem->SetSelection(1);
    filelist()->SetValue(L"any.sup");
    press_ok();
    ASSERT_TRUE(ended_ok());
    const auto sets = read_back(result.suppressions() / "any.sup");
    ASSERT_EQ(sets.size(), 1u);
    ASSERT_EQ(sets[0]->get_rules().size(), 1u) << "only the checked row";
    EXPECT_FALSE(sets[0]->get_rules()[0]->is_item_active(suppfmt3::sdt_problem_type));
}

TEST_F(CreateSuppressionDialog, AnyProblemAppliesToEveryRule)
{
    open();
    suppdlg_test::control<wxChoice>(*dlg, "m_choice_problem")->SetSelection(1);
    const auto rules = dlg->get_rules_from_dialog();
    ASSERT_EQ(rules.size(), 2u);
    for (const auto& rule : rules)
        EXPECT_FALSE(rule->is_item_active(suppfmt3::sdt_problem_type));
}

TEST_F(CreateSuppressionDialog, AnyProblemTypeIsTakenBackWhenOkSavesNothing)
{
    const fs::path outside = dir / "somewhere else" / "shared.sup";
    fs::create_directories(outside.parent_path());
    fs::copy_file(suppdlg_test::test_data("sup/canonical_v2.sup"), outside);
    open();
    wxChoice* problem = suppdlg_test::control<wxChoice>(*dlg, "m_choice_problem");
    const std::wstring concrete = problem->GetString(0).ToStdWstring();
    auto pick = [&](const std::wstring& entry) {
        problem->SetFocus();
        ASSERT_TRUE(corr_test::wait_until([&] { return problem->HasFocus(); }));
        wxUIActionSimulator sim;
        ASSERT_TRUE(sim.Select(entry));
        ASSERT_TRUE(corr_test::wait_until([&] { return problem->GetStringSelection() == entry; }));
    };
    pick(translate(L"dlg.suppression_grid.any_value"));
    filelist()->SetValue(outside.wstring());
    {
        // Not into that file after all: back in the dialog, nothing saved.
        corr_test::modal_expectations modal;
        modal.expect_message(shareddlg3::message_window_t::answer_no);
        press_ok();
        EXPECT_TRUE(modal.all_met());
    }
    ASSERT_TRUE(dlg->IsShown());
    for (int row = 0; row < dlg->get_model().GetRowCount(); ++row)
        EXPECT_TRUE(dlg->get_model().get_rule(row)->is_item_active(suppfmt3::sdt_problem_type))
            << row;

    // The user goes back to the concrete type and agrees this time.
    pick(concrete);
    corr_test::modal_expectations modal;
    modal.expect_message(shareddlg3::message_window_t::answer_yes);
    press_ok();
    ASSERT_TRUE(ended_ok());
    const auto sets = read_back(outside);
    ASSERT_EQ(sets.size(), 3u);
    ASSERT_EQ(sets.back()->get_rules().size(), 2u);
    for (const auto& rule : sets.back()->get_rules())
        EXPECT_TRUE(rule->is_item_active(suppfmt3::sdt_problem_type));
}

TEST_F(CreateSuppressionDialog, ANameTypedWithoutExtensionMakesASupFileTheResultReadsAgain)
{
    open();
    filelist()->SetFocus();
    ASSERT_TRUE(corr_test::wait_until(
        [&] { return filelist()->HasFocus() || wxWindow::FindFocus() != nullptr; }));
    filelist()->SelectAll();
    wxUIActionSimulator sim;
    sim.Text("known-leaks");
    ASSERT_TRUE(corr_test::wait_until([&] {
        return filelist()->GetValue() == "known-leaks" && ok()->IsEnabled();
    })) << filelist()->GetValue()
        << " " << suppdlg_test::tooltip_of(filelist());
    press_ok();
    ASSERT_TRUE(ended_ok());
    EXPECT_FALSE(fs::exists(result.suppressions() / "known-leaks"));
    ASSERT_TRUE(dlg->get_new_suppression_file());
    EXPECT_EQ(fs::path(dlg->get_new_suppression_file()->get_path()),
              result.suppressions() / "known-leaks.sup");
    // What the result's folder listing (and with it the matcher and the viewer) reads.
    const corr_engine::suppressions_manager_t manager;
    const auto listed = manager.get_result_suppressions(result.engine->get_marker_file());
    ASSERT_EQ(listed.size(), 1u);
    EXPECT_EQ(fs::path(listed[0]->get_path()), result.suppressions() / "known-leaks.sup");
    EXPECT_EQ(listed[0]->get_rulesets(true).size(), 1u);
}

TEST_F(CreateSuppressionDialog, AFolderTypedAsTheFileIsRefusedWithItsTooltip)
{
    fs::create_directories(result.suppressions() / "older ones");
    open();
    const std::wstring folder_tip = get_file_name_tooltip(file_name_problem_t::folder);
    for (const std::wstring& typed :
         {(dir / "elsewhere").wstring() + L"/", result.suppressions().wstring(),
          std::wstring(L"older ones")}) {
        filelist()->SetValue(typed);
        EXPECT_FALSE(ok()->IsEnabled()) << fs::path(typed);
        EXPECT_EQ(suppdlg_test::tooltip_of(filelist()), folder_tip) << fs::path(typed);
    }
    filelist()->SetValue(L"older ones.sup");
    EXPECT_TRUE(ok()->IsEnabled());
    EXPECT_TRUE(suppdlg_test::tooltip_of(filelist()).empty());
}

TEST_F(CreateSuppressionDialog, AbsolutePathGetsTheSuppressionExtension)
{
    open();
    const fs::path typed = result.suppressions() / "mine.txt";
    filelist()->SetValue(typed.wstring());
    ASSERT_TRUE(ok()->IsEnabled()) << suppdlg_test::tooltip_of(filelist());
    press_ok();
    ASSERT_TRUE(ended_ok());
    EXPECT_FALSE(fs::exists(typed));
    EXPECT_EQ(read_back(result.suppressions() / "mine.sup").size(), 1u);
}

TEST_F(CreateSuppressionDialog, ExistingFileOutsideTheResultIsAskedAboutAndRefusalChangesNothing)
{
    const fs::path outside = dir / "elsewhere" / "shared.sup";
    fs::create_directories(outside.parent_path());
    fs::copy_file(suppdlg_test::test_data("sup/canonical_v2.sup"), outside);
    const std::string before = suppdlg_test::read_bytes(outside);
    open();
    filelist()->SetValue(outside.wstring());
    ASSERT_TRUE(ok()->IsEnabled());
    {
        corr_test::modal_expectations modal;
        modal.expect_message(shareddlg3::message_window_t::answer_no, [&](shareddlg3::message_dialog_t& d) {
            EXPECT_EQ(d.message().title(), translate(L"dlg.suppressions.supp_file_exists_title"));
            EXPECT_NE(d.message().text().find(outside.wstring()), std::wstring::npos);
        });
        press_ok();
        EXPECT_TRUE(modal.all_met());
    }
    EXPECT_TRUE(dlg->IsShown()) << "the user is back in the dialog";
    EXPECT_FALSE(dlg->get_new_suppression_file());
    EXPECT_EQ(suppdlg_test::read_bytes(outside), before);

    // Agreeing adds the rule set to that file.
    corr_test::modal_expectations modal;
    modal.expect_message(shareddlg3::message_window_t::answer_yes);
    press_ok();
    ASSERT_TRUE(ended_ok());
    EXPECT_EQ(read_back(outside).size(), 3u);
}

TEST_F(CreateSuppressionDialog, OldFormatFileAsksToRewriteAndRefusalLeavesItByteForByte)
{
    const fs::path old_file = result.suppressions() / "old.sup";
    fs::create_directories(result.suppressions());
    fs::copy_file(suppdlg_test::test_data("sup/previous_v1.sup"), old_file);
    const std::string before = suppdlg_test::read_bytes(old_file);
    open();
    ASSERT_EQ(filelist()->GetCount(), 1u);
    EXPECT_EQ(filelist()->GetString(0).ToStdWstring(), old_file.wstring());
    filelist()->SetValue(filelist()->GetString(0)); // as picking it from the list does
    ASSERT_TRUE(ok()->IsEnabled()) << suppdlg_test::tooltip_of(filelist());
    {
        corr_test::modal_expectations modal;
        modal.expect_message(shareddlg3::message_window_t::answer_no, [&](shareddlg3::message_dialog_t& d) {
            EXPECT_EQ(d.message().title(), translate(L"dlg.suppressions.files_rewrite_title"));
            EXPECT_NE(d.message().text().find(old_file.wstring()), std::wstring::npos);
        });
        press_ok();
        EXPECT_TRUE(modal.all_met());
    }
    EXPECT_TRUE(ended_ok()) << "declining ends the operation";
    EXPECT_FALSE(dlg->is_saved());
    EXPECT_EQ(suppdlg_test::read_bytes(old_file), before);
}

TEST_F(CreateSuppressionDialog, OldFormatFileIsRewrittenWhenTheUserAgrees)
{
    const fs::path old_file = result.suppressions() / "old.sup";
    fs::create_directories(result.suppressions());
    fs::copy_file(suppdlg_test::test_data("sup/previous_v1.sup"), old_file);
    const size_t sets_before = read_back(old_file).size();
    open();
    filelist()->SetValue(filelist()->GetString(0)); // as picking it from the list does
    corr_test::modal_expectations modal;
    modal.expect_message(shareddlg3::message_window_t::answer_yes);
    press_ok();
    ASSERT_TRUE(ended_ok());
    EXPECT_TRUE(dlg->is_saved());
    EXPECT_FALSE(dlg->get_new_suppression_file()) << "a listed file was used";
    std::wstring error;
    const auto rewritten = probstore3::suppression_file_t::open(old_file.wstring(), &error);
    ASSERT_TRUE(rewritten) << platkit::strings::wide_to_utf8(error);
    EXPECT_EQ(rewritten->get_file_format(), probstore3::suppression_file_t::get_current_file_format());
    EXPECT_EQ(rewritten->get_rulesets(true).size(), sets_before + 1);
}

TEST_F(CreateSuppressionDialog, DefaultFileComesFromTheUserConfiguration)
{
    basekit2::advanced_xml_config_t config;
    config.set(L"default_filename", platkit::types::variant(std::wstring(L"team-default.sup")));
    ASSERT_TRUE(config.save(basekit2::config_manager_t::get_user_config(L"dialogs2.suppressions")));
    open();
    const fs::path expected = result.suppressions() / "team-default.sup";
    EXPECT_EQ(dlg->get_default_filepath().fs(), expected);
    EXPECT_EQ(filelist()->GetValue().ToStdWstring(), expected.wstring());
    EXPECT_TRUE(ok()->IsEnabled());
    press_ok();
    ASSERT_TRUE(ended_ok());
    EXPECT_TRUE(fs::exists(expected));
}

TEST_F(CreateSuppressionDialog, BrowseFillsTheFileField)
{
    open();
    const fs::path chosen = dir / "picked.sup";
    corr_test::modal_expectations modal;
    modal.expect_file(basekit2::path_t(chosen));
    wxCommandEvent event(wxEVT_BUTTON, XRCID("m_btn_browse"));
    suppdlg_test::control<wxButton>(*dlg, "m_btn_browse")->GetEventHandler()->ProcessEvent(event);
    EXPECT_TRUE(modal.all_met());
    EXPECT_EQ(filelist()->GetValue().ToStdWstring(), chosen.wstring());
}

TEST_F(CreateSuppressionDialog, StackButtonOpensTheEditorOnThatRule)
{
    open();
    const rule_ptr rule = dlg->get_model().get_rule(1);
    corr_test::modal_expectations modal;
    modal.expect_shown<edit_stack_dlg_t>([&](edit_stack_dlg_t& editor) {
        EXPECT_EQ(editor.get_rule().get(), rule.get());
        // Use every frame of the stack.
        for (int row = 0; row < editor.get_model().get_count(); ++row)
            editor.get_model().set_checked(row, true);
        wxCommandEvent event(wxEVT_BUTTON, wxID_OK);
        editor.GetEventHandler()->ProcessEvent(event);
    });
    dlg->on_stack_button(1);
    EXPECT_TRUE(modal.all_met());
    const stack_ptr stack = rule->get_stack(false);
    EXPECT_EQ(supp_helpers::get_active_frames_count(stack), stack->stack_size());

    filelist()->SetValue(L"custom.sup");
    press_ok();
    ASSERT_TRUE(ended_ok());
    const auto sets = read_back(result.suppressions() / "custom.sup");
    ASSERT_EQ(sets.size(), 1u);
    EXPECT_EQ(sets[0]->get_type(), suppfmt3::srt_custom_stack);
}

TEST(CreateSuppressionDialogWithoutRules, NullRuleSetGivesAnEmptyGridAndNoOk)
{
    suppdlg_test::temp_dir dir;
    suppdlg_test::result_t result{dir / "result", {"memcheck_overflow.xml"}};
    create_suppression_dlg_t dlg(nullptr, result.engine.get());
    ASSERT_TRUE(dlg.create(nullptr));
    suppdlg_test::control<wxComboBox>(dlg, "m_filelist")->SetValue(L"x.sup");
    EXPECT_EQ(dlg.get_model().GetRowCount(), 0);
    EXPECT_FALSE(suppdlg_test::control<wxButton>(dlg, "m_btn_ok")->IsEnabled());
}
