#include "corr_engine/valgrind_xml_importer.h"

#include "corr_engine/best_location.h"
#include "corr_engine/problem_types.h"
#include "platkit/strings/convert.h"

#include <expat.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <fstream>
#include <istream>
#include <map>
#include <memory>
#include <thread>

namespace corr_engine {
namespace {

using platkit::strings::utf8_to_wide;
using probstore3::frame_t;
using probstore3::problem_t;
using probstore3::stack_t;

enum class tag_t : unsigned char {
    other,
    valgrindoutput,
    protocolversion,
    protocoltool,
    tool,
    args,
    argv,
    exe,
    arg,
    error,
    kind,
    what,
    xwhat,
    auxwhat,
    xauxwhat,
    text,
    leakedbytes,
    leakedblocks,
    hthreadid,
    stack,
    frame,
    ip,
    obj,
    fn,
    dir,
    file,
    line,
    announcethread,
    isrootthread,
    allocation_context,
    other_segment_start,
    other_segment_end,
    suppression,
    rawtext,
};

// Called for every element of a file that may be hundreds of MB: a switch on
// the first letter, then one comparison.
tag_t classify(const char* name)
{
    auto is = [name](const char* candidate, tag_t t) {
        return std::strcmp(name + 1, candidate + 1) == 0 ? t : tag_t::other;
    };
    switch (name[0]) {
    case 'a':
        if (name[1] == 'r')
            return name[2] == 'g' && name[3] == '\0'                     ? tag_t::arg
                   : name[2] == 'g' && name[3] == 's' && name[4] == '\0' ? tag_t::args
                                                                         : is("argv", tag_t::argv);
        if (name[1] == 'u')
            return is("auxwhat", tag_t::auxwhat);
        if (name[1] == 'n')
            return is("announcethread", tag_t::announcethread);
        return is("allocation_context", tag_t::allocation_context);
    case 'd':
        return is("dir", tag_t::dir);
    case 'e':
        return name[1] == 'r' ? is("error", tag_t::error) : is("exe", tag_t::exe);
    case 'f':
        if (name[1] == 'n' && name[2] == '\0')
            return tag_t::fn;
        return name[1] == 'r' ? is("frame", tag_t::frame) : is("file", tag_t::file);
    case 'h':
        return is("hthreadid", tag_t::hthreadid);
    case 'i':
        if (name[1] == 'p' && name[2] == '\0')
            return tag_t::ip;
        return is("isrootthread", tag_t::isrootthread);
    case 'k':
        return is("kind", tag_t::kind);
    case 'l':
        if (name[1] == 'i')
            return is("line", tag_t::line);
        return std::strcmp(name, "leakedbytes") == 0    ? tag_t::leakedbytes
               : std::strcmp(name, "leakedblocks") == 0 ? tag_t::leakedblocks
                                                        : tag_t::other;
    case 'o':
        if (name[1] == 'b')
            return is("obj", tag_t::obj);
        return std::strcmp(name, "other_segment_start") == 0 ? tag_t::other_segment_start
               : std::strcmp(name, "other_segment_end") == 0 ? tag_t::other_segment_end
                                                             : tag_t::other;
    case 'p':
        return std::strcmp(name, "protocolversion") == 0 ? tag_t::protocolversion
               : std::strcmp(name, "protocoltool") == 0  ? tag_t::protocoltool
                                                         : tag_t::other;
    case 'r':
        return is("rawtext", tag_t::rawtext);
    case 's':
        return name[1] == 't' ? is("stack", tag_t::stack) : is("suppression", tag_t::suppression);
    case 't':
        return name[1] == 'e' ? is("text", tag_t::text) : is("tool", tag_t::tool);
    case 'v':
        return is("valgrindoutput", tag_t::valgrindoutput);
    case 'w':
        return is("what", tag_t::what);
    case 'x':
        return name[1] == 'w' ? is("xwhat", tag_t::xwhat) : is("xauxwhat", tag_t::xauxwhat);
    default:
        return tag_t::other;
    }
}

// Which children each element of interest has; anything else is skipped with
// its whole subtree.
bool accepts(tag_t parent, tag_t child)
{
    switch (parent) {
    case tag_t::valgrindoutput:
        return child == tag_t::protocolversion || child == tag_t::protocoltool ||
               child == tag_t::tool || child == tag_t::args || child == tag_t::error ||
               child == tag_t::announcethread;
    case tag_t::args:
        return child == tag_t::argv;
    case tag_t::argv:
        return child == tag_t::exe || child == tag_t::arg;
    case tag_t::error:
        return child == tag_t::kind || child == tag_t::what || child == tag_t::xwhat ||
               child == tag_t::auxwhat || child == tag_t::xauxwhat || child == tag_t::stack ||
               child == tag_t::allocation_context || child == tag_t::other_segment_start ||
               child == tag_t::other_segment_end || child == tag_t::suppression;
    case tag_t::suppression:
        return child == tag_t::rawtext;
    case tag_t::xwhat:
        return child == tag_t::text || child == tag_t::leakedbytes ||
               child == tag_t::leakedblocks || child == tag_t::hthreadid;
    case tag_t::xauxwhat:
        return child == tag_t::text || child == tag_t::hthreadid;
    case tag_t::allocation_context:
    case tag_t::other_segment_start:
    case tag_t::other_segment_end:
        return child == tag_t::stack;
    case tag_t::stack:
        return child == tag_t::frame;
    case tag_t::frame:
        return child == tag_t::ip || child == tag_t::obj || child == tag_t::fn ||
               child == tag_t::dir || child == tag_t::file || child == tag_t::line;
    case tag_t::announcethread:
        return child == tag_t::hthreadid || child == tag_t::isrootthread || child == tag_t::stack;
    default:
        return false;
    }
}

// Elements whose character data we keep.
bool is_text_leaf(tag_t t)
{
    switch (t) {
    case tag_t::protocolversion:
    case tag_t::protocoltool:
    case tag_t::tool:
    case tag_t::exe:
    case tag_t::arg:
    case tag_t::kind:
    case tag_t::what:
    case tag_t::auxwhat:
    case tag_t::text:
    case tag_t::leakedbytes:
    case tag_t::leakedblocks:
    case tag_t::hthreadid:
    case tag_t::ip:
    case tag_t::obj:
    case tag_t::fn:
    case tag_t::dir:
    case tag_t::file:
    case tag_t::line:
    case tag_t::rawtext:
        return true;
    default:
        return false;
    }
}

const char* wrapper_title(tag_t t)
{
    switch (t) {
    case tag_t::allocation_context:
        return "Allocation context";
    case tag_t::other_segment_start:
        return "Other segment start";
    case tag_t::other_segment_end:
        return "Other segment end";
    default:
        return "";
    }
}

std::string_view trimmed(std::string_view s)
{
    const auto b = s.find_first_not_of(" \t\r\n");
    if (b == std::string_view::npos)
        return {};
    const auto e = s.find_last_not_of(" \t\r\n");
    return s.substr(b, e - b + 1);
}

bool parse_uint(std::string_view v, std::uint64_t& out, int base = 10)
{
    if (base == 16 && (v.substr(0, 2) == "0x" || v.substr(0, 2) == "0X"))
        v.remove_prefix(2);
    if (v.empty())
        return false;
    const auto r = std::from_chars(v.data(), v.data() + v.size(), out, base);
    return r.ec == std::errc() && r.ptr == v.data() + v.size();
}

std::string hex(std::uint64_t v)
{
    char buf[24];
    const auto r = std::to_chars(buf, buf + sizeof buf, v, 16);
    std::string out = "0x";
    for (const char* p = buf; p != r.ptr; ++p)
        out.push_back(static_cast<char>(std::toupper(static_cast<unsigned char>(*p))));
    return out;
}

// Shell-like quoting so that the command line reads back unambiguously.
std::string quoted_arg(const std::string& arg)
{
    if (!arg.empty() && arg.find_first_of(" \t\n'\"\\$`") == std::string::npos)
        return arg;
    std::string out = "'";
    for (char c : arg) {
        if (c == '\'')
            out += "'\\''";
        else
            out.push_back(c);
    }
    return out + "'";
}

// Valgrind's own text form of a thread announcement.
std::string announcement_text(const std::string& id, bool root, const stack_t& stack)
{
    if (root)
        return "Thread #" + id + " is the program's root thread";
    std::string out = "Thread #" + id + " was created";
    for (size_t i = 0; i < stack.frames.size(); ++i) {
        const frame_t& f = stack.frames[i];
        out += i == 0 ? "\n   at " : "\n   by ";
        out += hex(f.address) + ": " + (f.function.empty() ? "???" : f.function);
        if (!f.source.empty()) {
            out += " (" + module_short_name(f.source);
            if (f.line != probstore3::no_line)
                out += ":" + std::to_string(f.line);
            out += ")";
        } else if (!f.module.empty()) {
            out += " (in " + f.module + ")";
        }
    }
    return out;
}

class parser_t
{
public:
    // build false: only check and count (no sink is called).
    parser_t(const std::wstring& name, const import_context_t& context, const problem_sink_t& sink,
             bool build = true)
        : m_name(name), m_locator(context.source_dirs), m_sink(sink), m_build(build),
          m_parser(XML_ParserCreate(nullptr))
    {
        XML_SetUserData(m_parser, this);
        XML_SetElementHandler(m_parser, &parser_t::on_start, &parser_t::on_end);
        XML_SetXmlDeclHandler(m_parser, &parser_t::on_xml_decl);
    }
    ~parser_t() { XML_ParserFree(m_parser); }
    parser_t(const parser_t&) = delete;
    parser_t& operator=(const parser_t&) = delete;

