#include "corr_dialogs2/stack_dialogs.h"

#include "corr_dialogs2/ui_utils.h"
#include "grid_host.h"

#include "shareddlg3/resources.h"

#include <wx/button.h>
#include <wx/panel.h>
#include <wx/stattext.h>
#include <wx/xrc/xmlres.h>

#include <algorithm>

namespace corr_dialogs2 {

wxBEGIN_EVENT_TABLE(edit_stack_dlg_t, shareddlg3::dialog_base_t)
    EVT_BUTTON(XRCID("m_btn_reset"), edit_stack_dlg_t::on_reset)
wxEND_EVENT_TABLE()

edit_stack_dlg_t::edit_stack_dlg_t(rule_ptr rule)
    : m_rule(std::move(rule)), m_grid(std::make_unique<detail::grid_host_t>())
{
    set_resource_file(shareddlg3::create_resource_filename(resources::catalog_file, resources::layout_file));
    set_dialog_name(L"dlg.suppressions.edit_stack");
    set_resource_set(resources::resource_set);
    set_help_topic(L"korrin.hlp.ctx.select_stack_frame_f2105");
    if (m_rule) {
        // A rule read from an old file names one location: the editor works on frames.
        m_rule->convert_to_stack();
        m_original = m_rule->clone();
    }
    m_model.init(m_rule);
    m_model.set_count(m_model.GetRowCount());
    init_checkboxes();
}

edit_stack_dlg_t::~edit_stack_dlg_t() { m_grid->detach(); }

gridview8::CGrid* edit_stack_dlg_t::get_grid() const { return m_grid->grid(); }

int edit_stack_dlg_t::get_best_level() const
{
    if (!m_rule)
        return -1;
    const stack_ptr stack = m_rule->get_stack(false);
    return stack ? stack->get_best_level() : -1;
}

void edit_stack_dlg_t::init_checkboxes()
{
    for (int row = 0; row < m_model.get_count(); ++row)
        m_model.set_checked(row, supp_helpers::is_frame_active(m_rule, row));
    if (gridview8::CGrid* grid = m_grid->grid())
        grid->RefreshAll();
}

void edit_stack_dlg_t::reset_to_default()
{
    m_model.save_editors_data();
    supp_helpers::reset_to_default(m_rule);
    init_checkboxes();
}

void edit_stack_dlg_t::on_reset(wxCommandEvent&) { reset_to_default(); }

void edit_stack_dlg_t::save_settings()
{
    // A choice still open in the cell editor belongs to the rule too.
    m_model.save_editors_data();
    if (gridview8::CGrid* grid = m_grid->grid())
        grid->SetCurrentRow(-1);
    for (int row = 0; row < m_model.get_count(); ++row)
        supp_helpers::set_frame_active(m_rule, row, m_model.is_checked(row));
}

void edit_stack_dlg_t::on_cancel()
{
    // Field choices reach the rule as they are made; Cancel takes them back.
    m_model.save_editors_data();
    if (m_rule && m_original)
        m_rule->copy_items_from(*m_original);
    dialog_base_t::on_cancel();
}

void edit_stack_dlg_t::on_init_dialog()
{
    m_grid_placeholder = find_control<wxPanel>(L"m_grid_placeholder");
    m_btn_reset = find_control<wxButton>(L"m_btn_reset");
    set_title(translate(L"dlg.suppressions.stack.title.select"));

    m_grid->create(m_grid_placeholder);
    if (uicore7::ISysWindow* window = m_grid->sys_window()) {
        m_model.init(window);
        m_model.set_window(window);
    }
    const auto& fields = stack_combo_grid_model_t::get_stack_datatypes();
    const auto line = std::find(fields.begin(), fields.end(), suppfmt3::sdt_line);
    if (line != fields.end()) // line numbers are short
        m_resizing.SetFixedWidth(static_cast<int>(line - fields.begin()), GetTextExtent(L"Line 00000").x);
    m_grid->wire(m_model, m_header, &m_model, &m_resizing, &m_tooltips);

    const wxSize base(360, 200);
    if (auto* explanation = find_control<wxStaticText>(L"m_edit_stack_explanation"))
        explanation->Wrap(ConvertDialogToPixels(base).x - 40);
    Layout();
    SetMinSize(GetBestSize());
    SetSize(get_proportional_size(0.7, 0.6, base));
    CentreOnParent();
}

void edit_stack_dlg_t::on_update_ui_settings()
{
    if (gridview8::CGrid* grid = m_grid->grid())
        grid->RefreshAll();
}

} // namespace corr_dialogs2
