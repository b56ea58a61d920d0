// corrtool end to end: the real binary on real files in a scratch folder.
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <set>
#include <sstream>
#include <string>

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

fs::path sample(const std::string& name)
{
    return fs::path(CORR_SAMPLES_DIR) / "recorded" / name;
}

fs::path test_data(const std::string& name)
{
    return fs::path(CORR_TEST_DATA_DIR) / name;
}

std::string quoted(const fs::path& p)
{
    std::string out = "'";
    for (char c : p.string())
        out += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return out + "'";
}

class CorrTool : public ::testing::Test
{
protected:
    void SetUp() override
    {
        std::random_device rd;
        m_dir = fs::temp_directory_path() /
                ("corrtool_test_" + std::to_string(rd()) + std::to_string(rd()));
        fs::create_directories(m_dir);
        ASSERT_TRUE(fs::exists(CORRTOOL_PATH));
    }
    void TearDown() override
    {
        std::error_code ec;
        fs::remove_all(m_dir, ec);
    }

    struct run_t
    {
        int status;
        std::string out, err;
    };

    run_t run(const std::string& args)
    {
        const fs::path out = m_dir / "stdout", err = m_dir / "stderr";
        const std::string command =
            quoted(CORRTOOL_PATH) + " " + args + " >" + quoted(out) + " 2>" + quoted(err);
        const int raw = std::system(command.c_str());
        run_t r{raw, read_file(out), read_file(err)};
        // std::system gives the shell's wait status.
        r.status = raw >= 256 ? raw / 256 : raw;
        fs::remove(out);
        fs::remove(err);
        return r;
    }

    std::map<std::string, std::string> snapshot(const fs::path& dir)
    {
        std::map<std::string, std::string> out;
        for (const auto& e : fs::recursive_directory_iterator(dir))
            out[fs::relative(e.path(), dir).string()] =
                e.is_regular_file() ? read_file(e.path()) : "<dir>";
        return out;
    }

    fs::path m_dir;
};

TEST_F(CorrTool, ImportThenListProblemsAsJson)
{
    const fs::path result = m_dir / "result";
    auto r = run("import " + quoted(sample("memcheck_use_after_free.xml")) + " " +
                 quoted(sample("helgrind_race_counter.xml")) + " --result " + quoted(result) +
                 " --name demo");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.out.find("memcheck_use_after_free.xml as data/memcheck_use_after_free.xml: 1 "
                         "problem (memcheck)"),
              std::string::npos)
        << r.out;
    EXPECT_NE(r.out.find("helgrind_race_counter.xml: 2 problems (helgrind)"), std::string::npos);
    EXPECT_TRUE(fs::exists(result / "demo.corr"));
    EXPECT_TRUE(fs::is_directory(result / "suppressions"));

    r = run("problems " + quoted(result) + " --json");
    ASSERT_EQ(r.status, 0) << r.err;
    const json doc = json::parse(r.out);
    EXPECT_EQ(doc.at("result"), "demo");
    const auto& problems = doc.at("problems");
    ASSERT_EQ(problems.size(), 3u);
    const auto& uaf = problems[0];
    EXPECT_EQ(uaf.at("id"), 1);
    EXPECT_EQ(uaf.at("type"), "Invalid read");
    EXPECT_EQ(uaf.at("description"), "Invalid read of size 1");
    EXPECT_EQ(uaf.at("best_level"), 0);
    EXPECT_TRUE(uaf.at("suppressed_by").is_null());
    ASSERT_EQ(uaf.at("stacks").size(), 3u);
    const auto& frame = uaf.at("stacks")[1][0];
    EXPECT_EQ(frame.at("module"), "vgpreload_memcheck-amd64-linux.so");
    EXPECT_EQ(frame.at("function"), "free");
    EXPECT_EQ(frame.at("source"), "");
    EXPECT_TRUE(frame.at("line").is_null());
    const auto& top = uaf.at("stacks")[0][0];
    EXPECT_EQ(top.at("source"), "/work/wt-samples/samples/src/mem_use_after_free.c");
    EXPECT_EQ(top.at("line"), 28);
    EXPECT_EQ(uaf.at("stack_titles")[2], "Block was alloc'd at");
    // Quotes and newlines in texts survive the round trip.
    EXPECT_EQ(problems[1].at("aux")[0],
              "Address 0x10c030 is 0 bytes inside data symbol \"counter\"");
    EXPECT_NE(problems[1].at("aux")[1].get<std::string>().find("\n   by 0x1091D1: main"),
              std::string::npos);

    r = run("problems " + quoted(result / "demo.corr"));
    ASSERT_EQ(r.status, 0);
    EXPECT_NE(r.out.find("#3 Data race: Possible data race during write"), std::string::npos)
        << r.out;
    EXPECT_NE(r.out.find("3 problems in \"demo\""), std::string::npos);
}

