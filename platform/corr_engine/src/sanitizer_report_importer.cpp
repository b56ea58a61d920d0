#include "corr_engine/sanitizer_report_importer.h"

#include "corr_engine/best_location.h"
#include "corr_engine/problem_types.h"
#include "platkit/strings/convert.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <istream>

namespace corr_engine {
namespace {

using platkit::strings::utf8_to_wide;
using probstore3::frame_t;
using probstore3::problem_t;
using probstore3::stack_t;
using std::string_view;

bool starts_with(string_view text, string_view prefix)
{
    return text.substr(0, prefix.size()) == prefix;
}

bool ends_with(string_view text, string_view suffix)
{
    return text.size() >= suffix.size() && text.substr(text.size() - suffix.size()) == suffix;
}

string_view trim(string_view s)
{
    const auto b = s.find_first_not_of(" \t\r\n");
    if (b == string_view::npos)
        return {};
    const auto e = s.find_last_not_of(" \t\r\n");
    return s.substr(b, e - b + 1);
}

bool all_digits(string_view s)
{
    return !s.empty() &&
           std::all_of(s.begin(), s.end(), [](char c) { return c >= '0' && c <= '9'; });
}

bool parse_number(string_view s, std::uint64_t& out, int base = 10)
{
    if (s.empty())
        return false;
    const auto r = std::from_chars(s.data(), s.data() + s.size(), out, base);
    return r.ec == std::errc() && r.ptr == s.data() + s.size();
}

// "==1234==ERROR: ..." -> "ERROR: ..."
string_view strip_pid_prefix(string_view line)
{
    if (!starts_with(line, "=="))
        return line;
    const auto close = line.find("==", 2);
    if (close == string_view::npos || !all_digits(line.substr(2, close - 2)))
        return line;
    return line.substr(close + 2);
}

std::string tool_of(string_view sanitizer)
{
    if (sanitizer == "AddressSanitizer")
        return "asan";
    if (sanitizer == "LeakSanitizer")
        return "lsan";
    if (sanitizer == "ThreadSanitizer")
        return "tsan";
    if (sanitizer == "UndefinedBehaviorSanitizer")
        return "ubsan";
    if (sanitizer == "MemorySanitizer")
        return "msan";
    std::string out(sanitizer);
    std::transform(out.begin(), out.end(), out.begin(),
                   [](unsigned char c) { return std::tolower(c); });
    return out;
}

// "<file>:<line>[:<col>]" (also with a trailing ':' as UBSan prints it).
bool parse_location(string_view text, std::string& file, std::uint64_t& line)
{
    auto colon = text.rfind(':');
    if (colon == string_view::npos)
        return false;
    string_view last = text.substr(colon + 1);
    string_view rest = text.substr(0, colon);
    if (!all_digits(last))
        return false;
    // file:line:col -> the last number is the column.
    const auto colon2 = rest.rfind(':');
    if (colon2 != string_view::npos && all_digits(rest.substr(colon2 + 1))) {
        last = rest.substr(colon2 + 1);
        rest = rest.substr(0, colon2);
    }
    if (rest.empty())
        return false;
    std::uint64_t n = 0;
    if (!parse_number(last, n))
        return false;
    file = std::string(rest);
    line = n;
    return true;
}

bool looks_like_source(string_view token)
{
    if (token == "<null>" || token.empty())
        return token == "<null>";
    std::string file;
    std::uint64_t line = 0;
    return parse_location(token, file, line) || token.front() == '/';
}

// One "#N ..." line of a sanitizer stack, in any of the forms the runtimes
// print:
//   #0 0x5645020f90f3 in print_record /src/a.c:28:51
//   #4 0x56450203b300 in _start (/build/prog+0x21300) (BuildId: 42a7...)
//   #3 0x7f0d... (/lib/x86_64-linux-gnu/libc.so.6+0x29d8f)
//   #0 worker /src/race.c:14:16 (prog+0xd01cb) (BuildId: e3c1...)       (TSan)
//   #0 pthread_create <null> (prog+0x513ad)                             (TSan)
bool parse_frame(string_view line, frame_t& out)
{
    line = trim(line);
    if (!starts_with(line, "#"))
        return false;
    const auto space = line.find(' ');
    if (space == string_view::npos || !all_digits(line.substr(1, space - 1)))
        return false;
    string_view rest = trim(line.substr(space + 1));
    if (ends_with(rest, ")")) {
        const auto open = rest.rfind(" (BuildId: ");
        if (open != string_view::npos)
            rest = trim(rest.substr(0, open));
    }
    if (ends_with(rest, ")")) {
        const auto open = rest.rfind('(');
        const string_view inner = open == string_view::npos
                                      ? string_view()
                                      : rest.substr(open + 1, rest.size() - open - 2);
        const auto plus = inner.rfind("+0x");
        if (plus != string_view::npos || inner == "<unknown module>") {
            if (plus != string_view::npos)
                out.module = module_short_name(inner.substr(0, plus));
            rest = trim(rest.substr(0, open));
        }
    }
    string_view func_and_source = rest;
    if (starts_with(rest, "0x")) {
        const auto end = rest.find(' ');
        const string_view addr =
            rest.substr(2, end == string_view::npos ? string_view::npos : end - 2);
        if (!parse_number(addr, out.address, 16))
            return false;
        if (end == string_view::npos)
            return !out.module.empty();
        func_and_source = trim(rest.substr(end + 1));
        if (!starts_with(func_and_source, "in "))
            return false;
        func_and_source = trim(func_and_source.substr(3));
    }
    if (func_and_source.empty())
        return false;
    string_view function = func_and_source;
    // An absolute source path may hold spaces ("/home/me/my project/a.c:3:7");
    // a demangled function name never holds " /".
    const auto path_start = func_and_source.find(" /");
    std::string path_file;
    std::uint64_t path_line = 0;
    const auto last_space = func_and_source.rfind(' ');
    if (path_start != string_view::npos && path_start != last_space &&
        parse_location(func_and_source.substr(path_start + 1), path_file, path_line)) {
        function = trim(func_and_source.substr(0, path_start));
        out.source = path_file;
        out.line = path_line == 0 ? probstore3::no_line : path_line;
    } else if (last_space != string_view::npos) {
        const string_view token = func_and_source.substr(last_space + 1);
        if (looks_like_source(token)) {
            function = trim(func_and_source.substr(0, last_space));
            std::string file;
            std::uint64_t n = 0;
            if (token == "<null>") {
                // no source
            } else if (parse_location(token, file, n)) {
                if (file != "??") {
                    out.source = file;
                    out.line = n == 0 ? probstore3::no_line : n;
                }
            } else {
                out.source = std::string(token);
            }
        }
    }
    if (function != "<null>" && function != "??")
        out.function = std::string(function);
    return true;
}

// Lines that only draw memory: hex dumps, carets under them, shadow maps.
bool is_dump_line(string_view line)
{
    line = trim(line);
    if (line.empty())
        return false;
    const bool bytes = std::all_of(line.begin(), line.end(), [](char c) {
        return std::isxdigit(static_cast<unsigned char>(c)) || c == ' ';
    });
    const bool marks = std::all_of(line.begin(), line.end(),
                                   [](char c) { return c == '^' || c == '~' || c == ' '; });
    return bytes || marks;
}

// The check behind a UBSan "runtime error:" text, in -fsanitize= names.
std::string ubsan_kind(string_view text)
{
    struct pattern_t
    {
        string_view contains;
        string_view kind;
    };
    static constexpr pattern_t patterns[] = {
        {"unsigned integer overflow", "unsigned-integer-overflow"},
        {"signed integer overflow", "signed-integer-overflow"},
        {"negation of", "signed-integer-overflow"},
        {"shift exponent", "shift-exponent"},
        {"left shift of", "shift-base"},
        {"misaligned address", "alignment"},
        {"out of bounds for type", "bounds"},
        {"null pointer", "null"},
        {"division by zero", "integer-divide-by-zero"},
        {"insufficient space for an object", "object-size"},
        {"not a valid value for type 'bool'", "bool"},
        {"not a valid value for type", "enum"},
        {"unreachable program point", "unreachable"},
        {"end of a value-returning function", "return"},
        {"variable length array bound", "vla-bound"},
        {"outside the range of representable values", "float-cast-overflow"},
        {"pointer overflow", "pointer-overflow"},
        {"applying non-zero offset", "pointer-overflow"},
        {"incorrect function type", "function"},
        {"implicit conversion", "implicit-conversion"},
        {"dynamic type", "vptr"},
    };
    for (const auto& p : patterns)
        if (text.find(p.contains) != string_view::npos)
            return std::string(p.kind);
    return "undefined-behavior";
}

// Drops trailing "(...)" groups: "data race (pid=1)" -> "data race".
string_view without_parentheticals(string_view text)
{
    text = trim(text);
    while (ends_with(text, ")")) {
        const auto open = text.rfind(" (");
        if (open == string_view::npos)
            break;
        text = trim(text.substr(0, open));
    }
    return text;
}

enum class report_kind_t { none, error, tsan_warning, ubsan_runtime, leaks };

class parser_t
{
public:
    parser_t(const std::wstring& name, const import_context_t& context, const problem_sink_t& sink)
        : m_name(name), m_locator(context.source_dirs), m_sink(sink)
    {
    }

