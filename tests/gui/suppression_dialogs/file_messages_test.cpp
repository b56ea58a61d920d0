// The messages about suppression files as real message windows answered
// through the modal hook: the save error, the rewrite question, and the
// stack panel that lists messages.
#include "suppdlg_fixture.h"

#include "corr_dialogs2/stack_panel.h"
#include "corr_dialogs2/supp_file_dialogs.h"
#include "corr_dialogs2/suppression_file.h"
#include "corr_dialogs2/ui_utils.h"
#include "modal_expectations.h"

#include "probstore3/aggregator.h"
#include "shareddlg3/message_window.h"

#include <boost/make_shared.hpp>

#include <wx/frame.h>

using namespace corr_dialogs2;
using shareddlg3::message_dialog_t;
using shareddlg3::message_window_t;

namespace {

suppression_file_ptr file_at(const std::wstring& path)
{
    return wrap_suppression_file(boost::make_shared<probstore3::suppression_file_t>(path));
}

} // namespace

TEST(SuppressionFileMessages, SaveErrorNamesTheFileAndTheReason)
{
    suppdlg_test::temp_dir dir;
    // A file in a folder that does not exist cannot be written.
    const std::wstring path = (dir / "missing" / "team.sup").wstring();
    corr_test::modal_expectations modal;
    modal.expect_message(message_window_t::answer_yes, [&](message_dialog_t& d) {
        EXPECT_EQ(d.message().title(), translate(L"dlg.suppressions.new.file_error_title"));
        EXPECT_EQ(d.message().icon(), message_window_t::icon_error);
        EXPECT_NE(d.message().text().find(path), std::wstring::npos);
        EXPECT_EQ(d.message().text().find(L"{"), std::wstring::npos) << "every argument is filled in";
    });
    auto errors = boost::make_shared<supp_file_error_dialog_t>();
    EXPECT_FALSE(save_suppression_files({file_at(path)}, errors));
    EXPECT_TRUE(modal.all_met());
    EXPECT_FALSE(std::filesystem::exists(dir / "missing"));

    const std::wstring text = supp_file_error_dialog_t::make_text(suppfmt3::se_no_file, L"/x/y.sup");
    EXPECT_NE(text.find(probstore3::aggregator_t::get_suppfmt_errdef_string(suppfmt3::se_no_file)), std::wstring::npos);
}

TEST(SuppressionFileMessages, RewriteQuestionListsTheFilesAndOnlyYesAgrees)
{
    const std::vector<suppression_file_ptr> one{file_at(L"/r/suppressions/old.sup")};
    const std::vector<suppression_file_ptr> two{file_at(L"/r/suppressions/a.sup"), file_at(L"/p/suppressions/b.sup")};
    EXPECT_EQ(supp_file_rewrite_dialog_t::make_text(one),
              translate(L"dlg.suppressions.file_rewrite_description", {{L"file_name", L"/r/suppressions/old.sup"}}));
    const std::wstring several = supp_file_rewrite_dialog_t::make_text(two);
    EXPECT_NE(several.find(L"/r/suppressions/a.sup\n/p/suppressions/b.sup"), std::wstring::npos);
    EXPECT_EQ(several.find(L"Message is not found"), std::wstring::npos);

    supp_file_rewrite_dialog_t prompt;
    corr_test::modal_expectations modal;
    modal.expect_message(message_window_t::answer_yes, [&](message_dialog_t& d) {
        EXPECT_EQ(d.message().title(), translate(L"dlg.suppressions.files_rewrite_title"));
        EXPECT_EQ(d.message().text(), several);
        EXPECT_EQ(d.message().buttons(), message_window_t::btn_yes | message_window_t::btn_no);
    });
    modal.expect_message(message_window_t::answer_no);
    modal.expect_message(message_window_t::answer_cancel);
    EXPECT_TRUE(prompt.confirm_rewrite(two));
    EXPECT_FALSE(prompt.confirm_rewrite(two));
    EXPECT_FALSE(prompt.confirm_rewrite(one));
    EXPECT_TRUE(prompt.confirm_rewrite({})) << "nothing to ask about";
    EXPECT_TRUE(modal.all_met());
}

TEST(SuppressionFileMessages, RewriteQuestionShownForRealAnswersYes)
{
    wxFrame frame(nullptr, wxID_ANY, L"host");
    supp_file_rewrite_dialog_t prompt(&frame);
    corr_test::modal_expectations modal;
    modal.expect_shown<message_dialog_t>([](message_dialog_t& d) {
        suppdlg_test::screenshot(d, "supp_file_rewrite_dialog");
        d.EndModal(wxID_YES);
    });
    EXPECT_TRUE(prompt.confirm_rewrite({file_at(L"/r/suppressions/old.sup")}));
    EXPECT_TRUE(modal.all_met());
}

TEST(StackPanel, ListsMessagesAndEmptiesWhenTheDialogEnds)
{
    wxFrame frame(nullptr, wxID_ANY, L"host");
    auto* panel = new stack_panel_t(&frame);
    panel->set_border(6);
    EXPECT_EQ(panel->get_border(), 6);
    wxPanel* first = panel->add_panel(message_window_t(L"Frame 3", L"No source file", message_window_t::btn_ok,
                                                       message_window_t::icon_warning));
    wxPanel* second = panel->show_message(L"Frame 7", L"Unknown module", message_window_t::icon_error);
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(panel->get_panel_count(), 2u);
    EXPECT_EQ(panel->get_messages()[1].icon(), message_window_t::icon_error);
    frame.SetSize(400, 300);
    frame.Show();
    panel->Layout();
    EXPECT_GT(second->GetPosition().y, first->GetPosition().y) << "one below the other";
    EXPECT_EQ(first->GetPosition().x, 6);

    panel->on_dialog_finished(wxID_OK);
    EXPECT_EQ(panel->get_last_result(), wxID_OK);
    EXPECT_EQ(panel->get_panel_count(), 0u);
    EXPECT_TRUE(panel->GetChildren().empty());
}
