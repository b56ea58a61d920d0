#include "corr_dialogs2/stack_dialogs.h"

#include "corr_dialogs2/ui_utils.h"
#include "grid_host.h"

#include "shareddlg3/resources.h"

#include <wx/button.h>
#include <wx/panel.h>
#include <wx/statline.h>

namespace corr_dialogs2 {

wxBEGIN_EVENT_TABLE(stack_dlg_t, shareddlg3::dialog_base_t)
wxEND_EVENT_TABLE()

stack_dlg_t::stack_dlg_t(stack_ptr stack, bool select_mode, int selection)
    : m_stack(std::move(stack)), m_select_mode(select_mode), m_selection(selection),
      m_grid(std::make_unique<detail::grid_host_t>())
{
    set_resource_file(shareddlg3::create_resource_filename(resources::catalog_file, resources::layout_file));
    set_dialog_name(L"dlg.suppressions.stack");
    set_resource_set(resources::resource_set);
    set_help_topic(L"korrin.hlp.ctx.view_stack_f2106");
    m_model.init(m_stack);
}

stack_dlg_t::~stack_dlg_t() { m_grid->detach(); }

gridview8::CGrid* stack_dlg_t::get_grid() const { return m_grid->grid(); }

int stack_dlg_t::get_selection() const { return m_select_mode ? m_selection : -1; }

void stack_dlg_t::on_select()
{
    if (!m_select_mode || !m_grid->grid())
        return;
    const std::vector<int> rows = m_grid->grid()->GetSelectedRows();
    if (rows.size() != 1)
        return;
    m_selection = rows.front();
    end_dialog(wxID_OK);
}

bool stack_dlg_t::on_ok()
{
    if (!m_select_mode)
        return true;
    on_select();
    return false;
}

void stack_dlg_t::on_cancel() { end_dialog(wxID_CANCEL); }

void stack_dlg_t::on_init_dialog()
{
    m_grid_placeholder = find_control<wxPanel>(L"m_grid_placeholder");
    m_staticline4 = find_control<wxStaticLine>(L"m_staticline4");
    m_btn_ok = find_control<wxButton>(L"m_btn_ok");
    set_title(m_select_mode ? translate(L"dlg.suppressions.stack.title.select")
                            : translate(L"dlg.suppressions.stack.title.view"));

    m_grid->create(m_grid_placeholder);
    if (uicore7::ISysWindow* window = m_grid->sys_window())
        m_model.set_window(window);
    m_grid->wire(m_model, m_header, nullptr, &m_resizing, &m_tooltips);

    if (gridview8::CGrid* grid = m_grid->grid()) {
        if (m_select_mode) {
            grid->SetSelectionMode(gridview8::CGrid::smSingle);
            if (m_selection >= 0 && m_selection < m_model.GetRowCount()) {
                grid->SetCurrentRow(m_selection);
                grid->SelectRow(m_selection, true);
            }
            grid->CellActivated().connect([this](int, int) { on_select(); });
        } else {
            grid->SetSelectionMode(gridview8::CGrid::smNone);
        }
    }
    // Viewing needs only Close; the line and OK belong to choosing a frame.
    if (!m_select_mode) {
        if (m_btn_ok)
            m_btn_ok->Hide();
        if (m_staticline4)
            m_staticline4->Hide();
    }

    SetSize(get_proportional_size(0.6, 0.6, wxSize(320, 180)));
    CentreOnParent();
}

void stack_dlg_t::on_update_ui_settings()
{
    if (gridview8::CGrid* grid = m_grid->grid())
        grid->RefreshAll();
}

} // namespace corr_dialogs2
