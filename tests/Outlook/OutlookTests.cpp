#include "MailCore/Outlook/Outlook.h"

#include "MailCore/Model/Limits.h"
#include "tests/Support/Case.h"
#include "tests/Support/Errors.h"
#include "tests/Support/OutlookBuilder.h"

#include <gtest/gtest.h>

namespace MailCore {
namespace {

using namespace Testing;
using namespace std::literals;
using File = ContainerFile;

constexpr std::uint64_t newYear = 133'486'317'300'000'000; // 2 Jan 2024 01:15:30
const std::string newYearText = "2 Jan 2024 01:15:30 +0000";
constexpr std::uint64_t year10000 = 2'650'467'744'000'000'000;

MailMessage parsed(const OutlookMail& mail) {
    return Outlook::parse(mail.bytes());
}

/// With a subject, so that nothing else has to be there.
OutlookMail note() {
    return OutlookMail().subject("Note");
}

/// An attachment with content and nothing that says what it is.
OutlookMail attachment(std::string_view content = "content") {
    return OutlookMail().binary(0x3701, content);
}

std::string errorOfParsing(ByteView bytes) {
    return errorOf([&] { (void)Outlook::parse(bytes); });
}

std::string errorOfParsing(const OutlookMail& mail) {
    return errorOfParsing(mail.bytes());
}

TEST(OutlookMessages, TakeWhatTheirPropertiesSay) {
    const MailMessage message = parsed(OutlookMail()
                                           .subject("Minutes – 会议")
                                           .from("Ana Aalto", "ana@tessel.example")
                                           .to("Bo; Cy")
                                           .cc("Di")
                                           .plain("One\r\nTwo\r\n")
                                           .html("<p>One</p>")
                                           .submitted(newYear)
                                           .recipient("Never", "read@tessel.example")
                                           .file("a.txt", "text/plain", "abc", "<id>"));
    EXPECT_EQ(message.subject, "Minutes – 会议");
    EXPECT_EQ(message.from, "Ana Aalto <ana@tessel.example>");
    EXPECT_EQ(message.to, "Bo; Cy");
    EXPECT_EQ(message.cc, "Di");
    EXPECT_EQ(message.plain, "One\r\nTwo");
    EXPECT_EQ(message.html, "<p>One</p>");
    EXPECT_EQ(message.date, newYearText);
    EXPECT_EQ(message.headers, std::vector<Header>());
    ASSERT_EQ(message.attachments.size(), 1U);
    const MailAttachment& attachment = message.attachments[0];
    const MailAttachment expected{.id = attachment.id,
                                  .name = "a.txt",
                                  .type = "text/plain",
                                  .bytes = copyOf(bytesOf("abc")),
                                  .contentID = "<id>"};
    EXPECT_EQ(attachment, expected);
}

TEST(OutlookMessages, FallBackToTransportHeaders) {
    const std::string headers =
        "Received: by a\r\n\tfor b\r\nFrom: =?utf-8?Q?Ren=C3=A9e?= <renee@tessel.example>\r\n"
        "To: Bo <bo@tessel.example>\r\nsubject: =?iso-8859-1?Q?l'=E9t=E9?=\r\n"
        "Date: Tue, 2 Jan 2024 09:15:30 +0800\r\n";
    const MailMessage message = parsed(OutlookMail().transport(headers));
    EXPECT_EQ(message.subject, "l'été");
    EXPECT_EQ(message.from, "Renée <renee@tessel.example>");
    EXPECT_EQ(message.to, "");
    EXPECT_EQ(message.date, "Tue, 2 Jan 2024 09:15:30 +0800");
    EXPECT_EQ(message.headers.size(), 5U);
    EXPECT_EQ(message.headers.at(0), (Header{"Received", "by a for b"}));
    EXPECT_EQ(message.plain, "");

    const MailMessage filled =
        parsed(OutlookMail().transport(headers).subject("Own").from("", "own@tessel.example"));
    EXPECT_EQ(filled.subject, "Own");
    EXPECT_EQ(filled.from, "own@tessel.example");
    // Without a blank line there is no body, and what looks like one is a header.
    EXPECT_EQ(parsed(OutlookMail().transport("Subject: s")).subject, "s");
    EXPECT_EQ(errorOfParsing(OutlookMail().transport("\r\nSubject: after the blank line")), "none");
}

TEST(OutlookMessages, NameTheirSender) {
    const Case<OutlookMail, std::string_view> cases[] = {
        {"name and address", note().from("Ana", "a@b"), "Ana <a@b>"},
        {"name alone", note().from("Ana", ""), "Ana"},
        {"address alone", note().from("", "a@b"), "a@b"},
        {"no SMTP address", note().from("Ana", "").text(0x0C1F, "/o=x/cn=ana"), "Ana </o=x/cn=ana>"},
        {"an empty SMTP address", note().text(0x5D01, "\0"sv).text(0x0C1F, "a@b"), "a@b"},
        {"both addresses", note().from("", "smtp@b").text(0x0C1F, "other@b"), "smtp@b"},
        {"a header besides the name", note().from("Ana", "").transport("From: b@c"), "Ana"},
        {"a header alone", note().transport("From: Bo <b@c>"), "Bo <b@c>"},
        {"nobody", note(), ""},
    };
    for (const auto& c : cases) EXPECT_EQ(parsed(c.given).from, c.expected) << c.name;
}

TEST(OutlookStrings, AreUnicodeOrBytesOfACodePage) {
    const std::string chinese = "\xC9\xBD\xCB\xAE"s; // 山水
    struct Case {
        std::string_view name;
        OutlookMail mail;
        std::string subject;
        std::string plain;
    };
    const auto both = [](std::string_view bytes) {
        return OutlookMail().from("x", "").narrow(0x0037, bytes).narrow(0x1000, bytes);
    };
    const Case cases[] = {
        {"no code page", both("caf\xE9 \x80"), "café €", "café €"},
        {"message code page", both(chinese).codepage(936), "山水", "山水"},
        {"internet code page alone", both(chinese).internetCodepage(936), "山水", "山水"},
        {"both: the internet code page is for the body", both(chinese).codepage(1252).internetCodepage(936),
         "É½Ë®", "山水"},
        {"both, the other way", both(chinese).codepage(936).internetCodepage(1252), "山水", "É½Ë®"},
        {"message code page 0", both(chinese).codepage(0).internetCodepage(936), "山水", "山水"},
        {"UTF-8", both("山水").codepage(65001), "山水", "山水"},
        {"Cyrillic", both("\xCF\xF0\xE8").codepage(1251), "При", "При"},
        {"a page that nobody knows", both("caf\xE9").codepage(99'999), "café", "café"},
        {"the last of two records", both(chinese).codepage(1252).codepage(936), "山水", "山水"},
        {"Unicode before bytes", both("bytes").subject("text").plain("body"), "text", "body"},
        {"empty Unicode before bytes", both("bytes").subject("").plain(""), "", ""},
        {"ends of control characters", both("\r\n\t a \r\n\0"s), " a ", " a "},
        {"a terminator in Unicode", OutlookMail().subject("a\0"sv).plain("\u200F b\r\n\0"sv), "a", " b"},
        {"nothing but a terminator", OutlookMail().from("x", "").subject("\0"sv), "", ""},
        {"half a unit at the end", OutlookMail().units(0x0037, "a\0b"sv), "a\uFFFD", ""},
        // The converter goes on after the first of its bytes.
        {"half a character", OutlookMail().units(0x0037, "\x3D\xD8\x61\x00"sv), "\uFFFD\u61D8\uFFFD", ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const MailMessage message = parsed(c.mail);
        EXPECT_EQ(message.subject, c.subject);
        EXPECT_EQ(message.plain, c.plain);
    }
}

TEST(OutlookStrings, AreReadInTheCharsetOfTheMessageAround) {
    const OutlookMail inner = OutlookMail().narrow(0x0037, "\xC9\xBD").narrow(0x1000, "\xCB\xAE");
    const auto nested = [](const OutlookMail& outer) {
        return parsed(outer).attachments.at(0).embedded.at(0);
    };
    const MailMessage inherited = nested(note().codepage(936).internetCodepage(1252).attachedMessage(inner));
    EXPECT_EQ(inherited.subject, "山");
    EXPECT_EQ(inherited.plain, "水"); // the charset of the message, not that of its body
    EXPECT_EQ(nested(note().attachedMessage(inner)).subject, "É½");
    EXPECT_EQ(nested(note().codepage(1252).attachedMessage(OutlookMail(inner).codepage(936))).subject, "山");
    const OutlookMail own = OutlookMail(inner).internetCodepage(936);
    EXPECT_EQ(nested(note().codepage(1252).attachedMessage(own)).subject, "山");
    const OutlookMail between = OutlookMail().attachedMessage(inner);
    EXPECT_EQ(nested(note().codepage(936).attachedMessage(between)).attachments.at(0).embedded.at(0).subject,
              "山");

    OutlookMail file = attachment().narrow(0x3707, "\xC9\xBD.txt");
    OutlookMail entry = OutlookMail().narrow(0x3001, "\xC9\xBD");
    const MailMessage message = parsed(note().codepage(936).attachment(file).recipient(entry));
    EXPECT_EQ(message.attachments.at(0).name, "山.txt");
    EXPECT_EQ(message.to, "山");
}

TEST(OutlookBodies, AreTakenFromWhereTheyAre) {
    const Case<OutlookMail, std::string_view> cases[] = {
        {"bytes in UTF-8 for want of a charset", note().html("<p>é</p>\r\n\0"sv), "<p>é</p>"},
        {"bytes of the internet code page", note().internetCodepage(1252).html("<p>\xE9</p>"), "<p>é</p>"},
        {"bytes, not of the message code page", note().codepage(936).html("<p>é</p>"), "<p>é</p>"},
        {"bytes of the page's own charset", note().codepage(65001).html("<meta charset=windows-1251>\xCF"),
         "<meta charset=windows-1251>П"},
        {"the internet code page before the page's own",
         note().internetCodepage(1252).html("<meta charset=windows-1251>\xCF"),
         "<meta charset=windows-1251>Ï"},
        {"text when the bytes are none", note().html("\r\n").text(0x1013, "<i>text</i>"), "<i>text</i>"},
        {"text alone", note().text(0x1013, "<i>text</i>\0"sv), "<i>text</i>"},
        {"8-bit text", note().codepage(1251).narrow(0x1013, "<i>\xCF</i>"), "<i>П</i>"},
        {"bytes before text", note().html("<b>").text(0x1013, "<i>"), "<b>"},
        {"compressed text only", note().binary(0x1009, "LZFu"), ""},
    };
    for (const auto& c : cases) EXPECT_EQ(parsed(c.given).html, c.expected) << c.name;
}

TEST(OutlookBodies, AreCutAtFourMebibytes) {
    const auto most = static_cast<std::size_t>(Limits::rendered);
    const std::string fitting(most, 'a');
    const std::string split = std::string(most - 1, 'a') + "éé";
    const MailMessage message = parsed(OutlookMail().narrow(0x1000, fitting).html(split));
    EXPECT_EQ(message.plain, fitting);
    EXPECT_EQ(message.html, fitting.substr(1) + "\uFFFD");
    EXPECT_EQ(parsed(OutlookMail().narrow(0x1000, fitting + "b")).plain, fitting);
}

TEST(OutlookDates, ComeFromHeadersOrTimes) {
    constexpr std::uint32_t submit = 0x0039'0040, delivery = 0x0E06'0040;
    const Case<OutlookMail, std::string_view> cases[] = {
        {"a readable header", note().transport("Date: Wed, 3 Jan 2024 10:00:00 +0100").submitted(newYear),
         "Wed, 3 Jan 2024 10:00:00 +0100"},
        {"an unreadable header", note().transport("Date: someday").submitted(newYear), newYearText},
        {"an unreadable header and no time", note().transport("Date: someday"), "someday"},
        {"the submit time first", note().delivered(1).submitted(newYear), newYearText},
        {"the delivery time", note().delivered(newYear), newYearText},
        {"a submit time of 0 is there", note().submitted(0).delivered(newYear), ""},
        {"a submit time of 0 beside a header", note().submitted(0).transport("Date: someday"), "someday"},
        {"the last of two", note().submitted(0).fixed(submit, newYear), newYearText},
        {"the first instant", note().submitted(1), "1 Jan 1601 00:00:00 +0000"},
        {"before 1970", note().delivered(116'444'735'999'999'999), "31 Dec 1969 23:59:59 +0000"},
        {"a leap day", note().submitted(125'962'560'000'000'000), "29 Feb 2000 00:00:00 +0000"},
        {"the last instant", note().submitted(year10000 - 1), "31 Dec 9999 23:59:59 +0000"},
        {"the year 10000", note().submitted(year10000), ""},
        {"a negative time", note().fixed(delivery, ~std::uint64_t{0}), ""},
        {"none", note(), ""},
    };
    for (const auto& c : cases) EXPECT_EQ(parsed(c.given).date, c.expected) << c.name;
}

TEST(OutlookRecipients, FillWhatHasNoDisplayText) {
    struct Case {
        std::string_view name;
        OutlookMail mail;
        std::string_view to;
        std::string_view cc;
    };
    const auto everybody = [] {
        return note()
            .recipient("Ana", "a@t", 1)
            .recipient("Bcc", "hidden@t", 3)
            .recipient("", "b@t", 1)
            .recipient("Cy", "", 2)
            .recipient("", "", 1)
            .recipient("Di", "d@t", 2)
            .recipient("Nobody", "n@t", 0);
    };
    const auto entry = [] { return OutlookMail().text(0x3001, "Ana"); };
    const Case cases[] = {
        {"no display text", everybody(), "Ana <a@t>, b@t", "Cy, Di <d@t>"},
        {"display To", everybody().to("shown"), "shown", "Cy, Di <d@t>"},
        {"display Cc", everybody().cc("shown"), "Ana <a@t>, b@t", "shown"},
        {"both", everybody().to("t").cc("c"), "t", "c"},
        {"display text of control characters", everybody().to("\0"sv).cc("c"), "Ana <a@t>, b@t", "c"},
        {"no type", note().recipient(entry()), "Ana", ""},
        {"no property stream", note().recipient(entry().withoutPropertyStream()), "Ana", ""},
        {"half a record", note().recipient(entry().propertyStream(std::string(16, '\0') + "\x03\0\x15\x0C"s)),
         "Ana", ""},
        {"half a header", note().recipient(entry().propertyStream("1234567")), "Ana", ""},
        {"other address", note().recipient(entry().text(0x39FE, "\0"sv).text(0x3003, "x@y")), "Ana <x@y>",
         ""},
        {"SMTP address first", note().recipient(entry().text(0x39FE, "s@y").text(0x3003, "x@y")), "Ana <s@y>",
         ""},
        {"headers do not count", note().transport("To: h@t\r\nCc: i@t"), "", ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const MailMessage message = parsed(c.mail);
        EXPECT_EQ(message.to, c.to);
        EXPECT_EQ(message.cc, c.cc);
    }
}

TEST(OutlookAttachments, AreFilesMessagesOrObjects) {
    constexpr std::uint32_t method = 0x3705'0003;
    const OutlookMail inner = OutlookMail().subject("Inner");
    struct Case {
        std::string_view name;
        OutlookMail attachment;
        std::string_view fileName;
        std::string_view type;
        std::string_view content; // the subject of an attached message
        bool isMessage = false;
        bool available = true;
        bool isOLE = false;
    };
    const Case cases[] = {
        {"a file", attachment().fixed(method, 1).text(0x3707, "long.txt").text(0x3704, "LONG~1.TXT"),
         "long.txt", "", "content"},
        {"a short name", attachment().text(0x3707, "\0"sv).text(0x3704, "SHORT.TXT"), "SHORT.TXT", "",
         "content"},
        {"no name", attachment().text(0x370E, "image/png\0"sv), "Attachment", "image/png", "content"},
        {"a name with folders", attachment().text(0x3707, "..\\..\\a/b:c\n.txt"), ".._.._a_b_c_.txt", "",
         "content"},
        {"an empty file", attachment("").text(0x3707, "a"), "a", "", ""},
        {"no data", OutlookMail().text(0x3707, "a"), "a", "", "", false, false},
        {"no data, and nothing at all", OutlookMail().withoutPropertyStream(), "Attachment", "", "", false,
         false},
        {"a method that nobody knows", attachment().fixed(method, 77), "Attachment", "", "content"},
        {"a message", OutlookMail().fixed(method, 5).embedded(inner), "Attached message", "message/rfc822",
         "Inner", true},
        {"a message with a name", OutlookMail().fixed(method, 5).text(0x3707, "m.msg").embedded(inner),
         "m.msg", "message/rfc822", "Inner", true},
        {"a message with a type and data",
         attachment().text(0x370E, "text/plain").fixed(method, 5).embedded(inner), "Attached message",
         "message/rfc822", "Inner", true},
        {"a message that does not say so", OutlookMail().embedded(inner), "Attached message",
         "message/rfc822", "Inner", true},
        {"a message that says it is a file", attachment().fixed(method, 1).embedded(inner),
         "Attached message", "message/rfc822", "Inner", true},
        {"an object", attachment().fixed(method, 6).text(0x370E, "t"), "Attachment", "t", "content", false,
         true, true},
        {"an object as a storage", OutlookMail().fixed(method, 6).embedded(inner), "Attachment", "", "",
         false, false, true},
        {"the last of two methods", attachment().fixed(method, 5).fixed(method, 6), "Attachment", "",
         "content", false, true, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const MailAttachment found = parsed(note().attachment(c.attachment)).attachments.at(0);
        EXPECT_EQ(found.name, c.fileName);
        EXPECT_EQ(found.type, c.type);
        EXPECT_EQ(found.embedded.size(), c.isMessage ? 1U : 0U);
        EXPECT_EQ(c.isMessage ? found.embedded.at(0).subject : charsOf(found.bytes), c.content);
        EXPECT_EQ(found.available, c.available);
        EXPECT_EQ(found.isOLE, c.isOLE);
    }
}

TEST(OutlookAttachments, ComeInTheOrderOfTheirStorages) {
    OutlookMail mail;
    for (int index = 0; index < 18; ++index) mail.file("f" + std::to_string(index), "", "");
    const MailMessage message = parsed(mail);
    for (std::size_t index = 0; index < 18; ++index)
        EXPECT_EQ(message.attachments.at(index).name, "f" + std::to_string(index));

    // A stream with such a name is an attachment without anything; other names are none.
    const Bytes odd = Container()
                          .stream("__ATTACH_VERSION1.0_b", "not a storage")
                          .stream("__attach_version1.0_A/__substg1.0_37010102", "data")
                          .stream("__attach_version1.1_c/__substg1.0_37010102", "data")
                          .stream("x/__attach_version1.0_d/__substg1.0_37010102", "data")
                          .file();
    const MailMessage listed = Outlook::parse(odd);
    ASSERT_EQ(listed.attachments.size(), 2U);
    EXPECT_TRUE(listed.attachments[0].available);
    EXPECT_FALSE(listed.attachments[1].available);
}

TEST(OutlookProperties, AreReadBehindTheHeaderOfTheirStream) {
    const auto subject = [](const OutlookMail& mail) {
        return parsed(OutlookMail(mail).narrow(0x0037, "\xC9\xBD")).subject;
    };
    const std::string page936 = "\x03\0\xFD\x3F"s + std::string(4, '\0') + "\xA8\x03\0\0\0\0\0\0"s;
    EXPECT_EQ(subject(OutlookMail().propertyStream(std::string(32, '\0') + page936)), "山");
    EXPECT_EQ(subject(OutlookMail().propertyStream(std::string(24, '\0') + page936)), "É½"); // another header
    EXPECT_EQ(subject(OutlookMail().propertyStream(page936)), "É½");
    EXPECT_EQ(subject(OutlookMail().withoutPropertyStream()), "É½");
    const OutlookMail inner = OutlookMail().narrow(0x0037, "\xC9\xBD");
    const auto nested = [&](std::size_t header) {
        const OutlookMail mail = OutlookMail(inner).propertyStream(std::string(header, '\0') + page936);
        return parsed(note().attachedMessage(mail)).attachments.at(0).embedded.at(0).subject;
    };
    EXPECT_EQ(nested(24), "山");
    EXPECT_EQ(nested(32), "É½");
}

TEST(OutlookFiles, AreRefusedAboveTheirLimits) {
    const auto nested = [](int levels) {
        OutlookMail mail = note();
        for (int level = 0; level < levels; ++level) mail = OutlookMail().attachedMessage(mail);
        return mail;
    };
    const auto attachments = [](OutlookMail mail, int count) {
        for (int index = 0; index < count; ++index) mail.attachment(OutlookMail());
        return mail;
    };
    const std::string most(262'144, '\0');
    const Case<OutlookMail, std::string_view> cases[] = {
        {"eight levels of attached messages", nested(8), "none"},
        {"nine levels", nested(9), "tooMany"},
        {"500 attachments", attachments(note(), 500), "none"},
        {"501 attachments", attachments(note(), 501), "tooMany"},
        {"500 attachments in the tree", attachments(OutlookMail().attachedMessage(attachments({}, 300)), 199),
         "none"},
        {"501 attachments in the tree", attachments(OutlookMail().attachedMessage(attachments({}, 300)), 200),
         "tooMany"},
        {"the largest property stream", note().propertyStream(most), "none"},
        {"a larger one", note().propertyStream(most + " "), "tooMany"},
        {"a larger one of a recipient", note().recipient(OutlookMail().propertyStream(most + " ")),
         "tooMany"},
        {"a larger one of a recipient not looked at",
         note().to("t").cc("c").recipient(OutlookMail().propertyStream(most + " ")), "none"},
        {"a larger one of an attachment", note().attachment(attachment().propertyStream(most + " ")),
         "tooMany"},
        {"a larger one of an attached message", note().attachedMessage(note().propertyStream(most + " ")),
         "tooMany"},
    };
    for (const auto& c : cases) EXPECT_EQ(errorOfParsing(c.given), c.expected) << c.name;
    // Both are too many: the size is looked at first.
    EXPECT_EQ(errorOfParsing(Bytes(static_cast<std::size_t>(Limits::message) + 1, std::byte{})), "tooLarge");
    EXPECT_EQ(errorOfParsing(Bytes(static_cast<std::size_t>(Limits::message), std::byte{})), "malformed");
}

TEST(OutlookFiles, ShareOneBudgetOfBytes) {
    // A quarter of it, in a stream that four attachments share, one of them two messages down.
    const std::string quarter(25'165'824, 'q');
    const OutlookMail inner = OutlookMail().attachment(attachment("inside").withoutPropertyStream());
    const OutlookMail mail = OutlookMail()
                                 .attachment(attachment(quarter))
                                 .attachment(attachment("1"))
                                 .attachment(attachment("2"))
                                 .attachedMessage(OutlookMail().attachedMessage(inner));
    const auto data = [](std::string_view place) { return fmt::format("{}__substg1.0_37010102", place); };
    const auto shared = [&](const OutlookMail& built) {
        File file = built.container().file();
        const std::string_view first = "__attach_version1.0_#00000000/";
        const std::string two = "__attach_version1.0_#00000003/__substg1.0_3701000D/";
        const std::string three = two + "__attach_version1.0_#00000000/__substg1.0_3701000D/";
        for (const std::string_view place :
             {"__attach_version1.0_#00000001/", "__attach_version1.0_#00000002/"})
            file.share(data(place), data(first));
        file.share(data(three + std::string(first)), data(first));
        return file;
    };
    EXPECT_EQ(errorOfParsing(shared(mail).bytes()), "none");
    EXPECT_EQ(errorOfParsing(shared(OutlookMail(mail).narrow(0x0037, "!")).bytes()), "tooLarge");
    EXPECT_EQ(errorOfParsing(shared(OutlookMail(mail).html("!")).bytes()), "tooLarge");
    // Property streams cost nothing, and neither do streams that nobody reads.
    EXPECT_EQ(errorOfParsing(shared(OutlookMail(mail).submitted(newYear).binary(0x1009, "!")).bytes()),
              "none");
}

TEST(OutlookFiles, AreMalformedWithoutAnythingToShow) {
    const OutlookMail nothing =
        OutlookMail().to("t").cc("c").submitted(newYear).recipient("r", "r@t").transport("To: x");
    const Case<OutlookMail, std::string_view> cases[] = {
        {"recipients, date and headers", nothing, "malformed"},
        {"texts of control characters", OutlookMail(nothing).subject("\r\n").plain("\0"sv).html("\r\n"),
         "malformed"},
        {"compressed text", OutlookMail(nothing).binary(0x1009, "LZFu"), "malformed"},
        {"a subject", OutlookMail(nothing).subject("s"), "none"},
        {"a sender", OutlookMail(nothing).from("s", ""), "none"},
        {"a sender in the headers", OutlookMail(nothing).transport("From: a@b"), "none"},
        {"a text", OutlookMail(nothing).plain("p"), "none"},
        {"HTML", OutlookMail(nothing).html("<br>"), "none"},
        {"an attachment without data", OutlookMail(nothing).attachment(OutlookMail()), "none"},
        {"an attached message without anything", note().attachedMessage(nothing), "malformed"},
        {"an attached message that is not there", note().attachment(OutlookMail().fixed(0x3705'0003, 5)),
         "malformed"},
    };
    for (const auto& c : cases) EXPECT_EQ(errorOfParsing(c.given), c.expected) << c.name;
    EXPECT_EQ(errorOfParsing(Container().stream("Workbook", "another kind of document").file().bytes()),
              "malformed");
}

} // namespace
} // namespace MailCore
