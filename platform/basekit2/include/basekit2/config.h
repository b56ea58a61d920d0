#pragma once
// Configuration files by section. A section is one small XML file: the
// user's copy lives under $XDG_CONFIG_HOME (or ~/.config) and overrides the
// default shipped with the product.
#include "basekit2/path.h"
#include "basekit2/variant_bag.h"

#include <string>

namespace basekit2 {

class config_manager_t
{
public:
    // Path of the user's file of a section (it need not exist).
    static path_t get_user_config(const std::wstring& section);
    // Path of the default file of a section, inside the default-config folder.
    static path_t get_default_config(const std::wstring& section);

    // Folder of the user configuration: $XDG_CONFIG_HOME/corr, else ~/.config/corr.
    static path_t user_config_dir();
    // Folder of the product's default configuration; set by the host.
    static void set_default_config_dir(const path_t& dir);
    static path_t default_config_dir();
};

// Keys are dotted paths into the XML tree: "default_filename" or "a.b.c".
class advanced_xml_config_t
{
public:
    advanced_xml_config_t();
    ~advanced_xml_config_t();
    advanced_xml_config_t(const advanced_xml_config_t&);
    advanced_xml_config_t& operator=(const advanced_xml_config_t&);

    // Loads a file; false (and the reason in last_error) when it is missing
    // or not well-formed. A failed load leaves the previous content.
    bool load(const path_t& file);
    // Writes atomically (temporary file, then rename).
    bool save(const path_t& file) const;
    const std::wstring& last_error() const { return m_error; }

    bool has(const std::wstring& key) const;
    std::wstring get_string(const std::wstring& key, const std::wstring& fallback = {}) const;
    platkit::types::variant get(const std::wstring& key) const;
    void set(const std::wstring& key, const platkit::types::variant& value);
    variant_bag_t to_bag() const;

private:
    struct tree;
    tree* m_tree;
    mutable std::wstring m_error;
};

} // namespace basekit2
