#pragma once
// The analysis engine of one result: a result directory with its marker file
// "<dir>/<name>.corr", the imported analyser output kept unchanged under
// "<dir>/data/", and the result's suppressions folder "<dir>/suppressions/".
// The engine runs no analyser itself: it imports what Valgrind and the
// sanitizers wrote, and gives the problems back by re-importing data/.
#include "basekit2/intrusive.h"
#include "basekit2/path.h"
#include "basekit2/threading/mutex.h"
#include "corr_engine/archiver.h"
#include "corr_engine/result_converter.h"
#include "corr_engine/result_manifest.h"
#include "corr_engine/suppressions_manager.h"
#include "notify2/progress.h"
#include "probstore3/problem.h"

#include <memory>
#include <string>
#include <vector>

namespace corr_engine {

using problem_list_t = std::vector<probstore3::problem_t>;

// What an import into a result did, file by file.
struct file_import_t
{
    basekit2::path_t file;  // as given
    std::wstring stored_as; // name under data/
    import_report_t report; // tool, problems, warnings, truncated
};

struct import_files_report_t
{
    bool ok = true;
    std::wstring error; // the first failure: "<file>:<line>:<column>: <reason>"
    bool cancelled = false; // the import was asked to stop (ok is false then)
    std::vector<file_import_t> files;
};

class engine_t : public basekit2::object_interface_t
{
public:
    // An engine without a result; open or create one next.
    static basekit2::intrusive_pointer_t<engine_t> create();

    // Opens a result through its marker file or its directory (which must
    // hold exactly one *.corr file). On failure the engine keeps what it had
    // and last_error() says why.
    virtual bool open_result(const basekit2::path_t& marker_or_dir) = 0;

    // Creates an empty result in dir (which must not exist, or be empty) and
    // opens it. name "" takes the directory's name.
    virtual bool create_result(const basekit2::path_t& dir, const std::wstring& name) = 0;

    // Creates a result from analyser output in one step: it is built in a
    // temporary folder beside dir and moved into place only when every file
    // imported, so a failure leaves no trace.
    virtual bool create_result(const basekit2::path_t& dir, const std::wstring& name,
                               const std::vector<basekit2::path_t>& files,
                               const std::vector<basekit2::path_t>& source_dirs,
                               import_files_report_t& report) = 0;
    // The same, reporting through progress (may be null): one phase whose
    // total is the files' size in bytes, the status text naming the file at
    // work. When progress->is_cancelled() the import stops before the next
    // step, leaves nothing behind and fails with report.cancelled set.
    virtual bool create_result(const basekit2::path_t& dir, const std::wstring& name,
                               const std::vector<basekit2::path_t>& files,
                               const std::vector<basekit2::path_t>& source_dirs,
                               import_files_report_t& report, notify2::IProgress* progress) = 0;

    // Imports files into the open result: each is copied under data/ and
    // read back from there. All or nothing: when one file fails (unreadable,
    // no importer, malformed) nothing in the result changes. Warnings (an
    // output cut short) do not fail the import.
    virtual bool import_files(const std::vector<basekit2::path_t>& files,
                              import_files_report_t& report) = 0;
    // The same with progress and cancellation, as for create_result.
    virtual bool import_files(const std::vector<basekit2::path_t>& files,
                              import_files_report_t& report, notify2::IProgress* progress) = 0;

    // Replaces the result's source directories (saved in the marker file).
    virtual bool set_source_dirs(const std::vector<basekit2::path_t>& dirs) = 0;

    virtual bool has_result() const = 0;
    virtual std::wstring get_result_name() const = 0;
    virtual basekit2::path_t get_marker_file() const = 0;
    virtual basekit2::path_t get_result_dir() const = 0;
    virtual basekit2::path_t get_data_dir() const = 0;
    virtual basekit2::path_t get_suppressions_dir() const = 0;
    virtual std::vector<basekit2::path_t> get_source_dirs() const = 0;
    virtual std::vector<basekit2::path_t> get_data_files() const = 0; // full paths, import order
    virtual result_manifest_t get_manifest() const = 0;

    // The problems of the result, read from data/ on first use (and again
    // after an import). Ids count from 1 in import order of the data files,
    // then position in the file; the marker file keeps each file's count, so
    // ids stay the same across reloads and when the result is extended.
    virtual std::shared_ptr<const problem_list_t> get_problems() = 0;
    // What reading data/ reported: warnings, and files that no longer read.
    virtual import_files_report_t get_load_report() = 0;

    // The source files the problems name that exist on this machine, sorted
    // (only those under the source directories, when the result has any).
    // Reads the problems if they are not read yet.
    virtual std::vector<basekit2::path_t> get_source_files() = 0;
    // What archiver_t::pack needs to export this result.
    virtual pack_source_t get_pack_source() = 0;

    // Finds and loads the suppression files of this result (by its marker file).
    virtual suppressions_manager_t& get_suppressions_manager() = 0;

    virtual const std::wstring& last_error() const = 0;

protected:
    ~engine_t() override = default;
};

} // namespace corr_engine
