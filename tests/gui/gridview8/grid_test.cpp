// The grid in a real window: what it shows and asks, how clicks, keys, the
// wheel and the scroll bar reach handlers and models, in-cell editing,
// tooltips, header sorting and resizing.
#include "grid_fixture.h"

#include <wx/dcmemory.h>
#include <wx/image.h>

#include <algorithm>
#include <set>

using namespace grid_test;
using gridview8::GridHitInfo;
using gridview8::IHeaderItem;

namespace {

// Whether a rectangle of a rendered picture holds anything darker than the
// background (text is dark on the light window colour).
bool has_ink(const wxImage& image, const uicore7::rectangle<int>& r)
{
    for (int y = std::max(0, r.top); y < std::min(image.GetHeight(), r.bottom); ++y)
        for (int x = std::max(0, r.left); x < std::min(image.GetWidth(), r.right); ++x)
            if (image.GetRed(x, y) + image.GetGreen(x, y) + image.GetBlue(x, y) < 3 * 110)
                return true;
    return false;
}

} // namespace

TEST_F(grid_window, ShowsTheModelRowsAndPaintsOnlyVisibleRows)
{
    model.fill(1000, 3);
    model.rows[1][2] = L""; // an empty cell stays blank
    install();
    model.drawn.clear();
    paints = 0;
    grid->RefreshAll();
    ASSERT_TRUE(corr_test::wait_until([&] { return paints > 0 && !model.drawn.empty(); }));

    auto* rows = grid->GetRowViewModel();
    EXPECT_EQ(rows, static_cast<uiframe7::IDiscreteItemViewModel*>(&model));
    EXPECT_EQ(rows->GetCount(), 1000);
    // Three lines in row 0, one in row 1: the model's own heights.
    EXPECT_EQ(rows->GetItemRange(0).size(), 3 * model.line_height + 6);
    EXPECT_EQ(rows->GetItemRange(1).size(), model.line_height + 6);

    const int last = rows->GetLastVisibleItem();
    std::set<int> drawn_rows;
    for (const auto& cell : model.drawn)
        drawn_rows.insert(cell.row);
    EXPECT_EQ(*drawn_rows.begin(), 0);
    EXPECT_EQ(*drawn_rows.rbegin(), last);
    EXPECT_LT(last, 40);

    // Read the picture back: text where the model has text, none where not.
    wxBitmap bitmap(control->GetClientSize());
    {
        wxMemoryDC dc(bitmap);
        control->Render(dc, wxRect(control->GetClientSize()));
    }
    const wxImage image = bitmap.ConvertToImage();
    const int header = grid->GetHeader()->GetRect().height();
    auto window_rect = [&](int row, int col) {
        auto r = grid->GetCellRect(row, col);
        r.offset(0, header);
        r.inflate(-2, -2);
        return r;
    };
    EXPECT_TRUE(has_ink(image, window_rect(0, 0)));
    EXPECT_TRUE(has_ink(image, window_rect(1, 1)));
    EXPECT_FALSE(has_ink(image, window_rect(1, 2)));
    EXPECT_TRUE(has_ink(image, window_rect(2, 2)));
}

TEST_F(grid_window, HundredThousandRowsAskEachHeightOnceAndPaintOnePage)
{
    model.fill(100000, 5);
    model.item_size_asks = 0;
    model.text_asks.clear();
    install();
    paints = 0;
    grid->RefreshAll();
    ASSERT_TRUE(corr_test::wait_until([&] { return paints > 0; }));
    EXPECT_EQ(model.item_size_asks, 100000);
    int highest = 0;
    for (const auto& ask : model.text_asks)
        highest = std::max(highest, ask.row);
    EXPECT_LE(highest, grid->GetRowViewModel()->GetLastVisibleItem());

    // The last page: found by binary search, drawn without another pass.
    model.text_asks.clear();
    grid->SetStartRow(100000);
    settle();
    EXPECT_EQ(grid->GetStartRow(), grid->GetRowViewModel()->GetMaxStartItem());
    EXPECT_GT(grid->GetStartRow(), 99950);
    EXPECT_EQ(model.item_size_asks, 100000);
    for (const auto& ask : model.text_asks)
        EXPECT_GE(ask.row, grid->GetStartRow());
}

