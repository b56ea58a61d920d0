#include "eil1/project.h"

#include "interface_members.h"

namespace eil1 {

EIL1_DEFINE_SPECIAL_MEMBERS(ICustomData);
EIL1_DEFINE_SPECIAL_MEMBERS(IItem);
EIL1_DEFINE_SPECIAL_MEMBERS(IFolder);
EIL1_DEFINE_SPECIAL_MEMBERS(IProject);
EIL1_DEFINE_SPECIAL_MEMBERS(IProjectConfigurations);
EIL1_DEFINE_SPECIAL_MEMBERS(ISearchDirs);
EIL1_DEFINE_SPECIAL_MEMBERS(IBreakpoint);

IProject* IItem::GetHostProject()
{
    return nullptr;
}

void IProject::Save() {}
void IProject::SetData(ICustomData*, const wchar_t*) {}
ICustomData* IProject::GetData(const wchar_t*)
{
    return nullptr;
}
void IProject::RemoveFile(const wchar_t*) {}
const wchar_t* IProject::GetProjectID()
{
    return L"";
}
bool IProject::IsReadOnly()
{
    return false;
}
IProject::DebuggerType IProject::GetDebuggerType()
{
    return DebuggerType(0);
}
unsigned int IProject::GetProjectDependenciesCount()
{
    return 0;
}
IProject* IProject::GetDependencyProject(unsigned int)
{
    return nullptr;
}

bool IBreakpoint::IsEnabled()
{
    return false;
}
IBreakpoint::BreakpointType IBreakpoint::GetType()
{
    return BreakpointType(0);
}

} // namespace eil1
