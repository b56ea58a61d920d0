#pragma once
// Where the viewer finds what it ships: the resource archives, the default
// configuration and the bundled sample result. An installed viewer finds
// them beside itself (<prefix>/share/corr_dialogs2/...); a viewer run from
// its build tree falls back to the build's and the source tree's folders
// that CMake compiled in.
#include "basekit2/path.h"

#include <string>
#include <vector>

namespace corrview {

struct product_paths_t
{
    basekit2::path_t resource_dir;       // dialogs2.dat, shareddlg3.dat
    basekit2::path_t default_config_dir; // default configuration sections
    basekit2::path_t sample_result;      // the bundled sample result
    basekit2::path_t sample_sources;     // the sample programs' sources
};

// The first candidate folder that exists, else the last one (so that a
// message can name it).
basekit2::path_t first_existing(const std::vector<basekit2::path_t>& candidates);

// exe_dir: the folder of the running executable (empty when unknown).
product_paths_t find_product_paths(const basekit2::path_t& exe_dir);

// The sample result the viewer opens without an argument: a copy of the
// bundled one in the user's data folder, made on first use, so that
// suppressions created in it change neither the installed nor the checked-
// out copy. Empty (and error set) when the copy cannot be made.
basekit2::path_t prepare_sample_copy(const basekit2::path_t& bundled, const basekit2::path_t& copy,
                                     std::wstring& error);
// Makes sources the source folder of the sample copy when it has none, so
// that the sample's frames (recorded where the samples were built) show
// their source. False, with error set, when the marker cannot be rewritten.
bool attach_sample_sources(const basekit2::path_t& copy, const basekit2::path_t& sources,
                           std::wstring& error);
// Where that copy lives: "corrview/sample-result" in the user's data folder.
basekit2::path_t default_sample_copy_dir();

} // namespace corrview
