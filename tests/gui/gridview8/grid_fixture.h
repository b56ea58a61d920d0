#pragma once
// A real window with a grid in it, and a small model of the kind the dialogs
// write: plain, drawing, row view, editing model and event handler in one.
#include "gui_test.h"

#include "gridview8/gridview8.h"

#include <gtest/gtest.h>
#include <wx/frame.h>
#include <wx/panel.h>
#include <wx/uiaction.h>

#include <map>
#include <string>
#include <vector>

namespace grid_test {

struct cell_ask
{
    int row;
    int col;
};

class test_model : public uiframe7::CEventHandler,
                   public gridview8::CDefPlainModel,
                   public gridview8::CDefDrawingModel,
                   public uiframe7::CSimpleDiscreteItemViewModel,
                   public gridview8::CDefEditingModel,
                   public uiframe7::IComboBoxEvents
{
public:
    // rows of three columns; column 0 may hold several lines.
    std::vector<std::vector<std::wstring>> rows;
    int line_height = 16;
    int combo_column = 1;
    std::unique_ptr<uiframe7::CComboBox> combo;

    // What the grid asked and what reached the model.
    mutable std::vector<cell_ask> text_asks;
    mutable int item_size_asks = 0;
    std::vector<cell_ask> drawn;
    std::vector<std::pair<int, int>> choices; // (row being edited, item)
    std::vector<cell_ask> updates;            // OnUpdateDataInt
    std::vector<std::pair<int, gridview8::IHeaderItem::SortingDirection>> sorts;
    int edit_row = -1;

    void fill(int count, int multiline_every = 0)
    {
        rows.clear();
        for (int r = 0; r < count; ++r) {
            std::wstring first = L"row " + std::to_wstring(r);
            if (multiline_every > 0 && r % multiline_every == 0)
                first += L"\nsecond line\nthird line";
            rows.push_back({first, L"yes", L"detail " + std::to_wstring(r)});
        }
        SetCount(count);
    }

    int GetRowCount() const override { return static_cast<int>(rows.size()); }
    // Column 3 has no cells of its own: it captions a group over 1 and 2.
    int GetColumnCount() const override { return 4; }
    std::wstring GetColumnCaption(int col) const override
    {
        static const wchar_t* captions[] = {L"Name", L"Choice", L"Detail", L"More"};
        return col >= 0 && col < 4 ? captions[col] : L"";
    }
    std::wstring GetCellText(int row, int col) const override
    {
        text_asks.push_back({row, col});
        if (row < 0 || row >= GetRowCount() || col < 0 || col >= 3)
            return {};
        return rows[static_cast<size_t>(row)][static_cast<size_t>(col)];
    }
    int GetCellTextAlign(int, int col) const override
    {
        return col == 1 ? uicore7::taCenter : uicore7::taLeftVCenter;
    }
    void OnSortColumn(int col, gridview8::IHeaderItem::SortingDirection direction) override
    {
        sorts.emplace_back(col, direction);
    }

    int GetItemSize(int item) const override
    {
        ++item_size_asks;
        const auto& text = rows[static_cast<size_t>(item)][0];
        const int lines = 1 + static_cast<int>(std::count(text.begin(), text.end(), L'\n'));
        return lines * line_height + 6;
    }

    bool OnDrawCell(uicore7::IPainter*, int row, int col,
                    const uicore7::rectangle<double>&) override
    {
        drawn.push_back({row, col});
        return false;
    }

    uiframe7::CEditControl* GetEditorInt(int row, int col) override
    {
        if (!combo || col != combo_column || row < 0 || row >= GetRowCount())
            return nullptr;
        combo->Clear();
        combo->AddString(L"yes");
        combo->AddString(L"no");
        combo->SetSelection(rows[static_cast<size_t>(row)][1] == L"yes" ? 0 : 1);
        edit_row = row;
        return combo.get();
    }
    void OnUpdateDataInt(int row, int col) override
    {
        updates.push_back({row, col});
        if (combo && row >= 0 && row < GetRowCount())
            rows[static_cast<size_t>(row)][1] = combo->GetStringSelection();
    }
    void CBOnChoicItem(uiframe7::CComboBox*, int item) override
    {
        choices.emplace_back(edit_row, item);
    }

    void bind_combo(uicore7::ISysWindow* window)
    {
        if (combo)
            combo->ReParent(nullptr, uiframe7::CVisualElement::rpSilent);
        combo = std::make_unique<uiframe7::CComboBox>(uicore7::CreateDefSenderList());
        combo->Init(window, 0);
        combo->AddListener(this);
    }
};

// Records the presses a viewer passes to its handlers.
class recording_handler : public uiframe7::CEventHandler
{
public:
    struct press
    {
        int x, y, keys;
        uicore7::MouseButton button;
    };
    std::vector<press> downs;
    bool claim = false;

