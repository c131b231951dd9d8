#include "MailCore/Model/SenderName.h"

#include <gtest/gtest.h>

namespace MailCore {
namespace {

TEST(SenderName, IsTheNameWithoutItsAddress) {
    struct Case {
        const char* from;
        const char* shown;
    };
    const Case cases[] = {
        {"Jane Doe <jane@tessel.example>", "Jane Doe"},
        {"\"Doe, Jane \\\"JD\\\"\" <jane@tessel.example>", "Doe, Jane \"JD\""},
        {"Doe, Jane <jane@tessel.example>, Other <o@tessel.example>", "Doe, Jane"},
        {"jane@tessel.example (Jane (at work))", "Jane (at work)"},
        {"jane@tessel.example, other@tessel.example (Other)",
         "jane@tessel.example, other@tessel.example (Other)"},
        {"Jane <jane@tessel.example> (at work)", "Jane"},
        {"王小明 <wang@tessel.example>", "王小明"},
        {"jane@tessel.example", "jane@tessel.example"},
        {" <jane@tessel.example> ", "jane@tessel.example"},
        {"\"jane@tessel.example\" <jane@tessel.example>", "jane@tessel.example"},
        {"Jane", "Jane"},
        {"", ""},
        {"<>", "<>"},
        // A name that poses as another address gives way to the true one.
        {"\"service@bank.example\" <thief@tessel.example>", "thief@tessel.example"},
        {"service＠bank.example <thief@tessel.example>", "thief@tessel.example"},
        {"thief@tessel.example (service@bank.example)", "thief@tessel.example"},
        {"\"service@bank.example\" <>", "\"service@bank.example\" <>"},
        {"\u200B\u2800 <jane@tessel.example>", "jane@tessel.example"}, // a name that nobody sees
        {"service﹫bank.example <thief@tessel.example>", "thief@tessel.example"},
        // What is never closed ends with the value.
        {"\"Jane", "Jane"},
        {"Jane <jane@tessel.example", "Jane"},
        {"Jane (at", "Jane"},
        {"Jane \\", "Jane \\"},
        {"\"Jane\\", "Jane\\"},
    };
    for (const Case& test : cases) EXPECT_EQ(senderName(test.from), test.shown) << test.from;
}

} // namespace
} // namespace MailCore
