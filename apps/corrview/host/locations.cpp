#include "locations.h"

#include "import_job.h"

#include "corr_engine/result_manifest.h"
#include "platkit/strings/convert.h"

#include <filesystem>

namespace corrview {
namespace fs = std::filesystem;

basekit2::path_t first_existing(const std::vector<basekit2::path_t>& candidates)
{
    for (const auto& c : candidates)
        if (!c.empty() && c.is_directory())
            return c;
    return candidates.empty() ? basekit2::path_t() : candidates.back();
}

product_paths_t find_product_paths(const basekit2::path_t& exe_dir)
{
    const basekit2::path_t installed =
        exe_dir.empty() ? basekit2::path_t()
                        : exe_dir.parent() / basekit2::path_t(L"share/corr_dialogs2");
    auto installed_or = [&](const wchar_t* sub, const char* built) {
        std::vector<basekit2::path_t> candidates;
        if (!installed.empty())
            candidates.push_back(sub[0] ? installed / basekit2::path_t(sub) : installed);
        candidates.push_back(basekit2::path_t::from_utf8(built));
        return first_existing(candidates);
    };
    product_paths_t paths;
    // The installed folder counts only when it holds the archives: a build
    // tree has a share/ of its own for other things.
    const bool installed_resources =
        !installed.empty() && (installed / basekit2::path_t(L"dialogs2.dat")).exists();
    paths.resource_dir =
        installed_resources ? installed : basekit2::path_t::from_utf8(CORRVIEW_BUILD_RESOURCE_DIR);
    paths.default_config_dir = installed_or(L"config", CORRVIEW_SOURCE_CONFIG_DIR);
    paths.sample_result = installed_or(L"samples/result", CORRVIEW_SOURCE_SAMPLE_RESULT);
    paths.sample_sources = installed_or(L"samples/src", CORRVIEW_SOURCE_SAMPLE_SOURCES);
    return paths;
}

bool attach_sample_sources(const basekit2::path_t& copy, const basekit2::path_t& sources,
                           std::wstring& error)
{
    const auto markers = basekit2::find_files(copy, L"*.corr");
    if (markers.size() != 1) {
        error = copy.str() + L": the sample result has no marker file";
        return false;
    }
    corr_engine::result_manifest_t manifest;
    if (!manifest.read(markers.front(), error))
        return false;
    if (!manifest.source_dirs.empty() || sources.empty() || !sources.is_directory())
        return true;
    manifest.source_dirs.push_back(sources);
    return manifest.write(markers.front(), error);
}

basekit2::path_t default_sample_copy_dir()
{
    // The results folder's parent is the viewer's data folder.
    return default_results_dir().parent() / basekit2::path_t(L"sample-result");
}

basekit2::path_t prepare_sample_copy(const basekit2::path_t& bundled, const basekit2::path_t& copy,
                                     std::wstring& error)
{
    std::error_code ec;
    if (fs::is_directory(copy.fs(), ec) && !fs::is_empty(copy.fs(), ec))
        return copy;
    if (!fs::is_directory(bundled.fs(), ec)) {
        error = bundled.str() + L": the bundled sample result is missing";
        return {};
    }
    // Copied beside the target first, so that an interrupted copy is never
    // taken for a result.
    const fs::path partial = copy.fs().parent_path() / (copy.fs().filename().native() + ".partial");
    fs::remove_all(partial, ec);
    fs::create_directories(partial, ec);
    if (!ec)
        fs::copy(bundled.fs(), partial, fs::copy_options::recursive, ec);
    if (!ec)
        fs::create_directories(partial / "suppressions", ec);
    if (!ec) {
        fs::remove_all(copy.fs(), ec);
        fs::rename(partial, copy.fs(), ec);
    }
    if (ec) {
        error = copy.str() + L": cannot copy the sample result: " +
                platkit::strings::utf8_to_wide(ec.message());
        fs::remove_all(partial, ec);
        return {};
    }
    return copy;
}

} // namespace corrview
