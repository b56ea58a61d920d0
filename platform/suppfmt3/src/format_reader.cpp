#include "suppfmt3/format_reader.h"

#include "suppfmt3/format_writer.h"
#include "text_syntax.h"

#include <optional>

namespace suppfmt3 {
namespace {

using syntax::line_scanner;

constexpr std::string_view header_keyword = "corr-suppressions";
constexpr std::string_view utf8_bom = "\xEF\xBB\xBF";

// Thrown inside the reader only; read() turns it into a parse_error_t.
struct syntax_error
{
    suppfmt_errdef code;
    std::string reason;
};

[[noreturn]] void fail(std::string reason, suppfmt_errdef code = se_parse_error)
{
    throw syntax_error{code, std::move(reason)};
}

std::string quote_word(std::string_view w) { return "'" + std::string(w) + "'"; }

// The lines of a text with their byte ranges; the line ending ("\n" or
// "\r\n") is not part of the line but is part of the range.
class line_splitter
{
public:
    explicit line_splitter(std::string_view text) : m_text(text) {}

    bool next(std::string_view& line, size_t& begin, size_t& end)
    {
        if (m_pos >= m_text.size())
            return false;
        begin = m_pos;
        size_t nl = m_text.find('\n', m_pos);
        if (nl == std::string_view::npos) {
            end = m_text.size();
            line = m_text.substr(begin);
        } else {
            end = nl + 1;
            line = m_text.substr(begin, nl - begin);
        }
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        m_pos = end;
        ++m_number;
        return true;
    }
    size_t number() const { return m_number; }

private:
    std::string_view m_text;
    size_t m_pos = 0;
    size_t m_number = 0;
};

// Splits the trivia lines in front of a block into the part that stays in
// place and the comments that belong to the block.
void assign_trivia(std::vector<std::string>& pending, parsed_rule_set_t& set)
{
    size_t split = pending.size();
    while (split > 0 && syntax::is_comment_line(pending[split - 1]))
        --split;
    set.detached.assign(pending.begin(), pending.begin() + static_cast<std::ptrdiff_t>(split));
    set.attached.assign(pending.begin() + static_cast<std::ptrdiff_t>(split), pending.end());
    pending.clear();
}

// State of one block while its lines are read; shared by both formats.
struct block_state
{
    parsed_rule_set_t set;
    size_t start_line = 0;
    bool kind_seen = false;
    bool location_seen = false;
    shared_pointer<suppression_rule_t> rule;
    shared_pointer<stack_item_t> stack;
    bool best_seen = false;
};

class current_format_parser
{
public:
    explicit current_format_parser(const rule_factory_t& factory) : m_factory(factory) {}

    bool in_block() const { return m_block.has_value(); }
    size_t block_start() const { return m_block ? m_block->start_line : 0; }

    // Returns true when the line ended the block.
    bool line(std::string_view text, size_t number, size_t begin)
    {
        line_scanner s(text);
        const std::string_view keyword = s.word();
        if (keyword.empty())
            fail(s.next_is_quote() ? "a line must start with a keyword, not a string" : "empty keyword");
        if (keyword == "suppression")
            return start(s, number, begin);
        if (!m_block)
            fail(quote_word(keyword) + " outside a suppression (a block starts with 'suppression \"name\"')");
        if (keyword == "end")
            return finish(s);
        if (keyword == "kind")
            kind(s);
        else if (keyword == "rule")
            rule(s);
        else if (keyword == "type")
            value(s, sdt_problem_type, "type");
        else if (keyword == "description")
            value(s, sdt_description, "description");
        else if (keyword == "stack")
            stack(s);
        else if (keyword == "frame")
            frame(s);
        else
            fail("unknown keyword " + quote_word(keyword));
        return false;
    }

    void comment(std::string_view text)
    {
        if (m_block)
            m_block->set.inner.emplace_back(text);
    }

    parsed_rule_set_t take() { return std::move(m_done); }

private:
    bool start(line_scanner& s, size_t number, size_t begin)
    {
        if (m_block)
            fail("'suppression' before the 'end' of the suppression started on line " +
                 std::to_string(m_block->start_line));
        std::string name, error;
        if (!s.quoted(name, error))
            fail("the name after 'suppression': " + error);
        if (name.empty())
            fail("a suppression needs a name");
        expect_end(s, "the name");
        m_block.emplace();
        m_block->start_line = number;
        m_block->set.name = std::move(name);
        m_block->set.first_line = number;
        m_block->set.text_begin = begin;
        return false;
    }

