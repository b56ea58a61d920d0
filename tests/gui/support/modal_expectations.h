#pragma once
// Answers the modal dialogs a test expects, in order, through the modal hook
// of wxkit1. A modal dialog that nobody expected fails the test and is
// answered with wxID_CANCEL, so nothing waits for a user.
//
//   corr_test::modal_expectations modal;
//   modal.expect_message(shareddlg3::message_window_t::answer_yes);
//   modal.expect<my_dlg_t>([](my_dlg_t& d) { d.set_name(L"x"); return wxID_OK; });
//   modal.expect_file(path);
//   ... code that shows them ...
//   EXPECT_TRUE(modal.all_met());   // also checked when `modal` goes away
#include "basekit2/path.h"

#include <wx/dialog.h>
#include <wx/timer.h>

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <typeinfo>
#include <vector>

namespace shareddlg3 {
class message_dialog_t;
}

namespace corr_test {

// "class 'title'" of a dialog, for messages.
std::string describe_dialog(wxDialog& dialog);

class modal_expectations
{
public:
    modal_expectations();
    ~modal_expectations();
    modal_expectations(const modal_expectations&) = delete;
    modal_expectations& operator=(const modal_expectations&) = delete;

    // The next dialog is a T, answered with `answer` without being shown.
    template <class T>
    modal_expectations& expect(int answer)
    {
        return expect<T>([answer](T&) { return answer; });
    }

    // The next dialog is a T; action runs on it (not shown) and returns the
    // answer. 0 means "what the dialog ended with" (its return code after
    // e.g. handle_ok ended it), or wxID_CANCEL when it did not end.
    template <class T>
    modal_expectations& expect(std::function<int(T&)> action)
    {
        add({typeid(T).name(), [](wxDialog& d) { return dynamic_cast<T*>(&d) != nullptr; },
             [action](wxDialog& d) { return action(dynamic_cast<T&>(d)); }, nullptr, 0});
        return *this;
    }

    // The next dialog is a T and is really shown modally; action runs once
    // its modal loop runs and must end it. Still open after timeout_ms: the
    // test fails and the dialog is ended with wxID_CANCEL.
    template <class T>
    modal_expectations& expect_shown(std::function<void(T&)> action, int timeout_ms = 10000)
    {
        add({typeid(T).name(), [](wxDialog& d) { return dynamic_cast<T*>(&d) != nullptr; }, nullptr,
             [action](wxDialog& d) { action(dynamic_cast<T&>(d)); }, timeout_ms});
        return *this;
    }

    // A shared message window, answered with an answer code (1 yes/OK,
    // 2 no, 3 all, 0 cancel); check may look at it first.
    modal_expectations& expect_message(int answer_code,
                                       std::function<void(shareddlg3::message_dialog_t&)> check = {});
    // A file chooser (shareddlg3::file_dlg) answered with path.
    modal_expectations& expect_file(const basekit2::path_t& path);
    // A folder chooser (shareddlg3::folder_dlg) answered with path.
    modal_expectations& expect_folder(const basekit2::path_t& path);

    size_t pending() const { return m_queue.size(); }
    bool all_met() const { return m_queue.empty(); }
    // Every dialog seen, described, in order.
    const std::vector<std::string>& seen() const { return m_seen; }

private:
    struct expectation
    {
        std::string type;
        std::function<bool(wxDialog&)> matches;
        std::function<int(wxDialog&)> answer; // not shown
        std::function<void(wxDialog&)> shown; // shown for real
        int timeout_ms;
    };
    void add(expectation e) { m_queue.push_back(std::move(e)); }
    int on_dialog(wxDialog& dialog);

    std::deque<expectation> m_queue;
    std::vector<std::string> m_seen;
    std::function<int(wxDialog&)> m_previous;
    std::vector<std::unique_ptr<wxTimer>> m_guards;
};

namespace detail {
// Installed by the test main: the hook outside any modal_expectations, and
// wxWidgets' own modal hook that stops dialogs bypassing ours.
void install_modal_guards();
void remove_modal_guards();
} // namespace detail

} // namespace corr_test
