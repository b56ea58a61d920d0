#include "runctl2/analysis_type.h"

namespace runctl2 {

std::shared_ptr<void> IAnalysisType::queryObject(const std::string&) const
{
    return nullptr;
}

namespace {

analysis_type_ptr make(analysis_type_t::definition_t d)
{
    return std::make_shared<analysis_type_t>(std::move(d));
}

std::vector<analysis_type_ptr> make_builtin()
{
    using a = analyser_t;
    return {
        make({L"mi1", L"Detect Leaks", L"Memory leaks only, found when the program ends.", a::memcheck,
              {"--leak-check=full", "--show-leak-kinds=definite,indirect", "--errors-for-leak-kinds=definite,indirect",
               "--undef-value-errors=no"},
              {}}),
        make({L"mi2", L"Detect Memory Problems",
              L"Invalid reads and writes, uninitialised values, bad frees and leaks.", a::memcheck,
              {"--leak-check=full", "--show-leak-kinds=definite,indirect", "--errors-for-leak-kinds=definite,indirect"},
              {}}),
        make({L"mi3", L"Locate Memory Problems",
              L"Memory problems as above, with the origin of every uninitialised value (slower).", a::memcheck,
              {"--leak-check=full", "--show-leak-kinds=all", "--errors-for-leak-kinds=definite,indirect",
               "--track-origins=yes", "--read-var-info=yes"},
              {}}),
        make({L"ti1", L"Detect Deadlocks and Data Races", L"Lock-order problems and data races (helgrind).",
              a::helgrind, {"--history-level=full"}, {}}),
        make({L"ti2", L"Detect Data Races (DRD)", L"Data races and lock misuse (drd).", a::drd,
              {"--check-stack-var=yes"}, {}}),
        make({L"asan", L"Run an AddressSanitizer Program",
              L"Runs a program built with -fsanitize=address; its reports are collected.", a::sanitizer,
              {"halt_on_error=0", "detect_leaks=1"}, "ASAN_OPTIONS"}),
        make({L"tsan", L"Run a ThreadSanitizer Program",
              L"Runs a program built with -fsanitize=thread; its reports are collected.", a::sanitizer,
              {"halt_on_error=0"}, "TSAN_OPTIONS"}),
        make({L"ubsan", L"Run an UndefinedBehaviorSanitizer Program",
              L"Runs a program built with -fsanitize=undefined; its reports are collected.", a::sanitizer,
              {"halt_on_error=0", "print_stacktrace=1"}, "UBSAN_OPTIONS"}),
    };
}

} // namespace

const std::vector<analysis_type_ptr>& builtin_analysis_types()
{
    static const std::vector<analysis_type_ptr> types = make_builtin();
    return types;
}

analysis_type_ptr find_analysis_type(const std::wstring& name)
{
    for (const auto& t : builtin_analysis_types())
        if (t->getId() == name || t->getCliName() == name)
            return t;
    return nullptr;
}

} // namespace runctl2
