// Each grid model wired into a real grid the way the dialogs wire it, then
// driven with the mouse: check cells, in-cell buttons, combo edits, tooltips.
#include "../../unit/grid_models/model_data.h"
#include "../gridview8/grid_fixture.h"
#include "painted_buttons.h"

#include "corr_dialogs2/rule_combo_models.h"
#include "corr_dialogs2/rule_grid_models.h"
#include "corr_dialogs2/stack_combo_grid_model.h"
#include "corr_dialogs2/suppression_grid_model.h"

#include <gtest/gtest.h>
#include <wx/dcmemory.h>

#include <type_traits>

using namespace corr_dialogs2;
using namespace grid_models_test;
using namespace suppfmt3;

static ::testing::Environment* const catalog_env =
    ::testing::AddGlobalTestEnvironment(new catalog_environment);

namespace {

wxBitmap box_image(bool checked)
{
    wxBitmap bitmap(14, 14);
    wxMemoryDC dc(bitmap);
    dc.SetBackground(*wxWHITE_BRUSH);
    dc.Clear();
    dc.SetPen(*wxBLACK_PEN);
    dc.SetBrush(checked ? *wxBLACK_BRUSH : *wxTRANSPARENT_BRUSH);
    dc.DrawRectangle(1, 1, 12, 12);
    return bitmap;
}

template <class M> constexpr bool is_editing_model = std::is_base_of_v<gridview8::IEditingModel, M>;
template <class M, class = void> struct has_check_column : std::false_type
{
};
template <class M>
struct has_check_column<M, std::void_t<decltype(&M::set_check_image)>> : std::true_type
{
};

class model_window : public grid_test::grid_host
{
protected:
    model_window() : grid_host(wxSize(1100, 520)) {}

    // The wiring order of the dialogs.
    template <class M> void install(M& model, const std::wstring& button_text = {})
    {
        if constexpr (std::is_base_of_v<combo_model_t, M>)
            model.init(control->GetSysWindow());
        else
            model.set_window(control->GetSysWindow());
        if (!button_text.empty()) {
            model.enable_button(true);
            model.set_button_text(button_text);
        }
        model.init_header_vis_model(header);
        grid->SetModel(&model, &header, true);
        grid->SetDrawingModel(&model);
        grid->GetViewer()->AddEventHandler(&model);
        if constexpr (is_editing_model<M>)
            grid->SetEditingModel(&model);
        grid->SetImageList(std::vector<wxBitmap>{box_image(false), box_image(true)});
        if constexpr (has_check_column<M>::value) {
            model.set_check_image(1);
            model.set_uncheck_image(0);
        }
        grid->SetResizingModel(&resizing);
        grid->GetHeader()->SetStyle(1);
        settle();
    }

    sample_files files;
    header_vis_model_t header;
    gridview8::CProportionalResizingModelEx resizing;
};

template <class M> class check_cell_window : public model_window
{
protected:
    void fill(editable_suppression_grid_model_t& m) { m.add_rules(files.all_rule_sets()); }
    void fill(editable_aspect_grid_model_t& m) { m.init(candidates("memcheck_leaks.xml")); }
    void fill(editable_combo_aspect_model_t& m) { m.init(candidates("memcheck_leaks.xml")); }
    void fill(editable_stack_grid_model_t& m)
    {
        m.init(candidates("memcheck_leaks.xml")->get_rules().front());
    }
    M model;
};

using editable_models =
    ::testing::Types<editable_suppression_grid_model_t, editable_aspect_grid_model_t,
                     editable_combo_aspect_model_t, editable_stack_grid_model_t>;
TYPED_TEST_SUITE(check_cell_window, editable_models);

// The suppression grid with its check column (the delete dialog) and
// without one (the viewer's list of suppressions), filled with every rule
// set of the sample files.
template <class M> class view_button_window : public model_window
{
protected:
    view_button_window()
    {
        model.add_rules(files.all_rule_sets());
        if constexpr (has_check_column<M>::value)
            model.set_count(model.GetRowCount());
    }
    M model;
};

using suppression_models =
    ::testing::Types<editable_suppression_grid_model_t, suppression_grid_model_t>;
TYPED_TEST_SUITE(view_button_window, suppression_models);

} // namespace

TYPED_TEST(check_cell_window, LeftClickOnACheckCellTogglesTheRowAndNotifies)
{
    auto& m = this->model;
    this->fill(m);
    m.set_count(m.GetRowCount());
    this->install(m);
    std::vector<std::pair<int, bool>> seen;
    m.check_changed().connect([&](int row, bool on) { seen.emplace_back(row, on); });
    const int check = m.get_check_column();
    ASSERT_EQ(this->header.GetLeaf(0)->GetColumn(), check);
    EXPECT_EQ(m.GetCellImageIndex(2, check), 1);

    this->click(this->cell_centre(2, check));
    ASSERT_TRUE(corr_test::wait_until([&] { return !seen.empty(); }));
    EXPECT_EQ(seen, (std::vector<std::pair<int, bool>>{{2, false}}));
    EXPECT_FALSE(m.is_checked(2));
    EXPECT_EQ(m.GetCellImageIndex(2, check), 0);

    this->click(this->cell_centre(2, check), wxMOUSE_BTN_RIGHT); // not the left button
    this->click(this->cell_centre(1, 0));                        // not the check column
    EXPECT_EQ(seen.size(), 1u);

    this->click(this->cell_centre(2, check));
    ASSERT_TRUE(corr_test::wait_until([&] { return seen.size() == 2; }));
    EXPECT_EQ(seen.back(), std::make_pair(2, true));
    EXPECT_TRUE(m.is_checked(2));

    // Space toggles the current row.
    this->grid->SetCurrentRow(1);
    wxUIActionSimulator sim;
    sim.Char(' ');
    ASSERT_TRUE(corr_test::wait_until([&] { return seen.size() == 3; }));
    EXPECT_EQ(seen.back(), std::make_pair(1, false));
}

