// The combo models: the choice between a concrete value and any value,
// written into the very rule the dialog holds, and nothing else changed.
#include "model_data.h"

#include "corr_dialogs2/rule_combo_models.h"
#include "corr_dialogs2/stack_combo_grid_model.h"

#include <gtest/gtest.h>

using namespace corr_dialogs2;
using namespace grid_models_test;
using namespace suppfmt3;

static ::testing::Environment* const catalog_env =
    ::testing::AddGlobalTestEnvironment(new catalog_environment);

namespace {

// Everything a rule says, as text: which aspects it uses, its values, and
// its stack with every frame and field flag.
std::string rule_state(const rule_ptr& rule)
{
    std::string out;
    for (auto type : rule_datatypes)
        out += std::to_string(type) + (rule->is_item_active(type) ? "+" : "-") +
               rule->get_value_text(type) + "|";
    if (const auto stack = rule->get_stack_item())
        out += stack->get_text() + "#" + std::to_string(stack->get_best_level()) +
               (stack->is_active() ? "+" : "-");
    return out;
}

uiframe7::CComboBox* combo_of(uiframe7::CEditControl* editor)
{
    return dynamic_cast<uiframe7::CComboBox*>(editor);
}

std::vector<std::wstring> entries(uiframe7::CComboBox* combo)
{
    std::vector<std::wstring> out;
    for (int i = 0; i < combo->GetCount(); ++i)
        out.push_back(combo->GetString(i));
    return out;
}

} // namespace

TEST(ComboAspectModel, ColumnsAndEdgeColumnsAreNeutral)
{
    combo_aspect_model_t model;
    ASSERT_EQ(combo_aspect_model_t::get_columns().size(), 3u);
    EXPECT_EQ(model.GetColumnCount(), 3);
    // Column 3 is beyond the table but captions the stack editor's title.
    const struct
    {
        int col;
        suppfmt_datatype type;
        const wchar_t* caption_key; // nullptr: no caption
    } columns[] = {{-1, sdt_none, nullptr},
                   {0, sdt_description, L"dlg.suppression_grid.description"},
                   {1, sdt_none, L"dlg.suppression_grid.frames"},
                   {2, sdt_call_stack, L"dlg.suppression_grid.stack"},
                   {3, sdt_none, L"dlg.suppressions.edit_stack.title"},
                   {4, sdt_none, nullptr}};
    for (const auto& c : columns) {
        SCOPED_TRACE(c.col);
        EXPECT_EQ(model.get_column_datatype(c.col), c.type);
        EXPECT_EQ(model.GetColumnCaption(c.col), c.caption_key ? word(c.caption_key) : L"");
        EXPECT_EQ(model.has_button(c.col), c.col == 2);
    }
}

TEST(ComboAspectModel, CellsShowValuesCountsAndCodeLocations)
{
    combo_aspect_model_t model;
    const rule_set_ptr leaks = candidates("memcheck_leaks.xml");
    model.init(leaks);
    ASSERT_EQ(model.GetRowCount(), 3);
    const rule_ptr rule = leaks->get_rules()[0];
    EXPECT_EQ(model.get_rule(0), rule);
    EXPECT_FALSE(model.get_rule(3));

    EXPECT_EQ(model.GetCellText(0, 0), rule->get_field_value(sdt_description));
    EXPECT_NE(model.GetCellText(0, 0).find(L"definitely lost"), std::wstring::npos);
    EXPECT_EQ(model.GetCellText(0, 1), std::to_wstring(rule->get_stack(false)->stack_size()));
    EXPECT_EQ(model.GetCellText(0, 2), create_rule_description(rule, {}));
    EXPECT_EQ(model.GetCellText(0, 3), L"");
    EXPECT_EQ(model.GetCellText(3, 0), L"");
    EXPECT_EQ(model.get_rule_value(0, 1), L"");
    EXPECT_TRUE(model.is_active(0, 1));
    EXPECT_TRUE(model.is_active(0, 2));
    EXPECT_FALSE(model.is_active(0, 3));
    EXPECT_FALSE(model.is_active(5, 1));

    rule->set_item_active(false, sdt_description);
    EXPECT_FALSE(model.is_active(0, 0));
    EXPECT_EQ(model.GetCellText(0, 0), word(L"dlg.suppression_grid.any_value"));
    gridview8::CCellAttr attr;
    EXPECT_TRUE(model.GetAttr(0, 0, attr) && attr.grayed);
}

