#include "gridview8/grid.h"

#include "uicore7/painter.h"
#include "uicore7/sys_window.h"
#include "uiframe7/base_control.h"

#include <wx/imaglist.h>
#include <wx/settings.h>

#include <algorithm>

namespace gridview8 {

using uicore7::point;
using uicore7::rectangle;

namespace {
constexpr int cell_padding_x = 3;
constexpr int cell_padding_y = 1;
constexpr int image_text_gap = 3;
} // namespace

// The rows area under the header: paints the cells and passes its input
// (after the event handlers had their turn) to the grid.
class CGrid::CGridViewer : public uiframe7::CViewerBase
{
public:
    explicit CGridViewer(CGrid& grid) : m_grid(grid) {}

    void OnPaint(uicore7::IPainter& painter, const rectangle<int>& update) override
    {
        m_grid.paint_rows(painter, update);
    }
    bool OnMouseDown(int x, int y, int keys, uicore7::MouseButton button) override
    {
        // An open editor closes (keeping its value) before anyone sees the press.
        m_grid.EndEdit(true);
        return CViewerBase::OnMouseDown(x, y, keys, button);
    }
    void OnMouseLeave() override { m_grid.viewer_mouse_leave(); }
    void OnFocusChanged(bool) override
    {
        // Selection colours and the focus frame depend on the focus.
        Refresh();
    }

protected:
    bool ViewerButtonDown(int x, int y, int keys, uicore7::MouseButton button) override
    {
        return m_grid.viewer_button_down(x, y, keys, button);
    }
    bool ViewerDoubleClick(int x, int y, int keys, uicore7::MouseButton button) override
    {
        return m_grid.viewer_double_click(x, y, keys, button);
    }
    bool ViewerMouseMove(int x, int y, int) override
    {
        m_grid.update_tooltip(x, y);
        return true;
    }
    bool ViewerKeyDown(int key_code, int keys) override
    {
        return m_grid.viewer_key_down(key_code, keys);
    }

private:
    CGrid& m_grid;
};

CGrid::CGrid(uiframe7::CBaseControl* host)
    : m_header(std::make_unique<uiframe7::CHeader>()),
      m_viewer(std::make_unique<CGridViewer>(*this))
{
    m_rows = &m_own_rows;
    m_header->ReParent(this, rpSilent);
    m_viewer->ReParent(this, rpSilent);
    m_header->SetContent(this);
    m_header->SetColumnViewModel(&m_columns);
    m_header->SetImageList(&m_images);
    if (host) {
        host->AdoptElement(this);
        host->SetScrollTarget(this);
        host->SetFocusElement(m_viewer.get());
    }
    prepare_rows();
    OnLayout();
}

CGrid::~CGrid()
{
    // Models may be gone already: stop the editor without asking anyone.
    if (m_editor) {
        uiframe7::CEditControl* editor = m_editor;
        m_editor = nullptr;
        editor->ReleaseOwner(this);
    }
    m_header->SetContent(nullptr);
    m_model = nullptr;
}

uiframe7::CViewerBase* CGrid::GetViewer()
{
    return m_viewer.get();
}

// ---- models

void CGrid::SetModel(IGridModel* model, IHeaderVisModel* header, bool reset_view)
{
    EndEdit(true);
    m_model = model;
    m_header_model = header;
    if (!header) {
        m_own_header = std::make_unique<CHeaderVisModel>();
        if (model)
            for (int c = 0; c < model->GetColumnCount(); ++c)
                m_own_header->AddItem(c, IHeaderItem::isVisible, 100, IHeaderItem::sdNone);
        m_header_model = m_own_header.get();
    }
    choose_row_model();
    prepare_rows();

    const bool had_selection = !m_selection.Empty();
    if (reset_view) {
        m_rows->SetStartItem(0);
        m_selection.Clear();
        m_current_row = -1;
        m_current_column = -1;
        m_anchor_row = -1;
    } else {
        m_selection.Truncate(row_count());
        if (m_current_row >= row_count())
            m_current_row = row_count() - 1;
    }
    m_synced_header = nullptr;
    OnLayout();
    Refresh();
    if (had_selection && m_selection.Empty())
        m_selection_changed();
}

void CGrid::DetachModels()
{
    if (m_editor) {
        uiframe7::CEditControl* editor = m_editor;
        m_editor = nullptr;
        m_edit_row = m_edit_column = -1;
        editor->ReleaseOwner(this);
    }
    m_model = nullptr;
    m_drawing = nullptr;
    m_editing = nullptr;
    m_resizing = nullptr;
    m_tooltip = nullptr;
    m_chosen_rows = nullptr;
    m_viewer->RemoveAllEventHandlers();
    m_own_header = std::make_unique<CHeaderVisModel>();
    m_header_model = m_own_header.get();
    m_rows = &m_own_rows;
    m_own_rows.SetCount(0);
    m_selection.Clear();
    m_current_row = m_current_column = m_anchor_row = -1;
    m_synced_header = nullptr;
    if (auto* window = GetSysWindow())
        window->SetToolTipText(std::wstring());
    OnLayout();
    Refresh();
}

void CGrid::SetDrawingModel(IDrawingModel* model)
{
    m_drawing = model;
    Refresh();
}

void CGrid::SetEditingModel(IEditingModel* model)
{
    EndEdit(true);
    m_editing = model;
}

void CGrid::SetResizingModel(IResizingModel* model)
{
    m_resizing = model;
    m_synced_header = nullptr;
    OnLayout();
    Refresh();
}

void CGrid::SetTooltipModel(ITooltipModel* model)
{
    m_tooltip = model;
    if (auto* window = GetSysWindow())
        window->SetToolTipText(std::wstring());
}

void CGrid::SetRowViewModel(uiframe7::IDiscreteItemViewModel* rows)
{
    m_chosen_rows = rows;
    choose_row_model();
    prepare_rows();
    OnLayout();
    Refresh();
}

void CGrid::choose_row_model()
{
    uiframe7::IDiscreteItemViewModel* rows = m_chosen_rows;
    if (!rows)
        rows = dynamic_cast<uiframe7::IDiscreteItemViewModel*>(m_model);
    m_rows = rows ? rows : &m_own_rows;
}

int CGrid::GetDefaultRowHeight()
{
    uicore7::ISysWindow* window = GetSysWindow();
    uicore7::IPainter* painter = window ? window->GetPainter() : nullptr;
    const int line = painter ? painter->GetLineHeight() : 15;
    return line + 2 * cell_padding_y + 4;
}

void CGrid::prepare_rows()
{
    if (m_rows->GetDefaultItemSize() <= 0)
        m_rows->SetDefaultItemSize(GetDefaultRowHeight());
    const int count = m_model ? m_model->GetRowCount() : 0;
    // Only when it differs: the host may have sized the model already, and
    // its offsets are computed once, on first use.
    if (m_rows->GetCount() != count)
        m_rows->SetCount(count);
}

int CGrid::row_count() const
{
    return m_model ? m_rows->GetCount() : 0;
}

void CGrid::UpdateRows()
{
    if (m_model)
        m_rows->SetCount(m_model->GetRowCount());
    m_rows->UpdateModelState();
    const int n = row_count();
    const bool had = !m_selection.Empty();
    m_selection.Truncate(n);
    if (m_current_row >= n)
        set_current(n - 1, true);
    if (m_anchor_row >= n)
        m_anchor_row = -1;
    OnLayout();
    Refresh();
    if (had && m_selection.Empty())
        m_selection_changed();
}

void CGrid::SetImageList(const wxImageList* images)
{
    std::vector<wxBitmap> bitmaps;
    if (images)
        for (int i = 0; i < images->GetImageCount(); ++i)
            bitmaps.push_back(images->GetBitmap(i));
    SetImageList(std::move(bitmaps));
}

void CGrid::SetImageList(std::vector<wxBitmap> images)
{
    m_images = std::move(images);
    Refresh();
}

void CGrid::SetSelectionMode(SelectionMode mode)
{
    m_selection_mode = mode;
    if (mode == smNone && !m_selection.Empty()) {
        m_selection.Clear();
        m_selection_changed();
    } else if (mode == smSingle && m_selection.GetCount() > 1) {
        select_only(m_current_row);
    }
    m_viewer->Refresh();
}

// ---- header and layout

int CGrid::leaf_column(int position) const
{
    if (position < 0 || position >= static_cast<int>(m_leaf_columns.size()))
        return -1;
    return m_leaf_columns[static_cast<size_t>(position)];
}

void CGrid::sync_header()
{
    const int width = m_viewer->GetRect().width();
    if (m_synced_header == m_header_model && m_header_model &&
        m_synced_revision == m_header_model->GetRevision() && m_synced_width == width)
        return;
    m_leaf_columns.clear();
    if (m_header_model)
        for (int i = 0; i < m_header_model->GetLeafCount(); ++i)
            m_leaf_columns.push_back(m_header_model->GetLeaf(i)->GetColumn());
    m_synced_header = m_header_model;
    m_synced_revision = m_header_model ? m_header_model->GetRevision() : 0;
    m_synced_width = width;
    resize_columns();
    // Groups that appeared or went change the header's height.
    if (!m_in_layout && m_header->GetRowCount() != m_layout_header_rows) {
        OnLayout();
        Refresh();
    }
}

void CGrid::resize_columns()
{
    m_columns.SetViewSize(m_viewer->GetRect().width());
    if (!m_header_model) {
        m_columns.SetCount(0);
        return;
    }
    if (m_resizing) {
        m_resizing->ResizeColumns(m_columns, *m_header_model, m_viewer->GetRect().width());
        return;
    }
    const int n = m_header_model->GetLeafCount();
    m_columns.SetCount(n);
    for (int i = 0; i < n; ++i)
        m_columns.SetItemSize(i, m_header_model->GetLeaf(i)->GetWidthWeight());
}

void CGrid::OnLayout()
{
    if (!m_header || !m_viewer || m_in_layout)
        return;
    m_in_layout = true;
    const rectangle<int>& r = GetRect();
    const int line = GetDefaultRowHeight() - 2 * cell_padding_y - 4;
    m_header->SetRowHeight(line + 8);
    m_layout_header_rows = m_header->GetRowCount();
    const int header_height = std::min(r.height(), m_header->GetPreferredHeight());
    m_header->SetRect({r.left, r.top, r.right, r.top + header_height});
    m_viewer->SetRect({r.left, r.top + header_height, r.right, r.bottom});
    m_synced_width = -1;
    sync_header();

    m_rows->SetViewSize(m_viewer->GetRect().height());
    const int max_start = m_rows->GetMaxStartItem();
    if (m_rows->GetStartItem() > max_start)
        m_rows->SetStartItem(max_start);
    update_scrollbar();
    m_in_layout = false;
}

void CGrid::update_scrollbar()
{
    uicore7::ISysWindow* window = GetSysWindow();
    uiframe7::CBaseControl* host = GetHost();
    if (!window || !host)
        return;
    const int n = row_count();
    const int max_start = n > 0 ? m_rows->GetMaxStartItem() : 0;
    window->SetVScrollInfo(m_rows->GetStartItem(), n - max_start, n);
}

int CGrid::GetHeaderRowCount() const
{
    return (m_header_model && m_header_model->HasGroups()) ? 2 : 1;
}

std::vector<uiframe7::HeaderCell> CGrid::GetHeaderCells() const
{
    std::vector<uiframe7::HeaderCell> cells;
    if (!m_header_model || !m_model)
        return cells;
    const int rows = GetHeaderRowCount();
    auto make = [&](const IHeaderItem* item, int first, int last, int row, int span, bool group) {
        uiframe7::HeaderCell cell;
        cell.id = item->GetColumn();
        cell.first = first;
        cell.last = last;
        cell.row = row;
        cell.row_span = span;
        cell.caption = m_model->GetColumnCaption(item->GetColumn());
        cell.image = m_model->GetColumnImageIndex(item->GetColumn());
        cell.align = m_model->GetColumnTextAlign(item->GetColumn());
        cell.sort = item->GetSortingDirection();
        cell.is_group = group;
        return cell;
    };
    int position = 0;
    for (int i = 0; i < m_header_model->GetItemCount(); ++i) {
        const IHeaderItem* item = m_header_model->GetItem(i);
        if (!item->IsVisible())
            continue;
        if (item->GetChildCount() == 0) {
            cells.push_back(make(item, position, position, 0, rows, false));
            ++position;
            continue;
        }
        const int first = position;
        for (int c = 0; c < item->GetChildCount(); ++c) {
            const IHeaderItem* child = item->GetChild(c);
            if (!child->IsVisible())
                continue;
            cells.push_back(make(child, position, position, 1, 1, false));
            ++position;
        }
        if (position > first)
            cells.push_back(make(item, first, position - 1, 0, 1, true));
    }
    return cells;
}

void CGrid::OnHeaderCellClick(const uiframe7::HeaderCell& cell)
{
    if (!m_model || !m_header_model || cell.is_group)
        return;
    IHeaderItem* clicked = m_header_model->FindItem(cell.id);
    if (!clicked)
        return;
    const auto direction = clicked->GetSortingDirection() == IHeaderItem::sdAscending
                               ? IHeaderItem::sdDescending
                               : IHeaderItem::sdAscending;
    for (int i = 0; i < m_header_model->GetItemCount(); ++i) {
        IHeaderItem* item = m_header_model->GetItem(i);
        item->SetSortingDirection(IHeaderItem::sdNone);
        for (int c = 0; c < item->GetChildCount(); ++c)
            item->GetChild(c)->SetSortingDirection(IHeaderItem::sdNone);
    }
    clicked->SetSortingDirection(direction);
    EndEdit(true);
    m_model->OnSortColumn(cell.id, direction);
    // The same rows in another order: selected indexes would now name other data.
    const bool had = !m_selection.Empty();
    m_selection.Clear();
    m_rows->UpdateModelState();
    OnLayout();
    Refresh();
    if (had)
        m_selection_changed();
}

// ---- scrolling

void CGrid::SetStartRow(int row)
{
    scroll_to(row);
}

int CGrid::GetStartRow() const
{
    return m_rows->GetStartItem();
}

void CGrid::scroll_to(int start)
{
    const int max_start = m_rows->GetMaxStartItem();
    start = std::clamp(start, 0, std::max(0, max_start));
    if (start == m_rows->GetStartItem())
        return;
    EndEdit(true);
    m_rows->SetStartItem(start);
    update_scrollbar();
    m_viewer->Refresh();
}

bool CGrid::OnMouseWheel(int, int, int, int lines)
{
    if (row_count() == 0)
        return false;
    scroll_to(m_rows->GetStartItem() - lines);
    return true;
}

bool CGrid::OnScroll(uiframe7::ScrollAction action, int position)
{
    const int start = m_rows->GetStartItem();
    switch (action) {
    case uiframe7::saTop:
        scroll_to(0);
        break;
    case uiframe7::saBottom:
        scroll_to(m_rows->GetMaxStartItem());
        break;
    case uiframe7::saLineUp:
        scroll_to(start - 1);
        break;
    case uiframe7::saLineDown:
        scroll_to(start + 1);
        break;
    case uiframe7::saPageUp: {
        const int target = m_rows->GetStartItemForLastItem(std::max(0, start - 1));
        scroll_to(target < start ? target : start - 1);
        break;
    }
    case uiframe7::saPageDown: {
        const int target = m_rows->GetLastFullyVisibleItem();
        scroll_to(target > start ? target : start + 1);
        break;
    }
    case uiframe7::saThumbTrack:
    case uiframe7::saThumbRelease:
        scroll_to(position);
        break;
    }
    return true;
}

void CGrid::EnsureRowVisible(int row)
{
    if (row < 0 || row >= row_count())
        return;
    const int start = m_rows->GetStartItem();
    if (row < start)
        scroll_to(row);
    else if (row > m_rows->GetLastFullyVisibleItem())
        scroll_to(m_rows->GetStartItemForLastItem(row));
}

// ---- hit testing

GridHitInfo CGrid::HitTest(int x, int y)
{
    sync_header();
    GridHitInfo info;
    const int width = m_viewer->GetRect().width();
    const int header_height = m_header->GetRect().height();
    if (x < 0 || x >= width || y < -header_height || y >= m_viewer->GetRect().height())
        return info;
    if (y < 0) {
        uiframe7::HeaderCell cell;
        if (m_header->HitTestCell(x, y + header_height, &cell) >= 0) {
            info.area = GridHitInfo::haHeader;
            info.column = cell.id;
            info.display_column = cell.is_group ? -1 : cell.first;
            info.header_group = cell.is_group;
        } else {
            info.area = GridHitInfo::haEmpty;
        }
        return info;
    }
    info.area = GridHitInfo::haEmpty;
    info.row = m_model ? m_rows->HitTest(y) : -1;
    const int position = m_columns.HitTest(x);
    if (info.row >= 0 && position >= 0) {
        info.area = GridHitInfo::haCell;
        info.display_column = position;
        info.column = leaf_column(position);
    }
    return info;
}

point<int> CGrid::ScreenToGrid(point<int> screen) const
{
    return m_viewer->ScreenToLocal(screen);
}

point<int> CGrid::GetMousePosition() const
{
    uicore7::ISysWindow* window = GetSysWindow();
    return window ? ScreenToGrid(window->GetMousePosition()) : point<int>();
}

rectangle<int> CGrid::GetCellRect(int row, int column)
{
    sync_header();
    if (row < 0 || row >= row_count())
        return {};
    const auto position = std::find(m_leaf_columns.begin(), m_leaf_columns.end(), column);
    if (position == m_leaf_columns.end())
        return {};
    const auto cols = m_columns.GetItemRange(static_cast<int>(position - m_leaf_columns.begin()));
    const auto rows = m_rows->GetItemRange(row);
    return {cols.start, rows.start, cols.end, rows.end};
}

// ---- current row and selection

void CGrid::set_current(int row, bool notify)
{
    row = std::clamp(row, -1, row_count() - 1);
    if (row == m_current_row)
        return;
    RefreshRow(m_current_row);
    m_current_row = row;
    RefreshRow(m_current_row);
    if (notify)
        m_current_changed(row);
}

void CGrid::SetCurrentRow(int row)
{
    set_current(row, true);
    EnsureRowVisible(m_current_row);
}

void CGrid::SetCurrentColumn(int column)
{
    if (column == m_current_column)
        return;
    m_current_column = column;
    RefreshRow(m_current_row);
}

bool CGrid::IsRowSelected(int row) const
{
    return m_selection.IsSelected(row);
}

void CGrid::select_only(int row)
{
    const bool already = (row < 0 && m_selection.Empty()) ||
                         (row >= 0 && m_selection.GetCount() == 1 && m_selection.IsSelected(row));
    if (already)
        return;
    m_selection.Clear();
    if (row >= 0 && m_selection_mode != smNone)
        m_selection.Select(row, row, true);
    m_viewer->Refresh();
    m_selection_changed();
}

void CGrid::SelectRow(int row, bool select)
{
    SelectRows(row, row, select);
}

void CGrid::SelectRows(int first, int last, bool select)
{
    const int n = row_count();
    if (first > last)
        std::swap(first, last);
    first = std::max(first, 0);
    last = std::min(last, n - 1);
    if (first > last || m_selection_mode == smNone)
        return;
    if (select && m_selection_mode == smSingle) {
        select_only(last);
        return;
    }
    m_selection.Select(first, last, select);
    m_viewer->Refresh();
    m_selection_changed();
}

void CGrid::ClearSelection()
{
    select_only(-1);
}

void CGrid::SelectAll()
{
    if (m_selection_mode == smMulti)
        SelectRows(0, row_count() - 1, true);
}

std::vector<int> CGrid::GetSelectedRows() const
{
    return m_selection.GetRows();
}

int CGrid::GetSelectedRowCount() const
{
    return m_selection.GetCount();
}

void CGrid::RefreshRow(int row)
{
    if (row < 0 || row >= row_count())
        return;
    const auto range = m_rows->GetItemRange(row);
    m_viewer->RefreshLocalRect({0, range.start, m_viewer->GetRect().width(), range.end});
}

void CGrid::RefreshAll()
{
    Refresh();
}

// ---- editing

bool CGrid::BeginEdit(int row, int column)
{
    if (!m_model || !m_editing || row < 0 || row >= row_count() || column < 0)
        return false;
    EndEdit(true);
    sync_header();
    if (std::find(m_leaf_columns.begin(), m_leaf_columns.end(), column) == m_leaf_columns.end())
        return false;
    uiframe7::CEditControl* editor = m_editing->GetEditorInt(row, column);
    if (!editor)
        return false;
    EnsureRowVisible(row);
    rectangle<int> cell = GetCellRect(row, column);
    if (cell.empty())
        return false;
    const auto origin = m_viewer->LocalToWindow({0, 0});
    cell.offset(origin.x, origin.y);
    // Set before BeginEdit: the editor may end at once (focus moving away).
    m_editor = editor;
    m_edit_row = row;
    m_edit_column = column;
    if (!editor->BeginEdit(cell, this)) {
        m_editor = nullptr;
        return false;
    }
    return true;
}

void CGrid::EndEdit(bool keep_value)
{
    if (m_editor)
        m_editor->EndEdit(keep_value);
}

void CGrid::OnEditEnded(uiframe7::CEditControl* editor, bool keep_value)
{
    if (editor != m_editor)
        return;
    const int row = m_edit_row;
    const int column = m_edit_column;
    m_editor = nullptr;
    m_edit_row = m_edit_column = -1;
    if (keep_value && m_editing)
        m_editing->OnUpdateDataInt(row, column);
    RefreshRow(row);
}

void CGrid::OnEditorGone(uiframe7::CEditControl* editor)
{
    if (editor != m_editor)
        return;
    const int row = m_edit_row;
    m_editor = nullptr;
    m_edit_row = m_edit_column = -1;
    RefreshRow(row);
}

// ---- input

void CGrid::move_current(int row, int keys)
{
    const int n = row_count();
    if (n == 0)
        return;
    row = std::clamp(row, 0, n - 1);
    const bool multi = m_selection_mode == smMulti;
    if (multi && (keys & uicore7::ksShift)) {
        if (m_anchor_row < 0)
            m_anchor_row = m_current_row >= 0 ? m_current_row : row;
        m_selection.Clear();
        m_selection.Select(m_anchor_row, row, true);
        m_viewer->Refresh();
        m_selection_changed();
    } else if (!(multi && (keys & uicore7::ksControl))) {
        m_anchor_row = row;
        select_only(row);
    }
    set_current(row, true);
    EnsureRowVisible(row);
}

bool CGrid::viewer_button_down(int x, int y, int keys, uicore7::MouseButton button)
{
    m_viewer->SetFocus();
    if (!m_model)
        return true;
    const GridHitInfo hit = HitTest(x, y);
    if (hit.row < 0) {
        if (button == uicore7::mbLeft && !(keys & (uicore7::ksShift | uicore7::ksControl)))
            ClearSelection();
        return true;
    }
    if (button == uicore7::mbLeft) {
        const bool multi = m_selection_mode == smMulti;
        if (multi && (keys & uicore7::ksControl) && !(keys & uicore7::ksShift)) {
            m_selection.Toggle(hit.row);
            m_anchor_row = hit.row;
            m_viewer->Refresh();
            m_selection_changed();
            set_current(hit.row, true);
        } else {
            move_current(hit.row, keys & uicore7::ksShift);
        }
        if (hit.column >= 0)
            SetCurrentColumn(hit.column);
        if (hit.area == GridHitInfo::haCell &&
            !(keys & (uicore7::ksShift | uicore7::ksControl | uicore7::ksDoubleClick)))
            BeginEdit(hit.row, hit.column);
    } else if (button == uicore7::mbRight) {
        if (!m_selection.IsSelected(hit.row)) {
            m_anchor_row = hit.row;
            select_only(hit.row);
        }
        set_current(hit.row, true);
        if (hit.column >= 0)
            SetCurrentColumn(hit.column);
    }
    return true;
}

bool CGrid::viewer_double_click(int x, int y, int, uicore7::MouseButton button)
{
    if (button != uicore7::mbLeft || !m_model)
        return false;
    const GridHitInfo hit = HitTest(x, y);
    if (hit.row >= 0)
        m_activated(hit.row, hit.column);
    return true;
}

bool CGrid::viewer_key_down(int key_code, int keys)
{
    const int n = row_count();
    if (!m_model)
        return false;
    const int current = m_current_row;
    const int start = m_rows->GetStartItem();
    const int page = std::max(1, m_rows->GetLastFullyVisibleItem() - start);
    switch (key_code) {
    case WXK_UP:
    case WXK_NUMPAD_UP:
        move_current(current < 0 ? 0 : current - 1, keys);
        return true;
    case WXK_DOWN:
    case WXK_NUMPAD_DOWN:
        move_current(current < 0 ? 0 : current + 1, keys);
        return true;
    case WXK_PAGEUP:
    case WXK_NUMPAD_PAGEUP:
        move_current(current < 0 ? 0 : current - page, keys);
        return true;
    case WXK_PAGEDOWN:
    case WXK_NUMPAD_PAGEDOWN:
        move_current(current < 0 ? 0 : current + page, keys);
        return true;
    case WXK_HOME:
    case WXK_NUMPAD_HOME:
        move_current(0, keys);
        return true;
    case WXK_END:
    case WXK_NUMPAD_END:
        move_current(n - 1, keys);
        return true;
    case WXK_LEFT:
    case WXK_RIGHT: {
        sync_header();
        if (m_leaf_columns.empty())
            return true;
        auto it = std::find(m_leaf_columns.begin(), m_leaf_columns.end(), m_current_column);
        int position =
            it == m_leaf_columns.end() ? 0 : static_cast<int>(it - m_leaf_columns.begin());
        position += key_code == WXK_LEFT ? -1 : 1;
        position = std::clamp(position, 0, static_cast<int>(m_leaf_columns.size()) - 1);
        SetCurrentColumn(leaf_column(position));
        return true;
    }
    case WXK_F2:
    case WXK_RETURN:
    case WXK_NUMPAD_ENTER: {
        if (current < 0)
            return false;
        int column = m_current_column;
        if (column < 0 && !m_leaf_columns.empty())
            column = m_leaf_columns.front();
        if (BeginEdit(current, column))
            return true;
        if (key_code != WXK_F2)
            m_activated(current, column);
        return key_code != WXK_F2;
    }
    case 'A':
        if ((keys & uicore7::ksControl) && m_selection_mode == smMulti) {
            SelectAll();
            return true;
        }
        return false;
    default:
        return false;
    }
}

void CGrid::update_tooltip(int x, int y)
{
    uicore7::ISysWindow* window = GetSysWindow();
    if (!window)
        return;
    std::wstring text;
    const GridHitInfo hit = HitTest(x, y);
    if (m_tooltip && m_model && hit.area == GridHitInfo::haCell) {
        text = m_tooltip->GetTooltipText(hit.row, hit.column);
        if (text.empty() && m_tooltip->HasTooltip(hit.column)) {
            // The cell's own text, when it is cut off.
            const std::wstring cell_text = m_model->GetCellText(hit.row, hit.column);
            if (!cell_text.empty()) {
                const rectangle<int> cell = GetCellRect(hit.row, hit.column);
                rectangle<double> content = rectangle<double>::from(cell);
                content.inflate(-cell_padding_x, -cell_padding_y);
                if (m_drawing)
                    m_drawing->GetContentRect(hit.row, hit.column, content);
                uicore7::IPainter* painter = window->GetPainter();
                if (m_model->GetCellImageIndex(hit.row, hit.column) >= 0 && !m_images.empty())
                    content.left += m_images.front().GetWidth() + image_text_gap;
                const auto extent = painter->GetTextExtent(cell_text);
                if (extent.width > content.width() || extent.height > content.height() + 2)
                    text = cell_text;
            }
        }
    }
    window->SetToolTipText(text);
}

void CGrid::viewer_mouse_leave()
{
    if (uicore7::ISysWindow* window = GetSysWindow())
        window->SetToolTipText(std::wstring());
}

// ---- painting

void CGrid::paint_rows(uicore7::IPainter& painter, const rectangle<int>& update)
{
    sync_header();
    painter.SetImageList(&m_images);
    if (!m_model)
        return;
    const int n = row_count();
    const int view_height = m_viewer->GetRect().height();
    const int first = m_rows->HitTest(std::max(0, update.top));
    if (first < 0 || n == 0)
        return;
    const bool focused = m_viewer->HasFocus() || (m_editor != nullptr && GetHost() &&
                                                  GetHost()->IsDescendant(wxWindow::FindFocus()));
    const wxColour grid_line = wxSystemSettings::GetColour(wxSYS_COLOUR_BTNFACE);
    const int full_right = m_columns.GetFullRange().end;

    for (int row = first; row < n; ++row) {
        const auto range = m_rows->GetItemRange(row);
        if (range.start >= update.bottom || range.start >= view_height)
            break;
        if (range.size() <= 0)
            continue;
        const bool selected = m_selection.IsSelected(row);
        for (size_t position = 0; position < m_leaf_columns.size(); ++position) {
            const auto cols = m_columns.GetItemRange(static_cast<int>(position));
            if (cols.end <= update.left)
                continue;
            if (cols.start >= update.right)
                break;
            paint_cell(painter, row, m_leaf_columns[position],
                       {cols.start, range.start, cols.end, range.end}, selected, focused);
        }
        painter.SetLineColor(grid_line);
        painter.DrawLine(0, range.end - 1, full_right, range.end - 1);
        if (row == m_current_row && m_viewer->HasFocus())
            painter.DrawFocusRect({0.0, static_cast<double>(range.start),
                                   static_cast<double>(full_right), range.end - 1.0});
    }
}

void CGrid::paint_cell(uicore7::IPainter& painter, int row, int column, const rectangle<int>& rect,
                       bool selected, bool focused)
{
    CCellAttr attr;
    if (m_drawing)
        m_drawing->GetAttr(row, column, attr);

    wxColour back =
        attr.back_color.IsOk() ? attr.back_color : wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOW);
    wxColour text = attr.text_color.IsOk()
                        ? attr.text_color
                        : wxSystemSettings::GetColour(attr.grayed ? wxSYS_COLOUR_GRAYTEXT
                                                                  : wxSYS_COLOUR_WINDOWTEXT);
    if (selected) {
        back = wxSystemSettings::GetColour(focused ? wxSYS_COLOUR_HIGHLIGHT : wxSYS_COLOUR_BTNFACE);
        if (focused)
            text = wxSystemSettings::GetColour(wxSYS_COLOUR_HIGHLIGHTTEXT);
    }
    const rectangle<double> cell = rectangle<double>::from(rect);
    painter.SetFillColor(back);
    painter.FillRectangle(cell);

