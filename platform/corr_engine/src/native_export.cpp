#include "corr_engine/native_export.h"

#include "corr_engine/problem_types.h"
#include "platkit/strings/convert.h"
#include "probstore3/suppression_matcher.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <set>

namespace corr_engine {

using probstore3::problem_t;

namespace {

// Valgrind reads at most this many location lines in a suppression.
constexpr size_t valgrind_max_frames = 24;

std::string trim(std::string_view s)
{
    size_t b = 0, e = s.size();
    while (b < e && (s[b] == ' ' || s[b] == '\t' || s[b] == '\r'))
        ++b;
    while (e > b && (s[e - 1] == ' ' || s[e - 1] == '\t' || s[e - 1] == '\r'))
        --e;
    return std::string(s.substr(b, e - b));
}

bool starts_with(std::string_view s, std::string_view prefix)
{
    return s.substr(0, prefix.size()) == prefix;
}

// A C name: the same mangled and demangled.
bool is_c_identifier(std::string_view s)
{
    if (s.empty() || std::isdigit(static_cast<unsigned char>(s[0])))
        return false;
    return std::all_of(s.begin(), s.end(),
                       [](char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; });
}

std::string basename_of(const std::string& path)
{
    const auto slash = path.find_last_of('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

// The number after "of size " in a memcheck description; 0 when none.
unsigned size_in(const std::string& description)
{
    const auto at = description.find("of size ");
    if (at == std::string::npos)
        return 0;
    unsigned n = 0;
    for (size_t i = at + 8; i < description.size() && std::isdigit(static_cast<unsigned char>(description[i]));
         ++i)
        n = n * 10 + static_cast<unsigned>(description[i] - '0');
    return n;
}

bool valid_access_size(unsigned n)
{
    return n == 1 || n == 2 || n == 4 || n == 8 || n == 16 || n == 32;
}

// One line of text for a comment or a name: control characters become blanks.
std::string one_line(std::string s)
{
    for (auto& c : s)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f)
            c = ' ';
    return s;
}

std::string rule_label(const std::string& set_name, size_t rule_index, size_t rule_count)
{
    std::string label = "\"" + one_line(set_name) + "\"";
    if (rule_count > 1)
        label += " rule " + std::to_string(rule_index + 1);
    return label;
}

std::string join(const std::vector<std::string>& parts, const std::string& sep)
{
    std::string out;
    for (const auto& p : parts)
        out += (out.empty() ? "" : sep) + p;
    return out;
}

bool item_active(const probstore3::suppression_rule_t& rule, suppfmt3::suppfmt_datatype type)
{
    const auto item = rule.get_item(type);
    return item && item->is_active();
}

// What the exporter learned from the problems: mangled names and full object
// paths, keyed by what a rule frame holds.
struct names_t
{
    std::map<std::string, std::string> mangled; // demangled function -> mangled
    std::map<std::string, std::string> object;  // short module name -> full path
};

names_t learn_names(const std::vector<problem_t>& problems)
{
    names_t names;
    for (const auto& p : problems) {
        if (p.native_suppression.empty() || p.stacks.empty())
            continue;
        const auto lines = native_suppression_frames(p.native_suppression);
        const auto& frames = p.stacks[0].frames;
        for (size_t i = 0; i < lines.size() && i < frames.size(); ++i) {
            if (starts_with(lines[i], "fun:") && !frames[i].function.empty())
                names.mangled.emplace(frames[i].function, lines[i].substr(4));
            else if (starts_with(lines[i], "obj:") && !frames[i].module.empty())
                names.object.emplace(frames[i].module, lines[i].substr(4));
        }
    }
    return names;
}

bool is_valgrind_tool(const std::string& tool)
{
    return tool == "memcheck" || tool == "helgrind" || tool == "drd";
}

// ---------------------------------------------------------------- Valgrind

struct valgrind_frames_t
{
    std::vector<std::string> lines;
    std::vector<std::string> notes;
};

valgrind_frames_t valgrind_frames(const probstore3::suppression_rule_t& rule, const names_t& names)
{
    valgrind_frames_t out;
    // A rule's frames may stand anywhere in the stack; Valgrind compares from
    // the innermost frame, so the block starts with a frame wildcard.
    out.lines.push_back("...");
    const auto stack = rule.make_effective_stack();
    if (!stack || !stack->is_active())
        return out;
    std::set<std::string> unmangled;
    for (size_t i = 0; i < stack->size(); ++i) {
        if (!stack->is_frame_active(i)) {
            if (out.lines.back() != "...")
                out.lines.push_back("...");
            continue;
        }
        const auto& f = stack->frame(i);
        if (f.function_active && !f.function.empty()) {
            if (is_c_identifier(f.function)) {
                out.lines.push_back("fun:" + f.function);
                continue;
            }
            const auto m = names.mangled.find(f.function);
            if (m != names.mangled.end()) {
                out.lines.push_back("fun:" + m->second);
                continue;
            }
            unmangled.insert(f.function);
        }
        if (f.source_active && suppfmt3::is_concrete_source(f.source)) {
            std::string line = "src:" + basename_of(f.source);
            if (f.line_active && f.line != suppfmt3::no_line)
                line += ":" + std::to_string(f.line);
            out.lines.push_back(line);
        } else if (f.module_active && !f.module.empty()) {
            const auto o = names.object.find(f.module);
            out.lines.push_back("obj:" + (o != names.object.end() ? o->second : "*/" + f.module));
        } else {
            out.lines.push_back("obj:*");
        }
    }
    while (out.lines.size() > 1 && out.lines.back() == "...")
        out.lines.pop_back();
    for (const auto& fn : unmangled)
        out.notes.push_back("the mangled name of " + fn +
                            " is not known (no suppression text from Valgrind for it), so its frame is "
                            "matched by source file or object");
    if (out.lines.size() > valgrind_max_frames) {
        out.lines.resize(valgrind_max_frames);
        out.notes.push_back("only the first " + std::to_string(valgrind_max_frames) +
                            " frame lines are kept (Valgrind reads no more)");
    }
    return out;
}

// Valgrind's kinds for a rule that matches no problem: those whose readable
// type is the rule's problem type.
std::vector<valgrind_kind_t> kinds_from_type(const probstore3::suppression_rule_t& rule)
{
    std::vector<valgrind_kind_t> out;
    const auto item = rule.get_item(suppfmt3::sdt_problem_type);
    if (!item || !item->is_active())
        return out;
    const std::string type = item->get_text();
    const std::string description = rule.get_value_text(suppfmt3::sdt_description);
    static const char* const tools[] = {"memcheck", "helgrind", "drd"};
    static const char* const kinds[] = {
        "InvalidRead",        "InvalidWrite",       "InvalidFree",       "MismatchedFree",
        "InvalidJump",        "Overlap",            "InvalidMemPool",    "UninitCondition",
        "UninitValue",        "SyscallParam",       "ClientCheck",       "Leak_DefinitelyLost",
        "Leak_IndirectlyLost", "Leak_PossiblyLost", "Leak_StillReachable", "FishyValue",
        "Race",               "UnlockUnlocked",     "UnlockForeign",     "UnlockBogus",
        "PthAPIerror",        "LockOrder",          "Misc",              "ConflictingAccess",
        "MutexErr",           "CondErr",            "CondDestrErr",      "CondRaceErr",
        "CondWaitErr",        "SemaphoreErr",       "BarrierErr",        "RwLockErr",
        "HoldtimeErr",        "GenericErr",         "InvalidThreadId",   "UnimpFunc"};
    for (const char* tool : tools)
        for (const char* kind : kinds) {
            if (readable_problem_type(tool, kind) != type)
                continue;
            problem_t p;
            p.tool = tool;
            p.kind = kind;
            p.description = description;
            if (auto k = valgrind_kind_of(p))
                if (std::find(out.begin(), out.end(), *k) == out.end())
                    out.push_back(*k);
        }
    return out;
}

bool kind_implies_description(const valgrind_kind_t& k)
{
    return starts_with(k.kind, "Addr") || starts_with(k.kind, "Value") || k.kind == "Param";
}

// Leak kinds of several leak errors on one line, in Valgrind's order.
std::vector<valgrind_kind_t> merge_leak_kinds(std::vector<valgrind_kind_t> kinds)
{
    static const char* const order[] = {"definite", "indirect", "possible", "reachable"};
    std::set<std::string> leak;
    std::vector<valgrind_kind_t> out;
    for (auto& k : kinds) {
        if (k.tool == "Memcheck" && k.kind == "Leak")
            leak.insert(k.extra.substr(k.extra.find(':') + 2));
        else
            out.push_back(std::move(k));
    }
    if (!leak.empty()) {
        std::vector<std::string> set;
        for (const char* o : order)
            if (leak.count(o))
                set.push_back(o);
        out.push_back({"Memcheck", "Leak", "match-leak-kinds: " + join(set, ",")});
    }
    std::sort(out.begin(), out.end());
    return out;
}

// ---------------------------------------------------------------- sanitizers

// The sanitizer suppression type for a problem in format; "" when none.
std::string sanitizer_type(native_format_t format, const problem_t& p)
{
    switch (format) {
    case native_format_t::lsan:
        if ((p.tool == "lsan" || p.tool == "asan") && (p.kind == "direct-leak" || p.kind == "indirect-leak"))
            return "leak";
        return {};
    case native_format_t::tsan:
        if (p.tool != "tsan")
            return {};
        if (starts_with(p.kind, "data race"))
            return "race";
        if (p.kind == "lock-order-inversion")
            return "deadlock";
        if (p.kind == "thread leak")
            return "thread";
        if (p.kind.find("mutex") != std::string::npos)
            return "mutex";
        if (starts_with(p.kind, "signal"))
            return "signal";
        return {};
    case native_format_t::ubsan:
        if (p.tool == "ubsan" && p.kind != "undefined-behavior" && p.kind != "SEGV")
            return p.kind;
        return {};
    case native_format_t::asan:
        if (p.tool == "asan" && !p.stacks.empty() && !p.stacks[0].frames.empty() &&
            starts_with(p.stacks[0].frames[0].function, "__interceptor_"))
            return "interceptor_via_fun";
        return {};
    case native_format_t::valgrind:
        break;
    }
    return {};
}

struct sanitizer_pattern_t
{
    std::string pattern;
    std::string kept; // what the pattern names, for the notes
};

// The one name a sanitizer line can compare: of the best frame when it is
// used, else of the first used frame; its function, else its source file,
// else its module. Empty when the rule names no frame field.
std::optional<sanitizer_pattern_t> sanitizer_pattern(const probstore3::suppression_rule_t& rule, bool caller)
{
    const auto stack = rule.make_effective_stack();
    if (!stack || !stack->is_active())
        return std::nullopt;
    std::vector<size_t> order;
    const int best = stack->get_best_level();
    if (best >= 0 && stack->is_frame_active(static_cast<size_t>(best)))
        order.push_back(static_cast<size_t>(best));
    for (size_t i = 0; i < stack->size(); ++i)
        if (stack->is_frame_active(i) && static_cast<int>(i) != best)
            order.push_back(i);
    for (size_t i : order) {
        const auto& f = stack->frame(i);
        if (caller && starts_with(f.function, "__interceptor_"))
            continue;
        if (f.function_active && !f.function.empty()) {
            // Sanitizers match a pattern anywhere in the name; ^ and $ anchor it.
            if (is_c_identifier(f.function))
                return sanitizer_pattern_t{"^" + f.function + "$", "function " + f.function};
            return sanitizer_pattern_t{f.function, "function " + f.function};
        }
        if (f.source_active && suppfmt3::is_concrete_source(f.source))
            return sanitizer_pattern_t{basename_of(f.source), "source file " + basename_of(f.source)};
        if (f.module_active && !f.module.empty())
            return sanitizer_pattern_t{f.module, "module " + f.module};
    }
    return std::nullopt;
}

// What a one-name sanitizer line leaves out of the rule.
std::vector<std::string> sanitizer_losses(const probstore3::suppression_rule_t& rule)
{
    std::vector<std::string> lost;
    if (item_active(rule, suppfmt3::sdt_description))
        lost.push_back("the description");
    const auto stack = rule.make_effective_stack();
    size_t fields = 0;
    if (stack && stack->is_active())
        for (size_t i = 0; i < stack->size(); ++i) {
            if (!stack->is_frame_active(i))
                continue;
            const auto& f = stack->frame(i);
            fields += (f.function_active && !f.function.empty()) + (f.module_active && !f.module.empty()) +
                      (f.source_active && suppfmt3::is_concrete_source(f.source)) +
                      (f.line_active && f.line != suppfmt3::no_line);
        }
    if (fields > 1)
        lost.push_back("the other frame fields and where the frame stands in the stack");
    return lost;
}

} // namespace

std::optional<native_format_t> native_format_from_name(std::string_view name)
{
    for (auto f : {native_format_t::valgrind, native_format_t::lsan, native_format_t::tsan,
                   native_format_t::ubsan, native_format_t::asan})
        if (name == native_format_name(f))
            return f;
    return std::nullopt;
}

const char* native_format_name(native_format_t format)
{
    switch (format) {
    case native_format_t::valgrind:
        return "valgrind";
    case native_format_t::lsan:
        return "lsan";
    case native_format_t::tsan:
        return "tsan";
    case native_format_t::ubsan:
        return "ubsan";
    case native_format_t::asan:
        return "asan";
    }
    return "";
}

std::vector<std::string> native_suppression_frames(std::string_view text)
{
    std::vector<std::string> out;
    size_t pos = 0;
    while (pos <= text.size()) {
        auto nl = text.find('\n', pos);
        if (nl == std::string_view::npos)
            nl = text.size();
        const std::string line = trim(text.substr(pos, nl - pos));
        if (starts_with(line, "fun:") || starts_with(line, "obj:") || starts_with(line, "src:") ||
            line == "...")
            out.push_back(line);
        pos = nl + 1;
    }
    return out;
}

std::optional<valgrind_kind_t> valgrind_kind_of(const problem_t& p)
{
    const std::string& k = p.kind;
    if (p.tool == "memcheck") {
        if (k == "InvalidRead" || k == "InvalidWrite") {
            const unsigned n = size_in(p.description);
            if (!valid_access_size(n))
                return std::nullopt;
            return valgrind_kind_t{"Memcheck", "Addr" + std::to_string(n), ""};
        }
        if (k == "UninitValue") {
            const unsigned n = size_in(p.description);
            if (!valid_access_size(n))
                return std::nullopt;
            return valgrind_kind_t{"Memcheck", "Value" + std::to_string(n), ""};
        }
        if (k == "UninitCondition")
            return valgrind_kind_t{"Memcheck", "Cond", ""};
        if (k == "SyscallParam") {
            // "Syscall param write(buf) points to uninitialised byte(s)"
            const std::string lead = "Syscall param ";
            if (!starts_with(p.description, lead))
                return std::nullopt;
            const auto end = p.description.find(' ', lead.size());
            return valgrind_kind_t{"Memcheck", "Param", p.description.substr(lead.size(), end - lead.size())};
        }
        if (k == "InvalidFree" || k == "MismatchedFree")
            return valgrind_kind_t{"Memcheck", "Free", ""};
        if (k == "InvalidJump")
            return valgrind_kind_t{"Memcheck", "Jump", ""};
        if (k == "Overlap")
            return valgrind_kind_t{"Memcheck", "Overlap", ""};
        if (k == "ClientCheck")
            return valgrind_kind_t{"Memcheck", "User", ""};
        if (k == "InvalidMemPool")
            return valgrind_kind_t{"Memcheck", "Mempool", ""};
        if (k == "FishyValue")
            return valgrind_kind_t{"Memcheck", "FishyValue", ""};
        static const std::pair<const char*, const char*> leaks[] = {{"Leak_DefinitelyLost", "definite"},
                                                                    {"Leak_IndirectlyLost", "indirect"},
                                                                    {"Leak_PossiblyLost", "possible"},
                                                                    {"Leak_StillReachable", "reachable"}};
        for (const auto& [kind, word] : leaks)
            if (k == kind)
                return valgrind_kind_t{"Memcheck", "Leak", std::string("match-leak-kinds: ") + word};
        return std::nullopt;
    }
    if (p.tool == "helgrind") {
        static const char* const kinds[] = {"Race",        "UnlockUnlocked", "UnlockForeign", "UnlockBogus",
                                            "PthAPIerror", "LockOrder",      "Misc"};
        for (const char* kind : kinds)
            if (k == kind)
                return valgrind_kind_t{"Helgrind", k, ""};
        return std::nullopt;
    }
    if (p.tool == "drd") {
        static const char* const kinds[] = {"ConflictingAccess", "MutexErr",     "CondErr",    "CondDestrErr",
                                            "CondRaceErr",       "CondWaitErr",  "SemaphoreErr", "BarrierErr",
                                            "RwLockErr",         "HoldtimeErr",  "GenericErr", "InvalidThreadId",
                                            "UnimpFunc"};
        for (const char* kind : kinds)
            if (k == kind)
                return valgrind_kind_t{"drd", k, ""};
        return std::nullopt;
    }
    return std::nullopt;
}

native_export_t export_native_suppressions(const std::vector<probstore3::rule_set_ptr>& rule_sets,
                                           const std::vector<problem_t>& problems, native_format_t format,
                                           const std::vector<std::string>& sources)
{
    native_export_t out;
    const names_t names = learn_names(problems);
    std::string body;
    std::set<std::string> used_names;
    std::set<std::string> written_lines;

    auto unique_name = [&](const std::string& wanted) {
        // Valgrind trims the name line and skips it as a comment when it
        // starts with "#"; a lone brace would end or open a block.
        std::string base = trim(one_line(wanted));
        if (base.empty() || base == "{" || base == "}" || base[0] == '#')
            base = trim("suppression " + base);
        std::string name = base;
        for (int n = 2; !used_names.insert(name).second; ++n)
            name = base + " (" + std::to_string(n) + ")";
        return name;
    };

    for (const auto& set : rule_sets) {
        if (!set)
            continue;
        const std::string set_name = platkit::strings::wide_to_utf8(set->get_name());
        const auto& rules = set->get_rules();
        for (size_t r = 0; r < rules.size(); ++r) {
            const auto& rule = *rules[r];
            const std::string label = rule_label(set_name, r, rules.size());
            std::vector<const problem_t*> matched;
            for (const auto& p : problems)
                if (probstore3::rule_matches(rule, p))
                    matched.push_back(&p);

            if (format == native_format_t::valgrind) {
                std::vector<valgrind_kind_t> kinds;
                std::set<std::string> unknown;
                for (const auto* p : matched) {
                    if (!is_valgrind_tool(p->tool))
                        continue;
                    if (auto k = valgrind_kind_of(*p)) {
                        if (std::find(kinds.begin(), kinds.end(), *k) == kinds.end())
                            kinds.push_back(*k);
                    } else {
                        unknown.insert(p->tool + " " + p->kind);
                    }
                }
                if (kinds.empty())
                    kinds = kinds_from_type(rule);
                if (kinds.empty()) {
                    out.not_expressed.push_back(
                        label + ": " +
                        (unknown.empty() ? std::string("it matches no Valgrind problem of the results and its "
                                                       "problem type names no Valgrind kind")
                                         : "Valgrind has no suppression kind for " +
                                               join(std::vector<std::string>(unknown.begin(), unknown.end()),
                                                    ", ")));
                    continue;
                }
                kinds = merge_leak_kinds(std::move(kinds));
                const auto frames = valgrind_frames(rule, names);
                std::vector<std::string> notes = frames.notes;
                if (!item_active(rule, suppfmt3::sdt_problem_type)) {
                    std::vector<std::string> ks;
                    for (const auto& k : kinds)
                        ks.push_back(k.tool + ":" + k.kind);
                    notes.push_back("the problem type is not used here, but Valgrind needs a kind: written for " +
                                    join(ks, ", ") + " only");
                }
                if (item_active(rule, suppfmt3::sdt_description) &&
                    !std::all_of(kinds.begin(), kinds.end(), kind_implies_description))
                    notes.push_back("the description is not compared (Valgrind's suppressions have no field "
                                    "for it)");
                if (!unknown.empty())
                    notes.push_back("matches problems Valgrind has no suppression kind for: " +
                                    join(std::vector<std::string>(unknown.begin(), unknown.end()), ", "));
                for (const auto& n : notes)
                    out.widened.push_back(label + ": " + n);
                for (const auto& k : kinds) {
                    body += "\n# " + label + "\n{\n   " + unique_name(set_name) + "\n   " + k.tool + ":" + k.kind +
                            "\n";
                    if (!k.extra.empty())
                        body += "   " + k.extra + "\n";
                    for (const auto& l : frames.lines)
                        body += "   " + l + "\n";
                    body += "}\n";
                    ++out.entries;
                }
                continue;
            }

            // Sanitizers: one "type:pattern" line per suppression type.
            std::set<std::string> types;
            for (const auto* p : matched) {
                const auto t = sanitizer_type(format, *p);
                if (!t.empty())
                    types.insert(t);
            }
            if (types.empty() && item_active(rule, suppfmt3::sdt_problem_type)) {
                // No problem at hand: the problem type alone, read as a
                // sanitizer would report it.
                const std::string type = rule.get_value_text(suppfmt3::sdt_problem_type);
                problem_t p;
                p.tool = format == native_format_t::lsan ? "lsan" : format == native_format_t::tsan ? "tsan" : "";
                for (const char* kind : {"direct-leak", "indirect-leak", "data race", "lock-order-inversion", "thread leak"}) {
                    p.kind = kind;
                    if (!p.tool.empty() && readable_problem_type(p.tool, kind) == type) {
                        const auto t = sanitizer_type(format, p);
                        if (!t.empty())
                            types.insert(t);
                    }
                }
            }
            if (types.empty()) {
                out.not_expressed.push_back(label + ": " +
                                            (format == native_format_t::asan
                                                 ? std::string("AddressSanitizer's suppressions name only "
                                                               "interceptors and their callers, and no problem "
                                                               "it matches was reported from an interceptor")
                                                 : std::string("it matches no problem of the results that ") +
                                                       native_format_name(format) +
                                                       " suppressions can name"));
                continue;
            }
            const auto pattern = sanitizer_pattern(rule, format == native_format_t::asan);
            if (!pattern) {
                out.not_expressed.push_back(label +
                                            ": it names no function, source file or module, and a line "
                                            "without one would hide every such problem");
                continue;
            }
            const auto losses = sanitizer_losses(rule);
            if (!losses.empty())
                out.widened.push_back(label + ": only the " + pattern->kept + " is compared; not compared: " +
                                      join(losses, ", "));
            for (const auto& t : types) {
                const std::string line = t + ":" + pattern->pattern;
                if (!written_lines.insert(line).second)
                    continue;
                body += "# " + label + "\n" + line + "\n";
                ++out.entries;
            }
        }
    }

    std::string head;
    const std::string tool_name = format == native_format_t::valgrind ? "Valgrind"
                                  : format == native_format_t::lsan   ? "LeakSanitizer"
                                  : format == native_format_t::tsan   ? "ThreadSanitizer"
                                  : format == native_format_t::ubsan  ? "UndefinedBehaviorSanitizer"
                                                                      : "AddressSanitizer";
    head += "# " + tool_name + " suppressions, exported by corrtool";
    head += sources.empty() ? "\n" : " from:\n";
    for (const auto& s : sources)
        head += "#   " + one_line(s) + "\n";
    switch (format) {
    case native_format_t::valgrind:
        head += "# Use: valgrind --suppressions=THIS_FILE ...\n"
                "# Each frame line names one of a frame's function (mangled), source file or object;\n"
                "# a block starts with \"...\" because a rule's frames may stand anywhere in the stack.\n";
        break;
    case native_format_t::lsan:
        head += "# Use: LSAN_OPTIONS=suppressions=THIS_FILE (also read by AddressSanitizer's leak check)\n";
        break;
    case native_format_t::tsan:
        head += "# Use: TSAN_OPTIONS=suppressions=THIS_FILE\n";
        break;
    case native_format_t::ubsan:
        head += "# Use: UBSAN_OPTIONS=suppressions=THIS_FILE (with -fsanitize-recover)\n";
        break;
    case native_format_t::asan:
        head += "# Use: ASAN_OPTIONS=suppressions=THIS_FILE\n";
        break;
    }
    if (!out.widened.empty()) {
        head += "#\n# Rules written wider (or narrower) than they are in corrtool:\n";
        for (const auto& w : out.widened)
            head += "#   " + one_line(w) + "\n";
    }
    if (!out.not_expressed.empty()) {
        head += "#\n# Rules this format cannot express (left out):\n";
        for (const auto& n : out.not_expressed)
            head += "#   " + one_line(n) + "\n";
    }
    out.text = head + body;
    return out;
}

} // namespace corr_engine
