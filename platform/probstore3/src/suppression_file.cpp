#include "probstore3/suppression_file.h"

#include "probstore3/aggregator.h"

#include "basekit2/file_io.h"
#include "platkit/strings/convert.h"
#include "suppfmt3/format_writer.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <deque>
#include <filesystem>
#include <unordered_set>

namespace probstore3 {

using namespace suppfmt3;
using platkit::strings::utf8_to_wide;

namespace {

// A rule set with the text around it: what a rewrite has to keep.
struct entry_t
{
    rule_set_ptr set;
    std::vector<std::string> detached; // stays in place when the set goes
    std::vector<std::string> attached; // comments directly above the set
    std::vector<std::string> inner;    // comments inside its block
    size_t text_begin = 0;             // the block in state::source
    size_t text_end = 0;
    bool has_source = false;
    std::uint64_t text_time = 0; // the rule data had not changed since this time when the text was made
};

struct placement_t
{
    size_t begin = 0;
    size_t end = 0;
    bool canonical = false;
    std::uint64_t time = 0;
};

bool is_blank_line(const std::string& line) { return line.find_first_not_of(" \t") == std::string::npos; }

template <class Rules>
void write_canonical(std::string& out, const std::string& name, suppression_rule_set_type type, const Rules& rules)
{
    std::vector<const suppfmt3::suppression_rule_t*> pointers;
    pointers.reserve(rules.size());
    for (const auto& r : rules)
        pointers.push_back(r.get());
    format_writer_t::write_rule_set(out, name, type, pointers);
}

// A touched block whose text is still exactly the canonical one (say, a
// change that was undone) keeps its text; any other touched block is
// written in the canonical layout.
bool block_unchanged(std::string_view original, const std::string& canonical)
{
    if (original == canonical)
        return true;
    return !original.empty() && original.back() != '\n' && canonical.size() == original.size() + 1 &&
           canonical.compare(0, original.size(), original) == 0;
}

bool same_path(const std::wstring& a, const std::wstring& b)
{
    std::error_code ec1, ec2;
    const auto pa = basekit2::to_fs(a), pb = basekit2::to_fs(b);
    const auto ca = std::filesystem::weakly_canonical(pa, ec1);
    const auto cb = std::filesystem::weakly_canonical(pb, ec2);
    if (ec1 || ec2)
        return pa.lexically_normal() == pb.lexically_normal();
    return ca == cb;
}

// Joins the lines that stay when a set is removed to those that follow,
// without letting blank separators pile up.
void merge_detached(std::vector<std::string> removed, std::vector<std::string>& into)
{
    if (!removed.empty() && !into.empty() && is_blank_line(removed.back()) && is_blank_line(into.front()))
        removed.pop_back();
    into.insert(into.begin(), removed.begin(), removed.end());
}

// The text of a file in pieces, so that a save does not copy what it keeps.
class output_t
{
public:
    void add(std::string_view piece)
    {
        m_pieces.push_back(piece);
        m_size += piece.size();
    }
    void add_line(std::string_view line)
    {
        add(line);
        add(m_newline);
    }
    // The line end of the file: "\n", or "\r\n" for a file that had them.
    void set_newline(std::string_view newline) { m_newline = newline; }
    std::string_view newline() const { return m_newline; }
    void add_lines(const std::vector<std::string>& lines)
    {
        for (const auto& l : lines)
            add_line(l);
    }
    // Keeps a string alive for as long as the output.
    std::string_view own(std::string text)
    {
        m_owned.push_back(std::move(text));
        return m_owned.back();
    }

    size_t size() const { return m_size; }
    const std::vector<std::string_view>& pieces() const { return m_pieces; }