TEST_F(CorrTool, ExtendingAResultKeepsIdsAndWarnsAboutCutOutput)
{
    const fs::path result = m_dir / "r";
    ASSERT_EQ(
        run("import " + quoted(sample("asan_leaks.txt")) + " --result " + quoted(result)).status,
        0);
    auto r = run("import " + quoted(sample("memcheck_leaks_truncated.xml")) + " " +
                 quoted(sample("ubsan_multi.txt")) + " --result " + quoted(result));
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.err.find("warning: "), std::string::npos);
    EXPECT_NE(r.err.find("memcheck_leaks_truncated.xml: the output ends in the middle of an error"),
              std::string::npos)
        << r.err;
    EXPECT_NE(r.out.find("7 problems from 3 files"), std::string::npos) << r.out;

    const json doc = json::parse(run("problems " + quoted(result) + " --json").out);
    ASSERT_EQ(doc.at("problems").size(), 7u);
    EXPECT_EQ(doc.at("problems")[1].at("description"), "Direct leak of 10 byte(s) in 1 object(s)");
    EXPECT_EQ(doc.at("problems")[2].at("id"), 3);
    EXPECT_EQ(doc.at("problems")[2].at("type"), "Memory leak (definite)");
    EXPECT_EQ(doc.at("problems")[3].at("type"), "Undefined behavior");
    EXPECT_EQ(doc.at("warnings").size(), 1u);
}

TEST_F(CorrTool, BadInputFailsWithStatusTwoAndChangesNothing)
{
    const fs::path result = m_dir / "r";
    ASSERT_EQ(
        run("import " + quoted(sample("memcheck_overflow.xml")) + " --result " + quoted(result))
            .status,
        0);
    const auto before = snapshot(result);

    const fs::path bad = test_data("valgrind/malformed_not_well_formed.xml");
    auto r = run("import " + quoted(sample("memcheck_uninit.xml")) + " " + quoted(bad) +
                 " --result " + quoted(result));
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find(bad.string() + ":60:5: malformed XML: mismatched tag"), std::string::npos)
        << r.err;
    EXPECT_EQ(snapshot(result), before);

    r = run("import " + quoted(m_dir / "missing.xml") + " --result " + quoted(result));
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("missing.xml: no such file"), std::string::npos);
    EXPECT_EQ(snapshot(result), before);

    // Into a new result: no folder is left behind.
    r = run("import " + quoted(test_data("sanitizer/malformed_garbled_frame_line.txt")) +
            " --result " + quoted(m_dir / "new"));
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("malformed_garbled_frame_line.txt:5: malformed stack frame"),
              std::string::npos)
        << r.err;
    EXPECT_FALSE(fs::exists(m_dir / "new"));
    for (const auto& e : fs::directory_iterator(m_dir))
        EXPECT_EQ(e.path().filename().string().find(".partial"), std::string::npos) << e.path();

    r = run("problems " + quoted(m_dir / "nothing"));
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("nothing: no such result"), std::string::npos) << r.err;
    EXPECT_TRUE(r.out.empty());

    r = run("import " + quoted(sample("memcheck_uninit.xml")) + " --result " + quoted(result) +
            " --name other");
    EXPECT_EQ(r.status, 2);
    EXPECT_EQ(snapshot(result), before);
}

