// The text format of suppression files: round trips, comments, the previous
// format, and malformed input.
#include "recorded_problems.h"
#include "sup_test_support.h"

#include "probstore3/candidates.h"
#include "probstore3/suppression_file.h"
#include "probstore3/suppression_matcher.h"
#include "platkit/strings/convert.h"

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

using namespace suppfmt3;
using probstore3::suppression_file_t;
using sup_test::read_bytes;
using sup_test::temp_dir;

namespace {

boost::shared_ptr<suppression_file_t> load(const std::filesystem::path& p)
{
    std::wstring error;
    auto file = suppression_file_t::open(p.wstring(), &error);
    EXPECT_TRUE(file) << p << ": " << platkit::strings::wide_to_utf8(error);
    return file;
}

} // namespace

TEST(SupFormat, CanonicalFileRoundTripsByteForByte)
{
    temp_dir dir;
    const auto source = sup_test::data_dir() / "canonical_v2.sup";
    const auto file = load(source);
    ASSERT_TRUE(file);
    EXPECT_EQ(file->get_file_format(), sff_version_2);
    EXPECT_EQ(file->to_text(), read_bytes(source));
    ASSERT_EQ(file->save((dir / "copy.sup").wstring(), sff_current), se_success);
    EXPECT_EQ(read_bytes(dir / "copy.sup"), read_bytes(source));
}

TEST(SupFormat, ReadsEveryFieldOfTheCanonicalFile)
{
    const auto file = load(sup_test::data_dir() / "canonical_v2.sup");
    ASSERT_TRUE(file);
    const auto sets = file->get_rulesets(true);
    ASSERT_EQ(sets.size(), 2u);
    EXPECT_EQ(sets[0]->get_name(), L"Use after free in print_record");
    EXPECT_EQ(sets[0]->get_type(), srt_best_location);
    EXPECT_EQ(sets[1]->get_type(), srt_custom_stack);
    EXPECT_EQ(sets[0]->get_file(), file);

    const auto& races = sets[1]->get_rules();
    ASSERT_EQ(races.size(), 2u);
    EXPECT_FALSE(races[0]->is_item_active(sdt_description));
    EXPECT_EQ(races[0]->get_field_value(sdt_description),
              L"Possible data race during read of size 8 at 0x10C030 by thread #3");
    const auto stack = races[0]->get_stack(false);
    ASSERT_EQ(stack->stack_size(), 3);
    EXPECT_EQ(stack->get_best_level(), 0);
    EXPECT_FALSE(stack->is_frame_field_active(0, sdt_line));
    EXPECT_EQ(stack->get_frame_field_value(0, sdt_line), L"14");
    EXPECT_FALSE(stack->is_frame_active(1));
    EXPECT_TRUE(stack->is_frame_field_active(1, sdt_line));
    EXPECT_EQ(stack->get_frame_field_value(1, sdt_line), L"");
    EXPECT_FALSE(stack->is_frame_field_active(2, sdt_source));
    EXPECT_EQ(stack->get_frame_field_value(2, sdt_source), L"./nptl/./nptl/pthread_create.c");

    EXPECT_FALSE(races[1]->is_item_active(sdt_problem_type));
    EXPECT_FALSE(races[1]->is_item_active(sdt_call_stack));
    EXPECT_EQ(races[1]->get_field_value(sdt_description), L"Name with \"quotes\", a back\\slash and Grüße");
    EXPECT_EQ(races[1]->get_stack(false)->get_frame_field_value(0, sdt_source), L"*");
}