    // Hands the next piece to expat; false once parsing has stopped.
    bool feed(const char* data, std::size_t size, bool final)
    {
        if (m_stopped)
            return false;
        if (size > 0)
            m_bytes_seen = true;
        m_fed += size;
        return parsed(
                   XML_Parse(m_parser, data, static_cast<int>(size), final ? XML_TRUE : XML_FALSE)) &&
               token_bounded();
    }

    // Reads the next piece of the stream into expat's own buffer (no copy).
    bool feed(std::istream& in, std::size_t chunk, bool& final)
    {
        if (m_stopped)
            return false;
        void* buffer = XML_GetBuffer(m_parser, static_cast<int>(chunk));
        if (!buffer) {
            m_stopped = true;
            m_report.ok = false;
            m_report.error = m_name + L": out of memory";
            return false;
        }
        in.read(static_cast<char*>(buffer), static_cast<std::streamsize>(chunk));
        const auto got = static_cast<std::size_t>(in.gcount());
        final = got < chunk;
        if (got > 0)
            m_bytes_seen = true;
        m_fed += got;
        return parsed(XML_ParseBuffer(m_parser, static_cast<int>(got), final ? XML_TRUE : XML_FALSE)) &&
               token_bounded();
    }

    // Expat reads a tag or a comment again from its start whenever more of
    // it arrives, and keeps all of it: one that never ends would cost time
    // quadratic in its length and memory as large. Valgrind's elements are
    // short, so output with no tag for this long is not Valgrind's.
    static constexpr std::uint64_t max_bytes_without_tag = 4u << 20;
    bool token_bounded()
    {
        if (m_fed - m_fed_at_tag <= max_bytes_without_tag)
            return true;
        m_stopped = true;
        fail_plain(L"no XML tag ends within 4 MiB (a huge comment, tag or attribute): not Valgrind XML output");
        return false;
    }

