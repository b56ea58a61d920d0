#pragma once
// The grid control: a header over rows of cells, everything it shows asked
// from models. It lives in a uiframe7::CBaseControl, which owns it.
#include "basekit2/signal.h"
#include "gridview8/drawing_model.h"
#include "gridview8/editing_model.h"
#include "gridview8/grid_model.h"
#include "gridview8/header_vis_model.h"
#include "gridview8/resizing_model.h"
#include "gridview8/row_selection.h"
#include "gridview8/tooltip_model.h"
#include "uiframe7/combo_box.h"
#include "uiframe7/header.h"
#include "uiframe7/item_view_model.h"
#include "uiframe7/viewer_base.h"

#include <wx/bitmap.h>

#include <memory>
#include <vector>

class wxImageList;

namespace uiframe7 {
class CBaseControl;
}

namespace gridview8 {

// What lies at a point of the grid (CGrid::HitTest).
struct GridHitInfo
{
    enum Area {
        haNone,   // outside the grid
        haHeader, // on a header caption (column: its model column)
        haCell,   // on a cell
        haEmpty,  // in the viewer, but beside or below the cells
    };
    Area area = haNone;
    int row = -1;            // model row
    int column = -1;         // model column
    int display_column = -1; // position among the shown columns
    bool header_group = false;
};

// Row-level operations of the grid's viewer (CGrid::GetIViewer).
class IGridViewer
{
public:
    virtual ~IGridViewer() = default;

    virtual int GetCurrentRow() const = 0;
    virtual void SetCurrentRow(int row) = 0;  // -1: none; scrolls it into view
    virtual int GetCurrentColumn() const = 0; // model column, -1: none
    virtual void SetCurrentColumn(int column) = 0;

    virtual bool IsRowSelected(int row) const = 0;
    // In single-selection mode selecting a row deselects the others.
    virtual void SelectRow(int row, bool select) = 0;
    virtual void SelectRows(int first, int last, bool select) = 0;
    virtual void ClearSelection() = 0;
    virtual void SelectAll() = 0;
    virtual std::vector<int> GetSelectedRows() const = 0;
    virtual int GetSelectedRowCount() const = 0;

    virtual void EnsureRowVisible(int row) = 0;
    virtual void RefreshRow(int row) = 0;
    virtual void RefreshAll() = 0;

