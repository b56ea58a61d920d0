#pragma once
// A message catalogue maps message keys to texts with named placeholders.
#include "platkit/generic/argument.h"

#include <memory>
#include <string>

namespace platkit::i18n {

class message_t
{
public:
    message_t() = default;
    explicit message_t(std::wstring text) : m_text(std::move(text)) {}

    const std::wstring& raw() const { return m_text; }

    // Replaces each {name} by the first argument of that name. A placeholder
    // without an argument stays as written, and a text that is not a valid
    // format string is returned unformatted: formatting never throws.
    // "{{" and "}}" stand for literal braces.
    std::wstring as_ustring(const generic::varg_list& args = {}) const;

private:
    std::wstring m_text;
};

class catalog_t
{
public:
    virtual ~catalog_t() = default;
    virtual std::wstring name() const = 0;
    virtual bool has_message(const std::wstring& key) const = 0;
    // The message of a key; an absent key gives a message whose text is the key.
    virtual message_t message(const std::wstring& key) const = 0;
};

using catalog_ptr = std::shared_ptr<const catalog_t>;

} // namespace platkit::i18n