    // For a fragment cut from the middle of a document: the head of the
    // document declared the protocol already.
    void assume_protocol() { m_protocol = 4; }
    // Parsed to the end without an error, a cut, or anything but UTF-8.
    bool clean() const { return m_report.ok && !m_truncated && !m_stopped && !m_other_encoding; }
    bool knows_protocol() const { return m_protocol != 0; }
    std::uint64_t count() const { return m_report.problems; }

    bool parsed(XML_Status status)
    {
        if (status == XML_STATUS_OK)
            return true;
        m_stopped = true;
        if (m_report.ok) // not stopped by one of our own checks
            on_expat_error();
        return false;
    }

    import_report_t finish()
    {
        if (m_report.ok && !m_truncated && !m_bytes_seen)
            fail_plain(L"the file is empty");
        else if (m_report.ok && !m_truncated && m_protocol == 0)
            fail_plain(L"no <protocolversion>: not Valgrind XML output");
        m_report.tool = m_protocol_tool.empty() ? m_tool : m_protocol_tool;
        if (!m_exe.empty()) {
            m_report.command = quoted_arg(m_exe);
            for (const auto& a : m_args)
                m_report.command += " " + quoted_arg(a);
        }
        return std::move(m_report);
    }

private:
    static void XMLCALL on_start(void* self, const XML_Char* name, const XML_Char**)
    {
        auto* parser = static_cast<parser_t*>(self);
        parser->m_fed_at_tag = parser->m_fed;
        parser->start(name);
    }
    static void XMLCALL on_end(void* self, const XML_Char*)
    {
        auto* parser = static_cast<parser_t*>(self);
        parser->m_fed_at_tag = parser->m_fed;
        parser->end();
    }
    static void XMLCALL on_xml_decl(void* self, const XML_Char*, const XML_Char* encoding, int)
    {
        if (encoding && std::strcmp(encoding, "UTF-8") != 0 && std::strcmp(encoding, "utf-8") != 0)
            static_cast<parser_t*>(self)->m_other_encoding = true;
    }
    static void XMLCALL on_text(void* self, const XML_Char* s, int len)
    {
        auto* p = static_cast<parser_t*>(self);
        // A field larger than this is no analyser's output; keep memory bounded.
        constexpr std::size_t max_text = 1 << 20;
        if (p->m_text.size() < max_text)
            p->m_text.append(s, static_cast<std::size_t>(len));
    }

