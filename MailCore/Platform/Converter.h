#pragma once

#include "MailCore/Platform/Bytes.h"

#include <iconv.h>

#include <optional>
#include <string>
#include <string_view>

namespace MailCore {

/// Whether `name` can be looked up as the name of a charset and nothing else: the system's converters give
/// names with "/" or "," (error handling, options) and names without a letter or digit (the charset of the
/// user's locale) a meaning that a message must not choose.
bool isPlainCharsetName(std::string_view name) noexcept;

/// One iconv conversion from a charset to UTF-8; closed with the object.
class Converter {
public:
    /// Absent when iconv does not know `charset`.
    static std::optional<Converter> open(const std::string& charset);

    Converter(Converter&& other) noexcept;
    Converter& operator=(Converter&&) = delete;
    ~Converter();

    /// All of `bytes`. U+FFFD stands for a byte that is invalid, which is skipped, and the shift state is
    /// reset; an incomplete sequence at the end becomes one U+FFFD.
    std::string convert(ByteView bytes);

private:
    explicit Converter(iconv_t descriptor) noexcept : descriptor_(descriptor) {}
    iconv_t descriptor_;
};

/// Decodes `bytes` with the converter that ICU, or a table of code page names ("cp51949"), has for `charset`,
/// a lower-case name. Absent when there is none or when `bytes` are not valid in it.
std::optional<std::string> decodeRegistered(ByteView bytes, const std::string& charset);

} // namespace MailCore