    bool finish(line_scanner& s)
    {
        expect_end(s, "'end'");
        commit_frames();
        if (m_block->set.rules.empty())
            fail("the suppression started on line " + std::to_string(m_block->start_line) + " has no rule");
        m_done = std::move(m_block->set);
        m_block.reset();
        return true;
    }

    void kind(line_scanner& s)
    {
        if (m_block->rule)
            fail("'kind' must come before the first rule");
        if (m_block->kind_seen)
            fail("'kind' given twice");
        const std::string_view w = s.word();
        if (!rule_set_type_from_keyword(w, m_block->set.type))
            fail("unknown kind " + quote_word(w) + " (expected best-location, custom-stack or unspecified)");
        m_block->kind_seen = true;
        expect_end(s, "the kind");
    }

    void rule(line_scanner& s)
    {
        expect_end(s, "'rule'");
        commit_frames();
        auto rule = m_factory ? m_factory() : shared_pointer<suppression_rule_t>(new suppression_rule_t);
        m_block->set.rules.push_back(rule);
        m_block->rule = rule;
        m_block->stack.reset();
        m_block->best_seen = false;
    }

    suppression_rule_t& current_rule(const char* keyword)
    {
        if (!m_block->rule)
            fail(std::string("'") + keyword + "' before the first 'rule'");
        return *m_block->rule;
    }

    // value := string | "any" [string]
    static void field(line_scanner& s, const char* key, std::string& value, bool& active)
    {
        std::string error;
        if (s.next_is_quote()) {
            if (!s.quoted(value, error))
                fail(std::string("the value of '") + key + "': " + error);
            active = true;
            return;
        }
        const std::string_view w = s.word();
        if (w != "any")
            fail(std::string("expected a quoted value or 'any' after '") + key + "'" +
                 (w.empty() ? std::string() : ", found " + quote_word(w)));
        active = false;
        value.clear();
        if (s.next_is_quote() && !s.quoted(value, error))
            fail(std::string("the value of '") + key + "': " + error);
    }

    void value(line_scanner& s, suppfmt_datatype type, const char* key)
    {
        auto& rule = current_rule(key);
        if (rule.get_item(type))
            fail(std::string("'") + key + "' given twice in one rule");
        std::string v;
        bool active = true;
        field(s, key, v, active);
        expect_end(s, std::string("the ") + key);
        rule.set_item(shared_pointer<rule_item>(new value_item_t(type, std::move(v), active)));
    }

    void stack(line_scanner& s)
    {
        auto& rule = current_rule("stack");
        if (rule.get_item(sdt_call_stack))
            fail("'stack' given twice in one rule");
        bool active = true;
        const std::string_view w = s.word();
        if (w == "any")
            active = false;
        else if (!w.empty())
            fail("expected nothing or 'any' after 'stack', found " + quote_word(w));
        expect_end(s, "'stack'");
        shared_pointer<stack_item_t> item(new stack_item_t);
        item->set_active(active);
        rule.set_item(item);
        m_block->stack = item;
    }

    static std::uint64_t line_value(std::string_view w)
    {
        if (w == "none")
            return no_line;
        std::uint64_t v = 0;
        if (!syntax::parse_uint64(w, v) || v == no_line)
            fail("the line " + quote_word(w) + " is not a number from 0 to 18446744073709551614 or 'none'");
        return v;
    }

    void frame(line_scanner& s)
    {
        current_rule("frame");
        if (!m_block->stack)
            fail("'frame' before 'stack' in this rule");
        bool best = false, elided = false;
        std::string_view w = s.word();
        while (w == "best" || w == "elided") {
            bool& flag = w == "best" ? best : elided;
            if (flag)
                fail(quote_word(w) + " given twice on one frame");
            flag = true;
            w = s.word();
        }
        callstack_frame_t f;
        expect_key(w, "module");
        field(s, "module", f.module, f.module_active);
        expect_key(s.word(), "function");
        field(s, "function", f.function, f.function_active);
        expect_key(s.word(), "source");
        field(s, "source", f.source, f.source_active);
        expect_key(s.word(), "line");
        const std::string_view lw = s.word();
        if (lw == "any") {
            f.line_active = false;
            const std::string_view v = s.word();
            f.line = v.empty() ? no_line : line_value(v);
        } else {
            if (lw.empty())
                fail("expected a line number, 'none' or 'any' after 'line'");
            f.line_active = true;
            f.line = line_value(lw);
        }
        expect_end(s, "the frame");
        if (best) {
            if (m_block->best_seen)
                fail("two frames of one stack are marked 'best'");
            m_block->best_seen = true;
            m_block->stack->set_best_level(static_cast<int>(m_frames.size()));
        }
        m_frames.push_back(std::move(f));
        m_frame_active.push_back(!elided);
    }