    std::wstring place() const
    {
        return m_name + L":" + std::to_wstring(XML_GetCurrentLineNumber(m_parser)) + L":" +
               std::to_wstring(XML_GetCurrentColumnNumber(m_parser) + 1) + L": ";
    }

    void fail(const std::wstring& reason)
    {
        if (!m_report.ok)
            return;
        m_report.ok = false;
        m_report.error = place() + reason;
        m_stopped = true;
        XML_StopParser(m_parser, XML_FALSE);
    }

    void fail_plain(const std::wstring& reason)
    {
        m_report.ok = false;
        m_report.error = m_name + L": " + reason;
    }

    void on_expat_error()
    {
        const XML_Error code = XML_GetErrorCode(m_parser);
        if (!m_bytes_seen)
            return fail_plain(L"the file is empty");
        const bool cut_short = code == XML_ERROR_NO_ELEMENTS || code == XML_ERROR_UNCLOSED_TOKEN ||
                               code == XML_ERROR_PARTIAL_CHAR ||
                               code == XML_ERROR_UNCLOSED_CDATA_SECTION;
        if (cut_short && !m_path.empty() && m_protocol != 0) {
            m_truncated = true;
            m_report.truncated = true;
            const std::wstring where =
                L" (line " + std::to_wstring(XML_GetCurrentLineNumber(m_parser)) + L")";
            const std::wstring complete =
                std::to_wstring(m_report.problems) +
                (m_report.problems == 1 ? L" complete error is" : L" complete errors are");
            m_report.warnings.push_back(
                m_in_error ? m_name + L": the output ends in the middle of an error" + where +
                                 L"; that error is skipped, the " + complete + L" imported"
                           : m_name + L": the output ends before </valgrindoutput>" + where +
                                 L" (the analysed program did not finish); the " + complete +
                                 L" imported");
            return;
        }
        m_report.ok = false;
        m_report.error = place() + L"malformed XML: " + utf8_to_wide(XML_ErrorString(code));
    }

