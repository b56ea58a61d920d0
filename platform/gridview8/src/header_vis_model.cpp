#include "gridview8/header_vis_model.h"

#include <algorithm>

namespace gridview8 {

class CHeaderVisModel::CItem : public IHeaderItem
{
public:
    CItem(CHeaderVisModel* owner, CItem* parent, int column, int state, int weight,
          SortingDirection sorting)
        : m_owner(owner), m_parent(parent), m_column(column), m_state(state), m_weight(weight),
          m_sorting(sorting)
    {
    }

    int GetColumn() const override { return m_column; }
    int GetState() const override { return m_state; }
    void SetState(int state) override
    {
        if (state != m_state) {
            m_state = state;
            m_owner->changed();
        }
    }
    bool IsVisible() const override { return (m_state & isHidden) == 0; }
    int GetWidthWeight() const override { return m_weight; }
    void SetWidthWeight(int weight) override
    {
        weight = std::max(0, weight);
        if (weight != m_weight) {
            m_weight = weight;
            m_owner->changed();
        }
    }
    SortingDirection GetSortingDirection() const override { return m_sorting; }
    void SetSortingDirection(SortingDirection direction) override
    {
        if (direction != m_sorting) {
            m_sorting = direction;
            m_owner->changed();
        }
    }

    IHeaderItem* GetParentItem() const override { return m_parent; }
    int GetChildCount() const override { return static_cast<int>(m_children.size()); }
    IHeaderItem* GetChild(int index) const override
    {
        if (index < 0 || index >= GetChildCount())
            return nullptr;
        return m_children[static_cast<size_t>(index)].get();
    }

    void add_child(std::unique_ptr<CItem> child) { m_children.push_back(std::move(child)); }
    bool has_visible_child() const
    {
        return std::any_of(m_children.begin(), m_children.end(),
                           [](const auto& c) { return c->IsVisible(); });
    }

private:
    CHeaderVisModel* m_owner;
    CItem* m_parent;
    int m_column;
    int m_state;
    int m_weight;
    SortingDirection m_sorting;
    std::vector<std::unique_ptr<CItem>> m_children;
};

CHeaderVisModel::CHeaderVisModel() = default;
CHeaderVisModel::~CHeaderVisModel() = default;

bool CHeaderVisModel::AddItem(int column, IHeaderItem::ItemState state, int width_weight,
                              IHeaderItem::SortingDirection sorting)
{
    if (column < 0 || width_weight < 0 || FindItem(column))
        return false;
    m_items.push_back(std::make_unique<CItem>(this, nullptr, column, state, width_weight, sorting));
    changed();
    return true;
}

bool CHeaderVisModel::AddChildItem(int parent_column, int column, IHeaderItem::ItemState state,
                                   int width_weight, IHeaderItem::SortingDirection sorting)
{
    if (column < 0 || width_weight < 0 || FindItem(column))
        return false;
    auto parent = std::find_if(m_items.begin(), m_items.end(), [&](const auto& item) {
        return item->GetColumn() == parent_column;
    });
    if (parent == m_items.end())
        return false;
    (*parent)->add_child(
        std::make_unique<CItem>(this, parent->get(), column, state, width_weight, sorting));
    changed();
    return true;
}

void CHeaderVisModel::Clear()
{
    m_items.clear();
    changed();
}

int CHeaderVisModel::GetItemCount() const
{
    return static_cast<int>(m_items.size());
}

IHeaderItem* CHeaderVisModel::GetItem(int index) const
{
    if (index < 0 || index >= GetItemCount())
        return nullptr;
    return m_items[static_cast<size_t>(index)].get();
}

IHeaderItem* CHeaderVisModel::FindItem(int column) const
{
    for (const auto& item : m_items) {
        if (item->GetColumn() == column)
            return item.get();
        for (int i = 0; i < item->GetChildCount(); ++i)
            if (item->GetChild(i)->GetColumn() == column)
                return item->GetChild(i);
    }
    return nullptr;
}

void CHeaderVisModel::ensure_leaves() const
{
    if (m_leaves_revision == m_revision)
        return;
    m_leaves.clear();
    m_has_groups = false;
    for (const auto& item : m_items) {
        if (!item->IsVisible())
            continue;
        if (item->has_visible_child()) {
            m_has_groups = true;
            for (int i = 0; i < item->GetChildCount(); ++i)
                if (item->GetChild(i)->IsVisible())
                    m_leaves.push_back(item->GetChild(i));
        } else if (item->GetChildCount() == 0) {
            m_leaves.push_back(item.get());
        }
        // A group whose children are all hidden shows nothing.
    }
    m_leaves_revision = m_revision;
}

int CHeaderVisModel::GetLeafCount() const
{
    ensure_leaves();
    return static_cast<int>(m_leaves.size());
}

IHeaderItem* CHeaderVisModel::GetLeaf(int position) const
{
    ensure_leaves();
    if (position < 0 || position >= static_cast<int>(m_leaves.size()))
        return nullptr;
    return m_leaves[static_cast<size_t>(position)];
}

int CHeaderVisModel::GetLeafPosition(int column) const
{
    ensure_leaves();
    for (size_t i = 0; i < m_leaves.size(); ++i)
        if (m_leaves[i]->GetColumn() == column)
            return static_cast<int>(i);
    return -1;
}

bool CHeaderVisModel::HasGroups() const
{
    ensure_leaves();
    return m_has_groups;
}

} // namespace gridview8
