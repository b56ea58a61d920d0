#pragma once
// The one shim between wxWidgets and every dialog, panel and preference page:
// the layout comes from an XRC resource inside a resource archive, its texts
// are message keys translated after loading, controls are bound by name, and
// OK, Cancel and Help reach virtual operations.
//
// Construction pattern of a dialog:
//   my_dlg_t::my_dlg_t() {
//       set_resource_file(shareddlg3::create_resource_filename(L"dialogs2.dat", L"dialogs.xrc"));
//       set_dialog_name(L"dlg.my");          // XRC object name and key prefix
//       set_resource_set(L"dialogs");
//       set_help_topic(L"korrin.hlp.ctx.my_topic");
//   }
//   void my_dlg_t::on_init_dialog() {
//       m_btn_ok = find_control<wxButton>(L"m_btn_ok");
//       set_title(translate(L"dlg.my.title"));
//   }
//   my_dlg_t dlg; dlg.show_modal(parent);
//
// The standard buttons are named m_btn_ok, m_btn_cancel and m_btn_help in
// layouts; loading gives them the ids wxID_OK, wxID_CANCEL and wxID_HELP (so
// Enter, Escape and the close box work as wxWidgets users expect), and
// find_control() knows them by their names.
#include "wxkit1/modal.h"
#include "wxkit1/ui_settings.h"

#include <wx/dialog.h>
#include <wx/panel.h>
#include <wx/timer.h>

#include <functional>
#include <string>
#include <type_traits>
#include <typeinfo>

namespace shareddlg3 {

// Shows the help topic of a dialog; installed by the host. Without one the
// Help button does nothing.
using help_handler_t = std::function<void(const std::wstring& topic, wxWindow* window)>;
help_handler_t set_help_handler(help_handler_t handler);
help_handler_t get_help_handler();

namespace detail {

enum class layout_kind { dialog, panel };

// Loads the named layout into `self` (not yet created) and translates its
// texts; logs a message naming the file and the layout and returns false on
// any failure.
bool load_layout(wxWindow* self, layout_kind kind, wxWindow* parent, const std::wstring& resource_file,
                 const std::wstring& name, const std::wstring& set);
// Translates every label, title, tool-tip, static-box text, page text, item
// and hint under root that is a key of the catalogue `set`.
void translate_texts(wxWindow* root, const std::wstring& set);
// The control of that name under root (standard button names included);
// logs a message naming the control, the layout and the file when missing.
wxWindow* find_named_control(wxWindow* root, const wchar_t* name, const std::wstring& layout,
                             const std::wstring& resource_file);
void report_wrong_class(const wchar_t* name, const std::wstring& layout, wxWindow* found,
                        const char* expected);
wxSize proportional_size(const wxWindow* window, double fx, double fy, const wxSize& base);
void end_containing_dialog(wxWindow* window, int code);

} // namespace detail

template <class Base>
class generic_base_t : public Base
{
public:
    generic_base_t() = default; // two-step creation: create() loads the layout

    // Settings, assigned in the constructor of the concrete class.
    void set_resource_file(const std::wstring& file) { m_resource_file = file; }
    const std::wstring& get_resource_file() const { return m_resource_file; }
    void set_dialog_name(const std::wstring& name) { m_dialog_name = name; }
    const std::wstring& get_dialog_name() const { return m_dialog_name; }
    void set_resource_set(const std::wstring& set) { m_resource_set = set; }
    const std::wstring& get_resource_set() const { return m_resource_set; }
    void set_help_topic(const std::wstring& topic) { m_help_topic = topic; }
    const std::wstring& get_help_topic() const { return m_help_topic; }
    // Width then height, in dialog units; the base of get_proportional_size.
    void set_default_size(int width, int height) { m_default_size = wxSize(width, height); }
    wxSize get_default_size() const { return m_default_size; }

    void set_title(const std::wstring& title) { this->SetLabel(title); }
    std::wstring get_title() const { return this->GetLabel().ToStdWstring(); }

    // A size for the window: the base size (dialog units; the best size when
    // none) but at least the best size, and at most the fractions fx, fy of
    // the display's work area.
    wxSize get_proportional_size(double fx, double fy, const wxSize& base) const
    {
        return detail::proportional_size(this, fx, fy, base);
    }

    // The control of the loaded layout named name, checked to be a T: a
    // missing control is logged (naming it, the layout and the file) and
    // gives null; a control of another class is a programming error
    // reported by a wx assertion, and gives null too.
    template <class T>
    T* find_control(const wchar_t* name)
    {
        wxWindow* window = detail::find_named_control(this, name, m_dialog_name, m_resource_file);
        if (!window)
            return nullptr;
        T* typed = dynamic_cast<T*>(window);
        if (!typed)
            detail::report_wrong_class(name, m_dialog_name, window, typeid(T).name());
        return typed;
    }

