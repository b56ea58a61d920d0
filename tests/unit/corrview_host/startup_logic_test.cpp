// Command line, and where the viewer finds what it ships.
#include "host/command_line.h"
#include "host/locations.h"
#include "host_test_support.h"

#include <fstream>

namespace {

using namespace host_test;

TEST(CommandLine, ResultScreenshotHelpAndMistakes)
{
    auto o = corrview::parse_command_line({});
    EXPECT_TRUE(o.result.empty());
    EXPECT_TRUE(o.error.empty());

    o = corrview::parse_command_line({"--screenshot", "out.png", "/r/x"});
    EXPECT_EQ(o.screenshot.str(), L"out.png");
    EXPECT_EQ(o.result.str(), L"/r/x");
    EXPECT_EQ(corrview::parse_command_line({"--screenshot=a.png"}).screenshot.str(), L"a.png");
    EXPECT_TRUE(corrview::parse_command_line({"-h"}).help);

    EXPECT_EQ(corrview::parse_command_line({"--screenshot"}).error,
              "--screenshot needs a file name");
    EXPECT_EQ(corrview::parse_command_line({"--bogus"}).error, "unknown option --bogus");
    EXPECT_NE(corrview::parse_command_line({"a", "b"}).error.find("only one result"),
              std::string::npos);
    EXPECT_NE(corrview::usage_text().find("--screenshot FILE"), std::string::npos);
    EXPECT_NE(corrview::no_display_text().find("xvfb-run -a corrview"), std::string::npos);
}

TEST(Locations, SampleCopyIsMadeOnceAndFailsClearly)
{
    temp_dir_t tmp;
    std::wstring error;
    const basekit2::path_t copy(tmp / "data" / "sample-result");
    ASSERT_EQ(corrview::prepare_sample_copy(basekit2::path_t(sample_result()), copy, error), copy)
        << platkit::strings::wide_to_utf8(error);
    EXPECT_TRUE(fs::exists(copy.fs() / "sample.corr"));
    EXPECT_TRUE(fs::is_directory(copy.fs() / "suppressions"));
    EXPECT_FALSE(fs::exists(tmp / "data" / "sample-result.partial"));

    // A copy that exists is kept as it is (the user's suppressions live there).
    std::ofstream(copy.fs() / "suppressions" / "mine.sup") << "corr-suppressions 2\n";
    EXPECT_EQ(corrview::prepare_sample_copy(basekit2::path_t(sample_result()), copy, error), copy);
    EXPECT_TRUE(fs::exists(copy.fs() / "suppressions" / "mine.sup"));

    EXPECT_TRUE(corrview::prepare_sample_copy(basekit2::path_t(tmp / "missing"),
                                              basekit2::path_t(tmp / "c2"), error)
                    .empty());
    EXPECT_NE(error.find(L"missing"), std::wstring::npos);
}

TEST(Locations, InstalledFoldersWinOverTheBuildTree)
{
    temp_dir_t tmp;
    // A build tree: no share/corr_dialogs2 beside the executable.
    const auto built = corrview::find_product_paths(basekit2::path_t(tmp / "bin"));
    EXPECT_TRUE(fs::exists(built.sample_result.fs() / "sample.corr"));
    EXPECT_TRUE(fs::exists(built.default_config_dir.fs() / "dialogs2.suppressions.xml"));

    // An installed tree.
    const fs::path share = tmp / "share" / "corr_dialogs2";
    fs::create_directories(share / "config");
    fs::create_directories(share / "samples" / "result");
    std::ofstream(share / "dialogs2.dat") << "";
    const auto installed = corrview::find_product_paths(basekit2::path_t(tmp / "bin"));
    EXPECT_EQ(fs::path(installed.resource_dir.str()), share);
    EXPECT_EQ(fs::path(installed.default_config_dir.str()), share / "config");
    EXPECT_EQ(fs::path(installed.sample_result.str()), share / "samples" / "result");
}

} // namespace
