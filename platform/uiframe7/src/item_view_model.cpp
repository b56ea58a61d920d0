#include "uiframe7/item_view_model.h"

#include <algorithm>

namespace uiframe7 {

// ---- rows

CSimpleDiscreteItemViewModel::CSimpleDiscreteItemViewModel(int default_item_size)
    : m_default_size(std::max(0, default_item_size))
{
}

void CSimpleDiscreteItemViewModel::SetCount(int count)
{
    count = std::max(0, count);
    if (count == m_count && !m_dirty)
        return;
    m_count = count;
    m_dirty = true;
    m_start = std::clamp(m_start, 0, std::max(0, m_count - 1));
}

void CSimpleDiscreteItemViewModel::SetDefaultItemSize(int size)
{
    size = std::max(0, size);
    if (size == m_default_size)
        return;
    m_default_size = size;
    m_dirty = true;
}

int CSimpleDiscreteItemViewModel::GetItemSize(int) const
{
    return m_default_size;
}

void CSimpleDiscreteItemViewModel::SetStartItem(int item)
{
    m_start = std::clamp(item, 0, std::max(0, m_count - 1));
}

void CSimpleDiscreteItemViewModel::SetViewSize(int size)
{
    m_view_size = std::max(0, size);
}

void CSimpleDiscreteItemViewModel::UpdateModelState()
{
    rebuild();
}

void CSimpleDiscreteItemViewModel::ensure_state() const
{
    if (m_dirty || m_offsets.size() != static_cast<size_t>(m_count) + 1)
        rebuild();
}

void CSimpleDiscreteItemViewModel::rebuild() const
{
    // One pass: each item's size is asked once and summed into its successor's offset.
    m_offsets.resize(static_cast<size_t>(m_count) + 1);
    int acc = 0;
    for (int i = 0; i < m_count; ++i) {
        m_offsets[static_cast<size_t>(i)] = acc;
        acc += std::max(0, GetItemSize(i));
    }
    m_offsets[static_cast<size_t>(m_count)] = acc;
    m_dirty = false;
}

int CSimpleDiscreteItemViewModel::start_offset() const
{
    return m_offsets[static_cast<size_t>(m_start)];
}

int CSimpleDiscreteItemViewModel::HitTest(int pos) const
{
    ensure_state();
    if (m_count == 0)
        return -1;
    const long absolute = static_cast<long>(pos) + start_offset();
    if (absolute < 0 || absolute >= m_offsets.back())
        return -1;
    // Last item whose top is at or above the position; items of height 0 are skipped.
    auto it = std::upper_bound(m_offsets.begin(), m_offsets.end(), static_cast<int>(absolute));
    return static_cast<int>(it - m_offsets.begin()) - 1;
}

ItemRange CSimpleDiscreteItemViewModel::GetItemRange(int item) const
{
    if (item < 0 || item >= m_count)
        return {};
    ensure_state();
    const int base = start_offset();
    return {m_offsets[static_cast<size_t>(item)] - base,
            m_offsets[static_cast<size_t>(item) + 1] - base};
}

ItemRange CSimpleDiscreteItemViewModel::GetFullRange() const
{
    ensure_state();
    const int base = start_offset();
    return {-base, m_offsets.back() - base};
}

int CSimpleDiscreteItemViewModel::GetTotalSize() const
{
    ensure_state();
    return m_offsets.back();
}

int CSimpleDiscreteItemViewModel::GetItemOffset(int item) const
{
    ensure_state();
    return m_offsets[static_cast<size_t>(std::clamp(item, 0, m_count))];
}

int CSimpleDiscreteItemViewModel::GetLastVisibleItem() const
{
    if (m_count == 0)
        return -1;
    ensure_state();
    if (m_view_size <= 0)
        return m_start;
    const int hit = HitTest(m_view_size - 1);
    return hit >= 0 ? hit : m_count - 1;
}

int CSimpleDiscreteItemViewModel::GetLastFullyVisibleItem() const
{
    if (m_count == 0)
        return -1;
    ensure_state();
    const long bottom = static_cast<long>(start_offset()) + m_view_size;
    // Last item whose end is at or above the bottom of the view.
    auto it = std::upper_bound(m_offsets.begin() + 1, m_offsets.end(), static_cast<int>(bottom));
    const int last = static_cast<int>(it - m_offsets.begin()) - 2;
    return std::max(last, m_start);
}

int CSimpleDiscreteItemViewModel::GetMaxStartItem() const
{
    if (m_count == 0)
        return 0;
    return GetStartItemForLastItem(m_count - 1);
}

int CSimpleDiscreteItemViewModel::GetStartItemForLastItem(int item) const
{
    if (m_count == 0)
        return 0;
    ensure_state();
    item = std::clamp(item, 0, m_count - 1);
    const int bottom = m_offsets[static_cast<size_t>(item) + 1];
    // First start whose top is no further than a view's height above the bottom.
    auto it =
        std::lower_bound(m_offsets.begin(), m_offsets.begin() + item + 1, bottom - m_view_size);
    return std::min(static_cast<int>(it - m_offsets.begin()), item);
}

// ---- columns

void CSimpleContinuousItemViewModel::SetCount(int count)
{
    m_sizes.resize(static_cast<size_t>(std::max(0, count)), m_default_size);
    rebuild();
}

void CSimpleContinuousItemViewModel::SetDefaultItemSize(int size)
{
    m_default_size = std::max(0, size);
}

void CSimpleContinuousItemViewModel::SetItemSize(int item, int size)
{
    if (item < 0 || item >= GetCount())
        return;
    m_sizes[static_cast<size_t>(item)] = std::max(0, size);
    rebuild();
}

int CSimpleContinuousItemViewModel::GetItemSize(int item) const
{
    if (item < 0 || item >= GetCount())
        return 0;
    return m_sizes[static_cast<size_t>(item)];
}

void CSimpleContinuousItemViewModel::SetViewSize(int size)
{
    m_view_size = std::max(0, size);
}

void CSimpleContinuousItemViewModel::rebuild()
{
    m_offsets.resize(m_sizes.size() + 1);
    int acc = 0;
    for (size_t i = 0; i < m_sizes.size(); ++i) {
        m_offsets[i] = acc;
        acc += m_sizes[i];
    }
    m_offsets.back() = acc;
}

int CSimpleContinuousItemViewModel::HitTest(int pos) const
{
    const int absolute = pos + m_offset;
    if (m_sizes.empty() || absolute < 0 || absolute >= m_offsets.back())
        return -1;
    auto it = std::upper_bound(m_offsets.begin(), m_offsets.end(), absolute);
    return static_cast<int>(it - m_offsets.begin()) - 1;
}

ItemRange CSimpleContinuousItemViewModel::GetItemRange(int item) const
{
    if (item < 0 || item >= GetCount())
        return {};
    return {m_offsets[static_cast<size_t>(item)] - m_offset,
            m_offsets[static_cast<size_t>(item) + 1] - m_offset};
}

ItemRange CSimpleContinuousItemViewModel::GetFullRange() const
{
    return {-m_offset, m_offsets.back() - m_offset};
}

int CSimpleContinuousItemViewModel::GetTotalSize() const
{
    return m_offsets.back();
}

} // namespace uiframe7