TEST_F(grid_window, LeftClickReachesAnAddedHandlerInViewerCoordinates)
{
    model.fill(50);
    install();
    recording_handler handler;
    grid->GetViewer()->AddEventHandler(&handler);

    const auto cell = grid->GetCellRect(2, 1);
    const int x = (cell.left + cell.right) / 2;
    const int y = (cell.top + cell.bottom) / 2;
    click(to_screen(x, y));
    ASSERT_TRUE(corr_test::wait_until([&] { return !handler.downs.empty(); }));
    EXPECT_EQ(handler.downs[0].x, x);
    EXPECT_EQ(handler.downs[0].y, y);
    EXPECT_EQ(handler.downs[0].button, uicore7::mbLeft);
    EXPECT_EQ(handler.downs[0].keys & uicore7::ksDoubleClick, 0);
    const GridHitInfo hit = grid->HitTest(x, y);
    EXPECT_EQ(hit.area, GridHitInfo::haCell);
    EXPECT_EQ(hit.row, 2);
    EXPECT_EQ(hit.column, 1);
    // Nobody claimed the press, so the grid acted on it.
    EXPECT_EQ(grid->GetCurrentRow(), 2);
    EXPECT_EQ(grid->GetSelectedRows(), (std::vector<int>{2}));
    grid->GetViewer()->RemoveEventHandler(&handler);
}

TEST_F(grid_window, RightClickArrivesAsButtonTwoAndAClaimStopsTheGrid)
{
    model.fill(50);
    install();
    recording_handler handler;
    handler.claim = true;
    grid->GetViewer()->AddEventHandler(&handler);

    click(cell_centre(4, 0), wxMOUSE_BTN_RIGHT);
    ASSERT_TRUE(corr_test::wait_until([&] { return !handler.downs.empty(); }));
    EXPECT_EQ(handler.downs[0].button, uicore7::mbRight);
    EXPECT_EQ(grid->HitTest(handler.downs[0].x, handler.downs[0].y).row, 4);
    EXPECT_EQ(grid->GetCurrentRow(), -1);
    EXPECT_EQ(grid->GetSelectedRowCount(), 0);

    handler.claim = false;
    handler.downs.clear();
    click(cell_centre(4, 0), wxMOUSE_BTN_RIGHT);
    ASSERT_TRUE(corr_test::wait_until([&] { return grid->GetCurrentRow() == 4; }));
    EXPECT_TRUE(grid->IsRowSelected(4));
    grid->GetViewer()->RemoveEventHandler(&handler);
}

TEST_F(grid_window, SecondPressOfADoubleClickCarriesTheDoubleClickBit)
{
    model.fill(20);
    model.combo_column = -1; // no editor in the way
    install();
    recording_handler handler;
    grid->GetViewer()->AddEventHandler(&handler);
    std::vector<std::pair<int, int>> activated;
    grid->CellActivated().connect([&](int row, int col) { activated.emplace_back(row, col); });

    double_click(cell_centre(3, 2));
    ASSERT_TRUE(corr_test::wait_until([&] { return !activated.empty(); }));
    ASSERT_GE(handler.downs.size(), 2u);
    EXPECT_EQ(handler.downs.front().keys & uicore7::ksDoubleClick, 0);
    EXPECT_NE(handler.downs.back().keys & uicore7::ksDoubleClick, 0);
    EXPECT_EQ(activated.front(), std::make_pair(3, 2));
    grid->GetViewer()->RemoveEventHandler(&handler);
}

