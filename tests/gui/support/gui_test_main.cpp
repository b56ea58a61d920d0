// main() of the GUI tests: starts a wxApp, turns wx and platform assertions
// into test failures, and runs the tests on the GUI thread.
#include "gui_test.h"
#include "modal_expectations.h"

#include "platkit/debug/assert.h"
#include "platkit/strings/convert.h"
#include "settings2/product_locations.h"
#include "settings2/resource_catalogs.h"
#include "wxkit1/tasks/scheduler.h"

#include <gtest/gtest.h>
#include <wx/app.h>
#include <wx/init.h>
#include <wx/log.h>

#include <cstdio>
#include <cstring>
#include <string>

namespace {

class test_app : public wxApp
{
public:
    bool OnInit() override { return true; }
};

void wx_assert_handler(const wxString& file, int line, const wxString& func, const wxString& cond,
                       const wxString& msg)
{
    ADD_FAILURE_AT(file.utf8_str(), line)
        << "wx assertion failed in " << func.utf8_str() << ": " << cond.utf8_str() << " "
        << msg.utf8_str();
}

bool listing_only(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i)
        if (std::strcmp(argv[i], "--gtest_list_tests") == 0)
            return true;
    return false;
}

} // namespace

#if defined(__SANITIZE_THREAD__)
// ThreadSanitizer sees GTK's own helper threads (GLib, GIO, fontconfig as
// pango starts it) through uninstrumented libraries and reports their
// synchronisation as races; none of it is ours.
extern "C" __attribute__((visibility("default"))) const char* __tsan_default_suppressions()
{
    return "race:libglib-2.0.so\n"
           "race:libgio-2.0.so\n"
           "race:libfontconfig.so\n"
           "deadlock:libglib-2.0.so\n";
}
#endif

int main(int argc, char** argv)
{
    const bool listing = listing_only(argc, argv); // before gtest takes its flags out of argv
    testing::InitGoogleTest(&argc, argv);
    if (listing)
        return RUN_ALL_TESTS(); // test discovery needs no display

    wxApp::SetInstance(new test_app);
    if (!wxEntryStart(argc, argv)) {
        std::fprintf(stderr, "Cannot start the GUI: no display. Run the GUI tests under "
                             "xvfb-run -a -s \"-screen 0 1600x1200x24\".\n");
        return 2;
    }
    wxTheApp->CallOnInit();
    wxLog::SetActiveTarget(new wxLogStderr);
    wxSetAssertHandler(wx_assert_handler);
    platkit::debug::set_assert_handler([](const platkit::debug::assertion_info& info) {
        ADD_FAILURE_AT(info.file, info.line)
            << "assertion \"" << info.condition << "\" failed in " << info.function << ": " << info.message;
    });
    settings2::IProductLocations::set(std::make_shared<settings2::product_locations_t>(
        L"Correctness Analyzer", L"corr-analyzer", L"CorrA", basekit2::path_t::from_utf8(CORR_RESOURCE_DIR)));

    // Every dialog needs its catalogue; without them no GUI test means anything.
    const basekit2::path_t resources = settings2::IProductLocations::get()->getResourceDirectory();
    const auto report = settings2::load_resource_catalogs(resources);
    if (!report.ok()) {
        std::fprintf(stderr, "Cannot load the resource catalogues from %s:\n%s\n", resources.utf8().c_str(),
                     platkit::strings::wide_to_utf8(report.error_text()).c_str());
        return 2;
    }
    corr_test::detail::install_modal_guards();
    wxkit1::tasks::Scheduler::Initialize();

    const int rc = RUN_ALL_TESTS();
    wxkit1::tasks::Scheduler::Shutdown();

    corr_test::detail::remove_modal_guards();
    settings2::IProductLocations::set(nullptr);
    wxTheApp->OnExit();
    wxEntryCleanup();
    return rc;
}
