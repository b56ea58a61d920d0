#pragma once
// What the export and filter dialog tests share: a scratch folder, clicks
// and typing through wxUIActionSimulator, screenshots, archives read back.
#include "gui_test.h"

#include <gtest/gtest.h>
#include <wx/bitmap.h>
#include <wx/dcclient.h>
#include <wx/dcmemory.h>
#include <wx/image.h>
#include <wx/textctrl.h>
#include <wx/uiaction.h>
#include <wx/window.h>
#include <zip.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>

namespace export_filter_test {

namespace fs = std::filesystem;

// A folder of its own for the running test, removed afterwards.
class temp_dir
{
public:
    temp_dir()
    {
        const auto* info = testing::UnitTest::GetInstance()->current_test_info();
        m_path =
            fs::temp_directory_path() /
            (std::string("corr_export_filter_") + info->test_suite_name() + "_" + info->name() +
             "_" + std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()));
        fs::remove_all(m_path);
        fs::create_directories(m_path);
    }
    ~temp_dir()
    {
        std::error_code ec;
        fs::remove_all(m_path, ec);
    }
    temp_dir(const temp_dir&) = delete;
    temp_dir& operator=(const temp_dir&) = delete;
    const fs::path& path() const { return m_path; }

private:
    fs::path m_path;
};

inline std::string read_file(const fs::path& p)
{
    std::ifstream in(p, std::ios::binary);
    EXPECT_TRUE(in.good()) << "cannot read " << p;
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

inline void write_file(const fs::path& p, const std::string& data)
{
    fs::create_directories(p.parent_path());
    std::ofstream(p, std::ios::binary) << data;
}

// Name -> content of every entry of a zip archive (folders: empty, their
// names end in "/"); checked for consistency by libzip.
inline std::map<std::string, std::string> read_archive(const fs::path& file)
{
    std::map<std::string, std::string> out;
    int code = 0;
    zip_t* z = zip_open(file.c_str(), ZIP_RDONLY | ZIP_CHECKCONS, &code);
    EXPECT_NE(nullptr, z) << "cannot open " << file << " as a zip archive, libzip error " << code;
    if (!z)
        return out;
    for (zip_int64_t i = 0; i < zip_get_num_entries(z, 0); ++i) {
        zip_stat_t st;
        zip_stat_index(z, static_cast<zip_uint64_t>(i), 0, &st);
        std::string data(st.size, '\0');
        if (zip_file_t* f = zip_fopen_index(z, static_cast<zip_uint64_t>(i), 0)) {
            EXPECT_EQ(static_cast<zip_int64_t>(st.size), zip_fread(f, data.data(), st.size));
            zip_fclose(f);
        } else {
            ADD_FAILURE() << "cannot read entry " << st.name;
        }
        out[st.name] = std::move(data);
    }
    zip_discard(z);
    return out;
}

// Every file and folder under dir as the archive names it: "<root>/relative".
inline std::map<std::string, std::string> folder_as_entries(const fs::path& dir,
                                                            const std::string& root)
{
    std::map<std::string, std::string> out{{root + "/", ""}};
    for (const auto& e : fs::recursive_directory_iterator(dir)) {
        const std::string name = root + "/" + e.path().lexically_relative(dir).generic_string();
        if (e.is_directory())
            out[name + "/"] = "";
        else
            out[name] = read_file(e.path());
    }
    return out;
}

inline void click(wxWindow* window)
{
    ASSERT_NE(window, nullptr);
    ASSERT_TRUE(window->IsShownOnScreen()) << window->GetName() << " is not on screen";
    wxUIActionSimulator sim;
    sim.MouseMove(window->GetScreenRect().GetPosition() + window->GetSize() / 2);
    corr_test::pump_events(30);
    sim.MouseClick();
}

// Puts the caret at the end of the field and types text, key by key.
inline void type_into(wxTextCtrl* field, const std::string& text)
{
    ASSERT_NE(field, nullptr);
    click(field);
    corr_test::wait_until([&] { return field->HasFocus(); }, 1000);
    field->SetInsertionPointEnd();
    wxUIActionSimulator sim;
    sim.Text(text.c_str());
}

// Saves what the window shows on screen to <build>/screenshots/<name>.png.
inline void save_screenshot(wxWindow* window, const std::string& name)
{
    ASSERT_NE(window, nullptr);
    window->Refresh();
    window->Update();
    corr_test::pump_events(150);
    if (!wxImage::FindHandler(wxBITMAP_TYPE_PNG))
        wxImage::AddHandler(new wxPNGHandler);
    const wxSize size = window->GetClientSize();
    wxBitmap bitmap(size.x, size.y, 24);
    {
        wxClientDC client(window);
        wxMemoryDC memory(bitmap);
        memory.Blit(0, 0, size.x, size.y, &client, 0, 0);
    }
    const fs::path dir = CORR_SCREENSHOT_DIR;
    fs::create_directories(dir);
    EXPECT_TRUE(bitmap.SaveFile((dir / (name + ".png")).string(), wxBITMAP_TYPE_PNG));
}

} // namespace export_filter_test
