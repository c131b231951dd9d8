#pragma once

#include "MailCore/Sources/MailReader.h"

namespace MailCore::MailReader {

/// Indexes the messages in the folders "cur" and "new" of `url`, in the order the file system lists them.
/// Hidden files, symbolic links and folders are passed over. Parameters, result and errors are those of
/// `collection`; MailError::unsupported when there is no message. The kind is "Maildir".
MailCollection indexMaildir(const URL& url, const Cancelled& cancelled, const Progress& progress,
                            const IndexLimits& limits, const Batch& batch);

} // namespace MailCore::MailReader
