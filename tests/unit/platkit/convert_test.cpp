#include "platkit/strings/convert.h"
#include "platkit/types/variant.h"

#include <gtest/gtest.h>

using namespace platkit::strings;

TEST(Convert, RoundTripsAllPlanes)
{
    const std::wstring text = L"a\u00e9\u4e2d\U0001F600z";
    EXPECT_EQ(utf8_to_wide(wide_to_utf8(text)), text);
    EXPECT_EQ(wide_to_utf8(L"\u00e9"), "\xC3\xA9");
}

TEST(Convert, MalformedUtf8BecomesReplacementCharacters)
{
    EXPECT_EQ(utf8_to_wide("a\xFF" "b"), L"a\uFFFDb");
    EXPECT_EQ(utf8_to_wide("a\xC3"), L"a\uFFFD");             // cut off at the end
    EXPECT_EQ(utf8_to_wide("\xC0\xAF"), L"\uFFFD\uFFFD");     // overlong '/'
    EXPECT_EQ(utf8_to_wide("\xED\xA0\x80"), L"\uFFFD\uFFFD\uFFFD"); // surrogate
}

TEST(Variant, ConvertsBetweenKindsWithoutThrowing)
{
    using platkit::types::variant;
    EXPECT_EQ(variant(42).as_wstring(), L"42");
    EXPECT_EQ(variant(L"17").as_int(), 17);
    EXPECT_EQ(variant(L"x17").as_int(-1), -1);
    EXPECT_EQ(variant(L"-3").as_uint(9), 9u);
    EXPECT_TRUE(variant(L"Yes").as_bool());
    EXPECT_DOUBLE_EQ(variant(L"2.5").as_double(), 2.5);
    EXPECT_TRUE(variant().empty());
    EXPECT_EQ(variant("caf\xC3\xA9").as_wstring(), L"café");
}

TEST(Convert, NativeNamesKeepEveryByte)
{
    // Each byte that is not UTF-8 becomes its own private-use code point.
    EXPECT_EQ(native_to_wide("a\xFF" "b"), L"a\U001000FFb");
    EXPECT_EQ(wide_to_native(L"a\U001000FFb"), "a\xFF" "b");
    EXPECT_EQ(native_to_wide("\xC3\xA9"), L"\u00e9");
    // A cut-off sequence keeps both its bytes.
    EXPECT_EQ(native_to_wide("\xE2\x82"), L"\U001000E2\U00100082");
    // The code points standing for bytes are themselves read as bytes, so
    // their UTF-8 form comes back unchanged too.
    EXPECT_EQ(wide_to_native(native_to_wide("\xF4\x80\x83\xBF")), "\xF4\x80\x83\xBF");
    EXPECT_EQ(display_name(native_to_wide("x\xFFy")), L"x\uFFFDy");
    // Valid UTF-8 for a message, whatever the name held.
    EXPECT_EQ(utf8_to_wide(wide_to_utf8(native_to_wide("\xFF"))), L"\U001000FF");
}
