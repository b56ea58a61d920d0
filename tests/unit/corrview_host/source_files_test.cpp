// Finding a frame's source on this machine, the folders the user added,
// reading a source file as UTF-8, and the sample's own sources.
#include "host/locations.h"
#include "host/source_folders.h"
#include "host/source_locator.h"
#include "host/source_text.h"
#include "host_test_support.h"

#include "corr_engine/result_manifest.h"

#include <fstream>

namespace {

using namespace host_test;

void write_file(const fs::path& file, const std::string& bytes)
{
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << bytes;
}

// A tree of sources in a folder whose name a user might well have.
struct SourceTree : ::testing::Test
{
    void SetUp() override
    {
        root = tmp / "Quellen ü 'alt' \"neu\"";
        for (const char* file : {"checkout/src/a.c", "checkout/a.c", "moved/src/b.c",
                                 "moved/include/b.h", "user/lib/c.c", "glibc/csu/libc-start.c"})
            write_file(root / file, "int x;\n");
    }
    temp_dir_t tmp;
    fs::path root;
};

TEST_F(SourceTree, FilesAreFoundAsRecordedThenUnderTheResultsThenTheUsersFolders)
{
    corrview::source_locator_t locator;
    locator.set_result_folders({root / "checkout", root / "moved"});
    locator.set_user_folders({root / "user"});
    const std::string old = "/build/old/";
    struct case_t
    {
        std::string recorded;
        fs::path found; // empty: not found
    } cases[] = {
        // Still where the analyser saw it.
        {(root / "moved/src/b.c").string(), root / "moved/src/b.c"},
        // The longest tail wins: src/a.c, not the a.c beside it.
        {old + "src/a.c", root / "checkout/src/a.c"},
        // The first result folder that holds it.
        {old + "include/b.h", root / "moved/include/b.h"},
        // Only under a folder the user added.
        {old + "lib/c.c", root / "user/lib/c.c"},
        // Relative, with "..": its tail under a folder.
        {"csu/../csu/libc-start.c", fs::path()},
        {"/nowhere/missing.c", fs::path()},
        {"", fs::path()},
    };
    for (const auto& c : cases)
        EXPECT_EQ(locator.find(c.recorded).found, c.found) << c.recorded;

    locator.set_user_folders({root / "glibc"});
    EXPECT_EQ(locator.find("csu/../csu/libc-start.c").found, root / "glibc/csu/libc-start.c");

    // Where a missing file was looked for, in order: as recorded, then each folder.
    const auto missing = locator.find("/nowhere/missing.c");
    EXPECT_EQ(missing.looked_in, (std::vector<fs::path>{"/nowhere/missing.c", root / "checkout",
                                                        root / "moved", root / "glibc"}));
}

TEST(SourceLocator, TheFolderAChosenFileImplies)
{
    const struct
    {
        const char* recorded;
        const char* chosen;
        const char* folder;
    } cases[] = {
        {"/build/proj/src/a.c", "/home/me/proj/src/a.c", "/home/me"},
        {"/build/proj/src/a.c", "/home/me/code/src/a.c", "/home/me/code"},
        {"/build/proj/src/a.c", "/home/me/a.c", "/home/me"},
        // Another name: the file's own folder.
        {"/build/proj/src/a.c", "/home/me/x/renamed.c", "/home/me/x"},
        {"a.c", "/a.c", "/"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(corrview::folder_for(c.recorded, c.chosen), fs::path(c.folder)) << c.chosen;
}

TEST(SourceFolders, AreRememberedPerProjectAndAMalformedFileIsNotOverwritten)
{
    temp_dir_t tmp;
    // (The storage's own folder: see basekit2::path_t for names it can hold.)
    const fs::path file = tmp / "config" / "folders.xml";
    const fs::path project = tmp / "projekt ö", other = tmp / "other";
    {
        corrview::source_folders_t folders{basekit2::path_t(file)};
        EXPECT_TRUE(folders.get(project).empty());
        EXPECT_TRUE(folders.add(project, tmp / "src ä"));
        EXPECT_TRUE(folders.add(project, tmp / "lib"));
        EXPECT_TRUE(folders.add(project, tmp / "src ä" / ".")); // the same folder
        EXPECT_TRUE(folders.add(other, tmp / "elsewhere"));
    }
    // Read back by another instance, as the next run of the viewer would.
    corrview::source_folders_t again{basekit2::path_t(file)};
    EXPECT_EQ(again.get(project), (std::vector<fs::path>{tmp / "src ä", tmp / "lib"}));
    EXPECT_EQ(again.get(other), std::vector<fs::path>{tmp / "elsewhere"});
    for (int i = 0; i < 11; ++i)
        EXPECT_TRUE(again.add(project, tmp / ("d" + std::to_string(i))));
    // Kept in the order added past ten entries.
    EXPECT_EQ(again.get(project).back(), tmp / "d10");
    EXPECT_EQ(again.get(project).size(), 13u);

    write_file(file, "<properties version=\"1\"><property");
    EXPECT_FALSE(again.add(project, tmp / "new"));
    EXPECT_NE(again.error().find(basekit2::path_t(file).str()), std::wstring::npos);
    std::ifstream in(file);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}),
              "<properties version=\"1\"><property");
}

