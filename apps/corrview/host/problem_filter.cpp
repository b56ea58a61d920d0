#include "problem_filter.h"

#include "platkit/strings/convert.h"

#include <algorithm>
#include <numeric>
#include <unordered_map>

namespace corrview {

using platkit::strings::utf8_to_wide;

wchar_t fold_case(wchar_t c)
{
    if (c < 0x80)
        return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c + 0x20) : c;
    // Latin-1: À..Þ but the multiplication sign.
    if (c >= 0xC0 && c <= 0xDE && c != 0xD7)
        return static_cast<wchar_t>(c + 0x20);
    // Latin Extended-A: upper and lower case alternate, with a shift in the middle.
    if ((c >= 0x100 && c <= 0x137) || (c >= 0x14A && c <= 0x177))
        return static_cast<wchar_t>(c | 1);
    if ((c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E))
        return (c & 1) ? static_cast<wchar_t>(c + 1) : c;
    if (c == 0x178)
        return 0xFF;
    // Greek and Cyrillic.
    if ((c >= 0x391 && c <= 0x3A9 && c != 0x3A2) || (c >= 0x410 && c <= 0x42F))
        return static_cast<wchar_t>(c + 0x20);
    if (c >= 0x400 && c <= 0x40F)
        return static_cast<wchar_t>(c + 0x50);
    return c;
}

std::wstring fold_case(std::wstring text)
{
    for (wchar_t& c : text)
        c = fold_case(c);
    return text;
}

namespace {

// Interns names, then hands them out sorted with each problem's id renumbered.
class name_table_t
{
public:
    uint32_t add(const std::string& name)
    {
        const auto [at, added] = m_ids.emplace(name, static_cast<uint32_t>(m_names.size()));
        if (added)
            m_names.push_back(name);
        return at->second;
    }
    void finish(std::vector<std::wstring>& names, std::vector<uint32_t>& ids)
    {
        std::vector<std::wstring> wide(m_names.size());
        for (size_t i = 0; i < wide.size(); ++i)
            wide[i] = utf8_to_wide(m_names[i]);
        std::vector<uint32_t> order(wide.size());
        std::iota(order.begin(), order.end(), 0u);
        std::sort(order.begin(), order.end(), [&](uint32_t a, uint32_t b) {
            const auto fa = fold_case(wide[a]), fb = fold_case(wide[b]);
            return fa != fb ? fa < fb : wide[a] < wide[b];
        });
        std::vector<uint32_t> new_id(order.size());
        names.clear();
        for (uint32_t i = 0; i < order.size(); ++i) {
            new_id[order[i]] = i;
            names.push_back(std::move(wide[order[i]]));
        }
        for (uint32_t& id : ids)
            id = new_id[id];
    }

private:
    std::unordered_map<std::string, uint32_t> m_ids;
    std::vector<std::string> m_names;
};

std::string frame_key(const probstore3::frame_t& frame)
{
    std::string key = frame.module + "!" + frame.function;
    if (!frame.source.empty()) {
        key += " - " + frame.source;
        if (frame.line != probstore3::no_line)
            key += ":" + std::to_string(frame.line);
    }
    return key;
}

} // namespace