TEST_F(grid_window, ComboEditReportsTheChoiceAtOnceAndUpdatesTheModelOnEnd)
{
    model.fill(20);
    install();
    model.bind_combo(control->GetSysWindow());

    click(cell_centre(2, 1));
    ASSERT_TRUE(corr_test::wait_until([&] { return model.combo->IsEditing(); }));
    EXPECT_TRUE(grid->IsEditing());
    wxChoice* choice = model.combo->GetNativeControl();
    ASSERT_NE(choice, nullptr);
    EXPECT_TRUE(choice->IsShown());
    EXPECT_EQ(choice->GetCount(), 2u);
    EXPECT_EQ(choice->GetSelection(), 0);

    wxUIActionSimulator sim;
    ASSERT_TRUE(sim.Select("no"));
    ASSERT_TRUE(corr_test::wait_until([&] { return !model.choices.empty(); }));
    EXPECT_EQ(model.choices.front(), std::make_pair(2, 1));
    EXPECT_TRUE(model.updates.empty()); // the edit is still open
    EXPECT_EQ(model.rows[2][1], L"yes");

    sim.Char(WXK_RETURN);
    ASSERT_TRUE(corr_test::wait_until([&] { return !model.updates.empty(); }));
    EXPECT_EQ(model.updates.size(), 1u);
    EXPECT_EQ(model.updates[0].row, 2);
    EXPECT_EQ(model.updates[0].col, 1);
    EXPECT_EQ(model.rows[2][1], L"no");
    EXPECT_FALSE(model.combo->IsEditing());
    EXPECT_FALSE(grid->IsEditing());
    EXPECT_FALSE(choice->IsShown());
}

TEST_F(grid_window, CancelledEditTakesThePickBackWithoutAnUpdate)
{
    model.fill(20);
    install();
    model.bind_combo(control->GetSysWindow());

    ASSERT_TRUE(grid->BeginEdit(5, 1));
    ASSERT_TRUE(corr_test::wait_until([&] { return model.combo->GetNativeControl()->HasFocus(); }));
    wxUIActionSimulator sim;
    ASSERT_TRUE(sim.Select("no"));
    ASSERT_TRUE(corr_test::wait_until([&] { return model.choices.size() == 1; }));
    sim.Char(WXK_ESCAPE);
    ASSERT_TRUE(corr_test::wait_until([&] { return !model.combo->IsEditing(); }));
    EXPECT_EQ(model.choices, (std::vector<std::pair<int, int>>{{5, 1}, {5, 0}}));
    EXPECT_TRUE(model.updates.empty());
    EXPECT_EQ(model.combo->GetSelection(), 0);
    EXPECT_FALSE(grid->IsEditing());
}

TEST_F(grid_window, ClickElsewhereEndsTheEditKeepingTheValue)
{
    model.fill(20);
    install();
    model.bind_combo(control->GetSysWindow());
    ASSERT_TRUE(grid->BeginEdit(1, 1));
    model.combo->GetNativeControl()->SetSelection(1);
    wxCommandEvent picked(wxEVT_CHOICE, model.combo->GetNativeControl()->GetId());
    picked.SetInt(1);
    picked.SetEventObject(model.combo->GetNativeControl());
    model.combo->GetNativeControl()->HandleWindowEvent(picked);
    EXPECT_EQ(model.choices.size(), 1u);

    click(cell_centre(6, 0));
    ASSERT_TRUE(corr_test::wait_until([&] { return !model.updates.empty(); }));
    EXPECT_EQ(model.rows[1][1], L"no");
    EXPECT_EQ(grid->GetCurrentRow(), 6);
}