TYPED_TEST(view_button_window, ViewButtonWhereItIsDrawnReportsTheRuleLine)
{
    auto& m = this->model;
    this->install(m, L"View");
    std::vector<std::pair<int, int>> clicks;
    m.button_clicked().connect([&](int row, int rule) { clicks.emplace_back(row, rule); });
    corr_test::painted_buttons painted(*this->grid);
    // Row 2 ("Leaks") has three rules: a button on each line, all in the
    // code location column.
    const int code = suppression_grid_model_t::code_location_column;
    ASSERT_TRUE(corr_test::wait_until([&] { return painted.in_cell(2, code).size() == 3; }));
    for (const auto& [row, col] : painted.cells_with_buttons())
        EXPECT_EQ(col, code) << "a button drawn in row " << row;
    const auto buttons = painted.in_cell(2, code);
    EXPECT_EQ(buttons[0].caption, L"View");
    uicore7::ISysWindow& window = *this->control->GetSysWindow();

    this->click(corr_test::centre_on_screen(buttons[1], window));
    ASSERT_TRUE(corr_test::wait_until([&] { return !clicks.empty(); }));
    EXPECT_EQ(clicks.back(), std::make_pair(2, 1));
    this->click(corr_test::centre_on_screen(buttons[2], window));
    ASSERT_TRUE(corr_test::wait_until([&] { return clicks.size() == 2; }));
    EXPECT_EQ(clicks.back(), std::make_pair(2, 2));

    const wxPoint middle = corr_test::centre_on_screen(buttons[1], window);
    this->click(middle, wxMOUSE_BTN_RIGHT);
    this->click(middle - wxPoint(buttons[1].rect.width() / 2 + 20, 0)); // the text beside it
    EXPECT_EQ(clicks.size(), 2u);
    this->double_click(middle); // the second press carries the double-click bit
    ASSERT_TRUE(corr_test::wait_until([&] { return clicks.size() >= 3; }));
    corr_test::pump_events(100);
    EXPECT_EQ(clicks.size(), 3u);
}

TYPED_TEST(view_button_window, ViewButtonTooltipAppearsOverTheButtonOnly)
{
    auto& m = this->model;
    this->install(m, L"View");
    tooltip_model_t tooltips(this->grid, &m);
    this->grid->SetTooltipModel(&tooltips);
    EXPECT_FALSE(tooltips.HasTooltip(suppression_grid_model_t::code_location_column));
    EXPECT_TRUE(tooltips.HasTooltip(0));
    const std::wstring tip = word(L"dlg.suppressions.view_button.tooltip");
    auto shown = [&] { return this->control->GetToolTipText().ToStdWstring(); };
    corr_test::painted_buttons painted(*this->grid);
    const int code = suppression_grid_model_t::code_location_column;
    ASSERT_TRUE(corr_test::wait_until([&] { return painted.in_cell(0, code).size() == 1; }));
    const wxPoint middle =
        corr_test::centre_on_screen(painted.in_cell(0, code)[0], *this->control->GetSysWindow());

    wxUIActionSimulator sim;
    sim.MouseMove(middle);
    ASSERT_TRUE(corr_test::wait_until([&] { return shown() == tip; }));
    sim.MouseMove(middle - wxPoint(painted.in_cell(0, code)[0].rect.width() / 2 + 30, 0));
    EXPECT_TRUE(corr_test::wait_until([&] { return shown() != tip; }));
    sim.MouseMove(this->cell_centre(1, 0));
    corr_test::pump_events(60);
    EXPECT_NE(shown(), tip);
}

