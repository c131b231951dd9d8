#include "MailCore/Sources/MailReader.h"

#include "MailCore/Model/Limits.h"
#include "MailCore/Model/MailError.h"
#include "MailCore/Model/SourceKinds.h"
#include "MailCore/Outlook/Outlook.h"
#include "MailCore/Sources/Emlx.h"
#include "MailCore/Sources/HeaderBlock.h"
#include "MailCore/Sources/IndexEntry.h"
#include "MailCore/Sources/Maildir.h"
#include "MailCore/Sources/Mbox.h"
#include "MailCore/Sources/MemoryIndex.h"
#include "MailCore/Sources/SourceFile.h"

#include <sys/stat.h>

namespace MailCore::MailReader {

namespace {

/// The fields that stand for an Outlook file in the index, since it has no header block: those of its
/// message, or its name when it is too large to be read.
std::vector<Header> outlookFields(const URL& url, const FileHandle& handle, const FileRevision& revision,
                                  const Cancelled& cancelled) {
    if (revision.size > Limits::message) return {{"Subject", url.lastPathComponent()}};
    const MailMessage message = Outlook::parse(read(handle, revision.size, cancelled));
    return {{"Subject", message.subject},
            {"From", message.from},
            {"Date", message.date},
            {"To", message.to},
            {"Cc", message.cc}};
}

std::vector<Header> headerFields(const URL& url, const FileHandle& handle, const FileRevision& revision,
                                 MessageFormat format, const Cancelled& cancelled) {
    if (format == MessageFormat::outlook) return outlookFields(url, handle, revision, cancelled);
    if (format == MessageFormat::emlx) handle.seek(emlxRange(handle, 0, revision.size).offset);
    ArchiveLines lines(handle, cancelled);
    return headers(lines).fields;
}

MailCollection indexSingleMessage(const URL& url, const SourceKind& kind, const Cancelled& cancelled,
                                  const Progress& progress, const IndexLimits& limits, const Batch& batch) {
    const FileHandle handle = openSource(url);
    const FileRevision revision = FileRevision::capture(handle);
    if (revision.size < 1) throw MailError(MailError::malformed);
    const std::vector<Header> fields = headerFields(url, handle, revision, kind.format, cancelled);
    requireUnchanged(handle, revision);
    if (fields.empty()) throw MailError(MailError::malformed);
    MemoryIndex index(url, limits, progress, batch);
    index.append(indexEntry(0, fields, {0, revision.size}, url, revision));
    index.deliver();
    return std::move(index).collection(std::string(kind.name));
}

MailCollection indexFolder(const URL& url, const Cancelled& cancelled, const Progress& progress,
                           const IndexLimits& limits, const Batch& batch) {
    const URL archive = URL::file(url.path() + "/" + std::string(SourceKinds::mailboxFile));
    struct stat status {};
    if (::lstat(archive.path().c_str(), &status) != 0)
        return indexMaildir(url, cancelled, progress, limits, batch);
    MailCollection collection = indexMbox(archive, cancelled, progress, limits, batch);
    collection.url = url;
    return collection;
}

} // namespace

MailCollection collection(const URL& url, const Cancelled& cancelled, const Progress& progress,
                          const IndexLimits& limits, const Batch& batch) {
    if (cancelled()) throw MailError(MailError::cancelled);
    if (!isLocalFile(url)) throw MailError(MailError::malformed);
    struct stat status {};
    if (::stat(url.path().c_str(), &status) != 0) throw MailError(MailError::malformed);
    if (S_ISDIR(status.st_mode)) return indexFolder(url, cancelled, progress, limits, batch);
    const SourceKind* const kind = SourceKinds::of(url);
    if (!kind) throw MailError(MailError::unsupported);
    if (kind->isArchive) return indexMbox(url, cancelled, progress, limits, batch);
    return indexSingleMessage(url, *kind, cancelled, progress, limits, batch);
}

SharedEntry entryOfProof(const MailCollection& collection) {
    if (collection.kind == SourceKinds::maildir || collection.isIndexing || collection.indexInterrupted ||
        collection.indexLimitReached || collection.entries.empty())
        return nullptr;
    return collection.entries.front();
}

bool isCurrent(const MessageEntry& proof) {
    if (!proof.revision) return false;
    try {
        return FileRevision::capture(openSource(proof.file)) == *proof.revision;
    } catch (const MailError&) {
        return false;
    }
}

bool isCurrent(const MailCollection& collection) {
    const SharedEntry proof = entryOfProof(collection);
    return proof && isCurrent(*proof);
}

} // namespace MailCore::MailReader
