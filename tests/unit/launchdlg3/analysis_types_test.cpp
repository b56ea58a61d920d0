// The built-in analysis types and the client context.
#include "runctl2/analysis_type.h"
#include "runctl2/client_context.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

TEST(AnalysisTypes, EachHasAUniqueNameItsAnalyserAndItsDepth)
{
    const auto& types = runctl2::builtin_analysis_types();
    ASSERT_GE(types.size(), 8u);
    std::set<std::wstring> ids;
    for (const auto& t : types) {
        EXPECT_TRUE(ids.insert(t->getId()).second);
        EXPECT_EQ(t->getCliName(), t->getId());
        EXPECT_EQ(runctl2::find_analysis_type(t->getCliName()), t);
        EXPECT_EQ(t->supportsDebugger(), t->getAnalyser() != runctl2::analyser_t::sanitizer);
        EXPECT_EQ(t->getOptionsVariable().empty(), t->getAnalyser() != runctl2::analyser_t::sanitizer);
        EXPECT_EQ(t->queryObject("anything"), nullptr);
    }
    EXPECT_EQ(types.front()->getId(), L"mi1") << "the default type of the debugger settings comes first";
    auto has = [](const runctl2::analysis_type_ptr& t, const std::string& option) {
        const auto o = t->getAnalyserOptions();
        return std::find(o.begin(), o.end(), option) != o.end();
    };
    EXPECT_TRUE(has(runctl2::find_analysis_type(L"mi3"), "--track-origins=yes"));
    EXPECT_FALSE(has(runctl2::find_analysis_type(L"mi2"), "--track-origins=yes"));
    EXPECT_TRUE(has(runctl2::find_analysis_type(L"mi1"), "--undef-value-errors=no"));
    EXPECT_EQ(runctl2::find_analysis_type(L"ti2")->getAnalyser(), runctl2::analyser_t::drd);
    EXPECT_EQ(runctl2::find_analysis_type(L"asan")->getOptionsVariable(), "ASAN_OPTIONS");
    EXPECT_EQ(runctl2::find_analysis_type(L"nothing"), nullptr);
}

TEST(ClientContext, NamedValuesOfTheInstalledContext)
{
    EXPECT_EQ(runctl2::IClientContext::get(), nullptr);
    auto context = std::make_shared<runctl2::client_context_t>();
    context->setString(runctl2::CLIENT_ID, runctl2::client_id_ide);
    runctl2::IClientContext::set(context);
    ASSERT_EQ(runctl2::IClientContext::get(), context);
    EXPECT_EQ(runctl2::IClientContext::get()->getString(L"CLIENT_ID"), L"VS");
    EXPECT_EQ(runctl2::IClientContext::get()->getString(L"NO_SUCH_VALUE"), L"");
    runctl2::IClientContext::set(nullptr);
    EXPECT_EQ(runctl2::IClientContext::get(), nullptr);
}
