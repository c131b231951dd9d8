#pragma once

#include "MailCore/Sources/MailReader.h"

namespace MailCore::MailReader {

/// Indexes an mbox archive in one forward pass, holding one chunk, one header block and the entries.
/// Parameters, result and errors are those of `collection`; the kind is "MBOX".
MailCollection indexMbox(const URL& url, const Cancelled& cancelled, const Progress& progress,
                         const IndexLimits& limits, const Batch& batch);

/// Whether `line`, its line end included, is an envelope line: "From ", then a word, a blank, an English
/// weekday and white space; or "-" and white space or the end.
bool isEnvelope(ByteView line);

} // namespace MailCore::MailReader
