#pragma once
// The small modal questions the viewer asks: which file to import, which
// result to open, and message boxes. They go through the shared dialogs
// (and so through the modal hook that tests answer).
#include "basekit2/path.h"

#include <string>

class wxWindow;

namespace eil1 {
class IMessageBridge;
}

namespace corrview {

// An analyser output to import; empty when cancelled.
basekit2::path_t ask_import_file(wxWindow* parent, const basekit2::path_t& start);
// A result's marker file to open; empty when cancelled.
basekit2::path_t ask_result_file(wxWindow* parent, const basekit2::path_t& start);
// An error box with a title and text (both already translated). While an
// IDE's message bridge is attached the IDE shows them instead; a message
// the bridge does not take is shown here.
void show_error(wxWindow* parent, const std::wstring& title, const std::wstring& text);
void show_info(wxWindow* parent, const std::wstring& title, const std::wstring& text);
// The bridge of the IDE the viewer runs under (null: none).
void set_message_bridge(eil1::IMessageBridge* bridge);

} // namespace corrview
