// The suppression, aspect and stack grids over rule sets read back from
// suppression files made of recorded problems.
#include "model_data.h"

#include "corr_dialogs2/rule_grid_models.h"
#include "corr_dialogs2/suppression_grid_model.h"

#include <gtest/gtest.h>

using namespace corr_dialogs2;
using namespace grid_models_test;
using namespace suppfmt3;

static ::testing::Environment* const catalog_env =
    ::testing::AddGlobalTestEnvironment(new catalog_environment);

namespace {

// "Frames used: {used} of {total}" with the numbers put in.
std::wstring frames_used(int used, int total)
{
    std::wstring text = word(L"dlg.suppression_grid.frames_used");
    text.replace(text.find(L"{used}"), 6, std::to_wstring(used));
    text.replace(text.find(L"{total}"), 7, std::to_wstring(total));
    return text;
}

// One line per rule, each ending in a line feed.
template <class F> std::wstring lines_of(const rule_set_ptr& set, F&& line)
{
    std::wstring text;
    for (const auto& rule : set->get_rules())
        text += line(rule) + L"\n";
    return text;
}

std::vector<std::wstring> names_of(const suppression_grid_model_t& model)
{
    std::vector<std::wstring> names;
    for (int row = 0; row < model.GetRowCount(); ++row)
        names.push_back(model.GetCellText(row, 0));
    return names;
}

} // namespace

TEST(SuppressionGrid, ColumnsAndCaptionsIncludingTheStackCaptionBeyondTheColumns)
{
    suppression_grid_model_t model;
    EXPECT_EQ(model.GetColumnCount(), 6);
    const wchar_t* keys[] = {
        L"dlg.suppression_grid.name",          L"dlg.suppression_grid.file",
        L"dlg.suppression_grid.problem",       L"dlg.suppression_grid.description",
        L"dlg.suppression_grid.code_location", L"dlg.suppression_grid.locations",
        L"dlg.suppression_grid.stack"};
    for (int col = 0; col <= 6; ++col) {
        EXPECT_EQ(model.GetColumnCaption(col), word(keys[col])) << col;
        EXPECT_EQ(model.GetColumnImageIndex(col), -1);
        EXPECT_EQ(model.GetColumnTextAlign(col), 36);
        EXPECT_EQ(model.is_multiline_column(col), col >= 2) << col;
        EXPECT_EQ(model.has_button(col), col == 4) << col;
    }
    EXPECT_EQ(model.GetColumnCaption(7), L"");
    EXPECT_EQ(model.GetColumnCaption(-1), L"");
    EXPECT_EQ(model.GetRowCount(), 0);
    EXPECT_EQ(model.GetCellText(0, 0), L"");
}

