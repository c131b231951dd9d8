#pragma once

#include "MailCore/Platform/Bytes.h"
#include "MailCore/Platform/UTF8.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>

/// What the fuzz targets share.
namespace MailCore::Fuzzing {

/// Ends the program, which counts as a finding, unless `holds`.
inline void check(bool holds) {
    if (!holds) std::abort();
}

inline void checkText(std::string_view text) {
    check(Text::isValid(bytesOf(text)));
}

/// Whether `view` is a part of `text`.
inline bool isInside(std::string_view view, std::string_view text) {
    return view.data() >= text.data() && view.data() + view.size() <= text.data() + text.size();
}

/// The input in memory of exactly its size, so that a look at the byte behind it is noticed.
inline Bytes inputBytes(const std::uint8_t* data, std::size_t size) {
    const auto* start = reinterpret_cast<const std::byte*>(data);
    return {start, start + size};
}

/// The input as text (UTF-8), in memory of exactly its size: a string keeps a terminator.
inline Bytes inputText(const std::uint8_t* data, std::size_t size) {
    return copyOf(bytesOf(Text::repaired(inputBytes(data, size))));
}

/// The first line of the input, without its line feed, and the rest.
inline std::pair<ByteView, ByteView> firstLine(ByteView input) {
    const auto lineFeed = std::ranges::find(input, std::byte{'\n'});
    const auto length = static_cast<std::size_t>(lineFeed - input.begin());
    return {input.first(length), input.subspan(std::min(length + 1, input.size()))};
}

} // namespace MailCore::Fuzzing
