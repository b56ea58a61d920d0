#include "client_context.h"

#include "platkit/strings/convert.h"

namespace corrview {

client_context_t resolve_client(const std::optional<std::string>& option, const char* env_value)
{
    if (option)
        return {*option};
    return {env_value ? std::string(env_value) : std::string()};
}

namespace {

std::string escape_field(const std::wstring& text)
{
    const std::string utf8 = platkit::strings::wide_to_utf8(text);
    std::string out;
    out.reserve(utf8.size());
    for (char c : utf8) {
        switch (c) {
        case '\\':
            out += "\\\\";
            break;
        case '\t':
            out += "\\t";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        default:
            out += c;
        }
    }
    return out;
}

const char* severity_name(eil1::IMessageBridge::Severity severity)
{
    switch (severity) {
    case eil1::IMessageBridge::Severity::Info:
        return "info";
    case eil1::IMessageBridge::Severity::Warning:
        return "warning";
    case eil1::IMessageBridge::Severity::Error:
        return "error";
    }
    return "error";
}

} // namespace

std::string message_line(eil1::IMessageBridge::Severity severity, const std::wstring& title,
                         const std::wstring& text)
{
    return std::string("corrview-message\t") + severity_name(severity) + "\t" +
           escape_field(title) + "\t" + escape_field(text) + "\n";
}

std::string status_line(const std::wstring& text)
{
    return "corrview-status\t" + escape_field(text) + "\n";
}

std::wstring unescape_field(const std::string& field)
{
    std::string out;
    for (size_t i = 0; i < field.size(); ++i) {
        if (field[i] != '\\' || i + 1 == field.size()) {
            out += field[i];
            continue;
        }
        const char next = field[++i];
        out += next == 't' ? '\t' : next == 'n' ? '\n' : next == 'r' ? '\r' : next;
    }
    return platkit::strings::utf8_to_wide(out);
}

bool stream_message_bridge_t::ShowMessage(Severity severity, const wchar_t* title,
                                          const wchar_t* text)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_out << message_line(severity, title ? title : L"", text ? text : L"") << std::flush;
    return static_cast<bool>(m_out);
}

void stream_message_bridge_t::ShowStatus(const wchar_t* text)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_out << status_line(text ? text : L"") << std::flush;
}

} // namespace corrview
