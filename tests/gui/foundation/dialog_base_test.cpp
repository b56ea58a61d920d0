// The dialog base in real windows: a layout from the built archive with its
// texts translated and controls bound, the standard buttons routed to the
// virtual operations, and clear messages (never crashes) for a missing
// archive, layout or control.
#include "gui_test.h"
#include "modal_expectations.h"
#include "test_support.h"

#include "corr_dialogs2/ui_utils.h"
#include "settings2/catalog.h"
#include "shareddlg3/dialog_base.h"
#include "shareddlg3/resources.h"

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/choice.h>
#include <wx/display.h>
#include <wx/notebook.h>
#include <wx/statbox.h>
#include <wx/statline.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <memory>

using foundation_test::click;
using foundation_test::temp_dir;

namespace {

std::wstring catalogue_text(const std::wstring& set, const std::wstring& key)
{
    const auto catalog = settings2::getMessageCatalog(set);
    return catalog && catalog->has_message(key) ? catalog->message(key).raw() : L"<" + key + L" missing>";
}

// The stack view layout as the stack dialog loads it.
class stack_view_t : public shareddlg3::dialog_base_t
{
public:
    stack_view_t()
    {
        set_resource_file(shareddlg3::create_resource_filename(L"dialogs2.dat", L"dialogs.xrc"));
        set_dialog_name(L"dlg.suppressions.stack");
        set_resource_set(L"dialogs");
        set_help_topic(L"korrin.hlp.ctx.view_stack_f2106");
    }

    wxPanel* m_grid_placeholder = nullptr;
    wxStaticLine* m_staticline4 = nullptr;
    wxButton* m_btn_ok = nullptr;
    wxButton* m_btn_cancel = nullptr;
    std::vector<std::string> calls;

protected:
    void on_init_dialog() override
    {
        calls.push_back("on_init_dialog");
        m_grid_placeholder = find_control<wxPanel>(L"m_grid_placeholder");
        m_staticline4 = find_control<wxStaticLine>(L"m_staticline4");
        m_btn_ok = find_control<wxButton>(L"m_btn_ok");
        m_btn_cancel = find_control<wxButton>(L"m_btn_cancel");
        set_title(corr_dialogs2::translate(L"dlg.suppressions.stack.title.view"));
    }
    void load_auxiliary_strings() override { calls.push_back("load_auxiliary_strings"); }
    void set_max_text_limit() override { calls.push_back("set_max_text_limit"); }
    void on_update_ui_settings() override { calls.push_back("on_update_ui_settings"); }
    void save_settings() override { calls.push_back("save_settings"); }
    bool on_ok() override
    {
        calls.push_back("on_ok");
        return true;
    }
    void on_cancel() override
    {
        calls.push_back("on_cancel");
        dialog_base_t::on_cancel();
    }
};

class DialogBase : public foundation_test::host_frame
{
};

} // namespace

TEST_F(DialogBase, StackViewLayoutComesFromTheArchiveTranslatedAndBound)
{
    auto dialog = std::make_unique<stack_view_t>();
    ASSERT_TRUE(dialog->show_nonmodal(m_frame, true));
    ASSERT_TRUE(corr_test::wait_until([&] { return dialog->IsShownOnScreen(); }));

    EXPECT_EQ(dialog->calls, (std::vector<std::string>{"load_auxiliary_strings", "on_init_dialog",
                                                       "set_max_text_limit", "on_update_ui_settings"}));
    ASSERT_NE(dialog->m_grid_placeholder, nullptr);
    ASSERT_NE(dialog->m_staticline4, nullptr);
    ASSERT_NE(dialog->m_btn_ok, nullptr);
    ASSERT_NE(dialog->m_btn_cancel, nullptr);
    EXPECT_EQ(dialog->GetParent(), m_frame);
    EXPECT_TRUE(dialog->m_grid_placeholder->IsShownOnScreen());

    // Keys in the layout became the catalogue's texts.
    EXPECT_EQ(dialog->get_title(), catalogue_text(L"dialogs", L"dlg.suppressions.stack.title.view"));
    EXPECT_EQ(dialog->GetTitle().ToStdWstring(), dialog->get_title());
    EXPECT_EQ(dialog->m_btn_ok->GetLabel().ToStdWstring(), catalogue_text(L"dialogs", L"dlg.suppressions.stack.ok"));
    EXPECT_EQ(dialog->m_btn_cancel->GetLabel().ToStdWstring(), catalogue_text(L"dialogs", L"btn.close"));

    // The standard buttons carry the standard ids.
    EXPECT_EQ(dialog->m_btn_ok->GetId(), wxID_OK);
    EXPECT_EQ(dialog->m_btn_cancel->GetId(), wxID_CANCEL);
    dialog->Destroy();
}