TEST(SuppressionGrid, RowsKnowTheirRuleSetFileAndShowOneLinePerRule)
{
    sample_files files;
    suppression_grid_model_t model;
    model.add_rules(files.all_rule_sets());
    ASSERT_EQ(model.GetRowCount(), 4);
    EXPECT_EQ(names_of(model), (std::vector<std::wstring>{L"Use after free", L"Counter races",
                                                          L"Leaks", L"Library bugs"}));
    EXPECT_EQ(model.GetCellText(1, 1), L"team.sup");
    EXPECT_EQ(model.GetCellText(3, 1), L"other.sup");
    EXPECT_EQ(model.get_file_path(2), (files.dir / "team.sup").wstring());
    // Rows of one file share its file object; the object wraps the store's file.
    EXPECT_EQ(model.get_file(0), model.get_file(2));
    EXPECT_NE(model.get_file(0), model.get_file(3));
    EXPECT_EQ(model.get_file(3)->get_file(), files.other);

    const rule_set_ptr races = model.get_rule_set(1);
    ASSERT_EQ(races->get_rules().size(), 2u);
    EXPECT_EQ(model.get_rule(1, 1), races->get_rules()[1]);
    EXPECT_FALSE(model.get_rule(1, 2));
    EXPECT_FALSE(model.get_rule(4, 0));
    EXPECT_FALSE(model.get_rule(1, -1));

    EXPECT_EQ(model.GetCellText(1, 2), L"Data race\nData race\n");
    EXPECT_EQ(model.GetCellText(1, 3), lines_of(races, [](const rule_ptr& r) {
                  return r->get_field_value(sdt_description);
              }));
    EXPECT_EQ(model.GetCellText(1, 4),
              lines_of(races, [](const rule_ptr& r) { return create_rule_description(r, {}); }));
    EXPECT_NE(model.GetCellText(1, 4).find(L"worker - "), std::wstring::npos);
    const int race_frames = races->get_rules()[0]->get_stack(false)->stack_size();
    EXPECT_EQ(model.GetCellText(1, 5),
              frames_used(1, race_frames) + L"\n" + frames_used(1, race_frames) + L"\n");

    // Rows grow by a line for each further rule.
    const int line = model.get_line_height();
    EXPECT_EQ(model.GetItemSize(2) - model.GetItemSize(0), 2 * line);
    EXPECT_EQ(model.GetItemSize(1) - model.GetItemSize(0), line);
    auto more = races->get_rules();
    more.push_back(more.front()->clone());
    races->set_rules(more);
    model.update_row_heights();
    EXPECT_EQ(model.GetItemSize(1) - model.GetItemSize(0), 2 * line);
    EXPECT_EQ(model.GetItemRange(2).start, model.GetItemRange(1).end);

    // A rule set of several files' worth can be added by file too.
    model.clear();
    EXPECT_EQ(model.GetRowCount(), 0);
    model.add_file(wrap_suppression_file(files.other));
    EXPECT_EQ(names_of(model), (std::vector<std::wstring>{L"Library bugs"}));
}

TEST(SuppressionGrid, RulesWithoutProblemOrDescriptionShowTheAnyWordsInGrey)
{
    sample_files files;
    suppression_grid_model_t model;
    model.add_rules(files.all_rule_sets());
    for (const auto& rule : model.get_rule_set(1)->get_rules()) {
        rule->set_item_active(false, sdt_problem_type);
        rule->set_item_active(false, sdt_description);
    }
    const std::wstring any_problem = word(L"dlg.suppression_grid.any_problem");
    const std::wstring any_description = word(L"dlg.suppression_grid.any_description");
    EXPECT_EQ(model.GetCellText(1, 2), any_problem + L"\n" + any_problem + L"\n");
    EXPECT_EQ(model.GetCellText(1, 3), any_description + L"\n" + any_description + L"\n");
    gridview8::CCellAttr attr;
    EXPECT_TRUE(model.GetAttr(1, 2, attr));
    EXPECT_TRUE(attr.grayed);
    gridview8::CCellAttr plain;
    EXPECT_FALSE(model.GetAttr(0, 2, plain));
    EXPECT_FALSE(plain.grayed);

    // One rule back on: the cell names something again.
    model.get_rule(1, 0)->set_item_active(true, sdt_problem_type);
    EXPECT_EQ(model.GetCellText(1, 2), L"Data race\n" + any_problem + L"\n");
    gridview8::CCellAttr mixed;
    EXPECT_FALSE(model.GetAttr(1, 2, mixed));

    // A stack that is not used matches any stack.
    model.get_rule(0, 0)->set_item_active(false, sdt_call_stack);
    EXPECT_EQ(model.GetCellText(0, 5), word(L"dlg.suppression_grid.any_stack") + L"\n");
}

