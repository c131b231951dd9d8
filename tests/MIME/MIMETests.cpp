#include "MailCore/MIME/MIME.h"

#include "MailCore/Model/Limits.h"
#include "tests/Support/Case.h"
#include "tests/Support/Errors.h"
#include "tests/Support/MailBuilder.h"

#include <gmock/gmock.h>

#include <tuple>

using namespace MailCore;
using MailCore::Testing::errorOf;
using MailCore::Testing::Mail;
using testing::ElementsAre;

namespace {

/// The message, whose texts are also what `texts` gives.
MailMessage parsed(const Bytes& message) {
    MailMessage result = MIME::parse(message, never);
    const MIME::SearchedTexts texts{
        .to = result.to, .cc = result.cc, .plain = result.plain, .html = result.html};
    EXPECT_EQ(MIME::texts(message, never), texts);
    return result;
}

/// The error that `parse` throws, as `texts` does, as its name.
std::string failure(const Bytes& message, const Cancelled& cancelled = never) {
    EXPECT_EQ(errorOf([&] { return MIME::texts(message, never); }),
              errorOf([&] { return MIME::parse(message, never); }));
    return errorOf([&] { return MIME::parse(message, cancelled); });
}

Bytes raw(std::string_view text) {
    return copyOf(bytesOf(text));
}

} // namespace

TEST(MIMEParse, ReadsTheDisplayFields) {
    const MailMessage message = parsed(Mail()
                                           .subject("=?utf-8?Q?Caf=C3=A9?=")
                                           .from("=?utf-8?Q?J=C3=BCrgen?= <j@example.org>")
                                           .header("TO", "a@example.org,\r\n b@example.org")
                                           .header("to", "second@example.org")
                                           .date("=?utf-8?Q?today?=")
                                           .text("Hello"));
    EXPECT_EQ(message.subject, "Café");
    EXPECT_EQ(message.from, "Jürgen <j@example.org>");
    EXPECT_EQ(message.to, "a@example.org, b@example.org");
    EXPECT_EQ(message.cc, "");
    EXPECT_EQ(message.date, "=?utf-8?Q?today?=");
    EXPECT_EQ(message.headers.size(), 6U);
    EXPECT_EQ(message.plain, "Hello");
}

