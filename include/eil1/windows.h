#pragma once
// The IDE's windows as the front end sees them: anything visible, windows
// with a toolkit window inside, tool and editor windows, the native text
// editor of a source file, the output pane, the status bar and the progress
// bar.
#include "eil1/types.h"

namespace eil1 {

// Anything that can be shown and hidden.
class CORR_DIALOGS2_API IVisual
{
    EIL1_SPECIAL_MEMBERS(IVisual);

    virtual bool IsVisible() = 0;
    virtual void SetVisible(bool visible) = 0;
};

// Something that owns a window of the toolkit (a wxWindow* in a wx host).
class CORR_DIALOGS2_API INativeWindowHolder
{
    EIL1_SPECIAL_MEMBERS(INativeWindowHolder);

    // Null while the window does not exist.
    virtual void* GetNativeWindow() = 0;
};

// Something that can show its help.
class CORR_DIALOGS2_API IHelpViewer
{
    EIL1_SPECIAL_MEMBERS(IHelpViewer);

    // Shows the help of a topic ("" or null: the window's own page); false
    // when there is none.
    virtual bool ShowHelp(const wchar_t* topic) = 0;
};

// A window of the IDE.
class CORR_DIALOGS2_API IWindow : public IVisual, public INativeWindowHolder, public IHelpViewer
{
    EIL1_DERIVED_SPECIAL_MEMBERS(IWindow);

    virtual const wchar_t* GetCaption() = 0;
    // Brings the window to the front and gives it the focus.
    virtual void Activate() = 0;
    // Closes the window; false when it refused (IWindowCallBack::OnClose).
    virtual bool Close() = 0;
    // The callback told about focus, showing, closing and drops (null: none).
    virtual void SetWindowCallback(IWindowCallBack* callback) = 0;
};

// Tool and editor windows name their bases again, virtually, as the IDE
// side declares them. Their IVisual, INativeWindowHolder and IHelpViewer are
// reached through IWindow; the compiler's note that the direct bases are
// ambiguous is expected.
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winaccessible-base"
#endif

// A dockable window of the IDE (the problems list of an IDE plug-in).
class CORR_DIALOGS2_API IToolWindow : public virtual IWindow,
                                      public virtual IVisual,
                                      public virtual INativeWindowHolder,
                                      public virtual IHelpViewer
{
    EIL1_DERIVED_SPECIAL_MEMBERS(IToolWindow);

    virtual bool IsDocked() = 0;
    virtual void SetDocked(bool docked) = 0;
};

// A window of the IDE's document area.
class CORR_DIALOGS2_API IEditorWindow : public virtual IWindow,
                                        public virtual IVisual,
                                        public virtual INativeWindowHolder,
                                        public virtual IHelpViewer
{
    EIL1_DERIVED_SPECIAL_MEMBERS(IEditorWindow);

    // The file the window shows ("" for none).
    virtual const wchar_t* GetDocumentPath() = 0;
    virtual void SetTabTooltip(const wchar_t* text);
    virtual const wchar_t* GetTabTooltip();
    virtual bool IsModified() = 0;
};

#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

// The IDE's own text editor of one source file. An editor that supports
// nothing more than showing a file is read-only, has no lines and no edit
// points: that is what the defaults answer.
class CORR_DIALOGS2_API INativeEditor : public IWindow
{
    EIL1_DERIVED_SPECIAL_MEMBERS(INativeEditor);

    // A stretch of text. All zero: no text (nothing selected).
    struct EditorTextSpan
    {
        long start_line = 0;
        long start_column = 0;
        long end_line = 0;   // inclusive
        long end_column = 0; // exclusive
    };
    // What AddEditPoint answers when it made none.
    static constexpr unsigned int NoEditPoint = 0xFFFFFFFFu;

    // The file the editor holds.
    virtual const wchar_t* GetFilePath() = 0;
    virtual bool IsReadOnly();
    virtual long GetLineCount();
    // The text of a line without its end; "" for a line that does not exist.
    virtual const wchar_t* GetLineText(long line);
    virtual void InsertLine(long line, const wchar_t* text);
    virtual void DeleteLine(long line);
    virtual void SetLineText(long line, const wchar_t* text);
    // Scrolls a line into view and puts the caret on it; false when the
    // file has no such line.
    virtual bool GoToLine(long line) = 0;
    virtual EditorTextSpan GetSelectionSpan();
    // Edit points are spans the editor keeps in place while the text around
    // them changes; each has a number, NoEditPoint when none was made.
    virtual unsigned int AddEditPoint(EditorTextSpan* span);
    virtual EditorTextSpan GetEditPoint(unsigned int point);
    virtual const wchar_t* GetEditPointText(unsigned int point);
    virtual void DeleteEditPoint(unsigned int point);
    // Keeps the user from changing the text while the front end reads it;
    // false when the editor cannot.
    virtual bool LockTextBuffer();
    virtual void UnLockTextBuffer();
};

// The IDE's output pane, made of numbered panes.
class CORR_DIALOGS2_API IOutputWindow
{
    EIL1_SPECIAL_MEMBERS(IOutputWindow);

    // Appends text to a pane; may be called from any thread.
    virtual void Write(int pane, const wchar_t* text) = 0;
    // The same from the GUI thread, where an IDE can write without a hop.
    virtual void WriteFromGUI(int pane, const wchar_t* text);
    virtual void Clear(int pane) = 0;
};

class CORR_DIALOGS2_API IStatusBar
{
    EIL1_SPECIAL_MEMBERS(IStatusBar);

    virtual void SetText(const wchar_t* text) = 0;
    virtual const wchar_t* GetText() = 0;
};

// The IDE's progress indicator for long work of the front end.
class CORR_DIALOGS2_API IProgressBar
{
    EIL1_SPECIAL_MEMBERS(IProgressBar);

    // total 0: progress of unknown length.
    virtual void Start(const wchar_t* caption, unsigned long total) = 0;
    virtual void SetPosition(unsigned long done) = 0;
    virtual void Finish() = 0;
};

} // namespace eil1
