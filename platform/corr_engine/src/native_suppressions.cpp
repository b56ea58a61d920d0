#include "corr_engine/native_suppressions.h"

#include "basekit2/file_io.h"
#include "corr_engine/native_export.h"
#include "platkit/strings/convert.h"

#include <algorithm>
#include <set>

namespace corr_engine {

using probstore3::frame_t;
using probstore3::problem_t;

namespace {

constexpr size_t max_frames = 24;

std::string_view trim(std::string_view s)
{
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t' || s.front() == '\r'))
        s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t' || s.back() == '\r'))
        s.remove_suffix(1);
    return s;
}

bool starts_with(std::string_view s, std::string_view prefix)
{
    return s.substr(0, prefix.size()) == prefix;
}

// The statements of a file: lines without blanks around them, blank and
// comment lines skipped, each with its line number.
class line_reader_t
{
public:
    explicit line_reader_t(std::string_view text) : m_text(text) {}

    // The next statement; false at the end of the text.
    bool next(std::string_view& line, size_t& number)
    {
        while (m_pos < m_text.size()) {
            auto nl = m_text.find('\n', m_pos);
            if (nl == std::string_view::npos)
                nl = m_text.size();
            const auto raw = trim(m_text.substr(m_pos, nl - m_pos));
            m_pos = nl + 1;
            ++m_line;
            if (raw.empty() || raw.front() == '#')
                continue;
            line = raw;
            number = m_line;
            return true;
        }
        number = m_line;
        return false;
    }

private:
    std::string_view m_text;
    size_t m_pos = 0;
    size_t m_line = 0;
};

bool fail(parse_failure_t& failure, size_t line, std::string reason)
{
    failure.line = line;
    failure.reason = std::move(reason);
    return false;
}

const std::set<std::string, std::less<>>& memcheck_kinds()
{
    static const std::set<std::string, std::less<>> kinds{
        "Param",  "User",   "Free",   "Leak",    "Cond",    "Value0",  "Value1",  "Value2",
        "Value4", "Value8", "Value16", "Value32", "Addr1",   "Addr2",   "Addr4",   "Addr8",
        "Addr16", "Addr32", "Jump",   "Overlap", "Mempool", "FishyValue", "ReallocZero"};
    return kinds;
}

const std::set<std::string, std::less<>>& helgrind_kinds()
{
    static const std::set<std::string, std::less<>> kinds{
        "Race", "FreeMemLock", "UnlockUnlocked", "UnlockForeign", "UnlockBogus", "PthAPIerror",
        "LockOrder", "Misc", "Dubious"};
    return kinds;
}

const std::set<std::string, std::less<>>& drd_kinds()
{
    static const std::set<std::string, std::less<>> kinds{
        "ConflictingAccess", "MutexErr",    "CondErr",      "CondDestrErr", "CondRaceErr",
        "CondWaitErr",       "SemaphoreErr", "BarrierErr",  "RwLockErr",    "HoldtimeErr",
        "GenericErr",        "InvalidThreadId", "UnimpFunc"};
    return kinds;
}

const std::set<std::string, std::less<>>* kinds_of_tool(std::string_view tool)
{
    if (tool == "Memcheck")
        return &memcheck_kinds();
    if (tool == "Helgrind")
        return &helgrind_kinds();
    if (tool == "drd")
        return &drd_kinds();
    return nullptr;
}

std::vector<std::string> split(std::string_view s, char sep)
{
    std::vector<std::string> out;
    size_t pos = 0;
    while (true) {
        const auto at = s.find(sep, pos);
        out.emplace_back(s.substr(pos, at == std::string_view::npos ? std::string_view::npos : at - pos));
        if (at == std::string_view::npos)
            return out;
        pos = at + 1;
    }
}

bool parse_leak_kinds(std::string_view set, std::vector<std::string>& out)
{
    set = trim(set);
    out.clear();
    if (set == "all") {
        out = {"definite", "indirect", "possible", "reachable"};
        return true;
    }
    if (set == "none")
        return true;
    for (const auto& word : split(set, ',')) {
        if (word != "definite" && word != "indirect" && word != "possible" && word != "reachable")
            return false;
        out.push_back(word);
    }
    return true;
}

bool parse_location(std::string_view line, valgrind_location_t& loc)
{
    if (line == "...") {
        loc.kind = valgrind_location_t::any_frames;
        return true;
    }
    if (starts_with(line, "fun:"))
        loc.kind = valgrind_location_t::fun;
    else if (starts_with(line, "obj:"))
        loc.kind = valgrind_location_t::obj;
    else if (starts_with(line, "src:"))
        loc.kind = valgrind_location_t::src;
    else
        return false;
    loc.pattern = std::string(line.substr(4));
    if (loc.kind == valgrind_location_t::src) {
        const auto colon = loc.pattern.rfind(':');
        if (colon != std::string::npos && colon + 1 < loc.pattern.size() &&
            std::all_of(loc.pattern.begin() + static_cast<long>(colon) + 1, loc.pattern.end(),
                        [](char c) { return c >= '0' && c <= '9'; }) &&
            loc.pattern.size() - colon - 1 < 19) {
            loc.line = std::stoull(loc.pattern.substr(colon + 1));
            loc.pattern.resize(colon);
        }
    }
    return true;
}

// The names Valgrind compares for each frame of the problem's main stack:
// mangled function names and full object paths where Valgrind printed them.
struct frame_names_t
{
    std::vector<std::string> fun, obj;
};

frame_names_t frame_names(const problem_t& p)
{
    frame_names_t out;
    if (p.stacks.empty())
        return out;
    const auto& frames = p.stacks[0].frames;
    const auto native = native_suppression_frames(p.native_suppression);
    for (size_t i = 0; i < frames.size(); ++i) {
        std::string fun = frames[i].function.empty() ? "???" : frames[i].function;
        std::string obj = frames[i].module;
        if (i < native.size() && starts_with(native[i], "fun:"))
            fun = native[i].substr(4);
        else if (i < native.size() && starts_with(native[i], "obj:"))
            obj = native[i].substr(4);
        out.fun.push_back(std::move(fun));
        out.obj.push_back(std::move(obj));
    }
    return out;
}

std::string basename_of(const std::string& path)
{
    const auto slash = path.find_last_of('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

bool location_matches(const valgrind_location_t& loc, const frame_t& frame, const frame_names_t& names, size_t i)
{
    switch (loc.kind) {
    case valgrind_location_t::fun:
        return valgrind_wildcard_match(loc.pattern, names.fun[i]) ||
               (names.fun[i] != frame.function && valgrind_wildcard_match(loc.pattern, frame.function));
    case valgrind_location_t::obj: {
        if (valgrind_wildcard_match(loc.pattern, names.obj[i]))
            return true;
        // Only the short name is known: compare the pattern's last component.
        const auto slash = loc.pattern.find_last_of('/');
        return names.obj[i] == frame.module && slash != std::string::npos &&
               valgrind_wildcard_match(std::string_view(loc.pattern).substr(slash + 1), frame.module);
    }
    case valgrind_location_t::src:
        return !frame.source.empty() && valgrind_wildcard_match(loc.pattern, basename_of(frame.source)) &&
               (!loc.line || *loc.line == frame.line);
    case valgrind_location_t::any_frames:
        break;
    }
    return false;
}

// Whether locs[li..] matches frames from fi on. Each (li, fi) is decided
// once (memo: 0 unknown, 1 no, 2 yes), so runs of "..." cost no more than
// the product of the two lengths.
bool frames_match(const std::vector<valgrind_location_t>& locs, size_t li, const std::vector<frame_t>& frames,
                  size_t fi, const frame_names_t& names, std::vector<char>& memo)
{
    if (li == locs.size())
        return true;
    char& known = memo[li * (frames.size() + 1) + fi];
    if (known)
        return known == 2;
    bool ok = false;
    if (locs[li].kind == valgrind_location_t::any_frames) {
        for (size_t skip = fi; skip <= frames.size() && !ok; ++skip)
            ok = frames_match(locs, li + 1, frames, skip, names, memo);
    } else {
        ok = fi < frames.size() && location_matches(locs[li], frames[fi], names, fi) &&
             frames_match(locs, li + 1, frames, fi + 1, names, memo);
    }
    known = ok ? 2 : 1;
    return ok;
}

std::string valgrind_tool_name(const std::string& tool)
{
    if (tool == "memcheck")
        return "Memcheck";
    if (tool == "helgrind")
        return "Helgrind";
    if (tool == "drd")
        return "drd";
    return {};
}

const std::set<std::string, std::less<>>& sanitizer_types()
{
    static const std::set<std::string, std::less<>> types{
        // LeakSanitizer, ThreadSanitizer, AddressSanitizer
        "leak", "race", "race_top", "mutex", "thread", "signal", "deadlock", "called_from_lib",
        "interceptor_name", "interceptor_via_fun", "interceptor_via_lib", "odr_violation",
        // UndefinedBehaviorSanitizer's checks
        "undefined", "alignment", "bool", "bounds", "builtin", "enum", "float-cast-overflow",
        "float-divide-by-zero", "function", "implicit-unsigned-integer-truncation",
        "implicit-signed-integer-truncation", "implicit-integer-sign-change", "implicit-conversion",
        "integer-divide-by-zero", "invalid-builtin-use", "nonnull-attribute", "null",
        "nullability-arg", "nullability-assign", "nullability-return", "object-size",
        "pointer-overflow", "return", "returns-nonnull-attribute", "shift-base", "shift-exponent",
        "signed-integer-overflow", "unreachable", "unsigned-integer-overflow", "vla-bound", "vptr",
        "cfi"};
    return types;
}

bool frame_names_template(const std::string& pattern, const frame_t& f)
{
    return (!f.function.empty() && sanitizer_template_match(pattern, f.function)) ||
           (!f.source.empty() && sanitizer_template_match(pattern, f.source)) ||
           (!f.module.empty() && sanitizer_template_match(pattern, f.module));
}

bool any_frame(const std::string& pattern, const problem_t& p, bool all_stacks, bool top_only)
{
    for (size_t s = 0; s < p.stacks.size() && (all_stacks || s == 0); ++s)
        for (size_t i = 0; i < p.stacks[s].frames.size() && (!top_only || i == 0); ++i)
            if (frame_names_template(pattern, p.stacks[s].frames[i]))
                return true;
    return false;
}

} // namespace

bool valgrind_wildcard_match(std::string_view pattern, std::string_view text)
{
    // Iterative glob with one backtrack point, as for shell patterns.
    size_t p = 0, t = 0, star_p = std::string_view::npos, star_t = 0;
    while (t < text.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            star_p = p++;
            star_t = t;
            continue;
        }
        if (p < pattern.size()) {
            char want = pattern[p];
            size_t step = 1;
            if (want == '\\' && p + 1 < pattern.size()) {
                want = pattern[p + 1];
                step = 2;
            }
            if ((pattern[p] == '?' && step == 1) || want == text[t]) {
                p += step;
                ++t;
                continue;
            }
        }
        if (star_p == std::string_view::npos)
            return false;
        p = star_p + 1;
        t = ++star_t;
    }
    while (p < pattern.size() && pattern[p] == '*')
        ++p;
    return p == pattern.size();
}

bool sanitizer_template_match(std::string_view templ, std::string_view str)
{
    if (templ.empty())
        return false;
    const bool start = templ.front() == '^';
    if (start)
        templ.remove_prefix(1);
    const bool end = !templ.empty() && templ.back() == '$';
    if (end)
        templ.remove_suffix(1);
    std::string glob;
    if (!start)
        glob += '*';
    for (char c : templ) {
        if (c == '?' || c == '\\')
            glob += '\\';
        glob += c;
    }
    if (!end)
        glob += '*';
    return valgrind_wildcard_match(glob, str);
}

bool parse_valgrind_suppressions(std::string_view text, std::vector<valgrind_suppression_t>& out,
                                 parse_failure_t& failure)
{
    std::vector<valgrind_suppression_t> read;
    line_reader_t lines(text);
    std::string_view line;
    size_t n = 0;
    while (lines.next(line, n)) {
        if (line != "{")
            return fail(failure, n, "expected '{' or end-of-file");
        valgrind_suppression_t supp;
        supp.line = n;
        if (!lines.next(line, n))
            return fail(failure, n, "unexpected end-of-file (expecting the suppression's name)");
        if (line == "}")
            return fail(failure, n, "unexpected '}' (expecting the suppression's name)");
        supp.name = std::string(line);
        if (!lines.next(line, n))
            return fail(failure, n, "unexpected end-of-file (expecting tool:suppr)");
        const auto colon = line.find(':');
        if (colon == std::string_view::npos)
            return fail(failure, n, "malformed 'tool1,tool2,...:supp' line");
        supp.tools = split(line.substr(0, colon), ',');
        supp.kind = std::string(line.substr(colon + 1));
        const std::set<std::string, std::less<>>* kinds = nullptr;
        std::string tool;
        // Each tool named reads the kind when it runs, so each we know must know it.
        for (const auto& t : supp.tools) {
            const auto* known = kinds_of_tool(t);
            if (!known)
                continue;
            if (!known->count(supp.kind))
                return fail(failure, n, "unknown " + t + " suppression type '" + supp.kind + "'");
            if (!kinds || t == "Memcheck") {
                kinds = known;
                tool = t;
            }
        }
        if (!kinds) {
            // For a tool we do not know: skipped to its closing brace, as
            // Valgrind skips suppressions of other tools.
            while (true) {
                if (!lines.next(line, n))
                    return fail(failure, n, "unexpected end-of-file (when skipping suppression)");
                if (line == "}")
                    break;
            }
            read.push_back(std::move(supp));
            continue;
        }
        bool have_line = lines.next(line, n);
        if (tool == "Memcheck" && supp.kind == "Param") {
            if (!have_line || line == "}")
                return fail(failure, n, "bad or missing extra suppression info (the system call parameter)");
            supp.param = std::string(line);
            have_line = lines.next(line, n);
        } else if (tool == "Memcheck" && supp.kind == "Leak" && have_line && starts_with(line, "match-leak-kinds:")) {
            if (!parse_leak_kinds(line.substr(17), supp.leak_kinds))
                return fail(failure, n,
                            "bad or missing extra suppression info (match-leak-kinds: takes definite, "
                            "indirect, possible, reachable, all or none)");
            supp.leak_kinds_given = true;
            have_line = lines.next(line, n);
        }
        while (true) {
            if (!have_line)
                return fail(failure, n, "unexpected end-of-file");
            if (line == "}") {
                if (supp.frames.empty())
                    return fail(failure, n, "missing stack trace");
                break;
            }
            if (supp.frames.size() == max_frames)
                return fail(failure, n, "too many callers in stack trace (at most 24)");
            valgrind_location_t loc;
            if (!parse_location(line, loc))
                return fail(failure, n, "location should be \"...\", or should start with \"fun:\", \"obj:\", or \"src:\"");
            supp.frames.push_back(std::move(loc));
            have_line = lines.next(line, n);
        }
        read.push_back(std::move(supp));
    }
    out = std::move(read);
    return true;
}

bool parse_sanitizer_suppressions(std::string_view text, std::vector<sanitizer_suppression_t>& out,
                                  parse_failure_t& failure)
{
    std::vector<sanitizer_suppression_t> read;
    line_reader_t lines(text);
    std::string_view line;
    size_t n = 0;
    while (lines.next(line, n)) {
        const auto colon = line.find(':');
        if (colon == std::string_view::npos)
            return fail(failure, n, "expected 'type:pattern'");
        sanitizer_suppression_t s;
        s.type = std::string(trim(line.substr(0, colon)));
        s.pattern = std::string(trim(line.substr(colon + 1)));
        s.line = n;
        if (!sanitizer_types().count(s.type))
            return fail(failure, n, "unknown suppression type '" + s.type + "'");
        if (s.pattern.empty())
            return fail(failure, n, "the suppression '" + s.type + ":' has no pattern");
        read.push_back(std::move(s));
    }
    out = std::move(read);
    return true;
}

bool is_native_suppression_text(std::string_view head)
{
    line_reader_t lines(head);
    std::string_view line;
    size_t n = 0;
    if (!lines.next(line, n))
        return false;
    return !starts_with(line, "corr-suppressions");
}

std::optional<native_suppression_file_t> load_native_suppression_file(const basekit2::path_t& path,
                                                                      std::wstring& error)
{
    std::string text;
    if (!basekit2::read_file(path, text, error)) {
        error = path.str() + L": " + error;
        return std::nullopt;
    }
    native_suppression_file_t file;
    file.path = path;
    line_reader_t lines(text);
    std::string_view first;
    size_t n = 0;
    file.is_valgrind = lines.next(first, n) && first == "{";
    parse_failure_t failure;
    const bool ok = file.is_valgrind ? parse_valgrind_suppressions(text, file.valgrind, failure)
                                     : parse_sanitizer_suppressions(text, file.sanitizer, failure);
    if (!ok) {
        error = path.str() + L":" + std::to_wstring(failure.line) + L": " +
                platkit::strings::utf8_to_wide(failure.reason);
        return std::nullopt;
    }
    return file;
}

std::optional<std::string> native_suppression_file_t::match(const problem_t& problem) const
{
    for (const auto& s : valgrind)
        if (valgrind_suppression_matches(s, problem))
            return s.name;
    for (const auto& s : sanitizer)
        if (sanitizer_suppression_matches(s, problem))
            return s.type + ":" + s.pattern;
    return std::nullopt;
}

bool valgrind_suppression_matches(const valgrind_suppression_t& supp, const problem_t& problem)
{
    const std::string tool = valgrind_tool_name(problem.tool);
    if (tool.empty() || std::find(supp.tools.begin(), supp.tools.end(), tool) == supp.tools.end())
        return false;
    const auto kind = valgrind_kind_of(problem);
    if (!kind)
        return false;
    if (kind->kind == "Leak") {
        if (supp.kind != "Leak")
            return false;
        const std::string leak = kind->extra.substr(kind->extra.find(':') + 2);
        if (supp.leak_kinds_given &&
            std::find(supp.leak_kinds.begin(), supp.leak_kinds.end(), leak) == supp.leak_kinds.end())
            return false;
    } else if (kind->kind == "Param") {
        if (supp.kind != "Param" || supp.param != kind->extra)
            return false;
    } else if (supp.kind != kind->kind && !(supp.kind == "Value0" && kind->kind == "Cond")) {
        return false;
    }
    if (problem.stacks.empty())
        return false;
    const auto& frames = problem.stacks[0].frames;
    std::vector<char> memo(supp.frames.size() * (frames.size() + 1), 0);
    return frames_match(supp.frames, 0, frames, 0, frame_names(problem), memo);
}

bool sanitizer_suppression_matches(const sanitizer_suppression_t& s, const problem_t& p)
{
    const std::string& t = s.type;
    if (t == "leak")
        return (p.tool == "lsan" || p.tool == "asan") && (p.kind == "direct-leak" || p.kind == "indirect-leak") &&
               any_frame(s.pattern, p, false, false);
    if (p.tool == "tsan") {
        const bool race = starts_with(p.kind, "data race");
        if ((t == "race" && race) || (t == "deadlock" && p.kind == "lock-order-inversion") ||
            (t == "thread" && p.kind == "thread leak") ||
            (t == "mutex" && p.kind.find("mutex") != std::string::npos) ||
            (t == "signal" && starts_with(p.kind, "signal")))
            return any_frame(s.pattern, p, true, false);
        if (t == "race_top" && race)
            return any_frame(s.pattern, p, true, true);
        return false;
    }
    if (p.tool == "ubsan" && (t == p.kind || t == "undefined") && !p.stacks.empty() &&
        !p.stacks[0].frames.empty())
        return frame_names_template(s.pattern, p.stacks[0].frames[0]);
    if (t == "interceptor_via_fun" && p.tool == "asan" && !p.stacks.empty() && !p.stacks[0].frames.empty() &&
        starts_with(p.stacks[0].frames[0].function, "__interceptor_"))
        for (const auto& f : p.stacks[0].frames)
            if (!f.function.empty() && sanitizer_template_match(s.pattern, f.function))
                return true;
    return false;
}

} // namespace corr_engine
