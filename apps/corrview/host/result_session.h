#pragma once
// What the viewer holds of one open result, without any window: the engine,
// its problems, the suppression files of the result and of its project, and
// which rule set suppresses which problem. The views show this; the actions
// of the frame change it through here.
#include "basekit2/intrusive.h"
#include "basekit2/path.h"
#include "corr_engine/engine.h"
#include "probstore3/suppression_file.h"
#include "probstore3/suppression_rule_set.h"

#include <memory>
#include <string>
#include <vector>

namespace corrview {

using engine_ptr = basekit2::intrusive_pointer_t<corr_engine::engine_t>;

// One stored suppression as the viewer lists it.
struct stored_rule_set_t
{
    probstore3::rule_set_ptr rule_set;
    probstore3::file_ptr file;
    bool from_project = false;
};

class result_session_t
{
public:
    result_session_t();
    ~result_session_t();

    // Opens a result through its marker file or its folder and reads its
    // problems and suppressions. On failure the session keeps what it had
    // and last_error() says why.
    bool open(const basekit2::path_t& marker_or_dir);
    // Takes over an engine that has a result open (a finished import).
    bool adopt(engine_ptr engine);

    bool is_open() const { return static_cast<bool>(m_engine); }
    engine_ptr engine() const { return m_engine; }
    const corr_engine::problem_list_t& problems() const;
    const std::wstring& last_error() const { return m_error; }
    // What reading the result reported: output cut short, data files that
    // no longer read, suppression files that cannot be read.
    const std::vector<std::wstring>& warnings() const { return m_warnings; }

    // Reads the suppression files of the result and of its project again
    // and matches every problem against them (result files first).
    void reload_suppressions();
    const std::vector<probstore3::file_ptr>& result_files() const { return m_result_files; }
    const std::vector<probstore3::file_ptr>& project_files() const { return m_project_files; }
    // Every rule set of those files: the result's first, each file in order.
    std::vector<stored_rule_set_t> rule_sets() const;

    // The rule set that hides the problem at index; null when none does.
    probstore3::rule_set_ptr suppressed_by(size_t index) const;
    size_t suppressed_count() const;

    // The candidate rules for the problems at the given indexes, one rule
    // per problem in the given order; null when no index is valid.
    probstore3::rule_set_ptr create_candidates(const std::vector<size_t>& indexes) const;

    // The source files the problems' frames name, each once, sorted.
    std::vector<basekit2::path_t> source_files() const;

private:
    void load();

    engine_ptr m_engine;
    std::shared_ptr<const corr_engine::problem_list_t> m_problems;
    std::vector<probstore3::file_ptr> m_result_files;
    std::vector<probstore3::file_ptr> m_project_files;
    std::vector<probstore3::rule_set_ptr> m_suppressed_by; // per problem
    std::vector<std::wstring> m_load_warnings;             // of the problems
    std::vector<std::wstring> m_warnings;                  // all
    std::wstring m_error;
};

} // namespace corrview
