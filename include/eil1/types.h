#pragma once
// The interfaces through which the analyser's front end and a host IDE talk
// to each other. Both sides are built separately, so these headers fix the
// layout: every interface keeps its constructors, destructor and assignment
// in the library, and the operations the IDE side need not supply have a
// default body there too.
//
// Conventions of every interface:
// - Text crosses as a null-terminated wide C string owned by the callee: it
//   stays valid until the callee's next call of the same operation (or until
//   the object goes). A null argument counts as an empty text.
// - Lines and columns count from 1; a line or column 0 means "none".
#include "corr_dialogs2/export.h"

namespace eil1 {

// What the IDE is doing, as the front end sees it.
enum class IDE_Mode {
    Design = 0, // editing: no program of the solution is running
    Run = 1,    // a program runs without the debugger
    Debug = 2,  // the debugger runs a program
};

// What kind of window the IDE asks the front end to open (OnOpenWindow).
enum class WindowRole {
    Document = 0, // a result or a source file in the document area
    Tool = 1,     // a dockable tool window (problems, suppressions)
    Output = 2,   // the output pane
    Options = 3,  // an option page
    Help = 4,     // the help viewer
};

// What the IDE does with an exception the debugged program did not handle.
enum class ExceptionAction {
    Break = 0,         // stop in the debugger at the throw
    IdeDefault = 1,    // whatever the IDE does without the front end
    Continue = 2,      // pass it on to the program
    StopDebugging = 3, // end the debugging session
};

// The interfaces, for the headers that only pass pointers.
class IDE_Env;
class IDE_Info;
class IDECallbackInterface;
class ISolutionCallback;
class IBuildCallback;
class IDebugCallback;
class IWindowCallBack;
class IFeatureInfoCallback;
class IComboBoxCallBack;
class IMarkAndHighlightingCallBack;
class IVisual;
class INativeWindowHolder;
class IHelpViewer;
class IWindow;
class IToolWindow;
class IEditorWindow;
class INativeEditor;
class IOutputWindow;
class IStatusBar;
class IProgressBar;
class ICustomData;
class IItem;
class IFolder;
class IProject;
class IProjectConfigurations;
class ISearchDirs;
class IBreakpoint;
class ICommands;
class IComboBoxes;
class IOptionPage;
class IWizard;
class IWizardPage;
class IMessageBridge;
class IMessageBridgeEx;

} // namespace eil1

// The special members every interface carries, defined in the library (see
// EIL1_DEFINE_SPECIAL_MEMBERS in its sources).
#define EIL1_SPECIAL_MEMBERS(I)                                                                    \
public:                                                                                            \
    I();                                                                                           \
    I(const I&);                                                                                   \
    I& operator=(const I&);                                                                        \
    virtual ~I()

// The same for an interface with bases.
#define EIL1_DERIVED_SPECIAL_MEMBERS(I)                                                            \
public:                                                                                            \
    I();                                                                                           \
    I(const I&);                                                                                   \
    I& operator=(const I&);                                                                        \
    ~I() override

// The same for a reference-counted interface: only release() deletes it.
#define EIL1_REF_COUNTED_SPECIAL_MEMBERS(I)                                                        \
public:                                                                                            \
    I();                                                                                           \
    I(const I&);                                                                                   \
    I& operator=(const I&);                                                                        \
                                                                                                   \
protected:                                                                                         \
    ~I() override;                                                                                 \
                                                                                                   \
public:
