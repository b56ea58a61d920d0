#pragma once
// The source pane as the IDE interfaces' native editor: a read-only editor
// of the shown file. Lines and columns count from 1.
#include "eil1/windows.h"

#include <string>

class wxFocusEvent;

namespace corrview {

class source_pane_t;

class source_editor_t : public eil1::INativeEditor
{
public:
    explicit source_editor_t(source_pane_t& pane);
    ~source_editor_t() override;
    source_editor_t(const source_editor_t&) = delete;
    source_editor_t& operator=(const source_editor_t&) = delete;

    // IVisual, INativeWindowHolder, IHelpViewer
    bool IsVisible() override;
    void SetVisible(bool visible) override;
    void* GetNativeWindow() override; // the wxStyledTextCtrl
    bool ShowHelp(const wchar_t* topic) override;
    // IWindow
    const wchar_t* GetCaption() override;
    void Activate() override;
    bool Close() override;
    void SetWindowCallback(eil1::IWindowCallBack* callback) override;
    // INativeEditor
    const wchar_t* GetFilePath() override;
    bool IsReadOnly() override;
    long GetLineCount() override;
    const wchar_t* GetLineText(long line) override;
    bool GoToLine(long line) override;
    EditorTextSpan GetSelectionSpan() override;

private:
    void on_set_focus(wxFocusEvent& event);
    void on_kill_focus(wxFocusEvent& event);

    source_pane_t& m_pane;
    eil1::IWindowCallBack* m_callback = nullptr;
    std::wstring m_caption;
    std::wstring m_path;
    std::wstring m_line;
};

} // namespace corrview
