// The viewer's main window in a real window: opening the sample result,
// the stack pane following the selection, import through the menu action.
#include "frame_fixture.h"
#include "painted_buttons.h"

#include "host/problem_text.h"
#include "ui/import_progress_dlg.h"

#include "corr_dialogs2/export_dialog.h"
#include "corr_dialogs2/files_filter_dialog.h"
#include "corr_dialogs2/ui_utils.h"
#include "corr_engine/archiver.h"
#include "shareddlg3/file_dialogs.h"

#include <wx/button.h>
#include <wx/msgdlg.h>
#include <wx/notebook.h>
#include <wx/statusbr.h>

#include <cstdlib>

namespace {

using namespace corrview_test;

TEST_F(frame_test, OpensTheSampleResultAndListsItsProblems)
{
    const auto& model = problems().model();
    ASSERT_EQ(model.GetRowCount(), 24);
    EXPECT_EQ(problems().grid()->GetModel(), &model);
    const auto& first = m_frame->session().problems()[0];
    EXPECT_EQ(model.GetCellText(0, corrview::problems_model_t::col_type), L"Invalid read");
    EXPECT_EQ(model.GetCellText(0, corrview::problems_model_t::col_location),
              corrview::best_location_text(first));
    EXPECT_EQ(model.GetCellText(0, corrview::problems_model_t::col_suppressed_by), L"");
    // Texts come from the catalogue: no fall-back text anywhere in sight.
    EXPECT_EQ(model.GetColumnCaption(corrview::problems_model_t::col_suppressed_by),
              L"Suppressed by");
    EXPECT_EQ(m_frame->GetTitle().ToStdWstring(), L"sample - Correctness Analyzer Viewer");
    EXPECT_EQ(m_frame->GetStatusBar()->GetStatusText().ToStdWstring(),
              L"24 problems, 0 suppressed by 0 suppressions");
    EXPECT_EQ(m_frame->notebook()->GetPageText(1).ToStdWstring(), L"Suppressions");
    // The first problem is current and its stacks are shown.
    EXPECT_EQ(problems().current_problem(), 0);
    EXPECT_EQ(problems().stack_model().shown_problem(), 0);

    // Sorting by a column reorders the rows, not the problems.
    auto& sortable = const_cast<corrview::problems_model_t&>(model);
    sortable.OnSortColumn(corrview::problems_model_t::col_type,
                          gridview8::IHeaderItem::sdAscending);
    EXPECT_EQ(model.GetCellText(0, corrview::problems_model_t::col_type), L"Data race");
    EXPECT_EQ(model.GetCellText(23, corrview::problems_model_t::col_type), L"Undefined behavior");
    sortable.OnSortColumn(corrview::problems_model_t::col_type, gridview8::IHeaderItem::sdNone);
    EXPECT_EQ(model.problem_at(5), 5);
}

TEST_F(frame_test, SuppressionFileAddedShowsInBothViews)
{
    save_rule_set(m_frame->session(), {0, 8}, m_result / "suppressions" / "team.sup", L"Known");
    m_frame->reload_suppressions();

    const auto& model = problems().model();
    EXPECT_EQ(model.GetCellText(0, corrview::problems_model_t::col_suppressed_by), L"Known");
    EXPECT_EQ(model.GetCellText(8, corrview::problems_model_t::col_suppressed_by), L"Known");
    EXPECT_EQ(model.GetCellText(1, corrview::problems_model_t::col_suppressed_by), L"");
    gridview8::CCellAttr attr;
    EXPECT_TRUE(model.GetAttr(0, 0, attr) && attr.grayed);
    const auto suppressed = m_frame->session().suppressed_count();
    EXPECT_GE(suppressed, 2u);
    EXPECT_EQ(m_frame->GetStatusBar()->GetStatusText().ToStdWstring(),
              L"24 problems, " + std::to_wstring(suppressed) + L" suppressed by 1 suppressions");

    auto& view = *m_frame->suppressions_view();
    ASSERT_EQ(view.model().GetRowCount(), 1);
    EXPECT_EQ(view.model().get_rule_set(0)->get_name(), L"Known");
    EXPECT_EQ(view.model().get_rule_count(0), 2);
    EXPECT_EQ(fs::path(view.model().get_file_path(0)), m_result / "suppressions" / "team.sup");

    // The view button of the second rule's line names that rule.
    m_frame->notebook()->SetSelection(1);
    ASSERT_TRUE(corr_test::wait_until([&] { return view.grid_control()->IsShownOnScreen(); }));
    corr_test::pump_events(100);
    corr_dialogs2::rule_ptr viewed;
    view.on_view_stack([&](const corr_dialogs2::rule_ptr& rule) { viewed = rule; });
    // Clicked where the grid drew the button, and hovered first: the
    // tool-tip says what the button does.
    const int code = corr_dialogs2::suppression_grid_model_t::code_location_column;
    wxPoint at;
    {
        corr_test::painted_buttons painted(*view.grid());
        ASSERT_TRUE(corr_test::wait_until([&] { return painted.in_cell(0, code).size() == 2; }));
        at = corr_test::centre_on_screen(painted.in_cell(0, code)[1],
                                         *view.grid_control()->GetSysWindow());
    }
    wxUIActionSimulator sim;
    sim.MouseMove(at);
    ASSERT_TRUE(corr_test::wait_until([&] {
        return view.grid_control()->GetToolTipText() ==
               corr_dialogs2::translate(L"dlg.suppressions.view_button.tooltip");
    }));
    sim.MouseClick();
    ASSERT_TRUE(corr_test::wait_until([&] { return static_cast<bool>(viewed); }));
    EXPECT_EQ(viewed, view.model().get_rule(0, 1));
    sim.MouseMove(m_frame->GetScreenRect().GetBottomRight() + wxPoint(20, 20));
    corr_test::pump_events();
}

TEST_F(frame_test, ClickingAProblemFillsTheStackPane)
{
    // The use after free of the ASan report: an access stack, then where the
    // block was freed and where it was allocated.
    const int target = 15;
    const auto& problem = m_frame->session().problems()[static_cast<size_t>(target)];
    ASSERT_EQ(problem.kind, "heap-use-after-free");
    auto* grid = problems().grid();
    grid->EnsureRowVisible(target);
    corr_test::pump_events();

    wxUIActionSimulator sim;
    const wxPoint at = cell_on_screen(*grid, *problems().grid_control(), target, 1);
    sim.MouseMove(at);
    corr_test::pump_events();
    sim.MouseClick();
    ASSERT_TRUE(corr_test::wait_until([&] {
        return problems().stack_model().shown_problem() == target;
    })) << "clicked at "
        << at.x << "," << at.y;
    EXPECT_EQ(problems().selected_problems(), std::vector<size_t>{size_t(target)});

    const auto& stack = problems().stack_model();
    size_t frames = 0;
    for (const auto& s : problem.stacks)
        frames += s.frames.size();
    ASSERT_EQ(stack.GetRowCount(), static_cast<int>(problem.stacks.size() + frames));
    EXPECT_EQ(stack.GetCellText(0, corrview::stack_model_t::col_frame), L"Stack");
    EXPECT_EQ(stack.GetCellText(1, corrview::stack_model_t::col_frame),
              corrview::frame_text(problem.stacks[0].frames[0]));
    const int freed_caption = static_cast<int>(problem.stacks[0].frames.size()) + 1;
    EXPECT_NE(stack.GetCellText(freed_caption, corrview::stack_model_t::col_frame).find(L"freed"),
              std::wstring::npos);

    // A second selected problem; the pane follows the current one.
    grid->SelectRow(target + 1, true);
    grid->SetCurrentRow(target + 1);
    EXPECT_EQ(problems().selected_problems(),
              (std::vector<size_t>{size_t(target), size_t(target + 1)}));
    EXPECT_EQ(problems().stack_model().shown_problem(), target + 1);

    // Off the grid, so that no tool-tip is pending when the window goes.
    sim.MouseMove(m_frame->GetScreenRect().GetBottomRight() + wxPoint(20, 20));
    corr_test::pump_events();
}

TEST_F(frame_test, ImportThroughTheMenuShowsTheNewProblems)
{
    const fs::path results = m_tmp / "results";
    ::setenv("CORR_RESULTS_DIR", results.c_str(), 1);
    corr_test::modal_expectations modal;
    std::wstring wildcard;
    modal.expect<shareddlg3::file_dialog_t>([&](shareddlg3::file_dialog_t& d) {
        wildcard = d.wildcard();
        d.set_path(basekit2::path_t(recorded("memcheck_overflow.xml")));
        return int(wxID_OK);
    });
    wxCommandEvent menu(wxEVT_MENU, corrview::main_frame_t::id_import);
    m_frame->GetEventHandler()->ProcessEvent(menu);
    ::unsetenv("CORR_RESULTS_DIR");
    EXPECT_TRUE(modal.all_met());
    EXPECT_EQ(wildcard, corr_dialogs2::prepare_file_dialog_string());
    // Every importer's extension is named from the catalogue.
    EXPECT_EQ(wildcard.find(L"not found"), std::wstring::npos) << wildcard;
    for (const wchar_t* ext : {L"*.xml", L"*.log", L"*.txt"})
        EXPECT_NE(wildcard.find(ext), std::wstring::npos) << ext;
    ASSERT_TRUE(m_frame->is_importing());
    // The rest of the application waits for the import, but keeps running.
    EXPECT_FALSE(m_frame->IsEnabled());
    ASSERT_TRUE(corr_test::wait_until([&] { return !m_frame->is_importing(); }, 30000));
    EXPECT_TRUE(m_frame->IsEnabled());

    ASSERT_EQ(problems().model().GetRowCount(), 2);
    EXPECT_EQ(problems().model().GetCellText(0, corrview::problems_model_t::col_type),
              L"Invalid write");
    EXPECT_EQ(problems().model().GetCellText(1, corrview::problems_model_t::col_type),
              L"Invalid read");
    const auto dir = m_frame->session().engine()->get_result_dir();
    EXPECT_EQ(fs::path(dir.str()), results / "memcheck_overflow");
    EXPECT_TRUE(fs::exists(results / "memcheck_overflow" / "data" / "memcheck_overflow.xml"));
    EXPECT_EQ(m_frame->GetTitle().ToStdWstring(),
              L"memcheck_overflow - Correctness Analyzer Viewer");
}

TEST_F(frame_test, CancelledImportLeavesTheOpenResult)
{
    // Enough files that the worker is still at them when Cancel is pressed.
    std::vector<basekit2::path_t> files;
    for (int i = 0; i < 200; ++i)
        files.push_back(
            basekit2::path_t(recorded(i % 2 ? "memcheck_leaks.xml" : "helgrind_race_counter.xml")));
    const fs::path target = m_tmp / "results" / "many";
    m_frame->start_import(files, basekit2::path_t(target));
    auto* progress = m_frame->import_dialog();
    ASSERT_TRUE(progress);
    progress->cancel();
    EXPECT_FALSE(progress->cancel_button()->IsEnabled());
    ASSERT_TRUE(corr_test::wait_until([&] { return !m_frame->is_importing(); }, 30000));

    EXPECT_EQ(m_frame->GetStatusBar()->GetStatusText().ToStdWstring(),
              L"The import was cancelled; nothing was changed.");
    EXPECT_FALSE(fs::exists(target));
    EXPECT_EQ(problems().model().GetRowCount(), 24);
    EXPECT_TRUE(m_frame->IsEnabled());
}

TEST_F(frame_test, ImportOfSomethingElseSaysWhyAndKeepsTheResult)
{
    corr_test::modal_expectations modal;
    std::wstring text;
    modal.expect<wxMessageDialog>([&](wxMessageDialog& d) {
        text = d.GetMessage().ToStdWstring();
        return int(wxID_OK);
    });
    m_frame->start_import({basekit2::path_t(fs::path(CORR_SAMPLES_DIR) / "src" / "mem_leaks.c")},
                          basekit2::path_t(m_tmp / "results" / "bad"));
    ASSERT_TRUE(corr_test::wait_until([&] { return !m_frame->is_importing(); }, 30000));
    EXPECT_TRUE(modal.all_met());
    EXPECT_NE(text.find(L"Nothing was imported:"), std::wstring::npos);
    EXPECT_NE(text.find(L"mem_leaks.c"), std::wstring::npos);
    EXPECT_EQ(problems().model().GetRowCount(), 24);
}

TEST_F(frame_test, OpenAnotherResultOrSayWhyNot)
{
    // A second result with one file, made the way corrtool makes results.
    auto engine = corr_engine::engine_t::create();
    corr_engine::import_files_report_t report;
    ASSERT_TRUE(engine->create_result(basekit2::path_t(m_tmp / "other"), L"other",
                                      {basekit2::path_t(recorded("ubsan_null.txt"))}, {}, report));
    corr_test::modal_expectations modal;
    modal.expect_file(engine->get_marker_file());
    m_frame->on_open();
    EXPECT_TRUE(modal.all_met());
    EXPECT_EQ(m_frame->GetTitle().ToStdWstring(), L"other - Correctness Analyzer Viewer");
    EXPECT_EQ(problems().model().GetRowCount(), static_cast<int>(engine->get_problems()->size()));

    // Not a result: the user is told, and the open result stays.
    std::wstring text;
    modal.expect_file(basekit2::path_t(recorded("ubsan_null.txt")));
    modal.expect<wxMessageDialog>([&](wxMessageDialog& d) {
        text = d.GetMessage().ToStdWstring();
        return int(wxID_OK);
    });
    m_frame->on_open();
    EXPECT_TRUE(modal.all_met());
    EXPECT_NE(text.find(L"The result cannot be opened:"), std::wstring::npos);
    EXPECT_EQ(m_frame->GetTitle().ToStdWstring(), L"other - Correctness Analyzer Viewer");
}

} // namespace

