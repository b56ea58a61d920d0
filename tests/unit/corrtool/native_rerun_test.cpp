// The exported suppressions proven where they count: sample programs run
// under the real analysers, their output imported, some problems suppressed
// and exported, and the analysers run again with the exported file. Exactly
// the chosen problems must be gone, every other one must still be reported,
// and the analyser must name each exported suppression as used.
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using nlohmann::json;

std::string read_file(const fs::path& p)
{
    std::ifstream in(p, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

std::string quoted(const fs::path& p)
{
    std::string out = "'";
    for (char c : p.string())
        out += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return out + "'";
}

fs::path source(const std::string& name)
{
    return fs::path(CORR_SAMPLES_DIR) / "src" / name;
}

// Every text between <tag> and </tag>, in order.
std::vector<std::string> elements(const std::string& xml, const std::string& tag)
{
    std::vector<std::string> out;
    const std::string open = "<" + tag + ">", close = "</" + tag + ">";
    for (auto at = xml.find(open); at != std::string::npos; at = xml.find(open, at + 1)) {
        const auto end = xml.find(close, at);
        if (end == std::string::npos)
            break;
        out.push_back(xml.substr(at + open.size(), end - at - open.size()));
    }
    return out;
}

class NativeRerun : public ::testing::Test
{
protected:
    void SetUp() override
    {
        std::random_device rd;
        // A blank in every path the analysers are handed.
        m_dir = fs::temp_directory_path() / ("native rerun " + std::to_string(rd()));
        fs::create_directories(m_dir);
    }
    void TearDown() override
    {
        std::error_code ec;
        fs::remove_all(m_dir, ec);
    }

    int sh(const std::string& command)
    {
        const int raw = std::system(("cd " + quoted(m_dir) + " && " + command).c_str());
        return raw >= 256 ? raw / 256 : raw;
    }
    bool have(const std::string& program) { return sh("command -v " + program + " >/dev/null 2>&1") == 0; }

    std::string corrtool(const std::string& args)
    {
        const fs::path out = m_dir / "corrtool.out";
        const int status = sh(quoted(CORRTOOL_PATH) + " " + args + " >" + quoted(out) + " 2>&1");
        const std::string text = read_file(out);
        EXPECT_EQ(status, 0) << args << "\n" << text;
        return text;
    }

    // Adds one suppression with a rule per chosen problem and exports the
    // result's suppressions in format; returns the exported text.
    std::string suppress_and_export(const std::vector<int>& ids, const std::string& format, const fs::path& out)
    {
        std::string args = "suppress result --file team.sup --name 'Known problems'";
        for (int id : ids)
            args += " --problem " + std::to_string(id);
        corrtool(args);
        m_export_output = corrtool("export-suppressions result --format " + format + " -o " + quoted(out));
        return read_file(out);
    }

    fs::path m_dir;
    std::string m_export_output;
};

// A problem as the rerun must recognise it: its kind and best function.
struct signature_t
{
    std::string kind, function;
    bool operator<(const signature_t& o) const
    {
        return kind != o.kind ? kind < o.kind : function < o.function;
    }
};

TEST_F(NativeRerun, ValgrindHidesExactlyTheExportedProblems)
{
    if (!have("valgrind") || !have("g++"))
        GTEST_SKIP() << "valgrind or g++ is not installed";
    // C++ names (mangled in the file), leaks (match-leak-kinds) and access sizes.
    ASSERT_EQ(sh("g++ -g -O0 -std=c++17 " + quoted(source("mem_mismatched_delete.cpp")) +
                 " -o mismatched && gcc -g -O0 " + quoted(source("mem_leaks.c")) +
                 " -o leaks && gcc -g -O0 " + quoted(source("mem_overflow.c")) + " -o overflow"),
              0);
    const std::vector<std::string> programs{"mismatched", "leaks", "overflow"};
    const std::string valgrind = "valgrind --tool=memcheck --leak-check=full --num-callers=30 --xml=yes ";
    std::string imports;
    for (const auto& p : programs) {
        ASSERT_EQ(sh(valgrind + "--gen-suppressions=all --xml-file=" + p + ".xml ./" + p + " >/dev/null 2>&1"), 0);
        imports += " " + p + ".xml";
    }
    corrtool("import" + imports + " --result result");
    const json problems = json::parse(corrtool("problems result --json")).at("problems");
    ASSERT_EQ(problems.size(), 7u);

    // Choose one of each pair: drop_points (not drop_raw), the token and the
    // possible leak (not the other definite one), the write (not the read).
    const std::set<std::string> chosen_functions{"samples::drop_points(samples::Point*)", "alloc_token",
                                                 "possible_leak", "fill"};
    std::vector<int> ids;
    std::set<signature_t> chosen, kept;
    for (const auto& p : problems) {
        const auto& best = p.at("stacks")[0][p.at("best_level").get<size_t>()];
        const signature_t s{p.at("kind"), best.at("function")};
        if (chosen_functions.count(s.function)) {
            ids.push_back(p.at("id"));
            chosen.insert(s);
        } else {
            kept.insert(s);
        }
    }
    ASSERT_EQ(ids.size(), 4u);
    ASSERT_EQ(kept.size(), 3u);
    const std::string text = suppress_and_export(ids, "valgrind", m_dir / "team.supp");
    EXPECT_NE(text.find("fun:_ZN7samples11drop_pointsEPNS_5PointE"), std::string::npos) << text;
    std::set<std::string> exported_names;
    for (auto at = text.find("\n{\n   "); at != std::string::npos; at = text.find("\n{\n   ", at + 1))
        exported_names.insert(text.substr(at + 6, text.find('\n', at + 6) - at - 6));
    EXPECT_EQ(exported_names.size(), 4u) << text;

    // Again, with the exported file.
    std::set<signature_t> remaining;
    std::set<std::string> used;
    for (const auto& p : programs) {
        ASSERT_EQ(sh(valgrind + "--suppressions=team.supp --xml-file=after-" + p + ".xml ./" + p +
                     " >/dev/null 2>&1"),
                  0);
        const std::string xml = read_file(m_dir / ("after-" + p + ".xml"));
        ASSERT_NE(xml.find("</valgrindoutput>"), std::string::npos) << xml;
        for (const auto& error : elements(xml, "error")) {
            const auto kinds = elements(error, "kind");
            ASSERT_EQ(kinds.size(), 1u);
            bool known = false;
            for (const auto& fn : elements(error, "fn"))
                for (const auto& k : kept)
                    if (k.kind == kinds[0] && k.function == fn && !known) {
                        remaining.insert(k);
                        known = true;
                    }
            EXPECT_TRUE(known) << "reported again: " << error;
        }
        for (const auto& pair : elements(elements(xml, "suppcounts").at(0), "pair")) {
            const auto names = elements(pair, "name");
            if (!names.empty() && exported_names.count(names[0]))
                used.insert(names[0]);
        }
    }
    EXPECT_EQ(remaining.size(), kept.size());
    EXPECT_EQ(used, exported_names);

    // The product's own view agrees: the same problems hidden.
    const auto check = sh(quoted(CORRTOOL_PATH) + " check result >check.out 2>&1");
    EXPECT_EQ(check, 1);
    EXPECT_NE(read_file(m_dir / "check.out").find("7 problems, 4 suppressed, 3 not suppressed"),
              std::string::npos);
    // And reading the exported file as Valgrind does hides the same ones: a
    // result without our rules, checked against the Valgrind file alone.
    corrtool("import" + imports + " --result plain");
    const json plain = json::parse(corrtool("problems plain --suppressions team.supp --json")).at("problems");
    std::set<signature_t> open;
    for (const auto& p : plain) {
        const auto& best = p.at("stacks")[0][p.at("best_level").get<size_t>()];
        if (p.at("suppressed_by").is_null())
            open.insert({p.at("kind"), best.at("function")});
        else
            EXPECT_TRUE(exported_names.count(p.at("suppressed_by"))) << p.at("suppressed_by");
    }
    EXPECT_EQ(open.size(), kept.size());
    EXPECT_TRUE(std::includes(kept.begin(), kept.end(), open.begin(), open.end()));
    EXPECT_NE(corrtool("problems plain --suppressions team.supp").find("(suppressed by Valgrind suppression \"Known problems"),
              std::string::npos);
}

TEST_F(NativeRerun, LeakSanitizerHidesExactlyTheExportedLeaks)
{
    if (!have("clang"))
        GTEST_SKIP() << "clang is not installed";
    ASSERT_EQ(sh("clang -g -O0 -fno-omit-frame-pointer -fsanitize=leak " + quoted(source("mem_leaks.c")) +
                 " -o leaks"),
              0);
    const std::string env = "LSAN_OPTIONS=symbolize=1:exitcode=23";
    ASSERT_EQ(sh(env + " ./leaks >/dev/null 2>before.txt"), 23) << read_file(m_dir / "before.txt");
    corrtool("import before.txt --result result");
    const json problems = json::parse(corrtool("problems result --json")).at("problems");
    ASSERT_GE(problems.size(), 2u);
    std::vector<int> ids;
    std::set<std::string> kept;
    for (const auto& p : problems) {
        const std::string fn = p.at("stacks")[0][p.at("best_level").get<size_t>()].at("function");
        if (fn == "alloc_token")
            ids.push_back(p.at("id"));
        else
            kept.insert(fn);
    }
    ASSERT_EQ(ids.size(), 1u);
    const std::string text = suppress_and_export(ids, "lsan", m_dir / "lsan.supp");
    EXPECT_NE(text.find("\nleak:^alloc_token$\n"), std::string::npos) << text;

    // LeakSanitizer reads the file and lists the suppressions it used.
    const int status = sh(env + ":print_suppressions=1:suppressions=lsan.supp ./leaks >/dev/null 2>after.txt");
    const std::string after = read_file(m_dir / "after.txt");
    EXPECT_EQ(status, kept.empty() ? 0 : 23) << after;
    const auto used = after.find("Suppressions used:");
    ASSERT_NE(used, std::string::npos) << after;
    const std::string reports = after.substr(0, used);
    EXPECT_EQ(reports.find("alloc_token"), std::string::npos) << after;
    for (const auto& fn : kept)
        EXPECT_NE(reports.find(" in " + fn + " "), std::string::npos) << fn << "\n" << after;
    EXPECT_NE(after.find("^alloc_token$", used), std::string::npos);
}

TEST_F(NativeRerun, ThreadSanitizerHidesTheRaceAndKeepsTheLockOrder)
{
    if (!have("clang") || !have("setarch"))
        GTEST_SKIP() << "clang or setarch is not installed";
    for (const char* p : {"thr_race_counter", "thr_lock_order"})
        ASSERT_EQ(sh(std::string("clang -g -O0 -fsanitize=thread -pthread ") + quoted(source(std::string(p) + ".c")) +
                     " -o " + p),
                  0);
    // Address randomisation off: clang 14's runtime can fail on high mmap randomisation.
    const std::string run = "TSAN_OPTIONS=symbolize=1:halt_on_error=0:exitcode=23";
    ASSERT_EQ(sh(run + " setarch -R ./thr_race_counter >/dev/null 2>race.txt"), 23);
    ASSERT_EQ(sh(run + " setarch -R ./thr_lock_order >/dev/null 2>order.txt"), 23);
    corrtool("import race.txt order.txt --result result");
    const json problems = json::parse(corrtool("problems result --json")).at("problems");
    std::vector<int> races;
    size_t others = 0;
    for (const auto& p : problems) {
        if (p.at("kind") == "data race")
            races.push_back(p.at("id"));
        else
            ++others;
    }
    ASSERT_FALSE(races.empty());
    ASSERT_GT(others, 0u);
    const std::string text = suppress_and_export(races, "tsan", m_dir / "tsan.supp");
    EXPECT_NE(text.find("\nrace:^worker$\n"), std::string::npos) << text;

    const std::string with = run + ":print_suppressions=1:suppressions=tsan.supp setarch -R ";
    EXPECT_EQ(sh(with + "./thr_race_counter >/dev/null 2>race-after.txt"), 0);
    const std::string race_after = read_file(m_dir / "race-after.txt");
    EXPECT_EQ(race_after.find("WARNING: ThreadSanitizer"), std::string::npos) << race_after;
    EXPECT_NE(race_after.find("race:^worker$"), std::string::npos) << race_after;
    EXPECT_EQ(sh(with + "./thr_lock_order >/dev/null 2>order-after.txt"), 23);
    EXPECT_NE(read_file(m_dir / "order-after.txt").find("WARNING: ThreadSanitizer: lock-order-inversion"),
              std::string::npos);
}

TEST_F(NativeRerun, UndefinedBehaviorSanitizerHidesTheChosenChecks)
{
    if (!have("clang"))
        GTEST_SKIP() << "clang is not installed";
    ASSERT_EQ(sh("clang -g -O0 -fsanitize=undefined " + quoted(source("ub_multi.c")) + " -o ub"), 0);
    const std::string run = "UBSAN_OPTIONS=symbolize=1:print_stacktrace=1:halt_on_error=0";
    sh(run + " ./ub >/dev/null 2>before.txt");
    corrtool("import before.txt --result result");
    const json problems = json::parse(corrtool("problems result --json")).at("problems");
    ASSERT_EQ(problems.size(), 4u);
    // The first two checks are suppressed, the other two must still be reported.
    const std::vector<int> ids{problems[0].at("id"), problems[1].at("id")};
    const std::string text = suppress_and_export(ids, "ubsan", m_dir / "ubsan.supp");
    sh(run + ":suppressions=ubsan.supp ./ub >/dev/null 2>after.txt");
    const std::string after = read_file(m_dir / "after.txt");
    for (size_t i = 0; i < problems.size(); ++i) {
        const auto& p = problems[i];
        const std::string at = " in " + p.at("stacks")[0][p.at("best_level").get<size_t>()]
                                            .at("function").get<std::string>() + " ";
        SCOPED_TRACE(at + "\n" + text + "\n" + after);
        EXPECT_EQ(after.find(at) == std::string::npos, i < 2);
    }
}

} // namespace
