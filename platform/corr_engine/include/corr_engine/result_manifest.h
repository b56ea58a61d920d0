#pragma once
// The marker file of a result directory, "<dir>/<name>.corr": a small UTF-8
// text manifest with a format version. docs/result-directory.md describes it.
#include "basekit2/path.h"

#include <cstdint>
#include <string>
#include <vector>

namespace corr_engine {

// One imported analyser output kept under data/.
struct data_file_t
{
    std::wstring name;          // file name inside data/
    std::wstring tool;          // "memcheck", "asan, lsan", ...
    std::uint64_t problems = 0; // problems it held when it was imported

    bool operator==(const data_file_t& o) const
    {
        return name == o.name && tool == o.tool && problems == o.problems;
    }
};

struct result_manifest_t
{
    static constexpr int current_version = 1;
    static constexpr const wchar_t* marker_extension = L"corr";

    std::wstring name;
    std::wstring analysis_type; // "memory", "threading", "undefined-behavior", "mixed" or ""
    std::wstring tool;          // every tool of the data files, in order: "memcheck, helgrind"
    std::wstring command;       // the analysed command line, when an output names it
    std::wstring created;       // UTC, ISO 8601: "2025-03-01T12:00:00Z"
    std::vector<basekit2::path_t> source_dirs;
    std::vector<data_file_t> data_files; // in import order

    // Text form, and back. from_text names the file and line of a fault.
    std::string to_text() const;
    bool from_text(const std::string& text, const std::wstring& file_name, std::wstring& error);

    bool read(const basekit2::path_t& file, std::wstring& error);
    // Writes a temporary file beside the target and renames it over it.
    bool write(const basekit2::path_t& file, std::wstring& error) const;

    // tool and analysis_type recomputed from the data files.
    void update_tools();
};

// The analysis type of a set of tools: "memory" (memcheck, asan, lsan, msan),
// "threading" (helgrind, drd, tsan), "undefined-behavior" (ubsan), or
// "mixed"; "" for none.
std::wstring analysis_type_of(const std::vector<std::wstring>& tools);

// Current time in the manifest's form.
std::wstring utc_timestamp();

} // namespace corr_engine
