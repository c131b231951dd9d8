#pragma once

#include "MailCore/Model/Cancelled.h"
#include "MailCore/Model/IndexLimits.h"
#include "MailCore/Model/MailCollection.h"
#include "MailCore/Model/MailMessage.h"

#include <array>
#include <functional>
#include <span>
#include <string_view>

/// The engine's front door for sources on disk. Everything is read-only but `exportOriginal`.
namespace MailCore::MailReader {

/// Called with the number of entries indexed so far.
using Progress = std::function<void(std::size_t)>;
/// Receives every entry exactly once, in order.
using Batch = std::function<void(std::span<const SharedEntry>)>;

/// The supported file-name extensions.
inline constexpr std::array<std::string_view, 8> extensions = {"eml",  "emlx", "msg", "oft",
                                                               "mbox", "mbx",  "mbo", "mime"};

MailCollection collection(const URL& url, const Cancelled& cancelled, const Progress& progress,
                          const IndexLimits& limits, const Batch& batch);
bool isCurrent(const MailCollection& collection);

MailMessage message(const MessageEntry& entry, const Cancelled& cancelled);
Bytes original(const MessageEntry& entry);
/// The message inside EMLX-framed bytes when `extension` is "emlx", otherwise `data`; points into `data`.
ByteView emlx(ByteView data, std::string_view extension);
void exportOriginal(const MessageEntry& entry, const URL& destination, const Cancelled& cancelled,
                    std::int64_t chunkSize);
void validateDestination(const URL& destination, std::span<const URL> protecting);

FileHandle openSource(const URL& url);
bool isLocalFile(const URL& url);

} // namespace MailCore::MailReader