TEST_F(DialogBase, OkAndCloseButtonsReachTheVirtualOperations)
{
    corr_test::modal_expectations modal;
    modal.expect_shown<stack_view_t>([](stack_view_t& d) {
        ASSERT_TRUE(corr_test::wait_until([&] { return d.m_btn_ok->IsShownOnScreen(); }));
        click(d.m_btn_ok);
    });
    modal.expect_shown<stack_view_t>([](stack_view_t& d) {
        ASSERT_TRUE(corr_test::wait_until([&] { return d.m_btn_cancel->IsShownOnScreen(); }));
        click(d.m_btn_cancel);
    });

    stack_view_t first;
    EXPECT_EQ(first.show_modal(m_frame), wxID_OK);
    EXPECT_EQ(std::vector<std::string>(first.calls.end() - 2, first.calls.end()),
              (std::vector<std::string>{"save_settings", "on_ok"}));

    stack_view_t second;
    EXPECT_EQ(second.show_modal(m_frame), wxID_CANCEL);
    EXPECT_EQ(second.calls.back(), "on_cancel");
    EXPECT_TRUE(modal.all_met());
}

TEST_F(DialogBase, HelpGoesToTheHostWithTheDialogsTopic)
{
    std::wstring shown_topic;
    const auto previous = shareddlg3::set_help_handler(
        [&](const std::wstring& topic, wxWindow*) { shown_topic = topic; });
    stack_view_t dialog;
    ASSERT_TRUE(dialog.create(m_frame));
    wxCommandEvent help(wxEVT_BUTTON, wxID_HELP);
    dialog.ProcessWindowEvent(help);
    EXPECT_EQ(shown_topic, L"korrin.hlp.ctx.view_stack_f2106");
    shareddlg3::set_help_handler(previous);
}

TEST_F(DialogBase, AnAnswerFromTheHookEndsTheDialogWithoutAModalLoop)
{
    corr_test::modal_expectations modal;
    modal.expect<stack_view_t>([](stack_view_t& d) {
        EXPECT_FALSE(d.IsShown());
        EXPECT_TRUE(d.is_created()) << "the hook sees a dialog ready to be used";
        wxCommandEvent ok(wxEVT_BUTTON, wxID_OK);
        d.ProcessWindowEvent(ok);
        return 0; // whatever the dialog ended with
    });
    stack_view_t dialog;
    EXPECT_EQ(dialog.show_modal(m_frame), wxID_OK);
    EXPECT_EQ(dialog.calls.back(), "on_ok");
}

TEST_F(DialogBase, MissingArchiveLayoutOrControlIsReportedByName)
{
    temp_dir dir;
    const std::string missing_archive = (dir.path() / "nothere.dat").string();
    {
        corr_test::log_capture log;
        stack_view_t dialog;
        dialog.set_resource_file(wxString(missing_archive + "#zip:dialogs.xrc").ToStdWstring());
        EXPECT_EQ(dialog.show_modal(m_frame), wxID_CANCEL);
        EXPECT_FALSE(dialog.is_created());
        EXPECT_TRUE(log.contains(wxString(missing_archive).ToStdWstring())) << wxString(log.text());
        EXPECT_TRUE(log.contains(L"dlg.suppressions.stack"));
        EXPECT_TRUE(log.contains(L"does not exist"));
    }
    {
        corr_test::log_capture log;
        stack_view_t dialog;
        dialog.set_resource_file(shareddlg3::create_resource_filename(L"dialogs2.dat", L"nothere.xrc"));
        EXPECT_FALSE(dialog.create(m_frame));
        EXPECT_TRUE(log.contains(L"dialogs2.dat#zip:nothere.xrc")) << wxString(log.text());
    }
    {
        corr_test::log_capture log;
        stack_view_t dialog;
        dialog.set_dialog_name(L"dlg.no_such_dialog");
        EXPECT_FALSE(dialog.show_nonmodal(m_frame, true));
        EXPECT_TRUE(log.contains(L"\"dlg.no_such_dialog\"")) << wxString(log.text());
        EXPECT_TRUE(log.contains(L"has no layout of that name"));
    }
    {
        stack_view_t dialog;
        ASSERT_TRUE(dialog.create(m_frame));
        corr_test::log_capture log;
        EXPECT_EQ(dialog.find_control<wxPanel>(L"m_not_there"), nullptr);
        EXPECT_TRUE(log.contains(L"\"m_not_there\"")) << wxString(log.text());
        EXPECT_TRUE(log.contains(L"\"dlg.suppressions.stack\""));
        EXPECT_TRUE(log.contains(L"dialogs2.dat#zip:dialogs.xrc"));
    }
}

TEST_F(DialogBase, AControlOfTheWrongClassIsAnAssertion)
{
    stack_view_t dialog;
    ASSERT_TRUE(dialog.create(m_frame));
    static wxString assertion;
    const auto previous = wxSetAssertHandler(
        [](const wxString&, int, const wxString&, const wxString&, const wxString& msg) { assertion = msg; });
    wxTextCtrl* wrong = dialog.find_control<wxTextCtrl>(L"m_btn_ok");
    wxSetAssertHandler(previous);
    EXPECT_EQ(wrong, nullptr);
    EXPECT_TRUE(assertion.Contains("m_btn_ok")) << assertion;
    EXPECT_TRUE(assertion.Contains("wxButton")) << assertion;
    EXPECT_TRUE(assertion.Contains("not a wxTextCtrl")) << assertion;
}

