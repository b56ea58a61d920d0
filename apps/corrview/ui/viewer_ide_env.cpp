#include "viewer_ide_env.h"

#include "dialog_services.h"
#include "source_pane.h"

#include "../host/fs_text.h"

#include "basekit2/path.h"
#include "corr_dialogs2/ui_utils.h"
#include "corr_dialogs2/version.h"

#include <wx/frame.h>
#include <wx/statusbr.h>

#include <cstdio>

namespace corrview {

class viewer_ide_env_t::info_t : public eil1::IDE_Info
{
public:
    const wchar_t* GetIdeName() override
    {
        m_name = corr_dialogs2::translate(L"corrview.title.empty");
        return m_name.c_str();
    }
    // The library's version: what a front end is built against.
    bool GetIdeVersion(IdeVersion* version) override
    {
        if (!version)
            return false;
        int major = 0, minor = 0;
        if (std::sscanf(corr_dialogs2::library_version(), "%d.%d", &major, &minor) != 2)
            return eil1::IDE_Info::GetIdeVersion(version);
        version->major_version = major;
        version->minor_version = minor;
        version->prerelease = false;
        return true;
    }

private:
    std::wstring m_name;
};

class viewer_ide_env_t::status_bar_t : public eil1::IStatusBar
{
public:
    explicit status_bar_t(wxFrame& frame) : m_frame(frame) {}
    void SetText(const wchar_t* text) override
    {
        if (m_frame.GetStatusBar())
            m_frame.SetStatusText(text ? text : L"");
    }
    const wchar_t* GetText() override
    {
        m_text = m_frame.GetStatusBar() ? m_frame.GetStatusBar()->GetStatusText().ToStdWstring()
                                        : std::wstring();
        return m_text.c_str();
    }

private:
    wxFrame& m_frame;
    std::wstring m_text;
};

viewer_ide_env_t::viewer_ide_env_t(wxFrame& frame, source_pane_t& pane)
    : m_frame(frame), m_pane(pane), m_editor(pane), m_info(std::make_unique<info_t>()),
      m_status(std::make_unique<status_bar_t>(frame))
{
    m_pane.on_file_changed([this] {
        if (m_callback)
            m_callback->OnChangeActiveDocumentWindow(&m_editor, to_text(m_pane.file()).c_str());
    });
}

viewer_ide_env_t::~viewer_ide_env_t()
{
    m_pane.on_file_changed(nullptr);
    if (m_bridge)
        corrview::set_message_bridge(nullptr);
}

void viewer_ide_env_t::set_message_bridge(eil1::IMessageBridge* bridge)
{
    m_bridge = bridge;
    corrview::set_message_bridge(bridge);
}

eil1::IDE_Info* viewer_ide_env_t::GetIdeInfo()
{
    return m_info.get();
}

void* viewer_ide_env_t::GetMainWindow()
{
    return &m_frame;
}

eil1::IDE_Mode viewer_ide_env_t::GetIdeMode()
{
    return eil1::IDE_Mode::Design; // the viewer runs nothing under a debugger
}

void viewer_ide_env_t::SetCallback(eil1::IDECallbackInterface* callback)
{
    m_callback = callback;
}

eil1::IMessageBridge* viewer_ide_env_t::GetMessageBridge()
{
    return m_bridge;
}

eil1::IStatusBar* viewer_ide_env_t::GetStatusBar()
{
    return m_status.get();
}

eil1::IOutputWindow* viewer_ide_env_t::GetOutputWindow()
{
    return nullptr;
}

eil1::IProgressBar* viewer_ide_env_t::GetProgressBar()
{
    return nullptr;
}

eil1::ICommands* viewer_ide_env_t::GetCommands()
{
    return nullptr;
}

eil1::IComboBoxes* viewer_ide_env_t::GetComboBoxes()
{
    return nullptr;
}

bool viewer_ide_env_t::OpenDocument(const wchar_t* file, long line)
{
    if (!file || !*file)
        return false;
    return m_pane.show_file(to_fs(std::wstring(file)), line);
}

const wchar_t* viewer_ide_env_t::GetActiveEditorFile()
{
    m_active_file = to_text(m_pane.file());
    return m_active_file.c_str();
}

eil1::INativeEditor* viewer_ide_env_t::GetNativeEditor(const wchar_t* file)
{
    if (!file || !*file || m_pane.file().empty())
        return nullptr;
    return to_fs(std::wstring(file)) == m_pane.file() ? &m_editor : nullptr;
}

} // namespace corrview