    bool equals(std::string_view text) const
    {
        if (text.size() != m_size)
            return false;
        size_t at = 0;
        for (const auto piece : m_pieces) {
            if (text.compare(at, piece.size(), piece) != 0)
                return false;
            at += piece.size();
        }
        return true;
    }
    std::string join() const
    {
        std::string text;
        text.reserve(m_size);
        for (const auto piece : m_pieces)
            text.append(piece);
        return text;
    }

private:
    std::vector<std::string_view> m_pieces;
    std::deque<std::string> m_owned;
    size_t m_size = 0;
    std::string_view m_newline = "\n";
};

std::string with_crlf(const std::string& text)
{
    std::string out;
    out.reserve(text.size() + text.size() / 16);
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\n' && (i == 0 || text[i - 1] != '\r'))
            out += '\r';
        out += text[i];
    }
    return out;
}

} // namespace

struct suppression_file_t::state
{
    std::wstring path;
    suppression_file_format_t format = sff_current;
    std::string header;
    std::string source; // the text last read or written; entries point into it
    // What the file had that a new text keeps: a UTF-8 byte-order mark, and
    // CRLF line ends (taken from its first line).
    bool bom = false;
    bool crlf = false;
    std::vector<entry_t> entries;
    std::unordered_set<const suppression_rule_set_t*> members; // the sets of entries, for a quick "is it here"
    std::vector<std::string> trailer;
    rule_sets_t saved;
    std::wstring last_error;
    parse_error_t last_parse_error;

    std::vector<entry_t>::iterator find(const rule_set_ptr& set)
    {
        return std::find_if(entries.begin(), entries.end(), [&](const entry_t& e) { return e.set == set; });
    }

    // The text of the file as pieces: slices of the source for what is
    // kept, strings of its own for the rest. where receives the place of
    // each block in the output.
    void render(output_t& out, std::vector<placement_t>& where) const
    {
        const std::uint64_t now = current_change_stamp();
        where.clear();
        where.reserve(entries.size());
        if (crlf)
            out.set_newline("\r\n");
        if (bom)
            out.add("\xEF\xBB\xBF");
        out.add_line(format == sff_current && !header.empty() ? std::string_view(header)
                                                              : out.own(format_writer_t::header_line(sff_current)));
        std::string canonical;
        for (const auto& e : entries) {
            out.add_lines(e.detached);
            out.add_lines(e.attached);
            bool keep = false;
            bool written = false;
            std::string_view original;
            if (e.has_source && format == sff_current) {
                original = std::string_view(source).substr(e.text_begin, e.text_end - e.text_begin);
                // Untouched since its text was made: no need to compare contents.
                keep = e.set->last_change_with_rules() <= e.text_time;
            }
            if (!keep) {
                canonical.clear();
                write_canonical(canonical, e.set->get_name_utf8(), e.set->get_type(), e.set->get_rules());
                written = true;
                keep = !original.empty() && block_unchanged(original, crlf ? with_crlf(canonical) : canonical);
            }
            placement_t p;
            if (keep) {
                p.begin = out.size();
                out.add(original);
                if (original.empty() || original.back() != '\n')
                    out.add(out.newline());
            } else {
                out.add_lines(e.inner);
                p.begin = out.size();
                out.add(out.own(crlf ? with_crlf(canonical) : std::move(canonical)));
                canonical = std::string();
                p.canonical = written;
            }
            p.end = out.size();
            p.time = now;
            where.push_back(p);
        }
        out.add_lines(trailer);
    }
};

suppression_file_t::suppression_file_t(std::wstring path) : m(std::make_unique<state>())
{
    m->path = std::move(path);
}

suppression_file_t::~suppression_file_t() = default;

