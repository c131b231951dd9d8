#include "MailCore/MIME/MIME.h"

#include "MailCore/Model/Limits.h"
#include "MailCore/Model/MailError.h"
#include "tests/Support/MailBuilder.h"

#include <gmock/gmock.h>

#include <tuple>

using namespace MailCore;
using MailCore::Testing::Mail;
using testing::ElementsAre;

namespace {

MIME::Split split(std::string_view entity) {
    return MIME::split(bytesOf(entity));
}
std::string bodyOf(std::string_view entity) {
    return std::string(charsOf(split(entity).body));
}

/// The message, whose texts are also what `texts` gives.
MailMessage parsed(const Bytes& message) {
    MailMessage result = MIME::parse(message, never);
    const MIME::Texts texts{.to = result.to, .cc = result.cc, .plain = result.plain, .html = result.html};
    EXPECT_EQ(MIME::texts(message, never), texts);
    return result;
}

template <typename Work>
std::string errorOf(Work work) {
    try {
        static_cast<void>(work());
        return "";
    } catch (const MailError& error) {
        return std::string(error.name());
    }
}

/// The error that `parse` throws, as `texts` does, as its name; empty when there is none.
std::string failure(const Bytes& message, const Cancelled& cancelled = never) {
    EXPECT_EQ(errorOf([&] { return MIME::texts(message, never); }),
              errorOf([&] { return MIME::parse(message, never); }));
    return errorOf([&] { return MIME::parse(message, cancelled); });
}

Bytes raw(std::string_view text) {
    return copyOf(bytesOf(text));
}

} // namespace

