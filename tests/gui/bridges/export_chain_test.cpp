// The whole reporting chain of an export, as the export worker drives it:
// a worker thread packs a real result through a progress guard and a child
// progress on the progress bridge; the GUI thread sees the percent, the
// status and the completion, and its cancel request stops the packing.
#include "corr_dialogs2/msngr_bridge.h"

#include "corr_engine/archiver.h"
#include "corr_engine/progress_guard.h"
#include "gui_test.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

namespace fs = std::filesystem;
using corr_engine::archiver_t;

namespace {

class ExportChain : public testing::Test
{
protected:
    void SetUp() override
    {
        m_root = fs::temp_directory_path() /
                 ("corr-export-chain-" +
                  std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()));
        fs::remove_all(m_root);
        m_result = m_root / "run1";
        fs::create_directories(m_result / "data");
        std::ofstream(m_result / "run1.corr") << "format=1\nname=run1\n";
        std::ofstream xml(m_result / "data" / "memcheck.xml");
        for (int i = 0; i < 40000; ++i)
            xml << "<frame><fn>worker_" << i % 97 << "</fn><line>" << i << "</line></frame>\n";
        m_target = m_root / "run1.corrz";
    }
    void TearDown() override { fs::remove_all(m_root); }

    // What the export worker does after loading: guard of 3, one step for
    // the load, the rest for packing.
    archiver_t::error_code_t
    export_on_worker(const boost::shared_ptr<corr_dialogs2::progress_bridge_t>& bridge)
    {
        archiver_t::error_code_t rc = archiver_t::write_failed;
        std::thread worker([&] {
            corr_engine::zipfile_impl_t zip;
            corr_engine::progress_guard_t guard(bridge.get(), L"Loading the result", 3);
            guard.progressed(1);
            auto child = guard.create_child(2, 1);
            if (zip.open_for_writing(m_target))
                rc = archiver_t::pack({m_result, {}}, zip, 0, nullptr, child.get());
        });
        worker.join();
        return rc;
    }

    fs::path m_root, m_result, m_target;
};

} // namespace

TEST_F(ExportChain, GuiSeesProgressUpToHundredAndTheCompletion)
{
    auto bridge = corr_dialogs2::progress_bridge_t::create();
    std::vector<int> percents;
    std::vector<std::wstring> texts;
    int finished = 0;
    bridge->percent_changed.connect([&](int p) { percents.push_back(p); });
    bridge->status_changed.connect([&](const std::wstring& t) { texts.push_back(t); });
    bridge->notify_first.connect([&] { ++finished; });

    ASSERT_EQ(archiver_t::success, export_on_worker(bridge));
    ASSERT_TRUE(corr_test::wait_until(
        [&] { return finished == 1 && !percents.empty() && percents.back() == 100; }));
    EXPECT_TRUE(std::is_sorted(percents.begin(), percents.end()));
    ASSERT_FALSE(texts.empty());
    EXPECT_EQ(L"Packing run1", texts.back()) << "the archiver's status replaces the loading text";
    EXPECT_TRUE(fs::exists(m_target));
}

TEST_F(ExportChain, CancelFromTheGuiStopsThePackingAndStillEndsTheProgress)
{
    auto bridge = corr_dialogs2::progress_bridge_t::create();
    int finished = 0;
    bridge->notify_first.connect([&] { ++finished; });
    bridge->cancel(); // the user pressed Cancel before packing got going
    EXPECT_EQ(archiver_t::cancelled, export_on_worker(bridge));
    EXPECT_FALSE(fs::exists(m_target));
    ASSERT_TRUE(corr_test::wait_until([&] { return finished == 1; }));
}
