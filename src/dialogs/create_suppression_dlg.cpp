#include "corr_dialogs2/create_suppression_dlg.h"

#include "corr_dialogs2/supp_file_dialogs.h"
#include "corr_dialogs2/stack_dialogs.h"
#include "corr_dialogs2/ui_utils.h"
#include "grid_host.h"

#include "basekit2/config.h"
#include "platkit/strings/convert.h"
#include "shareddlg3/file_dialogs.h"
#include "shareddlg3/message_window.h"
#include "shareddlg3/resources.h"
#include "shareddlg3/utils.h"
#include "wxkit1/image_loader.h"
#include "wxkit1/ui_settings.h"

#include <boost/make_shared.hpp>

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/choice.h>
#include <wx/combobox.h>
#include <wx/panel.h>
#include <wx/radiobut.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>
#include <wx/xrc/xmlres.h>

#include <algorithm>

namespace corr_dialogs2 {

namespace {

constexpr const wchar_t* config_section = L"dialogs2.suppressions";
constexpr const wchar_t* config_default_filename = L"default_filename";

using suppfmt3::suppfmt_datatype;

bool same_folder(const basekit2::path_t& a, const basekit2::path_t& b)
{
    auto normal = [](const basekit2::path_t& p) {
        std::wstring s = basekit2::from_fs(p.fs().lexically_normal());
        while (s.size() > 1 && (s.back() == L'/' || s.back() == L'\\'))
            s.pop_back();
        return s;
    };
    return normal(a) == normal(b);
}

wxColour highlight_colour() { return wxkit1::ui_settings_t::get_color(wxkit1::ui_settings_t::color_invalid_input); }
wxColour normal_colour() { return wxkit1::ui_settings_t::get_color(wxkit1::ui_settings_t::color_text_background); }

// A rule that uses only its best frame is still the default kind.
bool uses_best_location_only(const rule_ptr& rule)
{
    const stack_ptr stack = rule ? rule->get_stack(false) : stack_ptr();
    if (!stack)
        return true;
    return supp_helpers::get_active_frames_count(stack) == 1 && stack->get_best_level() >= 0 &&
           stack->is_frame_active(stack->get_best_level());
}

// Remembers whether each rule uses its problem type, and puts that back on
// destruction unless kept: OK applies the "any problem type" choice to the
// rules, and an OK that saves nothing must leave them as they were, so that
// choosing the concrete type again counts.
class problem_type_state_t
{
public:
    explicit problem_type_state_t(const editable_combo_aspect_model_t& model)
    {
        for (int row = 0; row < model.GetRowCount(); ++row)
            if (rule_ptr rule = model.get_rule(row))
                m_states.emplace_back(rule, rule->is_item_active(suppfmt3::sdt_problem_type));
    }
    ~problem_type_state_t()
    {
        if (m_keep)
            return;
        for (const auto& [rule, active] : m_states)
            rule->set_item_active(active, suppfmt3::sdt_problem_type);
    }
    problem_type_state_t(const problem_type_state_t&) = delete;
    problem_type_state_t& operator=(const problem_type_state_t&) = delete;

