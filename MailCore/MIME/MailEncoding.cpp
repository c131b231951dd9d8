#include "MailCore/MIME/MailEncoding.h"

#include "MailCore/Platform/Converter.h"
#include "MailCore/Platform/Text.h"
#include "MailCore/Platform/UTF16.h"
#include "MailCore/Platform/UTF8.h"

#include <algorithm>
#include <array>

namespace MailCore {

namespace {

constexpr std::size_t largestLabel = 79; // bytes

/// Labels of subsets of GB18030. Their users often send characters of the larger set.
constexpr auto chineseLabels = std::to_array<std::string_view>(
    {"gb2312", "gb_2312-80", "chinese", "gbk", "cp936", "windows-936", "x-gbk"});

/// The characters of the bytes 80 to 9F in Windows-1252 (WHATWG index windows-1252); 0 where it has none.
constexpr auto windows1252 = std::to_array<char32_t>(
    {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
     0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
     0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178});
static_assert(windows1252.size() == 32);

std::optional<std::string> decodeWindows1252(ByteView bytes) {
    std::string text;
    text.reserve(bytes.size() + bytes.size() / 4);
    for (const std::byte byte : bytes) {
        auto codePoint = std::to_integer<char32_t>(byte);
        if (codePoint >= 0x80 && codePoint <= 0x9F) {
            codePoint = windows1252[codePoint - 0x80];
            if (codePoint == 0) return std::nullopt;
        }
        if (codePoint < 0x80) {
            text += static_cast<char>(codePoint);
        } else {
            Text::append(text, codePoint);
        }
    }
    return text;
}

} // namespace

namespace MailEncoding {

std::string decode(ByteView bytes, std::string_view charset) {
    std::string label = Text::lowered(Text::trimmed(charset));
    if (std::ranges::find(chineseLabels, label) != chineseLabels.end()) {
        label = "GB18030";
    } else if (label.empty() || label == "utf-8" || label == "utf8" || label.size() > largestLabel ||
               label.find('\0') != std::string::npos) {
        return Text::repaired(bytes);
    }
    // The texts of Outlook files, without a call of the converter for each byte that is none.
    if (label == "utf-16le") return Text::repairedUTF16LE(bytes);
    if (auto converter = Converter::open(label)) {
        std::string text = converter->convert(bytes);
        return Text::isValid(bytesOf(text)) ? text : Text::repaired(bytesOf(text));
    }
    if (auto text = decodeRegistered(bytes, label)) return std::move(*text);
    if (Text::isValid(bytes)) return std::string(charsOf(bytes));
    if (auto text = decodeWindows1252(bytes)) return std::move(*text);
    return Text::repaired(bytes);
}

std::optional<std::string> charset(std::optional<std::uint64_t> codepage) {
    const std::uint64_t page = codepage.value_or(0);
    switch (page) {
    case 0: return std::nullopt;
    case 936: return "GB18030";
    case 950: return "BIG5";
    case 1200: return "utf-16le";
    case 1201: return "utf-16be";
    case 20127: return "US-ASCII";
    case 65001: return "utf-8";
    default: break;
    }
    if (page >= 28591 && page <= 28599) return "ISO-8859-" + std::to_string(page - 28590);
    return "CP" + std::to_string(page);
}

} // namespace MailEncoding
} // namespace MailCore
