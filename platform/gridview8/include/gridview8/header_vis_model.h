#pragma once
// Which model columns the grid shows, in which order, how wide (by weight)
// and sorted which way. Top-level items may be groups: a group's caption
// spans its children on the upper of two header rows, and its children are
// the columns shown.
#include <memory>
#include <vector>

namespace gridview8 {

class IHeaderItem
{
public:
    // Bits of an item's state; 0 is a plain visible item.
    enum ItemState {
        isVisible = 0,
        isHidden = 1,     // not shown (nor its children)
        isFixedWidth = 2, // the width weight is a width in pixels, not resized
    };
    enum SortingDirection {
        sdNone = 0,
        sdAscending = 1,
        sdDescending = 2,
    };

    virtual ~IHeaderItem() = default;

    virtual int GetColumn() const = 0; // model column
    virtual int GetState() const = 0;  // ItemState bits
    virtual void SetState(int state) = 0;
    virtual bool IsVisible() const = 0;
    virtual int GetWidthWeight() const = 0;
    virtual void SetWidthWeight(int weight) = 0;
    virtual SortingDirection GetSortingDirection() const = 0;
    virtual void SetSortingDirection(SortingDirection direction) = 0;

    virtual IHeaderItem* GetParentItem() const = 0;
    virtual int GetChildCount() const = 0;
    virtual IHeaderItem* GetChild(int index) const = 0;
};

class IHeaderVisModel
{
public:
    virtual ~IHeaderVisModel() = default;

    // Appends a top-level item for a model column. False (and nothing added)
    // for a negative column, a negative weight, or a column already placed.
    virtual bool AddItem(int column, IHeaderItem::ItemState state, int width_weight,
                         IHeaderItem::SortingDirection sorting) = 0;
    // Appends a child to the top-level item of parent_column, which becomes a
    // group. False when there is no such top-level item or the column cannot
    // be placed (as for AddItem).
    virtual bool AddChildItem(int parent_column, int column, IHeaderItem::ItemState state,
                              int width_weight, IHeaderItem::SortingDirection sorting) = 0;
    virtual void Clear() = 0;

    virtual int GetItemCount() const = 0; // top-level items
    virtual IHeaderItem* GetItem(int index) const = 0;
    virtual IHeaderItem* FindItem(int column) const = 0; // at any level

    // The shown columns, left to right: visible items without visible
    // children and the visible children of visible groups.
    virtual int GetLeafCount() const = 0;
    virtual IHeaderItem* GetLeaf(int position) const = 0;
    virtual int GetLeafPosition(int column) const = 0; // -1 when not shown
    // Whether a visible group is shown (the header then has two rows).
    virtual bool HasGroups() const = 0;

    // Changes whenever an item is added, removed or changed.
    virtual unsigned GetRevision() const = 0;
};

class CHeaderVisModel : public IHeaderVisModel
{
public:
    CHeaderVisModel();
    ~CHeaderVisModel() override;
    CHeaderVisModel(const CHeaderVisModel&) = delete;
    CHeaderVisModel& operator=(const CHeaderVisModel&) = delete;

    bool AddItem(int column, IHeaderItem::ItemState state, int width_weight,
                 IHeaderItem::SortingDirection sorting) override;
    bool AddChildItem(int parent_column, int column, IHeaderItem::ItemState state, int width_weight,
                      IHeaderItem::SortingDirection sorting) override;
    void Clear() override;

    int GetItemCount() const override;
    IHeaderItem* GetItem(int index) const override;
    IHeaderItem* FindItem(int column) const override;

    int GetLeafCount() const override;
    IHeaderItem* GetLeaf(int position) const override;
    int GetLeafPosition(int column) const override;
    bool HasGroups() const override;

    unsigned GetRevision() const override { return m_revision; }

private:
    class CItem;
    friend class CItem;
    void changed() { ++m_revision; }
    void ensure_leaves() const;

    std::vector<std::unique_ptr<CItem>> m_items;
    unsigned m_revision = 1;
    mutable unsigned m_leaves_revision = 0;
    mutable std::vector<IHeaderItem*> m_leaves;
    mutable bool m_has_groups = false;
};

} // namespace gridview8
