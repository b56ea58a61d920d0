#include "basekit2/config.h"

#include "platkit/strings/convert.h"

#include <boost/property_tree/ptree.hpp>
#include <boost/property_tree/xml_parser.hpp>

#include <cstdlib>
#include <fstream>
#include <mutex>

namespace basekit2 {
namespace {
using platkit::strings::utf8_to_wide;
using platkit::strings::wide_to_utf8;

std::mutex g_dirs_mutex;
path_t g_default_dir;

constexpr const char* root_name = "config";
} // namespace

path_t config_manager_t::user_config_dir()
{
    if (const char* xdg = std::getenv("XDG_CONFIG_HOME"); xdg && *xdg)
        return path_t::from_utf8(xdg) / path_t(L"corr");
    if (const char* home = std::getenv("HOME"); home && *home)
        return path_t::from_utf8(home) / path_t(L".config/corr");
    return path_t(L".corr");
}

void config_manager_t::set_default_config_dir(const path_t& dir)
{
    std::lock_guard lock(g_dirs_mutex);
    g_default_dir = dir;
}

path_t config_manager_t::default_config_dir()
{
    std::lock_guard lock(g_dirs_mutex);
    return g_default_dir;
}

path_t config_manager_t::get_user_config(const std::wstring& section)
{
    return user_config_dir() / path_t(section + L".xml");
}

path_t config_manager_t::get_default_config(const std::wstring& section)
{
    const path_t dir = default_config_dir();
    return dir.empty() ? path_t() : dir / path_t(section + L".xml");
}

struct advanced_xml_config_t::tree
{
    boost::property_tree::ptree root;
};

advanced_xml_config_t::advanced_xml_config_t() : m_tree(new tree) {}
advanced_xml_config_t::~advanced_xml_config_t() { delete m_tree; }
advanced_xml_config_t::advanced_xml_config_t(const advanced_xml_config_t& o)
    : m_tree(new tree(*o.m_tree)), m_error(o.m_error)
{
}
advanced_xml_config_t& advanced_xml_config_t::operator=(const advanced_xml_config_t& o)
{
    if (this != &o) {
        *m_tree = *o.m_tree;
        m_error = o.m_error;
    }
    return *this;
}

bool advanced_xml_config_t::load(const path_t& file)
{
    std::ifstream in(file.fs(), std::ios::binary);
    if (!in) {
        m_error = file.str() + L": cannot open the file";
        return false;
    }
    try {
        boost::property_tree::ptree loaded;
        boost::property_tree::read_xml(in, loaded, boost::property_tree::xml_parser::trim_whitespace);
        if (loaded.size() != 1 || loaded.begin()->first != root_name) {
            m_error = file.str() + L": the root element must be <config>";
            return false;
        }
        m_tree->root = loaded.begin()->second;
        m_error.clear();
        return true;
    } catch (const boost::property_tree::xml_parser_error& e) {
        m_error = file.str() + L":" + std::to_wstring(e.line()) + L": " + utf8_to_wide(e.message());
        return false;
    }
}

bool advanced_xml_config_t::save(const path_t& file) const
{
    std::error_code ec;
    std::filesystem::create_directories(file.parent().fs(), ec);
    const path_t tmp(file.str() + L".tmp");
    try {
        boost::property_tree::ptree doc;
        doc.add_child(root_name, m_tree->root);
        {
            std::ofstream out(tmp.fs(), std::ios::binary | std::ios::trunc);
            if (!out)
                throw std::runtime_error("cannot create the file");
            boost::property_tree::write_xml(
                out, doc, boost::property_tree::xml_writer_make_settings<std::string>(' ', 2));
            out.flush();
            if (!out)
                throw std::runtime_error("cannot write the file");
        }
        std::filesystem::rename(tmp.fs(), file.fs());
        m_error.clear();
        return true;
    } catch (const std::exception& e) {
        std::filesystem::remove(tmp.fs(), ec);
        m_error = file.str() + L": " + utf8_to_wide(e.what());
        return false;
    }
}

bool advanced_xml_config_t::has(const std::wstring& key) const
{
    return static_cast<bool>(m_tree->root.get_child_optional(wide_to_utf8(key)));
}

std::wstring advanced_xml_config_t::get_string(const std::wstring& key, const std::wstring& fallback) const
{
    const auto v = m_tree->root.get_optional<std::string>(wide_to_utf8(key));
    return v ? utf8_to_wide(*v) : fallback;
}

platkit::types::variant advanced_xml_config_t::get(const std::wstring& key) const
{
    const auto v = m_tree->root.get_optional<std::string>(wide_to_utf8(key));
    return v ? platkit::types::variant(*v) : platkit::types::variant();
}

void advanced_xml_config_t::set(const std::wstring& key, const platkit::types::variant& value)
{
    m_tree->root.put(wide_to_utf8(key), value.as_utf8());
}

variant_bag_t advanced_xml_config_t::to_bag() const
{
    variant_bag_t bag;
    for (const auto& [name, child] : m_tree->root)
        if (child.empty())
            bag.put(utf8_to_wide(name), platkit::types::variant(child.data()));
    return bag;
}

} // namespace basekit2
