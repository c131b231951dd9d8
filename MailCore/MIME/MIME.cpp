#include "MailCore/MIME/MIME.h"

#include "MailCore/MIME/Bodies.h"
#include "MailCore/MIME/HeaderText.h"
#include "MailCore/MIME/Leaf.h"
#include "MailCore/MIME/Parameters.h"
#include "MailCore/MIME/PartScanner.h"
#include "MailCore/Model/ContentBudget.h"
#include "MailCore/Model/Limits.h"
#include "MailCore/Model/MailError.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace MailCore::MIME {

namespace {

constexpr int deepest = 16; // level; a message itself is at level 0
constexpr std::int64_t largestSum = 3 * Limits::message;
constexpr std::size_t largestBoundary = 199; // bytes

std::optional<std::string> multipartBoundary(const Description& entity) {
    if (!entity.type.starts_with("multipart/")) return std::nullopt;
    std::optional<std::string> boundary = parameter("boundary", entity.contentType);
    if (!boundary || boundary->empty() || boundary->size() > largestBoundary) return std::nullopt;
    return boundary;
}

/// Adds what the entities of one message contain to what is made of it.
class ContentReader {
public:
    ContentReader(ContentBudget& budget, Wanted wanted, const Cancelled& cancelled)
        : budget_(budget), wanted_(wanted), cancelled_(cancelled) {}
    ContentReader(ContentBudget&, Wanted, Cancelled&&) = delete;

    void add(ByteView entity, MailMessage& message) {
        const ContentBudget::Level level = enter(entity.size());
        addHalves(cut(entity, wanted_).halves, message);
    }
    /// An entity of `size` bytes that is cut into `halves` already.
    void add(std::size_t size, const Split& halves, MailMessage& message) {
        const ContentBudget::Level level = enter(size);
        addHalves(halves, message);
    }

private:
    ContentBudget::Level enter(std::size_t size) {
        if (cancelled_()) throw MailError(MailError::cancelled);
        budget_.charge(size);
        budget_.countPart();
        return budget_.deeper();
    }

    void addHalves(const Split& halves, MailMessage& message) {
        const Description description = describe(halves.headers);
        const std::optional<std::string> boundary = multipartBoundary(description);
        if (!boundary) {
            addLeaf(description, halves.body, message, wanted_);
            return;
        }
        const bool isAlternative = description.type == "multipart/alternative";
        PartScanner parts(charsOf(halves.body), *boundary, wanted_, cancelled_);
        while (const std::optional<ByteView> part = parts.next()) {
            MailMessage child;
            add(*part, child);
            std::ranges::move(child.attachments, std::back_inserter(message.attachments));
            if (isAlternative) {
                replaceBodies(message, std::move(child));
            } else {
                appendBodies(message, child);
            }
        }
    }

    ContentBudget& budget_;
    Wanted wanted_;
    const Cancelled& cancelled_;
};

/// The halves of a whole message, which is neither too large nor without any field.
Split splitMessage(ByteView data, Wanted wanted, const Cancelled& cancelled) {
    if (cancelled()) throw MailError(MailError::cancelled);
    if (data.size() > static_cast<std::size_t>(Limits::message)) throw MailError(MailError::tooLarge);
    CutEntity message = cut(data, wanted);
    if (message.fieldCount == 0) throw MailError(MailError::malformed);
    return std::move(message.halves);
}

/// Adds the bodies, and when they are wanted the attachments, of the message `data` cut into `halves`.
void addContents(ByteView data, const Split& halves, MailMessage& message, Wanted wanted,
                 const Cancelled& cancelled) {
    ContentBudget budget({.bytes = largestSum, .parts = Limits::parts, .levels = deepest + 1});
    ContentReader(budget, wanted, cancelled).add(data.size(), halves, message);
}

} // namespace

void part(ByteView entity, int depth, int& count, std::int64_t& budget, MailMessage& message,
          const Cancelled& cancelled) {
    BorrowedBudget left(budget, count, Limits::parts, depth, deepest);
    ContentReader(left, Wanted::everything, cancelled).add(entity, message);
}

MailMessage parse(ByteView data, const Cancelled& cancelled) {
    Split halves = splitMessage(data, Wanted::everything, cancelled);
    MailMessage message;
    message.subject = headerText(headerValue("Subject", halves.headers));
    message.from = headerText(headerValue("From", halves.headers));
    message.to = headerText(headerValue("To", halves.headers));
    message.cc = headerText(headerValue("Cc", halves.headers));
    message.date = headerValue("Date", halves.headers);
    addContents(data, halves, message, Wanted::everything, cancelled);
    message.headers = std::move(halves.headers);
    return message;
}

SearchedTexts texts(ByteView data, const Cancelled& cancelled) {
    const Split halves = splitMessage(data, Wanted::texts, cancelled);
    MailMessage message;
    addContents(data, halves, message, Wanted::texts, cancelled);
    return {
        .to = headerText(headerValue("To", halves.headers)),
        .cc = headerText(headerValue("Cc", halves.headers)),
        .plain = std::move(message.plain),
        .html = std::move(message.html),
    };
}

} // namespace MailCore::MIME
