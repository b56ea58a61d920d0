#include "source_text.h"

#include <fstream>
#include <system_error>

namespace corrview {
namespace fs = std::filesystem;
namespace {

// Length of the valid UTF-8 sequence at text[at], 0 when there is none.
size_t sequence_length(const std::string& text, size_t at)
{
    const auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(at);
    if (lead < 0x80)
        return 1;
    size_t length = 0;
    unsigned char low = 0x80, high = 0xBF; // range of the second byte
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        if (lead == 0xE0)
            low = 0xA0; // no overlong forms
        if (lead == 0xED)
            high = 0x9F; // no surrogates
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        if (lead == 0xF0)
            low = 0x90;
        if (lead == 0xF4)
            high = 0x8F; // nothing past U+10FFFF
    } else {
        return 0;
    }
    if (at + length > text.size())
        return 0;
    if (byte(at + 1) < low || byte(at + 1) > high)
        return 0;
    for (size_t i = 2; i < length; ++i)
        if (byte(at + i) < 0x80 || byte(at + i) > 0xBF)
            return 0;
    return length;
}

} // namespace

bool make_valid_utf8(const std::string& text, std::string& utf8)
{
    size_t at = 0;
    while (at < text.size()) {
        const size_t length = sequence_length(text, at);
        if (length == 0)
            break;
        at += length;
    }
    if (at == text.size())
        return false;
    utf8.assign(text, 0, at);
    utf8.reserve(text.size() + 64);
    while (at < text.size()) {
        if (const size_t length = sequence_length(text, at)) {
            utf8.append(text, at, length);
            at += length;
            continue;
        }
        // The Latin-1 letter of the byte, encoded.
        const unsigned char b = static_cast<unsigned char>(text[at++]);
        utf8.push_back(static_cast<char>(0xC0 | (b >> 6)));
        utf8.push_back(static_cast<char>(0x80 | (b & 0x3F)));
    }
    return true;
}

source_text_t read_source_text(const fs::path& file)
{
    source_text_t out;
    std::error_code ec;
    const auto status = fs::status(file, ec);
    if (ec || !fs::exists(status)) {
        out.problem = source_text_t::missing;
        return out;
    }
    if (!fs::is_regular_file(status)) {
        out.problem = source_text_t::not_a_file;
        return out;
    }
    out.size = fs::file_size(file, ec);
    if (ec) {
        out.problem = source_text_t::unreadable;
        return out;
    }
    if (out.size > max_source_size) {
        out.problem = source_text_t::too_large;
        return out;
    }
    std::ifstream in(file, std::ios::binary);
    std::string bytes(static_cast<size_t>(out.size), '\0');
    if (in)
        in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!in && !in.eof()) {
        out.problem = source_text_t::unreadable;
        return out;
    }
    // A file that shrank while it was read keeps what was there.
    bytes.resize(static_cast<size_t>(in.gcount()));
    out.converted = make_valid_utf8(bytes, out.utf8);
    if (!out.converted)
        out.utf8 = std::move(bytes);
    return out;
}

} // namespace corrview