    bool is_created() const { return m_created; }

    // Loads the layout (load_from_xml_resource) and initialises the window:
    // load_auxiliary_strings, on_init_dialog, set_max_text_limit and
    // on_update_ui_settings. True when it is (or already was) created.
    bool create(wxWindow* parent)
    {
        if (m_created)
            return true;
        if (!load_from_xml_resource(parent, m_resource_file, m_dialog_name, m_resource_set))
            return false;
        m_created = true;
        load_auxiliary_strings();
        on_init_dialog();
        set_max_text_limit();
        m_style_updater.attach(this, [this] { on_update_ui_settings(); });
        return true;
    }

    // Virtual operations, in slot order.

    // Keeps what the user chose for next time; called before OK is handled.
    virtual void save_settings() {}
    virtual bool load_from_xml_resource(wxWindow* parent, const std::wstring& resource_file,
                                        const std::wstring& dialog_name, const std::wstring& set)
    {
        return detail::load_layout(this, kind, parent, resource_file, dialog_name, set);
    }
    // Ends the modal loop with code (a panel ends the dialog it is in).
    virtual void end_dialog(int code)
    {
        if constexpr (std::is_base_of_v<wxDialog, Base>)
            this->EndModal(code);
        else
            detail::end_containing_dialog(this, code);
    }
    // Binds the controls, sets the title and the texts built at run time.
    virtual void on_init_dialog() {}
    // The work of OK; true closes the dialog with wxID_OK.
    virtual bool on_ok() { return true; }
    virtual void on_cancel() { end_dialog(wxID_CANCEL); }
    virtual void on_help()
    {
        if (const help_handler_t handler = get_help_handler(); handler && !m_help_topic.empty())
            handler(m_help_topic, this);
    }
    // The UI settings (colours, fonts) changed, or were applied first.
    virtual void on_update_ui_settings() {}
    virtual void handle_ok(wxCommandEvent&)
    {
        if (!this->Validate() || !this->TransferDataFromWindow())
            return;
        save_settings();
        if (on_ok())
            end_dialog(wxID_OK);
    }
    // Texts that the layout does not hold, loaded once after the layout.
    virtual void load_auxiliary_strings() {}
    // Limits of the text fields, set after on_init_dialog.
    virtual void set_max_text_limit() {}
    virtual void handle_timer_event(wxTimerEvent&) {}
    // Creates the window under parent if needed and shows it modally; the
    // answer of ShowModal, or wxID_CANCEL when the layout cannot be loaded.
    virtual int show_modal(wxWindow* parent)
    {
        if constexpr (std::is_base_of_v<wxDialog, Base>) {
            if (!create(parent))
                return wxID_CANCEL;
            return this->ShowModal();
        } else {
            wxFAIL_MSG("a panel cannot be shown modally; use show_nonmodal");
            return wxID_CANCEL;
        }
    }
    // Creates the window under parent if needed and shows it; activate
    // gives it the focus. False when the layout cannot be loaded.
    virtual bool show_nonmodal(wxWindow* parent, bool activate)
    {
        if (!create(parent))
            return false;
        if constexpr (std::is_base_of_v<wxDialog, Base>) {
            if (activate) {
                this->Show();
                this->Raise();
            } else {
                this->ShowWithoutActivating();
            }
        } else {
            this->Show();
            if (activate)
                this->SetFocus();
        }
        return true;
    }

private:
    static constexpr detail::layout_kind kind =
        std::is_base_of_v<wxDialog, Base> ? detail::layout_kind::dialog : detail::layout_kind::panel;

    std::wstring m_resource_file;
    std::wstring m_dialog_name;
    std::wstring m_resource_set;
    std::wstring m_help_topic;
    wxSize m_default_size = wxDefaultSize;
    bool m_created = false;
    wxkit1::style_updater_t m_style_updater{std::is_base_of_v<wxDialog, Base> ? wxkit1::ui_style_t::dialog
                                                                              : wxkit1::ui_style_t::panel};
};

// Every dialog of the library derives from this.
class dialog_base_t : public generic_base_t<wxkit1::modal_flavor<wxDialog>>
{
public:
    dialog_base_t() = default;

private:
    void on_ok_button(wxCommandEvent& event) { handle_ok(event); }
    void on_cancel_button(wxCommandEvent&) { on_cancel(); }
    void on_help_button(wxCommandEvent&) { on_help(); }
    void on_timer(wxTimerEvent& event) { handle_timer_event(event); }

    wxDECLARE_EVENT_TABLE();
};

// Panels and preference pages: the same loading and binding, in a parent
// window the host provides.
class pref_base_t : public generic_base_t<wxPanel>
{
public:
    pref_base_t() = default;
};

} // namespace shareddlg3
