// Header visibility (groups, leaves, weights), proportional resizing and
// the row selection, without a window.
#include "gridview8/header_vis_model.h"
#include "gridview8/resizing_model.h"
#include "gridview8/row_selection.h"
#include "uiframe7/item_view_model.h"

#include <gtest/gtest.h>

#include <numeric>

using gridview8::CHeaderVisModel;
using gridview8::CProportionalResizingModelEx;
using gridview8::IHeaderItem;

namespace {
constexpr auto visible = IHeaderItem::isVisible;
constexpr auto unsorted = IHeaderItem::sdNone;

// A group of weight 100 whose children share 100, the form the dialogs use.
void add_group(CHeaderVisModel& header, int column, const std::vector<int>& children)
{
    ASSERT_TRUE(header.AddItem(column, visible, 100, unsorted));
    for (int child : children)
        ASSERT_TRUE(header.AddChildItem(column, child, visible, 100 / static_cast<int>(children.size()), unsorted));
}

std::vector<int> leaf_columns(const CHeaderVisModel& header)
{
    std::vector<int> columns;
    for (int i = 0; i < header.GetLeafCount(); ++i)
        columns.push_back(header.GetLeaf(i)->GetColumn());
    return columns;
}
} // namespace

TEST(HeaderVisModel, ItemsAndGroupChildrenInOrderAndPlacementFailures)
{
    CHeaderVisModel header;
    const unsigned before = header.GetRevision();
    EXPECT_TRUE(header.AddItem(4, visible, 100, unsorted));
    EXPECT_TRUE(header.AddItem(5, visible, 50, IHeaderItem::sdAscending));
    EXPECT_NE(header.GetRevision(), before);
    EXPECT_FALSE(header.HasGroups());
    add_group(header, 1, {0, 2, 3});
    EXPECT_TRUE(header.HasGroups());
    EXPECT_EQ(header.GetItemCount(), 3);
    EXPECT_EQ(leaf_columns(header), (std::vector<int>{4, 5, 0, 2, 3}));
    EXPECT_EQ(header.GetLeafPosition(0), 2);
    EXPECT_EQ(header.GetLeafPosition(6), -1);
    EXPECT_EQ(header.FindItem(5)->GetSortingDirection(), IHeaderItem::sdAscending);
    const IHeaderItem* group = header.FindItem(1);
    ASSERT_NE(group, nullptr);
    ASSERT_EQ(group->GetChildCount(), 3);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(group->GetChild(i)->GetParentItem(), group);

    EXPECT_FALSE(header.AddItem(4, visible, 100, unsorted)); // already placed
    EXPECT_FALSE(header.AddItem(2, visible, 100, unsorted)); // already placed as a child
    EXPECT_FALSE(header.AddItem(-1, visible, 100, unsorted));
    EXPECT_FALSE(header.AddItem(6, visible, -1, unsorted));
    EXPECT_FALSE(header.AddChildItem(9, 7, visible, 10, unsorted)); // no such group
    EXPECT_EQ(header.GetLeafCount(), 5);
}

TEST(HeaderVisModel, HiddenItemsLeaveTheShownColumns)
{
    CHeaderVisModel header;
    header.AddItem(0, visible, 100, unsorted);
    add_group(header, 1, {2, 3});
    header.FindItem(2)->SetState(IHeaderItem::isHidden);
    EXPECT_EQ(leaf_columns(header), (std::vector<int>{0, 3}));
    header.FindItem(3)->SetState(IHeaderItem::isHidden);
    EXPECT_EQ(leaf_columns(header), (std::vector<int>{0}));
    EXPECT_FALSE(header.HasGroups()); // a group with nothing to show is not shown
    header.FindItem(1)->SetState(IHeaderItem::isHidden);
    header.FindItem(3)->SetState(IHeaderItem::isVisible);
    EXPECT_EQ(leaf_columns(header), (std::vector<int>{0}));
    header.Clear();
    EXPECT_EQ(header.GetLeafCount(), 0);
}

