#include "modal_expectations.h"

#include "shareddlg3/file_dialogs.h"
#include "shareddlg3/message_window.h"
#include "wxkit1/modal.h"

#include <gtest/gtest.h>
#include <wx/app.h>
#include <wx/modalhook.h>
#include <wx/timer.h>
#include <wx/weakref.h>

#include <cxxabi.h>
#include <set>

namespace corr_test {
namespace {

// Dialogs a test let through to a real modal loop.
std::set<const wxDialog*>& allowed_dialogs()
{
    static std::set<const wxDialog*> dialogs;
    return dialogs;
}

int unexpected_dialog(wxDialog& dialog)
{
    ADD_FAILURE() << "unexpected modal dialog " << describe_dialog(dialog)
                  << " (answered with wxID_CANCEL; expect it with corr_test::modal_expectations)";
    return wxID_CANCEL;
}

// wxWidgets' own hook: a modal loop that our hook did not let through (a
// plain wxMessageBox, a dialog ShowModal'ed outside the flavour) fails the
// test instead of waiting for a user.
class guard_hook : public wxModalDialogHook
{
protected:
    int Enter(wxDialog* dialog) override
    {
        if (allowed_dialogs().count(dialog))
            return wxID_NONE;
        return unexpected_dialog(*dialog);
    }
    void Exit(wxDialog* dialog) override { allowed_dialogs().erase(dialog); }
};

guard_hook* g_guard = nullptr;

std::string demangle(const char* name)
{
    int status = 0;
    char* readable = abi::__cxa_demangle(name, nullptr, nullptr, &status);
    std::string out = status == 0 && readable ? readable : name;
    std::free(readable);
    return out;
}

} // namespace

std::string describe_dialog(wxDialog& dialog)
{
    return demangle(typeid(dialog).name()) + " '" + std::string(dialog.GetTitle().utf8_str()) + "'";
}

modal_expectations::modal_expectations()
{
    m_previous = wxkit1::set_modal_callback([this](wxDialog& dialog) { return on_dialog(dialog); });
}

modal_expectations::~modal_expectations()
{
    wxkit1::set_modal_callback(m_previous);
    for (auto& guard : m_guards)
        guard->Stop();
    for (const auto& e : m_queue)
        ADD_FAILURE() << "an expected modal dialog " << demangle(e.type.c_str()) << " was never shown";
}

int modal_expectations::on_dialog(wxDialog& dialog)
{
    m_seen.push_back(describe_dialog(dialog));
    if (m_queue.empty())
        return unexpected_dialog(dialog);
    expectation e = std::move(m_queue.front());
    m_queue.pop_front();
    if (!e.matches(dialog)) {
        ADD_FAILURE() << "expected a modal dialog " << demangle(e.type.c_str()) << " but got "
                      << describe_dialog(dialog) << " (answered with wxID_CANCEL)";
        return wxID_CANCEL;
    }
    if (e.answer) {
        dialog.SetReturnCode(0);
        int answer = e.answer(dialog);
        if (answer == 0)
            answer = dialog.GetReturnCode() != 0 ? dialog.GetReturnCode() : wxID_CANCEL;
        return answer;
    }

    // Shown for real: let it past wxWidgets' hook, act once its loop runs,
    // and make sure it ends.
    allowed_dialogs().insert(&dialog);
    wxWeakRef<wxDialog> target(&dialog);
    auto action = e.shown;
    wxTheApp->CallAfter([target, action] {
        if (target)
            action(*target);
    });
    auto guard = std::make_unique<wxTimer>();
    const std::string what = describe_dialog(dialog);
    guard->Bind(wxEVT_TIMER, [target, what](wxTimerEvent&) {
        if (target && target->IsModal()) {
            ADD_FAILURE() << "modal dialog " << what << " was still open after its time; ended with wxID_CANCEL";
            target->EndModal(wxID_CANCEL);
        }
    });
    guard->StartOnce(e.timeout_ms);
    m_guards.push_back(std::move(guard));
    return 0;
}

modal_expectations& modal_expectations::expect_message(int answer_code,
                                                       std::function<void(shareddlg3::message_dialog_t&)> check)
{
    return expect<shareddlg3::message_dialog_t>([answer_code, check](shareddlg3::message_dialog_t& d) {
        if (check)
            check(d);
        return shareddlg3::message_dialog_t::id_of(answer_code);
    });
}

modal_expectations& modal_expectations::expect_file(const basekit2::path_t& path)
{
    return expect<shareddlg3::file_dialog_t>([path](shareddlg3::file_dialog_t& d) {
        d.set_path(path);
        return int(wxID_OK);
    });
}

modal_expectations& modal_expectations::expect_folder(const basekit2::path_t& path)
{
    return expect<shareddlg3::folder_dialog_t>([path](shareddlg3::folder_dialog_t& d) {
        d.set_path(path);
        return int(wxID_OK);
    });
}

namespace detail {

void install_modal_guards()
{
    wxkit1::set_modal_callback(&unexpected_dialog);
    g_guard = new guard_hook;
    g_guard->Register();
}

void remove_modal_guards()
{
    wxkit1::set_modal_callback(nullptr);
    if (g_guard) {
        g_guard->Unregister();
        delete g_guard;
        g_guard = nullptr;
    }
}

} // namespace detail
} // namespace corr_test
