// Valgrind XML import against the recorded samples and the hand-made inputs.
#include "corr_engine/valgrind_xml_importer.h"
#include "test_support.h"

#include <sstream>

namespace {

using namespace engine_test;
using corr_engine::valgrind_xml_importer_t;
using probstore3::no_line;

const valgrind_xml_importer_t importer;

TEST(ValgrindXmlImport, EveryRecordedFileGivesOneProblemPerError)
{
    const auto files = samples_matching("", ".xml");
    ASSERT_GE(files.size(), 15u);
    for (const auto& file : files) {
        if (file.filename() == "memcheck_leaks_truncated.xml")
            continue;
        SCOPED_TRACE(file.filename().string());
        const std::string text = read_file(file);
        const auto got = import_with(importer, file);
        ASSERT_TRUE(got.report.ok) << platkit::strings::wide_to_utf8(got.report.error);
        EXPECT_FALSE(got.report.truncated);
        EXPECT_EQ(got.problems.size(), count_of(text, "<error>"));
        EXPECT_EQ(got.report.problems, got.problems.size());
        // memcheck_fd_leak.xml has a stack outside any error: it makes no problem.
        expect_complete(got.problems);
        // Every stack of every error, none lost and none invented.
        size_t stacks = 0;
        for (const auto& p : got.problems)
            stacks += p.stacks.size();
        size_t error_stacks = 0;
        for (auto at = text.find("<error>"); at != std::string::npos;
             at = text.find("<error>", at + 1))
            error_stacks += count_of(text.substr(at, text.find("</error>", at) - at), "<stack>");
        EXPECT_EQ(stacks, error_stacks);
    }
}

TEST(ValgrindXmlImport, ScanGivesTheSameReportAsTheImport)
{
    std::vector<fs::path> files = samples_matching("", ".xml");
    for (const auto& e : fs::directory_iterator(test_data("valgrind")))
        if (e.path().extension() == ".xml")
            files.push_back(e.path());
    for (const auto& file : files) {
        SCOPED_TRACE(file.filename().string());
        const auto full = import_with(importer, file);
        std::ifstream in(file, std::ios::binary);
        const auto scan = importer.scan_stream(in, basekit2::path_t(file).str());
        EXPECT_EQ(scan.ok, full.report.ok);
        EXPECT_EQ(scan.error, full.report.error);
        EXPECT_EQ(scan.warnings, full.report.warnings);
        EXPECT_EQ(scan.truncated, full.report.truncated);
        EXPECT_EQ(scan.problems, full.report.problems);
        EXPECT_EQ(scan.tool, full.report.tool);
        EXPECT_EQ(scan.command, full.report.command);
    }
}

// A recorded file grown past min_bytes by repeating its errors.
std::string grown(const std::string& recorded, size_t min_bytes)
{
    const std::string text = read_file(sample(recorded));
    const auto first = text.find("<error>");
    const auto last = text.rfind("</error>") + 8;
    const std::string errors = text.substr(first, last - first);
    std::string big = text.substr(0, last);
    while (big.size() < min_bytes)
        big += "\n" + errors;
    return big + text.substr(last);
}

corr_engine::import_report_t scan_whole(const fs::path& file)
{
    std::ifstream in(file, std::ios::binary);
    return importer.scan_stream(in, L"big.xml");
}

TEST(ValgrindXmlImport, ScanningInPiecesGivesTheSameCount)
{
    temp_dir_t tmp;
    const fs::path file = tmp / "big.xml";
    const std::string big = grown("helgrind_race_counter.xml", 2 << 20);
    write_bytes(file, big);
    const auto pieces = importer.scan_in_pieces(basekit2::path_t(file), L"big.xml", 3);
    ASSERT_TRUE(pieces.has_value());
    const auto whole = scan_whole(file);
    ASSERT_TRUE(whole.ok);
    EXPECT_EQ(pieces->problems, count_of(big, "<error>"));
    EXPECT_EQ(pieces->problems, whole.problems);
    EXPECT_EQ(pieces->tool, whole.tool);
    EXPECT_EQ(pieces->command, whole.command);
    EXPECT_TRUE(pieces->warnings.empty());

    // A cut inside a comment, a cut-short file and a malformed one do not
    // scan in pieces (scan_file then reads them in one).
    const auto middle = big.find("\n<error>", big.size() / 2);
    const std::string variants[] = {
        big.substr(0, big.size() / 3) + "<!--" +
            big.substr(big.size() / 3, middle - big.size() / 3) + "-->" + big.substr(middle),
        big.substr(0, big.size() - 200),
        big.substr(0, middle) + "<error><kind>X</kind></eror>" + big.substr(middle),
    };
    for (const auto& text : variants) {
        write_bytes(file, text);
        EXPECT_FALSE(importer.scan_in_pieces(basekit2::path_t(file), L"big.xml", 3).has_value());
    }
}

TEST(ValgrindXmlImport, LargeFileScanMatchesTheOnePieceScan)
{
    temp_dir_t tmp;
    const fs::path file = tmp / "big.xml";
    const std::string big =
        grown("drd_race_counter.xml", valgrind_xml_importer_t::parallel_threshold + 1024);
    for (const bool cut : {false, true}) {
        write_bytes(file, cut ? big.substr(0, big.size() - 300) : big);
        const auto whole = scan_whole(file);
        const auto scanned = importer.scan_file(basekit2::path_t(file), L"big.xml");
        EXPECT_EQ(scanned.ok, whole.ok);
        EXPECT_EQ(scanned.truncated, cut);
        EXPECT_EQ(scanned.warnings, whole.warnings);
        EXPECT_EQ(scanned.problems, whole.problems);
        EXPECT_EQ(scanned.command, whole.command);
    }
}

TEST(ValgrindXmlImport, UseAfterFreeKeepsStacksTitlesAndFramesAsRecorded)
{
    const auto got = import_with(importer, sample("memcheck_use_after_free.xml"));
    ASSERT_TRUE(got.report.ok);
    EXPECT_EQ(got.report.tool, "memcheck");
    EXPECT_NE(got.report.command.find("/samples/build/mem_use_after_free"), std::string::npos);
    ASSERT_EQ(got.problems.size(), 1u);
    const auto& p = got.problems[0];
    EXPECT_EQ(p.tool, "memcheck");
    EXPECT_EQ(p.kind, "InvalidRead");
    EXPECT_EQ(p.type, "Invalid read");
    EXPECT_EQ(p.description, "Invalid read of size 1");
    ASSERT_EQ(p.stacks.size(), 3u);
    EXPECT_EQ(p.stacks[0].title, "");
    EXPECT_EQ(p.stacks[1].title, "Address 0x4a43090 is 0 bytes inside a block of size 7 free'd");
    EXPECT_EQ(p.stacks[2].title, "Block was alloc'd at");
    EXPECT_TRUE(p.aux.empty());

    const auto& top = p.stacks[0].frames.at(0);
    EXPECT_EQ(top.module, "mem_use_after_free");
    EXPECT_EQ(top.function, "print_record");
    EXPECT_EQ(top.source, "/work/wt-samples/samples/src/mem_use_after_free.c");
    EXPECT_EQ(top.line, 28u);
    EXPECT_EQ(top.address, 0x109212u);
    const auto& preload = p.stacks[1].frames.at(0);
    EXPECT_EQ(preload.module, "vgpreload_memcheck-amd64-linux.so");
    EXPECT_EQ(preload.function, "free");
    EXPECT_EQ(preload.source, "");
    EXPECT_EQ(preload.line, no_line);
    EXPECT_EQ(p.stacks[1].frames.at(1).function, "release_name");
    EXPECT_EQ(p.stacks[1].frames.at(1).line, 23u);
    EXPECT_EQ(p.stacks[2].frames.at(2).line, 33u);
    EXPECT_EQ(p.best_level, 0);
}

TEST(ValgrindXmlImport, LeaksCarrySizesAndSkipTheAllocatorForTheBestFrame)
{
    const auto got = import_with(importer, sample("memcheck_leaks.xml"));
    ASSERT_EQ(got.problems.size(), 3u);
    EXPECT_EQ(got.problems[0].type, "Memory leak (definite)");
    EXPECT_EQ(got.problems[2].type, "Memory leak (possible)");
    EXPECT_EQ(got.problems[2].kind, "Leak_PossiblyLost");
    EXPECT_EQ(got.problems[1].leaked_bytes, 64u);
    EXPECT_EQ(got.problems[1].leaked_blocks, 1u);
    EXPECT_EQ(got.problems[2].leaked_bytes, 128u);
    // frame 0 is malloc in the preload library
    EXPECT_EQ(got.problems[1].stacks[0].frames[0].function, "malloc");
    EXPECT_EQ(got.problems[1].best_level, 1);
    EXPECT_EQ(got.problems[1].best_frame()->function, "definite_leak");
    EXPECT_EQ(got.problems[0].best_frame()->function, "alloc_token");
}

TEST(ValgrindXmlImport, EachErrorKeepsTheSuppressionValgrindPrintedForIt)
{
    // --gen-suppressions=all: a <suppression> inside each error, and the same
    // again after it at the top level, which must not attach to the next error.
    const struct {
        const char* file;
        size_t errors;
        const char* kind_line;
        const char* frame_line;
    } cases[] = {
        {"memcheck_mismatched_delete_gensupp.xml", 2, "Memcheck:Free",
         "fun:_ZN7samples11drop_pointsEPNS_5PointE"},
        {"memcheck_leaks_gensupp.xml", 3, "Memcheck:Leak", "match-leak-kinds: definite"},
        {"helgrind_race_counter_gensupp.xml", 2, "Helgrind:Race", "fun:worker"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.file);
        const auto got = import_with(importer, sample(c.file));
        ASSERT_TRUE(got.report.ok) << platkit::strings::wide_to_utf8(got.report.error);
        ASSERT_EQ(got.problems.size(), c.errors);
        for (const auto& p : got.problems) {
            EXPECT_EQ(p.native_suppression.front(), '{');
            EXPECT_EQ(p.native_suppression.back(), '}');
            EXPECT_NE(p.native_suppression.find(std::string("\n   ") + c.kind_line + "\n"),
                      std::string::npos)
                << p.native_suppression;
        }
        EXPECT_NE(got.problems[0].native_suppression.find(c.frame_line), std::string::npos)
            << got.problems[0].native_suppression;
    }
    // Output recorded without the option carries none.
    for (const auto& p : import_with(importer, sample("memcheck_leaks.xml")).problems)
        EXPECT_TRUE(p.native_suppression.empty());
}

TEST(ValgrindXmlImport, SourceDirectoriesMoveTheBestFrameIntoALibraryOfTheProgram)
{
    // Without source folders the executable's own frame wins over libbuggy.so.
    const auto plain = import_with(importer, sample("memcheck_libbuggy.xml"));
    ASSERT_EQ(plain.problems.size(), 2u);
    EXPECT_EQ(plain.problems[0].best_frame()->function, "summarise");

    corr_engine::import_context_t context;
    context.source_dirs = {"/work/wt-samples/samples/src/"};
    const auto with_dirs = import_with(importer, sample("memcheck_libbuggy.xml"), context);
    EXPECT_EQ(with_dirs.problems[0].best_frame()->function, "buggy_average");
    EXPECT_EQ(with_dirs.problems[0].best_frame()->module, "libbuggy.so");
}

TEST(ValgrindXmlImport, HelgrindRacesCarryTheAnnouncementsOfTheirThreads)
{
    const auto got = import_with(importer, sample("helgrind_race_counter.xml"));
    ASSERT_EQ(got.problems.size(), 2u);
    const auto& p = got.problems[0];
    EXPECT_EQ(p.tool, "helgrind");
    EXPECT_EQ(p.type, "Data race");
    EXPECT_EQ(p.description, "Possible data race during read of size 8 at 0x10C030 by thread #3");
    ASSERT_EQ(p.stacks.size(), 2u);
    EXPECT_EQ(p.stacks[1].title, "This conflicts with a previous write of size 8 by thread #2");
    ASSERT_EQ(p.aux.size(), 3u);
    EXPECT_EQ(p.aux[0], "Address 0x10c030 is 0 bytes inside data symbol \"counter\"");
    // Threads in the order the error names them: #3 in xwhat, #2 in xauxwhat.
    EXPECT_EQ(p.aux[1].rfind("Thread #3 was created\n   at 0x496FB3F: clone (clone.S:76)", 0), 0u)
        << p.aux[1];
    EXPECT_NE(p.aux[1].find("by 0x1091D1: main (thr_race_counter.c:22)"), std::string::npos);
    EXPECT_EQ(p.aux[2].rfind("Thread #2 was created", 0), 0u);
    EXPECT_NE(p.aux[2].find("main (thr_race_counter.c:21)"), std::string::npos);
}

TEST(ValgrindXmlImport, LockOrderKeepsAllFiveStacks)
{
    const auto got = import_with(importer, sample("helgrind_lock_order.xml"));
    ASSERT_EQ(got.problems.size(), 1u);
    const auto& p = got.problems[0];
    EXPECT_EQ(p.type, "Lock order violation");
    ASSERT_EQ(p.stacks.size(), 5u);
    EXPECT_EQ(p.stacks[1].title,
              "Required order was established by acquisition of lock at 0x10C060");
    EXPECT_EQ(p.stacks[4].title, "Lock at 0x10023C9470 was first observed");
    EXPECT_EQ(p.best_frame()->function, "transfer_ba");
    EXPECT_EQ(p.best_frame()->line, 29u);
}

TEST(ValgrindXmlImport, DrdAllocationContextIsATitledStack)
{
    const auto got = import_with(importer, sample("drd_template_race.xml"));
    ASSERT_EQ(got.problems.size(), 4u);
    const auto& p = got.problems[0];
    EXPECT_EQ(p.tool, "drd");
    EXPECT_EQ(p.kind, "ConflictingAccess");
    EXPECT_EQ(p.type, "Data race");
    ASSERT_EQ(p.stacks.size(), 2u);
    EXPECT_EQ(p.stacks[1].title, "Allocation context");
    EXPECT_EQ(p.stacks[1].frames.at(0).function, "operator new(unsigned long)");
    // Entities are decoded: the recorded text has &lt; and &gt;.
    EXPECT_EQ(p.best_frame()->function,
              "corr::sample::Accumulator<double, 4>::add(double const&, int)");
    EXPECT_EQ(p.aux, std::vector<std::string>{"Address 0x4d9ac50 is at offset 0 from 0x4d9ac50."});
}

TEST(ValgrindXmlImport, NewerProtocolVersionsImport)
{
    const auto v5 = import_with(importer, test_data("valgrind/memcheck_protocol5_fd_leak.xml"));
    ASSERT_TRUE(v5.report.ok) << platkit::strings::wide_to_utf8(v5.report.error);
    ASSERT_EQ(v5.problems.size(), 1u);
    EXPECT_EQ(v5.problems[0].kind, "FdNotClosed");
    EXPECT_EQ(v5.problems[0].type, "File descriptor leak");
    EXPECT_EQ(v5.problems[0].description, "Open file descriptor 3: /dev/null");
    ASSERT_EQ(v5.problems[0].stacks[0].frames.size(), 6u);
    EXPECT_EQ(v5.problems[0].stacks[0].frames[5].source,
              "/work/wt-samples/samples/src/res_fd_leak.c");

    const auto v6 = import_with(importer, test_data("valgrind/memcheck_protocol6_summaries.xml"));
    ASSERT_TRUE(v6.report.ok) << platkit::strings::wide_to_utf8(v6.report.error);
    ASSERT_EQ(v6.problems.size(), 3u);
    EXPECT_EQ(v6.problems[1].leaked_bytes, 64u); // not confused by <leak_summary>'s <bytes>
    EXPECT_EQ(v6.problems[2].kind, "Leak_PossiblyLost");
}

TEST(ValgrindXmlImport, OutputCutShortKeepsCompleteErrorsAndWarns)
{
    const auto got = import_with(importer, sample("memcheck_leaks_truncated.xml"));
    ASSERT_TRUE(got.report.ok);
    EXPECT_TRUE(got.report.truncated);
    ASSERT_EQ(got.problems.size(), 1u);
    EXPECT_EQ(got.problems[0].description,
              "10 bytes in 1 blocks are definitely lost in loss record 1 of 3");
    ASSERT_EQ(got.report.warnings.size(), 1u);
    EXPECT_NE(got.report.warnings[0].find(L"ends in the middle of an error"), std::wstring::npos);

    // Cut between two errors: the output lacks only its end.
    const std::string full = read_file(sample("memcheck_leaks.xml"));
    const std::string head = full.substr(0, full.find("</error>") + 8);
    std::istringstream in(head);
    size_t n = 0;
    const auto report =
        importer.import_stream(in, L"cut.xml", {}, [&](probstore3::problem_t&&) { ++n; });
    EXPECT_TRUE(report.ok);
    EXPECT_TRUE(report.truncated);
    EXPECT_EQ(n, 1u);
}

TEST(ValgrindXmlImport, MalformedInputsNameFileLineAndReason)
{
    struct case_t
    {
        const char* file;
        const wchar_t* message;
    };
    const case_t cases[] = {
        {"malformed_not_well_formed.xml", L":60:5: malformed XML: mismatched tag"},
        {"malformed_wrong_root_element.xml",
         L":3:1: the root element is <valgrindreport>, not <valgrindoutput>"},
        {"malformed_unsupported_protocol_3.xml",
         L":5:19: unsupported Valgrind XML protocol version 3"},
        {"malformed_error_without_kind.xml", L":39: <error> without <kind>"},
        {"malformed_empty_file.xml", L": the file is empty"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.file);
        const auto path = test_data(std::string("valgrind/") + c.file);
        ASSERT_TRUE(fs::exists(path));
        const auto got = import_with(importer, path);
        EXPECT_FALSE(got.report.ok);
        EXPECT_EQ(got.report.error.rfind(basekit2::path_t(path).str(), 0), 0u);
        EXPECT_NE(got.report.error.find(c.message), std::wstring::npos)
            << platkit::strings::wide_to_utf8(got.report.error);
    }
}

TEST(ValgrindXmlImport, StreamAndBufferAgreeWhateverTheChunkBoundaries)
{
    // The race file is larger than one chunk once repeated; ids and stacks
    // must not depend on where expat's pieces end.
    const std::string big =
        grown("helgrind_template_race.xml", 3 * valgrind_xml_importer_t::chunk_size);

    std::vector<probstore3::problem_t> from_stream, from_buffer;
    std::istringstream in(big);
    const auto r1 =
        importer.import_stream(in, L"big.xml", {}, [&](auto&& p) { from_stream.push_back(p); });
    const auto r2 = importer.import_buffer(big.data(), big.size(), L"big.xml", {},
                                           [&](auto&& p) { from_buffer.push_back(p); });
    ASSERT_TRUE(r1.ok);
    ASSERT_TRUE(r2.ok);
    ASSERT_EQ(from_stream.size(), count_of(big, "<error>"));
    ASSERT_EQ(from_stream.size(), from_buffer.size());
    for (size_t i = 0; i < from_stream.size(); ++i) {
        EXPECT_EQ(from_stream[i].id, i + 1);
        EXPECT_EQ(from_stream[i].stacks, from_buffer[i].stacks);
        EXPECT_EQ(from_stream[i].aux, from_buffer[i].aux);
    }
}

TEST(ValgrindXmlImport, ACommentOrAttributeThatNeverEndsIsRefusedNotReadOnAndOn)
{
    // Expat reads an unfinished token again with every piece: a 20 MiB one
    // fed in chunks would take minutes. It is refused once no tag ends
    // within 4 MiB; a long text between tags is fine.
    const std::string head = "<?xml version=\"1.0\"?>\n<valgrindoutput><protocolversion>4</protocolversion>"
                             "<protocoltool>memcheck</protocoltool>";
    for (const auto& [open, close] :
         {std::pair<std::string, std::string>{"<!-- ", " -->"}, {"<error a=\"", "\">"}}) {
        SCOPED_TRACE(open);
        const std::string xml = head + open + std::string(20u << 20, 'x') + close + "</valgrindoutput>";
        std::istringstream in(xml);
        const auto report = importer.import_stream(in, L"huge.xml", {}, [](auto&&) {});
        EXPECT_FALSE(report.ok);
        EXPECT_NE(report.error.find(L"huge.xml: no XML tag ends within 4 MiB"), std::wstring::npos)
            << platkit::strings::wide_to_utf8(report.error);
    }
    const std::string fine = head + "<status><state>" + std::string(1u << 20, 's') +
                             "</state></status></valgrindoutput>";
    std::istringstream in(fine);
    EXPECT_TRUE(importer.import_stream(in, L"fine.xml", {}, [](auto&&) {}).ok);
}

TEST(ValgrindXmlImport, UnknownElementsAreSkippedWherever)
{
    const std::string xml =
        "<?xml version=\"1.0\"?>\n<valgrindoutput><protocolversion>4</protocolversion>"
        "<protocoltool>memcheck</protocoltool><future><error><kind>X</kind></error></future>"
        "<error><unique>0x1</unique><kind>InvalidWrite</kind><what>Invalid write of size 4</what>"
        "<newthing a=\"1\"><what>not this</what></newthing>"
        "<stack><frame><ip>0x1</ip><obj>/bin/prog</obj><fn>f</fn><extra>e</extra>"
        "<dir>/src</dir><file>a.c</file><line>7</line></frame></stack>"
        "<suppression><sname>s</sname><rawtext><![CDATA[{ x }]]></rawtext></suppression>"
        "</error></valgrindoutput>";
    std::vector<probstore3::problem_t> got;
    const auto report = importer.import_buffer(xml.data(), xml.size(), L"x.xml", {},
                                               [&](auto&& p) { got.push_back(p); });
    ASSERT_TRUE(report.ok) << platkit::strings::wide_to_utf8(report.error);
    ASSERT_EQ(got.size(), 1u);
    EXPECT_EQ(got[0].description, "Invalid write of size 4");
    EXPECT_TRUE(got[0].aux.empty());
    ASSERT_EQ(got[0].stacks.size(), 1u);
    EXPECT_EQ(got[0].stacks[0].frames[0].source, "/src/a.c");
    EXPECT_EQ(got[0].stacks[0].frames[0].line, 7u);
    EXPECT_EQ(got[0].stacks[0].frames[0].module, "prog");
}

TEST(ValgrindXmlImport, RecognisesXmlOnly)
{
    EXPECT_TRUE(importer.can_import("<?xml version=\"1.0\"?>\n<valgrindoutput>"));
    EXPECT_TRUE(importer.can_import(""));
    EXPECT_FALSE(importer.can_import("==123== Memcheck, a memory error detector"));
}

} // namespace
