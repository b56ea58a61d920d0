#pragma once
// The command that opens a source file at a line in the user's editor.
// Which editor, in this order:
//   1. the command of the user configuration (section "corrview.editor",
//      key "command"), a command line with {file} and {line} in it
//      (without {file} the file goes last);
//   2. $VISUAL, then $EDITOR: a known terminal editor (vi, vim, nano,
//      emacs -nw, ...) runs with "+LINE FILE" in a terminal; a known GUI
//      editor gets its own syntax (code --goto FILE:LINE, kate --line LINE
//      FILE, subl FILE:LINE, ...); an unknown $VISUAL runs as it is with
//      "+LINE FILE", an unknown $EDITOR the same in a terminal;
//   3. xdg-open FILE (the desktop's choice; the line is lost).
// The terminal is the configuration's "terminal" (a command line the
// editor's command is appended to), else $TERMINAL, else the first of the
// usual terminal programs on PATH.
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace corrview {

struct editor_settings_t
{
    std::wstring command; // "" : from the environment
    bool command_in_terminal = false;
    std::wstring terminal; // "" : $TERMINAL or a terminal on PATH
};

// What the command builder may ask of the system; tests give their own.
struct editor_environment_t
{
    // An environment variable ("" when unset).
    std::function<std::wstring(const char*)> variable;
    // A program's full path when it can be run (a name is looked up on
    // PATH); empty when it cannot.
    std::function<std::filesystem::path(const std::wstring&)> find_program;

    // The process's own environment and PATH.
    static editor_environment_t system();
};

struct editor_command_t
{
    enum kind_t {
        none,     // nothing to run: problem says why
        terminal, // a terminal editor inside a terminal
        gui,      // an editor with a window of its own
        opener,   // the desktop's opener, without the line
    };
    enum problem_t {
        no_problem,
        not_found,   // the editor (program) cannot be run
        no_terminal, // a terminal editor, and no terminal to run it in
        no_opener,   // nothing configured and no xdg-open
    };
    kind_t kind = none;
    std::vector<std::wstring> argv; // program first; run without a shell
    // Where the editor came from: "command" (the configuration), "VISUAL",
    // "EDITOR" or "xdg-open".
    std::wstring source;
    problem_t problem = no_problem;
    std::wstring program; // the program that the problem is about
};

editor_command_t build_editor_command(const editor_settings_t& settings,
                                      const editor_environment_t& environment,
                                      const std::filesystem::path& file, long line);

// The settings of the user configuration (each key falling back to the
// product's default configuration).
editor_settings_t read_editor_settings();

// A command line split into words as a POSIX shell would ('...', "...",
// backslash); no expansions.
std::vector<std::wstring> split_command_line(const std::wstring& line);

} // namespace corrview
