#include "editor_launcher.h"

#include "dialog_services.h"

#include "../host/editor_command.h"
#include "../host/fs_text.h"

#include "basekit2/path.h"
#include "corr_dialogs2/ui_utils.h"

#include <wx/frame.h>
#include <wx/utils.h>

#include <vector>

namespace corrview {

using corr_dialogs2::translate;
using platkit::generic::varg_list;

bool launch_editor(wxWindow* parent, const std::filesystem::path& file, long line)
{
    const editor_command_t command =
        build_editor_command(read_editor_settings(), editor_environment_t::system(), file, line);
    const std::wstring file_text = to_text(file);
    const wchar_t* problem = nullptr;
    switch (command.problem) {
    case editor_command_t::not_found:
        problem = L"corrview.editor.not_found";
        break;
    case editor_command_t::no_terminal:
        problem = L"corrview.editor.no_terminal";
        break;
    case editor_command_t::no_opener:
        problem = L"corrview.editor.no_opener";
        break;
    case editor_command_t::no_problem:
        break;
    }
    if (!problem) {
        std::vector<const wchar_t*> argv;
        for (const auto& word : command.argv)
            argv.push_back(word.c_str());
        argv.push_back(nullptr);
        // Its own process group: a Ctrl+C meant for the viewer leaves the editor alone.
        if (wxExecute(argv.data(), wxEXEC_ASYNC | wxEXEC_MAKE_GROUP_LEADER) > 0) {
            if (auto* frame = wxDynamicCast(wxGetTopLevelParent(parent), wxFrame))
                if (frame->GetStatusBar())
                    frame->SetStatusText(translate(L"corrview.editor.started",
                                                   varg_list()
                                                       .add(L"program", command.argv.front())
                                                       .add(L"file", file_text)
                                                       .add(L"line", line)));
            return true;
        }
        problem = L"corrview.editor.failed";
    }
    const std::wstring program =
        !command.program.empty() || command.argv.empty() ? command.program : command.argv.front();
    const std::wstring source = command.source == L"VISUAL" || command.source == L"EDITOR"
                                    ? L"$" + command.source
                                    : translate(L"corrview.editor.source.command");
    show_error(
        parent, translate(L"corrview.editor.error.title"),
        translate(
            problem,
            varg_list().add(L"program", program).add(L"source", source).add(L"file", file_text)));
    return false;
}

} // namespace corrview
