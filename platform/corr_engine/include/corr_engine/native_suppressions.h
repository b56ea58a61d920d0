#pragma once
// Suppression files of the analysers themselves, read and matched as the
// analysers do: Valgrind's "{ name / Tool:Kind / extra / frames }" blocks and
// the sanitizers' "type:pattern" lines. A file is read whole or not at all;
// an error names the line and the reason, as Valgrind's own refusal does.
#include "basekit2/path.h"
#include "probstore3/problem.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corr_engine {

struct valgrind_location_t
{
    enum kind_t { fun, obj, src, any_frames } kind = any_frames;
    std::string pattern;               // with * and ? wildcards
    std::optional<std::uint64_t> line; // src: only
};

struct valgrind_suppression_t
{
    std::string name;
    std::vector<std::string> tools; // "Memcheck", "Helgrind", "drd", ...
    std::string kind;               // "Addr4", "Leak", "Race"
    std::string param;              // Memcheck:Param: the system call parameter
    // Memcheck:Leak: the leak kinds it applies to; empty when every kind.
    std::vector<std::string> leak_kinds;
    bool leak_kinds_given = false;
    std::vector<valgrind_location_t> frames; // innermost first, 1 to 24
    size_t line = 0;                         // the line of its "{"
};

struct sanitizer_suppression_t
{
    std::string type;    // "leak", "race", "signed-integer-overflow", ...
    std::string pattern; // * wildcards, ^ and $ anchors
    size_t line = 0;
};

struct parse_failure_t
{
    size_t line = 0;
    std::string reason;
};

// Valgrind's suppression grammar. Blocks directed at tools other than
// Memcheck, Helgrind and drd are checked for their braces only, as Valgrind
// skips them. false with failure set when the text is refused.
bool parse_valgrind_suppressions(std::string_view text, std::vector<valgrind_suppression_t>& out,
                                 parse_failure_t& failure);
// The sanitizers' common format: "type:pattern" lines, # comments.
bool parse_sanitizer_suppressions(std::string_view text, std::vector<sanitizer_suppression_t>& out,
                                  parse_failure_t& failure);

// A file of either kind: Valgrind's when its first statement is "{".
struct native_suppression_file_t
{
    basekit2::path_t path;
    bool is_valgrind = false;
    std::vector<valgrind_suppression_t> valgrind;
    std::vector<sanitizer_suppression_t> sanitizer;

    // The name of the first suppression that hides the problem; nullopt when
    // none does. Sanitizer lines are named "type:pattern".
    std::optional<std::string> match(const probstore3::problem_t& problem) const;
};
// Reads and parses; nullopt with error "<path>:<line>: <reason>" when the
// file cannot be read or is refused.
std::optional<native_suppression_file_t> load_native_suppression_file(const basekit2::path_t& path,
                                                                      std::wstring& error);
// Whether the text looks like an analyser's suppression file rather than ours.
bool is_native_suppression_text(std::string_view head);

// Valgrind's wildcard match: * any run, ? one character, \ quotes the next.
bool valgrind_wildcard_match(std::string_view pattern, std::string_view text);
// The sanitizers' template match: a substring, * any run, ^ and $ anchors.
bool sanitizer_template_match(std::string_view pattern, std::string_view text);

// Whether Valgrind would hide the problem with this suppression: tool, kind
// (with Param's parameter and Leak's kinds), and the frames from the
// innermost one, "..." spanning any number. Function names are compared as
// Valgrind compares them, mangled, taken from the suppression text Valgrind
// printed for the problem when it was kept; otherwise the demangled name.
bool valgrind_suppression_matches(const valgrind_suppression_t& suppression,
                                  const probstore3::problem_t& problem);
bool sanitizer_suppression_matches(const sanitizer_suppression_t& suppression,
                                   const probstore3::problem_t& problem);

} // namespace corr_engine