TEST(SupFormat, HandLayoutIsKeptForUnchangedSuppressionsOnly)
{
    temp_dir dir;
    const auto source = sup_test::data_dir() / "hand_formatted_v2.sup";
    const auto original = read_bytes(source);
    std::filesystem::copy_file(source, dir / "hand.sup");
    const auto file = load(dir / "hand.sup");
    ASSERT_TRUE(file);
    EXPECT_EQ(file->to_text(), original);

    // Change the second suppression: it is written in the canonical layout,
    // the first one keeps its own, and no comment is lost.
    file->get_rulesets(true)[1]->get_rules()[0]->set_item_active(false, sdt_problem_type);
    ASSERT_EQ(file->save(file->get_path(), sff_current), se_success);
    const std::string text = read_bytes(dir / "hand.sup");
    const std::string first_block = original.substr(original.find("suppression   "),
                                                    original.find("# Second one") - original.find("suppression   "));
    EXPECT_NE(text.find(first_block), std::string::npos);
    EXPECT_NE(text.find("# Second one, also by hand.\nsuppression \"Template race\"\n  rule\n    type any \"Data race\"\n"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("# Only the allocation site and main(), whatever lies between."), std::string::npos);

    // What was written is now the reference: saving again changes nothing.
    ASSERT_EQ(file->save(file->get_path(), sff_current), se_success);
    EXPECT_EQ(read_bytes(dir / "hand.sup"), text);
    const auto again = load(dir / "hand.sup");
    EXPECT_EQ(again->to_text(), text);
}

TEST(SupFormat, InnerCommentsMoveAboveARewrittenSuppression)
{
    temp_dir dir;
    std::filesystem::copy_file(sup_test::data_dir() / "hand_formatted_v2.sup", dir / "hand.sup");
    const auto file = load(dir / "hand.sup");
    file->get_rulesets(true)[0]->set_name(L"Renamed");
    const std::string text = file->to_text();
    EXPECT_NE(text.find("# Only the allocation site and main(), whatever lies between.\nsuppression \"Renamed\"\n"),
              std::string::npos)
        << text;
}

TEST(SupFormat, NewFileIsDeterministicAndReadsBackTheSameRules)
{
    temp_dir dir;
    auto file = boost::make_shared<suppression_file_t>((dir / "new.sup").wstring());
    auto set = probstore3::create_candidate_rule_set(std::vector<probstore3::problem_t>{
        recorded::template_race(), recorded::deep_leak(), recorded::race_read()});
    set->set_name(L"Line\nbreak, tab\t, quote \" and \x01 control");
    set->get_rules()[1]->get_stack(false)->set_frame_active(9, true);
    set->get_rules()[2]->set_item_active(false, sdt_description);
    file->add_suppression(set);
    ASSERT_EQ(file->save(file->get_path(), sff_current), se_success);
    const std::string first = read_bytes(dir / "new.sup");
    EXPECT_EQ(first.rfind("corr-suppressions 2\n\nsuppression \"Line\\nbreak, tab\\t, quote \\\" and \\x01 control\"\n", 0),
              0u)
        << first;

    const auto back = load(dir / "new.sup");
    ASSERT_TRUE(back);
    ASSERT_EQ(back->get_rulesets(true).size(), 1u);
    const auto read_set = back->get_rulesets(true)[0];
    EXPECT_EQ(read_set->get_name(), set->get_name());
    ASSERT_EQ(read_set->get_rules().size(), 3u);
    for (size_t r = 0; r < 3; ++r) {
        const auto& a = *set->get_rules()[r];
        const auto& b = *read_set->get_rules()[r];
        for (auto type : rule_datatypes) {
            EXPECT_EQ(a.is_item_active(type), b.is_item_active(type)) << r << " " << type;
            EXPECT_EQ(a.get_field_value(type), b.get_field_value(type)) << r << " " << type;
        }
        EXPECT_TRUE(a.get_stack_item()->get_callstack() == b.get_stack_item()->get_callstack());
    }
    // Written again from what was read: the same bytes.
    ASSERT_EQ(back->save((dir / "again.sup").wstring(), sff_current), se_success);
    EXPECT_EQ(read_bytes(dir / "again.sup"), first);
}

TEST(SupFormat, RemovingASuppressionKeepsTheCommentsThatAreNotItsOwn)
{
    const auto file = load(sup_test::data_dir() / "canonical_v2.sup");
    file->remove_suppression(file->get_rulesets(true)[0]);
    const std::string text = file->to_text();
    EXPECT_NE(text.find("# Suppressions of the sample programs."), std::string::npos);
    EXPECT_EQ(text.find("# The read after free is known"), std::string::npos);
    EXPECT_EQ(text.find("Use after free"), std::string::npos);
    EXPECT_NE(text.find("# Trailing comment of the file."), std::string::npos);
    EXPECT_EQ(text.find("\n\n\n"), std::string::npos) << text;
    EXPECT_EQ(text.rfind("corr-suppressions 2\n# Suppressions of the sample programs.", 0), 0u);
}

TEST(SupFormat, CommentsOfAFileWithoutSuppressionsStayOnTop)
{
    temp_dir dir;
    sup_test::write_bytes(dir / "c.sup", "corr-suppressions 2\n# Team rules: ask before adding.\n");
    const auto file = load(dir / "c.sup");
    ASSERT_TRUE(file);
    EXPECT_TRUE(file->get_rulesets(true).empty());
    file->add_suppression(recorded::named_set(L"First", recorded::use_after_free()));
    EXPECT_EQ(file->to_text().rfind("corr-suppressions 2\n# Team rules: ask before adding.\n\nsuppression \"First\"\n", 0),
              0u);
}

TEST(SupFormat, PreviousFormatIsReadFlaggedAndRewrittenAsCurrent)
{
    temp_dir dir;
    std::filesystem::copy_file(sup_test::data_dir() / "previous_v1.sup", dir / "old.sup");
    const auto file = load(dir / "old.sup");
    ASSERT_TRUE(file);
    EXPECT_EQ(file->get_file_format(), sff_version_1);
    EXPECT_NE(file->get_file_format(), suppression_file_t::get_current_file_format());

    const auto sets = file->get_rulesets(true);
    ASSERT_EQ(sets.size(), 3u);
    EXPECT_EQ(sets[0]->get_name(), L"Use after free (old)");
    const auto& old_rule = sets[0]->get_rules().at(0);
    EXPECT_FALSE(old_rule->get_stack(false)); // a location, not a stack
    EXPECT_TRUE(old_rule->is_item_available(sdt_module));
    EXPECT_EQ(old_rule->get_field_value(sdt_line), L"28");
    EXPECT_FALSE(old_rule->is_item_active(sdt_description));
    EXPECT_FALSE(sets[1]->get_rules()[0]->is_item_active(sdt_line)); // empty line field
    EXPECT_FALSE(sets[2]->get_rules()[0]->is_item_available(sdt_module));
    EXPECT_FALSE(sets[2]->get_rules()[0]->is_item_available(sdt_description));

    const auto before = probstore3::suppression_matcher_t(sets);
    ASSERT_EQ(file->save(file->get_path(), sff_current), se_success);
    EXPECT_EQ(file->get_file_format(), sff_current);
    const std::string text = read_bytes(dir / "old.sup");
    EXPECT_EQ(text.rfind("corr-suppressions 2\n# Written by the previous version", 0), 0u) << text;
    EXPECT_NE(text.find("# Reads freed memory in print_record.\nsuppression \"Use after free (old)\"\n"),
              std::string::npos);

    // The rewritten file suppresses the same problems.
    const auto reread = load(dir / "old.sup");
    ASSERT_TRUE(reread);
    EXPECT_EQ(reread->get_file_format(), sff_version_2);
    const auto after = probstore3::suppression_matcher_t(reread->get_rulesets(true));
    for (const auto& p : {recorded::use_after_free(), recorded::race_read(), recorded::deep_leak(),
                          recorded::template_race()}) {
        const auto a = before.match(p);
        const auto b = after.match(p);
        ASSERT_EQ(static_cast<bool>(a), static_cast<bool>(b)) << p.description;
        if (a) {
            EXPECT_EQ(a->get_name(), b->get_name());
        }
    }
    EXPECT_EQ(after.match(recorded::use_after_free())->get_name(), L"Use after free (old)");
    EXPECT_EQ(after.match(recorded::race_write())->get_name(), L"Any race in worker");
    EXPECT_EQ(after.match(recorded::deep_leak())->get_name(), L"Every leak");
    EXPECT_FALSE(after.match(recorded::template_race()));
}

TEST(SupFormat, ByteOrderMarkAndWindowsLineEndingsAreAccepted)
{
    temp_dir dir;
    sup_test::write_bytes(dir / "w.sup", "\xEF\xBB\xBF" "corr-suppressions 2\r\n# c\r\nsuppression \"W\"\r\n  rule\r\n"
                                         "    type \"Invalid read\"\r\nend\r\n");
    const auto file = load(dir / "w.sup");
    ASSERT_TRUE(file);
    ASSERT_EQ(file->get_rulesets(true).size(), 1u);
    EXPECT_EQ(file->get_rulesets(true)[0]->get_rules()[0]->get_field_value(sdt_problem_type), L"Invalid read");
}

struct malformed_case
{
    const char* file;
    suppfmt_errdef code;
    size_t line;
    const char* reason;
};

class MalformedSup : public ::testing::TestWithParam<malformed_case>
{
};

TEST_P(MalformedSup, IsReportedWithFileLineAndReasonAndNothingIsRead)
{
    const auto& c = GetParam();
    const auto path = sup_test::data_dir() / c.file;
    ASSERT_TRUE(std::filesystem::exists(path)) << "missing fixture " << path;

    // A file object that already holds rules keeps them when a load fails.
    const auto file = load(sup_test::data_dir() / "canonical_v2.sup");
    ASSERT_TRUE(file);
    const std::string before = file->to_text();
    EXPECT_EQ(file->load(path.wstring()), c.code);
    EXPECT_EQ(file->get_last_parse_error().line, c.line);
    EXPECT_NE(file->get_last_parse_error().reason.find(c.reason), std::string::npos)
        << file->get_last_parse_error().reason;
    const std::wstring where = path.wstring() + (c.line ? L":" + std::to_wstring(c.line) : L"") + L": ";
    EXPECT_EQ(file->get_last_error().rfind(where, 0), 0u) << platkit::strings::wide_to_utf8(file->get_last_error());
    EXPECT_EQ(file->to_text(), before);
    EXPECT_EQ(file->get_rulesets(true).size(), 2u);
    EXPECT_FALSE(suppression_file_t::open(path.wstring()));
}

INSTANTIATE_TEST_SUITE_P(
    Files, MalformedSup,
    ::testing::Values(
        malformed_case{"malformed_empty.sup", se_not_suppression_file, 0, "the file is empty"},
        malformed_case{"malformed_no_header.sup", se_not_suppression_file, 1, "not a suppression file"},
        malformed_case{"malformed_version_3.sup", se_unsupported_version, 1, "unsupported format version 3"},
        malformed_case{"malformed_missing_end.sup", se_parse_error, 6,
                       "'suppression' before the 'end' of the suppression started on line 2"},
        malformed_case{"malformed_unterminated_string.sup", se_parse_error, 4, "not closed"},
        malformed_case{"malformed_unknown_keyword.sup", se_parse_error, 5, "unknown keyword 'severity'"},
        malformed_case{"malformed_frame_before_stack.sup", se_parse_error, 5, "'frame' before 'stack'"},
        malformed_case{"malformed_two_best.sup", se_parse_error, 6, "two frames of one stack are marked 'best'"},
        malformed_case{"malformed_line_number.sup", se_parse_error, 5, "the line '12x' is not a number"},
        malformed_case{"malformed_bad_escape.sup", se_parse_error, 2, "unknown escape sequence '\\q'"},
        malformed_case{"malformed_no_rules.sup", se_parse_error, 4, "has no rule"},
        malformed_case{"malformed_invalid_utf8.sup", se_parse_error, 2, "not valid UTF-8"},
        malformed_case{"malformed_duplicate_type.sup", se_parse_error, 5, "'type' given twice"},
        malformed_case{"malformed_v1_location.sup", se_parse_error, 4, "four fields"},
        malformed_case{"malformed_frame_fields.sup", se_parse_error, 5, "expected 'function', found 'source'"}),
    [](const ::testing::TestParamInfo<malformed_case>& param_info) {
        std::string name = param_info.param.file;
        name = name.substr(0, name.find('.'));
        return name;
    });

TEST(SupFormat, TruncatedFileReportsTheOpenSuppression)
{
    temp_dir dir;
    std::string text = read_bytes(sup_test::data_dir() / "canonical_v2.sup");
    text = text.substr(0, text.find("end\n\n# Both races"));
    sup_test::write_bytes(dir / "cut.sup", text);
    const auto file = boost::make_shared<suppression_file_t>();
    EXPECT_EQ(file->load((dir / "cut.sup").wstring()), se_parse_error);
    EXPECT_NE(file->get_last_parse_error().reason.find("ends inside the suppression started on line 6"),
              std::string::npos)
        << file->get_last_parse_error().reason;
    EXPECT_TRUE(file->get_rulesets(true).empty());
}

TEST(SupFormat, ReadingRulesIsNotEditingThem)
{
    // Grids and dialogs read every field; the hand layout must survive that.
    const auto source = sup_test::data_dir() / "hand_formatted_v2.sup";
    const auto file = load(source);
    ASSERT_TRUE(file);
    for (const auto& set : file->get_rulesets(true)) {
        for (const auto& rule : set->get_rules()) {
            for (auto type : rule_datatypes) {
                rule->is_item_active(type);
                rule->get_field_value(type);
            }
            const auto stack = rule->get_stack(false);
            for (int i = 0; stack && i < stack->stack_size(); ++i)
                for (auto type : frame_datatypes)
                    stack->get_frame_field_value(i, stack->is_frame_field_active(i, type) ? type : sdt_module);
            rule->get_stack(true)->normalize(); // a copy
            rule->convert_to_stack();           // already a stack: nothing to do
        }
    }
    EXPECT_EQ(file->to_text(), read_bytes(source));

    // An edit that is undone leaves canonical text as it was.
    const auto canonical = load(sup_test::data_dir() / "canonical_v2.sup");
    const auto rule = canonical->get_rulesets(true)[0]->get_rules()[0];
    rule->set_item_active(false, sdt_description);
    rule->set_item_active(true, sdt_description);
    EXPECT_EQ(canonical->to_text(), read_bytes(sup_test::data_dir() / "canonical_v2.sup"));
}
