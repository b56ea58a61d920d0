#pragma once
// What the launch-page tests share: a frame to build in, an info provider,
// a profile callback, what a window shows on screen, clicks.
#include "gui_test.h"

#include "launchdlg3/profile.h"
#include "runctl2/client_context.h"

#include <gtest/gtest.h>
#include <wx/dcclient.h>
#include <wx/dcmemory.h>
#include <wx/frame.h>
#include <wx/image.h>
#include <wx/uiaction.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

namespace launch_test {

namespace fs = std::filesystem;

class info_provider_t : public launchdlg3::IAnalysisInfoProvider
{
public:
    info_provider_t(std::wstring type_name, std::vector<std::wstring> entry_names, std::wstring label = L"Debugger")
        : m_type(std::move(type_name)), m_label(std::move(label))
    {
        for (auto& n : entry_names)
            m_entries.push_back({n, n});
    }
    std::vector<entry_t> getEntries() const override { return m_entries; }
    std::wstring getDebuggerPanelLabel() const override { return m_label; }
    std::wstring getAnalysisTypeName() const override { return m_type; }

private:
    std::wstring m_type, m_label;
    std::vector<entry_t> m_entries;
};

class callback_t : public launchdlg3::IProfileEventCallback
{
public:
    void setProfile(launchdlg3::IProfile* p) override { profile = p; }
    void onAnalysisTypeSelected(const std::wstring& id) override { selected.push_back(id); }

    launchdlg3::IProfile* profile = nullptr;
    std::vector<std::wstring> selected;
};

// Installs a client context for the test and removes it afterwards.
class client_scope
{
public:
    explicit client_scope(const std::wstring& id)
    {
        runctl2::IClientContext::set(std::make_shared<runctl2::client_context_t>(
            std::map<std::wstring, std::wstring>{{runctl2::CLIENT_ID, id}}));
    }
    ~client_scope() { runctl2::IClientContext::set(nullptr); }
    client_scope(const client_scope&) = delete;
    client_scope& operator=(const client_scope&) = delete;
};

class frame_test : public testing::Test
{
protected:
    void SetUp() override
    {
        m_frame = new wxFrame(nullptr, wxID_ANY, "launch", wxPoint(50, 50), wxSize(700, 600));
        m_frame->Show();
        ASSERT_TRUE(corr_test::wait_until([&] { return m_frame->IsShownOnScreen(); }));
    }
    void TearDown() override
    {
        m_frame->Destroy();
        corr_test::pump_events();
    }
    wxFrame* m_frame = nullptr;
};

// What the window shows now, as the screen has it.
inline wxImage capture(wxWindow* window)
{
    window->Refresh();
    window->Update();
    corr_test::pump_events(100);
    const wxSize size = window->GetClientSize();
    wxBitmap bitmap(size.x, size.y, 24);
    {
        wxClientDC client(window);
        wxMemoryDC memory(bitmap);
        memory.Blit(0, 0, size.x, size.y, &client, 0, 0);
    }
    return bitmap.ConvertToImage();
}

inline wxColour pixel(const wxImage& image, int x, int y)
{
    return wxColour(image.GetRed(x, y), image.GetGreen(x, y), image.GetBlue(x, y));
}

inline void click_at(wxWindow* window, wxPoint offset)
{
    ASSERT_TRUE(window->IsShownOnScreen()) << window->GetName();
    wxUIActionSimulator sim;
    sim.MouseMove(window->GetScreenPosition() + offset);
    corr_test::pump_events(30);
    sim.MouseClick();
    corr_test::pump_events(50);
}

inline void click(wxWindow* window)
{
    click_at(window, wxPoint(window->GetSize().x / 2, window->GetSize().y / 2));
}

// The lines of a wrapped tool-tip joined again.
inline std::wstring unwrapped(const wxString& text)
{
    wxString joined = text;
    joined.Replace("\n", " ");
    return joined.ToStdWstring();
}

} // namespace launch_test