    void start(const char* name)
    {
        if (m_skip > 0) {
            ++m_skip;
            return;
        }
        const tag_t t = classify(name);
        if (m_path.empty()) {
            if (t != tag_t::valgrindoutput)
                return fail(L"the root element is <" + utf8_to_wide(name) +
                            L">, not <valgrindoutput>: this is not Valgrind XML output");
            m_path.push_back(t);
            return;
        }
        const tag_t parent = m_path.back();
        if (!accepts(parent, t) || (!m_build && t == tag_t::stack)) {
            m_skip = 1;
            return;
        }
        m_path.push_back(t);
        if (is_text_leaf(t)) {
            m_text.clear();
            // Only text leaves get character data: expat then skips the
            // whitespace between elements without calling us.
            XML_SetCharacterDataHandler(m_parser, &parser_t::on_text);
            return;
        }
        switch (t) {
        case tag_t::error:
            begin_error();
            break;
        case tag_t::announcethread:
            m_thread_id.clear();
            m_thread_root = false;
            m_thread_stack = stack_t{};
            break;
        case tag_t::isrootthread:
            m_thread_root = true;
            break;
        case tag_t::stack:
            begin_stack(parent);
            break;
        case tag_t::frame:
            m_frame = frame_t{};
            break;
        default:
            break;
        }
    }

    void end()
    {
        if (m_skip > 0) {
            --m_skip;
            return;
        }
        if (m_path.empty())
            return;
        const tag_t t = m_path.back();
        m_path.pop_back();
        const tag_t parent = m_path.empty() ? tag_t::other : m_path.back();
        if (is_text_leaf(t)) {
            XML_SetCharacterDataHandler(m_parser, nullptr);
            end_text(t, parent);
            return;
        }
        switch (t) {
        case tag_t::frame:
            if (m_stack)
                m_stack->frames.push_back(std::move(m_frame));
            break;
        case tag_t::stack:
            m_stack = nullptr;
            break;
        case tag_t::error:
            end_error();
            break;
        case tag_t::announcethread:
            if (m_build && !m_thread_id.empty())
                m_announcements[m_thread_id] =
                    announcement_text(m_thread_id, m_thread_root, m_thread_stack);
            break;
        default:
            break;
        }
    }

    void end_text(tag_t t, tag_t parent)
    {
        switch (t) {
        case tag_t::protocolversion: {
            std::uint64_t v = 0;
            const std::string_view text = trimmed(m_text);
            if (!parse_uint(text, v) || v < 4 || v > 6)
                return fail(L"unsupported Valgrind XML protocol version " + utf8_to_wide(text) +
                            L" (supported: 4, 5 and 6)");
            m_protocol = static_cast<int>(v);
            break;
        }
        case tag_t::protocoltool:
            m_protocol_tool = std::string(trimmed(m_text));
            break;
        case tag_t::tool:
            m_tool = std::string(trimmed(m_text));
            break;
        case tag_t::exe:
            m_exe = m_text;
            break;
        case tag_t::arg:
            m_args.push_back(m_text);
            break;
        case tag_t::kind:
            m_problem.kind.assign(trimmed(m_text));
            break;
        case tag_t::what:
            set_what(m_text);
            break;
        case tag_t::auxwhat:
            add_auxwhat(m_text);
            break;
        case tag_t::text:
            if (parent == tag_t::xwhat)
                set_what(m_text);
            else
                add_auxwhat(m_text);
            break;
        case tag_t::leakedbytes:
            parse_uint(trimmed(m_text), m_problem.leaked_bytes);
            break;
        case tag_t::leakedblocks:
            parse_uint(trimmed(m_text), m_problem.leaked_blocks);
            break;
        case tag_t::hthreadid:
            if (parent == tag_t::announcethread)
                m_thread_id.assign(trimmed(m_text));
            else if (std::find(m_threads.begin(), m_threads.end(), trimmed(m_text)) ==
                     m_threads.end())
                m_threads.emplace_back(trimmed(m_text));
            break;
        case tag_t::ip:
            parse_uint(trimmed(m_text), m_frame.address, 16);
            break;
        case tag_t::obj: {
            const auto slash = m_text.find_last_of('/');
            m_frame.module.assign(m_text, slash == std::string::npos ? 0 : slash + 1);
            break;
        }
        case tag_t::fn:
            m_frame.function = m_text;
            break;
        case tag_t::dir:
            m_frame.source = m_text;
            break;
        case tag_t::file:
            // <dir> comes before <file> when present.
            if (!m_frame.source.empty())
                m_frame.source.push_back('/');
            m_frame.source.append(m_text);
            break;
        case tag_t::line:
            parse_uint(trimmed(m_text), m_frame.line);
            break;
        case tag_t::rawtext:
            m_problem.native_suppression.assign(trimmed(m_text));
            break;
        default:
            break;
        }
    }

