#include "probstore3/suppression_matcher.h"

#include <algorithm>
#include <optional>
#include <string>
#include <unordered_map>

namespace probstore3 {

using namespace suppfmt3;

namespace {

// One active frame of a rule; an empty optional is a wildcard.
struct frame_pattern_t
{
    std::optional<std::string> module;
    std::optional<std::string> function;
    std::optional<std::string> source;
    std::optional<std::uint64_t> line;

    bool matches(const frame_t& f) const
    {
        return (!function || *function == f.function) && (!module || *module == f.module) &&
               (!source || *source == f.source) && (!line || *line == f.line);
    }
};

// Runs of adjacent active frames; an elided frame separates two runs.
using segment_t = std::vector<frame_pattern_t>;

struct compiled_rule_t
{
    size_t rule_set = 0;
    rule_ptr rule;
    std::optional<std::string> type;
    std::optional<std::string> description;
    std::vector<segment_t> segments;
};

std::optional<std::string> active_value(const suppfmt3::suppression_rule_t& rule, suppfmt_datatype type)
{
    const auto item = rule.get_item(type);
    if (!item || !item->is_active())
        return std::nullopt;
    return item->get_text();
}

compiled_rule_t compile(const suppfmt3::suppression_rule_t& rule)
{
    compiled_rule_t out;
    out.type = active_value(rule, sdt_problem_type);
    out.description = active_value(rule, sdt_description);
    const auto stack = rule.make_effective_stack();
    if (!stack || !stack->is_active())
        return out;
    segment_t run;
    for (size_t i = 0; i < stack->size(); ++i) {
        if (!stack->is_frame_active(i)) {
            if (!run.empty())
                out.segments.push_back(std::move(run));
            run.clear();
            continue;
        }
        const auto& f = stack->frame(i);
        frame_pattern_t p;
        if (f.module_active)
            p.module = f.module;
        if (f.function_active)
            p.function = f.function;
        if (f.source_active && f.source != wildcard_source)
            p.source = f.source;
        if (f.line_active)
            p.line = f.line;
        run.push_back(std::move(p));
    }
    if (!run.empty())
        out.segments.push_back(std::move(run));
    return out;
}

bool stack_matches(const std::vector<segment_t>& segments, const std::vector<frame_t>& frames)
{
    // Placing each run at its leftmost match never loses a match that a
    // later placement would find, so no backtracking is needed.
    size_t pos = 0;
    for (const auto& seg : segments) {
        bool found = false;
        for (size_t start = pos; start + seg.size() <= frames.size(); ++start) {
            size_t k = 0;
            while (k < seg.size() && seg[k].matches(frames[start + k]))
                ++k;
            if (k == seg.size()) {
                pos = start + seg.size();
                found = true;
                break;
            }
        }
        if (!found)
            return false;
    }
    return true;
}

bool matches(const compiled_rule_t& rule, const problem_t& problem)
{
    if (rule.type && *rule.type != problem.type)
        return false;
    if (rule.description && *rule.description != problem.description)
        return false;
    if (rule.segments.empty())
        return true;
    static const std::vector<frame_t> no_frames;
    return stack_matches(rule.segments, problem.stacks.empty() ? no_frames : problem.stacks.front().frames);
}

} // namespace

struct suppression_matcher_t::index
{
    std::vector<rule_set_ptr> rule_sets;
    std::vector<compiled_rule_t> rules;
    std::unordered_map<std::string, std::vector<std::uint32_t>> by_function;
    std::unordered_map<std::string, std::vector<std::uint32_t>> by_module;
    std::unordered_map<std::string, std::vector<std::uint32_t>> by_type;
    std::vector<std::uint32_t> unindexed;

    // A rule is filed under the most selective concrete value it demands.
    void file(std::uint32_t n)
    {
        const auto& r = rules[n];
        for (const auto& seg : r.segments)
            for (const auto& p : seg)
                if (p.function) {
                    by_function[*p.function].push_back(n);
                    return;
                }
        for (const auto& seg : r.segments)
            for (const auto& p : seg)
                if (p.module) {
                    by_module[*p.module].push_back(n);
                    return;
                }
        if (r.type) {
            by_type[*r.type].push_back(n);
            return;
        }
        unindexed.push_back(n);
    }

    static void add(const std::unordered_map<std::string, std::vector<std::uint32_t>>& map, const std::string& key,
                    std::vector<std::uint32_t>& out)
    {
        const auto it = map.find(key);
        if (it != map.end())
            out.insert(out.end(), it->second.begin(), it->second.end());
    }

    std::vector<std::uint32_t> candidates(const problem_t& problem) const
    {
        std::vector<std::uint32_t> out = unindexed;
        add(by_type, problem.type, out);
        if (!problem.stacks.empty()) {
            for (const auto& f : problem.stacks.front().frames) {
                if (!by_function.empty())
                    add(by_function, f.function, out);
                if (!by_module.empty())
                    add(by_module, f.module, out);
            }
        }
        std::sort(out.begin(), out.end());
        out.erase(std::unique(out.begin(), out.end()), out.end());
        return out;
    }
};

suppression_matcher_t::suppression_matcher_t(const std::vector<rule_set_ptr>& rule_sets)
    : m(std::make_unique<index>())
{
    for (const auto& set : rule_sets) {
        if (!set)
            continue;
        m->rule_sets.push_back(set);
        for (const auto& rule : set->get_rules()) {
            if (!rule)
                continue;
            compiled_rule_t c = compile(*rule);
            c.rule_set = m->rule_sets.size() - 1;
            c.rule = rule;
            m->rules.push_back(std::move(c));
            m->file(static_cast<std::uint32_t>(m->rules.size() - 1));
        }
    }
}

suppression_matcher_t suppression_matcher_t::from_files(const std::vector<file_ptr>& files)
{
    std::vector<rule_set_ptr> sets;
    for (const auto& f : files)
        if (f)
            for (const auto& s : f->get_rulesets(true))
                sets.push_back(s);
    return suppression_matcher_t(sets);
}

suppression_matcher_t::~suppression_matcher_t() = default;
suppression_matcher_t::suppression_matcher_t(suppression_matcher_t&&) noexcept = default;
suppression_matcher_t& suppression_matcher_t::operator=(suppression_matcher_t&&) noexcept = default;

suppression_matcher_t::match_t suppression_matcher_t::find(const problem_t& problem) const
{
    for (const std::uint32_t n : m->candidates(problem)) {
        const auto& r = m->rules[n];
        if (matches(r, problem))
            return {m->rule_sets[r.rule_set], r.rule};
    }
    return {};
}

rule_set_ptr suppression_matcher_t::match(const problem_t& problem) const { return find(problem).rule_set; }

size_t suppression_matcher_t::rule_count() const { return m->rules.size(); }

bool rule_matches(const suppfmt3::suppression_rule_t& rule, const problem_t& problem)
{
    return matches(compile(rule), problem);
}

} // namespace probstore3
