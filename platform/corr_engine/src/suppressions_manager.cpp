#include "corr_engine/suppressions_manager.h"

#include <boost/make_shared.hpp>

#include <filesystem>
#include <system_error>

namespace corr_engine {

using basekit2::path_t;

std::vector<suppressions_manager_t::file_ptr> suppressions_manager_t::load_folder(const path_t& folder) const
{
    std::vector<file_ptr> files;
    for (const auto& path : basekit2::find_files(folder, std::wstring(L"*.") + SuppressionFileExt)) {
        std::wstring error;
        if (auto file = probstore3::suppression_file_t::open(path.str(), &error))
            files.push_back(std::move(file));
        else
            m_errors.push_back(error);
    }
    return files;
}

std::vector<suppressions_manager_t::file_ptr>
suppressions_manager_t::get_result_suppressions(const path_t& marker_file) const
{
    m_errors.clear();
    return load_folder(get_result_suppressions_folder(marker_file));
}

path_t suppressions_manager_t::get_result_suppressions_folder(const path_t& marker_file) const
{
    if (marker_file.empty())
        return {};
    return marker_file.parent().join(path_t(SuppressionsFolder));
}

path_t suppressions_manager_t::get_project_storage(const path_t& marker_file) const
{
    if (marker_file.empty())
        return {};
    std::error_code ec;
    auto dir = std::filesystem::absolute(marker_file.fs(), ec).parent_path();
    if (ec)
        return {};
    // The result folder itself is not its own project: start one level up.
    while (dir.has_relative_path()) {
        dir = dir.parent_path();
        if (std::filesystem::is_regular_file(dir / ProjectFileName, ec))
            return path_t(dir);
    }
    return {};
}

std::vector<suppressions_manager_t::file_ptr>
suppressions_manager_t::get_project_suppressions(const path_t& marker_file) const
{
    m_errors.clear();
    const path_t project = get_project_storage(marker_file);
    if (project.empty())
        return {};
    return load_folder(project.join(path_t(SuppressionsFolder)));
}

suppressions_manager_t::file_ptr suppressions_manager_t::create_suppression(const path_t& marker_file,
                                                                          const path_t& path) const
{
    m_errors.clear();
    const path_t folder = get_result_suppressions_folder(marker_file);
    path_t target = path.is_absolute() || folder.empty() ? path : folder.join(path);
    if (target.empty())
        return {};
    const wchar_t last = target.str().back();
    if (last == L'/' || last == std::filesystem::path::preferred_separator ||
        target.is_directory()) {
        m_errors.push_back(target.str() + L": a folder, not a suppression file");
        return {};
    }
    // Only *.sup files are listed and read again: a name without an
    // extension gets that one.
    if (target.extension().empty())
        target = target.replace_extension(SuppressionFileExt);
    if (target.exists()) {
        std::wstring error;
        auto file = probstore3::suppression_file_t::open(target.str(), &error);
        if (!file)
            m_errors.push_back(error);
        return file;
    }
    if (!folder.empty() && target.parent() == folder) {
        std::error_code ec;
        std::filesystem::create_directories(folder.fs(), ec);
    }
    return boost::make_shared<probstore3::suppression_file_t>(target.str());
}

} // namespace corr_engine