TEST_F(grid_window, ComboDetachedAndDestroyedDuringAnEditLeavesTheGridClean)
{
    model.fill(20);
    install();
    model.bind_combo(control->GetSysWindow());
    EXPECT_EQ(model.combo->GetParent(), control->GetRootElement());
    ASSERT_TRUE(grid->BeginEdit(3, 1));
    model.combo->ReParent(nullptr, uiframe7::CVisualElement::rpSilent);
    EXPECT_FALSE(grid->IsEditing());
    EXPECT_EQ(model.combo->GetParent(), nullptr);
    const size_t children = control->GetRootElement()->GetChildren().size();
    model.combo.reset();
    EXPECT_EQ(control->GetRootElement()->GetChildren().size(), children);
    EXPECT_TRUE(model.updates.empty());

    // Rebinding leaves exactly one combo box in the window.
    model.bind_combo(control->GetSysWindow());
    model.bind_combo(control->GetSysWindow());
    EXPECT_EQ(control->GetRootElement()->GetChildren().size(), children + 1);
    click(cell_centre(4, 1));
    ASSERT_TRUE(corr_test::wait_until([&] { return model.combo->IsEditing(); }));
}

namespace {
// A text for column 2 of row 3 only; other columns show cut-off text.
class tip_model : public gridview8::CDefTooltipModel
{
public:
    bool HasTooltip(int col) const override { return col == 0; }
    std::wstring GetTooltipText(int row, int col) override
    {
        return row == 3 && col == 2 ? L"tip for 3/2" : L"";
    }
};
} // namespace

TEST_F(grid_window, TooltipTextAppearsOverTheRightCellOnly)
{
    model.fill(20);
    model.combo_column = -1;
    model.rows[6][0] = std::wstring(300, L'W'); // cut off in its column
    install();
    tip_model tips;
    grid->SetTooltipModel(&tips);
    wxUIActionSimulator sim;
    auto tooltip = [&] { return control->GetToolTipText().ToStdWstring(); };

    sim.MouseMove(cell_centre(3, 2));
    ASSERT_TRUE(corr_test::wait_until([&] { return tooltip() == L"tip for 3/2"; }));
    sim.MouseMove(cell_centre(3, 1));
    EXPECT_TRUE(corr_test::wait_until([&] { return tooltip().empty(); }));
    sim.MouseMove(cell_centre(4, 2));
    corr_test::pump_events(50);
    EXPECT_EQ(tooltip(), L"");
    sim.MouseMove(cell_centre(6, 0));
    EXPECT_TRUE(corr_test::wait_until([&] { return tooltip() == model.rows[6][0]; }));
    sim.MouseMove(cell_centre(5, 0)); // fits: no tooltip
    EXPECT_TRUE(corr_test::wait_until([&] { return tooltip().empty(); }));
}

