// The built-in analysis types and the client context.
#include "runctl2/analysis_type.h"
#include "runctl2/client_context.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include <unistd.h>

TEST(AnalysisTypes, EachHasAUniqueNameItsAnalyserAndItsDepth)
{
    const auto& types = runctl2::builtin_analysis_types();
    ASSERT_GE(types.size(), 8u);
    std::set<std::wstring> ids;
    for (const auto& t : types) {
        EXPECT_TRUE(ids.insert(t->getId()).second);
        EXPECT_EQ(t->getCliName(), t->getId());
        EXPECT_EQ(runctl2::find_analysis_type(t->getCliName()), t);
        EXPECT_EQ(t->supportsDebugger(), t->getAnalyser() != runctl2::analyser_t::sanitizer);
        EXPECT_EQ(t->getOptionsVariable().empty(), t->getAnalyser() != runctl2::analyser_t::sanitizer);
        EXPECT_EQ(t->queryObject("anything"), nullptr);
    }
    EXPECT_EQ(types.front()->getId(), L"mi1") << "the default type of the debugger settings comes first";
    auto has = [](const runctl2::analysis_type_ptr& t, const std::string& option) {
        const auto o = t->getAnalyserOptions();
        return std::find(o.begin(), o.end(), option) != o.end();
    };
    EXPECT_TRUE(has(runctl2::find_analysis_type(L"mi3"), "--track-origins=yes"));
    EXPECT_FALSE(has(runctl2::find_analysis_type(L"mi2"), "--track-origins=yes"));
    EXPECT_TRUE(has(runctl2::find_analysis_type(L"mi1"), "--undef-value-errors=no"));
    EXPECT_EQ(runctl2::find_analysis_type(L"ti2")->getAnalyser(), runctl2::analyser_t::drd);
    EXPECT_EQ(runctl2::find_analysis_type(L"asan")->getOptionsVariable(), "ASAN_OPTIONS");
    EXPECT_EQ(runctl2::find_analysis_type(L"nothing"), nullptr);
}

TEST(ClientContext, NamedValuesOfTheInstalledContext)
{
    EXPECT_EQ(runctl2::IClientContext::get(), nullptr);
    auto context = std::make_shared<runctl2::client_context_t>();
    context->setString(runctl2::CLIENT_ID, runctl2::client_id_ide);
    runctl2::IClientContext::set(context);
    ASSERT_EQ(runctl2::IClientContext::get(), context);
    EXPECT_EQ(runctl2::IClientContext::get()->getString(L"CLIENT_ID"), L"VS");
    EXPECT_EQ(runctl2::IClientContext::get()->getString(L"NO_SUCH_VALUE"), L"");
    runctl2::IClientContext::set(nullptr);
    EXPECT_EQ(runctl2::IClientContext::get(), nullptr);
}

#include "runctl2/runner.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <thread>

TEST(Runner, CancelEndsTheWholeProcessGroupAndLeavesNothingRunning)
{
    namespace fs = std::filesystem;
    const fs::path dir = fs::temp_directory_path() / ("corr cancel " + std::to_string(::getpid()));
    fs::create_directories(dir);
    runctl2::run_request_t request;
    request.type = runctl2::find_analysis_type(L"asan"); // runs the program itself
    request.program = basekit2::path_t(L"/bin/sh");
    // A child that ignores TERM, in the program's group, and the program waiting for it.
    request.arguments = {L"-c", L"(trap '' TERM; sleep 60) & echo $! > child.pid; wait"};
    request.working_folder = basekit2::path_t::from_utf8(dir.string());
    request.output_folder = request.working_folder;

    const auto start = std::chrono::steady_clock::now();
    const auto outcome = runctl2::run_analysis(request, [&] {
        return fs::exists(dir / "child.pid") && std::chrono::steady_clock::now() - start > std::chrono::milliseconds(200);
    }, std::chrono::milliseconds(300));
    const auto took = std::chrono::steady_clock::now() - start;
    EXPECT_TRUE(outcome.started);
    EXPECT_TRUE(outcome.cancelled);
    EXPECT_LT(took, std::chrono::seconds(5));
    int child = 0;
    std::ifstream(dir / "child.pid") >> child;
    ASSERT_GT(child, 0);
    // Once reaped by whoever inherits it, the child is gone.
    bool gone = false;
    for (int i = 0; i < 200 && !gone; ++i) {
        gone = ::kill(child, 0) != 0 && errno == ESRCH;
        if (!gone) {
            std::ifstream stat("/proc/" + std::to_string(child) + "/stat");
            std::string pid, name, state;
            stat >> pid >> name >> state;
            gone = state == "Z"; // killed, waiting to be reaped
        }
        if (!gone)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_TRUE(gone) << "process " << child << " survived the cancel";
    std::error_code ec;
    fs::remove_all(dir, ec);
}
