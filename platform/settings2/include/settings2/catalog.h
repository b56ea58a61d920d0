#pragma once
// The registry of message catalogues. Catalogues are registered by name
// (the resource set: "dialogs", "shareddlg", ...), normally from the *.dat
// archives of the resource directory; getMessageCatalog looks them up.
#include "platkit/i18n/catalog.h"

#include <map>
#include <string>

namespace settings2 {

// The catalogue registered under name, or null.
platkit::i18n::catalog_ptr getMessageCatalog(const std::wstring& name);

// Registers (or replaces, or with null removes) a catalogue.
void registerMessageCatalog(const std::wstring& name, platkit::i18n::catalog_ptr catalog);

// A catalogue held in memory: what the *.dat loader builds from the compiled
// catalogue inside the archive, and what tests build by hand.
class map_catalog_t : public platkit::i18n::catalog_t
{
public:
    map_catalog_t(std::wstring name, std::map<std::wstring, std::wstring> messages)
        : m_name(std::move(name)), m_messages(std::move(messages))
    {
    }
    std::wstring name() const override { return m_name; }
    bool has_message(const std::wstring& key) const override { return m_messages.count(key) != 0; }
    platkit::i18n::message_t message(const std::wstring& key) const override;
    const std::map<std::wstring, std::wstring>& messages() const { return m_messages; }

private:
    std::wstring m_name;
    std::map<std::wstring, std::wstring> m_messages;
};

} // namespace settings2
