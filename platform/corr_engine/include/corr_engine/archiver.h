#pragma once
// Packs a result directory into a zip archive ("export"): the marker
// <name>.corr, data/, suppressions/ and, on request, the result's source
// files. Inside the archive everything lies under one folder named as the
// result directory; source files lie under <folder>/sources/ with their
// absolute path below it ("/home/me/a.c" -> "<folder>/sources/home/me/a.c").
#include "basekit2/path.h"
#include "corr_engine/zipfile.h"
#include "notify2/messenger.h"
#include "notify2/progress.h"

#include <string>
#include <vector>

namespace corr_engine {

class engine_t;

// What the archiver needs to know of a result.
struct pack_source_t
{
    basekit2::path_t result_dir;                // the folder holding <name>.corr
    std::vector<basekit2::path_t> source_files; // packed with archiver_t::include_sources
};

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

    // The same for the result open in engine (see get_pack_source).
    static error_code_t pack(engine_t& engine, zipfile_impl_t& zip, unsigned flags,
                             notify2::IMessenger* messenger, notify2::IProgress* progress,
                             const pack_options_t& options = {});

    // What pack takes of the result open in engine: its folder and, with
    // include_sources, the source files its problems name. With source
    // folders set, those are the named files under them (a missing one is
    // then reported by pack); without, the named files that exist here
    // (sources of system libraries were never on this machine). A relative
    // name is looked up in the source folders. Sorted, each once.
    static pack_source_t get_pack_source(engine_t& engine, unsigned flags);
};

} // namespace corr_engine
