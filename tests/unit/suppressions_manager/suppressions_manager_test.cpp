// Finding and loading the suppression files of a result and its project.
#include "../ruledata/sup_test_support.h"

#include "corr_engine/suppressions_manager.h"
#include "platkit/strings/convert.h"

#include <gtest/gtest.h>

using corr_engine::suppressions_manager_t;
using sup_test::temp_dir;
namespace fs = std::filesystem;

namespace {

// project/ with project.corrproj, a result in project/results/r1/, and
// suppression files in both.
struct project_layout
{
    temp_dir dir;
    fs::path project = dir / "project";
    fs::path result = project / "results" / "r1";
    fs::path marker = result / "r1.corr";

    project_layout()
    {
        fs::create_directories(result / "suppressions");
        fs::create_directories(project / "suppressions");
        sup_test::write_bytes(project / "project.corrproj", "corr-project 1\n");
        sup_test::write_bytes(marker, "corr-result 1\n");
        const auto canonical = sup_test::data_dir() / "canonical_v2.sup";
        fs::copy_file(canonical, result / "suppressions" / "b.sup");
        fs::copy_file(sup_test::data_dir() / "previous_v1.sup", result / "suppressions" / "a.sup");
        fs::copy_file(sup_test::data_dir() / "malformed_two_best.sup", result / "suppressions" / "broken.sup");
        sup_test::write_bytes(result / "suppressions" / "notes.txt", "not a suppression file\n");
        fs::copy_file(canonical, project / "suppressions" / "team.sup");
    }
};

std::vector<std::wstring> leaves(const std::vector<suppressions_manager_t::file_ptr>& files)
{
    std::vector<std::wstring> out;
    for (const auto& f : files)
        out.push_back(fs::path(f->get_path()).filename().wstring());
    return out;
}

} // namespace

TEST(SuppressionsManager, ResultSuppressionsAreLoadedSortedAndBrokenOnesReported)
{
    project_layout layout;
    const suppressions_manager_t manager;
    EXPECT_EQ(manager.get_result_suppressions_folder(layout.marker.wstring()).fs(), layout.result / "suppressions");
    const auto files = manager.get_result_suppressions(layout.marker.wstring());
    EXPECT_EQ(leaves(files), (std::vector<std::wstring>{L"a.sup", L"b.sup"}));
    EXPECT_EQ(files[0]->get_file_format(), suppfmt3::sff_version_1);
    EXPECT_EQ(files[1]->get_rulesets(true).size(), 2u);
    ASSERT_EQ(manager.get_last_errors().size(), 1u);
    const std::wstring expected = (layout.result / "suppressions" / "broken.sup").wstring() + L":6: ";
    EXPECT_EQ(manager.get_last_errors()[0].rfind(expected, 0), 0u)
        << platkit::strings::wide_to_utf8(manager.get_last_errors()[0]);
}

TEST(SuppressionsManager, ProjectIsTheNearestFolderAboveWithAProjectFile)
{
    project_layout layout;
    const suppressions_manager_t manager;
    EXPECT_EQ(manager.get_project_storage(layout.marker.wstring()).fs(), layout.project);
    EXPECT_EQ(leaves(manager.get_project_suppressions(layout.marker.wstring())), std::vector<std::wstring>{L"team.sup"});

    // A project file in the result folder itself does not make it a project.
    sup_test::write_bytes(layout.result / "project.corrproj", "corr-project 1\n");
    EXPECT_EQ(manager.get_project_storage(layout.marker.wstring()).fs(), layout.project);

    fs::remove(layout.project / "project.corrproj");
    fs::remove(layout.result / "project.corrproj");
    EXPECT_TRUE(manager.get_project_storage(layout.marker.wstring()).empty());
    EXPECT_TRUE(manager.get_project_suppressions(layout.marker.wstring()).empty());
    EXPECT_TRUE(manager.get_result_suppressions(L"").empty());
}

