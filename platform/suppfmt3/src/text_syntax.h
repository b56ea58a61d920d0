#pragma once
// Tokens of the suppression-file text: bare words and quoted strings on one
// line. Internal to the reader and writer.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace suppfmt3::syntax {

// The first place where a text breaks the rules of the file as a whole:
// a byte that is not part of well-formed UTF-8, or a control character
// other than tab and the line endings "\n" and "\r\n".
struct text_fault
{
    enum kind_t { none, invalid_utf8, control_character } kind = none;
    size_t offset = 0;
};
text_fault find_text_fault(std::string_view text);

// Appends value in double quotes, escaping '"', '\\' and control characters.
void append_quoted(std::string& out, std::string_view value);

// Scans the tokens of one line (without its line ending).
class line_scanner
{
public:
    explicit line_scanner(std::string_view line) : m_line(line) {}

    // Skips blanks; true when nothing but blanks is left.
    bool at_end();
    bool next_is_quote();
    // A run of non-blank characters; empty when at the end or at a quote.
    std::string_view word();
    // A quoted string; false with the reason in error when malformed.
    bool quoted(std::string& value, std::string& error);
    // What is left of the line, without blanks at either end.
    std::string_view rest();
    std::string_view peek_word();

private:
    void skip_blanks();

    std::string_view m_line;
    size_t m_pos = 0;
};

// Decimal digits only, no sign, fitting in 64 bits.
bool parse_uint64(std::string_view text, std::uint64_t& value);

std::string_view trim(std::string_view text);
bool is_blank_line(std::string_view line);
bool is_comment_line(std::string_view line);

} // namespace suppfmt3::syntax
