#include "eil1/callbacks.h"

#include "interface_members.h"

namespace eil1 {

EIL1_DEFINE_SPECIAL_MEMBERS(IDECallbackInterface);
EIL1_DEFINE_SPECIAL_MEMBERS(ISolutionCallback);
EIL1_DEFINE_SPECIAL_MEMBERS(IBuildCallback);
EIL1_DEFINE_SPECIAL_MEMBERS(IDebugCallback);
EIL1_DEFINE_SPECIAL_MEMBERS(IWindowCallBack);
EIL1_DEFINE_SPECIAL_MEMBERS(IFeatureInfoCallback);
EIL1_DEFINE_SPECIAL_MEMBERS(IComboBoxCallBack);
EIL1_DEFINE_SPECIAL_MEMBERS(IMarkAndHighlightingCallBack);

bool IDECallbackInterface::QueryPageChange(IOptionPage*)
{
    return true;
}
bool IDECallbackInterface::OnCommand(unsigned int, IItem**, unsigned int)
{
    return false;
}
void IDECallbackInterface::OnCommand(unsigned int) {}
void IDECallbackInterface::OnPreUnload() {}
void IDECallbackInterface::OnChangeActiveDocumentWindow(IWindow*, const wchar_t*) {}
void IDECallbackInterface::OnChangeActiveDocumentWindow(IWindow*) {}
void IDECallbackInterface::OnChangeIDEMode(IDE_Mode) {}
bool IDECallbackInterface::OnQueryUnload()
{
    return true;
}
void IDECallbackInterface::OnCompare(const wchar_t*, const wchar_t*) {}
bool IDECallbackInterface::OnWindowSize(const void*, unsigned int, unsigned int)
{
    return false;
}
bool IDECallbackInterface::OnOpenHelp(const wchar_t*)
{
    return false;
}
bool IDECallbackInterface::OnOpenWindow(WindowRole, void*)
{
    return false;
}

void ISolutionCallback::ProjectAdded(IProject*) {}
bool ISolutionCallback::QueryProjectRemove(IProject*)
{
    return true;
}
bool ISolutionCallback::QueryProjectRename(IProject*, const wchar_t*)
{
    return true;
}
bool ISolutionCallback::QueryProjectItemRename(IProject*, const wchar_t*, const wchar_t*)
{
    return true;
}
void ISolutionCallback::ProjectItemDeleted(const wchar_t*) {}
void ISolutionCallback::StartUpProjectChanged(IProject*) {}
void ISolutionCallback::OnSaveDocument(const wchar_t*) {}
bool ISolutionCallback::NewProjectCreation(IProject*)
{
    return true;
}
void ISolutionCallback::ProjectCreationCanceled(IProject*) {}
bool ISolutionCallback::QueryProjectItemRemove(IProject*, IItem*)
{
    return true;
}
bool ISolutionCallback::QueryProjectItemsRemove(IItem**, unsigned int)
{
    return true;
}
bool ISolutionCallback::QueryCloseSolution()
{
    return true;
}

void IBuildCallback::BuildStarted(IProject*) {}
void IBuildCallback::BuildFinished(IProject*) {}

bool IDebugCallback::OnCustomStoppingDebug(unsigned long, const wchar_t*)
{
    return true;
}
ExceptionAction IDebugCallback::OnExceptionNotHandled(const wchar_t*, const wchar_t*, long,
                                                      const wchar_t*)
{
    return ExceptionAction(1);
}

void IWindowCallBack::OnSetFocus(IWindow*) {}
void IWindowCallBack::OnLostFocus(IWindow*, IWindow*) {}
bool IWindowCallBack::OnClose(IWindow*)
{
    return true;
}
bool IWindowCallBack::CanDrop(IWindow*, IProject*, const wchar_t*, long, long)
{
    return false;
}
void IWindowCallBack::OnDrop(IWindow*, IProject*, const wchar_t*, long, long) {}
void IWindowCallBack::OnShow(IWindow*, bool) {}
void IWindowCallBack::OnBeforeReparent(IWindow*) {}
void IWindowCallBack::OnAfterReparent(IWindow*) {}

} // namespace eil1