    static void expect_key(std::string_view w, const char* key)
    {
        if (w != key)
            fail(std::string("expected '") + key + "'" + (w.empty() ? std::string() : ", found " + quote_word(w)));
    }

    static void expect_end(line_scanner& s, const std::string& after)
    {
        if (!s.at_end())
            fail("unexpected text after " + after + ": " + quote_word(s.rest()));
    }

    // Hands the frames read so far to the rule's stack. They are collected
    // here first so that the stack's own vector is allocated once, at size.
    void commit_frames()
    {
        if (m_block->stack && !m_frames.empty())
            m_block->stack->assign(
                callstack_t(std::make_move_iterator(m_frames.begin()), std::make_move_iterator(m_frames.end())),
                m_frame_active);
        m_frames.clear();
        m_frame_active.clear();
    }

    const rule_factory_t& m_factory;
    std::optional<block_state> m_block;
    parsed_rule_set_t m_done;
    callstack_t m_frames;
    std::vector<bool> m_frame_active;
};

// Version 1: "keyword value" lines with the value running to the end of the
// line, one rule per suppression, '*' for an unused aspect, and a single
// location "at module|function|source|line".
class previous_format_parser
{
public:
    explicit previous_format_parser(const rule_factory_t& factory) : m_factory(factory) {}

    bool in_block() const { return m_block.has_value(); }
    size_t block_start() const { return m_block ? m_block->start_line : 0; }

    bool line(std::string_view text, size_t number, size_t begin)
    {
        line_scanner s(text);
        const std::string_view keyword = s.word();
        const std::string_view rest = s.rest();
        if (keyword == "suppression") {
            if (m_block)
                fail("'suppression' before the 'end' of the suppression started on line " +
                     std::to_string(m_block->start_line));
            if (rest.empty())
                fail("a suppression needs a name");
            m_block.emplace();
            m_block->start_line = number;
            m_block->set.name = std::string(rest);
            m_block->set.first_line = number;
            m_block->set.text_begin = begin;
            m_block->rule = m_factory ? m_factory() : shared_pointer<suppression_rule_t>(new suppression_rule_t);
            m_block->set.rules.push_back(m_block->rule);
            return false;
        }
        if (!m_block)
            fail(quote_word(keyword) + " outside a suppression");
        auto& rule = *m_block->rule;
        if (keyword == "end") {
            if (!rest.empty())
                fail("unexpected text after 'end': " + quote_word(rest));
            m_done = std::move(m_block->set);
            m_block.reset();
            return true;
        }
        if (keyword == "type" || keyword == "description") {
            const auto type = keyword == "type" ? sdt_problem_type : sdt_description;
            if (rule.get_item(type))
                fail(quote_word(keyword) + " given twice in one suppression");
            if (rest.empty())
                fail("expected a value or '*' after " + quote_word(keyword));
            const bool any = rest == "*";
            rule.set_item(shared_pointer<rule_item>(new value_item_t(type, any ? "" : std::string(rest), !any)));
        } else if (keyword == "at") {
            location(rule, rest);
        } else {
            fail("unknown keyword " + quote_word(keyword));
        }
        return false;
    }

    void comment(std::string_view text)
    {
        if (m_block)
            m_block->set.inner.emplace_back(text);
    }

    parsed_rule_set_t take() { return std::move(m_done); }

private:
    void location(suppression_rule_t& rule, std::string_view rest)
    {
        if (m_block->location_seen)
            fail("'at' given twice in one suppression");
        m_block->location_seen = true;
        if (rest == "*")
            return;
        std::string_view parts[4];
        size_t n = 0;
        size_t pos = 0;
        while (n < 4) {
            const size_t bar = rest.find('|', pos);
            parts[n++] = syntax::trim(rest.substr(pos, bar == std::string_view::npos ? rest.npos : bar - pos));
            if (bar == std::string_view::npos)
                break;
            pos = bar + 1;
            if (n == 4)
                fail("the location has more than four fields (module|function|source|line)");
        }
        if (n != 4)
            fail("the location needs four fields separated by '|' (module|function|source|line)");
        std::uint64_t line = no_line;
        if (!parts[3].empty() && (!syntax::parse_uint64(parts[3], line) || line == no_line))
            fail("the line " + quote_word(parts[3]) + " is not a number");
        rule.set_item(shared_pointer<rule_item>(new value_item_t(sdt_module, std::string(parts[0]))));
        rule.set_item(shared_pointer<rule_item>(new value_item_t(sdt_function, std::string(parts[1]))));
        rule.set_item(shared_pointer<rule_item>(new value_item_t(sdt_source, std::string(parts[2]))));
        rule.set_item(shared_pointer<rule_item>(new line_item_t(line, line != no_line)));
    }

