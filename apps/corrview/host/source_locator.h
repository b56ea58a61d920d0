#pragma once
// Finding a frame's source file on this machine. The analyser recorded the
// path where the program was built; the sources may since have moved (a
// result made on another machine, a checkout elsewhere). A file is looked
// for as recorded, then under the result's source folders, then under the
// folders the user added. Under a folder, the recorded path's tails are
// tried from the longest to the file name alone, so a folder may be the old
// tree's root or any folder inside it:
//   recorded /build/proj/src/a.c, folder /home/me/proj ->
//   /home/me/proj/build/proj/src/a.c, /home/me/proj/proj/src/a.c,
//   /home/me/proj/src/a.c (found), ...
#include "basekit2/path.h"

#include <filesystem>
#include <string>
#include <vector>

namespace corrview {

struct source_search_t
{
    std::filesystem::path found; // empty when not found
    // Where it was looked for: the recorded path when it is absolute, then
    // every folder searched, in order.
    std::vector<std::filesystem::path> looked_in;
};

class source_locator_t
{
public:
    void set_result_folders(std::vector<std::filesystem::path> folders);
    void set_user_folders(std::vector<std::filesystem::path> folders);
    const std::vector<std::filesystem::path>& user_folders() const { return m_user; }

    // recorded: the frame's source as the analyser wrote it (UTF-8).
    source_search_t find(const std::string& recorded) const;

private:
    std::vector<std::filesystem::path> m_result;
    std::vector<std::filesystem::path> m_user;
};

// The folder that, added to the user's folders, makes find() map recorded
// onto chosen: chosen minus the longest tail it shares with recorded (the
// chosen file's own folder when even the names differ).
std::filesystem::path folder_for(const std::string& recorded, const std::filesystem::path& chosen);

} // namespace corrview