TEST(MIMEParse, TakesBodyTextFromWhereverItStands) {
    struct Case {
        std::string_view name;
        Bytes message;
        std::string_view plain;
        std::string_view html;
    };
    const Mail text = Mail().text("Hello");
    const Mail html = Mail().html("<b>Hi</b>");
    const Mail image = Mail().type("image/png");
    const std::string longest(199, 'b');
    const Case cases[] = {
        {"no type", Mail().subject("x").body("Hello"), "Hello", ""},
        {"an unknown charset in an odd type", Mail().type("TEXT/Plain ; charset=\"x-nobody\"").body("\xE9"),
         "é", ""},
        {"a type of blanks", raw("Content-Type: ; ;x\n\nHello"), "Hello", ""},
        {"Base64", Mail().type("text/plain; charset=koi8-r").base64("\xF0"), "П", ""},
        {"quoted-printable", Mail().type("text/html; charset=utf-8").quotedPrintable("é <b>"), "", "é <b>"},
        {"an unknown transfer encoding", Mail().header("Content-Transfer-Encoding", "x").text("=41"), "=41",
         ""},
        {"a text part after an image", Mail().part(image).part(text), "Hello", ""},
        {"a text part sent as a file", Mail().part(Mail().disposition("ATTACHMENT").text("Hi")), "", ""},
        {"a text part with a name", Mail().part(Mail().disposition("inline; filename=a").text("Hi")), "", ""},
        {"an inline text part", Mail().part(Mail().disposition("inline").text("Hi")), "Hi", ""},
        {"the longest boundary",
         Mail().type("multipart/mixed; boundary=" + longest).body("--" + longest + "\n\n\nx"), "x", ""},
        {"two texts", Mail().part(text).part(text), "Hello\n\nHello", ""},
        {"plain, then HTML", Mail().part(text).part(html), "Hello\n\n",
         "<div style=\"white-space:pre-wrap\">Hello</div>\n<b>Hi</b>"},
        {"HTML, then plain", Mail().part(html).part(text), "Hello",
         "<b>Hi</b>\n<div style=\"white-space:pre-wrap\">Hello</div>"},
        {"alternatives", Mail().multipart("alternative").part(text).part(html), "Hello", "<b>Hi</b>"},
        {"the last of several alternatives",
         Mail().multipart("alternative").part(html).part(Mail().html("2")).part(Mail().html("")).part(text),
         "Hello", "2"},
        {"alternatives with a footer",
         Mail().part(Mail().multipart("alternative").part(text).part(html)).part(text), "Hello\n\nHello",
         "<b>Hi</b>\n<div style=\"white-space:pre-wrap\">Hello</div>"},
        {"an image after text", Mail().part(text).part(image), "Hello\n\n", ""},
        {"escaped when it moves into HTML", Mail().part(html).part(Mail().text("<&>")), "<&>",
         "<b>Hi</b>\n<div style=\"white-space:pre-wrap\">&lt;&amp;&gt;</div>"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const MailMessage message = parsed(c.message);
        EXPECT_EQ(message.plain, c.plain);
        EXPECT_EQ(message.html, c.html);
    }
}

TEST(MIMEParse, ListsEverythingElseAsAttachments) {
    for (const std::string& type :
         {std::string("multipart/mixed"), "multipart/mixed; boundary=" + std::string(200, 'b')}) {
        const MailMessage message = parsed(Mail().part(Mail().type(type).body("x")).bytes());
        ASSERT_EQ(message.attachments.size(), 1U);
        EXPECT_EQ(message.attachments[0].type, "multipart/mixed");
        EXPECT_EQ(charsOf(message.attachments[0].bytes), "x");
    }
    const MailMessage nested = parsed(Mail()
                                          .part(Mail()
                                                    .multipart("related")
                                                    .part(Mail().html("x"))
                                                    .part(Mail().type("image/gif").contentID(" <a b@c> ")))
                                          .part(Mail().file("last.bin", "x/y", "")));
    ASSERT_EQ(nested.attachments.size(), 2U);
    EXPECT_EQ(nested.attachments[0].contentID, "a b@c");
    EXPECT_EQ(nested.attachments[1].name, "last.bin");
}

TEST(MIMEParse, RefusesWhatGoesBeyondItsLimits) {
    const auto nested = [](int levels) { // multiparts inside each other, a text innermost
        Mail mail = Mail().text("x");
        for (int level = 0; level < levels; ++level) mail = Mail().part(mail);
        return mail;
    };
    const auto wide = [](int parts) {
        Mail mail;
        for (int index = 0; index < parts; ++index) mail.part(Mail().text("x"));
        return mail;
    };
    const std::string large(Limits::message, 'x');
    const auto heavy = [&large](int levels) { // almost 8 MiB, charged once per level
        Mail mail = Mail().type("image/png").body(std::string_view(large).substr(0, 8'380'000));
        for (int level = 0; level < levels; ++level) mail = Mail().part(mail);
        return mail;
    };
    const MailCore::Testing::Case<Bytes, std::string_view> cases[] = {
        {"nothing", {}, "malformed"},
        {"no field", raw("Hello\r\nyou there: x\r\n\r\nbody"), "malformed"},
        {"broken Base64 of a text", Mail().header("Content-Transfer-Encoding", "base64").text("QUJ"),
         "malformed"},
        {"the deepest text", nested(16), "none"},
        {"a text deeper than that", nested(17), "tooMany"},
        {"as many parts as may be", wide(499), "none"},
        {"one more", wide(500), "tooMany"},
        {"as many bytes as may be", raw("A: 1\n\n" + large.substr(6)), "none"},
        {"one more byte", raw("A: 1\n\n" + large.substr(5)), "tooLarge"},
        {"large parts, deep", heavy(11), "none"},
        {"large parts, too deep", heavy(12), "tooLarge"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(failure(c.given), c.expected);
    }
    const MailMessage capped = parsed(raw("A: 1\n\n" + large.substr(6)));
    EXPECT_EQ(capped.plain.size(), static_cast<std::size_t>(Limits::rendered) - 2);
}

TEST(MIMEPart, PaysFromWhatIsLeft) {
    const Bytes message = Mail().part(Mail().text("one")).part(Mail().text("two")).bytes();
    const auto left = [&message](int depth, int count, std::int64_t budget) {
        MailMessage parts;
        const std::string error =
            errorOf([&] { return MIME::part(message, depth, count, budget, parts, never), 0; });
        return std::tuple(error, count, parts.plain);
    };
    const auto size = static_cast<std::int64_t>(message.size());
    EXPECT_EQ(left(15, 497, 2 * size), std::tuple("none", 500, "one\n\ntwo"));
    EXPECT_EQ(left(15, 498, 2 * size), std::tuple("tooMany", 501, "one"));
    EXPECT_EQ(left(16, 0, 2 * size), std::tuple("tooMany", 2, ""));
    EXPECT_EQ(left(0, 0, size - 1), std::tuple("tooLarge", 0, ""));
}

TEST(MIMEParse, StopsAtAnyLineWhenCancelled) {
    const Bytes message = Mail().part(Mail().text("one")).part(Mail().text("two")).bytes();
    int asked = 0;
    const auto after = [&asked](int answers) {
        asked = 0;
        return [&asked, answers] { return ++asked > answers; };
    };
    EXPECT_EQ(failure(message, after(1'000)), "none");
    const int questions = asked; // parse, three entities, and the nine lines of the body
    EXPECT_EQ(questions, 13);
    for (int answers = 0; answers < questions; ++answers) {
        EXPECT_EQ(failure(message, after(answers)), "cancelled");
        EXPECT_EQ(asked, answers + 1);
    }
}
