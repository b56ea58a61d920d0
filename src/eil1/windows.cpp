#include "eil1/windows.h"

#include "interface_members.h"

namespace eil1 {

EIL1_DEFINE_SPECIAL_MEMBERS(IVisual);
EIL1_DEFINE_SPECIAL_MEMBERS(INativeWindowHolder);
EIL1_DEFINE_SPECIAL_MEMBERS(IHelpViewer);
EIL1_DEFINE_SPECIAL_MEMBERS(IWindow);
EIL1_DEFINE_SPECIAL_MEMBERS(IToolWindow);
EIL1_DEFINE_SPECIAL_MEMBERS(IEditorWindow);
EIL1_DEFINE_SPECIAL_MEMBERS(INativeEditor);
EIL1_DEFINE_SPECIAL_MEMBERS(IOutputWindow);
EIL1_DEFINE_SPECIAL_MEMBERS(IStatusBar);
EIL1_DEFINE_SPECIAL_MEMBERS(IProgressBar);

void IEditorWindow::SetTabTooltip(const wchar_t*) {}
const wchar_t* IEditorWindow::GetTabTooltip()
{
    return L"";
}

bool INativeEditor::IsReadOnly()
{
    return false;
}
long INativeEditor::GetLineCount()
{
    return 0;
}
const wchar_t* INativeEditor::GetLineText(long)
{
    return L"";
}
void INativeEditor::InsertLine(long, const wchar_t*) {}
void INativeEditor::DeleteLine(long) {}
void INativeEditor::SetLineText(long, const wchar_t*) {}
INativeEditor::EditorTextSpan INativeEditor::GetSelectionSpan()
{
    return {};
}
unsigned int INativeEditor::AddEditPoint(EditorTextSpan*)
{
    return NoEditPoint;
}
INativeEditor::EditorTextSpan INativeEditor::GetEditPoint(unsigned int)
{
    return {};
}
const wchar_t* INativeEditor::GetEditPointText(unsigned int)
{
    return L"";
}
void INativeEditor::DeleteEditPoint(unsigned int) {}
bool INativeEditor::LockTextBuffer()
{
    return false;
}
void INativeEditor::UnLockTextBuffer() {}

void IOutputWindow::WriteFromGUI(int, const wchar_t*) {}

} // namespace eil1
