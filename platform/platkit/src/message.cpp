#include "platkit/i18n/catalog.h"

#include <fmt/args.h>
#include <fmt/format.h>
#include <fmt/xchar.h>

#include <set>

namespace platkit::generic {
const argument* varg_list::find(const std::wstring& name) const
{
    for (const auto& a : m_args)
        if (a.name == name)
            return &a;
    return nullptr;
}
} // namespace platkit::generic

namespace platkit::i18n {
namespace {

// Names of the {name} placeholders of a text, in order of appearance.
std::vector<std::wstring> placeholder_names(const std::wstring& text)
{
    std::vector<std::wstring> names;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] != L'{')
            continue;
        if (i + 1 < text.size() && text[i + 1] == L'{') {
            ++i;
            continue;
        }
        const size_t close = text.find(L'}', i + 1);
        if (close == std::wstring::npos)
            break;
        std::wstring inner = text.substr(i + 1, close - i - 1);
        const size_t colon = inner.find(L':');
        if (colon != std::wstring::npos)
            inner.resize(colon);
        names.push_back(inner);
        i = close;
    }
    return names;
}

void push_value(fmt::dynamic_format_arg_store<fmt::wformat_context>& store, const std::wstring& name,
                const types::variant& value)
{
    using kind = types::variant::kind;
    switch (value.type()) {
    case kind::integer:
        store.push_back(fmt::arg(name.c_str(), value.as_int()));
        break;
    case kind::unsigned_integer:
        store.push_back(fmt::arg(name.c_str(), value.as_uint()));
        break;
    case kind::floating:
        store.push_back(fmt::arg(name.c_str(), value.as_double()));
        break;
    default:
        store.push_back(fmt::arg(name.c_str(), value.as_wstring()));
        break;
    }
}

} // namespace

std::wstring message_t::as_ustring(const generic::varg_list& args) const
{
    if (m_text.find(L'{') == std::wstring::npos && m_text.find(L'}') == std::wstring::npos)
        return m_text;
    try {
        fmt::dynamic_format_arg_store<fmt::wformat_context> store;
        std::set<std::wstring> pushed;
        // The first argument of a name wins: callers' arguments precede the
        // ones added for every message.
        for (const auto& a : args)
            if (!a.name.empty() && pushed.insert(a.name).second)
                push_value(store, a.name, a.value);
        for (const auto& name : placeholder_names(m_text)) {
            if (name.empty() || !pushed.insert(name).second)
                continue;
            // A placeholder without an argument formats as itself.
            store.push_back(fmt::arg(name.c_str(), L"{" + name + L"}"));
        }
        return fmt::vformat(fmt::wstring_view(m_text), store);
    } catch (const std::exception&) {
        return m_text;
    }
}

} // namespace platkit::i18n