TEST_F(CorrTool, JsonStaysValidForBytesThatAreNotUtf8)
{
    const fs::path report = m_dir / "odd.log";
    std::ofstream(report, std::ios::binary)
        << "/src/a\xff.c:3:7: runtime error: division by zero \"x\\y\"\t\x01\n";
    ASSERT_EQ(run("import " + quoted(report) + " --result " + quoted(m_dir / "r")).status, 0);
    const auto r = run("problems " + quoted(m_dir / "r") + " --json");
    ASSERT_EQ(r.status, 0);
    const json doc = json::parse(r.out);
    EXPECT_EQ(doc.at("problems")[0].at("description"), "division by zero \"x\\y\"\t\x01");
    EXPECT_EQ(doc.at("problems")[0].at("stacks")[0][0].at("source"), "/src/a\xEF\xBF\xBD.c");
}

TEST_F(CorrTool, HelpAndUsage)
{
    auto r = run("--help");
    EXPECT_EQ(r.status, 0);
    EXPECT_NE(r.out.find("import FILE... --result DIR"), std::string::npos);
    EXPECT_NE(r.out.find("problems DIR [--suppressions FILE]... [--json]"), std::string::npos);
    EXPECT_NE(r.out.find("check DIR [--suppressions FILE.sup]..."), std::string::npos);
    r = run("help import");
    EXPECT_EQ(r.status, 0);
    EXPECT_NE(r.out.find("--source-dir"), std::string::npos);
    EXPECT_EQ(run("frobnicate").status, 2);
    EXPECT_EQ(run("import --result " + quoted(m_dir / "r")).status, 2);
    EXPECT_EQ(run("problems " + quoted(m_dir) + " --bogus").status, 2);
    EXPECT_EQ(run("").status, 2);
}

// A scratch copy of the sample result, so that suppressions can be written into it.
class CorrToolSuppressions : public CorrTool
{
protected:
    void SetUp() override
    {
        CorrTool::SetUp();
        m_result = m_dir / "result";
        fs::copy(fs::path(CORR_SAMPLES_DIR) / "result", m_result, fs::copy_options::recursive);
        fs::create_directories(m_result / "suppressions");
    }

    json problems()
    {
        const auto r = run("problems " + quoted(m_result) + " --json");
        EXPECT_EQ(r.status, 0) << r.err;
        return json::parse(r.out).at("problems");
    }

    fs::path m_result;
};

TEST_F(CorrToolSuppressions, CheckFailsUntilEveryProblemIsSuppressed)
{
    auto r = run("check " + quoted(m_result));
    EXPECT_EQ(r.status, 1) << r.err;
    const json before = problems();
    const size_t n = before.size();
    ASSERT_GT(n, 10u);
    EXPECT_NE(r.out.find(std::to_string(n) + " problems, 0 suppressed, " + std::to_string(n) +
                         " not suppressed\n"),
              std::string::npos)
        << r.out;

    std::string ids;
    for (const auto& p : before) {
        EXPECT_TRUE(p.at("suppressed_by").is_null());
        ids += " --problem " + std::to_string(p.at("id").get<int>());
    }
    r = run("suppress " + quoted(m_result) + ids + " --file team.sup --name 'Known problems'");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.out.find("created "), std::string::npos) << r.out;
    EXPECT_NE(r.out.find(std::to_string(n) + " rules"), std::string::npos) << r.out;
    ASSERT_TRUE(fs::exists(m_result / "suppressions" / "team.sup"));

    r = run("check " + quoted(m_result));
    EXPECT_EQ(r.status, 0) << r.out;
    EXPECT_EQ(r.out, std::to_string(n) + " problems, " + std::to_string(n) +
                         " suppressed, 0 not suppressed\n");
    for (const auto& p : problems())
        EXPECT_EQ(p.at("suppressed_by"), "Known problems") << p.at("id");

    // The rules are the dialog's defaults: one per problem, only the best frame used.
    r = run("suppressions " + quoted(m_result) + " --json");
    ASSERT_EQ(r.status, 0) << r.err;
    const json files = json::parse(r.out).at("files");
    ASSERT_EQ(files.size(), 1u);
    const auto& set = files[0].at("suppressions").at(0);
    EXPECT_EQ(set.at("name"), "Known problems");
    EXPECT_EQ(set.at("kind"), "best-location");
    ASSERT_EQ(set.at("rules").size(), n);
    for (size_t i = 0; i < n; ++i) {
        const auto& rule = set.at("rules")[i];
        EXPECT_EQ(rule.at("type").at("value"), before[i].at("type"));
        EXPECT_TRUE(rule.at("type").at("active"));
        EXPECT_TRUE(rule.at("description").at("active"));
        const auto& frames = rule.at("stack").at("frames");
        ASSERT_EQ(frames.size(), before[i].at("stacks")[0].size());
        size_t used = 0;
        for (size_t f = 0; f < frames.size(); ++f)
            if (!frames[f].at("elided")) {
                ++used;
                EXPECT_EQ(f, before[i].at("best_level").get<size_t>()) << "problem " << i + 1;
                EXPECT_TRUE(frames[f].at("best"));
            }
        EXPECT_EQ(used, 1u) << "problem " << i + 1;
    }
}