TEST(MIMESplit, ReadsFieldsAsTheyStand) {
    struct Case {
        std::string_view name;
        std::string_view entity;
        std::vector<Header> headers;
    };
    const Case cases[] = {
        {"order, case and duplicates", "b: 1\r\nA: 2\r\nB:3\r\n\r\n", {{"b", "1"}, {"A", "2"}, {"B", "3"}}},
        {"folded lines", "A: one\r\n\t two \r\n  three\r\n\r\n", {{"A", "one two three"}}},
        {"a folded blank line", "A: one\n \nB: 2\n\n", {{"A", "one "}, {"B", "2"}}},
        {"a continuation before any field", " x\nA: 1\n\n", {{"A", "1"}}},
        {"a continuation after a dropped line", "A: 1\nbad name: 2\n 3\n\n", {{"A", "1 3"}}},
        {"names that are none", "From x\nA B: 1\n\xC3\xA9: 2\n: 3\nno colon\nC:\n\n", {{"C", ""}}},
        {"a blank before the colon", "A : 1\n\n", {}},
        {"bytes that are not UTF-8", "A: \xE9\n\n", {{"A", "\uFFFD"}}},
        {"no blank line", "A: 1\r\nB: 2", {{"A", "1"}, {"B", "2"}}},
        {"a CR left at the end", "A: 1\r\n\n", {{"A", "1\r"}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(split(c.entity).headers, c.headers);
    }
}

TEST(MIMESplit, FindsTheBodyAfterTheFirstBlankLine) {
    EXPECT_EQ(bodyOf("A: 1\r\n\r\nx\n\ny"), "x\n\ny");
    EXPECT_EQ(bodyOf("A: 1\n\nx\r\n\r\ny"), "x\r\n\r\ny");
    EXPECT_EQ(bodyOf("A: 1\r\n\nx"), "x");
    EXPECT_EQ(bodyOf("A: 1\n\r\nx"), "") << "neither CRLF CRLF nor LF LF";
    EXPECT_EQ(bodyOf("\n\nx"), "x");
    EXPECT_EQ(bodyOf("\r\nx"), "");
    EXPECT_EQ(bodyOf(""), "");
}

TEST(MIMESplit, KeepsWithinItsLimits) {
    std::string many;
    for (int index = 0; index < 2'001; ++index) many += "A" + std::to_string(index) + ": v\n";
    many += " more\n\nbody";
    const MIME::Split fields = split(many);
    ASSERT_EQ(fields.headers.size(), 2'000U);
    EXPECT_EQ(fields.headers.back(), (Header{"A1999", "v more"}));

    const std::string longValue(300'000, 'v');
    const std::string entity = "A: " + longValue + "\nB: 2\n\nbody";
    const MIME::Split cut = split(entity); // its body points into the entity
    ASSERT_EQ(cut.headers.size(), 1U);
    EXPECT_EQ(cut.headers[0].value.size(), 262'144U - 3);
    EXPECT_EQ(charsOf(cut.body), "body");
}

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
    struct Case {
        std::string_view name;
        Mail part;
        std::string_view filename;
        std::string_view type;
        std::string_view content;
        bool available = true;
    };
    const Case cases[] = {
        {"a file", Mail().file("a.pdf", "Application/PDF", "%PDF"), "a.pdf", "application/pdf", "%PDF"},
        {"an image without a name", Mail().type("image/jpeg").base64("\xFF\xD8"), "Image.jpg", "image/jpeg",
         "\xFF\xD8"},
        {"a type not in the table", Mail().type("application/octet-stream").body("x"), "Attachment",
         "application/octet-stream", "x"},
        {"a text sent as a file", Mail().disposition("attachment").text("x"), "Attachment.txt", "text/plain",
         "x"},
        {"a message", Mail().type("message/rfc822").body("Subject: inner\r\n\r\nx"), "Attached message.eml",
         "message/rfc822", "Subject: inner\r\n\r\nx"},
        {"broken Base64", Mail().type("image/png").header("Content-Transfer-Encoding", "BASE64").body("QUJ"),
         "Image.png", "image/png", "", false},
        {"a multipart without a boundary", Mail().type("multipart/mixed").body("x"), "Attachment",
         "multipart/mixed", "x"},
        {"a boundary of 200 bytes",
         Mail().type("multipart/mixed; boundary=" + std::string(200, 'b')).body("x"), "Attachment",
         "multipart/mixed", "x"},
        {"a parameter where the type should be", Mail().type("; charset=utf-8").body("x"), "Attachment",
         "charset=utf-8", "x"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const MailMessage message = parsed(Mail().part(c.part).bytes());
        ASSERT_EQ(message.attachments.size(), 1U);
        const MailAttachment& attachment = message.attachments[0];
        EXPECT_EQ(attachment.name, c.filename);
        EXPECT_EQ(attachment.type, c.type);
        EXPECT_EQ(charsOf(attachment.bytes), c.content);
        EXPECT_EQ(attachment.available, c.available);
        EXPECT_EQ(message.plain + message.html, "");
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

TEST(MIMEParse, CutsMultipartBodiesAtTheirDelimiters) {
    struct Case {
        std::string_view name;
        std::string_view body;
        std::string_view plain;
    };
    const Case cases[] = {
        // every part of "\r\nTEXT" has no headers
        {"preamble and epilogue", "before\r\n--b\r\n\r\n\r\nx\r\n--b--\r\nafter\r\n--b\r\n\r\n\r\ny", "x"},
        {"line feeds only", "--b\n\n\nx\n--b\n\n\ny\n--b--\n", "x\n\ny"},
        {"blanks after the delimiter", "--b \t\r\n\n\nx\n--b--junk\n--b\n\n\ny", "x"},
        {"another line that begins alike", "--b\n\n\nx\n--bc\n -- b\n--b--", "x\n--bc\n -- b"},
        {"no closing delimiter", "--b\n\n\nx\n", "x\n"},
        {"only the last line end belongs to the delimiter", "--b\n\n\nx\r\n\r\n--b--", "x\r\n"},
        {"an empty part between delimiters", "--b\n--b\n\n\nx\n--b--", "x"},
        {"no delimiter", "x\ny\n", ""},
        {"nothing after the first delimiter", "--b", ""},
        {"closed at once", "--b--\n\n\nx", ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const MailMessage message = parsed(Mail().type("multipart/mixed; boundary=b").body(c.body));
        EXPECT_EQ(message.plain, c.plain);
        EXPECT_TRUE(message.attachments.empty());
    }
    const std::string longest(199, 'b');
    EXPECT_EQ(
        parsed(Mail().type("multipart/mixed; boundary=" + longest).body("--" + longest + "\n\n\nx")).plain,
        "x");
    for (std::size_t size = 131'060; size < 131'076; ++size) { // of what is looked through at once
        const std::string text(size, 'x');
        EXPECT_EQ(
            parsed(Mail().type("multipart/mixed; boundary=b").body("--b\n\n\n" + text + "\n--b--")).plain,
            text);
    }
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
    struct Case {
        std::string_view name;
        Bytes message;
        std::string_view failure;
    };
    const Case cases[] = {
        {"nothing", {}, "malformed"},
        {"no field", raw("Hello\r\nyou there: x\r\n\r\nbody"), "malformed"},
        {"broken Base64 of a text", Mail().header("Content-Transfer-Encoding", "base64").text("QUJ"),
         "malformed"},
        {"the deepest text", nested(16), ""},
        {"a text deeper than that", nested(17), "tooMany"},
        {"as many parts as may be", wide(499), ""},
        {"one more", wide(500), "tooMany"},
        {"as many bytes as may be", raw("A: 1\n\n" + large.substr(6)), ""},
        {"one more byte", raw("A: 1\n\n" + large.substr(5)), "tooLarge"},
        {"large parts, deep", heavy(11), ""},
        {"large parts, too deep", heavy(12), "tooLarge"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(failure(c.message), c.failure);
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
    EXPECT_EQ(left(15, 497, 2 * size), std::tuple("", 500, "one\n\ntwo"));
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
    EXPECT_EQ(failure(message, after(1'000)), "");
    const int questions = asked; // parse, three entities, and the nine lines of the body
    EXPECT_EQ(questions, 13);
    for (int answers = 0; answers < questions; ++answers) {
        EXPECT_EQ(failure(message, after(answers)), "cancelled");
        EXPECT_EQ(asked, answers + 1);
    }
}
