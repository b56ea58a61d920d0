#pragma once
// The registry of result importers: each turns one kind of analyser output
// (a file extension) into problems of a result.
#include "basekit2/path.h"
#include "probstore3/problem.h"

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

namespace corr_engine {

// What an import found besides the problems: warnings for the user (a file
// cut short, an unknown kind) and, on failure, the reason with its place.
struct import_report_t
{
    bool ok = true;
    std::wstring error;                 // "file.xml:12:5: not well-formed (invalid token)"
    std::vector<std::wstring> warnings; // "file.xml: the output ends in the middle of an error ..."
    bool truncated = false;

    // What the output says about the run (UTF-8, empty when it does not say).
    std::string tool;    // tools that wrote it, in order of appearance: "memcheck", "asan, lsan"
    std::string command; // the analysed command line
    std::uint64_t problems = 0; // problems handed to the sink
};

// What the importer needs to know about the result it imports into.
struct import_context_t
{
    // Frames with a source under one of these folders (UTF-8, absolute) are
    // the analysed program's own code when the best location is chosen.
    std::vector<std::string> source_dirs;
};

using problem_sink_t = std::function<void(probstore3::problem_t&&)>;

class result_importer_t
{
public:
    virtual ~result_importer_t() = default;
    // Extension without the dot, as offered in the open-file dialog: "xml".
    virtual std::wstring extension() const = 0;
    // Whether this importer understands the content (the first bytes of a file).
    virtual bool can_import(const std::string& head) const = 0;
    // Whether what can_import looks for may come after any amount of other
    // text (a report in a program's log), so that a file is recognised by a
    // later stretch of it too. Off by default: a format with a header at the
    // start must not be recognised by something that only looks like it
    // further in.
    virtual bool may_start_later() const { return false; }
    // Reads the file and hands each complete problem to sink, in file order.
    virtual import_report_t import(const basekit2::path_t& file, const problem_sink_t& sink) const = 0;

    // The same, knowing the result the problems go into (its source folders
    // decide the best frame). By default the context is not used.
    virtual import_report_t import_file(const basekit2::path_t& file, const import_context_t& context,
                                        const problem_sink_t& sink) const;
    // Reads a whole file to check it and count its problems, without handing
    // them out: what a result needs before it keeps a file. The report is the
    // one an import gives (the same errors, warnings and count), with the
    // file called name in messages. An importer may skip building problems
    // here, or read the file in parallel pieces, to go faster.
    virtual import_report_t scan_file(const basekit2::path_t& file, const std::wstring& name) const;
};

// An importer that reads a stream: the built-in ones.
class stream_importer_t : public result_importer_t
{
public:
    // Reads analyser output from a stream and hands each complete problem to
    // sink, in input order. name is the file name used in messages.
    virtual import_report_t import_stream(std::istream& in, const std::wstring& name,
                                          const import_context_t& context,
                                          const problem_sink_t& sink) const = 0;
    // scan_file on a stream; by default import_stream without a sink.
    virtual import_report_t scan_stream(std::istream& in, const std::wstring& name) const;

    import_report_t import(const basekit2::path_t& file, const problem_sink_t& sink) const override;
    import_report_t import_file(const basekit2::path_t& file, const import_context_t& context,
                                const problem_sink_t& sink) const override;
    import_report_t scan_file(const basekit2::path_t& file, const std::wstring& name) const override;
};

class result_converter_t
{
public:
    // The importers of Valgrind XML and sanitizer reports are registered the
    // first time a converter (or the registry) is used.
    result_converter_t();

    // Extensions of the registered importers, in registration order, without
    // dots; an extension offered by several importers is listed once.
    std::vector<std::wstring> get_supported_extensions() const;

    // The importer for a file: among those with its extension, the first whose
    // can_import accepts the file's first bytes; failing that, the first of
    // those that may_start_later to accept a later stretch (read in windows
    // of head_size). Null when none does.
    std::shared_ptr<const result_importer_t> find_importer(const basekit2::path_t& file) const;
    std::vector<std::shared_ptr<const result_importer_t>> importers() const;

    // How many leading bytes of a file find_importer shows to can_import.
    static constexpr std::size_t head_size = 64 * 1024;
    // How much of one window is looked at again with the next: more than a
    // report header line.
    static constexpr std::size_t window_overlap = 4 * 1024;

    // Adds an importer to the process-wide registry.
    static void register_importer(std::shared_ptr<const result_importer_t> importer);
    // Removes every importer (tests).
    static void clear_registry();
};

} // namespace corr_engine
