#pragma once
// The analyses the product can run. Each type has an identifier, which is
// also its command-line name ("mi1") and the name its settings page is known
// by, the analyser it starts and the analyser options that give its depth.
#include <memory>
#include <string>
#include <vector>

namespace runctl2 {

enum class analyser_t {
    memcheck, // valgrind --tool=memcheck
    helgrind, // valgrind --tool=helgrind
    drd,      // valgrind --tool=drd
    sanitizer // a program built with a sanitizer, run as it is
};

class IAnalysisType
{
public:
    virtual ~IAnalysisType() = default;

    // The identifier: the key of the type's settings and pages.
    virtual std::wstring getId() const = 0;
    // The name scripts use (corrtool run --type NAME).
    virtual std::wstring getCliName() const = 0;
    virtual std::wstring getTitle() const = 0;
    virtual std::wstring getDescription() const = 0;
    virtual analyser_t getAnalyser() const = 0;
    // The analyser's own options that make this type what it is (for a
    // sanitizer type, the runtime options in its *_OPTIONS variable).
    virtual std::vector<std::string> getAnalyserOptions() const = 0;
    // For a sanitizer type, the environment variable of its runtime options
    // ("ASAN_OPTIONS"); empty for the Valgrind types.
    virtual std::string getOptionsVariable() const { return {}; }
    // Whether a debugger can meet the analysed program (Valgrind's gdbserver).
    virtual bool supportsDebugger() const = 0;
    // An object of the type for the given dynamic type name, if it has one.
    virtual std::shared_ptr<void> queryObject(const std::string& dynamic_type) const;
};

using analysis_type_ptr = std::shared_ptr<const IAnalysisType>;

// A type defined by its data.
class analysis_type_t : public IAnalysisType
{
public:
    struct definition_t
    {
        std::wstring id;
        std::wstring title;
        std::wstring description;
        analyser_t analyser = analyser_t::memcheck;
        std::vector<std::string> options;
        std::string options_variable;
    };
    explicit analysis_type_t(definition_t d) : m_d(std::move(d)) {}

    std::wstring getId() const override { return m_d.id; }
    std::wstring getCliName() const override { return m_d.id; }
    std::wstring getTitle() const override { return m_d.title; }
    std::wstring getDescription() const override { return m_d.description; }
    analyser_t getAnalyser() const override { return m_d.analyser; }
    std::vector<std::string> getAnalyserOptions() const override { return m_d.options; }
    std::string getOptionsVariable() const override { return m_d.options_variable; }
    bool supportsDebugger() const override { return m_d.analyser != analyser_t::sanitizer; }

private:
    definition_t m_d;
};

// The built-in types, in the order the launch dialog lists them: "mi1"
// (leaks), "mi2" (memory errors and leaks), "mi3" (the same with the origins
// of uninitialised values), "ti1" (helgrind), "ti2" (drd), "asan", "tsan",
// "ubsan".
const std::vector<analysis_type_ptr>& builtin_analysis_types();

// The built-in type with that identifier or command-line name; null when none.
analysis_type_ptr find_analysis_type(const std::wstring& name);

} // namespace runctl2
