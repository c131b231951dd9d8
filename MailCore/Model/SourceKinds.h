#pragma once

#include "MailCore/Platform/URL.h"

#include <array>
#include <optional>
#include <string_view>

namespace MailCore {

/// How the bytes of one message are read: RFC 5322, the same in an EMLX frame, or MS-OXMSG.
enum class MessageFormat { mime, emlx, outlook };

/// One extension by which files of mail are known, and what it says of them.
struct SourceKind {
    std::string_view extension; // lower case
    std::string_view name;      // MailCollection::kind
    MessageFormat format;       // of each message
    bool isArchive;             // an mbox of many messages; otherwise the file is one
    std::string_view mediaType; // by which the desktop knows such files
};

/// What can be opened: whoever asks how a source is named, read, shown or installed looks here. A new
/// extension is a row here and a line in packaging/.
namespace SourceKinds {

/// In the order in which panels offer them.
inline constexpr auto all = std::to_array<SourceKind>({
    {"eml", "EML", MessageFormat::mime, false, "message/rfc822"},
    {"emlx", "EMLX", MessageFormat::emlx, false, "application/x-emlx"},
    {"msg", "MSG", MessageFormat::outlook, false, "application/vnd.ms-outlook"},
    {"oft", "OFT", MessageFormat::outlook, false, "application/x-outlook-template"},
    {"mbox", "MBOX", MessageFormat::mime, true, "application/mbox"},
    {"mbx", "MBOX", MessageFormat::mime, true, "application/mbox"},
    {"mbo", "MBOX", MessageFormat::mime, true, "application/mbox"},
    {"mime", "MIME", MessageFormat::mime, false, "message/rfc822"},
});

// Further values of MailCollection::kind
inline constexpr std::string_view mbox = "MBOX";        // of folders with a mailbox file, too
inline constexpr std::string_view maildir = "Maildir";  // a folder
inline constexpr std::string_view attached = "Message"; // an attached message, held in memory

/// The mailbox file of a folder, which has no extension.
inline constexpr std::string_view mailboxFile = "mbox";
/// The extension of an exported original; that of an Outlook file keeps its whole name.
inline constexpr std::string_view originalExtension = "eml";

/// The row of an extension, which is in lower case; null for one that is not supported.
const SourceKind* find(std::string_view extension) noexcept;
/// The row of a file by the extension in its name, in any case; null when it is not supported.
const SourceKind* of(const URL& file);
/// How a message in `file` is read: as MIME where the name does not say, as in a Maildir.
MessageFormat formatIn(const URL& file);
/// How an attachment declared as media type `type` under `name` is read as a message; absent when neither
/// says that it is one. What either calls an Outlook file is read as one.
std::optional<MessageFormat> formatOfAttachment(std::string_view type, std::string_view name);
/// Whether collections of `kind` hold many messages by their nature.
bool holdsMany(std::string_view kind) noexcept;

} // namespace SourceKinds
} // namespace MailCore
