#include "eil1/ide_env.h"

#include "interface_members.h"

namespace eil1 {

EIL1_DEFINE_SPECIAL_MEMBERS(IDE_Info);
EIL1_DEFINE_SPECIAL_MEMBERS(IDE_Env);

bool IDE_Info::GetIdeVersion(IdeVersion* version)
{
    if (!version)
        return false;
    version->major_version = 1;
    version->minor_version = 0;
    version->prerelease = false;
    return true;
}

void IDE_Env::SetWindowVisibility(const wchar_t*, bool) {}
bool IDE_Env::Quit()
{
    return true;
}
IMessageBridge* IDE_Env::GetMessageBridge()
{
    return nullptr;
}
void IDE_Env::SetBuildCallback(IBuildCallback*) {}
bool IDE_Env::IsBuildStateInProgress()
{
    return false;
}
IProject* IDE_Env::GetProjectByID(const wchar_t*)
{
    return nullptr;
}
// 3 and 1 are what IDE plug-ins built against these interfaces expect from
// an IDE that does not answer: keep them.
IDE_Env::BeforeBuild IDE_Env::GetBeforeBuildOption()
{
    return BeforeBuild(3);
}
void IDE_Env::Save(BeforeBuild) {}
bool IDE_Env::Attach(int)
{
    return false;
}
IDE_Env::DebuggerError IDE_Env::AttachEx(int, DebuggerType, const wchar_t*)
{
    return DebuggerError(1);
}
bool IDE_Env::Detach(int, bool)
{
    return false;
}
bool IDE_Env::Continue(bool)
{
    return false;
}
bool IDE_Env::Pause(bool)
{
    return false;
}
bool IDE_Env::StepOver(bool)
{
    return false;
}
bool IDE_Env::StepInto(bool)
{
    return false;
}
bool IDE_Env::StepOut(bool)
{
    return false;
}
const wchar_t* IDE_Env::GetActiveEditorFile()
{
    return L"";
}
INativeEditor* IDE_Env::GetNativeEditor(const wchar_t*)
{
    return nullptr;
}
void IDE_Env::AddSolutionCallback(ISolutionCallback*) {}
void IDE_Env::RemoveSolutionCallback(ISolutionCallback*) {}
void IDE_Env::AddDebugCallback(IDebugCallback*) {}
void IDE_Env::RemoveDebugCallback(IDebugCallback*) {}
void IDE_Env::ExecutionCommand(unsigned int) {}
unsigned int IDE_Env::GetBreakpointsCount()
{
    return 0;
}
basekit2::sptr_t<IBreakpoint> IDE_Env::GetBreakpoint(unsigned int)
{
    return {};
}
bool IDE_Env::ActivateDebuggedThreadByID(int)
{
    return false;
}
void IDE_Env::GetStackFramesByThreadID(int, std::vector<StackFrame>&) {}
void IDE_Env::ClientCoreWasLoaded() {}
void IDE_Env::OpenRecentProject(const wchar_t*) {}
void IDE_Env::OpenRecentResult(const wchar_t*) {}

} // namespace eil1
