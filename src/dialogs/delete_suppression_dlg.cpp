#include "corr_dialogs2/delete_suppression_dlg.h"

#include "corr_dialogs2/stack_dialogs.h"
#include "corr_dialogs2/supp_file_dialogs.h"
#include "corr_dialogs2/ui_utils.h"
#include "grid_host.h"

#include "shareddlg3/resources.h"
#include "shareddlg3/utils.h"

#include <boost/make_shared.hpp>

#include <wx/button.h>
#include <wx/panel.h>
#include <wx/stattext.h>

#include <algorithm>
#include <map>
#include <memory>

namespace corr_dialogs2 {

wxBEGIN_EVENT_TABLE(delete_suppression_dlg_t, shareddlg3::dialog_base_t)
wxEND_EVENT_TABLE()

delete_suppression_dlg_t::delete_suppression_dlg_t(
    const std::vector<boost::shared_ptr<probstore3::suppression_rule_set_t>>& rule_sets)
    : m_grid(std::make_unique<detail::grid_host_t>())
{
    set_resource_file(shareddlg3::create_resource_filename(resources::catalog_file, resources::layout_file));
    set_dialog_name(L"dlg.suppressions.del");
    set_resource_set(resources::resource_set);
    set_help_topic(L"korrin.hlp.ctx.suppress_delete_f2120");
    m_model.add_rules(rule_sets);
    m_model.set_count(m_model.GetRowCount());
    m_rewrite_prompt = boost::make_shared<supp_file_rewrite_dialog_t>(this);
    m_error_notification = boost::make_shared<supp_file_error_dialog_t>(this);
    m_check_connection = m_model.check_changed().connect([this](int row, bool on) { on_check_changed(row, on); });
    m_button_connection = m_model.button_clicked().connect([this](int row, int index) {
        on_stack_button(m_model.get_rule_set(row), m_model.get_rule(row, index));
    });
}

delete_suppression_dlg_t::~delete_suppression_dlg_t()
{
    m_model.check_changed().disconnect(m_check_connection);
    m_model.button_clicked().disconnect(m_button_connection);
    m_grid->detach();
}

gridview8::CGrid* delete_suppression_dlg_t::get_grid() const { return m_grid->grid(); }

std::set<suppression_file_ptr> delete_suppression_dlg_t::get_updated_files() const
{
    std::set<suppression_file_ptr> files;
    for (int row = 0; row < m_model.GetRowCount(); ++row)
        if (m_model.is_checked(row))
            if (suppression_file_ptr file = m_model.get_file(row))
                files.insert(file);
    return files;
}

void delete_suppression_dlg_t::remove_rules_from_files()
{
    for (int row = 0; row < m_model.GetRowCount(); ++row) {
        if (!m_model.is_checked(row))
            continue;
        const suppression_file_ptr file = m_model.get_file(row);
        if (file)
            file->remove_suppression(m_model.get_rule_set(row));
    }
}

void delete_suppression_dlg_t::on_stack_button(const rule_set_ptr&, const rule_ptr& rule)
{
    if (!rule)
        return;
    stack_dlg_t dialog(rule->get_stack(true), false, -1);
    dialog.show_modal(this);
}

void delete_suppression_dlg_t::on_check_changed(int, bool) { validate_dialog_data(); }

bool delete_suppression_dlg_t::validate_dialog_data()
{
    const bool enable = m_model.has_checked_rules();
    if (m_btn_ok)
        m_btn_ok->Enable(enable);
    return enable;
}

bool delete_suppression_dlg_t::on_ok()
{
    const std::set<suppression_file_ptr> files = get_updated_files();
    // Declining the rewrite ends the operation with every file as it was.
    if (!confirm_rewrite_if_needed(m_rewrite_prompt, files))
        return true;
    // What each file holds now: a file that cannot be saved is put back, so
    // that memory says what its file on disk still says and a later save
    // drops nothing the user kept.
    std::map<suppression_file_ptr,
             std::shared_ptr<const probstore3::suppression_file_t::snapshot_t>>
        before;
    for (const auto& file : files)
        if (const auto store = file->get_file())
            before.emplace(file, store->take_snapshot());
    remove_rules_from_files();
    m_saved = true;
    for (const auto& file : files) {
        if (save_suppression_files(std::set<suppression_file_ptr>{file}, m_error_notification))
            continue;
        m_saved = false;
        const auto store = file->get_file();
        const auto snapshot = before.find(file);
        if (store && snapshot != before.end())
            store->restore(*snapshot->second);
    }
    return m_saved;
}

void delete_suppression_dlg_t::compare_and_set_text_width(int& width, const wxString& text, bool bold)
{
    wxFont font = GetFont();
    if (bold)
        font.MakeBold();
    int text_width = 0;
    int text_height = 0;
    GetTextExtent(text, &text_width, &text_height, nullptr, nullptr, &font);
    width = std::max(width, text_width);
}

void delete_suppression_dlg_t::calculate_min_size()
{
    int width = 0;
    // The explanation wraps; the captions of the grid do not.
    for (int col = 0; col < m_model.GetColumnCount(); ++col)
        compare_and_set_text_width(width, m_model.GetColumnCaption(col) + L"    ", true);
    const wxSize best = GetBestSize();
    SetMinSize(wxSize(std::max(best.x, width + 40), std::max(best.y, 240)));
}

void delete_suppression_dlg_t::on_init_dialog()
{
    m_grid_placeholder1 = find_control<wxPanel>(L"m_grid_placeholder1");
    m_staticText41 = find_control<wxStaticText>(L"m_staticText41");
    m_btn_ok = find_control<wxButton>(L"m_btn_ok");

    m_grid->create(m_grid_placeholder1);
    if (uicore7::ISysWindow* window = m_grid->sys_window())
        m_model.set_window(window);
    m_model.enable_button(true);
    m_model.set_button_text(translate(L"dlg.suppressions.new.view"));
    m_tooltips = std::make_unique<tooltip_model_t>(m_grid->grid(), &m_model, -1,
                                                   suppression_grid_model_t::code_location_column);
    m_grid->wire(m_model, m_header, nullptr, &m_resizing, m_tooltips.get());

    set_title(translate(L"dlg.suppressions.del.title"));
    const wxSize base(420, 200);
    if (m_staticText41)
        m_staticText41->Wrap(ConvertDialogToPixels(base).x - 40);
    calculate_min_size();
    SetSize(get_proportional_size(0.75, 0.6, base));
    CentreOnParent();
    shareddlg3::move_to_visible_area(this);
    validate_dialog_data();
}

} // namespace corr_dialogs2