TEST_F(CorrToolSuppressions, AnyProblemTypeAndExtraFiles)
{
    // An absolute file outside the result only counts when named to check.
    const fs::path extra = m_dir / "extra.sup";
    auto r = run("suppress " + quoted(m_result) + " --problem 2 --problem 1 --file " + quoted(extra) +
                 " --name 'Any type' --any-problem");
    ASSERT_EQ(r.status, 0) << r.err;
    const std::string text = read_file(extra);
    EXPECT_NE(text.find("type any \"Invalid write\""), std::string::npos) << text;
    EXPECT_NE(text.find("type any \"Invalid read\""), std::string::npos) << text;

    r = run("suppressions " + quoted(extra) + " --json");
    ASSERT_EQ(r.status, 0) << r.err;
    const auto rules = json::parse(r.out).at("files")[0].at("suppressions")[0].at("rules");
    ASSERT_EQ(rules.size(), 2u);
    for (const auto& rule : rules) {
        EXPECT_FALSE(rule.at("type").at("active"));
        EXPECT_TRUE(rule.at("description").at("active"));
    }
    r = run("suppressions " + quoted(extra));
    EXPECT_EQ(r.status, 0);
    EXPECT_NE(r.out.find("suppression \"Any type\""), std::string::npos) << r.out;

    const std::string n = std::to_string(problems().size());
    r = run("check " + quoted(m_result));
    EXPECT_NE(r.out.find(", 0 suppressed"), std::string::npos) << r.out;
    r = run("check " + quoted(m_result) + " --suppressions " + quoted(extra));
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.out.find(n + " problems, 2 suppressed"), std::string::npos) << r.out;
    EXPECT_EQ(r.out.find("#1 "), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("not suppressed: #3 "), std::string::npos) << r.out;

    // A second suppression goes into the same file; its name must be new there.
    r = run("suppress " + quoted(m_result) + " --problem 3 --file " + quoted(extra) +
            " --name Second");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(read_file(extra).find(text), 0u);
    const std::string two = read_file(extra);
    r = run("suppress " + quoted(m_result) + " --problem 4 --file " + quoted(extra) +
            " --name Second");
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("already holds a suppression named \"Second\""), std::string::npos);
    EXPECT_EQ(read_file(extra), two);
}

TEST_F(CorrToolSuppressions, ProjectFilesCountAfterTheResultsOwn)
{
    // m_dir holds the result, so it becomes its project.
    std::ofstream(m_dir / "project.corrproj") << "";
    fs::create_directories(m_dir / "suppressions");
    const fs::path project_file = m_dir / "suppressions" / "project.sup";
    ASSERT_EQ(run("suppress " + quoted(m_result) + " --problem 4 --problem 5 --file " +
                  quoted(project_file) + " --name Project")
                  .status,
              0);
    ASSERT_EQ(run("suppress " + quoted(m_result) + " --problem 5 --file own.sup --name Own").status, 0);
    const json list = problems();
    EXPECT_EQ(list[3].at("suppressed_by"), "Project");
    EXPECT_EQ(list[4].at("suppressed_by"), "Own");
    EXPECT_TRUE(list[5].at("suppressed_by").is_null());
    EXPECT_NE(run("check " + quoted(m_result)).out.find(", 2 suppressed"), std::string::npos);

    const auto r = run("suppressions " + quoted(m_result / "sample.corr") + " --json");
    ASSERT_EQ(r.status, 0) << r.err;
    const json files = json::parse(r.out).at("files");
    ASSERT_EQ(files.size(), 2u);
    EXPECT_EQ(files[0].at("suppressions")[0].at("name"), "Own");
    EXPECT_EQ(files[1].at("path"), project_file.string());
}

