#include "basekit2/path.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

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
