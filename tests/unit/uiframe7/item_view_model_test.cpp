// Row and column view models: offsets, hit tests, ranges and paging, with
// items of their own heights.
#include "uiframe7/item_view_model.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <utility>
#include <vector>

using uiframe7::CSimpleContinuousItemViewModel;
using uiframe7::CSimpleDiscreteItemViewModel;
using uiframe7::ItemRange;

namespace {

// (position, item the position hits) pairs.
using hits = std::initializer_list<std::pair<int, int>>;

// Heights given per item; counts how often each is asked.
class sized_rows : public CSimpleDiscreteItemViewModel
{
public:
    std::vector<int> heights;
    mutable int asks = 0;

    explicit sized_rows(std::vector<int> h) : heights(std::move(h))
    {
        SetCount(static_cast<int>(heights.size()));
    }
    int GetItemSize(int item) const override
    {
        ++asks;
        return heights[static_cast<size_t>(item)];
    }
};

} // namespace

TEST(DiscreteItemViewModel, UniformRowsHitTestAndRanges)
{
    CSimpleDiscreteItemViewModel rows(20);
    rows.SetCount(10);
    rows.SetViewSize(50);
    EXPECT_EQ(rows.GetTotalSize(), 200);
    for (const auto& [y, row] : hits{{0, 0}, {19, 0}, {20, 1}, {199, 9}, {200, -1}, {-1, -1}})
        EXPECT_EQ(rows.HitTest(y), row) << y;
    EXPECT_EQ(rows.GetItemRange(3), (ItemRange{60, 80}));
    EXPECT_EQ(rows.GetItemRange(10), (ItemRange{}));
    EXPECT_EQ(rows.GetItemRange(-1), (ItemRange{}));
    EXPECT_EQ(rows.GetFullRange(), (ItemRange{0, 200}));
}

TEST(DiscreteItemViewModel, ScrolledViewMeasuresFromTheStartItem)
{
    sized_rows rows({10, 30, 20, 40, 10, 10});
    rows.SetViewSize(45);
    rows.SetStartItem(2);
    // Item 2 is at the top of the view; the items above lie at negative positions.
    EXPECT_EQ(rows.GetItemRange(2), (ItemRange{0, 20}));
    EXPECT_EQ(rows.GetItemRange(1), (ItemRange{-30, 0}));
    EXPECT_EQ(rows.GetFullRange(), (ItemRange{-40, 80}));
    for (const auto& [y, row] : hits{{0, 2}, {20, 3}, {-1, 1}, {-40, 0}, {-41, -1}})
        EXPECT_EQ(rows.HitTest(y), row) << y;
    EXPECT_EQ(rows.GetLastVisibleItem(), 3);      // 3 ends at 60, beyond 45
    EXPECT_EQ(rows.GetLastFullyVisibleItem(), 2); // only 2 fits completely
}

TEST(DiscreteItemViewModel, OffsetsArePrefixSumsComputedInOnePass)
{
    sized_rows rows({5, 0, 7, 3});
    const int offsets[] = {0, 5, 5, 12, 15};
    for (int item = 0; item < 5; ++item)
        EXPECT_EQ(rows.GetItemOffset(item), offsets[item]) << item;
    EXPECT_EQ(rows.asks, 4);       // once per item, however many queries follow
    EXPECT_EQ(rows.HitTest(5), 2); // the empty item 1 is never hit
    for (int y = 0; y < 15; ++y)
        rows.HitTest(y);
    EXPECT_EQ(rows.asks, 4);

    rows.heights[0] = 50;
    rows.UpdateModelState();
    EXPECT_EQ(rows.asks, 8);
    EXPECT_EQ(rows.GetTotalSize(), 60);
}

TEST(DiscreteItemViewModel, ManyRowsAreSummedOnceEach)
{
    sized_rows rows(std::vector<int>(100000, 1));
    for (size_t i = 0; i < rows.heights.size(); i += 7)
        rows.heights[i] = 3;
    rows.SetViewSize(500);
    rows.SetStartItem(99000);
    const int hit = rows.HitTest(250);
    EXPECT_EQ(rows.asks, 100000);
    EXPECT_GE(hit, 99000);
    EXPECT_EQ(rows.GetItemRange(hit).contains(250), true);
    EXPECT_EQ(rows.GetTotalSize(), 100000 + 2 * ((100000 + 6) / 7));
    EXPECT_EQ(rows.asks, 100000);
}

TEST(DiscreteItemViewModel, PagingKeepsTheLastPageFull)
{
    sized_rows rows({10, 10, 10, 10, 10, 10, 10, 10, 10, 10});
    rows.SetViewSize(35);
    EXPECT_EQ(rows.GetMaxStartItem(), 7); // items 7, 8, 9 fill 30 of 35
    EXPECT_EQ(rows.GetStartItemForLastItem(5), 3);
    EXPECT_EQ(rows.GetStartItemForLastItem(1), 0);
    rows.SetViewSize(200);
    EXPECT_EQ(rows.GetMaxStartItem(), 0);
    // An item taller than the view starts its own page.
    sized_rows tall({10, 100, 10});
    tall.SetViewSize(50);
    EXPECT_EQ(tall.GetStartItemForLastItem(1), 1);
    EXPECT_EQ(tall.GetMaxStartItem(), 2);
}

TEST(DiscreteItemViewModel, CountChangesClampTheStartAndRecompute)
{
    CSimpleDiscreteItemViewModel rows(10);
    rows.SetCount(100);
    rows.SetStartItem(90);
    rows.SetCount(20);
    EXPECT_EQ(rows.GetStartItem(), 19);
    EXPECT_EQ(rows.GetTotalSize(), 200);
    rows.SetCount(0);
    EXPECT_EQ(rows.GetStartItem(), 0);
    EXPECT_EQ(rows.HitTest(0), -1);
    EXPECT_EQ(rows.GetLastVisibleItem(), -1);
    EXPECT_EQ(rows.GetFullRange(), (ItemRange{0, 0}));
    rows.SetStartItem(-5);
    EXPECT_EQ(rows.GetStartItem(), 0);
}

TEST(ContinuousItemViewModel, WidthsRangesAndHitTests)
{
    CSimpleContinuousItemViewModel cols;
    cols.SetDefaultItemSize(50);
    cols.SetCount(3);
    cols.SetItemSize(1, 20);
    EXPECT_EQ(cols.GetTotalSize(), 120);
    EXPECT_EQ(cols.GetItemRange(1), (ItemRange{50, 70}));
    for (const auto& [x, col] : hits{{49, 0}, {50, 1}, {119, 2}, {120, -1}})
        EXPECT_EQ(cols.HitTest(x), col) << x;
    EXPECT_EQ(cols.GetFullRange(), (ItemRange{0, 120}));
    cols.SetOffset(30);
    EXPECT_EQ(cols.HitTest(0), 0);
    EXPECT_EQ(cols.HitTest(25), 1);
    EXPECT_EQ(cols.GetFullRange(), (ItemRange{-30, 90}));
    cols.SetItemSize(7, 10); // out of range: ignored
    EXPECT_EQ(cols.GetCount(), 3);
    cols.SetCount(1);
    EXPECT_EQ(cols.GetTotalSize(), 50);
}
