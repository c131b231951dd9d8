// Writes the Outlook files of samples/ and the seeds of fuzz/seeds/, the same ones each time:
//     make-outlook-samples PROJECT
// The files are committed; run it again after changing it. Nothing in them is real mail.

#include "tests/Support/OutlookBuilder.h"

#include <png.h>

#include <array>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iostream>

using namespace MailCore;
using namespace MailCore::Testing;

namespace {

/// A string in the bytes of another charset, named as ICU does.
std::string inCharset(std::string_view text, const char* charset) {
    const icu::UnicodeString units =
        icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
    std::string bytes(text.size() * 2 + 16, '\0');
    const auto room = static_cast<std::uint32_t>(bytes.size());
    bytes.resize(static_cast<std::size_t>(units.extract(0, units.length(), bytes.data(), room, charset)));
    return bytes;
}

/// The FILETIME of a moment in UTC.
std::uint64_t fileTime(std::chrono::year_month_day day, int hour, int minute) {
    using namespace std::chrono;
    const sys_seconds moment = sys_days(day) + hours(hour) + minutes(minute);
    return static_cast<std::uint64_t>(moment.time_since_epoch().count() + 11'644'473'600) * 10'000'000;
}

/// Hills before an evening sky with the sun in it, as a PNG of 320 by 180.
std::string picture() {
    constexpr int width = 320;
    constexpr int height = 180;
    std::string pixels;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const double far = 104 + 10 * std::sin(x * 0.035) + 4 * std::sin(x * 0.11 + 1);
            const double near = 142 + 13 * std::sin(x * 0.02 + 2) + 3 * std::sin(x * 0.07);
            const bool sun = (x - 228) * (x - 228) + (y - 74) * (y - 74) < 26 * 26;
            const int glow = 255 - y / 3;
            const auto color = y > near  ? std::array{29, 53, 87}
                               : y > far ? std::array{69, 123, 157}
                               : sun     ? std::array{255, 244, 214}
                                         : std::array{glow, glow - 45 - y / 4, glow / 2};
            for (const int channel : color) pixels += static_cast<char>(channel);
        }
    }
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = width;
    image.height = height;
    image.format = PNG_FORMAT_RGB;
    png_alloc_size_t size = 0;
    png_image_write_to_memory(&image, nullptr, &size, 0, pixels.data(), 0, nullptr);
    std::string bytes(size, '\0');
    png_image_write_to_memory(&image, bytes.data(), &size, 0, pixels.data(), 0, nullptr);
    bytes.resize(size);
    return bytes;
}

/// A note as mail programs write it: message class, and the flag that says that its strings are Unicode.
OutlookMail note() {
    return OutlookMail().text(0x001A, "IPM.Note").fixed(0x340D'0003, 0x0004'0000);
}

constexpr std::chrono::year_month_day day(unsigned dayOfMarch) {
    return std::chrono::year(2024) / std::chrono::March / static_cast<int>(dayOfMarch);
}