TEST_F(CorrToolSuppressions, BadInputFailsWithStatusTwoAndChangesNothing)
{
    ASSERT_EQ(run("suppress " + quoted(m_result) + " --problem 1 --file team.sup --name One").status,
              0);
    const auto before = snapshot(m_result);

    auto r = run("suppress " + quoted(m_result) + " --problem 2 --problem 999 --file team.sup --name Two");
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("--problem 999: no such problem"), std::string::npos) << r.err;
    r = run("suppress " + quoted(m_result) + " --problem x1 --file new.sup --name Two");
    EXPECT_EQ(r.status, 2);
    EXPECT_EQ(snapshot(m_result), before);

    r = run("suppress " + quoted(m_dir / "nothing") + " --problem 1 --file " +
            quoted(m_dir / "n.sup") + " --name N");
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("nothing: no such result"), std::string::npos) << r.err;
    EXPECT_FALSE(fs::exists(m_dir / "n.sup"));

    r = run("check " + quoted(m_result) + " --suppressions " + quoted(m_dir / "missing.sup"));
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("missing.sup: no such file"), std::string::npos) << r.err;

    // A malformed file in the result: every command that reads it stops.
    const fs::path bad = m_result / "suppressions" / "bad.sup";
    const std::string bad_text = "corr-suppressions 2\nsuppression \"a\"\n  rule\n"
                                 "    type \"Invalid read\"\n    line 12x\nend\n";
    std::ofstream(bad, std::ios::binary) << bad_text;
    const auto with_bad = snapshot(m_result);
    for (const std::string command : {"check", "problems", "suppressions"}) {
        r = run(command + " " + quoted(m_result));
        EXPECT_EQ(r.status, 2) << command;
        EXPECT_NE(r.err.find(bad.string() + ":5: "), std::string::npos) << command << ": " << r.err;
        EXPECT_TRUE(r.out.empty()) << command;
    }
    r = run("suppress " + quoted(m_result) + " --problem 2 --file bad.sup --name Two");
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("bad.sup:5: "), std::string::npos) << r.err;
    EXPECT_EQ(snapshot(m_result), with_bad);
}

} // namespace

// Every command in a folder whose name holds letters, spaces and quotes, and
// in one whose name is not UTF-8 at all (Linux allows any bytes).
class CorrToolFolders : public CorrTool, public testing::WithParamInterface<std::string>
{
};

TEST_P(CorrToolFolders, EveryCommandWorksInTheFolder)
{
    const fs::path top = m_dir / GetParam();
    fs::create_directories(top);
    fs::copy_file(sample("asan_leaks.txt"), top / (GetParam() + ".txt"));
    fs::copy_file(sample("memcheck_use_after_free.xml"), top / "uaf.xml");
    const fs::path result = top / ("r " + GetParam());

    auto r = run("import " + quoted(top / (GetParam() + ".txt")) + " " + quoted(top / "uaf.xml") +
                 " --result " + quoted(result));
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.out.find(result.string()), std::string::npos) << r.out;

    r = run("problems " + quoted(result) + " --json");
    ASSERT_EQ(r.status, 0) << r.err;
    const json doc = json::parse(r.out); // valid UTF-8 whatever the folder's name
    const size_t n = doc.at("problems").size();
    ASSERT_GT(n, 1u);
    std::string ids;
    for (const auto& p : doc.at("problems"))
        ids += " --problem " + std::to_string(p.at("id").get<int>());

    // A relative file is taken in the result's suppressions folder.
    r = run("suppress " + quoted(result) + ids + " --file " + quoted(fs::path("r\xC3\xA8gles " + GetParam() + ".sup")) +
            " --name 'all of them'");
    ASSERT_EQ(r.status, 0) << r.err;
    const fs::path sup = result / "suppressions" / ("r\xC3\xA8gles " + GetParam() + ".sup");
    ASSERT_TRUE(fs::is_regular_file(sup));

    r = run("check " + quoted(result));
    EXPECT_EQ(r.status, 0) << r.out << r.err;
    EXPECT_EQ(r.out, std::to_string(n) + " problems, " + std::to_string(n) + " suppressed, 0 not suppressed\n");

    r = run("suppressions " + quoted(sup) + " --json");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(json::parse(r.out).at("files").at(0).at("suppressions").at(0).at("rules").size(), n);

    // A second import into the existing result, then the file given on its own.
    fs::copy_file(sample("ubsan_multi.txt"), top / "ub \xC3\xBC.txt");
    r = run("import " + quoted(top / "ub \xC3\xBC.txt") + " --result " + quoted(result));
    ASSERT_EQ(r.status, 0) << r.err;
    r = run("check " + quoted(result) + " --suppressions " + quoted(sup));
    EXPECT_EQ(r.status, 1) << r.err;

    // A failure names the path, with exit status 2 and no abort.
    r = run("import " + quoted(top / "missing \xE2\x80\x9C.xml") + " --result " + quoted(result));
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("missing"), std::string::npos) << r.err;
}

