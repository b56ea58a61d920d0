// The command that opens a file at a line in the user's editor, for every
// kind of editor, with an environment the test makes up.
#include "host/editor_command.h"
#include "host/fs_text.h"
#include "host_test_support.h"

#include <cstdlib>
#include <fstream>
#include <map>
#include <set>

namespace {

using corrview::editor_command_t;

struct environment_t
{
    std::map<std::string, std::wstring> variables;
    std::set<std::wstring> programs; // names on PATH, or full paths

    corrview::editor_environment_t make() const
    {
        corrview::editor_environment_t env;
        env.variable = [this](const char* name) {
            const auto it = variables.find(name);
            return it == variables.end() ? std::wstring() : it->second;
        };
        env.find_program = [this](const std::wstring& program) -> std::filesystem::path {
            if (!programs.count(program))
                return {};
            return program.find(L'/') == std::wstring::npos ? L"/usr/bin/" + program : program;
        };
        return env;
    }
};

corrview::editor_settings_t settings(std::wstring command, bool in_terminal = false,
                                     std::wstring terminal = {})
{
    return {std::move(command), in_terminal, std::move(terminal)};
}

std::wstring joined(const std::vector<std::wstring>& words)
{
    std::wstring out;
    for (const auto& w : words)
        out += (out.empty() ? L"" : L"|") + w;
    return out;
}

TEST(EditorCommand, EachKindOfEditorGetsTheFileAndLineItUnderstands)
{
    const std::wstring file = L"/src/Qüelle 1/a \"b\".c";
    // clang-format off
    const std::set<std::wstring> usual = {
        L"xdg-open", L"x-terminal-emulator", L"vim", L"nano", L"emacs", L"code", L"kate", L"subl",
        L"hx", L"gvim", L"kitty", L"xterm", L"myedit", L"/opt/ed/myedit", L"/opt/My Editor/ed"};
    const struct
    {
        const char* what;
        corrview::editor_settings_t settings;
        std::map<std::string, std::wstring> variables;
        std::set<std::wstring> programs;
        long line;
        editor_command_t::kind_t kind;
        std::wstring argv;
    } cases[] = {
        {"terminal editor from $VISUAL", {}, {{"VISUAL", L"vim"}}, usual, 12, editor_command_t::terminal, L"x-terminal-emulator|-e|vim|+12|" + file},
        {"GUI editor with its own option", {}, {{"VISUAL", L"code --wait"}}, usual, 12, editor_command_t::gui, L"code|--wait|--goto|" + file + L":12"},
        {"$VISUAL before $EDITOR", {}, {{"VISUAL", L"kate"}, {"EDITOR", L"vim"}}, usual, 7, editor_command_t::gui, L"kate|--line|7|" + file},
        {"file:line editors", {}, {{"VISUAL", L"subl"}}, usual, 3, editor_command_t::gui, L"subl|" + file + L":3"},
        {"emacs with a window", {}, {{"VISUAL", L"emacs"}}, usual, 3, editor_command_t::gui, L"emacs|+3|" + file},
        {"emacs in a terminal, $TERMINAL without options", {}, {{"EDITOR", L"emacs -nw"}, {"TERMINAL", L"kitty"}}, usual, 3, editor_command_t::terminal, L"kitty|emacs|-nw|+3|" + file},
        {"gnome-terminal takes --", {}, {{"EDITOR", L"nano"}}, {L"nano", L"gnome-terminal"}, 4, editor_command_t::terminal, L"gnome-terminal|--|nano|+4|" + file},
        {"configured terminal with options", settings(L"", false, L"xterm -fa 'DejaVu Sans Mono' -e"), {{"VISUAL", L"hx"}}, usual, 5, editor_command_t::terminal, L"xterm|-fa|DejaVu Sans Mono|-e|hx|" + file + L":5"},
        {"unknown $VISUAL runs as it is", {}, {{"VISUAL", L"/opt/ed/myedit"}}, usual, 9, editor_command_t::gui, L"/opt/ed/myedit|+9|" + file},
        {"unknown $EDITOR runs in a terminal", {}, {{"EDITOR", L"myedit"}}, usual, 9, editor_command_t::terminal, L"x-terminal-emulator|-e|myedit|+9|" + file},
        {"configured command wins, placeholders inside words", settings(L"gvim --remote-silent +{line} {file}"), {{"VISUAL", L"code"}}, usual, 21, editor_command_t::gui, L"gvim|--remote-silent|+21|" + file},
        {"configured command in a terminal, file last without {file}", settings(L"'/opt/My Editor/ed' --at={line}", true), {}, usual, 21, editor_command_t::terminal, L"x-terminal-emulator|-e|/opt/My Editor/ed|--at=21|" + file},
        {"configured editor by name gets its syntax", settings(L"kate"), {}, usual, 2, editor_command_t::gui, L"kate|--line|2|" + file},
        {"no line known opens at the top", {}, {{"VISUAL", L"vim"}}, usual, 0, editor_command_t::terminal, L"x-terminal-emulator|-e|vim|+1|" + file},
        {"nothing set: the desktop's opener", {}, {}, usual, 8, editor_command_t::opener, L"xdg-open|" + file},
    };
    // clang-format on
    for (const auto& c : cases) {
        environment_t env{c.variables, c.programs};
        const auto command =
            corrview::build_editor_command(c.settings, env.make(), corrview::to_fs(file), c.line);
        EXPECT_EQ(command.problem, editor_command_t::no_problem) << c.what;
        EXPECT_EQ(command.kind, c.kind) << c.what;
        EXPECT_EQ(joined(command.argv), c.argv) << c.what;
    }
}

TEST(EditorCommand, WhatCannotBeRunIsNamed)
{
    // clang-format off
    const struct
    {
        const char* what;
        corrview::editor_settings_t settings;
        std::map<std::string, std::wstring> variables;
        std::set<std::wstring> programs;
        editor_command_t::problem_t problem;
        std::wstring program;
        std::wstring source;
    } cases[] = {
        {"editor missing", {}, {{"VISUAL", L"nosuch-editor --flag"}}, {L"xdg-open"}, editor_command_t::not_found, L"nosuch-editor", L"VISUAL"},
        {"configured editor missing", settings(L"/opt/gone {file}"), {{"VISUAL", L"vim"}}, {L"vim"}, editor_command_t::not_found, L"/opt/gone", L"command"},
        {"no terminal for a terminal editor", {}, {{"EDITOR", L"vim"}}, {L"vim", L"xdg-open"}, editor_command_t::no_terminal, L"vim", L"EDITOR"},
        {"$TERMINAL missing", {}, {{"EDITOR", L"vim"}, {"TERMINAL", L"gone-term"}}, {L"vim", L"xterm"}, editor_command_t::no_terminal, L"vim", L"EDITOR"},
        {"nothing at all", {}, {}, {}, editor_command_t::no_opener, L"xdg-open", L"xdg-open"},
    };
    // clang-format on
    for (const auto& c : cases) {
        environment_t env{c.variables, c.programs};
        const auto command = corrview::build_editor_command(c.settings, env.make(), "/a.c", 1);
        EXPECT_EQ(command.kind, editor_command_t::none) << c.what;
        EXPECT_TRUE(command.argv.empty()) << c.what;
        EXPECT_EQ(command.problem, c.problem) << c.what;
        EXPECT_EQ(command.program, c.program) << c.what;
        EXPECT_EQ(command.source, c.source) << c.what;
    }
}

TEST(EditorCommand, TheSystemEnvironmentFindsProgramsOnPath)
{
    host_test::temp_dir_t tmp;
    const auto bin = tmp / "bin ü";
    std::filesystem::create_directories(bin);
    const auto tool = bin / "my-editor";
    {
        std::ofstream(tool) << "#!/bin/sh\n";
    }
    const auto plain = bin / "not-executable";
    {
        std::ofstream(plain) << "text\n";
    }
    std::filesystem::permissions(tool, std::filesystem::perms::owner_all);
    const char* old_path = std::getenv("PATH");
    const std::string saved = old_path ? old_path : "";
    ::setenv("PATH", ("/nonexistent::" + bin.string()).c_str(), 1);
    const auto env = corrview::editor_environment_t::system();
    EXPECT_EQ(env.find_program(L"my-editor"), tool);
    EXPECT_EQ(env.find_program(corrview::to_text(tool)), tool);
    EXPECT_TRUE(env.find_program(L"not-executable").empty());
    EXPECT_TRUE(env.find_program(L"no-such-program-anywhere").empty());
    ::setenv("PATH", saved.c_str(), 1);
}

} // namespace
