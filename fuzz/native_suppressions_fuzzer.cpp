// Reads arbitrary bytes as Valgrind's and as a sanitizer's suppression file.
// What is accepted must keep the grammar's limits, read back the same when
// written out again, and match a problem without hanging: every "..." span is
// tried against a deep stack.
#include "corr_engine/native_suppressions.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

using namespace corr_engine;

std::string written(const std::vector<valgrind_suppression_t>& supps)
{
    std::string out;
    for (const auto& s : supps) {
        out += "{\n" + s.name + "\n";
        for (size_t i = 0; i < s.tools.size(); ++i)
            out += (i ? "," : "") + s.tools[i];
        out += ":" + s.kind + "\n";
        if (!s.param.empty())
            out += s.param + "\n";
        if (s.leak_kinds_given) {
            out += "match-leak-kinds: ";
            for (size_t i = 0; i < s.leak_kinds.size(); ++i)
                out += (i ? "," : "") + s.leak_kinds[i];
            out += s.leak_kinds.empty() ? "none\n" : "\n";
        }
        for (const auto& f : s.frames) {
            if (f.kind == valgrind_location_t::any_frames) {
                out += "...\n";
                continue;
            }
            out += f.kind == valgrind_location_t::fun ? "fun:" : f.kind == valgrind_location_t::obj ? "obj:" : "src:";
            out += f.pattern + (f.line ? ":" + std::to_string(*f.line) : "") + "\n";
        }
        if (s.frames.empty()) // a tool we do not know: its body is not kept
            out += "fun:*\n";
        out += "}\n";
    }
    return out;
}

probstore3::problem_t deep_problem()
{
    probstore3::problem_t p;
    p.tool = "memcheck";
    p.kind = "Leak_DefinitelyLost";
    p.description = "8 bytes in 1 blocks are definitely lost";
    p.stacks.resize(1);
    for (int i = 0; i < 60; ++i)
        p.stacks[0].frames.push_back({"libx.so", "f" + std::to_string(i % 7), "x.c", 10u + static_cast<unsigned>(i), 0});
    return p;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    static const auto problem = deep_problem();

    std::vector<valgrind_suppression_t> supps;
    parse_failure_t failure;
    if (parse_valgrind_suppressions(text, supps, failure)) {
        for (const auto& s : supps) {
            if (s.frames.size() > 24 || s.tools.empty() || s.name.empty())
                std::abort();
            (void)valgrind_suppression_matches(s, problem);
        }
        std::vector<valgrind_suppression_t> again;
        if (!parse_valgrind_suppressions(written(supps), again, failure) || again.size() != supps.size())
            std::abort();
        for (size_t i = 0; i < supps.size(); ++i)
            if (again[i].name != supps[i].name || again[i].kind != supps[i].kind ||
                again[i].leak_kinds != supps[i].leak_kinds || again[i].param != supps[i].param)
                std::abort();
    } else if (failure.line == 0 || failure.reason.empty()) {
        std::abort();
    }

    std::vector<sanitizer_suppression_t> lines;
    if (parse_sanitizer_suppressions(text, lines, failure)) {
        for (const auto& l : lines) {
            if (l.pattern.empty() || l.type.empty())
                std::abort();
            (void)sanitizer_template_match(l.pattern, "f1 x.c libx.so");
        }
    } else if (failure.line == 0 || failure.reason.empty()) {
        std::abort();
    }
    return 0;
}
