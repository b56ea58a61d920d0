// The files filter dialog in a real window: masks typed into the field, the
// list filled by background filterings, the busy animation and the tick.
#include "corr_dialogs2/files_filter_dialog.h"

#include "corr_dialogs2/ui_utils.h"
#include "ui_helpers.h"

#include "gui_test.h"
#include "modal_expectations.h"
#include "wxkit1/tooltip.h"
#include "wxkit1/ui_settings.h"

#include <wx/animate.h>
#include <wx/button.h>
#include <wx/listbox.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

using corr_dialogs2::files_filter_dlg_t;
using corr_dialogs2::translate;
using export_filter_test::click;
using export_filter_test::save_screenshot;
using export_filter_test::type_into;
using files_t = std::vector<basekit2::path_t>;

namespace {

std::vector<std::wstring> list_of(files_filter_dlg_t& dlg)
{
    std::vector<std::wstring> out;
    auto* list = dlg.find_control<wxListBox>(L"m_listBox1");
    for (unsigned i = 0; i < list->GetCount(); ++i)
        out.push_back(list->GetString(i).ToStdWstring());
    return out;
}

std::vector<std::wstring> texts(const files_t& files)
{
    std::vector<std::wstring> out;
    for (const auto& f : files)
        out.push_back(f.str());
    return out;
}

// Sets the mask as a paste would: one change, one text event.
void set_mask(files_filter_dlg_t& dlg, const std::wstring& mask)
{
    dlg.find_control<wxTextCtrl>(L"m_prefix_edit")->SetValue(mask);
}

bool idle(files_filter_dlg_t& dlg)
{
    return !dlg.is_busy();
}

files_t many_files(size_t n)
{
    files_t out;
    out.reserve(n);
    const wchar_t* dirs[] = {L"/home/me/proj/src/", L"/home/me/proj/tests/", L"/usr/include/"};
    const wchar_t* exts[] = {L".cpp", L".h", L".c"};
    for (size_t i = 0; i < n; ++i)
        out.emplace_back(std::wstring(dirs[i % 3]) + L"file" + std::to_wstring(i) +
                         exts[(i / 3) % 3]);
    return out;
}

const files_t source_files{L"/p/src/main.cpp", L"/p/include/util.h", L"/p/src/util.cpp",
                           L"/p/src/sub/io.c", L"/p/README",         L"/p/tests/util_test.cpp"};

} // namespace

TEST(FilesFilterDialog, TypedMaskShowsTheMatchingFilesInInputOrder)
{
    files_filter_dlg_t dlg(source_files);
    corr_test::modal_expectations modal;
    modal.expect_shown<files_filter_dlg_t>([&](files_filter_dlg_t& d) {
        EXPECT_EQ(L"Filter Source Files", d.get_title());
        ASSERT_TRUE(corr_test::wait_until([&] { return idle(d); }));
        EXPECT_EQ(texts(source_files), list_of(d)) << "an empty field shows every file";

        type_into(d.find_control<wxTextCtrl>(L"m_prefix_edit"), "*.cpp");
        ASSERT_TRUE(corr_test::wait_until([&] { return d.get_mask() == L"*.cpp" && idle(d); }));
        const std::vector<std::wstring> cpp{L"/p/src/main.cpp", L"/p/src/util.cpp",
                                            L"/p/tests/util_test.cpp"};
        EXPECT_EQ(cpp, list_of(d));
        EXPECT_EQ(cpp, texts(d.get_files()));
        EXPECT_EQ(translate(L"dlg.custom_filter.count", {{L"count", 3}, {L"total", 6}}),
                  d.find_control<wxStaticText>(L"m_count_text")->GetLabel().ToStdWstring());
        EXPECT_EQ(L"3 of 6 files match", d.find_control<wxStaticText>(L"m_count_text")->GetLabel());

        // Done: the tick, the list and OK usable again.
        auto* anim = d.find_control<wxAnimationCtrl>(L"m_animCtrl1");
        EXPECT_FALSE(anim->IsPlaying());
        EXPECT_TRUE(anim->GetInactiveBitmap().IsOk());
        EXPECT_TRUE(d.find_control<wxListBox>(L"m_listBox1")->IsEnabled());
        EXPECT_TRUE(d.find_control<wxButton>(L"m_btn_ok")->IsEnabled());
        save_screenshot(&d, "files_filter_dlg");

        set_mask(d, L"src/*");
        ASSERT_TRUE(corr_test::wait_until([&] { return idle(d); }));
        EXPECT_EQ(
            (std::vector<std::wstring>{L"/p/src/main.cpp", L"/p/src/util.cpp", L"/p/src/sub/io.c"}),
            list_of(d));

        set_mask(d, L"*.java");
        ASSERT_TRUE(corr_test::wait_until([&] { return idle(d); }));
        EXPECT_TRUE(list_of(d).empty());
        EXPECT_TRUE(d.get_files().empty());

        set_mask(d, L"");
        ASSERT_TRUE(corr_test::wait_until([&] { return idle(d); }));
        EXPECT_EQ(texts(source_files), list_of(d));

        set_mask(d, L"*util*");
        ASSERT_TRUE(corr_test::wait_until([&] { return idle(d); }));
        click(d.find_control<wxButton>(L"m_btn_ok"));
    });
    EXPECT_EQ(wxID_OK, dlg.show_modal(nullptr));
    EXPECT_EQ(L"*util*", dlg.get_mask());
    EXPECT_EQ((std::vector<std::wstring>{L"/p/include/util.h", L"/p/src/util.cpp",
                                         L"/p/tests/util_test.cpp"}),
              texts(dlg.get_files()));
}