void problem_index_t::build(const corr_engine::problem_list_t& problems,
                            const std::function<bool(size_t)>& suppressed)
{
    std::array<name_table_t, facet_count> tables;
    for (auto& ids : m_ids) {
        ids.clear();
        ids.reserve(problems.size());
    }
    std::unordered_map<std::string, uint32_t> text_ids;
    std::vector<std::string> texts;
    m_text_ids.clear();
    m_text_start.assign(1, 0);
    auto add_text = [&](const std::string& text) {
        if (text.empty())
            return;
        const auto [at, added] = text_ids.emplace(text, static_cast<uint32_t>(texts.size()));
        if (added)
            texts.push_back(text);
        m_text_ids.push_back(at->second);
    };
    for (const auto& problem : problems) {
        const std::string& type = problem.type.empty() ? problem.kind : problem.type;
        const auto* best = problem.best_frame();
        m_ids[size_t(facet_t::type)].push_back(tables[size_t(facet_t::type)].add(type));
        m_ids[size_t(facet_t::tool)].push_back(tables[size_t(facet_t::tool)].add(problem.tool));
        m_ids[size_t(facet_t::module)].push_back(
            tables[size_t(facet_t::module)].add(best ? best->module : std::string()));
        add_text(problem.description);
        for (const auto& aux : problem.aux)
            add_text(aux);
        for (const auto& stack : problem.stacks)
            for (const auto& frame : stack.frames)
                add_text(frame_key(frame));
        m_text_start.push_back(m_text_ids.size());
    }
    for (size_t f = 0; f < facet_count; ++f)
        tables[f].finish(m_names[f], m_ids[f]);
    m_texts.resize(texts.size());
    for (size_t i = 0; i < texts.size(); ++i)
        m_texts[i] = fold_case(utf8_to_wide(texts[i]));
    m_suppressed.assign(problems.size(), 0);
    update_suppressed(suppressed);
}

void problem_index_t::update_suppressed(const std::function<bool(size_t)>& suppressed)
{
    for (size_t i = 0; i < m_suppressed.size(); ++i)
        m_suppressed[i] = suppressed && suppressed(i) ? 1 : 0;
}

int problem_index_t::name_index(facet_t facet, const std::wstring& name) const
{
    const auto& list = names(facet);
    const auto at = std::find(list.begin(), list.end(), name);
    return at == list.end() ? -1 : static_cast<int>(at - list.begin());
}

const std::wstring& problem_index_t::name_of(facet_t facet, size_t problem) const
{
    return names(facet)[m_ids[static_cast<size_t>(facet)][problem]];
}

filter_result_t problem_index_t::apply(const problem_filter_t& filter) const
{
    const size_t n = size();
    filter_result_t result;
    result.visible.assign(n, 0);
    for (size_t f = 0; f < facet_count; ++f)
        result.counts[f].assign(m_names[f].size(), 0);

    // Each distinct text is searched once, whatever number of problems share it.
    std::vector<char> text_matches;
    const std::wstring needle = fold_case(filter.text);
    if (!needle.empty()) {
        text_matches.resize(m_texts.size());
        for (size_t i = 0; i < m_texts.size(); ++i)
            text_matches[i] = m_texts[i].find(needle) != std::wstring::npos ? 1 : 0;
    }
    // Per facet: the id chosen, every id (-1) or none at all (-2).
    std::array<int64_t, facet_count> chosen{};
    for (size_t f = 0; f < facet_count; ++f) {
        const auto& name = filter.choice[f];
        if (!name) {
            chosen[f] = -1;
        } else {
            const int at = name_index(static_cast<facet_t>(f), *name);
            chosen[f] = at < 0 ? -2 : at;
        }
    }

    for (size_t p = 0; p < n; ++p) {
        if (!needle.empty()) {
            bool found = false;
            for (size_t t = m_text_start[p]; t < m_text_start[p + 1] && !found; ++t)
                found = text_matches[m_text_ids[t]] != 0;
            if (!found)
                continue;
        }
        std::array<bool, facet_count> ok{};
        int failing = 0;
        for (size_t f = 0; f < facet_count; ++f) {
            ok[f] = chosen[f] == -1 || chosen[f] == int64_t(m_ids[f][p]);
            failing += ok[f] ? 0 : 1;
        }
        if (failing > 1)
            continue;
        if (m_suppressed[p] && !filter.show_suppressed) {
            if (failing == 0)
                ++result.hidden_suppressed;
            continue;
        }
        // A facet counts the problems that every other part lets through.
        for (size_t f = 0; f < facet_count; ++f)
            if (failing == 0 || !ok[f])
                ++result.counts[f][m_ids[f][p]];
        if (failing == 0) {
            result.visible[p] = 1;
            ++result.visible_count;
        }
    }
    return result;
}

} // namespace corrview