    // Opens the editing model's editor on a cell; false when it has none.
    virtual bool BeginEdit(int row, int column) = 0;
    virtual void EndEdit(bool keep_value) = 0;
    virtual bool IsEditing() const = 0;
};

// The models are borrowed: the grid never owns or destroys them, and calls
// none of them from its destructor. Coordinates of HitTest, of event
// handlers added to GetViewer(), and of the row and column view models are
// the viewer's: (0, 0) is the top-left corner of the first shown row, below
// the header (so the header lies at negative y).
//
// Keyboard: arrows, page up/down, home/end move the current row (and the
// selection; shift extends it and control moves without selecting in
// multi-selection mode), left/right the current column, F2 or Enter open the
// editor of the current cell, Ctrl+A selects all (multi). Event handlers see
// every key first (space, for example, is theirs).
class CGrid : public uiframe7::CVisualElement,
              public IGridViewer,
              private uiframe7::IHeaderContent,
              private uiframe7::IEditOwner
{
public:
    enum SelectionMode {
        smNone,
        smSingle,
        smMulti,
    };

    // Creates the grid in host, which takes ownership and keeps it as large
    // as its client area.
    explicit CGrid(uiframe7::CBaseControl* host);
    ~CGrid() override;

    // Installs the content model. header chooses the shown columns; null
    // shows every model column with weight 100. When model is itself an
    // IDiscreteItemViewModel (a CSimpleDiscreteItemViewModel base) it is the
    // row view model, unless SetRowViewModel chose one. reset_view puts the
    // view back to the top with no current row and no selection; otherwise
    // they are kept as far as the new rows allow.
    void SetModel(IGridModel* model, IHeaderVisModel* header, bool reset_view);
    IGridModel* GetModel() const { return m_model; }
    IHeaderVisModel* GetHeaderVisModel() const { return m_header_model; }

    void SetDrawingModel(IDrawingModel* model);
    void SetEditingModel(IEditingModel* model);
    // Null: each column is as wide as its weight in pixels.
    void SetResizingModel(IResizingModel* model);
    // Null: no tooltips.
    void SetTooltipModel(ITooltipModel* model);
    // Drops every model (and the row view model chosen for them) and every
    // event handler of the viewer without calling any of them, and stops an
    // open editor silently. A host whose grid outlives its models calls this
    // before destroying them.
    void DetachModels();

    IDrawingModel* GetDrawingModel() const { return m_drawing; }
    IEditingModel* GetEditingModel() const { return m_editing; }
    IResizingModel* GetResizingModel() const { return m_resizing; }
    ITooltipModel* GetTooltipModel() const { return m_tooltip; }

    // Row view model: the one set here, else the model itself when it is
    // one, else the grid's own. The grid sets its view size and start item,
    // its count from the model's GetRowCount when they differ, and its
    // default item size from the font when it is 0.
    void SetRowViewModel(uiframe7::IDiscreteItemViewModel* rows);
    uiframe7::IDiscreteItemViewModel* GetRowViewModel() const { return m_rows; }
    // Column view model: one item per shown column.
    uiframe7::IContinuousItemViewModel* GetColumnViewModel() { return &m_columns; }

    uiframe7::CViewerBase* GetViewer();
    IGridViewer* GetIViewer() { return this; }
    uiframe7::CHeader* GetHeader() { return m_header.get(); }

    // Images of cells and captions (copied). Positions 1 and 0 are the
    // checked and unchecked images by convention of the check-box models.
    void SetImageList(const wxImageList* images);
    void SetImageList(std::vector<wxBitmap> images);
    const std::vector<wxBitmap>& GetImages() const { return m_images; }

    void SetSelectionMode(SelectionMode mode);
    SelectionMode GetSelectionMode() const { return m_selection_mode; }

    GridHitInfo HitTest(int x, int y);
    // Desktop point to viewer coordinates, and the pointer in viewer coordinates.
    uicore7::point<int> ScreenToGrid(uicore7::point<int> screen) const;
    uicore7::point<int> GetMousePosition() const;
    // A cell's rectangle in viewer coordinates (empty when not shown).
    uicore7::rectangle<int> GetCellRect(int row, int column);

    // Re-reads the row count and the row heights (after the model's rows
    // changed) and repaints.
    void UpdateRows();
    // First shown row; scrolling clamps it so the last page stays full.
    void SetStartRow(int row);
    int GetStartRow() const;
    int GetDefaultRowHeight();

    // IGridViewer
    int GetCurrentRow() const override { return m_current_row; }
    void SetCurrentRow(int row) override;
    int GetCurrentColumn() const override { return m_current_column; }
    void SetCurrentColumn(int column) override;
    bool IsRowSelected(int row) const override;
    void SelectRow(int row, bool select) override;
    void SelectRows(int first, int last, bool select) override;
    void ClearSelection() override;
    void SelectAll() override;
    std::vector<int> GetSelectedRows() const override;
    int GetSelectedRowCount() const override;
    void EnsureRowVisible(int row) override;
    void RefreshRow(int row) override;
    void RefreshAll() override;
    bool BeginEdit(int row, int column) override;
    void EndEdit(bool keep_value) override;
    bool IsEditing() const override { return m_editor != nullptr; }

    // Raised after the change: the current row (its new value), the
    // selection, and an activated row (double click, or Enter without an editor).
    basekit2::_internal::signal_t<int>& CurrentRowChanged() { return m_current_changed; }
    basekit2::_internal::signal_t<>& SelectionChanged() { return m_selection_changed; }
    basekit2::_internal::signal_t<int, int>& CellActivated() { return m_activated; }

    void OnLayout() override;
    bool OnMouseWheel(int x, int y, int keys, int lines) override;
    bool OnScroll(uiframe7::ScrollAction action, int position) override;

private:
    class CGridViewer;
    friend class CGridViewer;

    // uiframe7::IHeaderContent
    int GetHeaderRowCount() const override;
    std::vector<uiframe7::HeaderCell> GetHeaderCells() const override;
    void OnHeaderCellClick(const uiframe7::HeaderCell& cell) override;
    // uiframe7::IEditOwner
    void OnEditEnded(uiframe7::CEditControl* editor, bool keep_value) override;
    void OnEditorGone(uiframe7::CEditControl* editor) override;

    void choose_row_model();
    void prepare_rows();
    void sync_header();
    void resize_columns();
    void update_scrollbar();
    void scroll_to(int start);
    int leaf_column(int position) const;
    int row_count() const;
    void set_current(int row, bool notify);
    void select_only(int row);
    void move_current(int row, int keys);
    void update_tooltip(int x, int y);

    // Viewer callbacks.
    void paint_rows(uicore7::IPainter& painter, const uicore7::rectangle<int>& update);
    void paint_cell(uicore7::IPainter& painter, int row, int column,
                    const uicore7::rectangle<int>& rect, bool selected, bool focused);
    bool viewer_button_down(int x, int y, int keys, uicore7::MouseButton button);
    bool viewer_double_click(int x, int y, int keys, uicore7::MouseButton button);
    bool viewer_key_down(int key_code, int keys);
    void viewer_mouse_leave();

    IGridModel* m_model = nullptr;
    IHeaderVisModel* m_header_model = nullptr;
    std::unique_ptr<CHeaderVisModel> m_own_header;
    IDrawingModel* m_drawing = nullptr;
    IEditingModel* m_editing = nullptr;
    IResizingModel* m_resizing = nullptr;
    ITooltipModel* m_tooltip = nullptr;

    uiframe7::IDiscreteItemViewModel* m_rows = nullptr;
    uiframe7::IDiscreteItemViewModel* m_chosen_rows = nullptr;
    uiframe7::CSimpleDiscreteItemViewModel m_own_rows;
    uiframe7::CSimpleContinuousItemViewModel m_columns;
    std::vector<int> m_leaf_columns;
    const IHeaderVisModel* m_synced_header = nullptr;
    unsigned m_synced_revision = 0;
    int m_synced_width = -1;
    int m_layout_header_rows = 1;
    bool m_in_layout = false;

    std::vector<wxBitmap> m_images;
    std::unique_ptr<uiframe7::CHeader> m_header;
    std::unique_ptr<CGridViewer> m_viewer;

    SelectionMode m_selection_mode = smSingle;
    CRowSelection m_selection;
    int m_current_row = -1;
    int m_current_column = -1;
    int m_anchor_row = -1;

    uiframe7::CEditControl* m_editor = nullptr;
    int m_edit_row = -1;
    int m_edit_column = -1;

    basekit2::_internal::signal_t<int> m_current_changed;
    basekit2::_internal::signal_t<> m_selection_changed;
    basekit2::_internal::signal_t<int, int> m_activated;
};

} // namespace gridview8
