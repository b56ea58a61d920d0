#pragma once
// Importer of the text reports of AddressSanitizer, LeakSanitizer,
// ThreadSanitizer and UndefinedBehaviorSanitizer (stderr of an instrumented
// program, clang or gcc flavour, with or without "==PID==" prefixes).
//
// One problem per report; a LeakSanitizer report gives one problem per
// "Direct leak"/"Indirect leak" entry, and a UBSan "runtime error:" line one
// problem (its stack when print_stacktrace=1, else its source location).
// Sections such as "freed by thread T0 here:" or "Previous write of size 4
// ..." become further stacks titled by that line; other report lines become
// aux texts. Program output between reports is ignored. A report cut short
// at the end of the file is skipped with a warning; a stack frame line that
// does not parse is an error naming its line.
#include "corr_engine/result_converter.h"

#include <cstddef>

namespace corr_engine {

class sanitizer_report_importer_t : public stream_importer_t
{
public:
    // The same content comes in files of both extensions: "txt" and "log".
    explicit sanitizer_report_importer_t(std::wstring extension = L"txt")
        : m_extension(std::move(extension))
    {
    }

    std::wstring extension() const override { return m_extension; }
    // A report header among the first bytes: "ERROR: AddressSanitizer:",
    // "WARNING: ThreadSanitizer:", "...: runtime error: ", ...
    bool can_import(const std::string& head) const override;
    // Sanitizers write into the program's own output: the first report may
    // come after any amount of it.
    bool may_start_later() const override { return true; }
    import_report_t import_stream(std::istream& in, const std::wstring& name,
                                  const import_context_t& context,
                                  const problem_sink_t& sink) const override;
    // The same on a buffer in memory (fuzzing, tests).
    import_report_t import_buffer(const char* data, std::size_t size, const std::wstring& name,
                                  const import_context_t& context,
                                  const problem_sink_t& sink) const;

private:
    std::wstring m_extension;
};

} // namespace corr_engine
