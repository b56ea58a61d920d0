// Valgrind XML importer on arbitrary bytes: it must not crash, must report
// either problems or a reason, must not depend on where the input is cut into
// the pieces handed to expat, and its counting scans (whole, and in pieces
// on several threads) must agree with it.
#include "corr_engine/valgrind_xml_importer.h"
#include "importer_checks.h"

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const corr_engine::valgrind_xml_importer_t importer;
    const auto* text = reinterpret_cast<const char*>(data);
    std::vector<probstore3::problem_t> whole, chunked;
    const auto a =
        importer.import_buffer(text, size, L"fuzz.xml", {}, [&](auto&& p) { whole.push_back(p); });
    fuzz::check_import(a, whole);
    const size_t chunk = size == 0 ? 1 : 1 + data[0] % 61;
    const auto b = importer.import_buffer(
        text, size, L"fuzz.xml", {}, [&](auto&& p) { chunked.push_back(p); }, chunk);
    fuzz::check_import(b, chunked);
    fuzz::check_same(a, whole, b, chunked);
    // The counting scan that an import into a result runs must agree.
    std::istringstream in(std::string(text, size));
    const auto c = importer.scan_stream(in, L"fuzz.xml");
    fuzz::check(c.ok == a.ok && c.truncated == a.truncated && c.problems == a.problems);

    // Scanning in pieces either gives up or agrees with the one-piece scan.
    // It starts threads and writes a file: one input in 16 is enough.
    if (size % 16 != 0)
        return 0;
    static const std::filesystem::path file = [] {
        auto path = std::filesystem::temp_directory_path() /
                    ("fuzz_valgrind_xml_" + std::to_string(std::random_device{}()) + ".xml");
        std::atexit([] {
            std::error_code ec;
            std::filesystem::remove(file, ec);
        });
        return path;
    }();
    std::ofstream(file, std::ios::binary | std::ios::trunc)
        .write(text, static_cast<std::streamsize>(size));
    const unsigned parts = 2 + (size > 1 ? data[1] % 3 : 0);
    if (const auto pieces = importer.scan_in_pieces(basekit2::path_t(file), L"fuzz.xml", parts))
        fuzz::check(a.ok && !a.truncated && pieces->ok && pieces->problems == a.problems &&
                    pieces->tool == a.tool);
    return 0;
}
