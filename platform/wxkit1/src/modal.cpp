#include "wxkit1/modal.h"

#include <wx/app.h>
#include <wx/toplevel.h>

#include <mutex>

namespace wxkit1 {
namespace {
std::mutex g_hook_mutex;
modal_callback_t g_hook;
} // namespace

modal_callback_t get_modal_callback()
{
    std::lock_guard lock(g_hook_mutex);
    return g_hook;
}

modal_callback_t set_modal_callback(modal_callback_t hook)
{
    std::lock_guard lock(g_hook_mutex);
    std::swap(g_hook, hook);
    return hook;
}

int show_modal_hooked(wxDialog& dialog)
{
    if (const modal_callback_t hook = get_modal_callback()) {
        if (const int answer = hook(dialog))
            return answer;
    }
    return dialog.ShowModal();
}

saved_windows_t save_thread_window(const wxWindow* except)
{
    saved_windows_t saved;
    for (wxWindow* window : wxTopLevelWindows) {
        if (window == except || !window->IsEnabled() || window->IsBeingDeleted())
            continue;
        window->Disable();
        saved.emplace_back(window);
    }
    return saved;
}

void restore_thread_window(const saved_windows_t& windows)
{
    for (const auto& window : windows)
        if (window)
            window->Enable();
}

bool subclass_window(wxWindow*)
{
    return false;
}

void delay_set_focus(wxWindow* window)
{
    if (!window || !wxTheApp)
        return;
    wxWeakRef<wxWindow> target(window);
    wxTheApp->CallAfter([target] {
        if (target && target->IsShownOnScreen())
            target->SetFocus();
    });
}

namespace detail {

modal_disabler_t::modal_disabler_t(wxWindow* parent, const wxWindow* dialog)
{
    // Climb from the parent to the top-level window it belongs to.
    wxWindow* top = parent;
    while (top && !top->IsTopLevel())
        top = top->GetParent();
    m_owner = top;

    if (!parent || parent->IsTopLevel()) {
        // A top-level parent (or none): the whole application waits.
        m_disabled = save_thread_window(dialog);
    } else if (top && top->IsEnabled()) {
        // A child window as parent: only its own top-level window waits.
        top->Disable();
        m_disabled.emplace_back(top);
    }
}

void modal_disabler_t::restore()
{
    if (m_restored)
        return;
    m_restored = true;
    restore_thread_window(m_disabled);
}

void raise_window(wxWindow* window)
{
    // Bring it up among the normal windows without moving or sizing it.
    if (window && window->IsShown())
        window->Raise();
}

} // namespace detail
} // namespace wxkit1
