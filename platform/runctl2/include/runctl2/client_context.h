#pragma once
// Who hosts the front end: a set of named string values the host installs
// once at start-up. "CLIENT_ID" says which client it is: "VS" inside the IDE
// integration, "GUI" in the stand-alone viewer, "CLI" in corrtool.
#include <map>
#include <memory>
#include <string>

namespace runctl2 {

inline constexpr const wchar_t* CLIENT_ID = L"CLIENT_ID";           // "VS", "GUI", "CLI"
inline constexpr const wchar_t* CLIENT_NAME = L"CLIENT_NAME";       // the host's name for people
inline constexpr const wchar_t* CLIENT_VERSION = L"CLIENT_VERSION"; // the host's version
inline constexpr const wchar_t* PROJECT_DIR = L"PROJECT_DIR";       // the open project's folder

inline constexpr const wchar_t* client_id_ide = L"VS";
inline constexpr const wchar_t* client_id_viewer = L"GUI";
inline constexpr const wchar_t* client_id_command_line = L"CLI";

class IClientContext
{
public:
    virtual ~IClientContext() = default;
    // The value of that name; empty when the context has none.
    virtual std::wstring getString(const std::wstring& name) const = 0;

    // The installed context; null until a host installs one.
    static std::shared_ptr<IClientContext> get();
    // Installs the context (null removes it).
    static void set(std::shared_ptr<IClientContext> context);
};

// A context holding fixed values.
class client_context_t : public IClientContext
{
public:
    explicit client_context_t(std::map<std::wstring, std::wstring> values = {}) : m_values(std::move(values)) {}
    std::wstring getString(const std::wstring& name) const override;
    void setString(const std::wstring& name, std::wstring value) { m_values[name] = std::move(value); }

private:
    std::map<std::wstring, std::wstring> m_values;
};

} // namespace runctl2
