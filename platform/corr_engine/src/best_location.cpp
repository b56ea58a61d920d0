#include "corr_engine/best_location.h"

#include <algorithm>
#include <array>
#include <filesystem>

namespace corr_engine {
namespace {

bool starts_with(std::string_view text, std::string_view prefix)
{
    return text.substr(0, prefix.size()) == prefix;
}

bool contains(std::string_view text, std::string_view part)
{
    return text.find(part) != std::string_view::npos;
}

// Shared objects of the system and of the analysers, by short name.
bool is_runtime_module(std::string_view module)
{
    static constexpr std::array<std::string_view, 14> prefixes{
        "vgpreload_", "libc.so", "libc-",   "ld-linux", "libstdc++", "libm.so",     "libpthread",
        "libgcc_s",   "libasan", "libtsan", "liblsan",  "libubsan",  "libclang_rt", "libc++"};
    return std::any_of(prefixes.begin(), prefixes.end(),
                       [&](std::string_view p) { return starts_with(module, p); });
}

// Functions of the runtimes and the start-up code, whatever module holds them
// (the sanitizer runtimes of clang are linked into the executable).
bool is_runtime_function(std::string_view fn)
{
    static constexpr std::array<std::string_view, 13> prefixes{
        "__interceptor_", "___interceptor_", "__asan_",        "__tsan_",      "__lsan_",
        "__ubsan_",       "__sanitizer",     "__interception", "__libc_start", "__GI_",
        "__clone",        "_start",          "__wrap_"};
    if (std::any_of(prefixes.begin(), prefixes.end(),
                    [&](std::string_view p) { return starts_with(fn, p); }))
        return true;
    return fn == "start_thread" || fn == "clone" || fn == "clone3";
}

// Functions that the analysers replace (allocation, threading, string
// routines). Only a frame without a source counts: a program's own function
// of the same name has debug information.
bool is_interposed_function(std::string_view fn)
{
    static constexpr std::array<std::string_view, 3> prefixes{"operator new", "operator delete",
                                                              "pthread_"};
    if (std::any_of(prefixes.begin(), prefixes.end(),
                    [&](std::string_view p) { return starts_with(fn, p); }))
        return true;
    static constexpr std::array<std::string_view, 22> names{
        "malloc",  "calloc",        "realloc",  "free",           "reallocarray", "valloc",
        "pvalloc", "aligned_alloc", "memalign", "posix_memalign", "strdup",       "strndup",
        "strlen",  "strcpy",        "strncpy",  "strcmp",         "strcat",       "memcpy",
        "memmove", "memset",        "memcmp",   "mempcpy"};
    return std::find(names.begin(), names.end(), fn) != names.end();
}

// Sources of glibc (built elsewhere, so relative) and of the sanitizer runtimes.
bool is_runtime_source(std::string_view source)
{
    return contains(source, "/libsanitizer/") || contains(source, "compiler-rt/") ||
           contains(source, "sysdeps/") || starts_with(source, "csu/") ||
           starts_with(source, "../csu/");
}

bool is_system_source(std::string_view source)
{
    return starts_with(source, "/usr/");
}

std::string normalise_dir(const std::string& dir)
{
    std::string out = std::filesystem::path(dir).lexically_normal().generic_string();
    if (out.empty() || out.back() != '/')
        out.push_back('/');
    return out;
}

} // namespace

std::string module_short_name(std::string_view path)
{
    const auto slash = path.find_last_of('/');
    return std::string(slash == std::string_view::npos ? path : path.substr(slash + 1));
}

best_location_t::best_location_t(const std::vector<std::string>& source_dirs)
{
    for (const auto& dir : source_dirs)
        if (!dir.empty())
            m_source_dirs.push_back(normalise_dir(dir));
}

bool best_location_t::is_runtime_frame(const probstore3::frame_t& frame)
{
    if (frame.function.empty() && frame.source.empty())
        return true;
    if (is_runtime_module(frame.module) || is_runtime_function(frame.function))
        return true;
    if (!frame.source.empty())
        return is_runtime_source(frame.source);
    return is_interposed_function(frame.function);
}

bool best_location_t::in_source_dirs(const std::string& source) const
{
    if (m_source_dirs.empty() || source.empty())
        return false;
    const std::string normal = std::filesystem::path(source).lexically_normal().generic_string();
    return std::any_of(m_source_dirs.begin(), m_source_dirs.end(),
                       [&](const std::string& dir) { return starts_with(normal, dir); });
}

bool best_location_t::is_own_code(const probstore3::frame_t& frame, std::string_view program) const
{
    if (is_runtime_frame(frame))
        return false;
    if (in_source_dirs(frame.source))
        return true;
    if (is_system_source(frame.source))
        return false;
    if (!program.empty() && frame.module == program)
        return true;
    // Symbolised sanitizer frames name the source but not the module.
    return frame.module.empty() && !frame.source.empty() && frame.source.front() == '/';
}

int best_location_t::best_level(const std::vector<probstore3::frame_t>& frames,
                                std::string_view program) const
{
    for (size_t i = 0; i < frames.size(); ++i)
        if (is_own_code(frames[i], program))
            return static_cast<int>(i);
    for (size_t i = 0; i < frames.size(); ++i)
        if (!is_runtime_frame(frames[i]))
            return static_cast<int>(i);
    return 0;
}

} // namespace corr_engine
