// The check column around each model, header groups, and the in-cell button
// found by geometry alone (no window).
#include "../../gui/support/painted_buttons.h"
#include "model_data.h"

#include "corr_dialogs2/rule_combo_models.h"
#include "corr_dialogs2/rule_grid_models.h"
#include "corr_dialogs2/stack_combo_grid_model.h"
#include "corr_dialogs2/suppression_grid_model.h"

#include <gtest/gtest.h>

#include <type_traits>

using namespace corr_dialogs2;
using namespace grid_models_test;

static ::testing::Environment* const catalog_env =
    ::testing::AddGlobalTestEnvironment(new catalog_environment);

namespace {

std::vector<rule_ptr> five_rules()
{
    auto rules = candidates("memcheck_leaks.xml")->get_rules();
    const auto more = candidates("helgrind_race_counter.xml")->get_rules();
    rules.insert(rules.end(), more.begin(), more.end());
    return rules;
}

// Fills a model with at least five rows of recorded rule data.
struct filler
{
    sample_files files;

    void operator()(editable_suppression_grid_model_t& m)
    {
        m.add_rules(files.all_rule_sets());
        m.add_rules(files.all_rule_sets());
    }
    void operator()(editable_aspect_grid_model_t& m) { m.init(five_rules()); }
    void operator()(editable_combo_aspect_model_t& m) { m.init(five_rules()); }
    void operator()(editable_stack_grid_model_t& m)
    {
        m.init(candidates("memcheck_leaks.xml")->get_rules().front()); // ten frames
    }
};

template <class M> class CheckColumn : public ::testing::Test
{
protected:
    void SetUp() override
    {
        fill(model);
        ASSERT_GE(model.GetRowCount(), 5);
    }
    filler fill;
    M model;
};

using editable_models =
    ::testing::Types<editable_suppression_grid_model_t, editable_aspect_grid_model_t,
                     editable_combo_aspect_model_t, editable_stack_grid_model_t>;
TYPED_TEST_SUITE(CheckColumn, editable_models);

} // namespace

TYPED_TEST(CheckColumn, GrowingChecksNewRowsAndOnlyRealRowsNotify)
{
    auto& m = this->model;
    std::vector<std::pair<int, bool>> seen;
    m.check_changed().connect([&](int row, bool on) { seen.emplace_back(row, on); });

    EXPECT_FALSE(m.has_checked_rules()); // no rows yet
    m.set_count(2);
    m.set_checked(0, false);
    m.set_count(5);
    EXPECT_EQ(m.get_count(), 5);
    EXPECT_FALSE(m.is_checked(0));
    for (int row = 1; row < 5; ++row)
        EXPECT_TRUE(m.is_checked(row)) << row;

    seen.clear();
    m.set_checked(-1, true);
    m.set_checked(5, false);
    EXPECT_TRUE(seen.empty());
    EXPECT_FALSE(m.is_checked(-1));
    EXPECT_FALSE(m.is_checked(5));

    m.set_checked(3, false);
    m.set_checked(3, false); // written and announced again, even unchanged
    EXPECT_EQ(seen, (std::vector<std::pair<int, bool>>{{3, false}, {3, false}}));

    m.set_count(3); // row 3 and 4 go; growing again brings them back checked
    EXPECT_FALSE(m.is_checked(3));
    m.set_count(4);
    EXPECT_TRUE(m.is_checked(3));

    for (int row = 0; row < 4; ++row)
        m.set_checked(row, false);
    EXPECT_FALSE(m.has_checked_rules());
    m.set_checked(2, true);
    EXPECT_TRUE(m.has_checked_rules());

    // A copy keeps the flags but none of the subscribers.
    TypeParam copy(m);
    seen.clear();
    copy.set_checked(0, true);
    EXPECT_TRUE(seen.empty());
    EXPECT_TRUE(copy.is_checked(2));
    EXPECT_FALSE(copy.is_checked(1));
}