    void begin_error()
    {
        if (m_protocol == 0)
            return fail(
                L"<error> before <protocolversion>: not Valgrind XML output of protocol 4, 5 or 6");
        m_in_error = true;
        m_problem = problem_t{};
        m_problem.tool = m_protocol_tool.empty() ? m_tool : m_protocol_tool;
        m_threads.clear();
        m_pending_aux.clear();
        m_has_pending_aux = false;
        m_error_line = XML_GetCurrentLineNumber(m_parser);
    }

    void begin_stack(tag_t parent)
    {
        if (parent == tag_t::announcethread) {
            m_stack = &m_thread_stack;
            return;
        }
        if (!m_in_error)
            return;
        stack_t stack;
        if (parent == tag_t::error) {
            if (!m_problem.stacks.empty() && m_has_pending_aux) {
                stack.title = std::move(m_pending_aux);
                m_has_pending_aux = false;
            }
        } else {
            stack.title = wrapper_title(parent);
        }
        stack.frames.reserve(16);
        m_problem.stacks.push_back(std::move(stack));
        m_stack = &m_problem.stacks.back();
    }

    void set_what(const std::string& text)
    {
        if (m_problem.description.empty())
            m_problem.description = text;
        else
            m_problem.aux.push_back(text);
    }

    // An auxwhat titles the stack that follows it; until then it is pending.
    void add_auxwhat(const std::string& text)
    {
        if (m_has_pending_aux)
            m_problem.aux.push_back(std::move(m_pending_aux));
        m_pending_aux = text;
        m_has_pending_aux = true;
    }

    void end_error()
    {
        m_in_error = false;
        if (m_problem.kind.empty()) {
            m_report.ok = false;
            m_report.error =
                m_name + L":" + std::to_wstring(m_error_line) + L": <error> without <kind>";
            m_stopped = true;
            XML_StopParser(m_parser, XML_FALSE);
            return;
        }
        if (!m_build) {
            ++m_report.problems;
            return;
        }
        if (m_has_pending_aux)
            m_problem.aux.push_back(std::move(m_pending_aux));
        m_has_pending_aux = false;
        for (const auto& id : m_threads) {
            const auto it = m_announcements.find(id);
            if (it != m_announcements.end())
                m_problem.aux.push_back(it->second);
        }
        m_problem.type = readable_problem_type(m_problem.tool, m_problem.kind);
        if (!m_problem.stacks.empty())
            m_problem.best_level =
                m_locator.best_level(m_problem.stacks[0].frames, module_short_name(m_exe));
        m_problem.id = ++m_report.problems;
        make_valid_utf8(m_problem);
        m_sink(std::move(m_problem));
    }

