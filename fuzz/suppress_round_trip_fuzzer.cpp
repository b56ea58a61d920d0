// Import -> suppress every problem -> write the file -> read it back: the
// rules read back match every problem they were made for, whatever bytes the
// analyser printed. Sanitizer reports are the input (their texts are the
// program's own bytes).
#include "corr_engine/sanitizer_report_importer.h"
#include "importer_checks.h"
#include "probstore3/candidates.h"
#include "probstore3/suppression_file.h"
#include "probstore3/suppression_matcher.h"

#include <boost/make_shared.hpp>

#include <cstdint>
#include <filesystem>
#include <string>
#include <unistd.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const corr_engine::sanitizer_report_importer_t importer;
    std::vector<probstore3::problem_t> problems;
    const auto report = importer.import_buffer(reinterpret_cast<const char*>(data), size, L"fuzz.txt", {},
                                               [&](auto&& p) { problems.push_back(p); });
    fuzz::check_import(report, problems);
    if (problems.empty())
        return 0;

    static const std::wstring path =
        (std::filesystem::temp_directory_path() / ("fuzz-round-trip-" + std::to_string(::getpid()) + ".sup"))
            .wstring();
    std::filesystem::remove(std::filesystem::path(path));
    auto file = boost::make_shared<probstore3::suppression_file_t>(path);
    auto set = probstore3::create_candidate_rule_set(problems);
    set->set_name_utf8("all");
    file->add_suppression(set);
    // Every problem's text is valid UTF-8, so the file can always be written
    // and read back.
    fuzz::check(file->save(path, probstore3::suppression_file_t::get_current_file_format()) ==
                suppfmt3::se_success);
    auto again = probstore3::suppression_file_t::open(path);
    fuzz::check(again != nullptr);
    const auto matcher = probstore3::suppression_matcher_t::from_files({again});
    for (const auto& p : problems)
        fuzz::check(matcher.match(p) != nullptr);
    return 0;
}
