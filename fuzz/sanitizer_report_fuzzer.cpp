// Sanitizer report importer on arbitrary bytes: no crash, problems or a
// reason, and the stream and buffer readers agree.
#include "corr_engine/sanitizer_report_importer.h"
#include "importer_checks.h"

#include <cstdint>
#include <sstream>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const corr_engine::sanitizer_report_importer_t importer;
    const std::string text(reinterpret_cast<const char*>(data), size);
    std::vector<probstore3::problem_t> from_buffer, from_stream;
    const auto a = importer.import_buffer(text.data(), text.size(), L"fuzz.txt", {},
                                          [&](auto&& p) { from_buffer.push_back(p); });
    fuzz::check_import(a, from_buffer);
    std::istringstream in(text);
    const auto b =
        importer.import_stream(in, L"fuzz.txt", {}, [&](auto&& p) { from_stream.push_back(p); });
    fuzz::check_import(b, from_stream);
    fuzz::check_same(a, from_buffer, b, from_stream);
    (void)importer.can_import(text);
    return 0;
}
