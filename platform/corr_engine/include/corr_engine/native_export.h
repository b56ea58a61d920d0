#pragma once
// Our suppressions written in the analysers' own suppression formats, so that
// the rules a user made here also work where Valgrind or a sanitizer runs
// directly (valgrind --suppressions=FILE, LSAN_OPTIONS=suppressions=FILE, ...).
//
// A rule knows the problem type, description and stack it matches, but not
// the analyser's kind or the mangled function names the analysers compare.
// Both come from the problems of the results the rules are exported with:
// every problem a rule matches contributes its tool and kind, and the
// suppression text Valgrind printed for it (--gen-suppressions=all) gives the
// mangled names of its frames. What a format cannot say exactly is either
// widened, with a note, or left out, with a note; never dropped silently.
#include "probstore3/problem.h"
#include "probstore3/suppression_rule_set.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corr_engine {

enum class native_format_t { valgrind, lsan, tsan, ubsan, asan };

// "valgrind", "lsan", "tsan", "ubsan", "asan"; nullopt for any other word.
std::optional<native_format_t> native_format_from_name(std::string_view name);
const char* native_format_name(native_format_t format);

struct native_export_t
{
    std::string text;  // the whole file, UTF-8, "\n" line endings
    size_t entries = 0; // suppressions (Valgrind blocks, sanitizer lines) written
    // One line per rule that was written wider than it is here, and why:
    // "\"Leaks\" rule 1: the description is not compared (Valgrind has no field for it)".
    std::vector<std::string> widened;
    // One line per rule that the format cannot express, and why; nothing
    // was written for it.
    std::vector<std::string> not_expressed;
};

// The rule sets in the given format. problems are those of the results the
// rules apply to (may be empty: then a Valgrind kind is taken from the
// rule's problem type alone). sources names where the rules came from, for
// the file's heading comment.
native_export_t export_native_suppressions(const std::vector<probstore3::rule_set_ptr>& rule_sets,
                                           const std::vector<probstore3::problem_t>& problems,
                                           native_format_t format,
                                           const std::vector<std::string>& sources = {});

// Valgrind's suppression kind for one error: "Memcheck:Addr4",
// "Helgrind:Race", "drd:ConflictingAccess"; extra is the line that follows
// the kind line for some kinds (the system call parameter of a Param
// error; "match-leak-kinds: definite" for a leak). nullopt when Valgrind
// has no suppression kind for it (a sanitizer's problem, an unknown kind).
struct valgrind_kind_t
{
    std::string tool; // "Memcheck", "Helgrind", "drd"
    std::string kind; // "Addr4"
    std::string extra;
    bool operator<(const valgrind_kind_t& o) const
    {
        return tool != o.tool ? tool < o.tool : kind != o.kind ? kind < o.kind : extra < o.extra;
    }
    bool operator==(const valgrind_kind_t& o) const
    {
        return tool == o.tool && kind == o.kind && extra == o.extra;
    }
};
std::optional<valgrind_kind_t> valgrind_kind_of(const probstore3::problem_t& problem);

// The frames of a suppression text as Valgrind printed it, one entry per
// location line ("fun:_ZdlPvm", "obj:/usr/lib/x86_64-linux-gnu/libc.so.6").
std::vector<std::string> native_suppression_frames(std::string_view text);

} // namespace corr_engine
