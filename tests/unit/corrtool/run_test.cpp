// corrtool run end to end: the real binary runs real Valgrind on sample
// programs compiled here, in folders with spaces in their names.
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
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

std::string quoted(const fs::path& p)
{
    std::string out = "'";
    for (char c : p.string())
        out += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return out + "'";
}

class CorrToolRun : public ::testing::Test
{
protected:
    void SetUp() override
    {
        std::random_device rd;
        m_dir = fs::temp_directory_path() / ("corrtool run " + std::to_string(rd()));
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
    run_t shell(const std::string& command)
    {
        const fs::path out = m_dir / "stdout", err = m_dir / "stderr";
        const int raw = std::system((command + " >" + quoted(out) + " 2>" + quoted(err)).c_str());
        run_t r{raw >= 256 ? raw / 256 : raw, read_file(out), read_file(err)};
        fs::remove(out);
        fs::remove(err);
        return r;
    }
    run_t corrtool(const std::string& args) { return shell(quoted(CORRTOOL_PATH) + " " + args); }

    // A sample program built as the recorded outputs were: plain -g -O0.
    fs::path build(const std::string& source, const std::string& name)
    {
        const fs::path exe = m_dir / "bin dir" / name;
        fs::create_directories(exe.parent_path());
        const auto r = shell("cc -g -O0 -o " + quoted(exe) + " " +
                             quoted(fs::path(CORR_SAMPLES_DIR) / "src" / source));
        EXPECT_EQ(r.status, 0) << r.err;
        return exe;
    }
    fs::path write_program(const std::string& code, const std::string& name)
    {
        const fs::path src = m_dir / (name + ".c");
        std::ofstream(src) << code;
        const fs::path exe = m_dir / "bin dir" / name;
        fs::create_directories(exe.parent_path());
        const auto r = shell("cc -g -O0 -o " + quoted(exe) + " " + quoted(src));
        EXPECT_EQ(r.status, 0) << r.err;
        return exe;
    }

    fs::path m_dir;
};

} // namespace

TEST_F(CorrToolRun, MemcheckRunImportsTheLeaksIntoANewResult)
{
    const fs::path program = build("mem_leaks.c", "mem leaks");
    const fs::path result = m_dir / "result 1";
    auto r = corrtool("run --type mi1 --result " + quoted(result) + " -- " + quoted(program) + " --help");
    ASSERT_EQ(r.status, 1) << r.out << r.err;
    EXPECT_NE(r.err.find("valgrind --tool=memcheck --xml=yes"), std::string::npos) << r.err;
    EXPECT_NE(r.err.find("--gen-suppressions=all"), std::string::npos);
    EXPECT_NE(r.err.find("--undef-value-errors=no"), std::string::npos);
    EXPECT_NE(r.err.find(" -- "), std::string::npos) << "the program's own --help goes to it";
    EXPECT_NE(r.out.find("not suppressed"), std::string::npos) << r.out;

    r = corrtool("problems " + quoted(result) + " --json");
    ASSERT_EQ(r.status, 0) << r.err;
    const json doc = json::parse(r.out);
    const auto& problems = doc.at("problems");
    ASSERT_GE(problems.size(), 2u);
    bool definite = false;
    for (const auto& p : problems)
        definite |= p.at("description").get<std::string>().find("definitely lost") != std::string::npos;
    EXPECT_TRUE(definite) << r.out;
    // The analyser's output is kept unchanged, with Valgrind's own suppressions in it.
    ASSERT_TRUE(fs::exists(result / "data" / "mi1.xml"));
    EXPECT_NE(read_file(result / "data" / "mi1.xml").find("<suppression>"), std::string::npos);
    for (const auto& e : fs::directory_iterator(m_dir))
        EXPECT_EQ(e.path().filename().string().find(".run-"), std::string::npos) << "scratch folder left";
}

TEST_F(CorrToolRun, CleanProgramPassesAndProjectMakesItsFile)
{
    const fs::path program = write_program("int main(void) { return 3; }\n", "clean");
    const fs::path project = m_dir / "projekt";
    const auto r = corrtool("run --type mi2 --project " + quoted(project) + " --result r1 " + quoted(program));
    ASSERT_EQ(r.status, 0) << r.out << r.err;
    EXPECT_TRUE(fs::is_regular_file(project / "project.corrproj"));
    EXPECT_TRUE(fs::exists(project / "r1" / "data" / "mi2.xml"));
    EXPECT_NE(r.out.find("0 problems, 0 not suppressed"), std::string::npos) << r.out;
}

TEST_F(CorrToolRun, BadInputIsStatusTwoAndMakesNoResult)
{
    const fs::path result = m_dir / "never";
    auto r = corrtool("run --type mi1 --result " + quoted(result) + " -- " + quoted(m_dir / "no such program"));
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("does not exist"), std::string::npos) << r.err;

    const fs::path text = m_dir / "notes.txt";
    std::ofstream(text) << "text\n";
    r = corrtool("run --type mi1 --result " + quoted(result) + " " + quoted(text));
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("is not an executable file"), std::string::npos) << r.err;

    r = corrtool("run --type nope --result " + quoted(result) + " /bin/true");
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("one of mi1, mi2, mi3, ti1, ti2, asan, tsan, ubsan"), std::string::npos) << r.err;

    r = corrtool("run --type mi1 /bin/true");
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("usage"), std::string::npos);
    EXPECT_FALSE(fs::exists(result));

    // A result folder that holds something is never overwritten.
    fs::create_directories(result);
    std::ofstream(result / "keep") << "x";
    r = corrtool("run --type mi1 --result " + quoted(result) + " /bin/true");
    EXPECT_EQ(r.status, 2);
    EXPECT_EQ(read_file(result / "keep"), "x");
}

TEST_F(CorrToolRun, AnalyserThatWritesNoReportMakesNoResult)
{
    // A sanitizer type on a program without a sanitizer: nothing is reported.
    const fs::path program = write_program("int main(void) { return 0; }\n", "plain");
    const fs::path result = m_dir / "san";
    const auto r = corrtool("run --type asan --result " + quoted(result) + " " + quoted(program));
    EXPECT_EQ(r.status, 2) << r.out << r.err;
    EXPECT_NE(r.err.find("wrote no report"), std::string::npos) << r.err;
    EXPECT_NE(r.err.find("ASAN_OPTIONS=log_path="), std::string::npos) << r.err;
    EXPECT_FALSE(fs::exists(result / "data"));
}