    // One line without its newline; complete is false for a last line that
    // the file cut short (only a cut frame line loses something that
    // matters). False once an error stopped the import.
    bool line(string_view raw, bool complete)
    {
        ++m_line_no;
        if (!raw.empty() && raw.back() == '\r')
            raw.remove_suffix(1);
        string_view t = trim(raw);
        for (string_view stripped = trim(strip_pid_prefix(t)); stripped.size() != t.size();
             stripped = trim(strip_pid_prefix(t)))
            t = stripped;
        if (starts_header(t))
            return true;
        if (m_kind == report_kind_t::none)
            return true;
        if (starts_with(t, "#") && t.size() > 1 && std::isdigit(static_cast<unsigned char>(t[1])))
            return frame_line(t, complete);
        m_in_stack = false;
        if (t.empty())
            return true;
        if (starts_with(t, "SUMMARY: ")) {
            summary(t);
            return true;
        }
        if (t == "ABORTING" || starts_with(t, "==================") ||
            ends_with(t, "Sanitizer:DEADLYSIGNAL")) {
            close_report();
            return true;
        }
        if (m_kind == report_kind_t::ubsan_runtime && t.find(": note: ") == string_view::npos &&
            !is_dump_line(t)) {
            // Whatever follows a UBSan one-liner that is not part of it
            // (program output) ends it.
            close_report();
            return true;
        }
        if (m_kind == report_kind_t::leaks)
            return leak_text(t);
        text_line(t);
        return true;
    }

