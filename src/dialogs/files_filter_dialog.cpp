// The files filter dialog.
//
// A mask with one of the restricted characters is not filtered: the field is
// marked and its tool-tip names the characters, OK is disabled, and the list
// keeps the result of the last valid mask (so it never shows files for a
// mask that is not in the field and could not be accepted).
//
// An empty field filters nothing out: the dialog opens on every file, and
// typing narrows the list.
//
// Filterings run one after the other on the scheduler's background thread;
// starting one supersedes any still running (util::filter_files_runner_t),
// so the list only ever shows the newest mask's result.
#include "corr_dialogs2/files_filter_dialog.h"

#include "corr_dialogs2/ui_utils.h"

#include "shareddlg3/resources.h"
#include "shareddlg3/utils.h"
#include "wxkit1/image_loader.h"
#include "wxkit1/ui_settings.h"

#include <wx/animate.h>
#include <wx/button.h>
#include <wx/listbox.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>
#include <wx/xrc/xmlres.h>

namespace corr_dialogs2 {

files_filter_dlg_t::files_filter_dlg_t(const std::vector<basekit2::path_t>& files) : m_input(files)
{
    set_resource_file(
        shareddlg3::create_resource_filename(resources::catalog_file, resources::layout_file));
    set_dialog_name(L"dlg.custom_filter");
    set_resource_set(resources::resource_set);
    set_help_topic(L"korrin.hlp.ctx.custom_filter_f1540");
}

// The runner goes first: a filtering still running is cancelled and never
// reaches the controls being destroyed.
files_filter_dlg_t::~files_filter_dlg_t()
{
    m_runner.reset();
}

const std::wstring& files_filter_dlg_t::restricted_chars()
{
    static const std::wstring chars = L"\"<>|";
    return chars;
}

std::wstring files_filter_dlg_t::get_mask() const
{
    return m_prefix_edit ? m_prefix_edit->GetValue().ToStdWstring() : std::wstring();
}

bool files_filter_dlg_t::is_busy() const
{
    return m_runner && m_runner->is_busy();
}

void files_filter_dlg_t::on_init_dialog()
{
    m_prefix_edit = find_control<wxTextCtrl>(L"m_prefix_edit");
    m_listBox1 = find_control<wxListBox>(L"m_listBox1");
    m_animCtrl1 = find_control<wxAnimationCtrl>(L"m_animCtrl1");
    m_count_text = find_control<wxStaticText>(L"m_count_text");
    m_btn_ok = find_control<wxButton>(L"m_btn_ok");

    if (m_animCtrl1) {
        const wxkit1::image_loader_t images(
            shareddlg3::create_resource_filename(resources::catalog_file, resources::image_file));
        m_animCtrl1->SetAnimation(images.load_animation(L"progress"));
        m_animCtrl1->SetInactiveBitmap(images.load_bitmap(L"tick"));
    }

    m_runner = std::make_unique<util::filter_files_runner_t>(
        m_input, [this](const util::file_list_t& matching) { on_filter_task_complete(matching); });
    start_filter_task(get_mask());
    set_title(translate(L"dlg.custom_filter.title"));
    if (m_prefix_edit)
        m_prefix_edit->SetFocus();
}

void files_filter_dlg_t::on_update_ui_settings()
{
    mark_mask_field();
}

void files_filter_dlg_t::on_text_changed(wxCommandEvent&)
{
    const std::wstring mask = get_mask();
    m_mask_valid = shareddlg3::check_folder_name_for_chars(mask, restricted_chars());
    mark_mask_field();
    if (m_mask_valid)
        start_filter_task(mask);
    update_ok_button();
}

void files_filter_dlg_t::mark_mask_field()
{
    if (!m_prefix_edit)
        return;
    if (m_mask_valid) {
        shareddlg3::set_color_and_tooltip(m_prefix_edit, wxNullColour, std::wstring());
        return;
    }
    std::wstring symbols;
    for (const wchar_t c : restricted_chars()) {
        if (!symbols.empty())
            symbols += L' ';
        symbols += c;
    }
    shareddlg3::set_color_and_tooltip(
        m_prefix_edit, wxkit1::ui_settings_t::get_color(wxkit1::ui_settings_t::color_invalid_input),
        translate(L"dlg.custom_filter.restricted_chars", {{L"symbols", symbols}}));
}

void files_filter_dlg_t::start_filter_task(const std::wstring& mask)
{
    if (!m_runner)
        return;
    const std::wstring effective = mask.empty() ? std::wstring(L"*") : mask;
    if (!m_runner->start(effective)) {
        // No scheduler to run it (a host that did not start one): filter
        // here rather than show nothing.
        on_filter_task_complete(util::filter_files_task_t::get_files_by_mask(effective, m_input));
        return;
    }
    if (m_listBox1)
        m_listBox1->Disable(); // it shows an older mask's result until this one is in
    update_image();
    update_ok_button();
}

void files_filter_dlg_t::on_filter_task_complete(const std::vector<basekit2::path_t>& files)
{
    m_files = files;
    if (m_listBox1) {
        wxArrayString items;
        items.reserve(files.size());
        for (const auto& file : files)
            items.push_back(file.str());
        m_listBox1->Freeze();
        m_listBox1->Clear();
        m_listBox1->Append(items);
        m_listBox1->Thaw();
        m_listBox1->Enable();
    }
    if (m_count_text)
        m_count_text->SetLabelText(translate(
            L"dlg.custom_filter.count", {{L"count", files.size()}, {L"total", m_input.size()}}));
    update_image();
    update_ok_button();
}

void files_filter_dlg_t::update_image()
{
    if (!m_animCtrl1)
        return;
    if (is_busy()) {
        if (!m_animCtrl1->IsPlaying())
            m_animCtrl1->Play();
    } else {
        m_animCtrl1->Stop(); // shows the inactive bitmap: the tick
    }
}

void files_filter_dlg_t::update_ok_button()
{
    if (m_btn_ok)
        m_btn_ok->Enable(m_mask_valid && !is_busy());
}

// clang-format off
wxBEGIN_EVENT_TABLE(files_filter_dlg_t, shareddlg3::dialog_base_t)
    EVT_TEXT(XRCID("m_prefix_edit"), files_filter_dlg_t::on_text_changed)
wxEND_EVENT_TABLE()
// clang-format on

} // namespace corr_dialogs2
