#pragma once
// Problems as the store keeps them: what an analyser reported, with every
// stack it gave (an error can carry several: the access, where the block was
// allocated, where it was freed, the other thread's access).
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace probstore3 {

constexpr std::uint64_t no_line = std::numeric_limits<std::uint64_t>::max();

// Text fields are UTF-8.
struct frame_t
{
    std::string module;   // shared object or executable ("obj"), short name
    std::string function; // demangled function name ("fn")
    std::string source;   // source file, full path when known ("dir"/"file")
    std::uint64_t line = no_line;
    std::uint64_t address = 0;

    bool operator==(const frame_t& o) const
    {
        return module == o.module && function == o.function && source == o.source && line == o.line &&
               address == o.address;
    }
};

struct stack_t
{
    std::string title; // "" for the main stack; "Address is in a block allocated at", ...
    std::vector<frame_t> frames;

    bool operator==(const stack_t& o) const { return title == o.title && frames == o.frames; }
};

struct problem_t
{
    std::uint64_t id = 0;         // unique within a result, stable across reloads
    std::string tool;             // "memcheck", "helgrind", "drd", "asan", "lsan", "tsan", "ubsan"
    std::string kind;             // the analyser's own kind: "InvalidRead", "Race", "heap-use-after-free"
    std::string type;             // readable problem type: "Invalid read", "Data race", ...
    std::string description;      // what/xwhat text, or the sanitizer's summary line
    std::vector<std::string> aux; // further texts (auxwhat, thread announcements, ...)
    std::vector<stack_t> stacks;  // stacks[0] is the main stack
    int best_level = 0;           // index into stacks[0].frames: the best location
    std::uint64_t leaked_bytes = 0;
    std::uint64_t leaked_blocks = 0;
    // The analyser's own suppression for this error, as it printed it
    // (Valgrind's --gen-suppressions=all: "{ <name> Memcheck:Leak ... }",
    // function names mangled); "" when the output carried none.
    std::string native_suppression;

    const frame_t* best_frame() const
    {
        if (stacks.empty() || best_level < 0 ||
            static_cast<size_t>(best_level) >= stacks[0].frames.size())
            return nullptr;
        return &stacks[0].frames[static_cast<size_t>(best_level)];
    }
};

} // namespace probstore3
