#include "MailCore/Model/Limits.h"
#include "MailCore/Model/MailError.h"
#include "MailCore/Sources/MailReader.h"
#include "fuzz/MemoryFile.h"
#include "fuzz/Support.h"

using namespace MailCore;
using namespace MailCore::Fuzzing;

/// Entries lie in order inside the file, do not overlap, are delivered exactly once, and each can be read.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const ByteView bytes = std::as_bytes(std::span(data, size));
    const MemoryFile file(bytes);
    std::size_t delivered = 0;
    try {
        const MailCollection collection = MailReader::collection(
            file.url(), never, [](std::size_t) {}, {Limits::messages, Limits::indexBytes},
            [&](std::span<const SharedEntry> batch) { delivered += batch.size(); });
        check(delivered == collection.entries.size());
        ByteOffset end = 0;
        for (const SharedEntry& entry : collection.entries) {
            check(entry->offset >= end && entry->length > 0);
            end = entry->offset + static_cast<ByteOffset>(entry->length);
            check(end <= size);
            try {
                MailReader::message(*entry, never);
            } catch (const MailError&) {
            }
        }
    } catch (const MailError& error) {
        check(error == MailError::malformed);
    }
    return 0;
}
