#pragma once
// The modal flavour of every dialog: ShowModal goes through a process-wide
// hook first (tests answer dialogs there), disables the application's other
// windows for the modal loop itself and gives the focus back afterwards.
#include <wx/dialog.h>
#include <wx/weakref.h>

#include <functional>
#include <vector>

namespace wxkit1 {

// Non-zero from the hook: ShowModal returns it without showing the dialog.
// Zero: the dialog is shown as usual.
using modal_callback_t = std::function<int(wxDialog&)>;
modal_callback_t get_modal_callback();
// Installs the hook (empty removes it) and returns the previous one.
modal_callback_t set_modal_callback(modal_callback_t hook);

// ShowModal for dialogs that are not a modal_flavor (file, folder and
// message dialogs of wxWidgets): the hook first, then the dialog's own.
int show_modal_hooked(wxDialog& dialog);

// Windows disabled for a modal loop; weak, since they may close meanwhile.
using saved_windows_t = std::vector<wxWeakRef<wxWindow>>;

// Collects the enabled top-level windows of the application (all run on the
// GUI thread), except `except`, and disables them.
saved_windows_t save_thread_window(const wxWindow* except);
// Enables again those of them that still exist.
void restore_thread_window(const saved_windows_t& windows);

// Routes a context-help button to the dialog's help handler. Needed where the
// native dialog keeps that button to itself; on GTK the help button is an
// ordinary wx button already, so there is nothing to do and this returns false.
bool subclass_window(wxWindow* window);

// Gives window the focus once the current event is handled (after the modal
// loop has unwound); nothing when it is gone by then.
void delay_set_focus(wxWindow* window);

// The extended style bit that makes SetExtraStyle remember the focus.
constexpr long remember_focus_style = 8;

namespace detail {

// Steps 4 and 6 of ShowModal: decides what to disable, disables it, and
// enables exactly that again.
class modal_disabler_t
{
public:
    modal_disabler_t(wxWindow* parent, const wxWindow* dialog);
    ~modal_disabler_t() { restore(); }
    modal_disabler_t(const modal_disabler_t&) = delete;
    modal_disabler_t& operator=(const modal_disabler_t&) = delete;

    void restore();
    // The top-level window the parent belongs to (or the parent itself).
    wxWindow* owner() const { return m_owner.get(); }

private:
    wxWeakRef<wxWindow> m_owner;
    saved_windows_t m_disabled;
    bool m_restored = false;
};

void raise_window(wxWindow* window);

} // namespace detail

template <class Base>
class modal_flavor : public Base
{
public:
    using Base::Base;

    void SetExtraStyle(long style) override
    {
        if (style & remember_focus_style)
            m_focus = wxWindow::FindFocus();
        Base::SetExtraStyle(style);
    }

    int ShowModal() override
    {
        if (const modal_callback_t hook = get_modal_callback()) {
            if (const int answer = hook(*this))
                return answer;
        }
        if (this->GetExtraStyle() & wxWS_EX_CONTEXTHELP)
            subclass_window(this);
        if (!m_focus)
            m_focus = wxWindow::FindFocus();

        int result = 0;
        {
            detail::modal_disabler_t disabled(this->GetParent(), this);
            result = Base::ShowModal();
            disabled.restore();
            if (this->GetParent())
                detail::raise_window(disabled.owner());
        }
        delay_set_focus(m_focus.get());
        m_focus = nullptr;
        return result;
    }

    void EndModal(int code) override
    {
        if (!this->IsModal()) {
            // Answered through the hook, never shown modally: keep the code
            // for GetReturnCode() rather than assert.
            this->SetReturnCode(code);
            if (this->IsShown())
                this->Hide();
            return;
        }
        if (wxWindow* parent = this->GetParent())
            detail::raise_window(wxGetTopLevelParent(parent));
        Base::EndModal(code);
    }

private:
    wxWeakRef<wxWindow> m_focus;
};

} // namespace wxkit1
