#include "corr_engine/problem_types.h"

#include <cctype>

namespace corr_engine {
namespace {

struct entry_t
{
    std::string_view kind;
    std::string_view type;
};

// Valgrind's kinds are the same whichever tool reports them (memcheck,
// helgrind and drd share PthAPIerror; the core's fd errors appear with any).
constexpr entry_t valgrind_kinds[] = {
    {"InvalidRead", "Invalid read"},
    {"InvalidWrite", "Invalid write"},
    {"InvalidFree", "Invalid free"},
    {"MismatchedFree", "Mismatched free"},
    {"InvalidJump", "Invalid jump"},
    {"Overlap", "Overlapping memory copy"},
    {"InvalidMemPool", "Invalid memory pool"},
    {"UninitCondition", "Uninitialized value"},
    {"UninitValue", "Uninitialized value"},
    {"SyscallParam", "Invalid system call parameter"},
    {"ClientCheck", "Client check"},
    {"Leak_DefinitelyLost", "Memory leak (definite)"},
    {"Leak_IndirectlyLost", "Memory leak (indirect)"},
    {"Leak_PossiblyLost", "Memory leak (possible)"},
    {"Leak_StillReachable", "Memory leak (still reachable)"},
    {"FishyValue", "Suspicious argument"},
    {"ReallocSizeZero", "Realloc of size zero"},
    {"InvalidSizeAndAlignment", "Invalid allocation size and alignment"},
    {"InvalidAlignment", "Invalid allocation alignment"},
    {"InvalidSize", "Invalid allocation size"},
    {"MismatchedAllocateDeallocateSize", "Mismatched deallocation size"},
    {"MismatchedAllocateDeallocateAlignment", "Mismatched deallocation alignment"},
    {"FdBadClose", "Invalid file descriptor close"},
    {"FdNotClosed", "File descriptor leak"},
    {"FdBadUse", "Invalid file descriptor use"},
    // helgrind
    {"Race", "Data race"},
    {"UnlockUnlocked", "Unlock of an unlocked lock"},
    {"UnlockForeign", "Unlock of a foreign lock"},
    {"UnlockBogus", "Unlock of an invalid lock"},
    {"PthAPIerror", "Threading API error"},
    {"LockOrder", "Lock order violation"},
    {"Misc", "Threading error"},
    // drd
    {"ConflictingAccess", "Data race"},
    {"MutexErr", "Mutex error"},
    {"CondErr", "Condition variable error"},
    {"CondDestrErr", "Condition variable destruction error"},
    {"CondRaceErr", "Condition variable race"},
    {"CondWaitErr", "Condition variable wait error"},
    {"SemaphoreErr", "Semaphore error"},
    {"BarrierErr", "Barrier error"},
    {"RwLockErr", "Reader-writer lock error"},
    {"HoldtimeErr", "Lock held too long"},
    {"GenericErr", "Threading error"},
    {"InvalidThreadId", "Invalid thread id"},
    {"UnimpFunc", "Unimplemented function"},
};

// Kinds of the sanitizers, as their reports name them.
constexpr entry_t sanitizer_kinds[] = {
    {"heap-use-after-free", "Heap use after free"},
    {"heap-buffer-overflow", "Heap buffer overflow"},
    {"stack-buffer-overflow", "Stack buffer overflow"},
    {"stack-buffer-underflow", "Stack buffer underflow"},
    {"global-buffer-overflow", "Global buffer overflow"},
    {"stack-use-after-return", "Stack use after return"},
    {"stack-use-after-scope", "Stack use after scope"},
    {"use-after-poison", "Use after poison"},
    {"container-overflow", "Container overflow"},
    {"double-free", "Double free"},
    {"bad-free", "Invalid free"},
    {"alloc-dealloc-mismatch", "Mismatched free"},
    {"new-delete-type-mismatch", "Mismatched delete size"},
    {"memcpy-param-overlap", "Overlapping memory copy"},
    {"negative-size-param", "Negative size parameter"},
    {"allocation-size-too-big", "Allocation size too big"},
    {"calloc-overflow", "Allocation size overflow"},
    {"odr-violation", "One definition rule violation"},
    {"stack-overflow", "Stack overflow"},
    {"SEGV", "Invalid memory access"},
    {"unknown-crash", "Invalid memory access"},
    {"use-of-uninitialized-value", "Uninitialized value"},
    {"direct-leak", "Memory leak (definite)"},
    {"indirect-leak", "Memory leak (indirect)"},
    {"data race", "Data race"},
    {"data race on vptr", "Data race"},
    {"lock-order-inversion", "Lock order violation"},
    {"thread leak", "Thread leak"},
    {"signal-unsafe call inside of a signal", "Signal-unsafe call"},
    {"signal handler spoils errno", "Signal handler spoils errno"},
    {"destroy of a locked mutex", "Destroy of a locked mutex"},
    {"unlock of an unlocked mutex", "Unlock of an unlocked lock"},
    {"double lock of a mutex", "Double lock"},
    {"mutex held in the wrong context", "Lock held in wrong context"},
};

bool is_sanitizer(std::string_view tool)
{
    return tool == "asan" || tool == "lsan" || tool == "tsan" || tool == "ubsan" || tool == "msan";
}

// "SomeNewKind" / "some-new_kind" -> "Some new kind".
std::string words_of(std::string_view kind)
{
    std::string out;
    for (size_t i = 0; i < kind.size(); ++i) {
        const unsigned char c = static_cast<unsigned char>(kind[i]);
        if (c == '-' || c == '_') {
            if (!out.empty() && out.back() != ' ')
                out.push_back(' ');
            continue;
        }
        if (std::isupper(c) && i > 0 && !out.empty() && out.back() != ' ' &&
            std::islower(static_cast<unsigned char>(kind[i - 1])))
            out.push_back(' ');
        out.push_back(static_cast<char>(out.empty() ? std::toupper(c) : std::tolower(c)));
    }
    return out;
}

} // namespace

std::string readable_problem_type(std::string_view tool, std::string_view kind)
{
    if (tool == "ubsan")
        return kind == "SEGV" ? "Invalid memory access" : "Undefined behavior";
    if (is_sanitizer(tool)) {
        for (const auto& e : sanitizer_kinds)
            if (e.kind == kind)
                return std::string(e.type);
    } else {
        for (const auto& e : valgrind_kinds)
            if (e.kind == kind)
                return std::string(e.type);
    }
    std::string words = words_of(kind);
    return words.empty() ? std::string("Unknown problem") : words;
}

namespace {
// Length of the valid UTF-8 sequence at text[i], 0 when there is none.
size_t valid_sequence(const std::string& text, size_t i)
{
    const auto c = static_cast<unsigned char>(text[i]);
    if (c != 0 && c < 0x80)
        return 1;
    size_t n = 0;
    if (c >= 0xC2 && c <= 0xDF)
        n = 2;
    else if (c >= 0xE0 && c <= 0xEF)
        n = 3;
    else if (c >= 0xF0 && c <= 0xF4)
        n = 4;
    else
        return 0;
    if (i + n > text.size())
        return 0;
    for (size_t k = 1; k < n; ++k)
        if ((static_cast<unsigned char>(text[i + k]) & 0xC0) != 0x80)
            return 0;
    const auto c1 = static_cast<unsigned char>(text[i + 1]);
    if ((c == 0xE0 && c1 < 0xA0) || (c == 0xED && c1 > 0x9F) || // overlong, surrogate
        (c == 0xF0 && c1 < 0x90) || (c == 0xF4 && c1 > 0x8F))   // overlong, beyond U+10FFFF
        return 0;
    return n;
}
} // namespace

void make_valid_utf8(std::string& text)
{
    size_t i = 0;
    while (i < text.size()) {
        const size_t n = valid_sequence(text, i);
        if (n == 0)
            break;
        i += n;
    }
    if (i == text.size())
        return; // the usual case: nothing copied
    std::string out(text, 0, i);
    out.reserve(text.size() + 8);
    while (i < text.size()) {
        const size_t n = valid_sequence(text, i);
        if (n == 0) {
            out += "\xEF\xBF\xBD";
            ++i;
        } else {
            out.append(text, i, n);
            i += n;
        }
    }
    text = std::move(out);
}

void make_valid_utf8(probstore3::problem_t& problem)
{
    for (auto* s : {&problem.tool, &problem.kind, &problem.type, &problem.description,
                    &problem.native_suppression})
        make_valid_utf8(*s);
    for (auto& a : problem.aux)
        make_valid_utf8(a);
    for (auto& stack : problem.stacks) {
        make_valid_utf8(stack.title);
        for (auto& f : stack.frames)
            for (auto* s : {&f.module, &f.function, &f.source})
                make_valid_utf8(*s);
    }
}

} // namespace corr_engine
