// The shared dialogs' helpers that work on values: file names users type,
// their tool-tip texts, line endings, resource names and file wildcards.
#include "shareddlg3/file_dialogs.h"
#include "shareddlg3/message_window.h"
#include "shareddlg3/resources.h"
#include "shareddlg3/utils.h"

#include "settings2/catalog.h"
#include "settings2/product_locations.h"
#include "settings2/resource_catalogs.h"

#include <gtest/gtest.h>

using namespace shareddlg3;

namespace {

void load_shared_catalogue()
{
    const auto entry = settings2::load_resource_catalog(basekit2::path_t::from_utf8(CORR_RESOURCE_DIR) /
                                                        basekit2::path_t(L"shareddlg3.dat"));
    ASSERT_TRUE(entry.ok());
}

} // namespace

TEST(FileNameChars, EachOfTheNineCharactersIsRefusedInAnyPosition)
{
    const std::wstring forbidden = file_name_disabled_chars;
    ASSERT_EQ(forbidden.size(), 9u);
    for (wchar_t c : forbidden) {
        for (const std::wstring& name : {std::wstring(1, c), L"a" + std::wstring(1, c), std::wstring(1, c) + L"a.sup",
                                         L"my rules" + std::wstring(1, c) + L".sup"})
            EXPECT_FALSE(check_folder_name_for_chars(name, forbidden)) << "character " << int(c);
    }
    for (const std::wstring name : {L"", L"rules.sup", L"my rules (2).sup", L"ünïcödé-名前.sup", L"..", L"a;b,c=d"})
        EXPECT_TRUE(check_folder_name_for_chars(name, forbidden));
    EXPECT_TRUE(check_folder_name_for_chars(L"a*b", L"")) << "no forbidden characters, nothing refused";
    // A path may hold separators and the drive colon, never wildcards.
    EXPECT_TRUE(check_folder_name_for_chars(L"/home/me/export.zip", path_disabled_chars));
    EXPECT_FALSE(check_folder_name_for_chars(L"/home/me/ex*port.zip", path_disabled_chars));
}

TEST(FileNameChars, ReplacingRemovesEveryForbiddenCharacterAndKeepsTheRest)
{
    EXPECT_EQ(replace_disabled_chars(L"a\\b/c:d*e?f\"g<h>i|j", file_name_disabled_chars), L"abcdefghij");
    EXPECT_EQ(replace_disabled_chars(L"/tmp/x?.zip", path_disabled_chars), L"/tmp/x.zip");
    EXPECT_EQ(replace_disabled_chars(L"", file_name_disabled_chars), L"");
    EXPECT_EQ(replace_disabled_chars(L"***", L"*"), L"");
    EXPECT_EQ(replace_disabled_chars(L"keep", L""), L"keep");
}

TEST(SharedTexts, FallBackVisiblyThenComeFromTheSharedCatalogue)
{
    settings2::registerMessageCatalog(shared_resource_set, nullptr);
    EXPECT_EQ(translate_shared(L"dots_filename"), L"Message catalog 'shareddlg' is not loaded. Message: dots_filename");
    EXPECT_EQ(get_disabled_tooltip_text(L"*?"),
              L"Message catalog 'shareddlg' is not loaded. Message: restricted_symbols_message");

    load_shared_catalogue();
    EXPECT_EQ(translate_shared(L"no.such.key"), L"Message is not found: 'no.such.key'");
    EXPECT_EQ(get_disabled_tooltip_text(file_name_disabled_chars),
              L"A name cannot contain any of these characters: \\ / : * ? \" < > |");
    EXPECT_EQ(translate_shared(L"filename_empty"), L"The name cannot be empty.");
}

TEST(LineEndings, EveryKindOfBreakBecomesTheNativeOne)
{
    EXPECT_EQ(restore_line_endings(L"a\r\nb\rc\nd"), L"a\nb\nc\nd");
    EXPECT_EQ(restore_line_endings(L"\r\n\r\n"), L"\n\n");
    EXPECT_EQ(restore_line_endings(L"\n\r"), L"\n\n") << "LF CR is two breaks, not one";
    EXPECT_EQ(restore_line_endings(L"trailing\r"), L"trailing\n");
    EXPECT_EQ(restore_line_endings(L"no breaks"), L"no breaks");
}

TEST(ResourceNames, AreTheArchiveInTheResourceFolderAndTheEntry)
{
    settings2::IProductLocations::set(nullptr);
    EXPECT_EQ(create_resource_filename(L"dialogs2.dat", L"dialogs.xrc"), L"dialogs2.dat#zip:dialogs.xrc");
    settings2::IProductLocations::set(std::make_shared<settings2::product_locations_t>(
        L"Full", L"ascii", L"Short", basekit2::path_t(L"/opt/corr/share")));
    const std::wstring dir = settings2::IProductLocations::get()->getResourceDirectory().str();
    EXPECT_EQ(create_resource_filename(L"dialogs2.dat", L"dialogs_images.xrc"),
              dir + L"/dialogs2.dat#zip:dialogs_images.xrc");
    settings2::IProductLocations::set(nullptr);
}

TEST(FileWildcards, LabelAndExtensionMakeOneFilter)
{
    EXPECT_EQ(make_file_wildcard(L"sup", L"Suppression files"), L"Suppression files (*.sup)|*.sup");
    EXPECT_EQ(make_file_wildcard(L"zip", L"Archives (*.zip)|*.zip|All (*)|*"), L"Archives (*.zip)|*.zip|All (*)|*");
    EXPECT_EQ(make_file_wildcard(L"", L"Anything"), L"*");
}

TEST(MessageAnswers, ButtonIdsMapToAnswerCodesAndBack)
{
    using m = message_window_t;
    EXPECT_EQ(message_dialog_t::answer_of(wxID_OK), m::answer_yes);
    EXPECT_EQ(message_dialog_t::answer_of(wxID_YES), m::answer_yes);
    EXPECT_EQ(message_dialog_t::answer_of(wxID_NO), m::answer_no);
    EXPECT_EQ(message_dialog_t::answer_of(wxID_YESTOALL), m::answer_all);
    EXPECT_EQ(message_dialog_t::answer_of(wxID_CANCEL), m::answer_cancel);
    EXPECT_EQ(message_dialog_t::answer_of(0), m::answer_cancel);
    for (int answer : {m::answer_cancel, m::answer_yes, m::answer_no, m::answer_all})
        EXPECT_EQ(message_dialog_t::answer_of(message_dialog_t::id_of(answer)), answer);
}
