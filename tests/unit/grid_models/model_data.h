#pragma once
// Rule data and words for the grid-model tests: problems imported by the
// engine from the recorded analyser output, candidate rules made from them,
// suppression files saved to disk and read back, and the "dialogs"
// catalogue built from the library's own .po files.
#include "../engine/test_support.h"
#include "../rules/po_catalog.h"

#include "corr_dialogs2/supp_helpers.h"
#include "corr_dialogs2/suppression_file.h"
#include "corr_engine/valgrind_xml_importer.h"
#include "probstore3/candidates.h"
#include "probstore3/suppression_file.h"
#include "settings2/catalog.h"

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace grid_models_test {

using rule_set_ptr = boost::shared_ptr<probstore3::suppression_rule_set_t>;

// Every text of resources/messages/*.po.
inline const std::map<std::wstring, std::wstring>& catalog_texts()
{
    static const std::map<std::wstring, std::wstring> texts = [] {
        std::map<std::wstring, std::wstring> all;
        const auto dir = std::filesystem::path(CORR_SOURCE_DIR) / "resources" / "messages";
        for (const auto& entry : std::filesystem::directory_iterator(dir))
            if (entry.path().extension() == ".po")
                for (auto& [key, text] : rules_test::read_po(entry.path().string()))
                    all[key] = text;
        return all;
    }();
    return texts;
}

// The text users see for a key; a key missing from the .po files fails.
inline std::wstring word(const std::wstring& key)
{
    const auto& texts = catalog_texts();
    const auto it = texts.find(key);
    EXPECT_TRUE(it != texts.end()) << "no text for " << platkit::strings::wide_to_utf8(key);
    return it == texts.end() ? std::wstring() : it->second;
}

class catalog_environment : public ::testing::Environment
{
public:
    void SetUp() override
    {
        ASSERT_TRUE(catalog_texts().count(L"dlg.suppression_grid.any_value"))
            << "resources/messages/grid.po";
        settings2::registerMessageCatalog(
            L"dialogs", std::make_shared<settings2::map_catalog_t>(L"dialogs", catalog_texts()));
    }
};

inline std::vector<probstore3::problem_t> import_recorded(const std::string& name)
{
    corr_engine::valgrind_xml_importer_t importer;
    auto got = engine_test::import_with(importer, engine_test::sample(name));
    EXPECT_TRUE(got.report.ok) << name;
    EXPECT_FALSE(got.problems.empty()) << "no problems in " << name;
    return std::move(got.problems);
}

// One candidate rule per recorded problem of the file.
inline rule_set_ptr candidates(const std::string& name, const std::wstring& set_name = {})
{
    auto set = probstore3::create_candidate_rule_set(import_recorded(name));
    set->set_name(set_name);
    return set;
}

// A rule made from a recorded problem with its stacks taken away.
inline corr_dialogs2::rule_ptr rule_without_stack()
{
    auto problems = import_recorded("memcheck_use_after_free.xml");
    problems.front().stacks.clear();
    return probstore3::create_rule(problems.front());
}

// Two suppression files on disk, written and read back:
//   team.sup:  "Use after free" (1 rule), "Counter races" (2), "Leaks" (3)
//   other.sup: "Library bugs" (2)
struct sample_files
{
    engine_test::temp_dir_t dir;
    boost::shared_ptr<probstore3::suppression_file_t> team;
    boost::shared_ptr<probstore3::suppression_file_t> other;

    sample_files()
    {
        team = write_and_read("team.sup",
                              {candidates("memcheck_use_after_free.xml", L"Use after free"),
                               candidates("helgrind_race_counter.xml", L"Counter races"),
                               candidates("memcheck_leaks.xml", L"Leaks")});
        other = write_and_read("other.sup", {candidates("memcheck_libbuggy.xml", L"Library bugs")});
    }

    std::vector<rule_set_ptr> all_rule_sets() const
    {
        auto sets = team->get_rulesets(true);
        const auto more = other->get_rulesets(true);
        sets.insert(sets.end(), more.begin(), more.end());
        return sets;
    }

private:
    boost::shared_ptr<probstore3::suppression_file_t>
    write_and_read(const std::string& leaf, const std::vector<rule_set_ptr>& sets)
    {
        const std::wstring path = (dir / leaf).wstring();
        auto file = boost::make_shared<probstore3::suppression_file_t>(path);
        for (const auto& set : sets)
            file->add_suppression(set);
        EXPECT_EQ(file->save(path, probstore3::suppression_file_t::get_current_file_format()), 0);
        std::wstring error;
        auto read = probstore3::suppression_file_t::open(path, &error);
        EXPECT_TRUE(read) << platkit::strings::wide_to_utf8(error);
        return read;
    }
};

} // namespace grid_models_test
