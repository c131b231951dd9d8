#include "MailCore/Outlook/Outlook.h"

#include "MailCore/Dates/DateNames.h"
#include "MailCore/Dates/MailDate.h"
#include "MailCore/MIME/DecodeHTML.h"
#include "MailCore/MIME/HeaderText.h"
#include "MailCore/MIME/MIME.h"
#include "MailCore/MIME/MailEncoding.h"
#include "MailCore/Model/ContentBudget.h"
#include "MailCore/Model/Limits.h"
#include "MailCore/Model/MailError.h"
#include "MailCore/Model/SafeFilename.h"
#include "MailCore/Platform/Text.h"
#include "MailCore/Platform/UTF8.h"

#include <fmt/format.h>

#include <array>
#include <chrono>
#include <functional>
#include <span>
#include <vector>

namespace MailCore::Outlook {

namespace {

constexpr std::int64_t largestSum = 3 * Limits::message; // bytes of all texts and contents read
constexpr int deepest = 8;                               // level of attached messages; the file's own is 0
constexpr std::uint64_t year10000 = 2'650'467'744'000'000'000; // FILETIME

// Bytes before the records of a property stream (MS-OXMSG §2.4.1).
constexpr std::size_t messageHeader = 32;
constexpr std::size_t embeddedHeader = 24;
constexpr std::size_t childHeader = 8; // of a recipient or an attachment

// Tags of fixed-size properties (MS-OXPROPS).
constexpr std::uint32_t messageCodepage = 0x3FFD'0003;
constexpr std::uint32_t internetCodepage = 0x3FDE'0003;
constexpr std::uint32_t submitTime = 0x0039'0040;
constexpr std::uint32_t deliveryTime = 0x0E06'0040;
constexpr std::uint32_t recipientType = 0x0C15'0003;
constexpr std::uint32_t attachmentMethod = 0x3705'0003;

constexpr std::uint64_t toRecipient = 1;
constexpr std::uint64_t ccRecipient = 2;
constexpr std::uint64_t embeddedMessage = 5;
constexpr std::uint64_t oleObject = 6;

constexpr std::size_t largestPropertyStream = 262'144;
constexpr std::string_view propertyStream = "__properties_version1.0";
constexpr std::string_view recipientStorage = "__recip_version1.0_";
constexpr std::string_view attachmentStorage = "__attach_version1.0_";
constexpr std::string_view htmlStream = "__substg1.0_10130102";
constexpr std::string_view dataStream = "__substg1.0_37010102";
constexpr std::string_view messageStorage = "__substg1.0_3701000d";

constexpr std::string_view nameOfNothing = "Attachment"; // what an empty file name becomes

/// "Name <address>", or the one that there is.
std::string mailbox(std::string_view name, std::string_view address) {
    if (name.empty()) return std::string(address);
    if (address.empty()) return std::string(name);
    return fmt::format("{} <{}>", name, address);
}

std::string firstOf(std::string text, const std::function<std::string()>& other) {
    return text.empty() ? other() : text;
}

/// The instant of a FILETIME as a Date header gives it, in UTC; absent for none and from the year 10000 on.
std::optional<std::string> dateText(std::uint64_t fileTime) {
    using namespace std::chrono;
    if (fileTime == 0 || fileTime >= year10000) return std::nullopt;
    constexpr std::int64_t since1601 = 11'644'473'600; // seconds from 1601 to 1970
    const sys_seconds instant{seconds(static_cast<std::int64_t>(fileTime / 10'000'000) - since1601)};
    const sys_days midnight = floor<days>(instant);
    const year_month_day day(midnight);
    const hh_mm_ss time(instant - midnight);
    return fmt::format("{} {} {:04} {:02}:{:02}:{:02} +0000", static_cast<unsigned>(day.day()),
                       DateNames::months[static_cast<unsigned>(day.month()) - 1],
                       static_cast<int>(day.year()), time.hours().count(), time.minutes().count(),
                       time.seconds().count());
}

/// Reads one message of a container; see `Outlook::message`. Pays from `budget` for each stream it reads and
/// each attachment, and takes a level of it.
class MessageReader {
public:
    MessageReader(const Compound& compound, const std::string& prefix,
                  const std::optional<std::string>& inheritedCharset, ContentBudget& budget)
        : compound_(compound), prefix_(prefix), budget_(budget), level_(budget.deeper()),
          properties_(properties(compound, prefix, prefix.empty() ? messageHeader : embeddedHeader)),
          htmlCharset_(MailEncoding::charset(properties_[internetCodepage])) {
        charset_ = MailEncoding::charset(properties_[messageCodepage])
                       .value_or(htmlCharset_.value_or(inheritedCharset.value_or("windows-1252")));
        bodyCharset_ = htmlCharset_.value_or(charset_);
    }

