#include "basekit2/config.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;
using basekit2::advanced_xml_config_t;
using basekit2::config_manager_t;
using basekit2::path_t;

TEST(Config, UserConfigFollowsXdgConfigHome)
{
    const char* old = std::getenv("XDG_CONFIG_HOME");
    const std::string saved = old ? old : "";
    setenv("XDG_CONFIG_HOME", "/tmp/xdg-test", 1);
    EXPECT_EQ(config_manager_t::get_user_config(L"dialogs2.suppressions").str(),
              L"/tmp/xdg-test/corr/dialogs2.suppressions.xml");
    if (old)
        setenv("XDG_CONFIG_HOME", saved.c_str(), 1);
    else
        unsetenv("XDG_CONFIG_HOME");
}

TEST(Config, SaveLoadRoundTripAndErrors)
{
    const fs::path dir = fs::temp_directory_path() / "basekit2_config_test";
    fs::remove_all(dir);
    const path_t file(dir / "section.xml");

    advanced_xml_config_t cfg;
    cfg.set(L"default_filename", L"my.sup");
    cfg.set(L"nested.level", 3);
    ASSERT_TRUE(cfg.save(file)) << cfg.last_error();

    advanced_xml_config_t loaded;
    ASSERT_TRUE(loaded.load(file));
    EXPECT_EQ(loaded.get_string(L"default_filename"), L"my.sup");
    EXPECT_EQ(loaded.get(L"nested.level").as_int(), 3);
    EXPECT_EQ(loaded.get_string(L"absent", L"fallback"), L"fallback");

    std::ofstream(dir / "broken.xml") << "<config><a>1</config>";
    EXPECT_FALSE(loaded.load(path_t(dir / "broken.xml")));
    EXPECT_NE(loaded.last_error().find(L"broken.xml"), std::wstring::npos);
    EXPECT_EQ(loaded.get_string(L"default_filename"), L"my.sup") << "failed load keeps content";
    EXPECT_FALSE(loaded.load(path_t(dir / "missing.xml")));
    fs::remove_all(dir);
}