TEST(ComboAspectModel, ComboEditsWriteTheRuleInPlaceAndNothingElse)
{
    editable_combo_aspect_model_t model;
    const rule_set_ptr races = candidates("helgrind_race_counter.xml");
    model.init(races);
    model.set_count(model.GetRowCount());
    EXPECT_EQ(model.GetEditorInt(0, 0), nullptr); // no combo box before init(window)
    model.save_editors_data();                    // nothing to save: nothing happens
    model.init(static_cast<uicore7::ISysWindow*>(nullptr));

    const rule_ptr rule = races->get_rules()[1];
    const std::string before = rule_state(rule);
    rule->set_item_active(false, sdt_description);
    const std::string without_description = rule_state(rule);

    // An inactive aspect preselects the any-value entry.
    uiframe7::CComboBox* combo = combo_of(model.GetEditorInt(1, 0));
    ASSERT_NE(combo, nullptr);
    EXPECT_EQ(entries(combo), (std::vector<std::wstring>{rule->get_field_value(sdt_description),
                                                         word(L"dlg.suppression_grid.any_value")}));
    EXPECT_EQ(combo->GetSelection(), 1);

    // A pick writes at once: the value entry switches the aspect back on.
    model.CBOnChoicItem(combo, 0);
    EXPECT_TRUE(rule->is_item_active(sdt_description));
    EXPECT_EQ(rule_state(rule), before);
    model.CBOnChoicItem(combo, 1);
    EXPECT_EQ(rule_state(rule), without_description);

    // The end of an edit reads the selection back.
    combo->SetSelection(0);
    model.OnUpdateDataInt(1, 0);
    EXPECT_EQ(rule_state(rule), before);
    EXPECT_EQ(rule_state(races->get_rules()[0]), rule_state(model.get_rule(0)));

    // Other columns and rows have no combo box and write nothing.
    EXPECT_EQ(model.GetEditorInt(1, 1), nullptr);
    EXPECT_EQ(model.GetEditorInt(1, 2), nullptr);
    EXPECT_EQ(model.GetEditorInt(1, model.get_check_column()), nullptr);
    EXPECT_EQ(model.GetEditorInt(2, 0), nullptr);
    EXPECT_EQ(model.GetEditorInt(-1, 0), nullptr);
    combo->SetSelection(1);
    model.OnUpdateDataInt(1, 1);
    model.OnUpdateDataInt(5, 0);
    model.CBOnChoicItem(nullptr, 1);
    EXPECT_EQ(rule_state(rule), before);

    // A second init replaces the combo box.
    model.init(static_cast<uicore7::ISysWindow*>(nullptr));
    uiframe7::CComboBox* fresh = combo_of(model.GetEditorInt(1, 0));
    ASSERT_NE(fresh, nullptr);
    EXPECT_EQ(fresh->GetSelection(), 0);
}

TEST(StackComboModel, ARuleWithoutAStackHasNoRowsAndNoEditors)
{
    editable_stack_grid_model_t model;
    model.init(static_cast<uicore7::ISysWindow*>(nullptr));
    model.init(rule_without_stack());
    EXPECT_EQ(model.GetRowCount(), 0);
    EXPECT_TRUE(model.get_stack().empty());
    EXPECT_EQ(model.GetEditorInt(0, 0), nullptr);
    EXPECT_FALSE(model.has_combo(0, 0));
    EXPECT_EQ(model.GetCellText(0, 0), L"");
    EXPECT_EQ(model.get_stack_item(0, 0), L"");
    EXPECT_FALSE(model.is_active(0, 0));

    model.init(rule_ptr());
    EXPECT_EQ(model.GetRowCount(), 0);
    EXPECT_EQ(model.GetColumnCaption(0), L"");
}