namespace {

TEST_F(frame_test, ExportAndFilterShowTheirDialogsForTheOpenResult)
{
    auto menu = [](wxFrame& frame, int id) {
        wxCommandEvent event(wxEVT_MENU, id);
        frame.GetEventHandler()->ProcessEvent(event);
    };
    const std::wstring result_name = m_frame->session().engine()->get_result_name();
    corr_test::modal_expectations modal;
    basekit2::path_t target;
    modal.expect<corr_dialogs2::export_dlg_t>([&](corr_dialogs2::export_dlg_t& dlg) {
        target = dlg.get_target();
        return int(wxID_CANCEL);
    });
    menu(*m_frame, corrview::main_frame_t::id_export);
    EXPECT_TRUE(modal.all_met());
    // Named after the result, next to its folder, with the archive extension.
    EXPECT_EQ(target.stem(), result_name);
    EXPECT_EQ(target.extension(), corr_engine::archiver_t::get_default_file_ext());
    EXPECT_EQ(target.parent(), m_frame->session().engine()->get_result_dir().parent());

    modal.expect<corr_dialogs2::files_filter_dlg_t>(int(wxID_CANCEL));
    menu(*m_frame, corrview::main_frame_t::id_filter_sources);
    EXPECT_TRUE(modal.all_met());
}

} // namespace