    MailMessage message() {
        MailMessage message;
        const std::string transport = string("007d") + "\r\n\r\n";
        message.headers = MIME::split(bytesOf(transport)).headers;
        message.subject = string("0037");
        const std::string sender = string("0c1a");
        message.from = mailbox(sender, firstOf(string("5d01"), [this] { return string("0c1f"); }));
        message.to = string("0e04");
        message.cc = string("0e03");
        message.plain = string("1000", prefix_, bodyCharset_);
        message.html = html();
        if (message.subject.empty())
            message.subject = MIME::headerText(MIME::headerValue("Subject", message.headers));
        if (message.from.empty()) message.from = MIME::headerText(MIME::headerValue("From", message.headers));
        message.date = date(message.headers);
        const std::vector<std::string> children = this->children();
        if (message.to.empty() || message.cc.empty()) addRecipients(message, children);
        addAttachments(message, children);
        if (message.subject.empty() && message.plain.empty() && message.html.empty() &&
            message.from.empty() && message.attachments.empty())
            throw MailError(MailError::malformed);
        cut(message.plain);
        cut(message.html);
        return message;
    }

private:
    /// The stream at `path`, paid from the budget.
    std::optional<Bytes> stream(const std::string& path) {
        std::optional<Bytes> bytes = compound_.stream(path);
        budget_.charge(bytes ? bytes->size() : 0);
        return bytes;
    }

    /// The text property `id` of what has `prefix`: in Unicode, else in `charset`; empty when it has neither.
    std::string string(std::string_view id, const std::string& prefix, const std::string& charset) {
        const std::string path = fmt::format("{}__substg1.0_{}", prefix, id);
        if (const auto unicode = stream(path + "001f"))
            return trimmed(MailEncoding::decode(*unicode, "utf-16le"));
        if (const auto bytes = stream(path + "001e")) return trimmed(MailEncoding::decode(*bytes, charset));
        return {};
    }
    std::string string(std::string_view id, const std::string& prefix) {
        return string(id, prefix, charset_);
    }
    std::string string(std::string_view id) { return string(id, prefix_, charset_); }

    static std::string trimmed(std::string text) {
        const std::string_view kept = Text::trimmedControls(text);
        if (kept.size() == text.size()) return text;
        return std::string(kept);
    }

    std::string html() {
        std::string html;
        if (const auto bytes = stream(prefix_ + std::string(htmlStream)))
            html = trimmed(MIME::decodeHTML(*bytes, htmlCharset_));
        return firstOf(std::move(html), [this] { return string("1013"); });
    }

    std::string date(std::span<const Header> headers) const {
        std::string written(MIME::headerValue("Date", headers));
        if (MailDate::timestamp(written)) return written;
        const std::optional<std::uint64_t> submitted = properties_[submitTime];
        const std::uint64_t time = submitted ? *submitted : properties_[deliveryTime].value_or(0);
        return dateText(time).value_or(written);
    }

    /// The names directly below the message, in ascending order.
    std::vector<std::string> children() const {
        std::vector<std::string> names;
        const Compound::Paths& paths = compound_.paths();
        for (auto place = paths.lower_bound(prefix_); place != paths.end(); ++place) {
            const std::string_view path = place->first;
            if (!path.starts_with(prefix_)) break;
            const std::string_view name = path.substr(prefix_.size());
            if (name.find('/') == std::string_view::npos) names.emplace_back(name);
        }
        return names;
    }

