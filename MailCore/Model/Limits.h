#pragma once

#include <cstdint>

namespace MailCore::Limits {

/// Largest message that is read, parsed or shown, in bytes (32 MiB).
inline constexpr std::int64_t message = 33'554'432;
/// Largest number of entries of one index.
inline constexpr std::int64_t messages = 200'000;
/// Largest sum of MessageEntry::metadataBytes of one index (64 MiB).
inline constexpr std::int64_t indexBytes = 67'108'864;
/// Largest header block read as header text, in bytes (256 KiB).
inline constexpr std::int64_t headers = 262'144;
/// Largest number of entities of one message.
inline constexpr int parts = 500;
/// Largest text body that is kept or searched, in bytes of UTF-8 (4 MiB).
inline constexpr std::int64_t rendered = 4'194'304;

} // namespace MailCore::Limits