INSTANTIATE_TEST_SUITE_P(Names, CorrToolFolders,
                         testing::Values(std::string("caf\xC3\xA9 d\xC3\xA9j\xC3\xA0 'it''s' \"q\""),
                                         std::string("bad \xFF byte")),
                         [](const testing::TestParamInfo<std::string>& name) {
                             return name.index == 0 ? std::string("Letters") : std::string("NotUtf8");
                         });

// For every recorded sample, for a report whose texts are not UTF-8, and for
// one found by fuzzing: suppress every problem, read the file back, and every
// problem is matched by the rule made for it.
TEST_F(CorrTool, SuppressingEveryProblemOfEverySampleMatchesThemAll)
{
    const fs::path odd = m_dir / "odd bytes.txt";
    static const char ubsan_line[] = "/src/b.c:1:1: runtime error: nul\0byte and \xED\xA0\x80 surrogate\n";
    std::ofstream(odd, std::ios::binary)
        << "==1==ERROR: AddressSanitizer: heap-use-after-free on address 0x1 \xFF\xFE\n"
           "READ of size 4 at 0x1 thread T0\n"
           "    #0 0x4011 in f\xE9te\xC3 /src/caf\xE9/a\xFF.c:3:7\n"
           "    #1 0x4012 in main\x01\x1B[2J /src/m\xC0\xAF.c:9\n"
           "SUMMARY: AddressSanitizer: heap-use-after-free /src/a.c:3:7 in f\xE9te\n"
        << std::string_view(ubsan_line, sizeof ubsan_line - 1);
    std::vector<fs::path> inputs{odd, test_data("sanitizer/found_empty_problem_type.txt")};
    for (const auto& e : fs::directory_iterator(fs::path(CORR_SAMPLES_DIR) / "recorded"))
        if (e.path().filename().string().rfind("memcheck_", 0) != 0 || e.path().extension() == ".xml")
            inputs.push_back(e.path()); // memcheck_*.txt is Valgrind's text output, not imported
    ASSERT_GT(inputs.size(), 30u);

    int n = 0;
    for (const auto& input : inputs) {
        SCOPED_TRACE(input.string());
        const fs::path result = m_dir / ("r" + std::to_string(++n));
        auto r = run("import " + quoted(input) + " --result " + quoted(result));
        ASSERT_EQ(r.status, 0) << r.err;
        r = run("problems " + quoted(result) + " --json");
        ASSERT_EQ(r.status, 0) << r.err;
        const json problems = json::parse(r.out).at("problems");
        if (problems.empty())
            continue;
        std::string ids;
        for (const auto& p : problems) {
            EXPECT_FALSE(p.at("type").get<std::string>().empty()) << p.at("id");
            EXPECT_EQ(p.at("description").get<std::string>().find('\0'), std::string::npos);
            ids += " --problem " + std::to_string(p.at("id").get<int>());
        }
        r = run("suppress " + quoted(result) + ids + " --file all.sup --name all");
        ASSERT_EQ(r.status, 0) << r.err;
        r = run("check " + quoted(result));
        EXPECT_EQ(r.status, 0) << r.out << r.err;
        EXPECT_NE(r.out.find(" 0 not suppressed\n"), std::string::npos) << r.out;
    }
}