TEST_F(model_window, StackButtonsOfTheAspectAndComboGridsReportTheirRow)
{
    editable_aspect_grid_model_t aspects;
    aspects.init(candidates("memcheck_leaks.xml"));
    aspects.set_count(aspects.GetRowCount());
    install(aspects, L"Stack");
    std::vector<int> rows;
    aspects.button_clicked().connect([&](int row) { rows.push_back(row); });
    uicore7::ISysWindow& window = *control->GetSysWindow();
    {
        corr_test::painted_buttons painted(*grid);
        ASSERT_TRUE(corr_test::wait_until(
            [&] { return painted.in_cell(1, aspect_grid_model_t::stack_column).size() == 1; }));
        click(corr_test::centre_on_screen(painted.in_cell(1, aspect_grid_model_t::stack_column)[0],
                                          window));
    }
    ASSERT_TRUE(corr_test::wait_until([&] { return !rows.empty(); }));
    EXPECT_EQ(rows, std::vector<int>{1});
    grid->DetachModels();
    header.Clear();

    editable_combo_aspect_model_t combos;
    combos.init(candidates("helgrind_race_counter.xml"));
    combos.set_count(combos.GetRowCount());
    install(combos, L"Edit");
    rows.clear();
    combos.button_clicked().connect([&](int row) { rows.push_back(row); });
    {
        corr_test::painted_buttons painted(*grid);
        ASSERT_TRUE(corr_test::wait_until(
            [&] { return painted.in_cell(0, combo_aspect_model_t::stack_column).size() == 1; }));
        click(corr_test::centre_on_screen(painted.in_cell(0, combo_aspect_model_t::stack_column)[0],
                                          window));
    }
    ASSERT_TRUE(corr_test::wait_until([&] { return !rows.empty(); }));
    EXPECT_EQ(rows, std::vector<int>{0});
    EXPECT_FALSE(grid->IsEditing()); // the stack column has no combo box
}

TEST_F(model_window, PickInTheAspectComboChangesTheRuleAtOnce)
{
    editable_combo_aspect_model_t model;
    const rule_set_ptr races = candidates("helgrind_race_counter.xml");
    model.init(races);
    model.set_count(model.GetRowCount());
    install(model, L"Edit");
    const rule_ptr rule = races->get_rules()[1];
    ASSERT_TRUE(rule->is_item_active(sdt_description));

    click(cell_centre(1, combo_aspect_model_t::description_column));
    ASSERT_TRUE(corr_test::wait_until([&] { return grid->IsEditing(); }));
    wxUIActionSimulator sim;
    ASSERT_TRUE(sim.Select(word(L"dlg.suppression_grid.any_value")));
    // Changed while the editor is still open.
    ASSERT_TRUE(corr_test::wait_until([&] { return !rule->is_item_active(sdt_description); }));
    EXPECT_TRUE(grid->IsEditing());
    EXPECT_TRUE(races->get_rules()[0]->is_item_active(sdt_description));
    sim.Char(WXK_RETURN);
    ASSERT_TRUE(corr_test::wait_until([&] { return !grid->IsEditing(); }));
    EXPECT_FALSE(rule->is_item_active(sdt_description));
    EXPECT_EQ(model.GetCellText(1, 0), word(L"dlg.suppression_grid.any_value"));
}

TEST_F(model_window, StackComboPicksWriteAtOnceAndOpenEditsAreSaved)
{
    editable_stack_grid_model_t model;
    const rule_ptr rule = candidates("helgrind_race_counter.xml")->get_rules().front();
    model.init(rule);
    model.set_count(model.GetRowCount());
    const size_t children = control->GetRootElement()->GetChildren().size();
    install(model);
    model.init(control->GetSysWindow()); // a second init replaces the combo box
    EXPECT_EQ(control->GetRootElement()->GetChildren().size(), children + 1);
    const auto stack = rule->get_stack(false);
    const callstack_frame_t frame_before = as_stack_item(rule->get_item(sdt_call_stack))->frame(0);
    ASSERT_TRUE(frame_before.source_active && frame_before.line_active);

    click(cell_centre(0, 2)); // frame 0, source file
    ASSERT_TRUE(corr_test::wait_until([&] { return grid->IsEditing(); }));
    wxUIActionSimulator sim;
    ASSERT_TRUE(sim.Select(word(L"dlg.suppression_grid.any_value")));
    ASSERT_TRUE(
        corr_test::wait_until([&] { return !stack->is_frame_field_active(0, sdt_source); }));
    EXPECT_FALSE(stack->is_frame_field_active(0, sdt_line));
    EXPECT_TRUE(stack->is_frame_field_active(0, sdt_module));
    sim.Char(WXK_ESCAPE); // cancelling takes the pick back
    ASSERT_TRUE(corr_test::wait_until([&] { return !grid->IsEditing(); }));
    EXPECT_TRUE(stack->is_frame_field_active(0, sdt_source));
    // The line went with the source; it comes back with it.
    EXPECT_EQ(as_stack_item(rule->get_item(sdt_call_stack))->frame(0), frame_before);

    // A value chosen but not yet committed reaches the rule through save_editors_data.
    auto* combo = dynamic_cast<uiframe7::CComboBox*>(model.GetEditorInt(0, 0));
    ASSERT_NE(combo, nullptr);
    ASSERT_TRUE(grid->BeginEdit(0, 0));
    ASSERT_TRUE(combo->IsEditing());
    combo->SetSelection(1); // no notification
    EXPECT_TRUE(stack->is_frame_field_active(0, sdt_module));
    model.save_editors_data();
    EXPECT_FALSE(grid->IsEditing());
    EXPECT_FALSE(stack->is_frame_field_active(0, sdt_module));
    model.save_editors_data(); // nothing open: nothing happens
    EXPECT_FALSE(stack->is_frame_field_active(0, sdt_module));
}
