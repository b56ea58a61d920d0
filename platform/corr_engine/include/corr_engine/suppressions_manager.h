#pragma once
// Where the suppression files of a result and of its project live, and the
// loading of them. A result is a folder with a marker file
// "<result dir>/<name>.corr"; its suppressions are in
// "<result dir>/suppressions/*.sup". A project is the nearest folder above a
// result that holds "project.corrproj"; its suppressions are in
// "<project>/suppressions/*.sup".
#include "basekit2/path.h"
#include "probstore3/suppression_file.h"

#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

namespace corr_engine {

class suppressions_manager_t
{
public:
    using file_ptr = boost::shared_ptr<probstore3::suppression_file_t>;

    // Extension of suppression files, without the dot.
    static constexpr const wchar_t* SuppressionFileExt = L"sup";
    static constexpr const wchar_t* SuppressionsFolder = L"suppressions";
    static constexpr const wchar_t* ProjectFileName = L"project.corrproj";

    // The suppression files of the result, loaded, sorted by file name. A
    // file that cannot be read is left out (so nothing can overwrite it)
    // and its error is kept in get_last_errors().
    std::vector<file_ptr> get_result_suppressions(const basekit2::path_t& marker_file) const;
    basekit2::path_t get_result_suppressions_folder(const basekit2::path_t& marker_file) const;

    // The project folder of the result; empty when the result is in none.
    basekit2::path_t get_project_storage(const basekit2::path_t& marker_file) const;
    // The suppression files of the project, as for the result's; none without a project.
    std::vector<file_ptr> get_project_suppressions(const basekit2::path_t& marker_file) const;

    // A file object for path (relative paths are taken in the result's
    // suppressions folder; a name without an extension gets
    // SuppressionFileExt). An existing file is loaded, so that saving adds
    // to it rather than replacing it; null when it cannot be read (the
    // reason is in get_last_errors()), as for a path that names a folder.
    // A new file is written on its first
    // save; the result's suppressions folder is created for it when missing.
    file_ptr create_suppression(const basekit2::path_t& marker_file, const basekit2::path_t& path) const;

    // "<path>:<line>: <reason>" for each file the last call could not read.
    const std::vector<std::wstring>& get_last_errors() const { return m_errors; }

private:
    std::vector<file_ptr> load_folder(const basekit2::path_t& folder) const;

    mutable std::vector<std::wstring> m_errors;
};

} // namespace corr_engine
