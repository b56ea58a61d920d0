// Any bytes become valid UTF-8 that keeps every valid sequence and every
// line end where it was, and valid UTF-8 is left alone.
#include "host/source_text.h"

#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

// Whether text is valid UTF-8, checked by decoding code points.
bool is_valid_utf8(const std::string& text)
{
    size_t i = 0;
    while (i < text.size()) {
        const auto b = static_cast<unsigned char>(text[i]);
        size_t n = b < 0x80 ? 1 : (b >> 5) == 6 ? 2 : (b >> 4) == 14 ? 3 : (b >> 3) == 30 ? 4 : 0;
        if (n == 0 || i + n > text.size())
            return false;
        std::uint32_t cp = n == 1 ? b : b & (0x7F >> n);
        for (size_t k = 1; k < n; ++k) {
            const auto c = static_cast<unsigned char>(text[i + k]);
            if ((c >> 6) != 2)
                return false;
            cp = (cp << 6) | (c & 0x3F);
        }
        const std::uint32_t least[] = {0, 0, 0x80, 0x800, 0x10000};
        if (cp < least[n] || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF))
            return false;
        i += n;
    }
    return true;
}

size_t count(const std::string& text, char c)
{
    size_t n = 0;
    for (char t : text)
        n += t == c;
    return n;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string input(reinterpret_cast<const char*>(data), size);
    std::string output;
    const bool converted = corrview::make_valid_utf8(input, output);
    if (converted != !is_valid_utf8(input))
        std::abort();
    if (!converted)
        return 0;
    if (!is_valid_utf8(output) || count(output, '\n') != count(input, '\n') ||
        count(output, '\r') != count(input, '\r') || output.size() < input.size() ||
        output.size() > 2 * input.size())
        std::abort();
    std::string again;
    if (corrview::make_valid_utf8(output, again))
        std::abort();
    return 0;
}