    import_report_t finish()
    {
        if (m_report.ok && m_kind != report_kind_t::none) {
            // gcc's UBSan prints no SUMMARY: its reports end with the file.
            if (m_kind == report_kind_t::ubsan_runtime && !m_cut)
                close_report();
            else
                cut_short();
        }
        if (m_report.ok && m_report.problems == 0 && m_reports_seen == 0)
            m_report.warnings.push_back(m_name + L": no sanitizer report found");
        return std::move(m_report);
    }

    bool ok() const { return m_report.ok; }

private:
    // Starts a new report when t is a report header.
    bool starts_header(string_view t)
    {
        for (string_view word : {string_view("ERROR: "), string_view("WARNING: ")}) {
            if (!starts_with(t, word))
                continue;
            const string_view after = t.substr(word.size());
            const auto colon = after.find(": ");
            if (colon == string_view::npos || !ends_with(after.substr(0, colon), "Sanitizer"))
                continue;
            const std::string tool = tool_of(after.substr(0, colon));
            const string_view message = trim(after.substr(colon + 2));
            if (tool == "tsan" && word == "WARNING: ")
                begin_report(report_kind_t::tsan_warning, tool);
            else if (tool == "lsan" && starts_with(message, "detected memory leaks"))
                begin_report(report_kind_t::leaks, tool);
            else
                begin_report(report_kind_t::error, tool);
            if (m_kind != report_kind_t::leaks)
                set_header(message);
            return true;
        }
        const auto marker = t.find(": runtime error: ");
        if (marker != string_view::npos && !starts_with(t, "#")) {
            begin_report(report_kind_t::ubsan_runtime, "ubsan");
            const string_view message = trim(t.substr(marker + 17));
            m_problem.description = std::string(message);
            m_problem.kind = ubsan_kind(message);
            std::string file;
            std::uint64_t line = 0;
            m_location = frame_t{};
            if (parse_location(t.substr(0, marker), file, line)) {
                m_location.source = file;
                m_location.line = line;
            }
            return true;
        }
        return false;
    }