TEST(StackComboModel, ColumnsAreTheFrameFieldsThenUseInRule)
{
    editable_stack_grid_model_t model;
    const rule_ptr rule = candidates("helgrind_race_counter.xml")->get_rules().front();
    model.init(rule);
    const auto& types = stack_combo_grid_model_t::get_stack_datatypes();
    EXPECT_EQ(types,
              (std::vector<suppfmt_datatype>{sdt_module, sdt_function, sdt_source, sdt_line}));
    ASSERT_EQ(model.GetColumnCount(), 5);
    EXPECT_EQ(model.get_check_column(), static_cast<int>(types.size()));
    for (int col = 0; col < 4; ++col)
        EXPECT_EQ(model.GetColumnCaption(col), rule->get_datatype_international(types[col]));
    EXPECT_EQ(model.GetColumnCaption(4), word(L"dlg.suppression_stack_grid.use_in_rule"));
    EXPECT_EQ(model.GetColumnCaption(5), L"");
    EXPECT_EQ(model.get_column_datatype(4), sdt_none);

    ASSERT_EQ(model.GetRowCount(), 4);
    EXPECT_EQ(model.get_stack().size(), 4u);
    EXPECT_EQ(model.GetCellText(0, 0), L"thr_race_counter");
    EXPECT_EQ(model.GetCellText(0, 1), L"worker");
    EXPECT_EQ(model.GetCellText(0, 3), L"14");
    EXPECT_EQ(model.GetCellText(0, 4), L"");
}

TEST(StackComboModel, PicksChangeTheRuleAtOnceAndALineFollowsItsSource)
{
    editable_stack_grid_model_t model;
    const rule_ptr rule = candidates("helgrind_race_counter.xml")->get_rules().front();
    model.init(rule);
    model.init(static_cast<uicore7::ISysWindow*>(nullptr));
    const auto stack = rule->get_stack(false);
    const std::string before = rule_state(rule);

    uiframe7::CComboBox* combo = combo_of(model.GetEditorInt(0, 2)); // frame 0, source
    ASSERT_NE(combo, nullptr);
    EXPECT_EQ(entries(combo),
              (std::vector<std::wstring>{stack->get_frame_field_value(0, sdt_source),
                                         word(L"dlg.suppression_grid.any_value")}));
    EXPECT_EQ(combo->GetSelection(), 0);
    model.CBOnChoicItem(combo, 1);
    EXPECT_FALSE(stack->is_frame_field_active(0, sdt_source));
    EXPECT_FALSE(stack->is_frame_field_active(0, sdt_line)); // the line went with it
    EXPECT_TRUE(stack->is_frame_field_active(0, sdt_module));
    EXPECT_TRUE(stack->is_frame_field_active(0, sdt_function));
    EXPECT_EQ(model.GetCellText(0, 2), word(L"dlg.suppression_grid.any_value"));
    EXPECT_EQ(model.GetCellText(0, 3), word(L"dlg.suppression_grid.any_value"));
    // A line without its file is not offered.
    EXPECT_FALSE(model.has_combo(0, 3));
    EXPECT_EQ(model.GetEditorInt(0, 3), nullptr);

    combo = combo_of(model.GetEditorInt(0, 2));
    EXPECT_EQ(combo->GetSelection(), 1);
    model.CBOnChoicItem(combo, 0);
    EXPECT_TRUE(stack->is_frame_field_active(0, sdt_source));
    ASSERT_TRUE(model.has_combo(0, 3));
    combo = combo_of(model.GetEditorInt(0, 3));
    combo->SetSelection(0);
    model.OnUpdateDataInt(0, 3);
    EXPECT_EQ(rule_state(rule), before);

    // Frame 1 is Valgrind's preload object: no function, no source, no line.
    EXPECT_TRUE(model.has_combo(1, 0));
    EXPECT_FALSE(model.has_combo(1, 1));
    EXPECT_FALSE(model.has_combo(1, 2));
    EXPECT_FALSE(model.has_combo(1, 3));
    EXPECT_FALSE(model.has_combo(0, 4)); // use in rule
    EXPECT_FALSE(model.has_combo(4, 0));
}
