#pragma once
// What the suppression commands share: opening a result and reading the
// suppression files that apply to it (the result's and its project's).
// Every failure is reported on err as "corrtool <command>: <what>" and
// makes the command stop with exit_error.
#include "corr_engine/engine.h"
#include "corr_engine/native_suppressions.h"
#include "probstore3/suppression_matcher.h"
#include "probstore3/suppression_file.h"

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace corrtool {

using engine_ptr = basekit2::intrusive_pointer_t<corr_engine::engine_t>;

// The open result of DIR (folder or marker file) with its problems loaded;
// null after a message on err.
engine_ptr open_result(const std::string& command, const std::string& dir, std::ostream& err);

// The result's suppression files, then the project's, then extra_files (in
// the order given). A file that cannot be read fails the whole call: a
// check that silently skipped a broken file would pass for the wrong reason.
// extra_files may also be the analysers' own files (Valgrind's, the
// sanitizers'); they go to native when given, else they are refused.
bool load_suppression_files(const std::string& command, const corr_engine::engine_t& engine,
                            const std::vector<std::string>& extra_files,
                            std::vector<probstore3::file_ptr>& files, std::ostream& err,
                            std::vector<corr_engine::native_suppression_file_t>* native = nullptr);

// Which suppression hides a problem: ours first, in file order, then the
// analysers' own files.
class suppressor_t
{
public:
    suppressor_t(const std::vector<probstore3::file_ptr>& files,
                 std::vector<corr_engine::native_suppression_file_t> native);
    // The suppression's name for the output; nullopt when none hides it.
    std::optional<std::string> name(const probstore3::problem_t& problem) const;
    // The same with where it comes from: "\"Known\"" or
    // "Valgrind suppression \"x\" in FILE".
    std::optional<std::string> describe(const probstore3::problem_t& problem) const;

private:
    probstore3::suppression_matcher_t m_matcher;
    std::vector<corr_engine::native_suppression_file_t> m_native;
};

// One file named on the command line; null after a message on err.
probstore3::file_ptr open_suppression_file(const std::string& command, const std::string& path,
                                           std::ostream& err);

} // namespace corrtool