TEST_F(CorrTool, TextOutputEscapesControlCharactersAndWriteErrorsFail)
{
    const fs::path report = m_dir / "esc.log";
    std::ofstream(report, std::ios::binary)
        << "/src/a.c:3:7: runtime error: division by zero \x1B]0;owned\x07\x1B[2J\xC2\x9B" "1m\n";
    ASSERT_EQ(run("import " + quoted(report) + " --result " + quoted(m_dir / "r")).status, 0);
    auto r = run("problems " + quoted(m_dir / "r"));
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out.find('\x1B'), std::string::npos) << r.out;
    EXPECT_EQ(r.out.find('\x07'), std::string::npos);
    EXPECT_EQ(r.out.find("\xC2\x9B"), std::string::npos);
    EXPECT_NE(r.out.find("division by zero \\x1B]0;owned\\x07\\x1B[2J\\u009B1m"), std::string::npos)
        << r.out;
    r = run("check " + quoted(m_dir / "r"));
    EXPECT_EQ(r.out.find('\x1B'), std::string::npos) << r.out;
    // JSON carries the text as it is (escaped by JSON's own rules).
    r = run("problems " + quoted(m_dir / "r") + " --json");
    EXPECT_EQ(json::parse(r.out).at("problems")[0].at("description"),
              "division by zero \x1B]0;owned\x07\x1B[2J\xC2\x9B" "1m");

    // A full disk on stdout: exit status 2 and a message, not success.
    if (!fs::exists("/dev/full"))
        GTEST_FAIL() << "/dev/full is missing";
    for (const std::string& args : {"problems " + quoted(m_dir / "r") + " --json", "problems " + quoted(m_dir / "r")}) {
        const std::string command =
            quoted(CORRTOOL_PATH) + " " + args + " >/dev/full 2>" + quoted(m_dir / "err");
        const int raw = std::system(command.c_str());
        EXPECT_EQ(raw / 256, 2) << args;
        EXPECT_NE(read_file(m_dir / "err").find("cannot write the output: No space left on device"),
                  std::string::npos)
            << read_file(m_dir / "err");
    }
}

// Imports from many processes at once into one result: each one's file is
// kept and listed, none overwrites another's, and no staging folder is left.
TEST_F(CorrTool, ParallelImportsIntoOneResultLoseNothing)
{
    const fs::path result = m_dir / "shared result";
    ASSERT_EQ(run("import " + quoted(sample("ubsan_null.txt")) + " --result " + quoted(result)).status, 0);
    constexpr int runs = 20;
    std::string script;
    for (int i = 0; i < runs; ++i) {
        // The same file name each time: every copy must get a name of its own.
        const fs::path folder = m_dir / ("in" + std::to_string(i));
        fs::create_directories(folder);
        fs::copy_file(sample(i % 2 ? "asan_leaks.txt" : "memcheck_overflow.xml"),
                      folder / (i % 2 ? "report.txt" : "report.xml"));
        script += quoted(CORRTOOL_PATH) + " import " + quoted(folder / (i % 2 ? "report.txt" : "report.xml")) +
                  " --result " + quoted(result) + " >" + quoted(m_dir / ("out" + std::to_string(i))) +
                  " 2>&1 || echo failed" + std::to_string(i) + " >>" + quoted(m_dir / "failures") + " &\n";
    }
    script += "wait\n";
    std::ofstream(m_dir / "parallel.sh") << script;
    ASSERT_EQ(std::system(("sh " + quoted(m_dir / "parallel.sh")).c_str()), 0);
    EXPECT_FALSE(fs::exists(m_dir / "failures")) << read_file(m_dir / "failures") << read_file(m_dir / "out0");

    std::set<std::string> listed;
    const json doc = json::parse(run("problems " + quoted(result) + " --json").out);
    std::ifstream marker(result / "shared result.corr");
    for (std::string line; std::getline(marker, line);)
        if (line.rfind("data = ", 0) == 0)
            listed.insert(line.substr(7, line.find(" | ") - 7));
    EXPECT_EQ(listed.size(), size_t(runs + 1));
    std::set<std::string> stored;
    for (const auto& e : fs::directory_iterator(result / "data"))
        stored.insert(e.path().filename().string());
    EXPECT_EQ(stored, listed); // nothing unlisted, no staging folder left behind
}
