// Valgrind XML importer on arbitrary bytes: it must not crash, must report
// either problems or a reason, must not depend on where the input is cut into
// the pieces handed to expat, and its counting scan must agree with it.
#include "corr_engine/valgrind_xml_importer.h"
#include "importer_checks.h"

#include <cstdint>
#include <sstream>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const corr_engine::valgrind_xml_importer_t importer;
    const auto* text = reinterpret_cast<const char*>(data);
    std::vector<probstore3::problem_t> whole, pieces;
    const auto a =
        importer.import_buffer(text, size, L"fuzz.xml", {}, [&](auto&& p) { whole.push_back(p); });
    fuzz::check_import(a, whole);
    const size_t chunk = size == 0 ? 1 : 1 + data[0] % 61;
    const auto b = importer.import_buffer(
        text, size, L"fuzz.xml", {}, [&](auto&& p) { pieces.push_back(p); }, chunk);
    fuzz::check_import(b, pieces);
    fuzz::check_same(a, whole, b, pieces);
    // The counting scan that an import into a result runs must agree.
    std::istringstream in(std::string(text, size));
    const auto c = importer.scan_stream(in, L"fuzz.xml");
    fuzz::check(c.ok == a.ok && c.truncated == a.truncated && c.problems == a.problems);
    return 0;
}