TEST_F(grid_window, WheelScrollBarAndKeysMoveTheStartItem)
{
    model.fill(1000);
    install();
    auto* rows = grid->GetRowViewModel();
    const int max_start = rows->GetMaxStartItem();
    EXPECT_EQ(control->GetScrollRange(wxVERTICAL), 1000);
    EXPECT_EQ(control->GetScrollThumb(wxVERTICAL), 1000 - max_start);

    wxMouseEvent wheel(wxEVT_MOUSEWHEEL);
    const auto inside = grid->GetViewer()->LocalToWindow({20, 20});
    wheel.SetPosition(wxPoint(inside.x, inside.y));
    wheel.m_wheelRotation = -120;
    wheel.m_wheelDelta = 120;
    wheel.m_linesPerAction = 3;
    wheel.SetEventObject(control);
    control->HandleWindowEvent(wheel);
    EXPECT_EQ(rows->GetStartItem(), 3);
    wheel.m_wheelRotation = 240;
    control->HandleWindowEvent(wheel);
    EXPECT_EQ(rows->GetStartItem(), 0);

    wxScrollWinEvent thumb(wxEVT_SCROLLWIN_THUMBTRACK, 500, wxVERTICAL);
    thumb.SetEventObject(control);
    control->HandleWindowEvent(thumb);
    EXPECT_EQ(rows->GetStartItem(), 500);
    EXPECT_EQ(control->GetScrollPos(wxVERTICAL), 500);
    wxScrollWinEvent page(wxEVT_SCROLLWIN_PAGEDOWN, 0, wxVERTICAL);
    page.SetEventObject(control);
    const int last_full = rows->GetLastFullyVisibleItem();
    control->HandleWindowEvent(page);
    EXPECT_EQ(rows->GetStartItem(), last_full);
    wxScrollWinEvent bottom(wxEVT_SCROLLWIN_BOTTOM, 0, wxVERTICAL);
    bottom.SetEventObject(control);
    control->HandleWindowEvent(bottom);
    EXPECT_EQ(rows->GetStartItem(), max_start);

    // Keys: Home, then End scrolls the last row into view.
    click(cell_centre(max_start + 1, 0));
    ASSERT_TRUE(corr_test::wait_until([&] { return grid->GetCurrentRow() == max_start + 1; }));
    wxUIActionSimulator sim;
    sim.Char(WXK_HOME);
    ASSERT_TRUE(corr_test::wait_until([&] { return grid->GetCurrentRow() == 0; }));
    EXPECT_EQ(rows->GetStartItem(), 0);
    sim.Char(WXK_PAGEDOWN);
    ASSERT_TRUE(corr_test::wait_until([&] { return grid->GetCurrentRow() > 0; }));
    EXPECT_EQ(grid->GetCurrentRow(), last_full - 500);
    sim.Char(WXK_END);
    ASSERT_TRUE(corr_test::wait_until([&] { return grid->GetCurrentRow() == 999; }));
    EXPECT_EQ(rows->GetStartItem(), max_start);
}

TEST_F(grid_window, KeyboardMovesAndExtendsAMultipleSelection)
{
    model.fill(30);
    model.combo_column = -1;
    install();
    grid->SetSelectionMode(gridview8::CGrid::smMulti);
    int changes = 0;
    grid->SelectionChanged().connect([&] { ++changes; });

    click(cell_centre(1, 0));
    ASSERT_TRUE(corr_test::wait_until([&] { return grid->GetCurrentRow() == 1; }));
    wxUIActionSimulator sim;
    sim.Char(WXK_DOWN, wxMOD_SHIFT);
    sim.Char(WXK_DOWN, wxMOD_SHIFT);
    ASSERT_TRUE(corr_test::wait_until([&] { return grid->GetCurrentRow() == 3; }));
    EXPECT_EQ(grid->GetSelectedRows(), (std::vector<int>{1, 2, 3}));
    sim.Char('A', wxMOD_CONTROL);
    ASSERT_TRUE(corr_test::wait_until([&] { return grid->GetSelectedRowCount() == 30; }));
    sim.Char(WXK_UP);
    ASSERT_TRUE(corr_test::wait_until([&] { return grid->GetCurrentRow() == 2; }));
    EXPECT_EQ(grid->GetSelectedRows(), (std::vector<int>{2}));
    EXPECT_GE(changes, 4);
}

TEST_F(grid_window, ControlClickTogglesRowsAndShiftClickSelectsFromTheAnchor)
{
    model.fill(30);
    model.combo_column = -1;
    install();
    grid->SetSelectionMode(gridview8::CGrid::smMulti);
    auto selected = [&](std::vector<int> rows) {
        return corr_test::wait_until([&] { return grid->GetSelectedRows() == rows; });
    };

    click(cell_centre(2, 0));
    ASSERT_TRUE(selected({2}));
    wxUIActionSimulator sim;
    sim.KeyDown(WXK_CONTROL);
    click(cell_centre(5, 0));
    EXPECT_TRUE(selected({2, 5}));
    click(cell_centre(2, 0)); // off again, and the anchor of a range
    EXPECT_TRUE(selected({5}));
    sim.KeyUp(WXK_CONTROL);
    sim.KeyDown(WXK_SHIFT);
    click(cell_centre(6, 0));
    EXPECT_TRUE(selected({2, 3, 4, 5, 6}));
    sim.KeyUp(WXK_SHIFT);
    click(cell_centre(9, 0));
    EXPECT_TRUE(selected({9})) << "a plain click selects only its row";
}