    void keep() { m_keep = true; }

private:
    std::vector<std::pair<rule_ptr, bool>> m_states;
    bool m_keep = false;
};

} // namespace

wxBEGIN_EVENT_TABLE(create_suppression_dlg_t, shareddlg3::dialog_base_t)
    EVT_TEXT(XRCID("m_filelist"), create_suppression_dlg_t::on_filename_changed)
    EVT_COMBOBOX(XRCID("m_filelist"), create_suppression_dlg_t::on_filename_changed)
    EVT_TEXT(XRCID("m_name"), create_suppression_dlg_t::on_supp_name_changed)
    EVT_BUTTON(XRCID("m_btn_browse"), create_suppression_dlg_t::on_browse)
    EVT_CHECKBOX(XRCID("m_checkbox_prob"), create_suppression_dlg_t::on_checkbox)
    EVT_CHECKBOX(XRCID("m_checkbox_descr"), create_suppression_dlg_t::on_checkbox)
    EVT_CHECKBOX(XRCID("m_checkbox_module"), create_suppression_dlg_t::on_checkbox)
    EVT_CHECKBOX(XRCID("m_checkbox_func"), create_suppression_dlg_t::on_checkbox)
    EVT_CHECKBOX(XRCID("m_checkbox_source"), create_suppression_dlg_t::on_checkbox)
    EVT_CHECKBOX(XRCID("m_checkbox_line"), create_suppression_dlg_t::on_checkbox)
    EVT_SIZE(create_suppression_dlg_t::on_resize)
wxEND_EVENT_TABLE()

create_suppression_dlg_t::create_suppression_dlg_t(boost::shared_ptr<probstore3::suppression_rule_set_t> rules,
                                                   corr_engine::engine_t* engine)
    : m_rules(std::move(rules)), m_engine(engine), m_grid(std::make_unique<detail::grid_host_t>())
{
    set_resource_file(shareddlg3::create_resource_filename(resources::catalog_file, resources::layout_file));
    set_dialog_name(L"dlg.suppressions.new1");
    set_resource_set(resources::resource_set);
    set_help_topic(L"korrin.hlp.ctx.suppress_create_f2100");
    if (m_rules) {
        m_model.init(m_rules);
        m_model.set_count(static_cast<int>(m_rules->get_rules().size()));
        for (int row = 0; row < m_model.get_count(); ++row)
            m_model.set_checked(row, true);
        reset_rules_to_default();
    }
    m_rewrite_prompt = boost::make_shared<supp_file_rewrite_dialog_t>(this);
    m_check_connection = m_model.check_changed().connect([this](int row, bool on) { on_check_changed(row, on); });
    m_button_connection = m_model.button_clicked().connect([this](int row) { on_stack_button(row); });
}

create_suppression_dlg_t::~create_suppression_dlg_t()
{
    m_model.check_changed().disconnect(m_check_connection);
    m_model.button_clicked().disconnect(m_button_connection);
    m_grid->detach();
}

gridview8::CGrid* create_suppression_dlg_t::get_grid() const { return m_grid->grid(); }

basekit2::path_t create_suppression_dlg_t::marker_file() const
{
    return m_engine && m_engine->has_result() ? m_engine->get_marker_file() : basekit2::path_t();
}

basekit2::path_t create_suppression_dlg_t::get_suppressions_folder() const
{
    const basekit2::path_t marker = marker_file();
    return marker.empty() ? basekit2::path_t() : m_manager.get_result_suppressions_folder(marker);
}

void create_suppression_dlg_t::reset_rules_to_default()
{
    for (int row = 0; row < m_model.GetRowCount(); ++row)
        supp_helpers::reset_to_default(m_model.get_rule(row));
}

void create_suppression_dlg_t::normalize_stacks()
{
    for (int row = 0; row < m_model.GetRowCount(); ++row)
        if (const rule_ptr rule = m_model.get_rule(row))
            if (const stack_ptr stack = rule->get_stack(false))
                stack->normalize();
}

void create_suppression_dlg_t::update_ruleset_type(const std::vector<rule_ptr>& rules)
{
    normalize_stacks();
    if (!m_rules)
        return;
    const bool best_only = std::all_of(rules.begin(), rules.end(), uses_best_location_only);
    m_rules->set_type(best_only ? suppfmt3::srt_best_location : suppfmt3::srt_custom_stack);
}

void create_suppression_dlg_t::update_rule_by_problem_choice(rule_ptr rule)
{
    if (!rule || !m_choice_problem)
        return;
    if (m_choice_problem->GetStringSelection().ToStdWstring() == m_any_value)
        rule->set_item_active(false, suppfmt3::sdt_problem_type);
}

std::vector<rule_ptr> create_suppression_dlg_t::get_rules_from_dialog()
{
    std::vector<rule_ptr> rules;
    for (int row = 0; row < m_model.GetRowCount(); ++row) {
        if (!m_model.is_checked(row))
            continue;
        rule_ptr rule = m_model.get_rule(row);
        if (!rule)
            continue;
        update_rule_by_problem_choice(rule);
        rules.push_back(rule);
    }
    return rules;
}

std::set<int> create_suppression_dlg_t::get_any_datatypes(int row) const
{
    std::set<int> any;
    const rule_ptr rule = m_model.get_rule(row);
    const stack_ptr stack = rule ? rule->get_stack(false) : stack_ptr();
    for (const auto& [datatype, box] : m_checkboxes) {
        if (!box || !box->GetValue())
            continue;
        const bool frame_field = datatype != suppfmt3::sdt_problem_type && datatype != suppfmt3::sdt_description;
        if (frame_field && (!stack || !rule->is_item_available(static_cast<suppfmt_datatype>(datatype))))
            continue;
        any.insert(datatype);
    }
    return any;
}

void create_suppression_dlg_t::update_checkbox_states(int row)
{
    const rule_ptr rule = m_model.get_rule(row);
    for (const auto& [datatype, box] : m_checkboxes) {
        if (!box)
            continue;
        const auto type = static_cast<suppfmt_datatype>(datatype);
        box->Enable(rule && rule->is_item_available(type));
        box->SetValue(rule && !rule->is_item_active(type));
    }
}

suppression_file_ptr create_suppression_dlg_t::create_suppression_file(const basekit2::path_t& path)
{
    const auto file = m_manager.create_suppression(marker_file(), path);
    return file ? wrap_suppression_file(file) : suppression_file_ptr();
}

basekit2::path_t create_suppression_dlg_t::get_default_filepath() const
{
    basekit2::advanced_xml_config_t config;
    const basekit2::path_t user = basekit2::config_manager_t::get_user_config(config_section);
    const basekit2::path_t file = user.exists() ? user : basekit2::config_manager_t::get_default_config(config_section);
    if (file.empty() || !config.load(file))
        return {};
    const std::wstring name = trim_text(config.get_string(config_default_filename));
    const basekit2::path_t folder = get_suppressions_folder();
    if (name.empty() || folder.empty())
        return {};
    return folder.join(name);
}

void create_suppression_dlg_t::create_supp_files_list()
{
    m_files.clear();
    const basekit2::path_t marker = marker_file();
    if (marker.empty())
        return;
    for (const auto& file : m_manager.get_result_suppressions(marker))
        m_files.push_back(wrap_suppression_file(file));
    add_default_suppression_file();
}

void create_suppression_dlg_t::add_default_suppression_file()
{
    const basekit2::path_t path = get_default_filepath();
    if (path.empty())
        return;
    for (const auto& file : m_files)
        if (basekit2::path_t(file->get_path()) == path)
            return;
    if (m_manager.get_project_storage(marker_file()).empty() || !path.exists())
        return;
    if (auto file = create_suppression_file(path))
        m_files.push_back(file);
}

void create_suppression_dlg_t::init_filelist_control()
{
    if (!m_filelist)
        return;
    m_filelist->Clear();
    for (const auto& file : m_files)
        m_filelist->Append(file->get_path());
    const basekit2::path_t default_path = get_default_filepath();
    if (!default_path.empty())
        m_filelist->ChangeValue(default_path.str());
}

void create_suppression_dlg_t::fill_problem_choice()
{
    if (!m_choice_problem)
        return;
    m_choice_problem->Clear();
    const rule_ptr first = m_model.get_rule(0);
    m_choice_problem->Append(first ? first->get_field_value(suppfmt3::sdt_problem_type) : std::wstring());
    m_choice_problem->Append(m_any_value);
    m_choice_problem->SetSelection(0);
}

void create_suppression_dlg_t::show_controls()
{
    // The per-aspect choice is made in the grid; these stay in the layout
    // only so that older layouts and this one share their control names.
    for (wxWindow* window : std::initializer_list<wxWindow*>{m_choice1, m_checkbox_location, m_radio_best,
                                                             m_radio_top, m_radio_any})
        if (window)
            window->Hide();
    for (const int datatype : {suppfmt3::sdt_module, suppfmt3::sdt_function, suppfmt3::sdt_source,
                               suppfmt3::sdt_line, suppfmt3::sdt_problem_type})
        if (wxCheckBox* box = m_checkboxes[datatype])
            box->Hide();
}

void create_suppression_dlg_t::update_button_text() { m_model.set_button_text(m_edit_text); }

void create_suppression_dlg_t::init_controls()
{
    m_name = find_control<wxTextCtrl>(L"m_name");
    m_grid_placeholder = find_control<wxPanel>(L"m_grid_placeholder");
    m_filelist = find_control<wxComboBox>(L"m_filelist");
    m_btn_browse = find_control<wxButton>(L"m_btn_browse");
    m_explanation = find_control<wxStaticText>(L"m_explanation");
    m_staticText38 = find_control<wxStaticText>(L"m_staticText38");
    m_staticText33 = find_control<wxStaticText>(L"m_staticText33");
    m_radio_best = find_control<wxRadioButton>(L"m_radio_best");
    m_radio_top = find_control<wxRadioButton>(L"m_radio_top");
    m_radio_any = find_control<wxRadioButton>(L"m_radio_any");
    m_choice1 = find_control<wxChoice>(L"m_choice1");
    m_choice_problem = find_control<wxChoice>(L"m_choice_problem");
    m_checkbox_location = find_control<wxCheckBox>(L"m_checkbox_location");
    m_bitmap7 = find_control<wxStaticBitmap>(L"m_bitmap7");
    m_checkboxes[suppfmt3::sdt_problem_type] = find_control<wxCheckBox>(L"m_checkbox_prob");
    m_checkboxes[suppfmt3::sdt_description] = find_control<wxCheckBox>(L"m_checkbox_descr");
    m_checkboxes[suppfmt3::sdt_module] = find_control<wxCheckBox>(L"m_checkbox_module");
    m_checkboxes[suppfmt3::sdt_function] = find_control<wxCheckBox>(L"m_checkbox_func");
    m_checkboxes[suppfmt3::sdt_source] = find_control<wxCheckBox>(L"m_checkbox_source");
    m_checkboxes[suppfmt3::sdt_line] = find_control<wxCheckBox>(L"m_checkbox_line");
    m_btn_ok = find_control<wxButton>(L"m_btn_ok");
}

void create_suppression_dlg_t::load_messages()
{
    m_title = translate(L"dlg.suppressions.new.title");
    m_sample_name = translate(L"dlg.suppressions.new.sample");
    m_name_control = translate(L"dlg.suppressions.new.name_control");
    m_error_title = translate(L"dlg.suppressions.new.file_error_title");
    m_select_text = translate(L"dlg.suppressions.new.select");
    m_edit_text = translate(L"dlg.suppressions.new.edit");
    m_view_text = translate(L"dlg.suppressions.new.view");
    m_any_value = translate(L"dlg.suppression_grid.any_value");
    m_filter_label = translate(L"panel.suppressions.ext");
}

void create_suppression_dlg_t::on_init_dialog()
{
    init_controls();
    load_messages();
    set_title(m_title);
    if (m_name) {
        m_name->SetHint(m_name_control);
        m_name->ChangeValue(m_sample_name);
    }
    if (m_explanation)
        m_explanation_text = m_explanation->GetLabel().ToStdWstring();
    if (m_bitmap7) {
        const wxkit1::image_loader_t images(
            shareddlg3::create_resource_filename(resources::catalog_file, resources::image_file));
        m_bitmap7->SetBitmap(images.load_bitmap(L"info-big"));
    }

    m_grid->create(m_grid_placeholder);
    if (uicore7::ISysWindow* window = m_grid->sys_window())
        m_model.init(window);
    m_model.enable_button(true);
    update_button_text();
    m_resizing.SetFixedWidth(combo_aspect_model_t::frames_column, GetTextExtent(L"0000000").x);
    m_tooltips = std::make_unique<tooltip_model_t>(m_grid->grid(), &m_model, -1,
                                                   combo_aspect_model_t::stack_column);
    m_grid->wire(m_model, m_header, &m_model, &m_resizing, m_tooltips.get());
    if (gridview8::CGrid* grid = m_grid->grid()) {
        grid->CurrentRowChanged().connect([this](int row) { update_checkbox_states(row < 0 ? 0 : row); });
        if (m_model.GetRowCount() > 0)
            grid->SetCurrentRow(0);
    }

    create_supp_files_list();
    init_filelist_control();
    fill_problem_choice();
    show_controls();
    update_checkbox_states(0);
    setup_dialog_size();
    validate_dialog_data();
}

void create_suppression_dlg_t::setup_dialog_size()
{
    // The explanation is wrapped to the base width first, so that the best
    // size is not one line of it.
    const wxSize base(400, 250);
    const int wrap_width = ConvertDialogToPixels(base).x - 80;
    if (m_explanation) {
        m_explanation->SetLabel(m_explanation_text);
        m_explanation->Wrap(wrap_width);
    }
    Layout();
    SetMinSize(GetBestSize());
    SetSize(get_proportional_size(0.75, 0.7, base));
    Layout();
    CentreOnParent();
    shareddlg3::move_to_visible_area(this);
}

void create_suppression_dlg_t::on_update_ui_settings()
{
    validate_dialog_data();
    if (gridview8::CGrid* grid = m_grid->grid())
        grid->RefreshAll();
}

bool create_suppression_dlg_t::validate_dialog_data()
{
    if (!m_filelist || !m_name)
        return false;
    const file_name_problem_t problem =
        check_suppression_file_name(m_filelist->GetValue().ToStdWstring(), get_suppressions_folder().str());
    const bool marked = problem != file_name_problem_t::none && problem != file_name_problem_t::no_folder;
    shareddlg3::set_color_and_tooltip(m_filelist, marked ? highlight_colour() : normal_colour(),
                                      get_file_name_tooltip(problem));

    const bool name_valid = is_rule_set_name_valid(m_name->GetValue().ToStdWstring());
    shareddlg3::set_color_and_tooltip(m_name, name_valid ? normal_colour() : highlight_colour(),
                                      name_valid ? std::wstring() : get_rule_set_name_tooltip());

    const bool enable = is_create_ok_enabled(problem, m_model.has_checked_rules(), name_valid);
    if (m_btn_ok)
        m_btn_ok->Enable(enable);
    return enable;
}

void create_suppression_dlg_t::on_filename_changed(wxCommandEvent&) { validate_dialog_data(); }

void create_suppression_dlg_t::on_supp_name_changed(wxCommandEvent&) { validate_dialog_data(); }

void create_suppression_dlg_t::on_check_changed(int, bool) { validate_dialog_data(); }

void create_suppression_dlg_t::on_checkbox(wxCommandEvent& event)
{
    const gridview8::CGrid* grid = m_grid->grid();
    const int row = grid && grid->GetCurrentRow() >= 0 ? grid->GetCurrentRow() : 0;
    const rule_ptr rule = m_model.get_rule(row);
    for (const auto& [datatype, box] : m_checkboxes) {
        if (box && box->GetId() == event.GetId() && rule) {
            // Checked means "any value": the aspect is no longer used.
            rule->set_item_active(!box->GetValue(), static_cast<suppfmt_datatype>(datatype));
        }
    }
    if (gridview8::CGrid* g = m_grid->grid())
        g->RefreshRow(row);
    update_checkbox_states(row);
}

void create_suppression_dlg_t::on_resize(wxSizeEvent& event)
{
    event.Skip();
    // Wider than the base: the explanation may take fewer lines.
    if (m_explanation && IsShown() && event.GetSize().x > GetMinSize().x) {
        m_explanation->SetLabel(m_explanation_text);
        m_explanation->Wrap(event.GetSize().x - 80);
    }
}

void create_suppression_dlg_t::on_browse(wxCommandEvent&)
{
    if (!m_filelist)
        return;
    basekit2::path_t start(trim_text(m_filelist->GetValue().ToStdWstring()));
    if (start.empty() || !start.is_absolute())
        start = get_suppressions_folder().join(start);
    const basekit2::path_t chosen = shareddlg3::file_dlg(this, shareddlg3::file_dlg_mode::open, start,
                                                         corr_engine::suppressions_manager_t::SuppressionFileExt,
                                                         m_filter_label);
    if (!chosen.empty())
        m_filelist->SetValue(chosen.str());
}

bool create_suppression_dlg_t::can_use_existing_file(const basekit2::path_t& path)
{
    if (!path.exists() || same_folder(path.parent(), get_suppressions_folder()))
        return true;
    platkit::generic::varg_list args;
    args.add(L"file_path", platkit::types::variant(path.utf8()));
    const shareddlg3::message_window_t message(translate(L"dlg.suppressions.supp_file_exists_title"),
                                               translate(L"dlg.suppressions.supp_file_exists_description", args),
                                               shareddlg3::message_window_t::btn_yes |
                                                   shareddlg3::message_window_t::btn_no,
                                               shareddlg3::message_window_t::icon_question);
    const int answer = shareddlg3::show_modal(message, this);
    return answer == shareddlg3::message_window_t::answer_yes || answer == shareddlg3::message_window_t::answer_all;
}

void create_suppression_dlg_t::show_stack_dialog(int row)
{
    const rule_ptr rule = m_model.get_rule(row);
    if (!rule)
        return;
    edit_stack_dlg_t dialog(rule);
    dialog.show_modal(this);
    if (gridview8::CGrid* grid = m_grid->grid())
        grid->RefreshRow(row);
    update_checkbox_states(row);
}

void create_suppression_dlg_t::on_stack_button(int row) { show_stack_dialog(row); }

boost::shared_ptr<supp_file_rewrite_prompt_t> create_suppression_dlg_t::get_rewrite_prompt()
{
    return m_rewrite_prompt;
}

void create_suppression_dlg_t::save_settings() { m_model.save_editors_data(); }

void create_suppression_dlg_t::show_file_error(const std::wstring& path, const std::wstring& reason)
{
    platkit::generic::varg_list args;
    args.add(L"file_path", path);
    args.add(L"error", reason);
    shareddlg3::show_msg_box(this, m_error_title, translate(L"dlg.suppressions.file_error_description", args),
                             wxOK | wxICON_ERROR);
}

suppression_file_ptr create_suppression_dlg_t::find_target_file(const std::wstring& text, bool& declined)
{
    declined = false;
    if (m_filelist) {
        const int index = m_filelist->FindString(text, false);
        if (index != wxNOT_FOUND && static_cast<size_t>(index) < m_files.size() &&
            basekit2::path_t(m_files[static_cast<size_t>(index)]->get_path()).exists())
            return m_files[static_cast<size_t>(index)];
    }
    const basekit2::path_t typed(text);
    basekit2::path_t new_path;
    if (typed.is_absolute()) {
        new_path = typed.replace_extension(corr_engine::suppressions_manager_t::SuppressionFileExt);
        if (!can_use_existing_file(new_path)) {
            declined = true;
            return {};
        }
    } else {
        // A typed name always lands in the result's own folder.
        new_path = get_suppressions_folder().join(typed.leaf());
    }
    m_created_file = create_suppression_file(new_path);
    return m_created_file;
}

void create_suppression_dlg_t::handle_ok(wxCommandEvent&)
{
    save_settings();
    const std::wstring text = m_filelist ? trim_text(m_filelist->GetValue().ToStdWstring()) : std::wstring();

    problem_type_state_t problem_types(m_model);
    const std::vector<rule_ptr> rules = get_rules_from_dialog();
    if (rules.empty()) {
        show_file_error(text, translate(L"dlg.suppressions.new.error_no_rules"));
        return;
    }

    bool declined = false;
    const suppression_file_ptr target = find_target_file(text, declined);
    if (declined)
        return;
    if (!target) {
        const auto& errors = m_manager.get_last_errors();
        show_file_error(text, errors.empty() ? translate(L"dlg.suppressions.new.error_no_file") : errors.front());
        return;
    }

    const std::wstring name = m_name ? trim_text(m_name->GetValue().ToStdWstring()) : std::wstring();
    m_rules->set_name(name.empty() ? m_sample_name : name);
    m_rules->set_rules(rules);

    const std::set<suppression_file_ptr> files{target};
    // Declining the rewrite ends the operation: nothing is added, the file stays as it was.
    if (confirm_rewrite_if_needed(get_rewrite_prompt(), files)) {
        update_ruleset_type(rules);
        target->add_suppression(m_rules);
        if (!save_suppression_files(files, boost::make_shared<supp_file_error_dialog_t>(this))) {
            // The file on disk is unchanged; keep its object in step for another try.
            target->remove_suppression(m_rules);
            return;
        }
        m_saved = true;
        problem_types.keep();
    }
    end_dialog(wxID_OK);
}

} // namespace corr_dialogs2