TYPED_TEST(CheckColumn, IsTheLastModelColumnButTheFirstShown)
{
    auto& m = this->model;
    using base = typename TypeParam::model_type;
    const int check = m.get_check_column();
    EXPECT_EQ(check, m.base::GetColumnCount());
    EXPECT_EQ(m.GetColumnCount(), check + 1);

    m.set_count(m.GetRowCount());
    m.set_check_image(7);
    m.set_uncheck_image(3);
    m.set_checked(1, false);
    if constexpr (std::is_same_v<TypeParam, editable_stack_grid_model_t>)
        EXPECT_EQ(m.GetColumnCaption(check), word(L"dlg.suppression_stack_grid.use_in_rule"));
    else
        EXPECT_EQ(m.GetColumnCaption(check), L"");
    EXPECT_EQ(m.GetColumnImageIndex(check), -1);
    EXPECT_EQ(m.GetColumnTextAlign(check), m.base::GetColumnTextAlign(0));
    EXPECT_EQ(m.GetCellTextAlign(0, check), 36);
    EXPECT_EQ(m.GetCellText(0, check), L"");
    EXPECT_EQ(m.GetCellImageIndex(0, check), 7);
    EXPECT_EQ(m.GetCellImageIndex(1, check), 3);
    EXPECT_EQ(m.GetCellImageIndex(m.get_count(), check), 3); // outside the flags

    // Every other column is the model's own.
    for (int col = 0; col < check; ++col) {
        EXPECT_EQ(m.GetColumnCaption(col), m.base::GetColumnCaption(col)) << col;
        EXPECT_EQ(m.GetCellText(0, col), m.base::GetCellText(0, col)) << col;
        EXPECT_EQ(m.GetCellTextAlign(0, col), 33) << col;
        EXPECT_EQ(m.GetCellImageIndex(0, col), -1) << col;
    }

    header_vis_model_t header;
    m.enable_button(true);
    m.init_header_vis_model(header);
    ASSERT_GE(header.GetLeafCount(), 2);
    EXPECT_EQ(header.GetLeaf(0)->GetColumn(), check);
    EXPECT_EQ(header.GetLeaf(1)->GetColumn(), 0);
    EXPECT_EQ(header.GetLeafCount(), m.GetColumnCount());
}

TEST(HeaderVisibility, GroupChildrenShareTheWeightAndAPlacedGroupFails)
{
    header_vis_model_t header;
    EXPECT_TRUE(header.add_item(0));
    EXPECT_TRUE(header.add_item(3, {1, 2, 4}));
    EXPECT_EQ(header.FindItem(0)->GetWidthWeight(), 100);
    EXPECT_EQ(header.FindItem(0)->GetState(), 0);
    EXPECT_EQ(header.FindItem(0)->GetSortingDirection(), gridview8::IHeaderItem::sdNone);
    EXPECT_EQ(header.FindItem(3)->GetWidthWeight(), 100);
    for (int child : {1, 2, 4})
        EXPECT_EQ(header.FindItem(child)->GetWidthWeight(), 33) << child;
    ASSERT_EQ(header.GetLeafCount(), 4);
    EXPECT_EQ(header.GetLeaf(1)->GetColumn(), 1);
    EXPECT_EQ(header.GetLeaf(3)->GetColumn(), 4);
    EXPECT_TRUE(header.HasGroups());

    EXPECT_FALSE(header.add_item(3, {5, 6})); // the group is placed already
    EXPECT_EQ(header.FindItem(5), nullptr);
    EXPECT_TRUE(header.add_item(7, {8, 9}));
    EXPECT_EQ(header.FindItem(8)->GetWidthWeight(), 50);
}

namespace {

// The suppression grid with its check column (the delete dialog) and
// without one (the viewer), in columns of 100 pixels placed as its header
// shows them and rows of 20 pixels: the geometry a grid would give it. The
// view buttons are taken from what the model paints into the code location
// cell, not from the geometry the press handling computes.
template <class M> struct button_geometry : ::testing::Test
{
    static constexpr int code = suppression_grid_model_t::code_location_column;

    void SetUp() override
    {
        model.add_rules(files.all_rule_sets());
        if constexpr (std::is_base_of_v<editable_suppression_grid_model_t, M>)
            model.set_count(model.GetRowCount());
        model.SetDefaultItemSize(20);
        model.init_header_vis_model(header);
        columns.SetDefaultItemSize(100);
        columns.SetCount(header.GetLeafCount());
        model.SetColumnViewModel(&columns);
        model.enable_button(true);
        model.button_clicked().connect([&](int row, int rule) { clicks.emplace_back(row, rule); });
    }
    // The cell where the header shows a model column.
    uicore7::rectangle<double> cell(int row, int col) const
    {
        const auto x = columns.GetItemRange(header.GetLeafPosition(col));
        const auto y = model.GetItemRange(row);
        return {double(x.start), double(y.start), double(x.end), double(y.end)};
    }
    std::vector<uicore7::rectangle<int>> painted_buttons(int row)
    {
        corr_test::recording_painter painter;
        model.OnDrawCell(&painter, row, code, cell(row, code));
        std::vector<uicore7::rectangle<int>> rects;
        for (const auto& button : painter.buttons)
            rects.push_back(button.rect);
        return rects;
    }
    bool press(int x, int y, int keys = 0, uicore7::MouseButton button = uicore7::mbLeft)
    {
        bool handled = false;
        const bool stop = model.ProcessButtonDown(x, y, keys, button, &handled);
        EXPECT_FALSE(handled);
        return stop;
    }

    sample_files files;
    M model;
    header_vis_model_t header;
    uiframe7::CSimpleContinuousItemViewModel columns;
    std::vector<std::pair<int, int>> clicks;
};

using suppression_models =
    ::testing::Types<editable_suppression_grid_model_t, suppression_grid_model_t>;
TYPED_TEST_SUITE(button_geometry, suppression_models);

int middle(int a, int b)
{
    return (a + b) / 2;
}

} // namespace