OutlookMail chinese() {
    const auto gbk = [](std::string_view text) { return inCharset(text, "gbk"); };
    return OutlookMail()
        .text(0x001A, "IPM.Note")
        .codepage(936)
        .internetCodepage(936)
        .submitted(fileTime(day(4), 1, 30))
        .narrow(0x0037, gbk("关于春季读书会的安排"))
        .narrow(0x0C1A, gbk("苏晓岚"))
        .narrow(0x0C1F, "su.xiaolan@tessel.example")
        .narrow(0x0E04, gbk("读书会全体成员"))
        .narrow(0x0E03, gbk("图书室"))
        .narrow(
            0x1000,
            gbk("各位书友：\r\n\r\n"
                "春季读书会定于三月十六日（星期六）下午两点在二楼图书室举行，本次共读《山中来信》。\r\n\r\n"
                "请各位在三月十二日之前回复是否参加，并附上一段最喜欢的文字（两百字以内）。"
                "当天备有清茶和点心。\r\n\r\n"
                "　　一、两点至三点：分组讨论；\r\n"
                "　　二、三点至三点半：茶歇；\r\n"
                "　　三、三点半至四点半：朗读与交流。\r\n\r\n"
                "如有不便，请提前告知。期待与大家见面！\r\n\r\n"
                "苏晓岚\r\n"
                "二〇二四年三月四日\r\n"))
        .attachment(OutlookMail()
                        .fixed(0x3705'0003, 1)
                        .narrow(0x3707, gbk("报名表.txt"))
                        .narrow(0x370E, "text/plain")
                        .binary(0x3701, gbk("姓名：\r\n是否参加：\r\n最喜欢的一段文字：\r\n")));
}

OutlookMail recipients() {
    return note()
        .submitted(fileTime(day(5), 8, 15))
        .subject("Who brings what on Sunday")
        .from("Maren Holt", "maren@tessel.example")
        .recipient("Ines Brandt", "ines@tessel.example")
        .recipient("Tomás Aranda", "tomas@tessel.example")
        .recipient("", "boathouse@harbour.example")
        .recipient("Renée Dupré", "renee@tessel.example", 2)
        .recipient("The choir", "choir@harbour.example", 2)
        .recipient("Surprise guest", "guest@tessel.example", 3)
        .plain("Dear all,\r\n\r\n"
               "Sunday looks dry, so we row out at ten and eat on the island.\r\n\r\n"
               "  - Ines: bread and the big kettle\r\n"
               "  - Tomás: fish, and the grill if it still stands upright\r\n"
               "  - Boathouse: four life jackets, two of them small\r\n"
               "  - Renée and the choir: anything but the song about the herring\r\n\r\n"
               "If the wind turns we meet in the net loft instead; I will ring at eight.\r\n\r\n"
               "Maren\r\n");
}

OutlookMail pictures() {
    return note()
        .internetCodepage(65001)
        .submitted(fileTime(day(6), 17, 45))
        .subject("First evening at the hut")
        .from("Tomás Aranda", "tomas@tessel.example")
        .to("Maren Holt; Ines Brandt")
        .recipient("Maren Holt", "maren@tessel.example")
        .recipient("Ines Brandt", "ines@tessel.example")
        .plain("We made it up before dark. The picture shows what we saw from the bench.\r\n")
        .html(
            "<html><head><meta charset=\"utf-8\"><style>\r\n"
            "body { font-family: Georgia, serif; color: #1d3557 }\r\n"
            ".card { background: #fdf6ec; border: 1px solid #e6d5b8; padding: 20px }\r\n"
            "h1 { font-size: 24px } .small { color: #8a6d3b; font-size: 12px }\r\n"
            "</style></head><body><div class=\"card\"><p class=\"small\">WEDNESDAY &middot; 1,840 m</p>\r\n"
            "<h1>First evening at the hut</h1>\r\n"
            "<p>We made it up <b>before dark</b>. The last hour is steep, but then there is this "
            "bench…</p>\r\n"
            "<p><img src=\"cid:evening@tessel\" alt=\"Hills in the evening\" width=\"320\"></p>\r\n"
            "<p>Tomorrow over the ridge, if the fog lets us. There is <i>no</i> signal up there, so the next "
            "letter comes from the valley.</p>\r\n<p>– Tomás</p></div></body></html>\r\n")
        .file("evening.png", "image/png", picture(), "evening@tessel");
}

OutlookMail attachedTwice(std::size_t fileBytes = 4'200) {
    std::string table = "day,high,low\r\n";
    for (unsigned index = 1; table.size() < fileBytes; ++index)
        table += fmt::format("{},{:02}:{:02},{:02}:{:02}\r\n", index, index * 7 % 24, index * 13 % 60,
                             (index * 7 + 6) % 24, index * 17 % 60);
    const OutlookMail first = OutlookMail()
                                  .text(0x001A, "IPM.Note")
                                  .submitted(fileTime(day(1), 6, 5))
                                  .subject("Tide tables for spring")
                                  .from("Harbour office", "office@harbour.example")
                                  .to("Renée Dupré")
                                  .plain("Attached are the tables for the spring months.\r\n")
                                  .file("tides.csv", "text/csv", table);
    const OutlookMail second = OutlookMail()
                                   .text(0x001A, "IPM.Note")
                                   .submitted(fileTime(day(2), 9, 40))
                                   .subject("Fw: Tide tables for spring")
                                   .from("Renée Dupré", "renee@tessel.example")
                                   .to("Ines Brandt")
                                   .plain("Here is what the office sent. The file is in their message.\r\n")
                                   .attachedMessage(first);
    return note()
        .submitted(fileTime(day(7), 12, 0))
        .subject("Fw: Fw: Tide tables for spring")
        .from("Ines Brandt", "ines@tessel.example")
        .to("Maren Holt")
        .plain("Two messages down you find the tables. Ask for the nine o'clock ferry.\r\n\r\nInes\r\n")
        .attachedMessage(second, "Fw: Tide tables for spring");
}

OutlookMail objects() {
    return note()
        .submitted(fileTime(day(8), 14, 20))
        .subject("Drawing of the new jetty")
        .from("Boathouse", "boathouse@harbour.example")
        .to("Maren Holt")
        .plain(
            "The drawing was pasted into this message as an object of another program; it can be saved but "
            "not "
            "shown.\r\n\r\nThe survey was only linked to, and the link did not travel with the message.\r\n")
        .attachment(OutlookMail()
                        .fixed(0x3705'0003, 6)
                        .text(0x3707, "Jetty drawing.ole")
                        .binary(0x3701, "An object of a drawing program, 12 m by 2 m, three posts."))
        .attachment(OutlookMail()
                        .fixed(0x3705'0003, 4)
                        .text(0x3707, "Survey of the harbour floor.pdf")
                        .text(0x370E, "application/pdf"));
}

OutlookMail headersOnly() {
    return OutlookMail()
        .text(0x001A, "IPM.Note")
        .transport("Received: from mail.harbour.example by mail.tessel.example;\r\n"
                   "\tSat, 9 Mar 2024 07:12:09 +0100\r\n"
                   "From: =?utf-8?Q?Ren=C3=A9e_Dupr=C3=A9?= <renee@tessel.example>\r\n"
                   "To: Ines Brandt <ines@tessel.example>\r\n"
                   "Subject: =?utf-8?B?R3LDvMOfZSBhdXMgZGVtIEhhZmVu?=\r\n"
                   " =?windows-1252?Q?_=96_l'=E9t=E9_est_l=E0?=\r\n"
                   "Date: Sat, 9 Mar 2024 07:12:03 +0100\r\n"
                   "Message-ID: <20240309.1@tessel.example>\r\n")
        .plain("Subject, sender and date of this message stand nowhere but in its transport headers.\r\n");
}

OutlookMail letterTemplate() {
    return note()
        .internetCodepage(65001)
        .subject("Notes of the meeting on …")
        .to("Everybody who was there")
        .html("<html><body style=\"font-family: sans-serif\"><p>Dear all,</p>\r\n"
              "<p>thank you for coming. What we agreed on:</p>\r\n"
              "<table border=\"1\" cellspacing=\"0\" cellpadding=\"6\">\r\n"
              "<tr bgcolor=\"#eef4fb\"><th>What</th><th>Who</th><th>Until</th></tr>\r\n"
              "<tr><td>…</td><td>…</td><td>…</td></tr>\r\n<tr><td>…</td><td>…</td><td>…</td></tr></table>\r\n"
              "<p>Please tell me by Friday if anything is missing or wrong.</p></body></html>\r\n");
}

void write(const std::filesystem::path& path, std::string_view bytes) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream stream(path, std::ios::binary);
    stream << bytes;
    if (!stream.flush()) throw std::runtime_error("cannot write " + path.string());
}

void writeSamples(const std::filesystem::path& folder) {
    write(folder / "ReadingCircle.msg", chinese().string());
    write(folder / "Sunday.msg", recipients().string());
    write(folder / "Evening.msg", pictures().string());
    write(folder / "ForwardedTwice.msg", attachedTwice().string());
    write(folder / "Objects.msg", objects().string());
    write(folder / "HeadersOnly.msg", headersOnly().string());
    const std::string_view templates("\x46\xF0\x06\0\0\0\0\0\xC0\0\0\0\0\0\0\x46", 16);
    write(folder / "Notes.oft", letterTemplate().container().classID(templates).file().data);
}

void writeContainerSeeds(const std::filesystem::path& folder) {
    const auto filled = [](Container container) {
        container.stream("large", std::string(4'096, 'l')).stream("small", std::string(150, 's'));
        return container.stream("storage/inner/empty", "").stream("storage/b", "b").stream("storage/C", "c");
    };
    write(folder / "plain", filled(Container()).file().data);
    write(folder / "scattered", filled(Container().scattered().degenerate()).file().data);
    write(folder / "long-fat", filled(Container().fatSectors(5).fatList(1, 2)).file().data);
    write(folder / "large-sectors",
          Container().sectorSize(4'096).stream("a", "a").stream("s/b", std::string(4'096, 'b')).file().data);
}

void writeMessageSeeds(const std::filesystem::path& folder) {
    write(folder / "code-page", chinese().string());
    write(folder / "recipients", recipients().string());
    write(folder / "attached", attachedTwice(300).string());
    write(folder / "objects", objects().string());
    write(folder / "headers", headersOnly().string());
    write(folder / "inline",
          note().html("<p><img src=cid:a></p>").file("a.png", "image/png", "x", "<a>").string());
    write(folder / "scattered", recipients().delivered(1).container().scattered().fatList(0, 1).file().data);
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::cerr << "usage: make-outlook-samples PROJECT\n";
        return 2;
    }
    const std::filesystem::path project(arguments[1]);
    writeSamples(project / "samples");
    writeContainerSeeds(project / "fuzz/seeds/Compound");
    writeMessageSeeds(project / "fuzz/seeds/Outlook");
    return 0;
}
