#pragma once
// Registers the texts of resources/messages/rules.po as the "dialogs"
// catalogue, so that helpers print the words users will see. Only the
// single-line msgid/msgstr pairs this file uses are read.
#include "settings2/catalog.h"
#include "platkit/strings/convert.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <memory>
#include <string>

namespace rules_test {

inline std::string unquote(const std::string& line, const std::string& keyword)
{
    const size_t first = line.find('"', keyword.size());
    const size_t last = line.rfind('"');
    return first == std::string::npos || last <= first ? std::string() : line.substr(first + 1, last - first - 1);
}

inline std::map<std::wstring, std::wstring> read_po(const std::string& path)
{
    std::map<std::wstring, std::wstring> messages;
    std::ifstream in(path);
    std::string line, id;
    while (std::getline(in, line)) {
        if (line.rfind("msgid ", 0) == 0)
            id = unquote(line, "msgid");
        else if (line.rfind("msgstr ", 0) == 0 && !id.empty())
            messages[platkit::strings::utf8_to_wide(id)] = platkit::strings::utf8_to_wide(unquote(line, "msgstr"));
    }
    return messages;
}

// Before the first helper call: the any-value words are read once per process.
class rules_catalog_environment : public ::testing::Environment
{
public:
    void SetUp() override
    {
        auto messages = read_po(std::string(CORR_SOURCE_DIR) + "/resources/messages/rules.po");
        ASSERT_EQ(messages.size(), 4u) << "resources/messages/rules.po";
        settings2::registerMessageCatalog(
            L"dialogs", std::make_shared<settings2::map_catalog_t>(L"dialogs", std::move(messages)));
    }
};

} // namespace rules_test
