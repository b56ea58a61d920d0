// Reads arbitrary bytes as a suppression file. Whatever is accepted must
// survive the writer: the canonical text reads back and writes the same
// bytes, and each block's own text reads alone to the same rules.
#include "suppfmt3/format_reader.h"
#include "suppfmt3/format_writer.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

std::string canonical(const suppfmt3::parsed_rule_set_t& set)
{
    std::vector<const suppfmt3::suppression_rule_t*> rules;
    for (const auto& r : set.rules)
        rules.push_back(r.get());
    std::string out;
    suppfmt3::format_writer_t::write_rule_set(out, set.name, set.type, rules);
    return out;
}

std::string canonical(const suppfmt3::parsed_file_t& file)
{
    std::string out = suppfmt3::format_writer_t::header_line() + "\n";
    for (const auto& set : file.rule_sets)
        out += canonical(set);
    return out;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const suppfmt3::format_reader_t reader;
    suppfmt3::parsed_file_t file;
    suppfmt3::parse_error_t error;
    if (!reader.read(text, file, error)) {
        if (error.reason.empty() || error.code == suppfmt3::se_success || !file.rule_sets.empty())
            std::abort(); // a refusal must say why and keep nothing
        return 0;
    }
    for (const auto& set : file.rule_sets) {
        if (set.rules.empty() || set.text_begin >= set.text_end || set.text_end > text.size())
            std::abort();
        if (file.format != suppfmt3::sff_current)
            continue;
        suppfmt3::parsed_rule_set_t alone;
        if (!reader.read_block(text.substr(set.text_begin, set.text_end - set.text_begin), alone, error) ||
            canonical(alone) != canonical(set))
            std::abort();
    }
    const std::string written = canonical(file);
    suppfmt3::parsed_file_t back;
    if (!reader.read(written, back, error) || canonical(back) != written)
        std::abort();
    return 0;
}