TEST(FilesFilterDialog, EmptyInputGivesAnEmptyList)
{
    files_filter_dlg_t dlg(files_t{});
    ASSERT_TRUE(dlg.create(nullptr));
    dlg.Show();
    set_mask(dlg, L"*");
    ASSERT_TRUE(corr_test::wait_until([&] { return idle(dlg); }));
    EXPECT_TRUE(list_of(dlg).empty());
    EXPECT_TRUE(dlg.get_files().empty());
    EXPECT_EQ(L"0 of 0 files match", dlg.find_control<wxStaticText>(L"m_count_text")->GetLabel());
    dlg.Hide();
}

TEST(FilesFilterDialog, RestrictedCharacterMarksTheFieldAndFiltersNothing)
{
    files_filter_dlg_t dlg(source_files);
    corr_test::modal_expectations modal;
    modal.expect_shown<files_filter_dlg_t>([&](files_filter_dlg_t& d) {
        auto* field = d.find_control<wxTextCtrl>(L"m_prefix_edit");
        set_mask(d, L"*.h");
        ASSERT_TRUE(corr_test::wait_until([&] { return idle(d); }));
        ASSERT_EQ(std::vector<std::wstring>{L"/p/include/util.h"}, list_of(d));

        type_into(field, "|");
        ASSERT_TRUE(corr_test::wait_until([&] { return d.get_mask() == L"*.h|"; }));
        EXPECT_FALSE(d.is_busy()) << "no filtering for a mask with a restricted character";
        EXPECT_EQ(std::vector<std::wstring>{L"/p/include/util.h"}, list_of(d));
        EXPECT_FALSE(d.find_control<wxButton>(L"m_btn_ok")->IsEnabled());
        EXPECT_EQ(wxkit1::ui_settings_t::get_color(wxkit1::ui_settings_t::color_invalid_input),
                  field->GetBackgroundColour());
        const auto* tip = wxkit1::GetTooltip(field);
        ASSERT_NE(nullptr, tip);
        EXPECT_EQ(translate(L"dlg.custom_filter.restricted_chars", {{L"symbols", L"\" < > |"}}),
                  tip->GetText());
        save_screenshot(&d, "files_filter_dlg_restricted");

        for (const wchar_t* bad : {L"a\"b", L"<x", L"x>"}) {
            set_mask(d, bad);
            EXPECT_FALSE(d.is_busy()) << bad;
            EXPECT_FALSE(d.find_control<wxButton>(L"m_btn_ok")->IsEnabled()) << bad;
        }

        set_mask(d, L"*.c");
        EXPECT_EQ(nullptr, wxkit1::GetTooltip(field));
        ASSERT_TRUE(corr_test::wait_until([&] { return idle(d); }));
        EXPECT_EQ(std::vector<std::wstring>{L"/p/src/sub/io.c"}, list_of(d));
        EXPECT_TRUE(d.find_control<wxButton>(L"m_btn_ok")->IsEnabled());
        click(d.find_control<wxButton>(L"m_btn_cancel"));
    });
    EXPECT_EQ(wxID_CANCEL, dlg.show_modal(nullptr));
}

TEST(FilesFilterDialog, RapidMasksEndWithTheNewestMasksResult)
{
    const files_t files = many_files(300000);
    files_filter_dlg_t dlg(files);
    ASSERT_TRUE(dlg.create(nullptr));
    dlg.Show();
    ASSERT_TRUE(corr_test::wait_until([&] { return idle(dlg); }, 20000));
    const auto before = list_of(dlg);

    // Each mask supersedes the one before while it still runs; none of the
    // earlier results may ever reach the list.
    const std::wstring masks[] = {L"*.cpp", L"tests/*", L"*file1*", L"*.h", L"*/usr/*7.c"};
    for (const auto& mask : masks)
        set_mask(dlg, mask);
    auto* anim = dlg.find_control<wxAnimationCtrl>(L"m_animCtrl1");
    EXPECT_TRUE(dlg.is_busy());
    EXPECT_TRUE(anim->IsPlaying());
    EXPECT_FALSE(dlg.find_control<wxListBox>(L"m_listBox1")->IsEnabled());
    EXPECT_FALSE(dlg.find_control<wxButton>(L"m_btn_ok")->IsEnabled());

    const auto expected =
        texts(corr_dialogs2::util::filter_files_task_t::get_files_by_mask(masks[4], files));
    ASSERT_FALSE(expected.empty());
    int wrong = 0;
    ASSERT_TRUE(corr_test::wait_until(
        [&] {
            const auto now = list_of(dlg);
            if (now != before && now != expected)
                ++wrong;
            return idle(dlg);
        },
        30000));
    EXPECT_EQ(0, wrong) << "an older mask's result was shown";
    EXPECT_EQ(expected, list_of(dlg));
    EXPECT_EQ(expected, texts(dlg.get_files()));
    EXPECT_FALSE(anim->IsPlaying());
    dlg.Hide();
}
