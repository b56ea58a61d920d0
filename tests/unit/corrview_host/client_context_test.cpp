// Who the viewer runs for, and the lines an IDE client reads instead of
// message boxes.
#include "host/client_context.h"
#include "host/command_line.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

using corrview::resolve_client;
using Severity = eil1::IMessageBridge::Severity;

TEST(ClientContext, TheOptionWinsOverTheEnvironment)
{
    EXPECT_FALSE(resolve_client(std::nullopt, nullptr).is_ide());
    EXPECT_TRUE(resolve_client(std::nullopt, "VS").is_ide());
    EXPECT_FALSE(resolve_client(std::nullopt, "vs").is_ide()) << "the name is exact";
    EXPECT_FALSE(resolve_client(std::string("cli"), "VS").is_ide());
    EXPECT_EQ(resolve_client(std::string(""), "VS").client_id, "");
    EXPECT_TRUE(resolve_client(std::string("VS"), "cli").is_ide());

    EXPECT_EQ(corrview::parse_command_line({"--client", "VS", "dir"}).client, "VS");
    EXPECT_EQ(corrview::parse_command_line({"--client=VS"}).client, "VS");
    EXPECT_FALSE(corrview::parse_command_line({"dir"}).client.has_value());
    EXPECT_EQ(corrview::parse_command_line({"--client"}).error, "--client needs a client name");
}

TEST(ClientContext, EveryFieldIsOneLineAndComesBackWhole)
{
    const std::wstring title = L"Can\\not\topen";
    const std::wstring text = L"Folder «kein Ergebnis ü»\nline two\r\n\\t is not a tab";
    const std::string line = corrview::message_line(Severity::Warning, title, text);
    ASSERT_EQ(line.back(), '\n');
    EXPECT_EQ(line.find('\n'), line.size() - 1) << line;
    std::vector<std::string> fields;
    std::istringstream in(line.substr(0, line.size() - 1));
    for (std::string field; std::getline(in, field, '\t');)
        fields.push_back(field);
    ASSERT_EQ(fields.size(), 4u) << line;
    EXPECT_EQ(fields[0], "corrview-message");
    EXPECT_EQ(fields[1], "warning");
    EXPECT_EQ(corrview::unescape_field(fields[2]), title);
    EXPECT_EQ(corrview::unescape_field(fields[3]), text);
    EXPECT_EQ(corrview::status_line(L"a\tb"), "corrview-status\ta\\tb\n");
}

TEST(ClientContext, TheBridgeWritesAndSaysWhenItCannot)
{
    std::ostringstream out;
    corrview::stream_message_bridge_t bridge(out);
    EXPECT_TRUE(bridge.ShowMessage(Severity::Error, L"Title", L"Text"));
    bridge.ShowStatus(L"24 problems");
    bridge.ShowStatus(nullptr);
    EXPECT_EQ(out.str(), "corrview-message\terror\tTitle\tText\n"
                         "corrview-status\t24 problems\n"
                         "corrview-status\t\n");
    EXPECT_EQ(bridge.GetExtension(), nullptr);

    // The IDE has gone: the viewer shows the message itself.
    out.setstate(std::ios::badbit);
    EXPECT_FALSE(bridge.ShowMessage(Severity::Info, L"Title", L"Text"));
}

} // namespace