TEST_F(grid_window, GroupsMakeTwoHeaderRowsAndResizingFollowsTheWeights)
{
    model.fill(10);
    gridview8::CHeaderVisModel header;
    header.AddItem(0, IHeaderItem::isVisible, 100, IHeaderItem::sdNone);
    header.AddItem(3, IHeaderItem::isVisible, 100, IHeaderItem::sdNone);
    header.AddChildItem(3, 1, IHeaderItem::isVisible, 50, IHeaderItem::sdNone);
    header.AddChildItem(3, 2, IHeaderItem::isVisible, 50, IHeaderItem::sdNone);
    install(&header);
    gridview8::CProportionalResizingModelEx resizing;
    resizing.SetMinColumnWidth(0);
    grid->SetResizingModel(&resizing);
    settle();

    EXPECT_EQ(grid->GetHeader()->GetRowCount(), 2);
    EXPECT_EQ(grid->GetHeader()->GetRect().height(), 2 * grid->GetHeader()->GetRowHeight());
    auto* columns = grid->GetColumnViewModel();
    const int width = grid->GetViewer()->GetRect().width();
    ASSERT_EQ(columns->GetCount(), 3);
    EXPECT_EQ(columns->GetTotalSize(), width);
    EXPECT_NEAR(columns->GetItemSize(0), width / 2, 1);
    EXPECT_NEAR(columns->GetItemSize(1), width / 4, 1);

    const int row_height = grid->GetHeader()->GetRowHeight();
    const GridHitInfo group = grid->HitTest(width * 3 / 4, -2 * row_height + 2);
    EXPECT_EQ(group.area, GridHitInfo::haHeader);
    EXPECT_TRUE(group.header_group);
    EXPECT_EQ(group.column, 3);
    const GridHitInfo child = grid->HitTest(width * 3 / 4 + 5, -2);
    EXPECT_EQ(child.column, 2);
    EXPECT_FALSE(child.header_group);

    frame->SetSize(wxSize(1000, 420));
    ASSERT_TRUE(
        corr_test::wait_until([&] { return grid->GetViewer()->GetRect().width() > width + 300; }));
    const int wider = grid->GetViewer()->GetRect().width();
    EXPECT_EQ(columns->GetTotalSize(), wider);
    EXPECT_NEAR(columns->GetItemSize(0), wider / 2, 1);
    EXPECT_NEAR(columns->GetItemSize(2), wider / 4, 1);
}

TEST_F(grid_window, FlatSortableHeaderSortsOnClick)
{
    model.fill(10);
    install();
    const int header_height = grid->GetHeader()->GetRect().height();
    const auto name = grid->GetCellRect(0, 0);
    const wxPoint caption = to_screen((name.left + name.right) / 2, -header_height / 2);

    click(caption); // raised style: nothing happens
    corr_test::pump_events(80);
    EXPECT_TRUE(model.sorts.empty());

    grid->GetHeader()->SetStyle(uiframe7::CHeader::hsFlatSortable);
    click(caption);
    ASSERT_TRUE(corr_test::wait_until([&] { return model.sorts.size() == 1; }));
    EXPECT_EQ(model.sorts[0], std::make_pair(0, IHeaderItem::sdAscending));
    click(caption);
    ASSERT_TRUE(corr_test::wait_until([&] { return model.sorts.size() == 2; }));
    EXPECT_EQ(model.sorts[1], std::make_pair(0, IHeaderItem::sdDescending));
    EXPECT_EQ(grid->GetHeaderVisModel()->FindItem(0)->GetSortingDirection(),
              IHeaderItem::sdDescending);
}
