#include "arguments.h"

namespace corrtool {

arguments_t::arguments_t(const std::vector<std::string>& args,
                         const std::set<std::string>& value_options,
                         const std::set<std::string>& flags)
{
    bool only_positional = false;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (only_positional || a.size() < 2 || a.compare(0, 2, "--") != 0) {
            m_positional.push_back(a);
            continue;
        }
        if (a == "--") {
            only_positional = true;
            continue;
        }
        const auto eq = a.find('=');
        const std::string name = a.substr(2, eq == std::string::npos ? std::string::npos : eq - 2);
        if (flags.count(name)) {
            if (eq != std::string::npos) {
                m_error = "option --" + name + " takes no value";
                return;
            }
            m_values[name].push_back("");
        } else if (value_options.count(name)) {
            if (eq != std::string::npos) {
                m_values[name].push_back(a.substr(eq + 1));
            } else if (i + 1 < args.size()) {
                m_values[name].push_back(args[++i]);
            } else {
                m_error = "option --" + name + " needs a value";
                return;
            }
        } else {
            m_error = "unknown option " + a;
            return;
        }
    }
}

std::string arguments_t::value(const std::string& option) const
{
    const auto it = m_values.find(option);
    return it == m_values.end() || it->second.empty() ? std::string() : it->second.back();
}

std::vector<std::string> arguments_t::values(const std::string& option) const
{
    const auto it = m_values.find(option);
    return it == m_values.end() ? std::vector<std::string>() : it->second;
}

} // namespace corrtool
