#include "platkit/i18n/catalog.h"

#include <gtest/gtest.h>

using platkit::generic::varg_list;
using platkit::i18n::message_t;

TEST(Message, NamedArgumentsOfEveryKind)
{
    const message_t m(L"{name} has {count} rules, {ratio} matched, enabled={on}");
    const varg_list args{{L"name", L"a.sup"}, {L"count", 3}, {L"ratio", 0.5}, {L"on", true}};
    EXPECT_EQ(m.as_ustring(args), L"a.sup has 3 rules, 0.5 matched, enabled=true");
}

TEST(Message, FirstArgumentOfANameWins)
{
    const message_t m(L"{prod_name}");
    varg_list args{{L"prod_name", L"caller"}};
    args.add(L"prod_name", L"product");
    EXPECT_EQ(m.as_ustring(args), L"caller");
}

TEST(Message, MissingArgumentStaysVisible)
{
    EXPECT_EQ(message_t(L"File {file_path} in {dir}").as_ustring({{L"dir", L"/tmp"}}),
              L"File {file_path} in /tmp");
    EXPECT_EQ(message_t(L"{a}{a}").as_ustring(), L"{a}{a}");
}

TEST(Message, MalformedTextIsReturnedAsWrittenNeverThrows)
{
    for (const wchar_t* text : {L"unbalanced { brace", L"close } only", L"{0}", L"{:x}", L"{a:%%%}"})
        EXPECT_NO_THROW(message_t(text).as_ustring({{L"a", 1}})) << text;
    EXPECT_EQ(message_t(L"unbalanced { brace").as_ustring(), L"unbalanced { brace");
    EXPECT_EQ(message_t(L"{{literal}}").as_ustring(), L"{literal}");
}

TEST(Message, NonAsciiTextAndArguments)
{
    EXPECT_EQ(message_t(L"Datei «{f}»").as_ustring({{L"f", std::string("gr\xC3\xBC\xC3\x9F.sup")}}),
              L"Datei «grüß.sup»");
}
