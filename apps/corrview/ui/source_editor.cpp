#include "source_editor.h"

#include "source_pane.h"

#include "../host/fs_text.h"

#include "basekit2/path.h"
#include "eil1/callbacks.h"

#include <wx/stc/stc.h>

namespace corrview {

source_editor_t::source_editor_t(source_pane_t& pane) : m_pane(pane)
{
    // The IDE's window callback hears of the focus the text gets and loses.
    m_pane.text()->Bind(wxEVT_SET_FOCUS, &source_editor_t::on_set_focus, this);
    m_pane.text()->Bind(wxEVT_KILL_FOCUS, &source_editor_t::on_kill_focus, this);
}

source_editor_t::~source_editor_t()
{
    m_pane.text()->Unbind(wxEVT_SET_FOCUS, &source_editor_t::on_set_focus, this);
    m_pane.text()->Unbind(wxEVT_KILL_FOCUS, &source_editor_t::on_kill_focus, this);
}

void source_editor_t::on_set_focus(wxFocusEvent& event)
{
    if (m_callback)
        m_callback->OnSetFocus(this);
    event.Skip();
}

void source_editor_t::on_kill_focus(wxFocusEvent& event)
{
    if (m_callback)
        m_callback->OnLostFocus(this, nullptr);
    event.Skip();
}

bool source_editor_t::IsVisible()
{
    return m_pane.IsShownOnScreen() && m_pane.is_showing_source();
}

void source_editor_t::SetVisible(bool visible)
{
    m_pane.Show(visible);
    if (m_pane.GetParent())
        m_pane.GetParent()->Layout();
    if (m_callback)
        m_callback->OnShow(this, visible);
}

void* source_editor_t::GetNativeWindow()
{
    return m_pane.text();
}

bool source_editor_t::ShowHelp(const wchar_t*)
{
    return false; // the source pane has no help of its own
}

const wchar_t* source_editor_t::GetCaption()
{
    m_caption = to_text(m_pane.file().filename());
    return m_caption.c_str();
}

void source_editor_t::Activate()
{
    m_pane.text()->SetFocus();
}

bool source_editor_t::Close()
{
    if (m_callback && !m_callback->OnClose(this))
        return false;
    m_pane.clear();
    return true;
}

void source_editor_t::SetWindowCallback(eil1::IWindowCallBack* callback)
{
    m_callback = callback;
}

const wchar_t* source_editor_t::GetFilePath()
{
    m_path = to_text(m_pane.file());
    return m_path.c_str();
}

bool source_editor_t::IsReadOnly()
{
    return true;
}

long source_editor_t::GetLineCount()
{
    return m_pane.file().empty() ? 0 : m_pane.text()->GetLineCount();
}

const wchar_t* source_editor_t::GetLineText(long line)
{
    m_line.clear();
    if (line >= 1 && line <= GetLineCount()) {
        m_line = m_pane.text()->GetLine(static_cast<int>(line - 1)).ToStdWstring();
        while (!m_line.empty() && (m_line.back() == L'\n' || m_line.back() == L'\r'))
            m_line.pop_back();
    }
    return m_line.c_str();
}

bool source_editor_t::GoToLine(long line)
{
    if (line < 1 || line > GetLineCount())
        return false;
    return m_pane.show_file(m_pane.file(), line);
}

eil1::INativeEditor::EditorTextSpan source_editor_t::GetSelectionSpan()
{
    wxStyledTextCtrl& t = *m_pane.text();
    const int start = t.GetSelectionStart();
    const int end = t.GetSelectionEnd();
    if (m_pane.file().empty() || start == end)
        return {};
    // Columns count characters, not bytes (the control's own counting).
    auto line_of = [&](int pos) { return t.LineFromPosition(pos); };
    auto column_of = [&](int pos) {
        return static_cast<long>(t.CountCharacters(t.PositionFromLine(line_of(pos)), pos)) + 1;
    };
    EditorTextSpan span;
    span.start_line = line_of(start) + 1;
    span.start_column = column_of(start);
    span.end_line = line_of(end) + 1;
    span.end_column = column_of(end);
    return span;
}

} // namespace corrview
