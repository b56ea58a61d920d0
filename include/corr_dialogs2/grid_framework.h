#pragma once
// The small framework every grid of the suppression dialogs stands on: a
// push button drawn inside a cell (button_helper_t), the header columns a
// grid shows (header_vis_model_t), the tooltips of the view button, and a
// check-box column that can be put around any grid model (check_column_t).
//
// Wiring a model into a grid, in this order:
//   model.enable_button(true); model.set_button_text(...);   (models with a button)
//   header_vis_model_t header; model.init_header_vis_model(header);
//   grid->SetModel(&model, &header, true); grid->SetDrawingModel(&model);
//   grid->GetViewer()->AddEventHandler(&model);
//   grid->SetEditingModel(&model); grid->SetImageList(...);  (1 checked, 0 unchecked)
//   model.set_check_image(1); model.set_uncheck_image(0);
//   grid->SetResizingModel(...); grid->GetHeader()->SetStyle(1); grid->SetTooltipModel(...);
// plus model.set_window(control->GetSysWindow()) (or init(window) of the
// editable models), which lets the model measure text and find its grid.
#include "corr_dialogs2/export.h"

#include "basekit2/signal.h"
#include "gridview8/gridview8.h"

#include <cstddef>
#include <string>
#include <vector>

namespace corr_dialogs2 {

// Which model columns a header shows and how wide they are (by weight).
class CORR_DIALOGS2_API header_vis_model_t : public gridview8::CHeaderVisModel
{
public:
    // A plain visible column, weight 100, not sorted. Always true.
    bool add_item(size_t column);
    // A group over children: the group with weight 100, then each child with
    // 100 divided by the number of children. False, and nothing more added,
    // when the group itself cannot be placed.
    bool add_item(size_t column, std::vector<size_t> children);
};

// A push button drawn at the right end of a cell, and the mouse handling
// that reports a press on it. Base of every grid model of the library.
class CORR_DIALOGS2_API button_helper_t : public uiframe7::CEventHandler
{
public:
    button_helper_t();
    button_helper_t(const button_helper_t& other);
    button_helper_t& operator=(const button_helper_t& other);
    ~button_helper_t() override;

    // The model column under x (column_at of the position under x); -1
    // without a column view model.
    virtual int GetColIndex(int x) const;
    virtual bool has_button(int column) const;
    // A press on the button of a row; button is its rectangle (viewer
    // coordinates). Returns whether the model acted on it.
    virtual bool on_button_click(int row, int y, const uicore7::screen_rectangle<int>& button);

    // Only a press of the left button that is not the repeat of a double
    // click is looked at; on a shown button it calls on_button_click. Always
    // returns false: the grid goes on with its own handling of the press.
    bool ProcessButtonDown(int x, int y, int keys, uicore7::MouseButton button,
                           bool* handled) override;

    // The row view model: the one set here, else the model itself (every
    // model of the library is its own row view model).
    void SetRowViewModel(uiframe7::IDiscreteItemViewModel* rows);
    uiframe7::IDiscreteItemViewModel* GetRowViewModel() const;
    // The column view model: the one set here, else that of the grid found
    // in the window given to set_window.
    void SetColumnViewModel(uiframe7::IContinuousItemViewModel* columns);
    uiframe7::IContinuousItemViewModel* GetColumnViewModel() const;
    // The row at y (viewer coordinates), -1 for none.
    int GetRowIndex(int y) const;

    // The window the grid lives in: for measuring text, and for finding the
    // grid. May be null.
    void set_window(uicore7::ISysWindow* window);
    uicore7::ISysWindow* get_window() const { return m_window; }

    // A button is drawn and can be pressed only while enabled.
    void enable_button(bool enable);
    bool is_button_enabled() const { return m_button_enabled; }
    void set_button_text(const std::wstring& text);
    const std::wstring& get_button_text() const { return m_button_text; }
    // The text width measured in the window's font plus 10; 10 without a window.
    int get_button_width() const;