TEST(SourceText, BytesThatAreNotUtf8BecomeLatin1Letters)
{
    const struct
    {
        std::string in;
        std::string out;
        bool converted;
    } cases[] = {
        {"int x; // \xC3\xA4 \xE2\x82\xAC \xF0\x9F\x98\x80\n", "", false},
        {"caf\xE9\n", "caf\xC3\xA9\n", true},
        {"\xFF\xFE", "\xC3\xBF\xC3\xBE", true},
        // Cut short at the end; an overlong form; a surrogate; past U+10FFFF.
        {"x\xE2\x82", "x\xC3\xA2\xC2\x82", true},
        {"\xC0\xAF", "\xC3\x80\xC2\xAF", true},
        {"\xED\xA0\x80", "\xC3\xAD\xC2\xA0\xC2\x80", true},
        {"\xF4\x90\x80\x80", "\xC3\xB4\xC2\x90\xC2\x80\xC2\x80", true},
    };
    for (const auto& c : cases) {
        std::string out;
        EXPECT_EQ(corrview::make_valid_utf8(c.in, out), c.converted) << c.in;
        EXPECT_EQ(out, c.out) << c.in;
    }

    temp_dir_t tmp;
    const fs::path latin1 = tmp / "quelle \xE9.c"; // a name that is not UTF-8 either
    write_file(latin1, "/* gr\xFC\xDF */\nint main() {}\n");
    const auto text = corrview::read_source_text(latin1);
    EXPECT_EQ(text.problem, corrview::source_text_t::no_problem);
    EXPECT_TRUE(text.converted);
    EXPECT_EQ(text.utf8, "/* gr\xC3\xBC\xC3\x9F */\nint main() {}\n");

    EXPECT_EQ(corrview::read_source_text(tmp / "missing.c").problem,
              corrview::source_text_t::missing);
    EXPECT_EQ(corrview::read_source_text(tmp.path()).problem, corrview::source_text_t::not_a_file);
    const fs::path huge = tmp / "core";
    write_file(huge, "");
    fs::resize_file(huge, corrview::max_source_size + 1); // sparse: nothing is written
    const auto too_large = corrview::read_source_text(huge);
    EXPECT_EQ(too_large.problem, corrview::source_text_t::too_large);
    EXPECT_EQ(too_large.size, corrview::max_source_size + 1);
}

TEST(SampleSources, TheSampleCopyGetsTheSamplesSourcesOnce)
{
    temp_dir_t tmp;
    const fs::path copy = copy_sample_result(tmp / "sample");
    const basekit2::path_t sources(fs::path(CORR_SAMPLES_DIR) / "src");
    std::wstring error;
    ASSERT_TRUE(corrview::attach_sample_sources(basekit2::path_t(copy), sources, error))
        << platkit::strings::wide_to_utf8(error);
    corr_engine::result_manifest_t manifest;
    ASSERT_TRUE(manifest.read(basekit2::path_t(copy / "sample.corr"), error));
    EXPECT_EQ(manifest.source_dirs, std::vector<basekit2::path_t>{sources});
    EXPECT_EQ(manifest.data_files.size(), 12u);

    // Folders the user set stay as they are.
    manifest.source_dirs = {basekit2::path_t(tmp / "mine")};
    ASSERT_TRUE(manifest.write(basekit2::path_t(copy / "sample.corr"), error));
    ASSERT_TRUE(corrview::attach_sample_sources(basekit2::path_t(copy), sources, error));
    ASSERT_TRUE(manifest.read(basekit2::path_t(copy / "sample.corr"), error));
    EXPECT_EQ(manifest.source_dirs, std::vector<basekit2::path_t>{basekit2::path_t(tmp / "mine")});

    EXPECT_FALSE(corrview::attach_sample_sources(basekit2::path_t(tmp / "none"), sources, error));
    EXPECT_NE(error.find(L"none"), std::wstring::npos);
}

} // namespace
