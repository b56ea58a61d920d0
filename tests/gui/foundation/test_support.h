#pragma once
// Helpers shared by the foundation GUI tests.
#include "gui_test.h"

#include <gtest/gtest.h>
#include <wx/frame.h>
#include <wx/uiaction.h>
#include <zip.h>

#include <filesystem>
#include <map>
#include <string>

namespace foundation_test {

// A folder of its own for the running test, removed afterwards.
class temp_dir
{
public:
    temp_dir()
    {
        m_path = std::filesystem::temp_directory_path() /
                 (std::string("corr_gui_") + testing::UnitTest::GetInstance()->current_test_info()->name());
        std::filesystem::remove_all(m_path);
        std::filesystem::create_directories(m_path);
    }
    ~temp_dir() { std::filesystem::remove_all(m_path); }
    const std::filesystem::path& path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

// A real zip archive with the given entries.
inline void write_zip(const std::filesystem::path& file, const std::map<std::string, std::string>& entries)
{
    int error = 0;
    zip_t* archive = zip_open(file.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &error);
    ASSERT_NE(archive, nullptr) << "libzip error " << error;
    for (const auto& [name, data] : entries) {
        zip_source_t* source = zip_source_buffer(archive, data.data(), data.size(), 0);
        ASSERT_GE(zip_file_add(archive, name.c_str(), source, ZIP_FL_OVERWRITE), 0);
    }
    ASSERT_EQ(zip_close(archive), 0);
}

// A shown frame for the dialogs of a test to sit on.
class host_frame : public testing::Test
{
protected:
    void SetUp() override
    {
        m_frame = new wxFrame(nullptr, wxID_ANY, "host", wxPoint(50, 50), wxSize(300, 200));
        m_frame->Show();
    }
    void TearDown() override
    {
        m_frame->Destroy();
        corr_test::pump_events();
    }
    wxFrame* m_frame = nullptr;
};

// Moves the mouse onto the middle of a window and clicks it.
inline void click(wxWindow* window)
{
    wxUIActionSimulator sim;
    sim.MouseMove(window->GetScreenRect().GetPosition() + window->GetSize() / 2);
    corr_test::pump_events(30);
    sim.MouseClick();
}

} // namespace foundation_test