TEST(SuppressionGrid, SortingMovesTheCheckFlagsWithTheRows)
{
    sample_files files;
    editable_suppression_grid_model_t model;
    model.add_rules(files.all_rule_sets());
    model.set_count(model.GetRowCount());
    model.set_checked(2, false); // "Leaks"
    const int leaks_height = model.GetItemSize(2);

    model.OnSortColumn(0, gridview8::IHeaderItem::sdAscending);
    EXPECT_EQ(names_of(model), (std::vector<std::wstring>{L"Counter races", L"Leaks",
                                                          L"Library bugs", L"Use after free"}));
    EXPECT_FALSE(model.is_checked(1));
    EXPECT_TRUE(model.is_checked(0) && model.is_checked(2) && model.is_checked(3));
    EXPECT_EQ(model.GetItemSize(1), leaks_height);
    EXPECT_EQ(model.GetItemRange(2).start, model.GetItemRange(1).end);

    model.OnSortColumn(0, gridview8::IHeaderItem::sdDescending);
    EXPECT_EQ(model.GetCellText(0, 0), L"Use after free");
    EXPECT_FALSE(model.is_checked(2));

    // The check column sorts checked rows first, keeping their order.
    model.OnSortColumn(model.get_check_column(), gridview8::IHeaderItem::sdAscending);
    EXPECT_EQ(names_of(model), (std::vector<std::wstring>{L"Use after free", L"Library bugs",
                                                          L"Counter races", L"Leaks"}));
    EXPECT_FALSE(model.is_checked(3));
    EXPECT_TRUE(model.is_checked(0) && model.is_checked(1) && model.is_checked(2));
}

TEST(AspectGrid, CaptionsAndColumnsFollowTheStackButton)
{
    aspect_grid_model_t model;
    EXPECT_EQ(model.GetColumnCaption(0), L""); // no rules: no display name
    const rule_set_ptr leaks = candidates("memcheck_leaks.xml");
    model.init(leaks);
    ASSERT_EQ(model.get_count(), 3);
    EXPECT_EQ(model.GetColumnCount(), 5);
    EXPECT_EQ(model.get_simple_columns_count(), 2);
    EXPECT_EQ(model.GetColumnCaption(0),
              leaks->get_rules()[0]->get_datatype_international(sdt_problem_type));
    EXPECT_EQ(model.GetColumnCaption(1), word(L"dlg.suppression_grid.description"));
    EXPECT_EQ(model.GetColumnCaption(2), word(L"dlg.suppression_grid.code_location"));

    // Without the button, column 3 holds the locations and column 4 nothing.
    EXPECT_EQ(model.get_header_column_index(), 3);
    EXPECT_EQ(model.GetColumnCaption(3), word(L"dlg.suppression_grid.locations"));
    EXPECT_EQ(model.GetColumnCaption(4), L"");
    const int frames = leaks->get_rules()[0]->get_stack(false)->stack_size();
    EXPECT_EQ(model.GetCellText(0, 3), frames_used(1, frames));
    EXPECT_EQ(model.GetCellText(0, 4), L"");
    EXPECT_FALSE(model.has_button(3));
    header_vis_model_t without;
    model.init_header_vis_model(without);
    EXPECT_EQ(without.GetLeafCount(), 4);

    model.enable_button(true);
    EXPECT_EQ(model.get_header_column_index(), 4);
    EXPECT_EQ(model.GetColumnCaption(3), word(L"dlg.suppression_grid.stack"));
    EXPECT_EQ(model.GetColumnCaption(4), word(L"dlg.suppression_grid.locations"));
    EXPECT_EQ(model.GetCellText(0, 3), L"");
    EXPECT_EQ(model.GetCellText(0, 4), frames_used(1, frames));
    EXPECT_TRUE(model.has_button(3));
    header_vis_model_t with;
    model.init_header_vis_model(with);
    ASSERT_EQ(with.GetLeafCount(), 5);
    EXPECT_EQ(with.GetLeaf(0)->GetColumn(), 0);
    EXPECT_EQ(with.GetLeaf(0)->GetWidthWeight(), 100);

    EXPECT_EQ(model.GetCellText(1, 0), L"Memory leak (definite)");
    EXPECT_EQ(model.GetCellText(1, 1), leaks->get_rules()[1]->get_field_value(sdt_description));
    EXPECT_EQ(model.GetCellText(1, 2), create_rule_description(leaks->get_rules()[1], {}));

    EXPECT_FALSE(model.get_rule(3));
    model.clear();
    EXPECT_EQ(model.GetRowCount(), 0);
}

