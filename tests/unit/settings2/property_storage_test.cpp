// The file-backed property storage: round trips with types, malformed files
// reported and kept, failed saves that leave the old file intact.
#include "settings2/property_storage.h"

#include "platkit/strings/convert.h"
#include "../ruledata/sup_test_support.h"

#include <gtest/gtest.h>

#include <fstream>

namespace fs = std::filesystem;
using basekit2::path_t;
using basekit2::variant_bag_t;
using platkit::types::variant;

namespace {

class PropertyStorage : public testing::Test
{
protected:
    static std::string read(const fs::path& p) { return sup_test::read_bytes(p); }
    static std::string utf8(const std::wstring& w) { return platkit::strings::wide_to_utf8(w); }

    sup_test::temp_dir m_tmp;
    const fs::path& m_dir = m_tmp.path();
    fs::path m_file = m_dir / "properties.xml";
};

} // namespace

TEST_F(PropertyStorage, ValuesAndTheirTypesSurviveAReload)
{
    variant_bag_t debugger;
    debugger.put(L"debugger_mode", L"on-error");
    debugger.put(L"at_cliname", L"  mi1 <&> \"ü\"  ");
    variant_bag_t numbers;
    numbers.put(L"int", -42);
    numbers.put(L"uint", 18446744073709551615ull);
    numbers.put(L"double", 0.1);
    numbers.put(L"bool", true);
    numbers.put(L"empty", variant());
    {
        settings2::file_property_storage_t storage{path_t(m_file)};
        EXPECT_TRUE(storage.load_error().empty());
        EXPECT_TRUE(storage.put(L"debugger_settings", debugger)) << utf8(storage.last_error());
        EXPECT_TRUE(storage.put(L"numbers", numbers));
    }
    EXPECT_FALSE(fs::exists(m_dir / "properties.xml.tmp"));

    settings2::file_property_storage_t reloaded{path_t(m_file)};
    EXPECT_TRUE(reloaded.load_error().empty()) << utf8(reloaded.load_error());
    variant_bag_t got;
    ASSERT_TRUE(reloaded.get(L"debugger_settings", got));
    EXPECT_EQ(got, debugger);
    ASSERT_TRUE(reloaded.get(L"numbers", got));
    EXPECT_EQ(got, numbers);
    EXPECT_EQ(got.get(L"uint").type(), variant::kind::unsigned_integer);
    EXPECT_EQ(got.get(L"double").as_double(), 0.1);
    EXPECT_EQ(got.get(L"missing", L"off").as_wstring(), L"off");
}

TEST_F(PropertyStorage, AbsentKeysAndFilesGiveNothingAndLeaveTheBagAlone)
{
    settings2::file_property_storage_t storage{path_t(m_dir / "none" / "p.xml")};
    EXPECT_TRUE(storage.load_error().empty());
    variant_bag_t bag;
    bag.put(L"kept", 1);
    EXPECT_FALSE(storage.get(L"debugger_settings", bag));
    EXPECT_EQ(bag.get(L"kept").as_int(), 1);
    EXPECT_FALSE(storage.remove(L"debugger_settings"));

    // A put creates the missing folder; a remove is persistent too.
    EXPECT_TRUE(storage.put(L"k", bag));
    EXPECT_TRUE(storage.remove(L"k"));
    settings2::file_property_storage_t reloaded{path_t(m_dir / "none" / "p.xml")};
    EXPECT_FALSE(reloaded.get(L"k", bag));
}

TEST_F(PropertyStorage, MalformedFileIsReportedAndMovedAsideNotOverwritten)
{
    const std::string bad = "<properties version=\"1\">\n  <property key=\"a\">\n    <value name=\"x\" type=\"int\">12z</value>\n";
    const std::string broken_types =
        "<properties><property key=\"a\"><value name=\"x\" type=\"int\">12z</value></property></properties>";
    for (const std::string& content : {bad, broken_types}) {
        std::ofstream(m_file, std::ios::binary) << content;
        fs::remove(m_dir / "properties.xml.bad");
        settings2::file_property_storage_t storage{path_t(m_file)};
        const std::wstring error = storage.load_error();
        EXPECT_NE(error.find(m_file.wstring()), std::wstring::npos) << utf8(error);
        variant_bag_t bag;
        EXPECT_FALSE(storage.get(L"a", bag)) << "a malformed file is not half-read";

        bag.put(L"y", 2);
        EXPECT_TRUE(storage.put(L"b", bag)) << utf8(storage.last_error());
        EXPECT_EQ(read(m_dir / "properties.xml.bad"), content);
        settings2::file_property_storage_t reloaded{path_t(m_file)};
        EXPECT_TRUE(reloaded.load_error().empty());
        EXPECT_TRUE(reloaded.get(L"b", bag));
    }

    std::ofstream(m_file, std::ios::binary) << "<other/>";
    EXPECT_NE(settings2::file_property_storage_t(path_t(m_file)).load_error().find(L"<properties>"),
              std::wstring::npos);
}

TEST_F(PropertyStorage, FailedSaveKeepsTheOldFileAndTheSessionValue)
{
    variant_bag_t first;
    first.put(L"v", 1);
    settings2::file_property_storage_t storage{path_t(m_file)};
    ASSERT_TRUE(storage.put(L"k", first));
    const std::string saved = read(m_file);

    // The temporary file cannot be created: a folder stands in its place.
    fs::create_directories(m_dir / "properties.xml.tmp");
    variant_bag_t second;
    second.put(L"v", 2);
    EXPECT_FALSE(storage.put(L"k", second));
    EXPECT_NE(storage.last_error().find(m_file.wstring()), std::wstring::npos) << utf8(storage.last_error());
    EXPECT_EQ(read(m_file), saved);

    variant_bag_t got;
    ASSERT_TRUE(storage.get(L"k", got));
    EXPECT_EQ(got.get(L"v").as_int(), 2);

    fs::remove_all(m_dir / "properties.xml.tmp");
    EXPECT_TRUE(storage.put(L"k", second));
    EXPECT_TRUE(storage.last_error().empty());
}

TEST_F(PropertyStorage, ProjectFileStartsEmptyFromItsMarkerAndKeepsItsProperties)
{
    const fs::path project = m_dir / "Projekt mit Ümlaut";
    fs::create_directories(project);
    const fs::path file = project / "project.corrproj";
    for (const std::string marker : {"", "corr-project 1\n", "\n  corr-project 1\r\n"}) {
        sup_test::write_bytes(file, marker);
        auto storage = settings2::open_project_storage(path_t::from_utf8(project.string()));
        EXPECT_EQ(storage->file().utf8(), file.string());
        EXPECT_TRUE(storage->load_error().empty()) << utf8(storage->load_error());
        variant_bag_t bag;
        EXPECT_FALSE(storage->get(L"debugger_settings", bag));
    }

    variant_bag_t bag;
    bag.put(L"debugger_mode", L"delay-analysis");
    ASSERT_TRUE(settings2::open_project_storage(path_t::from_utf8(project.string()))->put(L"debugger_settings", bag));
    EXPECT_FALSE(fs::exists(project / "project.corrproj.bad")) << "the marker is not a malformed file";
    variant_bag_t got;
    ASSERT_TRUE(settings2::open_project_storage(path_t::from_utf8(project.string()))->get(L"debugger_settings", got));
    EXPECT_EQ(got, bag);

    sup_test::write_bytes(file, "corrupt <properties");
    auto broken = settings2::open_project_storage(path_t::from_utf8(project.string()));
    EXPECT_NE(broken->load_error().find(L"project.corrproj"), std::wstring::npos);
}
