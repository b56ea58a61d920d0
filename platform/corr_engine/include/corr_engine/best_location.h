#pragma once
// Choosing the best location of a problem: the frame a user should look at
// first, which is also the one frame a default suppression rule keeps.
#include "probstore3/problem.h"

#include <string>
#include <string_view>
#include <vector>

namespace corr_engine {

class best_location_t
{
public:
    // source_dirs: the result's source folders (UTF-8); a frame whose source
    // lies below one of them is the program's own code.
    explicit best_location_t(const std::vector<std::string>& source_dirs = {});

    // Frames of the analysers' runtimes and the system libraries: Valgrind's
    // preload libraries, libc, the loader, libstdc++, the sanitizer runtimes
    // and their interceptors, and frames that name nothing at all.
    static bool is_runtime_frame(const probstore3::frame_t& frame);

    // program: short module name of the analysed executable ("" if unknown).
    bool is_own_code(const probstore3::frame_t& frame, std::string_view program) const;

    // The first own-code frame of the stack; else the first frame that is not
    // a runtime frame; else 0.
    int best_level(const std::vector<probstore3::frame_t>& frames, std::string_view program) const;

    // Whether a source file lies below one of the source folders.
    bool in_source_dirs(const std::string& source) const;

private:
    std::vector<std::string> m_source_dirs; // normalised, ending in '/'
};

// "/usr/lib/x86_64-linux-gnu/libc.so.6" -> "libc.so.6"
std::string module_short_name(std::string_view path);

} // namespace corr_engine
