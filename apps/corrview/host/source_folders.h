#pragma once
// The source folders a user added, remembered per project in the user's own
// configuration (where sources lie is a fact about this machine, not about
// the project, whose files may be shared). A result in no project is its
// own project.
#include "basekit2/path.h"

#include <filesystem>
#include <string>
#include <vector>

namespace corr_engine {
class engine_t;
}

namespace corrview {

class source_folders_t
{
public:
    explicit source_folders_t(basekit2::path_t file = default_file());
    // <user config dir>/corrview.source-folders.xml
    static basekit2::path_t default_file();

    // The folders of a project, in the order they were added.
    std::vector<std::filesystem::path> get(const std::filesystem::path& project) const;
    // Adds a folder (once) at the end of the project's list. False when the
    // list could not be saved; error() says why.
    bool add(const std::filesystem::path& project, const std::filesystem::path& folder);
    const std::wstring& error() const { return m_error; }

private:
    basekit2::path_t m_file;
    std::wstring m_error;
};

// The project folder of the result open in engine, else the result's folder.
std::filesystem::path project_of(corr_engine::engine_t& engine);

} // namespace corrview