    void begin_report(report_kind_t kind, const std::string& tool)
    {
        close_report();
        m_kind = kind;
        m_tool = tool;
        m_header_line = m_line_no;
        ++m_reports_seen;
        m_cut = false;
        start_problem();
        // A leak report holds entries; each opens its own problem.
        m_problem_open = kind != report_kind_t::leaks;
        if (std::find(m_tools.begin(), m_tools.end(), tool) == m_tools.end())
            m_tools.push_back(tool);
    }

    void start_problem()
    {
        m_problem = problem_t{};
        m_problem.tool = m_tool;
        m_heading.clear();
        m_in_stack = false;
        m_location = frame_t{};
        m_problem_open = true;
    }

    void set_header(string_view message)
    {
        std::string description(message);
        for (string_view cut :
             {string_view(" at pc 0x"), string_view(" (pc 0x"), string_view(" (pid=")}) {
            const auto at = description.find(cut);
            if (at != std::string::npos)
                description.erase(at);
        }
        while (!description.empty() && (description.back() == ':' || description.back() == ' '))
            description.pop_back();
        m_problem.description = description;
        if (m_kind == report_kind_t::tsan_warning) {
            m_problem.kind = std::string(without_parentheticals(message));
            return;
        }
        // The first word names the kind; the summary line, when it comes, has
        // the runtime's own short name ("attempting double-free" -> "double-free").
        string_view first = message.substr(0, message.find(' '));
        if (first == "attempting") {
            const string_view rest = message.substr(std::min(message.size(), first.size() + 1));
            first = rest.substr(0, rest.find(' '));
            if (first == "free")
                first = "bad-free";
        }
        while (ends_with(first, ":"))
            first.remove_suffix(1);
        m_problem.kind = std::string(first);
    }

    bool frame_line(string_view t, bool complete)
    {
        frame_t frame;
        if (!parse_frame(t, frame)) {
            if (!complete) {
                m_cut = true;
                return true;
            }
            m_report.ok = false;
            m_report.error = m_name + L":" + std::to_wstring(m_line_no) +
                             L": malformed stack frame: " + utf8_to_wide(t);
            return false;
        }
        if (!complete) {
            // A frame whose line is cut may have lost part of its source.
            m_cut = true;
            return true;
        }
        if (!m_problem_open)
            return true; // frames of a LeakSanitizer report outside any entry
        const bool first_frame = t.substr(0, 3) == "#0 ";
        if (!m_in_stack || first_frame) {
            stack_t stack;
            if (m_problem.stacks.empty()) {
                // TSan says only "data race" in its header; the access is in
                // the line above the first stack ("Write of size 8 at ...").
                if (m_kind == report_kind_t::tsan_warning && m_problem.kind == "data race" &&
                    !m_heading.empty())
                    m_problem.description += ": " + m_heading;
                if (!m_heading.empty())
                    m_problem.aux.push_back(std::move(m_heading));
            } else {
                stack.title = std::move(m_heading);
            }
            m_heading.clear();
            m_problem.stacks.push_back(std::move(stack));
            m_in_stack = true;
        }
        m_problem.stacks.back().frames.push_back(std::move(frame));
        return true;
    }