    // The row across every column, normalised.
    uicore7::screen_rectangle<int> GetRowContentRect(int row) const;
    // The button of a row in model column col: the right end of the cell
    // where the column is shown, get_button_width() wide, the row high.
    // Where the cell is not shown, the right end of the whole row.
    uicore7::screen_rectangle<int> get_button_rect(int row, int col) const;
    // Height of one text line in the window's font; without a window, what
    // the row height the grid chose leaves for a line.
    int get_line_height() const;
    // Where a cell's text goes: the content less the button, if it has one.
    uicore7::rectangle<double> get_text_rect(int col,
                                             const uicore7::rectangle<double>& content) const;
    void draw_button(uicore7::IPainter* painter, const uicore7::rectangle<double>& rect);

protected:
    // The grid in the window given to set_window, if any.
    gridview8::CGrid* find_grid() const;
    // Repaints a row (all rows for -1) of the grid, or the window.
    void refresh_view(int row = -1) const;
    // Position among the shown columns of the column under x; -1 for none.
    int display_position(int x) const;
    // The model column shown at a position, and the position a model column
    // is shown at; -1 for none. A grid without a check column shows its
    // columns where its header puts them (every column in order when it
    // has no grid to ask); check_column_t has a rule of its own.
    virtual int column_at(int position) const;
    virtual int column_position(int col) const;
    // A column width that fits text in the window's font, at least minimum.
    int fit_width(const std::wstring& text, int minimum) const;

    // Sorting support. A model that keeps its rows in a vector puts them in
    // `order` (order[i] is the old index of the new row i) and returns true;
    // the default keeps the order. Whatever follows the rows (the check
    // flags) is then moved by on_rows_reordered.
    virtual bool apply_row_order(const std::vector<int>& order);
    virtual void on_rows_reordered(const std::vector<int>& order);
    // apply_row_order, then on_rows_reordered when it was applied.
    void reorder_rows(const std::vector<int>& order);

private:
    uiframe7::IDiscreteItemViewModel* m_rows = nullptr;
    uiframe7::IContinuousItemViewModel* m_columns = nullptr;
    uicore7::ISysWindow* m_window = nullptr;
    std::wstring m_button_text;
    bool m_button_enabled = false;
};

// Every column shows the text of a cut-off cell, except the excluded column
// and the button column (4 unless told); over the button the tooltip says
// what it does.
class CORR_DIALOGS2_API tooltip_model_t : public gridview8::CDefTooltipModel
{
public:
    tooltip_model_t(gridview8::CGrid* grid, button_helper_t* model, int excluded_column = -1,
                    int button_column = 4);

