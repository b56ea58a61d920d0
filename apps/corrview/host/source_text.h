#pragma once
// Reading a source file for the source pane: its bytes as valid UTF-8.
// Sources are not always UTF-8 (old files in Latin-1, a stray byte in a
// comment); a byte that does not belong to a UTF-8 sequence is taken as the
// Latin-1 letter it would be, so nothing is dropped and the lines stay
// where the analyser counted them.
#include <cstdint>
#include <filesystem>
#include <string>

namespace corrview {

struct source_text_t
{
    enum problem_t { no_problem, missing, not_a_file, too_large, unreadable };
    std::string utf8;
    bool converted = false; // some bytes were not UTF-8
    problem_t problem = no_problem;
    std::uintmax_t size = 0; // of the file, in bytes
};

// Larger files are not shown: no source file is this big, and a mistaken
// choice (a core dump, an archive) must not stall the viewer.
constexpr std::uintmax_t max_source_size = 64ull << 20;

source_text_t read_source_text(const std::filesystem::path& file);

// text as valid UTF-8 (see above); false when it already was (utf8 untouched).
bool make_valid_utf8(const std::string& text, std::string& utf8);

} // namespace corrview