suppfmt_errdef suppression_file_t::load(const std::wstring& path)
{
    std::string text;
    std::wstring io_error;
    if (!basekit2::read_file(basekit2::path_t(path), text, io_error)) {
        m->last_error = path + L": " + io_error;
        m->last_parse_error = {se_cannot_open, 0, platkit::strings::wide_to_utf8(io_error)};
        return se_cannot_open;
    }

    parsed_file_t parsed;
    parse_error_t error;
    const format_reader_t reader([] { return shared_pointer<suppfmt3::suppression_rule_t>(new suppression_rule_t); });
    if (!reader.read(text, parsed, error)) {
        m->last_error = path + (error.line ? L":" + std::to_wstring(error.line) : std::wstring()) + L": " +
                        utf8_to_wide(error.reason);
        m->last_parse_error = error;
        return error.code;
    }

    std::vector<entry_t> entries;
    entries.reserve(parsed.rule_sets.size());
    for (auto& p : parsed.rule_sets) {
        entry_t e;
        e.set = boost::make_shared<suppression_rule_set_t>();
        e.set->set_name_utf8(std::move(p.name));
        e.set->set_type(p.type);
        suppression_rule_set_t::rules_t rules;
        rules.reserve(p.rules.size());
        for (auto& r : p.rules)
            rules.push_back(platkit::memory::pointers::static_pointer_cast<suppression_rule_t>(r));
        e.set->set_rules(std::move(rules));
        e.detached = std::move(p.detached);
        e.attached = std::move(p.attached);
        e.inner = std::move(p.inner);
        e.text_begin = p.text_begin;
        e.text_end = p.text_end;
        e.has_source = true;
        entries.push_back(std::move(e));
    }
    // Everything made so far is what the text says.
    const std::uint64_t now = current_change_stamp();
    for (auto& e : entries)
        e.text_time = now;

    m->path = path;
    m->format = parsed.format;
    m->header = std::move(parsed.header);
    m->bom = text.compare(0, 3, "\xEF\xBB\xBF") == 0;
    const auto first_newline = text.find('\n');
    m->crlf = first_newline != std::string::npos && first_newline > 0 && text[first_newline - 1] == '\r';
    m->source = std::move(text);
    m->entries = std::move(entries);
    m->members.clear();
    for (const auto& e : m->entries)
        m->members.insert(e.set.get());
    m->trailer = std::move(parsed.trailer);
    m->last_error.clear();
    m->last_parse_error = {};
    resync_suppressions();
    return se_success;
}

boost::shared_ptr<suppression_file_t> suppression_file_t::open(const std::wstring& path, std::wstring* error)
{
    auto file = boost::make_shared<suppression_file_t>(path);
    if (file->load(path) != se_success) {
        if (error)
            *error = file->get_last_error();
        return {};
    }
    return file;
}

suppression_file_t::rule_sets_t suppression_file_t::get_rulesets(bool include_unsaved) const
{
    if (!include_unsaved)
        return m->saved;
    rule_sets_t out;
    out.reserve(m->entries.size());
    for (const auto& e : m->entries)
        out.push_back(e.set);
    return out;
}

void suppression_file_t::add_suppression(const boost::shared_ptr<suppression_rule_set_t>& rule_set)
{
    if (!rule_set)
        return;
    rule_set->set_file(weak_from_this());
    if (!m->members.insert(rule_set.get()).second)
        return;
    entry_t e;
    e.set = rule_set;
    // Comments of a file without suppressions describe the file: they stay on top.
    if (m->entries.empty() && !m->trailer.empty()) {
        e.detached = std::move(m->trailer);
        m->trailer.clear();
        if (!is_blank_line(e.detached.back()))
            e.detached.emplace_back();
    } else {
        e.detached.emplace_back();
    }
    m->entries.push_back(std::move(e));
}

void suppression_file_t::remove_suppression(const boost::shared_ptr<suppression_rule_set_t>& rule_set)
{
    if (!rule_set || m->members.count(rule_set.get()) == 0)
        return;
    const auto it = m->find(rule_set);
    m->members.erase(rule_set.get());
    auto detached = std::move(it->detached);
    const auto next = m->entries.erase(it);
    if (next == m->entries.end()) {
        // Blank lines that only separated the last set from what was above.
        while (!detached.empty() && is_blank_line(detached.back()))
            detached.pop_back();
    }
    merge_detached(std::move(detached), next == m->entries.end() ? m->trailer : next->detached);
    if (rule_set->get_file().get() == this)
        rule_set->set_file({});
}

void suppression_file_t::resync_suppressions()
{
    m->saved.clear();
    m->saved.reserve(m->entries.size());
    for (auto& e : m->entries) {
        e.set->set_file(weak_from_this());
        m->saved.push_back(e.set);
    }
}

class suppression_file_t::snapshot_t
{
public:
    explicit snapshot_t(const state& s) : saved(s) {}
    const state saved;
};