    const rule_factory_t& m_factory;
    std::optional<block_state> m_block;
    parsed_rule_set_t m_done;
};

suppression_file_format_t read_header(std::string_view line)
{
    line_scanner s(line);
    if (s.word() != header_keyword)
        fail("not a suppression file: the first line must be \"corr-suppressions 2\"", se_not_suppression_file);
    const std::string_view version = s.word();
    std::uint64_t v = 0;
    if (!syntax::parse_uint64(version, v) || !s.at_end())
        fail("the first line must be \"corr-suppressions <version>\"", se_not_suppression_file);
    if (v != sff_version_1 && v != sff_version_2)
        fail("unsupported format version " + std::string(version) + " (this version reads 1 and 2)",
             se_unsupported_version);
    return static_cast<suppression_file_format_t>(v);
}

// base: where the text handed to the splitter starts in the caller's text.
template <class Parser>
void read_body(Parser& parser, line_splitter& lines, size_t base, parsed_file_t& out)
{
    std::vector<std::string> pending;
    std::string_view line;
    size_t begin = 0, end = 0;
    while (lines.next(line, begin, end)) {
        if (syntax::is_blank_line(line) || syntax::is_comment_line(line)) {
            if (parser.in_block()) {
                if (syntax::is_comment_line(line))
                    parser.comment(line);
            } else {
                pending.emplace_back(line);
            }
            continue;
        }
        if (parser.line(line, lines.number(), begin + base)) {
            parsed_rule_set_t set = parser.take();
            set.text_end = end + base;
            assign_trivia(pending, set);
            out.rule_sets.push_back(std::move(set));
        }
    }
    if (parser.in_block())
        throw syntax_error{se_parse_error, "the file ends inside the suppression started on line " +
                                               std::to_string(parser.block_start()) + " (missing 'end')"};
    out.trailer = std::move(pending);
}

} // namespace

format_reader_t::format_reader_t(rule_factory_t factory) : m_factory(std::move(factory)) {}

bool format_reader_t::read(std::string_view text, parsed_file_t& out, parse_error_t& error) const
{
    out = parsed_file_t{};
    const auto fault = syntax::find_text_fault(text);
    if (fault.kind != syntax::text_fault::none) {
        size_t line = 1;
        for (size_t i = 0; i < fault.offset; ++i)
            line += text[i] == '\n';
        error = {se_parse_error, line,
                 fault.kind == syntax::text_fault::invalid_utf8
                     ? "the text is not valid UTF-8"
                     : "control character in the line (write it in a string as an escape sequence)"};
        return false;
    }
    size_t base = 0;
    if (text.substr(0, utf8_bom.size()) == utf8_bom) {
        text.remove_prefix(utf8_bom.size());
        base = utf8_bom.size();
    }

    line_splitter lines(text);
    try {
        std::string_view header;
        size_t begin = 0, end = 0;
        if (!lines.next(header, begin, end))
            fail("the file is empty (a suppression file starts with \"corr-suppressions 2\")",
                 se_not_suppression_file);
        out.format = read_header(header);
        out.header = std::string(header);
        if (out.format == sff_version_2) {
            current_format_parser parser(m_factory);
            read_body(parser, lines, base, out);
        } else {
            previous_format_parser parser(m_factory);
            read_body(parser, lines, base, out);
        }
    } catch (const syntax_error& e) {
        out = parsed_file_t{};
        error = {e.code, lines.number(), e.reason};
        return false;
    }
    error = {};
    return true;
}

bool format_reader_t::read_block(std::string_view text, parsed_rule_set_t& out, parse_error_t& error) const
{
    parsed_file_t file;
    const std::string whole = format_writer_t::header_line(sff_current) + "\n" + std::string(text);
    if (!read(whole, file, error))
        return false;
    if (file.rule_sets.size() != 1) {
        error = {se_parse_error, 0, "expected exactly one suppression"};
        return false;
    }
    out = std::move(file.rule_sets.front());
    return true;
}

} // namespace suppfmt3
