#include "benchmarks/Workload.h"

#include "MailCore/MIME/Base64.h"

#include <array>
#include <fmt/format.h>

namespace Workload {

namespace {

constexpr auto words = std::to_array<std::string_view>(
    {"the",   "harbour", "letter",  "of",      "and",     "market", "to",     "in",       "winter",
     "boat",  "morning", "with",    "meeting", "report",  "please", "find",   "number",   "table",
     "a",     "because", "weather", "from",    "project", "time",   "people", "question", "answer",
     "small", "today",   "as",      "house",   "without", "is",     "plan",   "café",     "Größe"});

} // namespace

std::string Writer::word() {
    return std::string(words[below(static_cast<std::uint32_t>(words.size()))]);
}

std::string Writer::prose(std::size_t bytes) {
    std::string text;
    std::size_t column = 0;
    while (text.size() < bytes) {
        const std::string next = word();
        text += next;
        column += next.size() + 1;
        text += column > 70 ? '\n' : ' ';
        if (column > 70) column = 0;
    }
    return text + '\n';
}

std::string Writer::headers() {
    ++number_;
    const std::string subject =
        below(4) == 0
            ? fmt::format("=?utf-8?B?{}?=",
                          MailCore::Base64::encode(MailCore::bytesOf("Über " + word() + " 会议 " + word())))
            : "Re: " + word() + " " + word() + " " + word();
    std::string text = "Return-Path: <bounce@lists.example.org>\n";
    for (std::uint32_t hop = 0; hop < 3 + below(3); ++hop) {
        text += fmt::format(
            "Received: from mx{}.example.org (mx{}.example.org [192.0.2.{}])\n\tby mail.example.net "
            "(Postfix) with ESMTPS id {:08X}\n\tfor <reader@example.net>; Tue,  2 Jan 2024 09:15:{:02} "
            "+0000 (UTC)\n",
            hop, hop, below(250), below(0x7FFFFFFF), below(60));
    }
    text += fmt::format("DKIM-Signature: v=1; a=rsa-sha256; c=relaxed/relaxed; d=example.org; s=mail;\n\t"
                        "h=from:to:subject:date; bh={};\n\tb={}\n",
                        std::string(44, 'A'), std::string(172, 'b'));
    text +=
        fmt::format("Message-ID: <{}.{}@example.org>\nFrom: {} {} <{}@example.org>\nTo: reader@example.net, "
                    "{}@example.com\n"
                    "Subject: {}\nDate: {}, {} {} {} {:02}:{:02}:{:02} {}\nMIME-Version: 1.0\n",
                    number_, below(1'000'000), word(), word(), word(), word(), subject,
                    std::array{"Mon", "Tue", "Wed", "Thu"}[below(4)], 1 + below(28),
                    std::array{"Jan", "Mar", "Jul", "Oct"}[below(4)], 2004 + below(20), below(24), below(60),
                    below(60), std::array{"+0000", "-0700", "+0800", "+0200 (CEST)"}[below(4)]);
    return text;
}

std::string Writer::newsletter(std::size_t bytes) {
    std::string text =
        "<html><head><title>News</title><style>body{background:#f4f1ea;color:#222}.row{padding:12px}"
        ".row a:hover{color:red}td{font:12px Arial}@media screen and (max-width: "
        "600px){.row{width:100%}}</style></head>"
        "<body bgcolor=\"#ffffff\">\n<table width=\"600\" cellspacing=\"0\" cellpadding=\"0\" border=\"0\" "
        "align=\"center\">\n";
    while (text.size() < bytes) {
        text +=
            fmt::format("<tr><td class=\"row m{}\" style=\"font-family: Arial, Helvetica, sans-serif; "
                        "font-size: {}px; color: "
                        "#{:06x}; padding: 10px 20px\" valign=\"top\">\n<h2 "
                        "style=\"margin:0;color:#1d3557\">{} {}</h2>\n<p>{}&nbsp;"
                        "&mdash; {}</p><a href=\"https://news.example.org/a/{}?u={}&amp;c={}\" "
                        "style=\"color:#2864be\">Read "
                        "more</a><img src=\"https://img.example.org/{}.jpg\" width=\"120\" height=\"80\" "
                        "alt=\"{}\"></td></tr>\n",
                        below(40), 11 + below(8), below(0xFFFFFF), word(), word(), prose(300 + below(400)),
                        prose(60), below(100'000), below(100'000), below(100), below(1'000), word());
    }
    return text + "</table></body></html>\n";
}

std::string Writer::attachment(std::size_t bytes) {
    MailCore::Bytes data(bytes);
    for (std::byte& byte : data) byte = static_cast<std::byte>(random_());
    const std::string encoded = MailCore::Base64::encode(data);
    std::string lines;
    lines.reserve(encoded.size() + encoded.size() / 76 + 1);
    for (std::size_t at = 0; at < encoded.size(); at += 76) lines.append(encoded, at, 76).append("\n");
    return lines;
}

std::string Writer::smallMessage() {
    return headers() + "Content-Type: text/plain; charset=utf-8\nContent-Transfer-Encoding: 8bit\n\n" +
           prose(1'700 + below(1'200));
}

std::string Writer::tinyMessage() {
    ++number_;
    return fmt::format("From: {}@example.org\nSubject: {} {}\nDate: {} Jan 2024 {:02}:{:02}:00 +0000\n\n{}\n",
                       word(), word(), number_, 1 + below(28), below(24), below(60), word());
}

std::string Writer::mixedMessage() {
    const std::uint32_t kind = below(100);
    if (kind < 60) {
        return headers() + "Content-Type: text/plain; charset=utf-8\nContent-Transfer-Encoding: 8bit\n\n" +
               prose(400 + below(6'000));
    }
    const std::string mark = fmt::format("----=_part_{}_{}", number_, below(1'000'000));
    const std::string open = "--" + mark + "\n";
    const std::string alternative =
        open + "Content-Type: text/plain; charset=utf-8\n\n" + prose(2'000) + "\n" + open +
        "Content-Type: text/html; charset=utf-8\nContent-Transfer-Encoding: 8bit\n\n" +
        newsletter(20'000 + below(60'000)) + "\n";
    if (kind < 88) {
        return headers() + "Content-Type: multipart/alternative; boundary=\"" + mark + "\"\n\n" +
               alternative + "--" + mark + "--\n";
    }
    const std::size_t size = kind < 97 ? 20'000 + below(400'000) : 400'000 + below(1'100'000);
    return headers() + "Content-Type: multipart/mixed; boundary=\"" + mark + "\"\n\n" + open +
           "Content-Type: text/plain; charset=utf-8\n\n" + prose(800) + "\n" + open +
           fmt::format(
               "Content-Type: application/pdf; name=\"report-{}.pdf\"\nContent-Disposition: attachment; "
               "filename=\"report-{}.pdf\"\nContent-Transfer-Encoding: base64\n\n",
               number_, number_) +
           attachment(size) + "\n--" + mark + "--\n";
}

} // namespace Workload
