#include "result_session.h"

#include "corr_engine/suppressions_manager.h"
#include "platkit/strings/convert.h"
#include "probstore3/candidates.h"
#include "probstore3/suppression_matcher.h"

#include <algorithm>
#include <set>

namespace corrview {
namespace {

const corr_engine::problem_list_t& no_problems()
{
    static const corr_engine::problem_list_t empty;
    return empty;
}

} // namespace

result_session_t::result_session_t() = default;
result_session_t::~result_session_t() = default;

bool result_session_t::open(const basekit2::path_t& marker_or_dir)
{
    auto engine = corr_engine::engine_t::create();
    try {
        if (!engine->open_result(marker_or_dir)) {
            m_error = engine->last_error();
            return false;
        }
    } catch (const std::exception& e) {
        // The file system may refuse a name (one it cannot convert): the
        // user hears which, the viewer goes on with what it had.
        m_error = marker_or_dir.str() + L": " + platkit::strings::utf8_to_wide(e.what());
        return false;
    }
    return adopt(engine);
}

bool result_session_t::adopt(engine_ptr engine)
{
    if (!engine || !engine->has_result()) {
        m_error = L"no result is open";
        return false;
    }
    m_engine = std::move(engine);
    m_error.clear();
    load();
    return true;
}

void result_session_t::load()
{
    m_problems = m_engine->get_problems();
    m_load_warnings.clear();
    const auto report = m_engine->get_load_report();
    if (!report.ok && !report.error.empty())
        m_load_warnings.push_back(report.error);
    for (const auto& file : report.files)
        for (const auto& warning : file.report.warnings)
            m_load_warnings.push_back(warning);
    reload_suppressions();
}

const corr_engine::problem_list_t& result_session_t::problems() const
{
    return m_problems ? *m_problems : no_problems();
}

void result_session_t::reload_suppressions()
{
    m_warnings = m_load_warnings;
    m_result_files.clear();
    m_project_files.clear();
    m_suppressed_by.assign(problems().size(), nullptr);
    if (!m_engine)
        return;
    const corr_engine::suppressions_manager_t manager;
    const auto marker = m_engine->get_marker_file();
    m_result_files = manager.get_result_suppressions(marker);
    for (const auto& e : manager.get_last_errors())
        m_warnings.push_back(e);
    m_project_files = manager.get_project_suppressions(marker);
    for (const auto& e : manager.get_last_errors())
        m_warnings.push_back(e);

    std::vector<probstore3::file_ptr> all = m_result_files;
    all.insert(all.end(), m_project_files.begin(), m_project_files.end());
    const auto matcher = probstore3::suppression_matcher_t::from_files(all);
    const auto& list = problems();
    for (size_t i = 0; i < list.size(); ++i)
        m_suppressed_by[i] = matcher.match(list[i]);
}

std::vector<stored_rule_set_t> result_session_t::rule_sets() const
{
    std::vector<stored_rule_set_t> out;
    auto add = [&out](const std::vector<probstore3::file_ptr>& files, bool from_project) {
        for (const auto& file : files)
            for (const auto& set : file->get_rulesets())
                out.push_back(stored_rule_set_t{set, file, from_project});
    };
    add(m_result_files, false);
    add(m_project_files, true);
    return out;
}

probstore3::rule_set_ptr result_session_t::suppressed_by(size_t index) const
{
    return index < m_suppressed_by.size() ? m_suppressed_by[index] : nullptr;
}

size_t result_session_t::suppressed_count() const
{
    return static_cast<size_t>(
        std::count_if(m_suppressed_by.begin(), m_suppressed_by.end(),
                      [](const auto& set) { return static_cast<bool>(set); }));
}

probstore3::rule_set_ptr
result_session_t::create_candidates(const std::vector<size_t>& indexes) const
{
    const auto& list = problems();
    std::vector<const probstore3::problem_t*> chosen;
    for (size_t index : indexes)
        if (index < list.size())
            chosen.push_back(&list[index]);
    if (chosen.empty())
        return nullptr;
    return probstore3::create_candidate_rule_set(chosen);
}

std::vector<basekit2::path_t> result_session_t::source_files() const
{
    std::set<std::string> sources;
    for (const auto& problem : problems())
        for (const auto& stack : problem.stacks)
            for (const auto& frame : stack.frames)
                if (!frame.source.empty())
                    sources.insert(frame.source);
    std::vector<basekit2::path_t> out;
    out.reserve(sources.size());
    for (const auto& s : sources)
        out.push_back(basekit2::path_t::from_utf8(s));
    return out;
}

} // namespace corrview
