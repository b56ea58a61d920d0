#include "basekit2/path.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

using basekit2::path_t;
using basekit2::wildcard_match;

TEST(Path, Components)
{
    const path_t p(L"/res/suppressions/my rules.sup");
    EXPECT_EQ(p.leaf(), L"my rules.sup");
    EXPECT_EQ(p.parent().str(), L"/res/suppressions");
    EXPECT_EQ(p.extension(), L"sup");
    EXPECT_EQ(p.stem(), L"my rules");
    EXPECT_EQ(path_t(L"name.txt").replace_extension(L"zip").str(), L"name.zip");
    EXPECT_EQ(path_t(L"noext").extension(), L"");
    EXPECT_EQ((path_t(L"/a") / path_t(L"b")).str(), L"/a/b");
    EXPECT_EQ((path_t(L"/a") / path_t(L"/abs")).str(), L"/abs");
    EXPECT_EQ(path_t(L"/a/dir/").leaf(), L"dir");
    EXPECT_TRUE(path_t(L"/x").is_absolute());
    EXPECT_FALSE(path_t(L"x/y").is_absolute());
}

TEST(Wildcard, StarAndQuestionMark)
{
    EXPECT_TRUE(wildcard_match(L"main.cpp", L"*.cpp"));
    EXPECT_FALSE(wildcard_match(L"main.cpp.o", L"*.cpp"));
    EXPECT_TRUE(wildcard_match(L"a.c", L"?.c"));
    EXPECT_FALSE(wildcard_match(L"ab.c", L"?.c"));
    EXPECT_TRUE(wildcard_match(L"", L"*"));
    EXPECT_TRUE(wildcard_match(L"", L""));
    EXPECT_FALSE(wildcard_match(L"x", L""));
    EXPECT_TRUE(wildcard_match(L"abcabd", L"*ab?"));
    EXPECT_TRUE(wildcard_match(L"aXbYc", L"a*b*c"));
    EXPECT_FALSE(wildcard_match(L"ab", L"a*b*c"));
    EXPECT_TRUE(wildcard_match(L"MAIN.CPP", L"*.cpp", false));
    EXPECT_FALSE(wildcard_match(L"MAIN.CPP", L"*.cpp", true));
    // Segments may not overlap the anchored tail.
    EXPECT_FALSE(wildcard_match(L"ab", L"*ab*b"));
}

TEST(Wildcard, PathologicalMaskStaysFast)
{
    // An exponential matcher would never return from this.
    const std::wstring text(20000, L'a');
    EXPECT_FALSE(wildcard_match(text, L"a*a*a*a*a*a*a*a*a*a*b"));
    EXPECT_TRUE(wildcard_match(text + L"b", L"a*a*a*a*a*a*a*a*a*a*b"));
}

TEST(Path, MatchAtComponentBoundary)
{
    const path_t p(L"/home/me/proj/src/core/test_parser.cpp");
    EXPECT_TRUE(p.match(L"*.cpp"));
    EXPECT_TRUE(p.match(L"src/*/test_*"));
    EXPECT_TRUE(p.match(L"test_*.cpp"));
    EXPECT_FALSE(p.match(L"rc/*/test_*")); // not at a boundary
    EXPECT_FALSE(p.match(L"/src/*"));      // anchored at the root
    EXPECT_FALSE(p.match(L"*.h"));
}

TEST(Path, FindFilesSortedAndFiltered)
{
    namespace fs = std::filesystem;
    const fs::path dir = fs::temp_directory_path() / "basekit2_find_files";
    fs::remove_all(dir);
    fs::create_directories(dir / "sub.sup");
    for (const char* name : {"b.sup", "a.sup", "c.txt"})
        std::ofstream(dir / name) << "x";
    const auto files = basekit2::find_files(path_t(dir), L"*.sup");
    ASSERT_EQ(files.size(), 2u);
    EXPECT_EQ(files[0].leaf(), L"a.sup");
    EXPECT_EQ(files[1].leaf(), L"b.sup");
    EXPECT_TRUE(basekit2::find_files(path_t(dir / "missing"), L"*").empty());
    fs::remove_all(dir);
}

// Linux takes any bytes but '/' and NUL in a name; every one must survive
// text -> path -> text and path -> text -> path, and a real folder with such
// a name must be usable through path_t.
TEST(Path, NamesThatAreNotUtf8RoundTripThroughText)
{
    namespace fs = std::filesystem;
    std::string all_bytes;
    for (int b = 1; b < 256; ++b)
        if (b != '/')
            all_bytes.push_back(static_cast<char>(b));
    const std::vector<std::string> names{
        "caf\xC3\xA9 \"quoted\" 'it''s'", "\xFF", "a\xC3", "\xC0\xAF", "\xED\xA0\x80",
        // Valid UTF-8 for a code point that stands for an undecodable byte.
        "\xF4\x80\x82\x80", all_bytes};
    for (const auto& name : names) {
        const fs::path native(name);
        const path_t p(native);
        EXPECT_EQ(p.fs().native(), name);
        EXPECT_EQ(p.native(), name);
        EXPECT_EQ(path_t::from_utf8(name).fs().native(), name);
        EXPECT_EQ(basekit2::to_fs(basekit2::from_fs(native)).native(), name);
        EXPECT_EQ((path_t(L"/top") / p).leaf(), p.str());
    }
    // Valid UTF-8 reads as the letters it spells; one bad byte in it does not
    // spoil the rest.
    EXPECT_EQ(path_t(fs::path("caf\xC3\xA9")).str(), L"café");
    EXPECT_EQ(path_t(fs::path("\xFF" "caf\xC3\xA9")).str(), std::wstring(1, wchar_t(0x1000FF)) + L"café");
    EXPECT_EQ(path_t(fs::path("x\xFF.sup")).display(), L"x\uFFFD.sup");
    EXPECT_EQ(path_t(fs::path("x\xFF.sup")).extension(), L"sup");

    const fs::path scratch = fs::temp_directory_path() / ("path_test \xFF caf\xC3\xA9 'q\"");
    fs::remove_all(scratch);
    fs::create_directories(scratch);
    const path_t dir(scratch);
    std::ofstream(scratch / "r\xE9sum\xE9.sup") << "x";
    EXPECT_TRUE(dir.is_directory());
    const auto found = basekit2::find_files(dir, L"*.sup");
    ASSERT_EQ(found.size(), 1u);
    EXPECT_TRUE(found[0].is_regular_file());
    EXPECT_EQ(found[0].fs(), scratch / "r\xE9sum\xE9.sup");
    fs::remove_all(scratch);
}
