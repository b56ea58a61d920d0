#pragma once
// Importer of Valgrind's XML output (--xml=yes), protocol versions 4, 5 and 6,
// written by memcheck, helgrind and drd.
//
// One problem per <error>: its kind, what/xwhat text, every stack (each
// further stack titled by the auxwhat/xauxwhat or the drd context element
// before it), the remaining auxwhat texts, leak sizes, and for helgrind the
// announcements of the threads the error names. Everything else is skipped.
// The input is parsed as a stream in 64 KB pieces: memory does not grow with
// the file. Output that stops before </valgrindoutput> (the analysed program
// was killed) gives every complete error and a warning, not a failure.
#include "corr_engine/result_converter.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace corr_engine {

class valgrind_xml_importer_t : public stream_importer_t
{
public:
    std::wstring extension() const override { return L"xml"; }
    // Any XML document, and the empty file: wrong roots and protocol versions
    // are then reported by the import with a reason instead of "unknown file".
    bool can_import(const std::string& head) const override;
    import_report_t import_stream(std::istream& in, const std::wstring& name,
                                  const import_context_t& context,
                                  const problem_sink_t& sink) const override;
    // Checks and counts without building problems: stacks are skipped
    // unread, which makes this the fastest way through a large file.
    import_report_t scan_stream(std::istream& in, const std::wstring& name) const override;
    // A large file is checked in pieces on several threads, cut where an
    // <error> starts a line; each piece is parsed as a fragment of the
    // document. Whenever a piece does not parse cleanly (a malformed or cut
    // file, or a cut that was not between two top-level elements) the whole
    // file is scanned again in one piece, so the report is always the one
    // scan_stream gives.
    import_report_t scan_file(const basekit2::path_t& file,
                              const std::wstring& name) const override;

    // The parallel part of scan_file: the file in up to parts pieces, or
    // nothing when a piece did not parse cleanly (then scan it whole).
    std::optional<import_report_t> scan_in_pieces(const basekit2::path_t& file,
                                                  const std::wstring& name, unsigned parts) const;

    // Files smaller than this are scanned in one piece.
    static constexpr std::uint64_t parallel_threshold = 16 * 1024 * 1024;
    // The same on a buffer in memory (fuzzing, tests), handed to expat in
    // pieces of chunk bytes.
    import_report_t import_buffer(const char* data, std::size_t size, const std::wstring& name,
                                  const import_context_t& context, const problem_sink_t& sink,
                                  std::size_t chunk = chunk_size) const;

    // Size of the pieces handed to expat.
    static constexpr std::size_t chunk_size = 64 * 1024;
};

} // namespace corr_engine
