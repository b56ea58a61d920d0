#include "settings2/property_storage.h"

#include "basekit2/config.h"
#include "basekit2/path.h"
#include "platkit/strings/convert.h"

#include <boost/property_tree/ptree.hpp>
#include <boost/property_tree/xml_parser.hpp>

#include <cstdio>
#include <fstream>
#include <limits>
#include <sstream>

namespace settings2 {
namespace {
using platkit::strings::utf8_to_wide;
using platkit::strings::wide_to_utf8;
using platkit::types::variant;
using boost::property_tree::ptree;

// The file-system path of a path_t through UTF-8: path_t::fs() converts with
// the global locale, which throws on non-ASCII names under "C".
std::filesystem::path native(const basekit2::path_t& p)
{
    return p.fs();
}

struct bad_file : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

const char* type_name(variant::kind k)
{
    switch (k) {
    case variant::kind::string:
        return "string";
    case variant::kind::integer:
        return "int";
    case variant::kind::unsigned_integer:
        return "uint";
    case variant::kind::floating:
        return "double";
    case variant::kind::boolean:
        return "bool";
    case variant::kind::empty:
        break;
    }
    return "empty";
}

std::string value_text(const variant& v)
{
    const auto& s = v.storage();
    switch (v.type()) {
    case variant::kind::string:
        return wide_to_utf8(std::get<std::wstring>(s));
    case variant::kind::integer:
        return std::to_string(std::get<std::int64_t>(s));
    case variant::kind::unsigned_integer:
        return std::to_string(std::get<std::uint64_t>(s));
    case variant::kind::floating: {
        std::ostringstream out;
        out.imbue(std::locale::classic());
        out.precision(std::numeric_limits<double>::max_digits10);
        out << std::get<double>(s);
        return out.str();
    }
    case variant::kind::boolean:
        return std::get<bool>(s) ? "true" : "false";
    case variant::kind::empty:
        break;
    }
    return {};
}

variant parse_value(const std::string& type, const std::string& text, const std::string& where)
{
    auto fail = [&] { throw bad_file(where + ": '" + text + "' is not a valid " + type + " value"); };
    std::istringstream in(text);
    in.imbue(std::locale::classic());
    if (type == "string")
        return variant(utf8_to_wide(text));
    if (type == "empty")
        return variant();
    if (type == "bool") {
        if (text != "true" && text != "false")
            fail();
        return variant(text == "true");
    }
    if (type == "int") {
        long long n = 0;
        if (!(in >> n) || !in.eof())
            fail();
        return variant(n);
    }
    if (type == "uint") {
        unsigned long long n = 0;
        if (text.empty() || text[0] == '-' || !(in >> n) || !in.eof())
            fail();
        return variant(n);
    }
    if (type == "double") {
        double d = 0;
        if (!(in >> d) || !in.eof())
            fail();
        return variant(d);
    }
    throw bad_file(where + ": unknown value type '" + type + "'");
}

std::map<std::wstring, basekit2::variant_bag_t> parse(std::istream& in)
{
    ptree doc;
    // No whitespace trimming: string values keep their blanks.
    boost::property_tree::read_xml(in, doc);
    if (doc.size() != 1 || doc.begin()->first != "properties")
        throw bad_file("the root element must be <properties>");
    std::map<std::wstring, basekit2::variant_bag_t> bags;
    for (const auto& [tag, property] : doc.begin()->second) {
        if (tag == "<xmlattr>" || tag == "<xmlcomment>")
            continue;
        if (tag != "property")
            throw bad_file("unexpected element <" + tag + "> in <properties>");
        const auto key = property.get_optional<std::string>("<xmlattr>.key");
        if (!key)
            throw bad_file("a <property> without a key");
        basekit2::variant_bag_t bag;
        for (const auto& [vtag, value] : property) {
            if (vtag == "<xmlattr>" || vtag == "<xmlcomment>")
                continue;
            const std::string where = "property '" + *key + "'";
            if (vtag != "value")
                throw bad_file(where + ": unexpected element <" + vtag + ">");
            const auto name = value.get_optional<std::string>("<xmlattr>.name");
            if (!name)
                throw bad_file(where + ": a <value> without a name");
            const std::string type = value.get<std::string>("<xmlattr>.type", "string");
            bag.put(utf8_to_wide(*name), parse_value(type, value.data(), where + ", value '" + *name + "'"));
        }
        bags[utf8_to_wide(*key)] = std::move(bag);
    }
    return bags;
}

} // namespace

file_property_storage_t::file_property_storage_t(basekit2::path_t file) : m_file(std::move(file))
{
    if (!m_file.exists())
        return;
    std::ifstream stream(native(m_file), std::ios::binary);
    try {
        if (!stream)
            throw bad_file("cannot open the file");
        std::ostringstream whole;
        whole << stream.rdbuf();
        const std::string text = whole.str();
        // A project file made before it held properties is empty or holds
        // only the marker line "corr-project 1": a project without properties.
        const auto first = text.find_first_not_of(" \t\r\n");
        if (first == std::string::npos || text.compare(first, 12, "corr-project") == 0)
            return;
        std::istringstream in(text);
        m_bags = parse(in);
    } catch (const boost::property_tree::xml_parser_error& e) {
        m_load_error = m_file.str() + L":" + std::to_wstring(e.line()) + L": " + utf8_to_wide(e.message());
    } catch (const std::exception& e) {
        m_load_error = m_file.str() + L": " + utf8_to_wide(e.what());
    }
    if (!m_load_error.empty()) {
        m_bags.clear();
        m_move_bad_file_aside = true;
    }
}

std::shared_ptr<file_property_storage_t> open_project_storage(const basekit2::path_t& project_dir)
{
    return std::make_shared<file_property_storage_t>(project_dir / basekit2::path_t(project_file_name));
}

basekit2::path_t file_property_storage_t::default_file()
{
    return basekit2::config_manager_t::user_config_dir() / basekit2::path_t(L"properties.xml");
}

bool file_property_storage_t::get(const std::wstring& key, basekit2::variant_bag_t& bag) const
{
    basekit2::threading::scoped_lock_t lock(m_mutex);
    const auto it = m_bags.find(key);
    if (it == m_bags.end())
        return false;
    bag = it->second;
    return true;
}

bool file_property_storage_t::put(const std::wstring& key, const basekit2::variant_bag_t& bag)
{
    basekit2::threading::scoped_lock_t lock(m_mutex);
    m_bags[key] = bag;
    return save_locked();
}

bool file_property_storage_t::remove(const std::wstring& key)
{
    basekit2::threading::scoped_lock_t lock(m_mutex);
    if (m_bags.erase(key) == 0)
        return false;
    return save_locked();
}

std::wstring file_property_storage_t::load_error() const
{
    basekit2::threading::scoped_lock_t lock(m_mutex);
    return m_load_error;
}

std::wstring file_property_storage_t::last_error() const
{
    basekit2::threading::scoped_lock_t lock(m_mutex);
    return m_save_error;
}

bool file_property_storage_t::save_locked()
{
    std::error_code ec;
    std::filesystem::create_directories(native(m_file.parent()), ec);
    if (m_move_bad_file_aside && m_file.exists()) {
        std::filesystem::rename(native(m_file), native(basekit2::path_t(m_file.str() + L".bad")), ec);
        if (ec) {
            m_save_error = m_file.str() + L": cannot move the unreadable file aside: " +
                           utf8_to_wide(ec.message());
            return false;
        }
    }
    m_move_bad_file_aside = false;

    ptree root;
    root.put("<xmlattr>.version", "1");
    for (const auto& [key, bag] : m_bags) {
        ptree& property = root.add_child("property", ptree());
        property.put("<xmlattr>.key", wide_to_utf8(key));
        for (const auto& [name, value] : bag.values()) {
            ptree& v = property.add("value", value_text(value));
            v.put("<xmlattr>.name", wide_to_utf8(name));
            v.put("<xmlattr>.type", type_name(value.type()));
        }
    }
    ptree doc;
    doc.add_child("properties", root);

    const std::filesystem::path tmp = native(basekit2::path_t(m_file.str() + L".tmp"));
    try {
        {
            std::ofstream out(tmp, std::ios::binary | std::ios::trunc);
            if (!out)
                throw std::runtime_error("cannot create " + tmp.string());
            boost::property_tree::write_xml(out, doc,
                                            boost::property_tree::xml_writer_make_settings<std::string>(' ', 2));
            out.flush();
            if (!out)
                throw std::runtime_error("cannot write " + tmp.string());
        }
        std::filesystem::rename(tmp, native(m_file));
    } catch (const std::exception& e) {
        std::filesystem::remove(tmp, ec);
        m_save_error = m_file.str() + L": " + utf8_to_wide(e.what());
        return false;
    }
    m_save_error.clear();
    return true;
}

} // namespace settings2