TYPED_TEST(button_geometry, APressOnAPaintedButtonReportsTheRowAndTheRuleLine)
{
    // Without a window the button is 10 pixels wide and a line is the row
    // height less the grid's padding.
    EXPECT_EQ(this->model.get_button_width(), 10);
    EXPECT_EQ(this->model.get_line_height(), 14);
    // Row 1 ("Counter races") has two rules: two lines, a button on each.
    const auto buttons = this->painted_buttons(1);
    ASSERT_EQ(buttons.size(), 2u);
    const auto code_cell = this->cell(1, this->code);
    EXPECT_EQ(buttons[0].right, static_cast<int>(code_cell.right) - 1);
    EXPECT_EQ(this->model.GetColIndex(middle(buttons[0].left, buttons[0].right)), this->code);

    EXPECT_FALSE(this->press(middle(buttons[0].left, buttons[0].right),
                             middle(buttons[0].top, buttons[0].bottom)));
    EXPECT_FALSE(this->press(buttons[0].left, buttons[0].top)); // its top left corner
    EXPECT_FALSE(this->press(middle(buttons[1].left, buttons[1].right),
                             middle(buttons[1].top, buttons[1].bottom)));
    EXPECT_EQ(this->clicks, (std::vector<std::pair<int, int>>{{1, 0}, {1, 0}, {1, 1}}));

    this->press(buttons[0].left - 1, middle(buttons[0].top, buttons[0].bottom)); // beside it
    const auto problem = this->cell(1, suppression_grid_model_t::problem_column);
    this->press(static_cast<int>(problem.right) - 2, middle(buttons[0].top, buttons[0].bottom));
    EXPECT_EQ(this->clicks.size(), 3u);
}

TYPED_TEST(button_geometry, ModifiedDoubleClickAndDisabledButtonNeverClick)
{
    const auto button = this->painted_buttons(1).at(0);
    const int x = middle(button.left, button.right);
    const int y = middle(button.top, button.bottom);
    // The right button and a plain double click are pressed for real in the GUI tests.
    EXPECT_FALSE(this->press(x, y, uicore7::ksDoubleClick | uicore7::ksShift));
    this->model.enable_button(false);
    EXPECT_FALSE(this->press(x, y));
    EXPECT_TRUE(this->clicks.empty());
    // Without a column view model nothing is under any x.
    this->model.enable_button(true);
    this->model.SetColumnViewModel(nullptr);
    EXPECT_EQ(this->model.GetColIndex(x), -1);
    EXPECT_FALSE(this->press(x, y));
    EXPECT_TRUE(this->clicks.empty());
}

TEST(CheckColumnGeometry, TheCheckColumnIsShownFirstAndNamesNoModelColumn)
{
    // The check column rule: model columns follow it in order.
    sample_files files;
    editable_suppression_grid_model_t model;
    model.add_rules(files.all_rule_sets());
    uiframe7::CSimpleContinuousItemViewModel columns;
    columns.SetDefaultItemSize(100);
    columns.SetCount(model.GetColumnCount());
    model.SetColumnViewModel(&columns);
    EXPECT_EQ(model.GetColIndex(50), -1);
    for (int col = 0; col < model.get_check_column(); ++col)
        EXPECT_EQ(model.GetColIndex(150 + 100 * col), col);
}
