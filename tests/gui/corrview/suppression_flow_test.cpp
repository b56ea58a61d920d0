// The viewer's whole suppression flow in real windows: two problems selected
// in the problems view, a suppression created for them in a new file typed
// as a relative name, both shown suppressed (also after reopening), then the
// suppression deleted through the delete dialog.
#include "frame_fixture.h"

#include "corr_dialogs2/create_suppression_dlg.h"
#include "corr_dialogs2/delete_suppression_dlg.h"
#include "corr_dialogs2/stack_dialogs.h"
#include "corr_dialogs2/supp_helpers.h"
#include "shareddlg3/message_window.h"
#include "suppfmt3/datatype.h"

#include <wx/button.h>
#include <wx/combobox.h>
#include <wx/notebook.h>
#include <wx/statusbr.h>
#include <wx/textctrl.h>

#include <fstream>

namespace {

using namespace corrview_test;

template <class T> T* control(wxWindow& dialog, const char* name)
{
    T* found = dynamic_cast<T*>(wxWindow::FindWindowByName(name, &dialog));
    EXPECT_TRUE(found) << "no control " << name;
    return found;
}

void click(wxWindow* window)
{
    wxUIActionSimulator sim;
    sim.MouseMove(window->GetScreenRect().GetPosition() + window->GetSize() / 2);
    corr_test::pump_events(20);
    sim.MouseClick();
}

std::vector<probstore3::rule_set_ptr> read_back(const fs::path& file)
{
    std::wstring error;
    const auto loaded = probstore3::suppression_file_t::open(file.wstring(), &error);
    EXPECT_TRUE(loaded) << platkit::strings::wide_to_utf8(error);
    return loaded ? loaded->get_rulesets(true) : std::vector<probstore3::rule_set_ptr>{};
}

void menu(wxFrame& frame, int id)
{
    wxCommandEvent event(wxEVT_MENU, id);
    frame.GetEventHandler()->ProcessEvent(event);
}

TEST_F(frame_test, CreateAndDeleteASuppressionForTwoSelectedProblems)
{
    // The ASan use after free (clicked) and the TSan race (added to the selection).
    const int first = 15, second = 19;
    const auto& problems_list = m_frame->session().problems();
    auto* grid = problems().grid();
    grid->EnsureRowVisible(first);
    corr_test::pump_events();
    wxUIActionSimulator sim;
    sim.MouseMove(cell_on_screen(*grid, *problems().grid_control(), first, 0));
    corr_test::pump_events(20);
    sim.MouseClick();
    ASSERT_TRUE(corr_test::wait_until([&] { return problems().current_problem() == first; }));
    grid->SelectRow(second, true);
    ASSERT_EQ(problems().selected_problems(), (std::vector<size_t>{size_t(first), size_t(second)}));

    const fs::path file = m_result / "suppressions" / "team.sup";
    corr_test::modal_expectations modal;
    modal.expect_shown<corr_dialogs2::create_suppression_dlg_t>(
        [&](corr_dialogs2::create_suppression_dlg_t& dlg) {
            // The candidates are the two problems, in the order of the rows.
            ASSERT_EQ(dlg.get_model().GetRowCount(), 2);
            auto* filelist = control<wxComboBox>(dlg, "m_filelist");
            auto* name = control<wxTextCtrl>(dlg, "m_name");
            name->SetValue(L"Known problems");
            filelist->SetFocus();
            corr_test::wait_until(
                [&] { return filelist->HasFocus() || wxWindow::FindFocus() != nullptr; });
            filelist->SelectAll();
            wxUIActionSimulator typing;
            typing.Text("team.sup");
            ASSERT_TRUE(corr_test::wait_until([&] { return filelist->GetValue() == "team.sup"; }))
                << filelist->GetValue();
            auto* ok = control<wxButton>(dlg, "m_btn_ok");
            ASSERT_TRUE(corr_test::wait_until([&] { return ok->IsEnabled(); }));
            click(ok);
            ASSERT_TRUE(corr_test::wait_until([&] { return !dlg.IsModal(); }));
        });
    menu(*m_frame, corrview::main_frame_t::id_create_suppression);
    EXPECT_TRUE(modal.all_met());

    // One rule set of two rules in the new file, each with the default
    // aspects: type, description and the stack, of which only the best frame.
    ASSERT_TRUE(fs::exists(file));
    const auto sets = read_back(file);
    ASSERT_EQ(sets.size(), 1u);
    EXPECT_EQ(sets[0]->get_name(), L"Known problems");
    ASSERT_EQ(sets[0]->get_rules().size(), 2u);
    const int picked[] = {first, second};
    for (size_t r = 0; r < 2; ++r) {
        const auto& rule = sets[0]->get_rules()[r];
        const auto& problem = problems_list[static_cast<size_t>(picked[r])];
        EXPECT_TRUE(rule->is_item_active(suppfmt3::suppfmt_datatype(9)));
        EXPECT_TRUE(rule->is_item_active(suppfmt3::suppfmt_datatype(60)));
        EXPECT_TRUE(rule->is_item_active(suppfmt3::suppfmt_datatype(95)));
        const auto stack = rule->get_stack(true);
        ASSERT_TRUE(stack);
        for (int f = 0; f < stack->stack_size(); ++f)
            EXPECT_EQ(corr_dialogs2::supp_helpers::is_frame_active(rule, f),
                      f == problem.best_level)
                << r << ":" << f;
    }

    // The views show it at once, and again after reopening.
    auto suppressed_by = [&](int problem) {
        const int row = problems().model().row_of(static_cast<size_t>(problem));
        return problems().model().GetCellText(row, corrview::problems_model_t::col_suppressed_by);
    };
    EXPECT_EQ(suppressed_by(first), L"Known problems");
    EXPECT_EQ(suppressed_by(second), L"Known problems");
    ASSERT_TRUE(m_frame->open_result(basekit2::path_t(m_result)));
    EXPECT_EQ(suppressed_by(first), L"Known problems");
    EXPECT_EQ(suppressed_by(second), L"Known problems");
    ASSERT_EQ(m_frame->suppressions_view()->model().GetRowCount(), 1);

    // View Stack on the selected suppression shows its first rule's stack.
    auto& view = *m_frame->suppressions_view();
    m_frame->notebook()->SetSelection(1);
    view.grid()->SetCurrentRow(0);
    view.grid()->SelectRow(0, true);
    int stack_rows = -1;
    modal.expect<corr_dialogs2::stack_dlg_t>([&](corr_dialogs2::stack_dlg_t& dlg) {
        stack_rows = dlg.get_selection();
        return int(wxID_CANCEL);
    });
    menu(*m_frame, corrview::main_frame_t::id_view_stack);
    EXPECT_TRUE(modal.all_met());
    EXPECT_EQ(stack_rows, -1) << "a stack shown for viewing has no selection";

    // Delete it: one file to save; afterwards the file holds no suppression
    // and nothing is suppressed.
    size_t updated_files = 0;
    modal.expect_shown<corr_dialogs2::delete_suppression_dlg_t>(
        [&](corr_dialogs2::delete_suppression_dlg_t& dlg) {
            updated_files = dlg.get_updated_files().size();
            auto* ok = dynamic_cast<wxButton*>(dlg.FindWindow(wxID_OK));
            ASSERT_TRUE(ok);
            ASSERT_TRUE(corr_test::wait_until([&] { return ok->IsEnabled(); }));
            click(ok);
            ASSERT_TRUE(corr_test::wait_until([&] { return !dlg.IsModal(); }));
        });
    menu(*m_frame, corrview::main_frame_t::id_delete_suppression);
    EXPECT_TRUE(modal.all_met());
    EXPECT_EQ(updated_files, 1u);
    EXPECT_TRUE(read_back(file).empty());
    EXPECT_EQ(suppressed_by(first), L"");
    EXPECT_EQ(suppressed_by(second), L"");
    EXPECT_EQ(m_frame->suppressions_view()->model().GetRowCount(), 0);
    EXPECT_EQ(m_frame->session().suppressed_count(), 0u);

    sim.MouseMove(m_frame->GetScreenRect().GetBottomRight() + wxPoint(20, 20));
    corr_test::pump_events();
}

TEST_F(frame_test, DeleteThatSavedOneFileButNotTheOtherShowsWhatTheFilesHoldAfterCancel)
{
    // One rule set in the result's file, one in the project's.
    std::ofstream(m_tmp / "project.corrproj") << "";
    const fs::path shared_folder = m_tmp / "suppressions";
    fs::create_directories(shared_folder);
    save_rule_set(m_frame->session(), {0}, m_result / "suppressions" / "mine.sup", L"Mine");
    save_rule_set(m_frame->session(), {8}, shared_folder / "shared.sup", L"Shared");
    m_frame->reload_suppressions();
    auto& view = *m_frame->suppressions_view();
    ASSERT_EQ(view.model().GetRowCount(), 2);
    m_frame->notebook()->SetSelection(1);
    view.grid()->SelectRow(0, true);
    view.grid()->SelectRow(1, true);

    // The project's file cannot be written: its folder is moved away and a
    // plain file takes its place until the save has failed.
    const fs::path moved = m_tmp / "ausgelagert ordner";
    fs::rename(shared_folder, moved);
    std::ofstream(shared_folder) << "in the way";
    corr_test::modal_expectations modal;
    modal.expect_shown<corr_dialogs2::delete_suppression_dlg_t>(
        [&](corr_dialogs2::delete_suppression_dlg_t& dlg) {
            corr_test::modal_expectations nested;
            nested.expect_message(shareddlg3::message_window_t::answer_yes);
            click(control<wxButton>(dlg, "m_btn_ok"));
            ASSERT_TRUE(corr_test::wait_until([&] { return nested.all_met(); }));
            corr_test::pump_events(50);
            EXPECT_TRUE(dlg.IsModal()) << "a failed save keeps the dialog open";
            fs::remove(shared_folder);
            fs::rename(moved, shared_folder);
            click(control<wxButton>(dlg, "m_btn_cancel"));
            ASSERT_TRUE(corr_test::wait_until([&] { return !dlg.IsModal(); }));
        });
    menu(*m_frame, corrview::main_frame_t::id_delete_suppression);
    EXPECT_TRUE(modal.all_met());

    // "Mine" is gone from its file, "Shared" is still in its own: the views
    // say so although the user cancelled.
    EXPECT_TRUE(read_back(m_result / "suppressions" / "mine.sup").empty());
    ASSERT_EQ(read_back(shared_folder / "shared.sup").size(), 1u);
    ASSERT_EQ(view.model().GetRowCount(), 1);
    EXPECT_EQ(view.model().get_rule_set(0)->get_name(), L"Shared");
    const int row = problems().model().row_of(0);
    EXPECT_EQ(problems().model().GetCellText(row, corrview::problems_model_t::col_suppressed_by),
              L"");
}

TEST_F(frame_test, CreateWithNothingSelectedAsksForASelection)
{
    problems().grid()->ClearSelection();
    problems().grid()->SetCurrentRow(-1);
    corr_test::modal_expectations modal; // no dialog may appear
    menu(*m_frame, corrview::main_frame_t::id_create_suppression);
    EXPECT_EQ(m_frame->GetStatusBar()->GetStatusText().ToStdWstring(),
              L"Select the problems to suppress first.");
    menu(*m_frame, corrview::main_frame_t::id_delete_suppression);
    EXPECT_EQ(m_frame->GetStatusBar()->GetStatusText().ToStdWstring(),
              L"Select suppressions in this list first.");
    EXPECT_EQ(m_frame->notebook()->GetSelection(), 1);
}

} // namespace
