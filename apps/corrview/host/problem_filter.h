#pragma once
// Which problems the problems view lists: a choice of problem type, tool and
// module, a text looked for in the description and the stacks, and whether
// suppressed problems show. The index is built once per result (and again
// when the suppressions change); applying a filter to it is one pass over
// the problems, quick enough to follow every keystroke of the search.
#include "corr_engine/engine.h"

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace corrview {

// What a problem is chosen by. The module is that of the problem's best
// frame (the location the list shows), so each problem counts once.
enum class facet_t { type, tool, module };
constexpr size_t facet_count = 3;

struct problem_filter_t
{
    // None: any. A name no problem has lets nothing through.
    std::array<std::optional<std::wstring>, facet_count> choice;
    // Looked for, ignoring case, in the description, the further texts and
    // every frame of every stack ("module!function - file:line").
    std::wstring text;
    bool show_suppressed = true;

    std::optional<std::wstring>& operator[](facet_t facet)
    {
        return choice[static_cast<size_t>(facet)];
    }
    const std::optional<std::wstring>& operator[](facet_t facet) const
    {
        return choice[static_cast<size_t>(facet)];
    }
    bool operator==(const problem_filter_t& o) const
    {
        return choice == o.choice && text == o.text && show_suppressed == o.show_suppressed;
    }
    bool operator!=(const problem_filter_t& o) const { return !(*this == o); }
};

struct filter_result_t
{
    // Per problem: whether it passes.
    std::vector<char> visible;
    size_t visible_count = 0;
    // Per facet, per name (in the order of problem_index_t::names): the
    // problems that pass every other part of the filter and have that name,
    // so that each count says what choosing it would show.
    std::array<std::vector<size_t>, facet_count> counts;
    // Suppressed problems that the filter would show if they were shown.
    size_t hidden_suppressed = 0;

    const std::vector<size_t>& operator[](facet_t facet) const
    {
        return counts[static_cast<size_t>(facet)];
    }
};

// Lower case for the letters of the Latin, Greek and Cyrillic alphabets;
// other characters stay as they are.
wchar_t fold_case(wchar_t c);
std::wstring fold_case(std::wstring text);

class problem_index_t
{
public:
    problem_index_t() = default;

    // Indexes the problems; suppressed(i) says whether problem i is suppressed.
    void build(const corr_engine::problem_list_t& problems,
               const std::function<bool(size_t)>& suppressed);
    // Takes the suppression of every problem again (after a change of
    // suppressions), keeping the rest.
    void update_suppressed(const std::function<bool(size_t)>& suppressed);

    size_t size() const { return m_suppressed.size(); }
    // The names of a facet that occur, sorted; a problem without a module
    // has the empty name.
    const std::vector<std::wstring>& names(facet_t facet) const
    {
        return m_names[static_cast<size_t>(facet)];
    }
    // The position of a name in names(facet); -1 when no problem has it.
    int name_index(facet_t facet, const std::wstring& name) const;
    // The facet's name of a problem.
    const std::wstring& name_of(facet_t facet, size_t problem) const;

    filter_result_t apply(const problem_filter_t& filter) const;

private:
    std::array<std::vector<std::wstring>, facet_count> m_names;
    std::array<std::vector<uint32_t>, facet_count> m_ids; // per facet, per problem
    std::vector<char> m_suppressed;
    // Every distinct searched text once, folded; each problem's texts are
    // m_text_ids[m_text_start[p] .. m_text_start[p + 1]).
    std::vector<std::wstring> m_texts;
    std::vector<uint32_t> m_text_ids;
    std::vector<size_t> m_text_start;
};

} // namespace corrview