    void addRecipients(MailMessage& message, std::span<const std::string> children) {
        std::string to;
        std::string cc;
        for (const std::string& child : children) {
            if (!child.starts_with(recipientStorage)) continue;
            const std::string prefix = prefix_ + child + "/";
            const Properties fixed = properties(compound_, prefix, childHeader);
            const std::uint64_t type = fixed[recipientType].value_or(toRecipient);
            if (type != toRecipient && type != ccRecipient) continue;
            const std::string name = string("3001", prefix);
            const std::string entry =
                mailbox(name, firstOf(string("39fe", prefix), [&] { return string("3003", prefix); }));
            if (entry.empty()) continue;
            std::string& list = type == toRecipient ? to : cc;
            if (!list.empty()) list += ", ";
            list += entry;
        }
        if (message.to.empty()) message.to = std::move(to);
        if (message.cc.empty()) message.cc = std::move(cc);
    }

    void addAttachments(MailMessage& message, std::span<const std::string> children) {
        for (const std::string& child : children) {
            if (!child.starts_with(attachmentStorage)) continue;
            budget_.countPart();
            message.attachments.push_back(attachment(prefix_ + child + "/"));
        }
    }

    MailAttachment attachment(const std::string& prefix) {
        const Properties fixed = properties(compound_, prefix, childHeader);
        const std::uint64_t method = fixed[attachmentMethod].value_or(1);
        MailAttachment attachment;
        attachment.name =
            safeFilename(firstOf(string("3707", prefix), [&] { return string("3704", prefix); }));
        attachment.type = string("370e", prefix);
        attachment.contentID = string("3712", prefix);
        const std::string storage = prefix + std::string(messageStorage);
        if (method == embeddedMessage || (method != oleObject && compound_.paths().contains(storage))) {
            attachment.embedded.push_back(
                MessageReader(compound_, storage + "/", charset_, budget_).message());
            attachment.type = "message/rfc822";
            if (attachment.name == nameOfNothing) attachment.name = "Attached message";
            return attachment;
        }
        attachment.isOLE = method == oleObject;
        if (auto bytes = stream(prefix + std::string(dataStream))) {
            attachment.bytes = std::move(*bytes);
        } else {
            attachment.available = false;
        }
        return attachment;
    }

    static void cut(std::string& text) {
        constexpr auto largest = static_cast<std::size_t>(Limits::rendered);
        if (text.size() > largest) text = Text::repaired(bytesOf(text).first(largest));
    }

    const Compound& compound_;
    const std::string& prefix_;
    ContentBudget& budget_;
    ContentBudget::Level level_;
    Properties properties_;
    std::optional<std::string> htmlCharset_; // absent: the page says it itself
    std::string charset_;
    std::string bodyCharset_;
};

} // namespace

MailMessage parse(ByteView data) {
    if (data.size() > static_cast<std::size_t>(Limits::message)) throw MailError(MailError::tooLarge);
    const Compound compound(data);
    ContentBudget budget({.bytes = largestSum, .parts = Limits::parts, .levels = deepest + 1});
    return MessageReader(compound, "", std::nullopt, budget).message();
}

MailMessage message(const Compound& compound, const std::string& prefix,
                    const std::optional<std::string>& inheritedCharset, int depth, std::int64_t& budget,
                    int& parts) {
    BorrowedBudget left(budget, parts, Limits::parts, depth, deepest);
    return MessageReader(compound, prefix, inheritedCharset, left).message();
}

Properties properties(const Compound& compound, const std::string& prefix, std::size_t header) {
    std::optional<Bytes> stream = compound.stream(prefix + std::string(propertyStream));
    if (!stream || stream->size() < header) return {};
    if (stream->size() > largestPropertyStream) throw MailError(MailError::tooMany);
    return Properties(std::move(*stream), header);
}

} // namespace MailCore::Outlook
