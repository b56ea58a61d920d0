#pragma once
// A zip archive being written. Nothing appears at the target path until
// close() succeeds: libzip writes a temporary file beside the target and
// renames it over the target at the end, so a failed or discarded archive
// leaves an existing file at that path as it was.
#include "basekit2/path.h"

#include <string>

typedef struct zip zip_t;

namespace corr_engine {

class zipfile_impl_t
{
public:
    zipfile_impl_t() = default;
    // Discards an archive still open.
    ~zipfile_impl_t();
    zipfile_impl_t(const zipfile_impl_t&) = delete;
    zipfile_impl_t& operator=(const zipfile_impl_t&) = delete;

    // Opens target for writing, to be created or replaced. Fails (false, and
    // get_error() says why) when the folder does not exist or cannot be
    // written, or target is a folder: these are found now, not at close().
    bool open_for_writing(const basekit2::path_t& target);
    bool is_open() const { return m_zip != nullptr; }
    const basekit2::path_t& get_path() const { return m_path; }
    // The reason of the last failure, with the path; empty when none.
    const std::wstring& get_error() const { return m_error; }

    // Writes the archive and puts it at the target path. A no-op answering
    // true when not open. On failure the archive is discarded.
    bool close();
    // Abandons the archive; the target path is left as it was.
    void discard();

private:
    friend class archiver_t;
    zip_t* handle() const { return m_zip; }
    void set_error(const std::wstring& what);

    zip_t* m_zip = nullptr;
    basekit2::path_t m_path;
    std::wstring m_error;
};

} // namespace corr_engine
