#include "source_folders.h"

#include "fs_text.h"

#include "basekit2/config.h"
#include "corr_engine/engine.h"
#include "settings2/property_storage.h"

#include <algorithm>
#include <cwctype>

namespace corrview {
namespace fs = std::filesystem;
namespace {

// One property per project; its values are "folder<N>" in the order added.
const std::wstring folder_prefix = L"folder";

// "a/b/./" and "a/b" are one folder.
fs::path normal_folder(const fs::path& folder)
{
    fs::path normal = folder.lexically_normal();
    if (!normal.has_filename() && normal.has_relative_path())
        normal = normal.parent_path();
    return normal;
}

std::wstring key_of(const fs::path& project)
{
    return to_text(normal_folder(project));
}

// The number of a "folder<N>" value, -1 for any other name.
long folder_number(const std::wstring& name)
{
    if (name.compare(0, folder_prefix.size(), folder_prefix) != 0 ||
        name.size() == folder_prefix.size() || name.size() > folder_prefix.size() + 9)
        return -1;
    long n = 0;
    for (size_t i = folder_prefix.size(); i < name.size(); ++i) {
        if (!std::iswdigit(name[i]))
            return -1;
        n = n * 10 + (name[i] - L'0');
    }
    return n;
}

std::vector<fs::path> folders_in(const basekit2::variant_bag_t& bag)
{
    std::vector<std::pair<long, fs::path>> numbered;
    for (const auto& [name, value] : bag.values())
        if (const long n = folder_number(name); n >= 0 && !value.as_wstring().empty())
            numbered.emplace_back(n, to_fs(value.as_wstring()));
    std::sort(numbered.begin(), numbered.end(),
              [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<fs::path> folders;
    for (auto& entry : numbered)
        folders.push_back(std::move(entry.second));
    return folders;
}

} // namespace

source_folders_t::source_folders_t(basekit2::path_t file) : m_file(std::move(file)) {}

basekit2::path_t source_folders_t::default_file()
{
    return basekit2::config_manager_t::user_config_dir() /
           basekit2::path_t(L"corrview.source-folders.xml");
}

std::vector<fs::path> source_folders_t::get(const fs::path& project) const
{
    // Read afresh: another viewer may have added folders since.
    const settings2::file_property_storage_t storage(m_file);
    basekit2::variant_bag_t bag;
    if (!storage.get(key_of(project), bag))
        return {};
    return folders_in(bag);
}

bool source_folders_t::add(const fs::path& project, const fs::path& folder)
{
    settings2::file_property_storage_t storage(m_file);
    if (!storage.load_error().empty()) {
        // Saving would move the unreadable file aside; say so instead.
        m_error = storage.load_error();
        return false;
    }
    basekit2::variant_bag_t bag;
    storage.get(key_of(project), bag);
    const fs::path normal = normal_folder(folder);
    long next = 0;
    for (const auto& [name, value] : bag.values()) {
        if (const long n = folder_number(name); n >= 0) {
            if (to_fs(value.as_wstring()) == normal) {
                m_error.clear();
                return true;
            }
            next = std::max(next, n + 1);
        }
    }
    bag.put(folder_prefix + std::to_wstring(next), to_text(normal));
    if (!storage.put(key_of(project), bag)) {
        m_error = storage.last_error();
        return false;
    }
    m_error.clear();
    return true;
}

fs::path project_of(corr_engine::engine_t& engine)
{
    const basekit2::path_t marker = engine.get_marker_file();
    const basekit2::path_t project = engine.get_suppressions_manager().get_project_storage(marker);
    return to_fs(project.empty() ? engine.get_result_dir() : project);
}

} // namespace corrview
