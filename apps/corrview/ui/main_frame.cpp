#include "main_frame.h"

#include "dialog_services.h"
#include "import_progress_dlg.h"
#include "problems_view.h"
#include "source_pane.h"
#include "suppressions_view.h"
#include "viewer_ide_env.h"

#include "../host/import_job.h"

#include "corr_dialogs2/create_suppression_dlg.h"
#include "corr_dialogs2/delete_suppression_dlg.h"
#include "corr_dialogs2/export_dialog.h"
#include "corr_dialogs2/files_filter_dialog.h"
#include "corr_dialogs2/stack_dialogs.h"
#include "corr_dialogs2/ui_utils.h"
#include "corr_dialogs2/version.h"
#include "eil1/message_bridge.h"
#include "platkit/strings/convert.h"

#include <wx/menu.h>
#include <wx/notebook.h>
#include <wx/sizer.h>
#include <wx/splitter.h>

namespace corrview {

using corr_dialogs2::translate;
using platkit::generic::varg_list;

namespace {

std::wstring join_lines(const std::vector<std::wstring>& lines, size_t most = 10)
{
    std::wstring out;
    for (size_t i = 0; i < lines.size() && i < most; ++i)
        out += (out.empty() ? L"" : L"\n") + lines[i];
    if (lines.size() > most)
        out += L"\n" +
               translate(L"corrview.more_lines", varg_list().add(L"count", lines.size() - most));
    return out;
}

} // namespace

main_frame_t::main_frame_t()
    : wxFrame(nullptr, wxID_ANY, translate(L"corrview.title.empty"), wxDefaultPosition,
              wxSize(1400, 850))
{
    build_menus();
    CreateStatusBar();
    // The views on the left, the source of the selected frame on the right.
    m_splitter = new wxSplitterWindow(this, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                                      wxSP_LIVE_UPDATE | wxSP_3DSASH);
    m_splitter->SetMinimumPaneSize(120);
    m_notebook = new wxNotebook(m_splitter, wxID_ANY);
    m_problems = new problems_view_t(m_notebook, m_session);
    m_suppressions = new suppressions_view_t(m_notebook, m_session);
    m_notebook->AddPage(m_problems, translate(L"corrview.tab.problems"), true);
    m_notebook->AddPage(m_suppressions, translate(L"corrview.tab.suppressions"));
    m_suppressions->on_view_stack(
        [this](const corr_dialogs2::rule_ptr& rule) { view_stack(rule); });
    m_source = new source_pane_t(m_splitter);
    m_splitter->SplitVertically(m_notebook, m_source, -FromDIP(560));
    m_splitter->SetSashGravity(0.6);
    m_ide = std::make_unique<viewer_ide_env_t>(*this, *m_source);
    m_problems->on_frame_selected([this](const probstore3::frame_t* frame) {
        if (frame)
            m_source->show_frame(*frame);
        else
            m_source->clear();
    });
    m_problems->on_frame_activated(
        [this](const probstore3::frame_t* frame) { m_source->open_in_editor(*frame); });
    auto* sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(m_splitter, 1, wxEXPAND);
    SetSizer(sizer);
    update_title_and_status();
    update_actions();
}

main_frame_t::~main_frame_t()
{
    // The problems view may outlive the source pane while the windows go.
    m_problems->on_frame_selected(nullptr);
    m_problems->on_frame_activated(nullptr);
}

void main_frame_t::build_menus()
{
    auto* file = new wxMenu;
    file->Append(id_import, translate(L"corrview.menu.import"));
    file->Append(id_open, translate(L"corrview.menu.open"));
    file->Append(id_export, translate(L"corrview.menu.export"));
    file->AppendSeparator();
    file->Append(wxID_EXIT, translate(L"corrview.menu.exit"));

    auto* suppressions = new wxMenu;
    suppressions->Append(id_create_suppression, translate(L"corrview.menu.create_suppression"));
    suppressions->Append(id_delete_suppression, translate(L"corrview.menu.delete_suppression"));
    suppressions->Append(id_view_stack, translate(L"corrview.menu.view_stack"));

    auto* tools = new wxMenu;
    tools->Append(id_find, translate(L"corrview.menu.find"));
    tools->Append(id_filter_sources, translate(L"corrview.menu.filter_sources"));

    auto* help = new wxMenu;
    help->Append(wxID_ABOUT, translate(L"corrview.menu.about"));

    auto* bar = new wxMenuBar;
    bar->Append(file, translate(L"corrview.menu.file"));
    bar->Append(suppressions, translate(L"corrview.menu.suppressions"));
    bar->Append(tools, translate(L"corrview.menu.tools"));
    bar->Append(help, translate(L"corrview.menu.help"));
    SetMenuBar(bar);

    struct action_t
    {
        int id;
        void (main_frame_t::*run)();
    };
    const action_t actions[] = {
        {id_import, &main_frame_t::on_import},
        {id_open, &main_frame_t::on_open},
        {id_export, &main_frame_t::on_export},
        {wxID_EXIT, &main_frame_t::on_exit},
        {id_filter_sources, &main_frame_t::on_filter_sources},
        {id_find, &main_frame_t::on_find},
        {id_create_suppression, &main_frame_t::on_create_suppression},
        {id_delete_suppression, &main_frame_t::on_delete_suppression},
        {id_view_stack, &main_frame_t::on_view_stack},
        {wxID_ABOUT, &main_frame_t::on_about},
    };
    for (const action_t& action : actions) {
        const auto run = action.run;
        Bind(
            wxEVT_MENU, [this, run](wxCommandEvent&) { (this->*run)(); }, action.id);
    }
}

void main_frame_t::on_exit()
{
    Close();
}

bool main_frame_t::open_result(const basekit2::path_t& where)
{
    if (!m_session.open(where)) {
        show_error(this, translate(L"corrview.open.failed.title"),
                   translate(L"corrview.open.failed.text",
                             varg_list().add(L"reason", m_session.last_error())));
        return false;
    }
    show_session();
    return true;
}

void main_frame_t::show_session()
{
    m_source->set_result(m_session.engine().get());
    m_problems->refresh();
    m_suppressions->refresh();
    if (!m_session.problems().empty())
        m_problems->show_problem(0);
    update_title_and_status();
    update_actions();
    if (!m_session.warnings().empty())
        SetStatusText(translate(L"corrview.status.warnings",
                                varg_list()
                                    .add(L"count", m_session.warnings().size())
                                    .add(L"first", m_session.warnings().front())));
}

void main_frame_t::reload_suppressions()
{
    m_session.reload_suppressions();
    m_problems->refresh();
    m_suppressions->refresh();
    update_title_and_status();
}

void main_frame_t::SetStatusText(const wxString& text, int number)
{
    wxFrame::SetStatusText(text, number);
    if (m_ide && number == 0)
        if (auto* bridge = m_ide->GetMessageBridge())
            bridge->ShowStatus(text.ToStdWstring().c_str());
}

void main_frame_t::update_title_and_status()
{
    if (!m_session.is_open()) {
        SetTitle(translate(L"corrview.title.empty"));
        SetStatusText(translate(L"corrview.status.no_result"));
        return;
    }
    const auto engine = m_session.engine();
    SetTitle(translate(L"corrview.title", varg_list()
                                              .add(L"result_name", engine->get_result_name())
                                              .add(L"result_dir", engine->get_result_dir().str())));
    SetStatusText(translate(L"corrview.status.problems",
                            varg_list()
                                .add(L"count", m_session.problems().size())
                                .add(L"suppressed", m_session.suppressed_count())
                                .add(L"rule_sets", m_session.rule_sets().size())));
}

void main_frame_t::update_actions()
{
    const bool open = m_session.is_open();
    wxMenuBar* bar = GetMenuBar();
    for (int id : {int(id_export), int(id_create_suppression), int(id_delete_suppression),
                   int(id_view_stack), int(id_filter_sources)})
        if (bar->FindItem(id))
            bar->Enable(id, open);
}

void main_frame_t::on_open()
{
    const auto start =
        m_session.is_open() ? m_session.engine()->get_result_dir() : default_results_dir();
    const auto marker = ask_result_file(this, start);
    if (!marker.empty())
        open_result(marker);
}

void main_frame_t::on_import()
{
    if (is_importing())
        return;
    const auto file = ask_import_file(
        this, m_session.is_open() ? m_session.engine()->get_result_dir() : basekit2::path_t());
    if (file.empty())
        return;
    start_import({file}, unique_result_dir(default_results_dir(), file.stem()));
}

void main_frame_t::start_import(const std::vector<basekit2::path_t>& files,
                                const basekit2::path_t& result_dir)
{
    if (is_importing())
        return;
    auto job = std::make_unique<import_job_t>(files, result_dir);
    m_import_dlg = new import_progress_dlg_t(this, std::move(job), [this](import_job_t& done) {
        m_import_dlg = nullptr;
        import_finished(done);
    });
    m_import_dlg->start();
}

void main_frame_t::import_finished(import_job_t& job)
{
    const auto& report = job.report();
    if (report.cancelled) {
        SetStatusText(translate(L"corrview.import.cancelled"));
        return;
    }
    if (!job.engine()) {
        show_error(
            this, translate(L"corrview.import.failed.title"),
            translate(L"corrview.import.failed.text", varg_list().add(L"reason", report.error)));
        return;
    }
    m_session.adopt(job.engine());
    show_session();
    std::vector<std::wstring> warnings;
    for (const auto& file : report.files)
        warnings.insert(warnings.end(), file.report.warnings.begin(), file.report.warnings.end());
    SetStatusText(
        translate(L"corrview.import.done", varg_list()
                                               .add(L"count", m_session.problems().size())
                                               .add(L"result_dir", job.result_dir().str())));
    if (!warnings.empty())
        show_info(this, translate(L"corrview.import.warnings.title"), join_lines(warnings));
}

void main_frame_t::on_create_suppression()
{
    if (!m_session.is_open())
        return;
    const auto rules = m_session.create_candidates(m_problems->selected_problems());
    if (!rules) {
        SetStatusText(translate(L"corrview.create.nothing_selected"));
        return;
    }
    corr_dialogs2::create_suppression_dlg_t dialog(rules, m_session.engine().get());
    if (dialog.show_modal(this) != wxID_OK || !dialog.is_saved())
        return;
    reload_suppressions();
    SetStatusText(
        translate(L"corrview.create.done", varg_list()
                                               .add(L"name", rules->get_name())
                                               .add(L"file", rules->get_file_path())
                                               .add(L"suppressed", m_session.suppressed_count())));
}

void main_frame_t::on_delete_suppression()
{
    if (!m_session.is_open())
        return;
    const auto rule_sets = m_suppressions->selected_rule_sets();
    if (rule_sets.empty()) {
        m_notebook->SetSelection(m_notebook->FindPage(m_suppressions));
        SetStatusText(translate(L"corrview.delete.nothing_selected"));
        return;
    }
    corr_dialogs2::delete_suppression_dlg_t dialog(rule_sets);
    dialog.show_modal(this);
    // Read back from the files however the dialog ended: when one file was
    // saved and another could not be, the user may still have cancelled.
    reload_suppressions();
}

void main_frame_t::on_view_stack()
{
    if (const auto rule = m_suppressions->current_rule())
        view_stack(rule);
    else
        SetStatusText(translate(L"corrview.delete.nothing_selected"));
}

void main_frame_t::view_stack(const corr_dialogs2::rule_ptr& rule)
{
    if (!rule)
        return;
    corr_dialogs2::stack_dlg_t dialog(rule->get_stack(true), false, -1);
    dialog.show_modal(this);
}

void main_frame_t::on_export()
{
    if (!m_session.is_open())
        return;
    // The archive goes next to the result folder, named after the result.
    const basekit2::path_t folder = m_session.engine()->get_result_dir().parent();
    corr_dialogs2::export_dlg_t dialog(m_session.engine(), folder);
    dialog.show_modal(this);
}

void main_frame_t::on_filter_sources()
{
    if (!m_session.is_open())
        return;
    corr_dialogs2::files_filter_dlg_t dialog(m_session.source_files());
    dialog.show_modal(this);
}

void main_frame_t::on_find()
{
    m_notebook->SetSelection(static_cast<size_t>(m_notebook->FindPage(m_problems)));
    m_problems->focus_search();
}

void main_frame_t::on_about()
{
    show_info(this, translate(L"corrview.about.title"),
              translate(L"corrview.about.text",
                        varg_list().add(L"version", platkit::strings::utf8_to_wide(
                                                        corr_dialogs2::library_version()))));
}

} // namespace corrview