    painter.PushClip(cell);
    painter.SetTextColor(text);
    painter.SetBold(attr.bold);
    const bool drawn = m_drawing && m_drawing->OnDrawCell(&painter, row, column, cell);
    if (!drawn) {
        rectangle<double> content = cell;
        content.inflate(-cell_padding_x, -cell_padding_y);
        if (m_drawing)
            m_drawing->GetContentRect(row, column, content);
        const std::wstring cell_text = m_model->GetCellText(row, column);
        const int align = m_model->GetCellTextAlign(row, column);
        const int image = m_model->GetCellImageIndex(row, column);
        if (image >= 0 && image < static_cast<int>(m_images.size())) {
            const auto size = painter.GetImageSize();
            double x = content.left;
            if (cell_text.empty()) {
                if (align & uicore7::taHCenter)
                    x = content.left + (content.width() - size.width) / 2;
                else if (align & uicore7::taRight)
                    x = content.right - size.width;
            }
            double y = content.top + (content.height() - size.height) / 2;
            if (align & uicore7::taTop)
                y = content.top;
            else if (align & uicore7::taBottom)
                y = content.bottom - size.height;
            painter.DrawImage(image, x, y);
            content.left += size.width + image_text_gap;
        }
        painter.DrawText(cell_text, content, align);
    }
    painter.SetBold(false);
    painter.PopClip();

    painter.SetLineColor(wxSystemSettings::GetColour(wxSYS_COLOUR_BTNFACE));
    painter.DrawLine(cell.right - 1, cell.top, cell.right - 1, cell.bottom);
}

} // namespace gridview8