    bool ProcessButtonDown(int x, int y, int keys, uicore7::MouseButton button,
                           bool* handled) override
    {
        downs.push_back({x, y, keys, button});
        if (claim)
            *handled = true;
        return false;
    }
};

// A shown frame with a grid in it, placed the way the dialogs place one, and
// the mouse moved over it for real.
class grid_host : public ::testing::Test
{
protected:
    explicit grid_host(wxSize size = wxSize(640, 420)) : m_size(size) {}

    void SetUp() override
    {
        frame = new wxFrame(nullptr, wxID_ANY, "grid", wxPoint(30, 30), m_size);
        placeholder = new wxPanel(frame);
        control = new uiframe7::CBaseControl(placeholder);
        grid = new gridview8::CGrid(control);
        control->Bind(wxEVT_PAINT, [this](wxPaintEvent& e) {
            ++paints;
            e.Skip();
        });
        frame->Show();
        ASSERT_TRUE(corr_test::wait_until([&] { return paints > 0; }));
    }

    void TearDown() override
    {
        // Models of a test body are gone by now: the grid must not reach them
        // while the window goes away.
        grid->DetachModels();
        EXPECT_EQ(grid->GetViewer()->GetEventHandlerCount(), 0u);
        frame->Destroy();
        corr_test::pump_events(30);
    }

    // Lets pending paints and layout happen.
    static void settle() { corr_test::pump_events(60); }

    // A point of the viewer (grid coordinates) on the desktop.
    wxPoint to_screen(int x, int y) const
    {
        const auto p = grid->GetViewer()->LocalToScreen({x, y});
        return {p.x, p.y};
    }
    wxPoint cell_centre(int row, int col) const
    {
        const auto r = grid->GetCellRect(row, col);
        return to_screen((r.left + r.right) / 2, (r.top + r.bottom) / 2);
    }
    static void click(const wxPoint& p, int button = wxMOUSE_BTN_LEFT)
    {
        wxUIActionSimulator sim;
        sim.MouseMove(p);
        corr_test::pump_events(20);
        sim.MouseClick(button);
        corr_test::pump_events(40);
    }
    static void double_click(const wxPoint& p)
    {
        wxUIActionSimulator sim;
        sim.MouseMove(p);
        corr_test::pump_events(20);
        sim.MouseDblClick();
        corr_test::pump_events(60);
    }

    wxFrame* frame = nullptr;
    wxPanel* placeholder = nullptr;
    uiframe7::CBaseControl* control = nullptr;
    gridview8::CGrid* grid = nullptr;
    int paints = 0;

private:
    wxSize m_size;
};

// The grid with the test model installed the way the dialogs install theirs.
class grid_window : public grid_host
{
protected:
    void install(gridview8::IHeaderVisModel* header = nullptr)
    {
        model.line_height = control->GetSysWindow()->GetPainter()->GetLineHeight();
        grid->SetModel(&model, header, true);
        grid->SetDrawingModel(&model);
        grid->GetViewer()->AddEventHandler(&model);
        grid->SetEditingModel(&model);
        settle();
    }

    test_model model;
};

} // namespace grid_test
