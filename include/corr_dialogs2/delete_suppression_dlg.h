#pragma once
// The dialog that deletes the suppressions a user selected: one row per
// rule set, each ticked; the user may untick some or view a rule's stack,
// and OK removes the ticked ones from their files and saves each touched
// file once.
#include "corr_dialogs2/export.h"
#include "corr_dialogs2/suppression_file.h"
#include "corr_dialogs2/suppression_grid_model.h"

#include "probstore3/suppression_rule_set.h"
#include "shareddlg3/dialog_base.h"

#include <boost/shared_ptr.hpp>

#include <memory>
#include <set>
#include <vector>

class wxButton;
class wxPanel;
class wxStaticText;

namespace corr_dialogs2 {

namespace detail {
class grid_host_t;
}

class CORR_DIALOGS2_API delete_suppression_dlg_t : public shareddlg3::dialog_base_t
{
public:
    explicit delete_suppression_dlg_t(const std::vector<boost::shared_ptr<probstore3::suppression_rule_set_t>>& rule_sets);
    ~delete_suppression_dlg_t() override;

    // The files that hold at least one ticked rule set, each once.
    std::set<suppression_file_ptr> get_updated_files() const;
    // Takes every ticked rule set out of its file (in memory).
    void remove_rules_from_files();
    // Opens the read-only stack view of a rule.
    void on_stack_button(const rule_set_ptr& rule_set, const rule_ptr& rule);
    // A row was ticked or unticked.
    void on_check_changed(int row, bool ticked);
    // OK is enabled exactly when a row is ticked; returns that.
    bool validate_dialog_data();

    // Asked before old-format files are rewritten; by default a
    // supp_file_rewrite_dialog_t. Null: never asked.
    void set_rewrite_prompt(boost::shared_ptr<supp_file_rewrite_prompt_t> prompt) { m_rewrite_prompt = prompt; }
    boost::shared_ptr<supp_file_rewrite_prompt_t> get_rewrite_prompt() const { return m_rewrite_prompt; }
    // Told of each file that could not be saved; by default a supp_file_error_dialog_t.
    void set_error_notification(boost::shared_ptr<supp_file_error_notification_t> notification)
    {
        m_error_notification = notification;
    }
    // Whether OK removed the rules and saved every touched file. A file
    // that could not be saved keeps its rule sets in memory too, and the
    // dialog stays open.
    bool is_saved() const { return m_saved; }

    editable_suppression_grid_model_t& get_model() { return m_model; }
    gridview8::CGrid* get_grid() const;

protected:
    void on_init_dialog() override;
    bool on_ok() override;

private:
    void compare_and_set_text_width(int& width, const wxString& text, bool bold);
    void calculate_min_size();

    editable_suppression_grid_model_t m_model;
    header_vis_model_t m_header;
    gridview8::CProportionalResizingModelEx m_resizing;
    std::unique_ptr<tooltip_model_t> m_tooltips;
    std::unique_ptr<detail::grid_host_t> m_grid;
    boost::shared_ptr<supp_file_rewrite_prompt_t> m_rewrite_prompt;
    boost::shared_ptr<supp_file_error_notification_t> m_error_notification;
    basekit2::_internal::connection_id m_check_connection = 0;
    basekit2::_internal::connection_id m_button_connection = 0;
    bool m_saved = false;

    wxPanel* m_grid_placeholder1 = nullptr;
    wxStaticText* m_staticText41 = nullptr;
    wxButton* m_btn_ok = nullptr;

    wxDECLARE_EVENT_TABLE();
};

} // namespace corr_dialogs2