    bool HasTooltip(int col) const override;
    std::wstring GetTooltipText(int row, int col) override;

private:
    gridview8::CGrid* m_grid;
    button_helper_t* m_model;
    int m_excluded_column;
    int m_button_column;
};

// No tooltips at all.
class CORR_DIALOGS2_API no_tooltip_model_t : public gridview8::CDefTooltipModel
{
public:
    bool HasTooltip(int col) const override;
    std::wstring GetTooltipText(int row, int col) override;
};

// A check-box column around a grid model. It is the model's last column
// (get_check_column() is Model's column count) but shown first
// (init_header_vis_model places it before Model's columns). Rows start
// checked. A left press on a check cell, or space on the current row,
// toggles the row; every change through set_checked is announced by
// check_changed() with the row and its new state.
template <class Model> class CORR_DIALOGS2_API check_column_t : public Model
{
public:
    using model_type = Model;
    using check_signal_t = basekit2::_internal::signal_t<int, bool>;

    check_column_t() = default;
    check_column_t(const check_column_t&) = default;
    check_column_t& operator=(const check_column_t&) = default;
    ~check_column_t() override = default;

    // Rows added are checked; rows beyond n are dropped.
    void set_count(int n)
    {
        if (n < 0)
            n = 0;
        if (n == m_count)
            return;
        m_checked.resize(static_cast<size_t>(n), true);
        m_count = n;
    }
    int get_count() const { return m_count; }

    // Ignored (and announced to nobody) for a row outside the flags.
    void set_checked(int row, bool on)
    {
        if (row < 0 || row >= m_count)
            return;
        m_checked[static_cast<size_t>(row)] = on;
        m_changed(row, on);
    }
    bool is_checked(int row) const
    {
        return row >= 0 && row < m_count && m_checked[static_cast<size_t>(row)];
    }
    bool has_checked_rules() const
    {
        for (int row = 0; row < m_count; ++row)
            if (m_checked[static_cast<size_t>(row)])
                return true;
        return false;
    }

    void set_check_image(int index) { m_check_image = index; }
    void set_uncheck_image(int index) { m_uncheck_image = index; }
    int get_check_image() const { return m_check_image; }
    int get_uncheck_image() const { return m_uncheck_image; }

    int get_check_column() const { return Model::GetColumnCount(); }

    // The check column first, then Model's own columns. The check column
    // keeps the width of its box (or of its caption): sharing the width with
    // the text columns would waste most of it.
    void init_header_vis_model(header_vis_model_t& header)
    {
        const int check = get_check_column();
        header.add_item(static_cast<size_t>(check));
        if (gridview8::IHeaderItem* item = header.FindItem(check)) {
            item->SetState(gridview8::IHeaderItem::isFixedWidth);
            item->SetWidthWeight(this->fit_width(this->GetColumnCaption(check), 28));
        }
        Model::init_header_vis_model(header);
    }

    check_signal_t& check_changed() { return m_changed; }

    int GetColumnCount() const override { return Model::GetColumnCount() + 1; }
    std::wstring GetColumnCaption(int col) const override
    {
        return col == get_check_column() ? std::wstring() : Model::GetColumnCaption(col);
    }
    int GetColumnImageIndex(int col) const override
    {
        return col == get_check_column() ? -1 : Model::GetColumnImageIndex(col);
    }
    int GetColumnTextAlign(int col) const override
    {
        return Model::GetColumnTextAlign(col == get_check_column() ? 0 : col);
    }
    std::wstring GetCellText(int row, int col) const override
    {
        return col == get_check_column() ? std::wstring() : Model::GetCellText(row, col);
    }
    int GetCellTextAlign(int row, int col) const override
    {
        return col == get_check_column() ? uicore7::taCenter : Model::GetCellTextAlign(row, col);
    }
    int GetCellImageIndex(int row, int col) const override
    {
        if (col != get_check_column())
            return Model::GetCellImageIndex(row, col);
        return is_checked(row) ? m_check_image : m_uncheck_image;
    }
    // The check column sorts checked rows first (ascending).
    void OnSortColumn(int col, gridview8::IHeaderItem::SortingDirection direction) override
    {
        if (col != get_check_column()) {
            Model::OnSortColumn(col, direction);
            return;
        }
        const int rows = this->GetRowCount();
        std::vector<int> order;
        const bool checked_first = direction != gridview8::IHeaderItem::sdDescending;
        for (int pass = 0; pass < 2; ++pass)
            for (int row = 0; row < rows; ++row)
                if (is_checked(row) == ((pass == 0) == checked_first))
                    order.push_back(row);
        this->reorder_rows(order);
    }

    bool ProcessButtonDown(int x, int y, int keys, uicore7::MouseButton button,
                           bool* handled) override
    {
        // Every press flips the box, the second press of a double click too:
        // two quick clicks are two changes, as with any check box.
        if (button == uicore7::mbLeft && this->display_position(x) == 0) {
            const int row = this->GetRowIndex(y);
            if (row >= 0 && row < m_count)
                toggle(row);
        }
        return Model::ProcessButtonDown(x, y, keys, button, handled);
    }
    bool ProcessKeyDown(int key_code, int keys, bool* handled) override
    {
        if (key_code == ' ' && !(keys & (uicore7::ksControl | uicore7::ksAlt))) {
            if (gridview8::CGrid* grid = this->find_grid()) {
                const int row = grid->GetCurrentRow();
                if (row >= 0 && row < m_count && !grid->IsEditing()) {
                    toggle(row);
                    *handled = true;
                }
            }
        }
        return Model::ProcessKeyDown(key_code, keys, handled);
    }

protected:
    // The check column is shown first and Model's columns follow it in
    // order: the model column at a position is the position minus one.
    int column_at(int position) const override { return position < 1 ? -1 : position - 1; }
    int column_position(int col) const override { return col < 0 ? -1 : col + 1; }

    void on_rows_reordered(const std::vector<int>& order) override
    {
        std::vector<bool> moved(m_checked.size(), true);
        for (size_t i = 0; i < order.size() && i < moved.size(); ++i)
            if (order[i] >= 0 && order[i] < m_count)
                moved[i] = m_checked[static_cast<size_t>(order[i])];
        m_checked.swap(moved);
        Model::on_rows_reordered(order);
    }

private:
    void toggle(int row)
    {
        set_checked(row, !is_checked(row));
        this->refresh_view(row);
    }

    std::vector<bool> m_checked;
    int m_count = 0;
    int m_check_image = 1;
    int m_uncheck_image = 0;
    check_signal_t m_changed;
};

} // namespace corr_dialogs2
