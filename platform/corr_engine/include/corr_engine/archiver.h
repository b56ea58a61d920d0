#pragma once
// Packs a result directory into a zip archive ("export"): the marker
// <name>.corr, data/, suppressions/ and, on request, the result's source
// files. Inside the archive everything lies under one folder named as the
// result directory; source files lie under <folder>/sources/ with their
// absolute path below it ("/home/me/a.c" -> "<folder>/sources/home/me/a.c").
#include "basekit2/intrusive.h"
#include "basekit2/path.h"
#include "corr_engine/zipfile.h"
#include "notify2/messenger.h"
#include "notify2/progress.h"

#include <string>
#include <vector>

namespace corr_engine {

// What the archiver needs to know of a result.
struct pack_source_t
{
    basekit2::path_t result_dir;                // the folder holding <name>.corr
    std::vector<basekit2::path_t> source_files; // packed with archiver_t::include_sources
};

class engine_t;

struct pack_options_t
{
    unsigned threads = 0; // compressing threads; 0: one per core, at most 4
    int level = 6;        // deflate level, 1..9
};

class archiver_t
{
public:
    enum error_code_t {
        success = 0,
        no_result = 1,    // the result directory or its marker file is missing
        write_failed = 2, // the archive is not open, or writing it failed
        cancelled = 3,    // the progress asked to stop; no archive was written
        read_failed = 4,  // a file of the result could not be read
    };
    enum flags_t : unsigned {
        include_sources = 1, // also pack the result's source files
    };

    // "corrz": a zip archive of one result.
    static std::wstring get_default_file_ext();

    // Packs source into zip (open for writing) and closes it: on success the
    // archive is at zip.get_path(). On failure or cancellation the archive
    // is discarded and the target path left as it was. Errors and warnings
    // (a missing source file is skipped with a warning) go to messenger;
    // progress reports bytes read for compression and is polled for
    // cancellation several times a second. Either may be null. progress is
    // used only on the calling thread.
    static error_code_t pack(const pack_source_t& source, zipfile_impl_t& zip, unsigned flags,
                             notify2::IMessenger* messenger, notify2::IProgress* progress,
                             const pack_options_t& options = {});

    // Packs the result open in engine. The sources (with include_sources)
    // are the files that the problems' stack frames name and that lie in one
    // of the result's source folders (a missing one is warned about; a
    // relative name counts when one of the folders has it); when the result
    // names no source folders, every named file that exists.
    // No engine, or one without a result: no_result.
    static error_code_t pack(const basekit2::intrusive_pointer_t<engine_t>& engine,
                             zipfile_impl_t& zip, unsigned flags, notify2::IMessenger* messenger,
                             notify2::IProgress* progress);

    // The source files of the result open in engine, as pack takes them.
    static std::vector<basekit2::path_t> get_source_files(engine_t& engine);
};

} // namespace corr_engine