TEST(SuppressionsManager, CreateSuppressionMakesNewFilesAndLoadsExistingOnes)
{
    temp_dir dir;
    const fs::path result = dir / "r2";
    fs::create_directories(result);
    const fs::path marker = result / "r2.corr";
    sup_test::write_bytes(marker, "corr-result 1\n");
    const suppressions_manager_t manager;

    // A relative name lands in the result's suppressions folder, created for it.
    const auto created = manager.create_suppression(marker.wstring(), std::wstring(L"mine.sup"));
    ASSERT_TRUE(created);
    EXPECT_EQ(fs::path(created->get_path()), result / "suppressions" / "mine.sup");
    EXPECT_TRUE(fs::is_directory(result / "suppressions"));
    EXPECT_FALSE(fs::exists(result / "suppressions" / "mine.sup")); // written on save
    EXPECT_TRUE(created->get_rulesets(true).empty());

    // An existing file is loaded, so a save adds to it instead of replacing it.
    const fs::path outside = dir / "shared.sup";
    fs::copy_file(sup_test::data_dir() / "canonical_v2.sup", outside);
    const auto existing = manager.create_suppression(marker.wstring(), outside.wstring());
    ASSERT_TRUE(existing);
    EXPECT_EQ(existing->get_rulesets(true).size(), 2u);

    fs::copy_file(sup_test::data_dir() / "malformed_no_rules.sup", dir / "bad.sup");
    EXPECT_FALSE(manager.create_suppression(marker.wstring(), (dir / "bad.sup").wstring()));
    EXPECT_EQ(manager.get_last_errors().size(), 1u);
}

TEST(SuppressionsManager, ANameWithoutExtensionBecomesASupFileTheFolderListingFinds)
{
    temp_dir dir;
    const fs::path result = dir / "result with spaces";
    fs::create_directories(result / "suppressions" / "a folder");
    const fs::path marker = result / "r3.corr";
    sup_test::write_bytes(marker, "corr-result 1\n");
    const suppressions_manager_t manager;

    // "known-leaks" would be a file the listing never reads again.
    const auto created = manager.create_suppression(marker.wstring(), std::wstring(L"known-leaks"));
    ASSERT_TRUE(created);
    EXPECT_EQ(fs::path(created->get_path()), result / "suppressions" / "known-leaks.sup");
    const auto sample =
        probstore3::suppression_file_t::open((sup_test::data_dir() / "canonical_v2.sup").wstring());
    ASSERT_TRUE(sample);
    created->add_suppression(sample->get_rulesets(true).front());
    ASSERT_EQ(created->save(created->get_path(), created->get_current_file_format()), 0);
    EXPECT_EQ(leaves(manager.get_result_suppressions(marker.wstring())),
              std::vector<std::wstring>{L"known-leaks.sup"});
    // An extension of the user's own stays, absolute paths too.
    const fs::path other = dir / "elsewhere";
    EXPECT_EQ(
        fs::path(manager.create_suppression(marker.wstring(), (other / "notes.txt").wstring())
                     ->get_path()),
        other / "notes.txt");
    EXPECT_EQ(
        fs::path(
            manager.create_suppression(marker.wstring(), (other / "team").wstring())->get_path()),
        other / "team.sup");

    // A folder is no file to write: refused with a reason, nothing made.
    for (const std::wstring& folder : {(dir / "elsewhere/").wstring(), std::wstring(L"a folder"),
                                       (result / "suppressions" / "a folder").wstring()}) {
        EXPECT_FALSE(manager.create_suppression(marker.wstring(), folder)) << fs::path(folder);
        ASSERT_EQ(manager.get_last_errors().size(), 1u);
        EXPECT_NE(manager.get_last_errors()[0].find(L"folder"), std::wstring::npos);
    }
    EXPECT_FALSE(fs::exists(dir / "elsewhere"));
}
