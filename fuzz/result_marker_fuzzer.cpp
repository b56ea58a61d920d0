// The result marker file (*.corr): arbitrary bytes are read or refused with a
// reason, and what is read writes back to a text that reads the same.
#include "corr_engine/result_manifest.h"

#include <cstdint>
#include <cstdlib>
#include <string>

namespace {
void check(bool condition)
{
    if (!condition)
        std::abort();
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    corr_engine::result_manifest_t manifest;
    std::wstring error;
    if (!manifest.from_text(text, L"fuzz.corr", error)) {
        check(!error.empty());
        return 0;
    }
    const std::string written = manifest.to_text();
    corr_engine::result_manifest_t again;
    std::wstring error2;
    check(again.from_text(written, L"fuzz.corr", error2));
    check(again.to_text() == written);
    return 0;
}
