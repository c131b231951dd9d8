#include "MailCore/Platform/Converter.h"

#include "MailCore/Platform/ASCII.h"
#include "MailCore/Platform/UTF8.h"

#include <unicode/ucnv.h>
#include <unicode/ucnv_err.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <utility>

namespace MailCore {

namespace {

const iconv_t closed = reinterpret_cast<iconv_t>(-1); // what iconv_open answers when it fails

} // namespace

bool isPlainCharsetName(std::string_view name) noexcept {
    return name.find_first_of("/,") == std::string_view::npos &&
           std::ranges::any_of(name, ASCII::isAlphanumeric);
}

std::optional<Converter> Converter::open(const std::string& charset) {
    if (!isPlainCharsetName(charset)) return std::nullopt;
    const iconv_t descriptor = iconv_open("UTF-8", charset.c_str());
    if (descriptor == closed) return std::nullopt;
    return Converter(descriptor);
}

Converter::Converter(Converter&& other) noexcept : descriptor_(std::exchange(other.descriptor_, closed)) {}

Converter::~Converter() {
    if (descriptor_ != closed) iconv_close(descriptor_);
}

std::string Converter::convert(ByteView bytes) {
    std::string result;
    result.reserve(bytes.size());
    std::array<char, 8'192> scratch;
    // iconv takes a pointer to characters it does not change.
    char* input = const_cast<char*>(charsOf(bytes).data());
    std::size_t left = bytes.size();
    while (left > 0) {
        const std::size_t before = left;
        char* output = scratch.data();
        std::size_t space = scratch.size();
        const bool failed =
            iconv(descriptor_, &input, &left, &output, &space) == static_cast<std::size_t>(-1);
        const int error = failed ? errno : 0;
        const std::size_t written = scratch.size() - space;
        result.append(scratch.data(), written);
        if (failed && error != E2BIG) {
            result += Text::replacement;
            if (error == EINVAL || left == 0) break;
            ++input;
            --left;
            iconv(descriptor_, nullptr, nullptr, nullptr, nullptr);
        } else if (left == before && written == 0) {
            break; // no progress
        }
    }
    return result;
}

// ICU's converters
// -------------------------------------------------------------------------------------------

namespace {

struct CodePage {
    std::string_view label;
    const char* charset; // as ICU names it
};

/// Windows code pages that go under no such name in iconv and ICU.
constexpr auto codePages = std::to_array<CodePage>({
    {"cp10000", "macintosh"},      {"cp10006", "x-mac-greek"},
    {"cp10007", "x-mac-cyrillic"}, {"cp10029", "x-mac-centraleurroman"},
    {"cp10081", "x-mac-turkish"},  {"cp12000", "utf-32le"},
    {"cp12001", "utf-32be"},       {"cp20866", "koi8-r"},
    {"cp20932", "euc-jp"},         {"cp20936", "gb2312"},
    {"cp21866", "koi8-u"},         {"cp28603", "iso-8859-13"},
    {"cp28605", "iso-8859-15"},    {"cp38598", "iso-8859-8-i"},
    {"cp50220", "iso-2022-jp"},    {"cp50221", "iso-2022-jp"},
    {"cp50222", "jis7"},           {"cp50225", "iso-2022-kr"},
    {"cp51932", "euc-jp"},         {"cp51936", "gb2312"},
    {"cp51949", "euc-kr"},         {"cp52936", "hz-gb-2312"},
    {"cp54936", "gb18030"},        {"cp65000", "utf-7"},
});
static_assert(std::ranges::is_sorted(codePages, {}, &CodePage::label));

struct CloseICU {
    void operator()(UConverter* converter) const noexcept { ucnv_close(converter); }
};
using StrictConverter = std::unique_ptr<UConverter, CloseICU>;

/// A converter that stops at whatever it cannot convert; null when ICU does not know the name.
StrictConverter openStrict(const char* charset) {
    UErrorCode status = U_ZERO_ERROR;
    // Only names in the alias table: others would be looked for as files.
    if (ucnv_countAliases(charset, &status) == 0 || U_FAILURE(status)) return nullptr;
    status = U_ZERO_ERROR;
    StrictConverter converter(ucnv_open(charset, &status));
    if (U_FAILURE(status)) return nullptr;
    status = U_ZERO_ERROR;
    ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
    ucnv_setFromUCallBack(converter.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
    return U_SUCCESS(status) ? std::move(converter) : nullptr;
}

} // namespace

std::optional<std::string> decodeRegistered(ByteView bytes, const std::string& charset) {
    if (!isPlainCharsetName(charset)) return std::nullopt;
    const auto page = std::ranges::lower_bound(codePages, std::string_view(charset), {}, &CodePage::label);
    const bool isPage = page != codePages.end() && page->label == charset;
    const StrictConverter from = openStrict(isPage ? page->charset : charset.c_str());
    const StrictConverter to = openStrict("UTF-8");
    if (!from || !to) return std::nullopt;

    std::string result;
    result.reserve(bytes.size());
    std::array<char, 8'192> scratch;
    std::array<UChar, 2'048> pivot;
    UChar* pivotSource = pivot.data();
    UChar* pivotTarget = pivot.data();
    const char* source = charsOf(bytes).data();
    const char* const sourceEnd = source + bytes.size();
    for (bool first = true;; first = false) {
        UErrorCode status = U_ZERO_ERROR;
        char* target = scratch.data();
        ucnv_convertEx(to.get(), from.get(), &target, scratch.data() + scratch.size(), &source, sourceEnd,
                       pivot.data(), &pivotSource, &pivotTarget, pivot.data() + pivot.size(), first, true,
                       &status);
        result.append(scratch.data(), target);
        if (status == U_BUFFER_OVERFLOW_ERROR) continue;
        if (U_FAILURE(status)) return std::nullopt;
        return result;
    }
}

} // namespace MailCore
