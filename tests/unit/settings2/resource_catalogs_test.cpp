// Loading catalogues from resource archives, with no wxApp in the process:
// the real archives of the build, and damaged ones made here with libzip.
#include "settings2/catalog.h"
#include "settings2/resource_catalogs.h"
#include "platkit/strings/convert.h"
#include "../ruledata/sup_test_support.h"

#include <gtest/gtest.h>
#include <zip.h>

#include <map>

namespace fs = std::filesystem;
using basekit2::path_t;

namespace {

using sup_test::temp_dir;

// Writes a real zip archive with the given entries.
void write_zip(const fs::path& file, const std::map<std::string, std::string>& entries)
{
    int error = 0;
    zip_t* archive = zip_open(file.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &error);
    ASSERT_NE(archive, nullptr) << "libzip error " << error;
    for (const auto& [name, data] : entries) {
        zip_source_t* source = zip_source_buffer(archive, data.data(), data.size(), 0);
        ASSERT_NE(source, nullptr);
        ASSERT_GE(zip_file_add(archive, name.c_str(), source, ZIP_FL_OVERWRITE), 0);
    }
    ASSERT_EQ(zip_close(archive), 0);
}

std::string real_catalog_data()
{
    // The compiled catalogue the build packed into dialogs2.dat.
    return sup_test::read_bytes(fs::path(CORR_RESOURCE_DIR) / "dialogs2.dat.d" / "messages.mo");
}

std::wstring text_of(const std::wstring& set, const std::wstring& key)
{
    const auto catalog = settings2::getMessageCatalog(set);
    return catalog && catalog->has_message(key) ? catalog->message(key).raw() : L"<none>";
}

} // namespace

TEST(ResourceCatalogs, LoadsTheBuiltArchivesUnderTheirSetNames)
{
    const auto report = settings2::load_resource_catalogs(path_t::from_utf8(CORR_RESOURCE_DIR));
    EXPECT_TRUE(report.ok()) << platkit::strings::wide_to_utf8(report.error_text());
    auto sets = report.loaded_sets();
    std::sort(sets.begin(), sets.end());
    EXPECT_EQ(sets, (std::vector<std::wstring>{L"dialogs", L"shareddlg"}));

    EXPECT_EQ(text_of(L"dialogs", L"btn.close"), L"Close");
    EXPECT_EQ(text_of(L"dialogs", L"dlg.suppressions.stack.title.view"), L"Call Stack");
    const auto shared = settings2::getMessageCatalog(L"shareddlg");
    ASSERT_TRUE(shared);
    EXPECT_EQ(shared->message(L"restricted_symbols_message").as_ustring({{L"symbols", L"* ?"}}),
              L"A name cannot contain any of these characters: * ?");
    EXPECT_FALSE(shared->has_message(L"btn.close")) << "each archive has its own catalogue";
    // The launch-dialog pages find the same catalogue under their own set.
    EXPECT_EQ(settings2::getMessageCatalog(L"launchdlg_qm"), settings2::getMessageCatalog(L"dialogs"));
}

TEST(ResourceCatalogs, MissingOrEmptyFolderIsReportedByName)
{
    const auto missing = settings2::load_resource_catalogs(path_t(L"/nonexistent/corr/resources"));
    ASSERT_EQ(missing.errors().size(), 1u);
    EXPECT_NE(missing.errors()[0].find(L"/nonexistent/corr/resources"), std::wstring::npos);
    EXPECT_NE(missing.errors()[0].find(L"does not exist"), std::wstring::npos);
    EXPECT_FALSE(missing.ok());

    temp_dir dir;
    std::ofstream(dir.path() / "readme.txt") << "not an archive";
    const auto empty = settings2::load_resource_catalogs(path_t(dir.path()));
    ASSERT_EQ(empty.errors().size(), 1u);
    EXPECT_NE(empty.errors()[0].find(L"no resource archives"), std::wstring::npos);
}