TEST(ProportionalResizing, WidthsFollowWeightsAndFillTheWidthExactly)
{
    auto widths = CProportionalResizingModelEx::DistributeWidths({100, 33, 33, 33}, {}, 398, 0);
    EXPECT_EQ(widths, (std::vector<int>{200, 66, 66, 66}));
    widths = CProportionalResizingModelEx::DistributeWidths({1, 1, 1}, {}, 100, 0);
    EXPECT_EQ(std::accumulate(widths.begin(), widths.end(), 0), 100);
    EXPECT_EQ(widths, (std::vector<int>{34, 33, 33}));
    widths = CProportionalResizingModelEx::DistributeWidths({0, 0}, {}, 51, 0);
    EXPECT_EQ(widths, (std::vector<int>{26, 25}));
}

TEST(ProportionalResizing, FixedColumnsAndMinimumWidths)
{
    // Column 0 fixed at 24: the others share the rest.
    auto widths =
        CProportionalResizingModelEx::DistributeWidths({100, 100, 300}, {24, -1, -1}, 424, 10);
    EXPECT_EQ(widths, (std::vector<int>{24, 100, 300}));
    // Too narrow for the proportions: the small share rises to the minimum.
    widths = CProportionalResizingModelEx::DistributeWidths({1, 99}, {}, 100, 20);
    EXPECT_EQ(widths, (std::vector<int>{20, 80}));
    // Too narrow for the minimums: each gets the minimum (the view clips).
    widths = CProportionalResizingModelEx::DistributeWidths({1, 1, 1}, {}, 30, 20);
    EXPECT_EQ(widths, (std::vector<int>{20, 20, 20}));
}

TEST(ProportionalResizing, ResizesTheShownColumnsOfAHeader)
{
    CHeaderVisModel header;
    header.AddItem(4, visible, 100, unsorted);
    add_group(header, 1, {0, 2, 3});
    header.AddItem(5, IHeaderItem::isFixedWidth, 30, unsorted);
    CProportionalResizingModelEx resizing;
    resizing.SetMinColumnWidth(0);
    uiframe7::CSimpleContinuousItemViewModel columns;
    resizing.ResizeColumns(columns, header, 428);
    ASSERT_EQ(columns.GetCount(), 5);
    EXPECT_EQ(columns.GetItemSize(0), 200);
    EXPECT_EQ(columns.GetItemSize(1), 66);
    EXPECT_EQ(columns.GetItemSize(4), 30);
    EXPECT_EQ(columns.GetTotalSize(), 428);

    resizing.SetFixedWidth(4, 50); // a fixed width of the resizing model wins
    resizing.ResizeColumns(columns, header, 428);
    EXPECT_EQ(columns.GetItemSize(0), 50);
    EXPECT_EQ(columns.GetTotalSize(), 428);
    resizing.SetFixedWidth(4, -1);
    EXPECT_EQ(resizing.GetFixedWidth(4), -1);
}

TEST(RowSelection, RangesMergeSplitAndTruncate)
{
    gridview8::CRowSelection selection;
    selection.Select(10, 20, true);
    selection.Select(21, 25, true); // touches: merges
    selection.Select(5, 3, true);   // reversed bounds
    EXPECT_EQ(selection.GetRanges(), (std::vector<std::pair<int, int>>{{3, 5}, {10, 25}}));
    selection.Select(12, 14, false);
    EXPECT_EQ(selection.GetRanges(),
              (std::vector<std::pair<int, int>>{{3, 5}, {10, 11}, {15, 25}}));
    EXPECT_TRUE(selection.IsSelected(11));
    EXPECT_FALSE(selection.IsSelected(12));
    EXPECT_EQ(selection.GetCount(), 3 + 2 + 11);
    selection.Toggle(12);
    selection.Toggle(3);
    EXPECT_EQ(selection.GetRanges(),
              (std::vector<std::pair<int, int>>{{4, 5}, {10, 12}, {15, 25}}));
    selection.Truncate(16);
    EXPECT_EQ(selection.GetRows(), (std::vector<int>{4, 5, 10, 11, 12, 15}));
    selection.Select(0, 99999, true);
    EXPECT_EQ(selection.GetRanges().size(), 1u); // a whole grid is one range
    EXPECT_EQ(selection.GetCount(), 100000);
}