    const std::wstring& m_name;
    best_location_t m_locator;
    const problem_sink_t& m_sink;
    const bool m_build;
    XML_Parser m_parser;
    import_report_t m_report;
    std::uint64_t m_fed = 0;        // bytes handed to expat
    std::uint64_t m_fed_at_tag = 0; // m_fed when the last tag ended
    bool m_stopped = false;
    bool m_truncated = false;
    bool m_other_encoding = false;
    bool m_bytes_seen = false;

    std::vector<tag_t> m_path; // open elements of interest
    int m_skip = 0;            // depth inside a skipped element
    std::string m_text;

    int m_protocol = 0;
    std::string m_protocol_tool;
    std::string m_tool;
    std::string m_exe;
    std::vector<std::string> m_args;

    std::map<std::string, std::string> m_announcements; // hthreadid -> text
    std::string m_thread_id;
    bool m_thread_root = false;
    stack_t m_thread_stack;

    bool m_in_error = false;
    problem_t m_problem;
    XML_Size m_error_line = 0;
    std::vector<std::string> m_threads; // hthreadids the error names
    std::string m_pending_aux;
    bool m_has_pending_aux = false;
    stack_t* m_stack = nullptr;
    frame_t m_frame;
};

// Where a file may be cut for checking in pieces: the '<' of an "<error>"
// that starts a line, near each of parts - 1 evenly spaced offsets.
std::vector<std::uint64_t> cut_points(const std::filesystem::path& file, std::uint64_t size,
                                      unsigned parts)
{
    constexpr std::size_t window = 1 << 20;
    const std::string marker = "\n<error>";
    std::vector<std::uint64_t> out;
    std::ifstream in(file, std::ios::binary);
    std::string buffer(static_cast<std::size_t>(std::min<std::uint64_t>(window, size)), '\0');
    for (unsigned i = 1; i < parts && in; ++i) {
        const std::uint64_t from = size / parts * i;
        in.seekg(static_cast<std::streamoff>(from));
        in.read(buffer.data(), static_cast<std::streamsize>(buffer.size()));
        const auto got = static_cast<std::size_t>(in.gcount());
        in.clear();
        const auto at = std::string_view(buffer.data(), got).find(marker);
        if (at == std::string_view::npos)
            continue;
        const std::uint64_t cut = from + at + 1;
        if (out.empty() || cut > out.back())
            out.push_back(cut);
    }
    return out;
}

// Parses bytes [begin, end) of a file as a fragment of the document: pieces
// after the first get the root's start tag before them, pieces before the
// last its end tag after them.
void parse_piece(const std::filesystem::path& file, std::uint64_t begin, std::uint64_t end,
                 bool first, bool last, parser_t& parser)
{
    static constexpr char open[] = "<valgrindoutput>";
    static constexpr char close[] = "</valgrindoutput>";
    std::ifstream in(file, std::ios::binary);
    in.seekg(static_cast<std::streamoff>(begin));
    if (!first && !parser.feed(open, sizeof open - 1, false))
        return;
    std::vector<char> buffer(static_cast<std::size_t>(
        std::min<std::uint64_t>(valgrind_xml_importer_t::chunk_size, end - begin)));
    for (std::uint64_t at = begin; at < end;) {
        const auto want =
            static_cast<std::streamsize>(std::min<std::uint64_t>(buffer.size(), end - at));
        in.read(buffer.data(), want);
        const auto got = in.gcount();
        if (got <= 0 || !parser.feed(buffer.data(), static_cast<std::size_t>(got), false))
            return;
        at += static_cast<std::uint64_t>(got);
    }
    if (last)
        parser.feed(nullptr, 0, true);
    else
        parser.feed(close, sizeof close - 1, true);
}

} // namespace

bool valgrind_xml_importer_t::can_import(const std::string& head) const
{
    std::string_view h(head);
    if (h.substr(0, 3) == "\xEF\xBB\xBF")
        h.remove_prefix(3);
    const auto first = h.find_first_not_of(" \t\r\n");
    return first == std::string_view::npos || h[first] == '<';
}

import_report_t valgrind_xml_importer_t::import_stream(std::istream& in, const std::wstring& name,
                                                       const import_context_t& context,
                                                       const problem_sink_t& sink) const
{
    parser_t parser(name, context, sink);
    for (bool final = false; !final;)
        if (!parser.feed(in, chunk_size, final))
            break;
    if (in.bad()) {
        import_report_t report;
        report.ok = false;
        report.error = name + L": read error";
        return report;
    }
    return parser.finish();
}

import_report_t valgrind_xml_importer_t::scan_stream(std::istream& in,
                                                     const std::wstring& name) const
{
    const problem_sink_t none;
    parser_t parser(name, import_context_t{}, none, false);
    for (bool final = false; !final;)
        if (!parser.feed(in, chunk_size, final))
            break;
    if (in.bad()) {
        import_report_t report;
        report.ok = false;
        report.error = name + L": read error";
        return report;
    }
    return parser.finish();
}

import_report_t valgrind_xml_importer_t::scan_file(const basekit2::path_t& file,
                                                   const std::wstring& name) const
{
    std::error_code ec;
    const std::uint64_t size = std::filesystem::file_size(file.fs(), ec);
    const unsigned parts = std::min(4u, std::thread::hardware_concurrency());
    if (!ec && size >= parallel_threshold && parts >= 2)
        if (auto report = scan_in_pieces(file, name, parts))
            return std::move(*report);
    // One piece gives the exact report of a malformed or cut file.
    return stream_importer_t::scan_file(file, name);
}

std::optional<import_report_t> valgrind_xml_importer_t::scan_in_pieces(const basekit2::path_t& file,
                                                                       const std::wstring& name,
                                                                       unsigned parts) const
{
    std::error_code ec;
    const std::uint64_t size = std::filesystem::file_size(file.fs(), ec);
    if (ec)
        return std::nullopt;
    std::vector<std::uint64_t> bounds = cut_points(file.fs(), size, std::max(parts, 2u));
    if (bounds.empty())
        return std::nullopt;
    bounds.insert(bounds.begin(), 0);
    bounds.push_back(size);

    const problem_sink_t none;
    std::vector<std::unique_ptr<parser_t>> parsers;
    for (size_t i = 0; i + 1 < bounds.size(); ++i) {
        parsers.push_back(std::make_unique<parser_t>(name, import_context_t{}, none, false));
        if (i > 0)
            parsers.back()->assume_protocol();
    }
    std::vector<char> failed(parsers.size(), 0);
    auto run = [&](size_t i) {
        try {
            parse_piece(file.fs(), bounds[i], bounds[i + 1], i == 0, i + 2 == bounds.size(),
                        *parsers[i]);
        } catch (...) {
            failed[i] = 1;
        }
    };
    std::vector<std::thread> threads;
    for (size_t i = 1; i < parsers.size(); ++i)
        threads.emplace_back(run, i);
    run(0);
    for (auto& t : threads)
        t.join();

    std::uint64_t problems = 0;
    for (size_t i = 0; i < parsers.size(); ++i) {
        if (failed[i] || !parsers[i]->clean())
            return std::nullopt;
        problems += parsers[i]->count();
    }
    if (!parsers[0]->knows_protocol())
        return std::nullopt;
    import_report_t report = parsers[0]->finish();
    report.problems = problems;
    return report;
}

import_report_t valgrind_xml_importer_t::import_buffer(const char* data, std::size_t size,
                                                       const std::wstring& name,
                                                       const import_context_t& context,
                                                       const problem_sink_t& sink,
                                                       std::size_t chunk) const
{
    parser_t parser(name, context, sink);
    chunk = std::max<std::size_t>(chunk, 1);
    std::size_t offset = 0;
    do {
        const std::size_t n = std::min(chunk, size - offset);
        const bool final = offset + n == size;
        if (!parser.feed(data + offset, n, final) || final)
            break;
        offset += n;
    } while (true);
    return parser.finish();
}

} // namespace corr_engine
