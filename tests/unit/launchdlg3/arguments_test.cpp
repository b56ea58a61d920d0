// Splitting the launch dialog's argument line and reading its environment.
#include "launchdlg3/launch_dialog.h"

#include <gtest/gtest.h>

using launchdlg3::join_arguments;
using launchdlg3::parse_environment;
using launchdlg3::split_arguments;
using words = std::vector<std::wstring>;

TEST(Arguments, SplitLikeAShell)
{
    EXPECT_EQ(split_arguments(L""), words{});
    EXPECT_EQ(split_arguments(L"  a\tb  c "), (words{L"a", L"b", L"c"}));
    EXPECT_EQ(split_arguments(L"'a b' \"c d\" e\\ f"), (words{L"a b", L"c d", L"e f"}));
    EXPECT_EQ(split_arguments(L"x'y'\"z\""), (words{L"xyz"})) << "quoted parts join the word";
    EXPECT_EQ(split_arguments(L"'' \"\""), (words{L"", L""})) << "empty quotes are empty words";
    EXPECT_EQ(split_arguments(L"\"a \\\" \\\\ \\n\""), (words{L"a \" \\ \\n"}));
    EXPECT_EQ(split_arguments(L"'\\' \"it's\""), (words{L"\\", L"it's"}));
    EXPECT_EQ(split_arguments(L"ü \"ö ß\""), (words{L"ü", L"ö ß"}));

    std::wstring error = L"stale";
    EXPECT_EQ(split_arguments(L"a 'b", &error), words{});
    EXPECT_EQ(error, L"The arguments have an unclosed single quote.");
    split_arguments(L"a \"b", &error);
    EXPECT_EQ(error, L"The arguments have an unclosed double quote.");
    split_arguments(L"a", &error);
    EXPECT_EQ(error, L"");
}

TEST(Arguments, JoinedWordsSplitBackUnchanged)
{
    for (const words& w : {words{}, words{L"plain"}, words{L"", L"a b", L"it's", L"\"q\"", L"back\\slash"},
                           words{L"$HOME", L"`x`", L"tab\there", L"ü ö"}})
        EXPECT_EQ(split_arguments(join_arguments(w)), w) << wxString(join_arguments(w));
}

TEST(Environment, NameValueLines)
{
    std::wstring error;
    const auto vars = parse_environment(L"A=1\r\n\n  \nB_2=x=y\nEMPTY=\n", &error);
    EXPECT_EQ(error, L"");
    ASSERT_EQ(vars.size(), 3u);
    EXPECT_EQ(vars[1], (std::pair<std::wstring, std::wstring>{L"B_2", L"x=y"}));
    EXPECT_EQ(vars[2].second, L"");

    for (const wchar_t* bad : {L"A=1\nnoequals", L"A=1\n=value", L"A=1\n1X=2", L"A=1\nÄ=2", L"A=1\nA B=2"}) {
        EXPECT_TRUE(parse_environment(bad, &error).empty()) << wxString(bad);
        EXPECT_NE(error.find(L"line 2"), std::wstring::npos) << wxString(error);
    }
}
