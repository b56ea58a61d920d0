#pragma once
// View models of a list of items along one axis: rows (discrete: scrolled by
// whole items, each item its own height) and columns (continuous: scrolled
// by pixels). Positions are in the view's coordinates: 0 is the top (left)
// edge of the view.
#include <vector>

namespace uiframe7 {

// [start, end) in pixels.
struct ItemRange
{
    int start = 0;
    int end = 0;

    int size() const { return end - start; }
    bool contains(int pos) const { return start <= pos && pos < end; }
    bool operator==(const ItemRange& o) const { return start == o.start && end == o.end; }
    bool operator!=(const ItemRange& o) const { return !(*this == o); }
};

// Rows. The view shows items from the start item down; item i lies at
// GetItemOffset(i) - GetItemOffset(GetStartItem()).
class IDiscreteItemViewModel
{
public:
    virtual ~IDiscreteItemViewModel() = default;

    virtual void SetCount(int count) = 0;
    virtual int GetCount() const = 0;
    virtual void SetDefaultItemSize(int size) = 0;
    virtual int GetDefaultItemSize() const = 0;
    // Height of one item; models with items of their own height override it.
    virtual int GetItemSize(int item) const = 0;

    virtual void SetStartItem(int item) = 0;
    virtual int GetStartItem() const = 0;
    virtual void SetViewSize(int size) = 0;
    virtual int GetViewSize() const = 0;

    // Item at a view position, or -1 (above the first or below the last item).
    virtual int HitTest(int pos) const = 0;
    // Range of an item in view coordinates; {0, 0} for an invalid item.
    virtual ItemRange GetItemRange(int item) const = 0;
    // Range of all items together, in view coordinates.
    virtual ItemRange GetFullRange() const = 0;
    virtual int GetTotalSize() const = 0;
    // Distance of an item's top from the top of item 0 (count gives the total).
    virtual int GetItemOffset(int item) const = 0;

    // Last item that shows at least partly in the view, -1 without items.
    virtual int GetLastVisibleItem() const = 0;
    // Last item that shows completely (the start item when even it does not fit).
    virtual int GetLastFullyVisibleItem() const = 0;
    // Largest start item that still fills the view (0 when everything fits).
    virtual int GetMaxStartItem() const = 0;
    // Smallest start item with which `item` still shows completely at the bottom.
    virtual int GetStartItemForLastItem(int item) const = 0;

    // Recomputes the item offsets from GetItemSize (call after item heights changed).
    virtual void UpdateModelState() = 0;
};

// Keeps the offsets as prefix sums of the item sizes, computed in one pass
// over the items (GetItemSize is called once per item) whenever the count,
// the default size or UpdateModelState asks for it; lookups are binary searches.
// A default item size of 0 means "not chosen": a grid then sets it from its font.
class CSimpleDiscreteItemViewModel : public IDiscreteItemViewModel
{
public:
    CSimpleDiscreteItemViewModel() = default;
    explicit CSimpleDiscreteItemViewModel(int default_item_size);

    void SetCount(int count) override;
    int GetCount() const override { return m_count; }
    void SetDefaultItemSize(int size) override;
    int GetDefaultItemSize() const override { return m_default_size; }
    int GetItemSize(int item) const override;

    void SetStartItem(int item) override;
    int GetStartItem() const override { return m_start; }
    void SetViewSize(int size) override;
    int GetViewSize() const override { return m_view_size; }

    int HitTest(int pos) const override;
    ItemRange GetItemRange(int item) const override;
    ItemRange GetFullRange() const override;
    int GetTotalSize() const override;
    int GetItemOffset(int item) const override;

    int GetLastVisibleItem() const override;
    int GetLastFullyVisibleItem() const override;
    int GetMaxStartItem() const override;
    int GetStartItemForLastItem(int item) const override;

    void UpdateModelState() override;

private:
    void ensure_state() const;
    void rebuild() const;
    int start_offset() const;

    int m_count = 0;
    int m_default_size = 0;
    int m_start = 0;
    int m_view_size = 0;
    mutable std::vector<int> m_offsets; // m_count + 1 entries when valid
    mutable bool m_dirty = true;
};

// Columns: each item its own width, the view scrolled by a pixel offset.
class IContinuousItemViewModel
{
public:
    virtual ~IContinuousItemViewModel() = default;

    // Items added get the default size.
    virtual void SetCount(int count) = 0;
    virtual int GetCount() const = 0;
    virtual void SetDefaultItemSize(int size) = 0;
    virtual int GetDefaultItemSize() const = 0;
    virtual void SetItemSize(int item, int size) = 0;
    virtual int GetItemSize(int item) const = 0;

    virtual void SetOffset(int offset) = 0;
    virtual int GetOffset() const = 0;
    virtual void SetViewSize(int size) = 0;
    virtual int GetViewSize() const = 0;

    // Item at a view position, or -1.
    virtual int HitTest(int pos) const = 0;
    virtual ItemRange GetItemRange(int item) const = 0;
    // Range of all items together, in view coordinates.
    virtual ItemRange GetFullRange() const = 0;
    virtual int GetTotalSize() const = 0;
};

class CSimpleContinuousItemViewModel : public IContinuousItemViewModel
{
public:
    void SetCount(int count) override;
    int GetCount() const override { return static_cast<int>(m_sizes.size()); }
    void SetDefaultItemSize(int size) override;
    int GetDefaultItemSize() const override { return m_default_size; }
    void SetItemSize(int item, int size) override;
    int GetItemSize(int item) const override;

    void SetOffset(int offset) override { m_offset = offset; }
    int GetOffset() const override { return m_offset; }
    void SetViewSize(int size) override;
    int GetViewSize() const override { return m_view_size; }

    int HitTest(int pos) const override;
    ItemRange GetItemRange(int item) const override;
    ItemRange GetFullRange() const override;
    int GetTotalSize() const override;

private:
    void rebuild();

    std::vector<int> m_sizes;
    std::vector<int> m_offsets{0};
    int m_default_size = 100;
    int m_offset = 0;
    int m_view_size = 0;
};

} // namespace uiframe7
