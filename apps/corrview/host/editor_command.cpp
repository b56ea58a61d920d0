#include "editor_command.h"

#include "fs_text.h"

#include "basekit2/config.h"
#include "basekit2/path.h"
#include "platkit/strings/convert.h"

#include <wx/cmdline.h>

#include <algorithm>
#include <cstdlib>
#include <initializer_list>
#include <system_error>

namespace corrview {
namespace fs = std::filesystem;
namespace {

constexpr const wchar_t* config_section = L"corrview.editor";

bool one_of(const std::wstring& name, std::initializer_list<const wchar_t*> names)
{
    return std::any_of(names.begin(), names.end(), [&](const wchar_t* n) { return name == n; });
}

bool has_word(const std::vector<std::wstring>& words, std::initializer_list<const wchar_t*> flags)
{
    return std::any_of(words.begin() + 1, words.end(),
                       [&](const std::wstring& w) { return one_of(w, flags); });
}

std::wstring program_name(const std::wstring& program)
{
    return to_text(to_fs(program).filename());
}

// How an editor takes a file and a line.
enum class syntax_t { plus_line, file_colon_line, goto_file_line, line_option };

struct editor_kind_t
{
    bool known = false;
    bool in_terminal = false;
    syntax_t syntax = syntax_t::plus_line;
};

editor_kind_t classify(const std::vector<std::wstring>& words)
{
    const std::wstring name = program_name(words.front());
    if (one_of(name, {L"vi", L"vim", L"vim.basic", L"vim.tiny", L"nvim", L"nano", L"pico", L"micro",
                      L"kak", L"joe", L"jed", L"ne", L"mg", L"vis", L"mcedit", L"editor",
                      L"sensible-editor"}))
        return {true, true, syntax_t::plus_line};
    if (one_of(name, {L"hx", L"helix"}))
        return {true, true, syntax_t::file_colon_line};
    if (name == L"emacs")
        return {true, has_word(words, {L"-nw", L"--no-window-system", L"-t"}), syntax_t::plus_line};
    if (name == L"emacsclient")
        return {true, has_word(words, {L"-t", L"-nw", L"--tty"}), syntax_t::plus_line};
    if (one_of(name, {L"code", L"code-insiders", L"codium", L"code-oss", L"vscodium"}))
        return {true, false, syntax_t::goto_file_line};
    if (one_of(name, {L"subl", L"sublime_text", L"zed", L"atom", L"pulsar"}))
        return {true, false, syntax_t::file_colon_line};
    if (one_of(name, {L"kate", L"kwrite", L"geany", L"idea", L"idea.sh", L"clion", L"clion.sh",
                      L"pycharm", L"pycharm.sh", L"goland", L"rider", L"webstorm"}))
        return {true, false, syntax_t::line_option};
    if (one_of(name, {L"gvim", L"gedit", L"gnome-text-editor", L"pluma", L"xed"}))
        return {true, false, syntax_t::plus_line};
    return {};
}

void add_file_and_line(std::vector<std::wstring>& argv, syntax_t syntax, const std::wstring& file,
                       long line)
{
    // Line 0 (none known) opens at the top.
    const std::wstring l = std::to_wstring(line > 0 ? line : 1);
    switch (syntax) {
    case syntax_t::plus_line:
        argv.push_back(L"+" + l);
        argv.push_back(file);
        break;
    case syntax_t::file_colon_line:
        argv.push_back(file + L":" + l);
        break;
    case syntax_t::goto_file_line:
        argv.push_back(L"--goto");
        argv.push_back(file + L":" + l);
        break;
    case syntax_t::line_option:
        argv.push_back(L"--line");
        argv.push_back(l);
        argv.push_back(file);
        break;
    }
}

// What a terminal needs before the command it runs.
std::vector<std::wstring> terminal_prefix(const std::wstring& name)
{
    if (name == L"gnome-terminal")
        return {L"--"};
    if (one_of(name, {L"xfce4-terminal", L"mate-terminal", L"terminator"}))
        return {L"-x"};
    if (one_of(name, {L"kitty", L"foot"}))
        return {};
    if (name == L"wezterm")
        return {L"start", L"--"};
    // x-terminal-emulator promises -e (Debian policy), as do xterm and most others.
    return {L"-e"};
}

// The terminal command the editor's words are appended to; empty when none.
std::vector<std::wstring> find_terminal(const editor_settings_t& settings,
                                        const editor_environment_t& env)
{
    auto with_prefix = [&](std::vector<std::wstring> words) -> std::vector<std::wstring> {
        const fs::path program = env.find_program(words.front());
        if (program.empty())
            return {};
        // A lone program name gets its option; a command line is taken as it is.
        if (words.size() == 1) {
            for (auto& w : terminal_prefix(program_name(words.front())))
                words.push_back(w);
        }
        return words;
    };
    for (const std::wstring& configured : {settings.terminal, env.variable("TERMINAL")}) {
        auto words = split_command_line(configured);
        if (!words.empty())
            return with_prefix(std::move(words));
    }
    for (const wchar_t* name :
         {L"x-terminal-emulator", L"gnome-terminal", L"konsole", L"xfce4-terminal",
          L"mate-terminal", L"lxterminal", L"tilix", L"terminator", L"kitty", L"alacritty", L"foot",
          L"wezterm", L"xterm", L"urxvt"})
        if (auto words = with_prefix({name}); !words.empty())
            return words;
    return {};
}

editor_command_t run_in_terminal(editor_command_t command, const editor_settings_t& settings,
                                 const editor_environment_t& env)
{
    std::vector<std::wstring> argv = find_terminal(settings, env);
    if (argv.empty()) {
        command.problem = editor_command_t::no_terminal;
        command.program = command.argv.front();
        command.argv.clear();
        command.kind = editor_command_t::none;
        return command;
    }
    argv.insert(argv.end(), command.argv.begin(), command.argv.end());
    command.argv = std::move(argv);
    command.kind = editor_command_t::terminal;
    return command;
}

bool is_template(const std::vector<std::wstring>& words)
{
    return std::any_of(words.begin(), words.end(), [](const std::wstring& w) {
        return w.find(L"{file}") != std::wstring::npos || w.find(L"{line}") != std::wstring::npos;
    });
}

std::wstring replace_all(std::wstring text, const std::wstring& what, const std::wstring& with)
{
    for (size_t at = text.find(what); at != std::wstring::npos;
         at = text.find(what, at + with.size()))
        text.replace(at, what.size(), with);
    return text;
}

} // namespace

std::vector<std::wstring> split_command_line(const std::wstring& line)
{
    std::vector<std::wstring> words;
    for (const wxString& word : wxCmdLineParser::ConvertStringToArgs(line, wxCMD_LINE_SPLIT_UNIX))
        words.push_back(word.ToStdWstring());
    return words;
}

editor_environment_t editor_environment_t::system()
{
    editor_environment_t env;
    env.variable = [](const char* name) {
        const char* value = std::getenv(name);
        return value ? platkit::strings::utf8_to_wide(value) : std::wstring();
    };
    env.find_program = [variable = env.variable](const std::wstring& program) -> fs::path {
        auto runnable = [](const fs::path& p) {
            std::error_code ec;
            const auto status = fs::status(p, ec);
            return !ec && fs::is_regular_file(status) &&
                   (status.permissions() & (fs::perms::owner_exec | fs::perms::group_exec |
                                            fs::perms::others_exec)) != fs::perms::none;
        };
        const fs::path given = to_fs(program);
        if (program.find(L'/') != std::wstring::npos)
            return runnable(given) ? given : fs::path();
        const std::wstring path = variable("PATH");
        for (size_t start = 0; start <= path.size();) {
            const size_t end = std::min(path.find(L':', start), path.size());
            const std::wstring dir = path.substr(start, end - start);
            const fs::path candidate = to_fs(dir.empty() ? L"." : dir) / given;
            if (runnable(candidate))
                return candidate;
            start = end + 1;
        }
        return {};
    };
    return env;
}

editor_command_t build_editor_command(const editor_settings_t& settings,
                                      const editor_environment_t& env, const fs::path& file,
                                      long line)
{
    const std::wstring file_text = to_text(file);
    const std::wstring line_text = std::to_wstring(line > 0 ? line : 1);
    editor_command_t command;
    std::vector<std::wstring> words = split_command_line(settings.command);
    // An editor of unknown kind: the configuration says whether it needs a
    // terminal; $EDITOR is by tradition a terminal editor, $VISUAL may have
    // a window of its own.
    bool unknown_in_terminal = settings.command_in_terminal;
    command.source = L"command";
    if (words.empty()) {
        for (const char* variable : {"VISUAL", "EDITOR"}) {
            words = split_command_line(env.variable(variable));
            if (!words.empty()) {
                command.source = platkit::strings::utf8_to_wide(variable);
                unknown_in_terminal = std::string(variable) == "EDITOR";
                break;
            }
        }
    }
    if (words.empty()) {
        command.source = L"xdg-open";
        if (env.find_program(L"xdg-open").empty()) {
            command.problem = editor_command_t::no_opener;
            command.program = L"xdg-open";
            return command;
        }
        command.kind = editor_command_t::opener;
        command.argv = {L"xdg-open", file_text};
        return command;
    }
    if (env.find_program(words.front()).empty()) {
        command.problem = editor_command_t::not_found;
        command.program = words.front();
        return command;
    }
    bool in_terminal = unknown_in_terminal;
    if (is_template(words)) {
        // The user's own syntax, taken as written.
        const bool has_file = std::any_of(words.begin(), words.end(), [](const std::wstring& w) {
            return w.find(L"{file}") != std::wstring::npos;
        });
        for (auto& w : words)
            w = replace_all(replace_all(w, L"{file}", file_text), L"{line}", line_text);
        if (!has_file)
            words.push_back(file_text);
    } else {
        const editor_kind_t kind = classify(words);
        if (kind.known)
            in_terminal = kind.in_terminal;
        add_file_and_line(words, kind.syntax, file_text, line);
    }
    command.argv = std::move(words);
    command.kind = editor_command_t::gui;
    return in_terminal ? run_in_terminal(std::move(command), settings, env) : command;
}

editor_settings_t read_editor_settings()
{
    basekit2::advanced_xml_config_t user;
    basekit2::advanced_xml_config_t product;
    const bool have_user = user.load(basekit2::config_manager_t::get_user_config(config_section));
    const basekit2::path_t defaults =
        basekit2::config_manager_t::get_default_config(config_section);
    const bool have_product = !defaults.empty() && product.load(defaults);
    auto value = [&](const wchar_t* key) {
        if (have_user && user.has(key))
            return user.get_string(key);
        return have_product ? product.get_string(key) : std::wstring();
    };
    editor_settings_t settings;
    settings.command = value(L"command");
    settings.command_in_terminal = value(L"command_in_terminal") == L"true";
    settings.terminal = value(L"terminal");
    return settings;
}

} // namespace corrview
