#pragma once
// In-cell editing: which editor a cell uses, and where its value goes.
namespace uiframe7 {
class CEditControl;
}

namespace gridview8 {

// A left click on a cell (without shift or control), or F2 / Enter on the
// current cell, asks GetEditorInt; the grid opens the editor it returns over
// the cell. The model fills the editor (entries, selection) before returning
// it. When the edit ends keeping the value, OnUpdateDataInt reads the editor
// back; a cancelled edit does not call it.
class IEditingModel
{
public:
    virtual ~IEditingModel() = default;
    // The editor for a cell (a uiframe7::CComboBox, say), or null for none.
    virtual uiframe7::CEditControl* GetEditorInt(int row, int col) = 0;
    virtual void OnUpdateDataInt(int row, int col) = 0;
};

// No cell is editable.
class CDefEditingModel : public IEditingModel
{
public:
    uiframe7::CEditControl* GetEditorInt(int row, int col) override;
    void OnUpdateDataInt(int row, int col) override;
};

} // namespace gridview8
