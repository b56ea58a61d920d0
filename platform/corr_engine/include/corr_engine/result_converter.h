#pragma once
// The registry of result importers: each turns one kind of analyser output
// (a file extension) into problems of a result.
#include "basekit2/path.h"
#include "probstore3/problem.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace corr_engine {

// What an import found besides the problems: warnings for the user (a file
// cut short, an unknown kind) and, on failure, the reason with its place.
struct import_report_t
{
    bool ok = true;
    std::wstring error;                 // "file.xml:12: not well-formed (invalid token)"
    std::vector<std::wstring> warnings; // "file.xml: the output ends in the middle of an error ..."
    bool truncated = false;
};

class result_importer_t
{
public:
    virtual ~result_importer_t() = default;
    // Extension without the dot, as offered in the open-file dialog: "xml".
    virtual std::wstring extension() const = 0;
    // Whether this importer understands the content (the first bytes of a file).
    virtual bool can_import(const std::string& head) const = 0;
    // Reads the file and hands each complete problem to sink, in file order.
    virtual import_report_t import(const basekit2::path_t& file,
                                   const std::function<void(probstore3::problem_t&&)>& sink) const = 0;
};

class result_converter_t
{
public:
    result_converter_t();

    // Extensions of the registered importers, in registration order, without
    // dots; an extension offered by several importers is listed once.
    std::vector<std::wstring> get_supported_extensions() const;

    // The importer for a file: among those with its extension, the first whose
    // can_import accepts the file's first bytes. Null when none does.
    std::shared_ptr<const result_importer_t> find_importer(const basekit2::path_t& file) const;
    std::vector<std::shared_ptr<const result_importer_t>> importers() const;

    // Adds an importer to the process-wide registry.
    static void register_importer(std::shared_ptr<const result_importer_t> importer);
    // Removes every importer (tests).
    static void clear_registry();
};

} // namespace corr_engine
