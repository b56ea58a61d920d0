#pragma once
// Named arguments of a message: {name} in a catalogue text is replaced by
// the value of the first argument of that name.
#include "platkit/types/variant.h"

#include <initializer_list>
#include <string>
#include <vector>

namespace platkit::generic {

struct argument
{
    argument() = default;
    argument(std::wstring n, types::variant v) : name(std::move(n)), value(std::move(v)) {}

    std::wstring name;
    types::variant value;
};

class varg_list
{
public:
    using container = std::vector<argument>;
    using const_iterator = container::const_iterator;

    varg_list() = default;
    varg_list(std::initializer_list<argument> args) : m_args(args) {}

    varg_list& add(std::wstring name, types::variant value)
    {
        m_args.emplace_back(std::move(name), std::move(value));
        return *this;
    }
    void push_back(argument a) { m_args.push_back(std::move(a)); }
    void append(const varg_list& other) { m_args.insert(m_args.end(), other.begin(), other.end()); }

    bool empty() const { return m_args.empty(); }
    size_t size() const { return m_args.size(); }
    const argument& operator[](size_t i) const { return m_args[i]; }
    const_iterator begin() const { return m_args.begin(); }
    const_iterator end() const { return m_args.end(); }

    // First argument with that name, or null.
    const argument* find(const std::wstring& name) const;

private:
    container m_args;
};

} // namespace platkit::generic