TEST(ResourceCatalogs, DamagedArchivesAreReportedAndTheOthersStillLoad)
{
    temp_dir dir;
    const std::string good = sup_test::read_bytes(fs::path(CORR_RESOURCE_DIR) / "dialogs2.dat");
    ASSERT_FALSE(good.empty());
    std::ofstream(dir.path() / "a_good.dat", std::ios::binary) << good;
    std::ofstream(dir.path() / "b_garbage.dat", std::ios::binary) << "this is not a zip file at all";
    std::ofstream(dir.path() / "c_truncated.dat", std::ios::binary) << good.substr(0, good.size() / 2);
    std::ofstream(dir.path() / "d_empty.dat", std::ios::binary);
    write_zip(dir.path() / "e_no_manifest.dat", {{"messages.mo", real_catalog_data()}});
    write_zip(dir.path() / "f_no_set.dat", {{"manifest.txt", "name=x\n"}, {"messages.mo", real_catalog_data()}});
    write_zip(dir.path() / "g_no_catalog.dat", {{"manifest.txt", "set=g\n"}, {"dialogs.xrc", "<resource/>"}});
    write_zip(dir.path() / "h_bad_catalog.dat", {{"manifest.txt", "set=h\n"}, {"messages.mo", "garbage, not MO"}});

    const auto report = settings2::load_resource_catalogs(path_t(dir.path()));
    ASSERT_EQ(report.entries.size(), 8u);
    EXPECT_FALSE(report.ok());
    EXPECT_EQ(report.loaded_sets(), std::vector<std::wstring>{L"dialogs"});

    const std::map<std::wstring, std::wstring> expected = {
        {L"b_garbage.dat", L"not a readable zip archive"},
        {L"c_truncated.dat", L"not a readable zip archive"},
        {L"d_empty.dat", L"not a readable zip archive"},
        {L"e_no_manifest.dat", L"no manifest.txt"},
        {L"f_no_set.dat", L"no \"set=<name>\" line"},
        {L"g_no_catalog.dat", L"no messages.mo"},
        {L"h_bad_catalog.dat", L"not a valid compiled catalogue"},
    };
    for (const auto& entry : report.entries) {
        const std::wstring leaf = entry.archive.leaf();
        if (leaf == L"a_good.dat") {
            EXPECT_TRUE(entry.ok()) << platkit::strings::wide_to_utf8(entry.error);
            continue;
        }
        ASSERT_TRUE(expected.count(leaf)) << platkit::strings::wide_to_utf8(leaf);
        EXPECT_FALSE(entry.ok()) << platkit::strings::wide_to_utf8(leaf);
        // The message names the file and says what is wrong with it.
        EXPECT_NE(entry.error.find(entry.archive.str()), std::wstring::npos);
        EXPECT_NE(entry.error.find(expected.at(leaf)), std::wstring::npos)
            << platkit::strings::wide_to_utf8(entry.error);
    }
    EXPECT_EQ(settings2::getMessageCatalog(L"g"), nullptr);
    EXPECT_EQ(settings2::getMessageCatalog(L"h"), nullptr);
    EXPECT_EQ(text_of(L"dialogs", L"btn.close"), L"Close");
}

TEST(ResourceCatalogs, ManifestNamesTheSetAndAReloadReplacesTheCatalogue)
{
    temp_dir dir;
    const fs::path archive = dir.path() / "custom.dat";
    write_zip(archive, {{"manifest.txt", "# test archive\r\nset = custom_set\r\n"},
                        {"messages.mo", real_catalog_data()}});
    const auto first = settings2::load_resource_catalog(path_t(archive));
    ASSERT_TRUE(first.ok()) << platkit::strings::wide_to_utf8(first.error);
    EXPECT_EQ(first.set, L"custom_set");
    const auto before = settings2::getMessageCatalog(L"custom_set");
    ASSERT_TRUE(before);
    EXPECT_EQ(before->name(), L"custom_set");
    EXPECT_EQ(text_of(L"custom_set", L"btn.close"), L"Close");
    EXPECT_EQ(before->message(L"no.such.key").raw(), L"no.such.key");

    const fs::path aliased = dir.path() / "aliased.dat";
    write_zip(aliased, {{"manifest.txt", "set=main_set\nalso = second_set\nalso=\nset=ignored\n"},
                        {"messages.mo", real_catalog_data()}});
    const auto with_alias = settings2::load_resource_catalog(path_t(aliased));
    ASSERT_TRUE(with_alias.ok());
    EXPECT_EQ(with_alias.set, L"main_set");
    EXPECT_EQ(settings2::getMessageCatalog(L"second_set"), settings2::getMessageCatalog(L"main_set"));
    EXPECT_EQ(settings2::getMessageCatalog(L"ignored"), nullptr);
    EXPECT_EQ(text_of(L"second_set", L"btn.close"), L"Close");

    const auto again = settings2::load_resource_catalog(path_t(archive));
    ASSERT_TRUE(again.ok());
    EXPECT_NE(settings2::getMessageCatalog(L"custom_set"), before);

    const auto missing = settings2::load_resource_catalog(path_t(dir.path() / "gone.dat"));
    EXPECT_FALSE(missing.ok());
    EXPECT_NE(missing.error.find(L"gone.dat: the resource archive does not exist"), std::wstring::npos);
}
