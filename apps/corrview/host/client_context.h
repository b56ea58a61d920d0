#pragma once
// Who the viewer runs for. Standing alone it shows its messages in its own
// boxes. Started by an IDE's integration (`--client VS`, or CORR_CLIENT_ID=VS
// in its environment, the same client names the launch dialog knows), it is
// the IDE's window onto a result: its messages and status lines go to the
// IDE as lines on standard output, which the IDE reads and shows where it
// shows its own; a message box would sit behind the IDE, unseen.
#include "eil1/message_bridge.h"

#include <mutex>
#include <optional>
#include <ostream>
#include <string>

namespace corrview {

// The client name of the IDE integration.
inline constexpr const char* ide_client_id = "VS";

struct client_context_t
{
    std::string client_id; // empty: the viewer stands alone
    bool is_ide() const { return client_id == ide_client_id; }
};

// The option's value wins over the environment's (CORR_CLIENT_ID); neither:
// standing alone.
client_context_t resolve_client(const std::optional<std::string>& option, const char* env_value);

// What a line of the IDE protocol carries, one per line, fields separated by
// tabs, each field UTF-8 with backslash, tab, carriage return and new line
// written as \\, \t, \r and \n:
//   corrview-message <TAB> info|warning|error <TAB> title <TAB> text
//   corrview-status <TAB> text
std::string message_line(eil1::IMessageBridge::Severity severity, const std::wstring& title,
                         const std::wstring& text);
std::string status_line(const std::wstring& text);
// A field back from its escaped form (what the IDE's side does).
std::wstring unescape_field(const std::string& field);

// The IDE client's bridge: writes the lines above to a stream and flushes
// each, so that the IDE sees a message as it is given.
class stream_message_bridge_t : public eil1::IMessageBridge
{
public:
    explicit stream_message_bridge_t(std::ostream& out) : m_out(out) {}

    // False when the stream cannot be written (the IDE has gone): the
    // viewer then shows the message itself.
    bool ShowMessage(Severity severity, const wchar_t* title, const wchar_t* text) override;
    void ShowStatus(const wchar_t* text) override;
    eil1::IMessageBridgeEx* GetExtension() override { return nullptr; }

private:
    std::ostream& m_out;
    std::mutex m_mutex;
};

} // namespace corrview