    // A line ending in ':' heads the stack below it; any other text is aux.
    void text_line(string_view t)
    {
        if (!m_problem_open || is_dump_line(t))
            return;
        if (!m_heading.empty())
            m_problem.aux.push_back(std::move(m_heading));
        m_heading.clear();
        if (ends_with(t, ":")) {
            m_heading = std::string(t.substr(0, t.size() - 1));
            return;
        }
        m_problem.aux.push_back(std::string(t));
    }

    // "Direct leak of 64 byte(s) in 1 object(s) allocated from:" opens an entry.
    bool leak_text(string_view t)
    {
        const bool direct = starts_with(t, "Direct leak of ");
        if (direct || starts_with(t, "Indirect leak of ")) {
            emit_problem();
            start_problem();
            m_problem.kind = direct ? "direct-leak" : "indirect-leak";
            std::string description(t);
            const auto from = description.find(" allocated from");
            if (from != std::string::npos)
                description.erase(from);
            m_problem.description = description;
            // "... of <bytes> byte(s) in <blocks> object(s)"
            const auto of = t.find(" of ");
            const string_view numbers = t.substr(of + 4);
            parse_number(numbers.substr(0, numbers.find(' ')), m_problem.leaked_bytes);
            const auto in = numbers.find(" in ");
            if (in != string_view::npos) {
                const string_view blocks = numbers.substr(in + 4);
                parse_number(blocks.substr(0, blocks.find(' ')), m_problem.leaked_blocks);
            }
            return true;
        }
        text_line(t);
        return true;
    }

    void summary(string_view t)
    {
        string_view rest = t.substr(9); // "SUMMARY: "
        const auto colon = rest.find(": ");
        if (colon != string_view::npos && m_kind != report_kind_t::leaks && m_problem_open) {
            const string_view what = trim(rest.substr(colon + 2));
            const string_view first = what.substr(0, what.find(' '));
            if (m_kind == report_kind_t::error && !first.empty())
                m_problem.kind = std::string(first);
            else if (m_kind == report_kind_t::ubsan_runtime && !first.empty() &&
                     first != "undefined-behavior")
                m_problem.kind = std::string(first);
        }
        close_report();
    }

    void emit_problem()
    {
        if (!m_problem_open)
            return;
        m_problem_open = false;
        if (!m_heading.empty())
            m_problem.aux.push_back(std::move(m_heading));
        m_heading.clear();
        // A UBSan one-liner without a stack still has its place.
        if (m_problem.stacks.empty() && !m_location.source.empty())
            m_problem.stacks.push_back(stack_t{"", {m_location}});
        m_problem.type = readable_problem_type(m_problem.tool, m_problem.kind);
        if (!m_problem.stacks.empty())
            m_problem.best_level =
                m_locator.best_level(m_problem.stacks[0].frames, program_module());
        m_problem.id = ++m_report.problems;
        make_valid_utf8(m_problem);
        m_sink(std::move(m_problem));
    }

    // The analysed executable: the module of its start-up code or main(),
    // else the first module that is not a shared object.
    std::string program_module() const
    {
        for (const auto& stack : m_problem.stacks)
            for (const auto& f : stack.frames)
                if ((f.function == "_start" || f.function == "main") && !f.module.empty())
                    return f.module;
        for (const auto& stack : m_problem.stacks)
            for (const auto& f : stack.frames)
                if (!f.module.empty() && f.module.find(".so") == std::string::npos)
                    return f.module;
        return {};
    }

    void close_report()
    {
        if (m_kind == report_kind_t::none)
            return;
        emit_problem();
        m_kind = report_kind_t::none;
        m_report.tool.clear();
        for (const auto& tool : m_tools)
            m_report.tool += (m_report.tool.empty() ? "" : ", ") + tool;
    }

