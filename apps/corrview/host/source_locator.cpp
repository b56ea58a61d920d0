#include "source_locator.h"

#include <algorithm>
#include <system_error>

namespace corrview {
namespace fs = std::filesystem;
namespace {

// The recorded path's names, without the root, "." and "..": what a tail
// can be made of.
std::vector<fs::path> names_of(const fs::path& path)
{
    std::vector<fs::path> names;
    for (const auto& part : path.lexically_normal().relative_path())
        if (!part.empty() && part != "." && part != "..")
            names.push_back(part);
    return names;
}

bool is_file(const fs::path& p)
{
    std::error_code ec;
    return fs::is_regular_file(p, ec);
}

} // namespace

void source_locator_t::set_result_folders(std::vector<fs::path> folders)
{
    m_result = std::move(folders);
}

void source_locator_t::set_user_folders(std::vector<fs::path> folders)
{
    m_user = std::move(folders);
}

source_search_t source_locator_t::find(const std::string& recorded) const
{
    source_search_t search;
    if (recorded.empty())
        return search;
    // On this system a path's native form is its bytes: UTF-8 as recorded.
    const fs::path path(recorded);
    if (path.is_absolute()) {
        search.looked_in.push_back(path);
        if (is_file(path)) {
            search.found = path;
            return search;
        }
    }
    const std::vector<fs::path> names = names_of(path);
    if (names.empty())
        return search;
    for (const auto* folders : {&m_result, &m_user}) {
        for (const fs::path& folder : *folders) {
            if (folder.empty())
                continue;
            search.looked_in.push_back(folder);
            for (size_t first = 0; first < names.size(); ++first) {
                fs::path candidate = folder;
                for (size_t i = first; i < names.size(); ++i)
                    candidate /= names[i];
                if (is_file(candidate)) {
                    search.found = candidate;
                    return search;
                }
            }
        }
    }
    return search;
}

fs::path folder_for(const std::string& recorded, const fs::path& chosen)
{
    const std::vector<fs::path> tail = names_of(fs::path(recorded));
    const fs::path normal = chosen.lexically_normal();
    std::vector<fs::path> parts(normal.begin(), normal.end());
    size_t shared = 0;
    while (shared < tail.size() && shared < parts.size() &&
           tail[tail.size() - 1 - shared] == parts[parts.size() - 1 - shared])
        ++shared;
    // Keep at least the file name off, so the folder is a folder.
    const size_t keep = parts.size() - std::max<size_t>(shared, 1);
    fs::path folder;
    for (size_t i = 0; i < keep; ++i)
        folder /= parts[i];
    return folder;
}

} // namespace corrview
