#pragma once
// The IDE as the front end sees it: its environment facade (windows, build,
// debugger, editors, callbacks) and what it says about itself. An IDE
// implements IDE_Env; what it leaves alone answers as an IDE without that
// feature would (no build running, no debugger, no editor, no bridge).
#include "eil1/callbacks.h"
#include "eil1/commands.h"
#include "eil1/message_bridge.h"
#include "eil1/project.h"
#include "eil1/windows.h"

#include <cstdint>
#include <string>
#include <vector>

namespace eil1 {

class CORR_DIALOGS2_API IDE_Info
{
    EIL1_SPECIAL_MEMBERS(IDE_Info);

    struct IdeVersion
    {
        int major_version = 0;
        int minor_version = 0;
        bool prerelease = false;
    };

    virtual const wchar_t* GetIdeName() = 0;
    // Fills version; false when there is nothing to fill (null).
    virtual bool GetIdeVersion(IdeVersion* version);
};

class CORR_DIALOGS2_API IDE_Env
{
    EIL1_SPECIAL_MEMBERS(IDE_Env);

    // What the IDE does with unsaved documents before a build.
    enum class BeforeBuild {
        SaveAll = 0,
        PromptToSave = 1,
        DontSave = 2,
        IdeDefault = 3, // as the IDE's own options say
    };
    // The debugger AttachEx starts.
    enum class DebuggerType {
        IdeDefault = 0,
        Native = 1,
        Gdb = 2,    // gdb, also over Valgrind's gdbserver
        Remote = 3, // a remote target named by AttachEx's text
    };
    enum class DebuggerError {
        Ok = 0,
        NotSupported = 1, // the IDE cannot attach (the default)
        NoSuchProcess = 2,
        AccessDenied = 3,
        AlreadyAttached = 4,
        Failed = 5,
    };
    // One frame of a debugged thread's stack.
    struct StackFrame
    {
        std::wstring function;
        std::wstring module;
        std::wstring file; // "" when unknown
        long line = 0;     // 0 when unknown
        std::uint64_t address = 0;
    };

    virtual IDE_Info* GetIdeInfo() = 0;
    // The IDE's main window (a wxWindow* in a wx host), parent of the front
    // end's dialogs.
    virtual void* GetMainWindow() = 0;
    virtual IDE_Mode GetIdeMode() = 0;
    // The front end's callback (null: none).
    virtual void SetCallback(IDECallbackInterface* callback) = 0;
    virtual void SetWindowVisibility(const wchar_t* name, bool visible);
    // Asks the IDE to close; false when it stays.
    virtual bool Quit();
    // The bridge for the front end's messages; null: the front end shows them itself.
    virtual IMessageBridge* GetMessageBridge();

    // The IDE's windows and bars; null where the IDE has none.
    virtual IStatusBar* GetStatusBar() = 0;
    virtual IOutputWindow* GetOutputWindow() = 0;
    virtual IProgressBar* GetProgressBar() = 0;
    virtual ICommands* GetCommands() = 0;
    virtual IComboBoxes* GetComboBoxes() = 0;

    virtual void SetBuildCallback(IBuildCallback* callback);
    virtual bool IsBuildStateInProgress();
    virtual IProject* GetProjectByID(const wchar_t* id);
    virtual BeforeBuild GetBeforeBuildOption();
    virtual void Save(BeforeBuild option);

    // The debugger. Attach answers whether the IDE attached; AttachEx says
    // why not. An IDE without a debugger answers false to Attach and
    // NotSupported to AttachEx.
    virtual bool Attach(int pid);
    virtual DebuggerError AttachEx(int pid, DebuggerType type, const wchar_t* target);
    // kill: end the process as well.
    virtual bool Detach(int pid, bool kill);
    // wait: return only when the program has stopped again (or ended).
    virtual bool Continue(bool wait);
    virtual bool Pause(bool wait);
    virtual bool StepOver(bool wait);
    virtual bool StepInto(bool wait);
    virtual bool StepOut(bool wait);

    // Shows a file at a line in the IDE's editor; false when it cannot be opened.
    virtual bool OpenDocument(const wchar_t* file, long line) = 0;
    // The file of the active editor ("" when none).
    virtual const wchar_t* GetActiveEditorFile();
    // The editor holding a file; null when no editor holds it.
    virtual INativeEditor* GetNativeEditor(const wchar_t* file);

    virtual void AddSolutionCallback(ISolutionCallback* callback);
    virtual void RemoveSolutionCallback(ISolutionCallback* callback);
    virtual void AddDebugCallback(IDebugCallback* callback);
    virtual void RemoveDebugCallback(IDebugCallback* callback);
    // Runs one of the IDE's own commands by number.
    virtual void ExecutionCommand(unsigned int command);
    virtual unsigned int GetBreakpointsCount();
    virtual basekit2::sptr_t<IBreakpoint> GetBreakpoint(unsigned int index);
    virtual bool ActivateDebuggedThreadByID(int thread);
    // Appends the frames of a debugged thread, innermost first.
    virtual void GetStackFramesByThreadID(int thread, std::vector<StackFrame>& frames);
    // The front end's core is loaded and ready for calls.
    virtual void ClientCoreWasLoaded();
    virtual void OpenRecentProject(const wchar_t* file);
    virtual void OpenRecentResult(const wchar_t* file);
};

} // namespace eil1