namespace {

// A layout of our own: keys with underscores (XRC turns "_" into "&"), in
// every place a text can sit.
const char* const texts_layout = R"(<?xml version="1.0" encoding="UTF-8"?>
<resource xmlns="http://www.wxwidgets.org/wxxrc" version="2.5.3.0">
  <object class="wxDialog" name="test.texts">
    <title>test.texts.window_title</title>
    <object class="wxBoxSizer">
      <orient>wxVERTICAL</orient>
      <object class="sizeritem">
        <object class="wxStaticBoxSizer">
          <label>test.texts.group_box</label>
          <orient>wxVERTICAL</orient>
          <object class="sizeritem">
            <object class="wxCheckBox" name="m_check">
              <label>test.texts.check_me</label>
              <tooltip>test.texts.check_tip</tooltip>
            </object>
          </object>
        </object>
      </object>
      <object class="sizeritem">
        <object class="wxChoice" name="m_choice">
          <content><item>test.texts.item_one</item><item>plain item</item></content>
        </object>
      </object>
      <object class="sizeritem">
        <object class="wxStaticText" name="m_plain"><label>Not a key</label></object>
      </object>
      <object class="sizeritem">
        <object class="wxTextCtrl" name="m_text"><hint>test.texts.hint</hint></object>
      </object>
      <object class="sizeritem">
        <object class="wxNotebook" name="m_book">
          <object class="notebookpage">
            <label>test.texts.page</label>
            <object class="wxPanel" name="m_page"/>
          </object>
        </object>
      </object>
    </object>
  </object>
</resource>
)";

class texts_dialog_t : public shareddlg3::dialog_base_t
{
public:
    explicit texts_dialog_t(const std::wstring& file)
    {
        set_resource_file(file);
        set_dialog_name(L"test.texts");
        set_resource_set(L"testset");
    }
};

} // namespace

TEST_F(DialogBase, EveryKindOfTextThatIsAKeyIsTranslated)
{
    temp_dir dir;
    const auto archive = dir.path() / "texts.dat";
    foundation_test::write_zip(archive, {{"texts.xrc", texts_layout}});
    settings2::registerMessageCatalog(
        L"testset", std::make_shared<settings2::map_catalog_t>(
                        L"testset", std::map<std::wstring, std::wstring>{
                                        {L"test.texts.window_title", L"Window of {prod_short_name}"},
                                        {L"test.texts.group_box", L"Group"},
                                        {L"test.texts.check_me", L"Check me"},
                                        {L"test.texts.check_tip", L"Why to check"},
                                        {L"test.texts.item_one", L"First item"},
                                        {L"test.texts.hint", L"Type here"},
                                        {L"test.texts.page", L"Page one"}}));

    texts_dialog_t dialog(archive.wstring() + L"#zip:texts.xrc");
    ASSERT_TRUE(dialog.create(m_frame));
    EXPECT_EQ(dialog.get_title(), L"Window of CorrA") << "product arguments reach layout texts";
    auto* check = dialog.find_control<wxCheckBox>(L"m_check");
    ASSERT_NE(check, nullptr);
    EXPECT_EQ(check->GetLabel(), "Check me");
    EXPECT_EQ(check->GetToolTipText(), "Why to check");
    auto* box = dynamic_cast<wxStaticBox*>(check->GetParent());
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->GetLabel(), "Group");
    auto* choice = dialog.find_control<wxChoice>(L"m_choice");
    ASSERT_NE(choice, nullptr);
    EXPECT_EQ(choice->GetString(0), "First item");
    EXPECT_EQ(choice->GetString(1), "plain item");
    EXPECT_EQ(dialog.find_control<wxStaticText>(L"m_plain")->GetLabel(), "Not a key");
    EXPECT_EQ(dialog.find_control<wxTextCtrl>(L"m_text")->GetHint(), "Type here");
    EXPECT_EQ(dialog.find_control<wxNotebook>(L"m_book")->GetPageText(0), "Page one");
    settings2::registerMessageCatalog(L"testset", nullptr);
}

TEST_F(DialogBase, ProportionalSizeIsAtLeastTheBestSizeAndAtMostTheFraction)
{
    stack_view_t dialog;
    ASSERT_TRUE(dialog.create(m_frame));
    const wxSize best = dialog.GetBestSize();
    const wxRect area = wxDisplay(0u).GetClientArea();

    const wxSize small = dialog.get_proportional_size(0.6, 0.6, wxDefaultSize);
    EXPECT_EQ(small, best);
    // A default size in dialog units that fits the display is taken as it is.
    const wxSize base = dialog.ConvertDialogToPixels(wxSize(400, 300));
    ASSERT_LT(base.x, area.width * 0.9);
    wxSize expected = base;
    expected.IncTo(best);
    EXPECT_EQ(dialog.get_proportional_size(0.9, 0.9, wxSize(400, 300)), expected);
    const wxSize capped = dialog.get_proportional_size(0.1, 0.1, wxSize(2000, 2000));
    EXPECT_EQ(capped, wxSize(int(area.width * 0.1), int(area.height * 0.1)));
}
