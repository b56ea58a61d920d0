#pragma once
// What the IDE tells the front end: the front end implements these and
// hands them to the IDE. An implementation overrides only what it cares
// about; the defaults allow everything and ignore every notice.
#include "eil1/types.h"

namespace eil1 {

// The front end as a whole, as the IDE calls it.
class CORR_DIALOGS2_API IDECallbackInterface
{
    EIL1_SPECIAL_MEMBERS(IDECallbackInterface);

    // The IDE has loaded the front end and hands it its environment.
    virtual void OnLoad(IDE_Env* env) = 0;
    // The user is about to leave an option page of the front end; false keeps it.
    virtual bool QueryPageChange(IOptionPage* page);
    // A command of the front end run on project items; false: not handled.
    virtual bool OnCommand(unsigned int command, IItem** items, unsigned int count);
    virtual void OnCommand(unsigned int command);
    virtual void OnPreUnload();
    virtual void OnChangeActiveDocumentWindow(IWindow* window, const wchar_t* file);
    virtual void OnChangeActiveDocumentWindow(IWindow* window);
    virtual void OnChangeIDEMode(IDE_Mode mode);
    // The IDE is about to unload the front end; false keeps it loaded.
    virtual bool OnQueryUnload();
    // The user asked to compare two files (results, suppression files).
    virtual void OnCompare(const wchar_t* first, const wchar_t* second);
    // A window of the front end was resized; true when it laid itself out.
    virtual bool OnWindowSize(const void* window, unsigned int width, unsigned int height);
    virtual bool OnOpenHelp(const wchar_t* topic);
    virtual bool OnOpenWindow(WindowRole role, void* parent);
};

// Changes of the solution. Every query allows by default.
class CORR_DIALOGS2_API ISolutionCallback
{
    EIL1_SPECIAL_MEMBERS(ISolutionCallback);

    virtual void ProjectAdded(IProject* project);
    virtual bool QueryProjectRemove(IProject* project);
    virtual bool QueryProjectRename(IProject* project, const wchar_t* new_name);
    virtual bool QueryProjectItemRename(IProject* project, const wchar_t* old_name,
                                        const wchar_t* new_name);
    virtual void ProjectItemDeleted(const wchar_t* item);
    virtual void StartUpProjectChanged(IProject* project);
    virtual void OnSaveDocument(const wchar_t* file);
    virtual bool NewProjectCreation(IProject* project);
    virtual void ProjectCreationCanceled(IProject* project);
    virtual bool QueryProjectItemRemove(IProject* project, IItem* item);
    virtual bool QueryProjectItemsRemove(IItem** items, unsigned int count);
    virtual bool QueryCloseSolution();
};

class CORR_DIALOGS2_API IBuildCallback
{
    EIL1_SPECIAL_MEMBERS(IBuildCallback);

    virtual void BuildStarted(IProject* project);
    virtual void BuildFinished(IProject* project);
};

class CORR_DIALOGS2_API IDebugCallback
{
    EIL1_SPECIAL_MEMBERS(IDebugCallback);

    // The debugger is about to stop for a reason of its own (code, text);
    // false keeps it running.
    virtual bool OnCustomStoppingDebug(unsigned long code, const wchar_t* reason);
    // An exception the program did not handle: its type, its text, the
    // thread and where it was thrown.
    virtual ExceptionAction OnExceptionNotHandled(const wchar_t* type, const wchar_t* text,
                                                  long thread, const wchar_t* location);
};

// What happens to a window of the front end inside the IDE.
class CORR_DIALOGS2_API IWindowCallBack
{
    EIL1_SPECIAL_MEMBERS(IWindowCallBack);

    virtual void OnSetFocus(IWindow* window);
    virtual void OnLostFocus(IWindow* window, IWindow* next);
    // false keeps the window open.
    virtual bool OnClose(IWindow* window);
    // A file dragged from a project over the window at (x, y).
    virtual bool CanDrop(IWindow* window, IProject* project, const wchar_t* file, long x, long y);
    virtual void OnDrop(IWindow* window, IProject* project, const wchar_t* file, long x, long y);
    virtual void OnShow(IWindow* window, bool shown);
    virtual void OnBeforeReparent(IWindow* window);
    virtual void OnAfterReparent(IWindow* window);
};

// Which features of the front end the IDE may offer.
class CORR_DIALOGS2_API IFeatureInfoCallback
{
    EIL1_SPECIAL_MEMBERS(IFeatureInfoCallback);

    virtual bool IsFeatureEnabled(const wchar_t* feature) = 0;
};

// A combo box the front end put on the IDE's tool bar (IComboBoxes).
class CORR_DIALOGS2_API IComboBoxCallBack
{
    EIL1_SPECIAL_MEMBERS(IComboBoxCallBack);

    virtual void OnDropDown(unsigned int combo) = 0;
    virtual void OnSelectionChange(unsigned int combo, int index) = 0;
};

// The lines the front end wants marked in the IDE's editors (problem
// locations), and what happens when the user points at or clicks one.
class CORR_DIALOGS2_API IMarkAndHighlightingCallBack
{
    EIL1_SPECIAL_MEMBERS(IMarkAndHighlightingCallBack);

    virtual unsigned int GetMarkedLineCount(const wchar_t* file) = 0;
    // The line of a mark (0 for an index past the end).
    virtual long GetMarkedLine(const wchar_t* file, unsigned int index) = 0;
    virtual const wchar_t* GetMarkTooltip(const wchar_t* file, long line) = 0;
    virtual void OnMarkClicked(const wchar_t* file, long line) = 0;
};

} // namespace eil1
