#pragma once
// Command-line arguments of one command: positional words and --options.
#include <map>
#include <set>
#include <string>
#include <vector>

namespace corrtool {

class arguments_t
{
public:
    // value_options take a value ("--result DIR" or "--result=DIR"); flags
    // do not. Repeated value options keep every value.
    arguments_t(const std::vector<std::string>& args, const std::set<std::string>& value_options,
                const std::set<std::string>& flags);

    bool ok() const { return m_error.empty(); }
    const std::string& error() const { return m_error; }

    const std::vector<std::string>& positional() const { return m_positional; }
    bool has(const std::string& option) const { return m_values.count(option) != 0; }
    std::string value(const std::string& option) const; // last given, "" if none
    std::vector<std::string> values(const std::string& option) const;

private:
    std::vector<std::string> m_positional;
    std::map<std::string, std::vector<std::string>> m_values;
    std::string m_error;
};

} // namespace corrtool
