// Translation with its fall-back texts and argument order, and the
// wildcard of the open-result dialog built from the importers' extensions.
#include "corr_dialogs2/ui_utils.h"

#include "corr_engine/result_converter.h"
#include "settings2/catalog.h"
#include "settings2/product_locations.h"
#include "settings2/resource_catalogs.h"

#include <gtest/gtest.h>

using corr_dialogs2::translate;

namespace {

// The product arguments are read once per process, on the first
// translation, so the product service is installed before any test runs.
class product_environment : public testing::Environment
{
public:
    void SetUp() override
    {
        settings2::IProductLocations::set(std::make_shared<settings2::product_locations_t>(
            L"Correctness Analyzer", L"corr-analyzer", L"CorrA", basekit2::path_t()));
    }
};
const auto* const g_environment = testing::AddGlobalTestEnvironment(new product_environment);

void use_catalogue(std::map<std::wstring, std::wstring> messages)
{
    settings2::registerMessageCatalog(
        L"dialogs", std::make_shared<settings2::map_catalog_t>(L"dialogs", std::move(messages)));
}

class named_importer : public corr_engine::result_importer_t
{
public:
    explicit named_importer(std::wstring ext) : m_ext(std::move(ext)) {}
    std::wstring extension() const override { return m_ext; }
    bool can_import(const std::string&) const override { return true; }
    corr_engine::import_report_t import(const basekit2::path_t&,
                                        const corr_engine::problem_sink_t&) const override
    {
        return {};
    }

private:
    std::wstring m_ext;
};

void use_importers(std::initializer_list<const wchar_t*> extensions)
{
    corr_engine::result_converter_t::clear_registry();
    for (const wchar_t* ext : extensions)
        corr_engine::result_converter_t::register_importer(std::make_shared<named_importer>(ext));
}

} // namespace

TEST(Translate, MissingCatalogueOrKeyGivesTheExactFallBackTexts)
{
    settings2::registerMessageCatalog(L"dialogs", nullptr);
    EXPECT_EQ(translate(L"x.y"), L"Message catalog 'dialogs' is not loaded. Message: x.y");
    EXPECT_EQ(translate(L"x.y", {{L"a", 1}}), L"Message catalog 'dialogs' is not loaded. Message: x.y");

    use_catalogue({{L"other.key", L"text"}});
    EXPECT_EQ(translate(L"x.y"), L"Message is not found: 'x.y'");
    EXPECT_EQ(translate(L""), L"Message is not found: ''");
}

TEST(Translate, CallerArgumentsComeBeforeTheProductArguments)
{
    use_catalogue({{L"dlg.t.title", L"{prod_name} - {result_name}"},
                   {L"dlg.t.names", L"{prod_name}|{product_ascii_name}|{prod_short_name}"},
                   {L"dlg.t.count", L"{n} of {total}"}});
    EXPECT_EQ(translate(L"dlg.t.names"), L"Correctness Analyzer|corr-analyzer|CorrA");
    EXPECT_EQ(translate(L"dlg.t.title", {{L"result_name", L"r001"}}), L"Correctness Analyzer - r001");
    EXPECT_EQ(translate(L"dlg.t.title", {{L"prod_name", L"Mine"}, {L"result_name", L"r"}}), L"Mine - r")
        << "a caller argument named like a product argument is found first";
    EXPECT_EQ(translate(L"dlg.t.count", {{L"n", 3}, {L"total", 10u}}), L"3 of 10");
    EXPECT_EQ(translate(L"dlg.t.count", {{L"n", 3}}), L"3 of {total}") << "an argument left out stays visible";
}

TEST(Translate, TheBuiltCatalogueAnswersItsKeys)
{
    const auto entry = settings2::load_resource_catalog(basekit2::path_t::from_utf8(CORR_RESOURCE_DIR) /
                                                        basekit2::path_t(L"dialogs2.dat"));
    ASSERT_TRUE(entry.ok());
    EXPECT_EQ(translate(L"btn.close"), L"Close");
    EXPECT_EQ(translate(L"dlg.suppressions.stack.title.view"), L"Call Stack");
}

TEST(FileDialogString, NamesAndExtensionsJoinWithoutABlankBeforeTheParenthesis)
{
    use_importers({L"a", L"b"});
    use_catalogue({{L"dlg.import.product_name.a", L"A "}, {L"dlg.import.product_name.b", L"B "}});
    EXPECT_EQ(corr_dialogs2::get_import_extensions(), (std::vector<std::wstring>{L"a", L"b"}));
    EXPECT_EQ(corr_dialogs2::prepare_file_dialog_string(), L"A (*.a)|*.a|B (*.b)|*.b");
}

TEST(FileDialogString, SkippedEntriesKeepTheSeparatorOfTheirPosition)
{
    use_importers({L"a", L"b"});
    use_catalogue({{L"dlg.import.product_name.a", L"A "}, {L"dlg.import.product_name.b", L""}});
    EXPECT_EQ(corr_dialogs2::prepare_file_dialog_string(), L"A (*.a)|*.a|") << "the last one empty: a trailing |";

    use_catalogue({{L"dlg.import.product_name.a", L""}, {L"dlg.import.product_name.b", L"B "}});
    EXPECT_EQ(corr_dialogs2::prepare_file_dialog_string(), L"B (*.b)|*.b");

    // A name missing from the catalogue is not empty: the extension stays.
    use_catalogue({{L"dlg.import.product_name.a", L"A "}});
    EXPECT_EQ(corr_dialogs2::prepare_file_dialog_string(),
              L"A (*.a)|*.a|Message is not found: 'dlg.import.product_name.b'(*.b)|*.b");
}

TEST(FileDialogString, NoProductServiceMeansNoExtensions)
{
    use_importers({L"a"});
    use_catalogue({{L"dlg.import.product_name.a", L"A "}});
    const auto service = settings2::IProductLocations::get();
    settings2::IProductLocations::set(nullptr);
    EXPECT_TRUE(corr_dialogs2::get_import_extensions().empty());
    EXPECT_EQ(corr_dialogs2::prepare_file_dialog_string(), L"");
    settings2::IProductLocations::set(service);
    use_importers({});
    EXPECT_EQ(corr_dialogs2::prepare_file_dialog_string(), L"");
}