TEST(AspectGrid, UpdateRowSwitchesExactlyTheGivenAspects)
{
    aspect_grid_model_t model;
    model.init(candidates("memcheck_use_after_free.xml"));
    const rule_ptr rule = model.get_rule(0);
    const int all[] = {9, 60, 13, 20, 16, 21, 95};

    model.update_row(0, {});
    for (int aspect : all)
        EXPECT_FALSE(rule->is_item_active(static_cast<suppfmt_datatype>(aspect))) << aspect;
    EXPECT_EQ(model.GetCellText(0, 0), word(L"dlg.suppression_grid.any_problem"));
    EXPECT_EQ(model.GetCellText(0, 1), word(L"dlg.suppression_grid.any_description"));
    gridview8::CCellAttr attr;
    EXPECT_TRUE(model.GetAttr(0, 0, attr) && attr.grayed);

    model.update_row(0, {9, 95, 13});
    EXPECT_TRUE(rule->is_item_active(sdt_problem_type));
    EXPECT_FALSE(rule->is_item_active(sdt_description));
    EXPECT_TRUE(rule->is_item_active(sdt_call_stack));
    EXPECT_TRUE(rule->is_item_active(sdt_module));
    EXPECT_FALSE(rule->is_item_active(sdt_function));
    EXPECT_EQ(model.GetCellText(0, 0), L"Invalid read");

    model.update_row(1, {}); // no such row: nothing happens
    EXPECT_TRUE(rule->is_item_active(sdt_problem_type));
}

TEST(AspectGrid, RulesOfThePreviousFormatBecomeStackRules)
{
    std::wstring error;
    const auto file = probstore3::suppression_file_t::open(
        (std::filesystem::path(CORR_TEST_DATA_DIR) / "sup" / "previous_v1.sup").wstring(), &error);
    ASSERT_TRUE(file) << platkit::strings::wide_to_utf8(error);
    const rule_set_ptr set = file->get_rulesets(true).front();
    ASSERT_FALSE(set->get_rules().front()->get_stack_item());

    aspect_grid_model_t model;
    model.init(set);
    ASSERT_EQ(model.get_count(), 1);
    EXPECT_TRUE(model.get_rule(0)->get_stack_item());
    EXPECT_NE(model.GetCellText(0, 2).find(L"print_record"), std::wstring::npos);
}

TEST(StackGrid, OneLinePerFrameAndNoRowsWithoutAStack)
{
    stack_grid_model_t model;
    model.init(stack_ptr());
    EXPECT_EQ(model.GetRowCount(), 0);
    EXPECT_EQ(model.GetCellText(0, 0), L"");

    const rule_ptr rule = candidates("helgrind_race_counter.xml")->get_rules().front();
    const stack_ptr stack = rule->get_stack(false);
    model.init(stack);
    ASSERT_EQ(model.GetRowCount(), stack->stack_size());
    EXPECT_EQ(model.GetColumnCount(), 1);
    EXPECT_EQ(model.GetColumnCaption(0), L"");
    EXPECT_EQ(model.GetColumnTextAlign(0), 33);
    EXPECT_EQ(model.GetCellTextAlign(0, 0), 33);
    EXPECT_EQ(model.GetCellImageIndex(0, 0), -1);
    EXPECT_EQ(model.GetCellText(0, 0), create_stack_line(stack, 0));
    EXPECT_EQ(model.GetCellText(0, 0).rfind(L"thr_race_counter!worker - ", 0), 0u);
    EXPECT_EQ(model.GetCellText(1, 0), L"..."); // elided: only the best frame is used
    gridview8::CCellAttr attr;
    EXPECT_TRUE(model.GetAttr(1, 0, attr) && attr.grayed);

    model.OnSortColumn(0, gridview8::IHeaderItem::sdDescending); // a stack keeps its order
    EXPECT_EQ(model.GetCellText(0, 0), create_stack_line(stack, 0));
}
