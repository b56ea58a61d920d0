// The shared message window, message box and file choosers, answered
// through the modal hook (and one message window clicked for real).
#include "gui_test.h"

#include <gtest/gtest.h>
#include "modal_expectations.h"
#include "test_support.h"

#include "settings2/catalog.h"
#include "shareddlg3/file_dialogs.h"
#include "shareddlg3/message_window.h"

#include <wx/button.h>
#include <wx/msgdlg.h>
#include <wx/panel.h>
#include <wx/stattext.h>
#include <wx/arrstr.h>

using shareddlg3::message_window_t;

namespace {

std::wstring shared_text(const std::wstring& key)
{
    const auto catalog = settings2::getMessageCatalog(L"shareddlg");
    return catalog && catalog->has_message(key) ? catalog->message(key).raw() : L"<" + key + L">";
}

class MessageWindows : public foundation_test::host_frame
{
};

} // namespace

TEST_F(MessageWindows, AnswerCodesComeBackThroughTheHook)
{
    const message_window_t question(L"Use this file?", L"The file lies outside the result.",
                                    message_window_t::btn_yes | message_window_t::btn_yes_to_all |
                                        message_window_t::btn_no | message_window_t::btn_cancel,
                                    message_window_t::icon_question);
    corr_test::modal_expectations modal;
    modal.expect_message(message_window_t::answer_all, [](shareddlg3::message_dialog_t& d) {
        EXPECT_EQ(d.GetTitle(), "Use this file?");
        EXPECT_EQ(d.message().text(), L"The file lies outside the result.");
        EXPECT_NE(d.FindWindow(wxID_YESTOALL), nullptr);
        EXPECT_NE(d.FindWindow(wxID_NO), nullptr);
    });
    modal.expect_message(message_window_t::answer_yes);
    modal.expect_message(message_window_t::answer_no);
    modal.expect_message(message_window_t::answer_cancel);

    EXPECT_EQ(shareddlg3::show_modal(question, m_frame), 3);
    EXPECT_EQ(shareddlg3::show_modal(question, m_frame), 1);
    EXPECT_EQ(shareddlg3::show_modal(question, m_frame), 2);
    EXPECT_EQ(shareddlg3::show_modal(question, m_frame), 0);
    EXPECT_TRUE(modal.all_met());
}

TEST_F(MessageWindows, ARealWindowShowsItsTextsAndAnswersTheButtonClicked)
{
    const message_window_t message(L"Rewrite files?", L"Two suppression files are in an older format.",
                                   message_window_t::btn_yes | message_window_t::btn_ok_always |
                                       message_window_t::btn_no,
                                   message_window_t::icon_warning);
    wxString yes_label, all_label, no_label;
    corr_test::modal_expectations modal;
    modal.expect_shown<shareddlg3::message_dialog_t>([&](shareddlg3::message_dialog_t& d) {
        auto* no = dynamic_cast<wxButton*>(d.FindWindow(wxID_NO));
        ASSERT_NE(no, nullptr);
        yes_label = d.FindWindow(wxID_YES)->GetLabel();
        all_label = d.FindWindow(wxID_YESTOALL)->GetLabel();
        no_label = no->GetLabel();
        ASSERT_TRUE(corr_test::wait_until([&] { return no->IsShownOnScreen(); }));
        foundation_test::click(no);
    });
    EXPECT_EQ(shareddlg3::show_modal(message, m_frame), message_window_t::answer_no);
    EXPECT_EQ(yes_label.ToStdWstring(), shared_text(L"msgbox.yes"));
    EXPECT_EQ(all_label.ToStdWstring(), shared_text(L"msgbox.ok_always"));
    EXPECT_EQ(no_label.ToStdWstring(), shared_text(L"msgbox.no"));
}

TEST_F(MessageWindows, PanelShowsTitleAndWrappedText)
{
    std::wstring text;
    for (int i = 0; i < 40; ++i)
        text += L"word" + std::to_wstring(i) + L" ";
    text.pop_back();
    const message_window_t message(L"Title", text);
    wxPanel* panel = message.create_panel(m_frame);
    auto* label = dynamic_cast<wxStaticText*>(panel->FindWindow("text"));
    auto* title = dynamic_cast<wxStaticText*>(panel->FindWindow("title"));
    ASSERT_NE(label, nullptr);
    ASSERT_NE(title, nullptr);
    EXPECT_EQ(title->GetLabel(), "Title");
    const wxArrayString lines = wxSplit(label->GetLabel(), '\n', 0);
    EXPECT_GE(lines.size(), 2u);
    for (const wxString& line : lines)
        EXPECT_LE(panel->GetTextExtent(line).x, panel->FromDIP(460)) << line;
    EXPECT_EQ(wxJoin(lines, ' ', 0).ToStdWstring(), text);
}

TEST_F(MessageWindows, MessageBoxGoesThroughTheHookWithItsTexts)
{
    corr_test::modal_expectations modal;
    modal.expect<wxMessageDialog>([](wxMessageDialog& d) {
        EXPECT_EQ(d.GetMessage(), "Saving failed.");
        EXPECT_EQ(d.GetTitle(), "Error");
        return int(wxID_OK);
    });
    EXPECT_EQ(shareddlg3::show_msg_box(m_frame, L"Error", L"Saving failed.", wxOK | wxICON_ERROR), wxID_OK);
}

TEST_F(MessageWindows, FileAndFolderChoosersTakeTheTestsAnswer)
{
    corr_test::modal_expectations modal;
    modal.expect<shareddlg3::file_dialog_t>([](shareddlg3::file_dialog_t& d) {
        EXPECT_EQ(d.mode(), shareddlg3::file_dlg_mode::open);
        EXPECT_EQ(d.wildcard(), L"Suppression files (*.sup)|*.sup");
        EXPECT_EQ(d.start(), basekit2::path_t(L"/tmp/start.sup"));
        d.set_path(basekit2::path_t(L"/tmp/chosen.sup"));
        return int(wxID_OK);
    });
    modal.expect_file(basekit2::path_t(L"/tmp/export"));
    modal.expect<shareddlg3::file_dialog_t>(wxID_CANCEL);
    modal.expect_folder(basekit2::path_t(L"/tmp/results"));
    modal.expect<shareddlg3::folder_dialog_t>(wxID_CANCEL);

    using shareddlg3::file_dlg;
    EXPECT_EQ(file_dlg(m_frame, shareddlg3::file_dlg_mode::open, basekit2::path_t(L"/tmp/start.sup"), L"sup",
                       L"Suppression files"),
              basekit2::path_t(L"/tmp/chosen.sup"));
    EXPECT_EQ(file_dlg(m_frame, shareddlg3::file_dlg_mode::save, basekit2::path_t(L"/tmp"), L"zip", L"Archives"),
              basekit2::path_t(L"/tmp/export.zip"))
        << "a saved file gets the extension it lacks";
    EXPECT_TRUE(file_dlg(m_frame, shareddlg3::file_dlg_mode::open, {}, L"sup", L"x").empty());
    EXPECT_EQ(shareddlg3::folder_dlg(m_frame, basekit2::path_t(L"/tmp")), basekit2::path_t(L"/tmp/results"));
    EXPECT_TRUE(shareddlg3::folder_dlg(m_frame, basekit2::path_t(L"/tmp")).empty());
    EXPECT_TRUE(modal.all_met());
}
