#pragma once
// The dialog that turns the problems a user selected into a suppression:
// the host builds one candidate rule per problem (probstore3::
// create_candidate_rule_set) and opens the dialog with them and the engine of
// the result. The user names the rule set, picks an existing suppression
// file of the result or types a new name, chooses per rule and aspect
// between the concrete value and any value, edits stacks, and on OK the rule
// set is added to the file and the file saved.
#include "corr_dialogs2/rule_combo_models.h"
#include "corr_dialogs2/export.h"
#include "corr_dialogs2/supp_helpers.h"
#include "corr_dialogs2/supp_name_validation.h"
#include "corr_dialogs2/suppression_file.h"

#include "basekit2/path.h"
#include "corr_engine/engine.h"
#include "corr_engine/suppressions_manager.h"
#include "probstore3/suppression_rule_set.h"
#include "shareddlg3/dialog_base.h"

#include <boost/shared_ptr.hpp>

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

class wxBitmapButton;
class wxButton;
class wxCheckBox;
class wxChoice;
class wxComboBox;
class wxPanel;
class wxRadioButton;
class wxStaticBitmap;
class wxStaticText;
class wxTextCtrl;

namespace corr_dialogs2 {

namespace detail {
class grid_host_t;
}

class CORR_DIALOGS2_API create_suppression_dlg_t : public shareddlg3::dialog_base_t
{
public:
    // rules: the candidate rules (may be null: an empty grid, OK never
    // enabled). engine: the engine of the current result, not owned.
    create_suppression_dlg_t(boost::shared_ptr<probstore3::suppression_rule_set_t> rules,
                             corr_engine::engine_t* engine);
    ~create_suppression_dlg_t() override;

    // The rules of the checked rows, each with the problem-type choice
    // applied, in row order.
    std::vector<rule_ptr> get_rules_from_dialog();
    // The file OK created for a new name; empty when OK used a listed file.
    suppression_file_ptr get_new_suppression_file() const { return m_created_file; }
    // Whether OK added the rule set to a file and saved it (OK also ends the
    // dialog when the user declines to rewrite an old-format file).
    bool is_saved() const { return m_saved; }
    // A new file object from the engine's suppressions manager; null when
    // the file exists but cannot be read.
    suppression_file_ptr create_suppression_file(const basekit2::path_t& path);
    // The result's suppressions folder joined with the user's configured
    // default file name; empty without a configuration.
    basekit2::path_t get_default_filepath() const;
    basekit2::path_t get_suppressions_folder() const;
    void reset_rules_to_default();
    void normalize_stacks();
    void update_ruleset_type(const std::vector<rule_ptr>& rules);
    // The "any problem" choice switches aspect 9 off in the rule.
    void update_rule_by_problem_choice(rule_ptr rule);
    // Aspects the user let match any value through the aspect check boxes.
    std::set<int> get_any_datatypes(int row) const;
    void update_checkbox_states(int row);

    // Runs every check, marks the fields and enables OK; returns whether OK is enabled.
    bool validate_dialog_data();

    const std::vector<suppression_file_ptr>& get_file_list() const { return m_files; }
    boost::shared_ptr<probstore3::suppression_rule_set_t> get_rule_set() const { return m_rules; }
    editable_combo_aspect_model_t& get_model() { return m_model; }
    gridview8::CGrid* get_grid() const;

    // The grid's stack button of a row.
    void on_stack_button(int row);
    // A row was checked or unchecked in the grid.
    void on_check_changed(int row, bool checked);

protected:
    void save_settings() override;
    void on_init_dialog() override;
    void on_update_ui_settings() override;
    void handle_ok(wxCommandEvent& event) override;
    // Whether the rule set may go into an existing file outside the result's
    // suppressions folder (asks the user); true when no question is needed.
    virtual bool can_use_existing_file(const basekit2::path_t& path);
    virtual void show_stack_dialog(int row);
    virtual boost::shared_ptr<supp_file_rewrite_prompt_t> get_rewrite_prompt();

    void on_filename_changed(wxCommandEvent& event);
    void on_supp_name_changed(wxCommandEvent& event);
    void on_browse(wxCommandEvent& event);
    void on_checkbox(wxCommandEvent& event);
    void on_resize(wxSizeEvent& event);

private:
    void init_controls();
    void load_messages();
    void create_supp_files_list();
    void add_default_suppression_file();
    void init_filelist_control();
    void fill_problem_choice();
    void show_controls();
    void update_button_text();
    void setup_dialog_size();
    void show_file_error(const std::wstring& path, const std::wstring& reason);
    // The file OK adds to: a listed one that exists, else a new one; null
    // when there is none (or the user declined an existing file).
    suppression_file_ptr find_target_file(const std::wstring& text, bool& declined);
    basekit2::path_t marker_file() const;

    boost::shared_ptr<probstore3::suppression_rule_set_t> m_rules;
    corr_engine::engine_t* m_engine;
    corr_engine::suppressions_manager_t m_manager;
    editable_combo_aspect_model_t m_model;
    header_vis_model_t m_header;
    gridview8::CProportionalResizingModelEx m_resizing;
    std::unique_ptr<tooltip_model_t> m_tooltips;
    std::unique_ptr<detail::grid_host_t> m_grid;
    std::vector<suppression_file_ptr> m_files;
    suppression_file_ptr m_created_file;
    boost::shared_ptr<supp_file_rewrite_prompt_t> m_rewrite_prompt;
    bool m_saved = false;
    basekit2::_internal::connection_id m_check_connection = 0;
    basekit2::_internal::connection_id m_button_connection = 0;

    // Texts loaded once.
    std::wstring m_title;
    std::wstring m_sample_name;
    std::wstring m_name_control;
    std::wstring m_error_title;
    std::wstring m_select_text;
    std::wstring m_edit_text;
    std::wstring m_view_text;
    std::wstring m_any_value;
    std::wstring m_filter_label;
    std::wstring m_explanation_text;

    wxTextCtrl* m_name = nullptr;
    wxPanel* m_grid_placeholder = nullptr;
    wxComboBox* m_filelist = nullptr;
    wxButton* m_btn_browse = nullptr;
    wxStaticText* m_explanation = nullptr;
    wxStaticText* m_staticText38 = nullptr;
    wxStaticText* m_staticText33 = nullptr;
    wxRadioButton* m_radio_best = nullptr;
    wxRadioButton* m_radio_top = nullptr;
    wxRadioButton* m_radio_any = nullptr;
    wxChoice* m_choice1 = nullptr;
    wxChoice* m_choice_problem = nullptr;
    wxCheckBox* m_checkbox_location = nullptr;
    wxStaticBitmap* m_bitmap7 = nullptr;
    std::map<int, wxCheckBox*> m_checkboxes;
    wxButton* m_btn_ok = nullptr;

    wxDECLARE_EVENT_TABLE();
};

} // namespace corr_dialogs2