    void cut_short()
    {
        m_problem_open = false;
        m_kind = report_kind_t::none;
        m_report.truncated = true;
        m_report.warnings.push_back(
            m_name + L": the output ends in the middle of the report that starts at line " +
            std::to_wstring(m_header_line) + L"; that report is skipped, the " +
            std::to_wstring(m_report.problems) +
            (m_report.problems == 1 ? L" problem before it is" : L" problems before it are") +
            L" imported");
        m_report.tool.clear();
        for (const auto& tool : m_tools)
            m_report.tool += (m_report.tool.empty() ? "" : ", ") + tool;
    }

    const std::wstring& m_name;
    best_location_t m_locator;
    const problem_sink_t& m_sink;
    import_report_t m_report;
    std::size_t m_line_no = 0;

    report_kind_t m_kind = report_kind_t::none;
    std::string m_tool;
    std::vector<std::string> m_tools;
    std::size_t m_header_line = 0;
    std::size_t m_reports_seen = 0;
    bool m_cut = false;

    bool m_problem_open = false;
    problem_t m_problem;
    frame_t m_location; // of a UBSan one-liner
    std::string m_heading;
    bool m_in_stack = false;
};

} // namespace

namespace {
// No report line is anywhere near this long; a longer one (a program that
// printed a huge blob) is read up to here and the rest skipped, so memory
// stays bounded whatever the input.
constexpr std::size_t max_line_length = 64 * 1024;

// std::getline, bounded: false at the end of the input. complete tells
// whether the line ended with a newline.
bool read_line(std::istream& in, std::string& line, bool& complete)
{
    line.clear();
    std::streambuf* buffer = in.rdbuf();
    bool any = false;
    for (;;) {
        const int c = buffer->sbumpc();
        if (c == std::char_traits<char>::eof()) {
            in.setstate(std::ios::eofbit);
            complete = false;
            return any;
        }
        any = true;
        if (c == '\n') {
            complete = true;
            return true;
        }
        if (line.size() < max_line_length)
            line.push_back(static_cast<char>(c));
    }
}
} // namespace

bool sanitizer_report_importer_t::can_import(const std::string& head) const
{
    if (head.find(": runtime error: ") != std::string::npos)
        return true;
    for (const char* word : {"ERROR: ", "WARNING: "}) {
        // The end of the line is looked up once per line, not once per
        // occurrence: "ERROR: " repeated without a newline stays linear.
        bool known = false;
        std::size_t eol = 0;
        for (auto at = head.find(word); at != std::string::npos; at = head.find(word, at + 1)) {
            const auto colon = head.find(": ", at + std::char_traits<char>::length(word));
            if (!known || (eol != std::string::npos && eol < at)) {
                eol = head.find('\n', at);
                known = true;
            }
            if (colon != std::string::npos && (eol == std::string::npos || colon < eol) &&
                ends_with(string_view(head).substr(0, colon), "Sanitizer"))
                return true;
        }
    }
    return false;
}

import_report_t sanitizer_report_importer_t::import_stream(std::istream& in,
                                                           const std::wstring& name,
                                                           const import_context_t& context,
                                                           const problem_sink_t& sink) const
{
    parser_t parser(name, context, sink);
    std::string line;
    bool complete = true;
    while (parser.ok() && read_line(in, line, complete)) {
        if (!parser.line(line, complete))
            break;
    }
    if (in.bad()) {
        import_report_t report;
        report.ok = false;
        report.error = name + L": read error";
        return report;
    }
    return parser.finish();
}

import_report_t sanitizer_report_importer_t::import_buffer(const char* data, std::size_t size,
                                                           const std::wstring& name,
                                                           const import_context_t& context,
                                                           const problem_sink_t& sink) const
{
    parser_t parser(name, context, sink);
    const string_view all(data, size);
    std::size_t pos = 0;
    bool complete = true;
    while (pos < all.size()) {
        const auto nl = all.find('\n', pos);
        complete = nl != string_view::npos;
        const string_view one =
            all.substr(pos, std::min(complete ? nl - pos : all.size() - pos, max_line_length));
        pos = complete ? nl + 1 : all.size();
        if (!parser.line(one, complete))
            break;
    }
    return parser.finish();
}

} // namespace corr_engine
