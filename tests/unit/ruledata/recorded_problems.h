#pragma once
// Problems as an importer makes them from the recorded analyser output in
// samples/recorded/. They are written out here because the rule data must
// not depend on the importers; check_recorded() keeps them honest by
// finding every function, source file and line in the recorded file.
#include "probstore3/candidates.h"
#include "probstore3/problem.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

namespace recorded {

inline std::string samples_dir() { return CORR_SAMPLES_DIR; }
inline const std::string src_dir = "/work/wt-samples/samples/src/";

inline probstore3::frame_t frame(std::string module, std::string function, std::string source = {},
                                 std::uint64_t line = probstore3::no_line)
{
    probstore3::frame_t f;
    f.module = std::move(module);
    f.function = std::move(function);
    f.source = std::move(source);
    f.line = line;
    return f;
}

// memcheck_use_after_free.xml: print_record() reads a string release_name() freed.
inline probstore3::problem_t use_after_free()
{
    probstore3::problem_t p;
    p.id = 1;
    p.tool = "memcheck";
    p.kind = "InvalidRead";
    p.type = "Invalid read";
    p.description = "Invalid read of size 1";
    const std::string src = src_dir + "mem_use_after_free.c";
    p.stacks.push_back({"", {frame("mem_use_after_free", "print_record", src, 28),
                             frame("mem_use_after_free", "main", src, 35)}});
    p.best_level = 0;
    return p;
}

// helgrind_race_counter.xml, the first two errors: two threads run worker()
// on a global counter. Frame 1 is Valgrind's preload object, without a
// function or source.
inline probstore3::problem_t race_read()
{
    probstore3::problem_t p;
    p.id = 2;
    p.tool = "helgrind";
    p.kind = "Race";
    p.type = "Data race";
    p.description = "Possible data race during read of size 8 at 0x10C030 by thread #3";
    p.stacks.push_back({"", {frame("thr_race_counter", "worker", src_dir + "thr_race_counter.c", 14),
                             frame("vgpreload_helgrind-amd64-linux.so", ""),
                             frame("libc.so.6", "start_thread", "./nptl/./nptl/pthread_create.c", 442),
                             frame("libc.so.6", "clone", "./misc/../sysdeps/unix/sysv/linux/x86_64/clone.S", 100)}});
    p.best_level = 0;
    return p;
}

inline probstore3::problem_t race_write()
{
    probstore3::problem_t p = race_read();
    p.id = 3;
    p.description = "Possible data race during write of size 8 at 0x10C030 by thread #3";
    return p;
}

// memcheck_leaks.xml, the first leak: allocated eight calls deep; frame 0 is
// malloc in the preload object, so the best location is alloc_token.
inline probstore3::problem_t deep_leak()
{
    probstore3::problem_t p;
    p.id = 4;
    p.tool = "memcheck";
    p.kind = "Leak_DefinitelyLost";
    p.type = "Memory leak";
    p.description = "10 bytes in 1 blocks are definitely lost in loss record 1 of 3";
    const std::string src = src_dir + "mem_leaks.c";
    p.stacks.push_back({"", {frame("vgpreload_memcheck-amd64-linux.so", "malloc"),
                             frame("mem_leaks", "alloc_token", src, 28), frame("mem_leaks", "copy_token", src, 31),
                             frame("mem_leaks", "read_value", src, 35), frame("mem_leaks", "read_entry", src, 36),
                             frame("mem_leaks", "read_block", src, 39), frame("mem_leaks", "read_section", src, 42),
                             frame("mem_leaks", "parse_config", src, 43),
                             frame("mem_leaks", "load_settings", src, 44), frame("mem_leaks", "main", src, 50)}});
    p.best_level = 1;
    return p;
}

// tsan_template_race.txt, the first report: templated, namespaced frames.
inline probstore3::problem_t template_race()
{
    probstore3::problem_t p;
    p.id = 5;
    p.tool = "tsan";
    p.kind = "data race";
    p.type = "Data race";
    p.description = "Write of size 8 at 0x7b0c00000000 by thread T2";
    const std::string src = src_dir + "thr_template_race.cpp";
    const std::string acc = "corr::sample::Accumulator<double, 4>";
    auto level = [&](int n, std::uint64_t line) {
        return frame("tsan_template_race",
                     "void corr::sample::Level<" + std::to_string(n) + ">::descend<" + acc + " >(" + acc + "&, int)",
                     src, line);
    };
    p.stacks.push_back({"", {frame("tsan_template_race", acc + "::add(double const&, int)", src, 19), level(0, 49),
                             level(1, 40), level(2, 40), level(3, 40)}});
    p.best_level = 0;
    return p;
}

// The candidate rule set of one problem, under a name.
inline probstore3::rule_set_ptr named_set(const std::wstring& name, const probstore3::problem_t& problem)
{
    auto set = probstore3::create_candidate_rule_set(std::vector<probstore3::problem_t>{problem});
    set->set_name(name);
    return set;
}

inline std::string read_all(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

// Every function, source file name and line of the problem's main stack
// appears in the recorded file.
inline void check_recorded(const std::string& file, const probstore3::problem_t& p)
{
    const std::string text = read_all(samples_dir() + "/recorded/" + file);
    ASSERT_FALSE(text.empty()) << "missing fixture " << file;
    EXPECT_NE(text.find(p.description), std::string::npos) << p.description;
    for (const auto& f : p.stacks.at(0).frames) {
        if (!f.function.empty()) {
            EXPECT_NE(text.find(f.function), std::string::npos) << f.function;
        }
        EXPECT_NE(text.find(f.module), std::string::npos) << f.module;
        if (!f.source.empty()) {
            const std::string leaf = f.source.substr(f.source.find_last_of('/') + 1);
            EXPECT_NE(text.find(leaf), std::string::npos) << leaf;
        }
        if (f.line != probstore3::no_line) {
            const std::string l = std::to_string(f.line);
            EXPECT_TRUE(text.find("<line>" + l + "</line>") != std::string::npos ||
                        text.find(":" + l + ":") != std::string::npos)
                << f.function << " line " << l;
        }
    }
}

} // namespace recorded
