#pragma once
// Starting the user's editor on a file at a line (see host/editor_command.h
// for which editor and how), without a shell and without waiting for it.
#include <filesystem>

class wxWindow;

namespace corrview {

// False after telling the user why (a message box); on success the frame's
// status bar names the editor.
bool launch_editor(wxWindow* parent, const std::filesystem::path& file, long line);

} // namespace corrview
