#include "uiframe7/combo_box.h"

#include "platkit/debug/assert.h"
#include "uicore7/sys_window.h"
#include "uiframe7/base_control.h"

#include <wx/app.h>
#include <wx/choice.h>

namespace uiframe7 {

void IComboBoxEvents::CBOnChoicItem(CComboBox*, int) {}
void IComboBoxEvents::CBOnEditEnd(CComboBox*, bool) {}

CComboBox::CComboBox() : CComboBox(uicore7::CreateDefSenderList()) {}

CComboBox::CComboBox(std::unique_ptr<uicore7::ISenderList> senders) : m_senders(std::move(senders))
{
    if (!m_senders)
        m_senders = uicore7::CreateDefSenderList();
    Show(false);
}

CComboBox::~CComboBox()
{
    stop_silently();
    destroy_native();
}

bool CComboBox::Init(uicore7::ISysWindow* window, int style)
{
    PLATKIT_ASSERT_MSG(style == cbsDropDownList, "only drop-down lists are supported");
    if (!window || !window->GetNativeWindow())
        return false;
    stop_silently();
    destroy_native();

    auto* choice = new wxChoice(window->GetNativeWindow(), wxID_ANY);
    choice->Hide();
    choice->Bind(wxEVT_CHOICE, &CComboBox::on_native_choice, this);
    choice->Bind(wxEVT_KILL_FOCUS, &CComboBox::on_native_kill_focus, this);
    choice->Bind(wxEVT_CHAR_HOOK, &CComboBox::on_native_key, this);
    m_choice = choice;

    if (CBaseControl* host = CBaseControl::FromSysWindow(window))
        ReParent(host->GetRootElement(), rpSilent);
    return true;
}

bool CComboBox::IsInitialized() const
{
    return m_choice.get() != nullptr;
}

wxChoice* CComboBox::GetNativeControl() const
{
    return m_choice.get();
}

void CComboBox::destroy_native()
{
    wxChoice* choice = m_choice.get();
    m_choice = nullptr;
    if (!choice)
        return;
    choice->Unbind(wxEVT_CHOICE, &CComboBox::on_native_choice, this);
    choice->Unbind(wxEVT_KILL_FOCUS, &CComboBox::on_native_kill_focus, this);
    choice->Unbind(wxEVT_CHAR_HOOK, &CComboBox::on_native_key, this);
    choice->Hide();
    // We may be inside one of the control's own event handlers (a listener
    // that rebinds the combo box from CBOnChoicItem), so it goes at idle time.
    if (wxTheApp)
        wxTheApp->ScheduleForDestruction(choice);
    else
        delete choice;
}

void CComboBox::Clear()
{
    m_items.clear();
    m_selection = -1;
    if (wxChoice* choice = m_choice.get(); choice && m_editing)
        choice->Clear();
}

int CComboBox::AddString(const std::wstring& text)
{
    m_items.push_back(text);
    if (wxChoice* choice = m_choice.get(); choice && m_editing)
        choice->Append(text);
    return static_cast<int>(m_items.size()) - 1;
}

std::wstring CComboBox::GetString(int index) const
{
    if (index < 0 || index >= GetCount())
        return {};
    return m_items[static_cast<size_t>(index)];
}

int CComboBox::FindString(const std::wstring& text) const
{
    for (size_t i = 0; i < m_items.size(); ++i)
        if (m_items[i] == text)
            return static_cast<int>(i);
    return -1;
}

void CComboBox::SetSelection(int index)
{
    m_selection = (index >= 0 && index < GetCount()) ? index : -1;
    if (wxChoice* choice = m_choice.get(); choice && m_editing)
        choice->SetSelection(m_selection);
}

void CComboBox::AddListener(IComboBoxEvents* listener)
{
    m_senders->AddListener(listener);
}

void CComboBox::RemoveListener(IComboBoxEvents* listener)
{
    m_senders->RemoveListener(listener);
}

void CComboBox::notify_choice(int item)
{
    m_senders->Send<IComboBoxEvents>([&](IComboBoxEvents& l) { l.CBOnChoicItem(this, item); });
}

bool CComboBox::BeginEdit(const uicore7::rectangle<int>& window_rect, IEditOwner* owner)
{
    wxChoice* choice = m_choice.get();
    if (!choice || m_items.empty())
        return false;
    if (m_editing)
        EndEdit(true);

    wxArrayString entries;
    for (const auto& item : m_items)
        entries.Add(item);
    choice->Set(entries);
    choice->SetSelection(m_selection);
    m_selection_at_begin = m_selection;

    // The native control keeps its own height; centre it on the cell.
    const int height = std::max(choice->GetBestSize().y, window_rect.height());
    const int top = window_rect.top + (window_rect.height() - height) / 2;
    choice->SetSize(window_rect.left, top, window_rect.width(), height);
    SetRect(window_rect);

    m_owner = owner;
    m_editing = true;
    Show(true);
    choice->Show();
    choice->Raise();
    choice->SetFocus();
    return true;
}

void CComboBox::EndEdit(bool keep_value)
{
    if (!m_editing || m_ending)
        return;
    m_ending = true;
    m_editing = false;
    if (!keep_value && m_selection != m_selection_at_begin) {
        m_selection = m_selection_at_begin;
        // A listener that applied the pick at once must see it taken back.
        notify_choice(m_selection);
    }
    wxChoice* choice = m_choice.get();
    const bool had_focus = choice && choice->HasFocus();
    if (choice)
        choice->Hide();
    Show(false);
    IEditOwner* owner = m_owner;
    m_owner = nullptr;
    if (had_focus && choice->GetParent())
        choice->GetParent()->SetFocus();
    if (owner)
        owner->OnEditEnded(this, keep_value);
    m_senders->Send<IComboBoxEvents>([&](IComboBoxEvents& l) { l.CBOnEditEnd(this, keep_value); });
    m_ending = false;
}

void CComboBox::stop_silently()
{
    if (!m_editing)
        return;
    m_editing = false;
    if (wxChoice* choice = m_choice.get())
        choice->Hide();
    Show(false);
    IEditOwner* owner = m_owner;
    m_owner = nullptr;
    if (owner)
        owner->OnEditorGone(this);
}

void CComboBox::ReleaseOwner(IEditOwner* owner)
{
    if (!owner || owner != m_owner)
        return;
    m_owner = nullptr;
    stop_silently();
}

void CComboBox::ReParent(CVisualElement* new_parent, int flags)
{
    if (!new_parent && m_editing) {
        if (flags & rpSilent)
            stop_silently();
        else
            EndEdit(true);
    }
    CEditControl::ReParent(new_parent, flags);
}

void CComboBox::on_native_choice(wxCommandEvent& event)
{
    const int item = event.GetSelection();
    if (item < 0 || item >= GetCount())
        return;
    m_selection = item;
    notify_choice(item);
}

void CComboBox::on_native_kill_focus(wxFocusEvent& event)
{
    event.Skip();
    // No window means the focus went to the list's own pop-up (or left the
    // application for a moment): the edit goes on.
    wxWindow* next = event.GetWindow();
    if (m_editing && next && next != m_choice.get())
        EndEdit(true);
}

void CComboBox::on_native_key(wxKeyEvent& event)
{
    if (!m_editing) {
        event.Skip();
        return;
    }
    switch (event.GetKeyCode()) {
    case WXK_RETURN:
    case WXK_NUMPAD_ENTER:
        EndEdit(true);
        break;
    case WXK_ESCAPE:
        EndEdit(false);
        break;
    default:
        event.Skip();
    }
}

} // namespace uiframe7
