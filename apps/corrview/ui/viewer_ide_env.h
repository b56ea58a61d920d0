#pragma once
// The viewer as an IDE environment: a front end that talks to an IDE
// through eil1::IDE_Env can be hosted by the viewer, whose source pane is
// the editor and whose status bar is the status bar. What the viewer does
// not have (build, debugger, projects of an IDE, output pane, commands)
// answers as the interface's defaults do, or null.
#include "source_editor.h"

#include "eil1/ide_env.h"

#include <memory>
#include <string>

class wxFrame;

namespace corrview {

class source_pane_t;

class viewer_ide_env_t : public eil1::IDE_Env
{
public:
    viewer_ide_env_t(wxFrame& frame, source_pane_t& pane);
    ~viewer_ide_env_t() override;
    viewer_ide_env_t(const viewer_ide_env_t&) = delete;
    viewer_ide_env_t& operator=(const viewer_ide_env_t&) = delete;

    eil1::IDE_Info* GetIdeInfo() override;
    void* GetMainWindow() override;
    eil1::IDE_Mode GetIdeMode() override;
    // The callback hears OnChangeActiveDocumentWindow when the source pane
    // shows another file.
    void SetCallback(eil1::IDECallbackInterface* callback) override;
    eil1::IMessageBridge* GetMessageBridge() override;
    eil1::IStatusBar* GetStatusBar() override;
    eil1::IOutputWindow* GetOutputWindow() override;
    eil1::IProgressBar* GetProgressBar() override;
    eil1::ICommands* GetCommands() override;
    eil1::IComboBoxes* GetComboBoxes() override;
    // Shows the file at the line in the source pane.
    bool OpenDocument(const wchar_t* file, long line) override;
    const wchar_t* GetActiveEditorFile() override;
    // The source pane's editor when it shows that file; null otherwise.
    eil1::INativeEditor* GetNativeEditor(const wchar_t* file) override;

    // Attaches the bridge of the IDE the viewer runs under: the viewer's
    // message boxes go to the IDE from now on (null: shown by the viewer).
    void set_message_bridge(eil1::IMessageBridge* bridge);
    source_editor_t& editor() { return m_editor; }

private:
    class info_t;
    class status_bar_t;

    wxFrame& m_frame;
    source_pane_t& m_pane;
    source_editor_t m_editor;
    std::unique_ptr<info_t> m_info;
    std::unique_ptr<status_bar_t> m_status;
    eil1::IDECallbackInterface* m_callback = nullptr;
    eil1::IMessageBridge* m_bridge = nullptr;
    std::wstring m_active_file;
};

} // namespace corrview
