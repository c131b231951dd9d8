#pragma once

#include "MailCore/Model/MailMessage.h"
#include "MailCore/Sources/ArchiveLines.h"

#include <optional>
#include <vector>

namespace MailCore::MailReader {

struct HeaderBlock {
    std::vector<Header> fields;
    std::optional<ByteOffset> end; // just past the blank line that closes the block; absent when none does
};

/// Reads the header block that begins at the reader's current line: up to a blank line, a line that is no
/// field, or Limits::headers bytes. A line that is no field is left to the reader's next call. Errors of the
/// reader pass.
HeaderBlock headers(ArchiveLines& lines);

} // namespace MailCore::MailReader