std::shared_ptr<const suppression_file_t::snapshot_t> suppression_file_t::take_snapshot() const
{
    return std::make_shared<const snapshot_t>(*m);
}

void suppression_file_t::restore(const snapshot_t& snapshot)
{
    std::vector<rule_set_ptr> current;
    current.reserve(m->entries.size());
    for (const auto& e : m->entries)
        current.push_back(e.set);
    std::wstring last_error = std::move(m->last_error);
    parse_error_t last_parse_error = std::move(m->last_parse_error);
    *m = snapshot.saved;
    m->last_error = std::move(last_error);
    m->last_parse_error = std::move(last_parse_error);
    for (const auto& set : current)
        if (m->members.count(set.get()) == 0 && set->get_file().get() == this)
            set->set_file({});
    for (auto& e : m->entries)
        e.set->set_file(weak_from_this());
}

std::string suppression_file_t::to_text() const
{
    output_t out;
    std::vector<placement_t> where;
    m->render(out, where);
    return out.join();
}

suppfmt_errdef suppression_file_t::save(const std::wstring& path, suppression_file_format_t format)
{
    auto fail = [&](suppfmt_errdef code, const std::wstring& detail) {
        m->last_error = path + L": " + aggregator_t::get_suppfmt_errdef_string(code) +
                        (detail.empty() ? std::wstring() : L" (" + detail + L")");
        return code;
    };
    if (path.empty())
        return fail(se_no_path, {});
    if (format != sff_current)
        return fail(se_format_not_writable, L"format " + std::to_wstring(static_cast<int>(format)));
    for (const auto& e : m->entries)
        if (e.set->get_rules().empty())
            return fail(se_empty_rule_set, L"\"" + e.set->get_name() + L"\"");

    // Another program (corrtool, a second viewer, an editor) may have
    // changed the file since it was read here: writing now would silently
    // drop that change. Refuse, and say what to do.
    if (!m->path.empty() && same_path(path, m->path)) {
        std::string on_disk;
        std::wstring ignored;
        if (basekit2::read_file(basekit2::path_t(path), on_disk, ignored) && on_disk != m->source)
            return fail(se_cannot_write,
                        L"the file was changed by another program since it was read; reload it "
                        L"and make the change again");
    }

    output_t out;
    std::vector<placement_t> placements;
    m->render(out, placements);
    std::wstring io_error;
    switch (basekit2::write_file_atomically(basekit2::path_t(path), out.pieces(), io_error)) {
    case basekit2::write_error::none:
        break;
    case basekit2::write_error::create_temporary:
        return fail(se_cannot_create, io_error);
    case basekit2::write_error::write:
    case basekit2::write_error::flush:
        return fail(se_cannot_write, io_error);
    case basekit2::write_error::rename:
        return fail(se_cannot_rename, io_error);
    }
    m->last_error.clear();

    if (!m->path.empty() && !same_path(path, m->path))
        return se_success; // a copy elsewhere; this file's own state is unchanged
    if (m->path.empty())
        m->path = path;
    if (m->format != sff_current)
        m->header = format_writer_t::header_line(sff_current);
    m->format = sff_current;
    // Usually nothing changed and the source is already the text written.
    if (!out.equals(m->source))
        m->source = out.join();
    for (size_t i = 0; i < m->entries.size(); ++i) {
        auto& e = m->entries[i];
        if (placements[i].canonical) {
            e.attached.insert(e.attached.end(), e.inner.begin(), e.inner.end());
            e.inner.clear();
        }
        e.text_begin = placements[i].begin;
        e.text_end = placements[i].end;
        e.text_time = placements[i].time;
        e.has_source = true;
    }
    return se_success;
}

suppression_file_format_t suppression_file_t::get_file_format() const { return m->format; }

suppression_file_format_t suppression_file_t::get_current_file_format() { return sff_current; }

const std::wstring& suppression_file_t::get_path() const { return m->path; }

const std::wstring& suppression_file_t::get_last_error() const { return m->last_error; }

const parse_error_t& suppression_file_t::get_last_parse_error() const { return m->last_parse_error; }

} // namespace probstore3
