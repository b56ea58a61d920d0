#pragma once
// In-cell editors: the editor base a viewer opens over a cell, and the combo
// box that models hand out as their editor.
#include "uicore7/sender_list.h"
#include "uiframe7/visual_element.h"

#include <wx/choice.h>
#include <wx/weakref.h>

#include <memory>
#include <string>
#include <vector>

class wxCommandEvent;
class wxFocusEvent;
class wxKeyEvent;

namespace uiframe7 {

class CEditControl;
class CComboBox;

// Whoever opened an editor (a grid) learns from it how the edit ended.
class IEditOwner
{
public:
    virtual ~IEditOwner() = default;
    // The edit ended normally; keep_value says whether the value stands.
    virtual void OnEditEnded(CEditControl* editor, bool keep_value) = 0;
    // The editor stopped without a result (it is detached or destroyed).
    virtual void OnEditorGone(CEditControl* editor) = 0;
};

class CEditControl : public CVisualElement
{
public:
    // Shows the editor over window_rect (client coordinates of the window the
    // editor was bound to) and takes the focus; false when it cannot edit.
    virtual bool BeginEdit(const uicore7::rectangle<int>& window_rect, IEditOwner* owner) = 0;
    // Closes the editor. With keep_value false the value it had when the edit
    // began is restored. Does nothing when no edit is open.
    virtual void EndEdit(bool keep_value) = 0;
    virtual bool IsEditing() const = 0;
    // The owner is going away: stop any edit of it without telling anyone.
    virtual void ReleaseOwner(IEditOwner* owner) = 0;
};

// Listener interface of combo-box events (added through the combo's sender list).
class IComboBoxEvents : public uicore7::IListener
{
public:
    // The user picked entry `item` (sent at once, while the editor stays open;
    // sent again with the old entry when the edit is then cancelled).
    virtual void CBOnChoicItem(CComboBox* sender, int item);
    // The edit ended (after the owner was told).
    virtual void CBOnEditEnd(CComboBox* sender, bool keep_value);
};

// A drop-down list editor. The entries and the selection live in this object,
// so a model can fill and read it with or without a window; while an edit is
// open a native wxChoice shows them over the cell.
class CComboBox : public CEditControl
{
public:
    enum Style {
        cbsDropDownList = 0, // pick one of the entries; no typing
    };

    CComboBox();
    explicit CComboBox(std::unique_ptr<uicore7::ISenderList> senders);
    ~CComboBox() override;

    // Binds the combo box to a window: its native control is created there,
    // hidden, and the box joins that window's element tree. A second call
    // rebinds. Only cbsDropDownList is supported.
    bool Init(uicore7::ISysWindow* window, int style);
    bool IsInitialized() const;

    void Clear();
    int AddString(const std::wstring& text); // returns the entry's index
    int GetCount() const { return static_cast<int>(m_items.size()); }
    std::wstring GetString(int index) const; // empty outside the entries
    int FindString(const std::wstring& text) const;

    // Selects an entry (-1: none) without notifying anyone.
    void SetSelection(int index);
    int GetSelection() const { return m_selection; }
    std::wstring GetStringSelection() const { return GetString(m_selection); }

    uicore7::ISenderList* GetSenderList() const { return m_senders.get(); }
    void AddListener(IComboBoxEvents* listener);
    void RemoveListener(IComboBoxEvents* listener);

    bool BeginEdit(const uicore7::rectangle<int>& window_rect, IEditOwner* owner) override;
    void EndEdit(bool keep_value) override;
    bool IsEditing() const override { return m_editing; }
    void ReleaseOwner(IEditOwner* owner) override;

    // Detaching (new_parent null) ends an open edit: with rpSilent without a
    // result, otherwise keeping the value.
    void ReParent(CVisualElement* new_parent, int flags) override;

    // The native control (null before Init or after its window was destroyed).
    wxChoice* GetNativeControl() const;

private:
    void destroy_native();
    void stop_silently();
    void notify_choice(int item);
    void on_native_choice(wxCommandEvent& event);
    void on_native_kill_focus(wxFocusEvent& event);
    void on_native_key(wxKeyEvent& event);

    std::unique_ptr<uicore7::ISenderList> m_senders;
    std::vector<std::wstring> m_items;
    int m_selection = -1;
    int m_selection_at_begin = -1;
    bool m_editing = false;
    bool m_ending = false;
    IEditOwner* m_owner = nullptr;
    wxWeakRef<wxChoice> m_choice;
};

} // namespace uiframe7
