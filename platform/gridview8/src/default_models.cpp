#include "gridview8/drawing_model.h"
#include "gridview8/editing_model.h"
#include "gridview8/grid_model.h"
#include "gridview8/tooltip_model.h"
#include "uicore7/painter.h"

namespace gridview8 {

int CDefPlainModel::GetRowCount() const
{
    return 0;
}
int CDefPlainModel::GetColumnCount() const
{
    return 0;
}
std::wstring CDefPlainModel::GetColumnCaption(int) const
{
    return {};
}
int CDefPlainModel::GetColumnImageIndex(int) const
{
    return -1;
}
int CDefPlainModel::GetColumnTextAlign(int) const
{
    return uicore7::taCenter;
}
std::wstring CDefPlainModel::GetCellText(int, int) const
{
    return {};
}
int CDefPlainModel::GetCellImageIndex(int, int) const
{
    return -1;
}
int CDefPlainModel::GetCellTextAlign(int, int) const
{
    return uicore7::taLeftVCenter;
}
void CDefPlainModel::OnSortColumn(int, IHeaderItem::SortingDirection) {}

bool CDefDrawingModel::GetAttr(int, int, CCellAttr&) const
{
    return false;
}
bool CDefDrawingModel::OnDrawCell(uicore7::IPainter*, int, int, const uicore7::rectangle<double>&)
{
    return false;
}
void CDefDrawingModel::GetContentRect(int, int, uicore7::rectangle<double>&) const {}

uiframe7::CEditControl* CDefEditingModel::GetEditorInt(int, int)
{
    return nullptr;
}
void CDefEditingModel::OnUpdateDataInt(int, int) {}

bool CDefTooltipModel::HasTooltip(int) const
{
    return true;
}
std::wstring CDefTooltipModel::GetTooltipText(int, int)
{
    return {};
}

} // namespace gridview8
