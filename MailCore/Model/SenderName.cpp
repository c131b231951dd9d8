#include "MailCore/Model/SenderName.h"

#include "MailCore/Platform/Text.h"
#include "MailCore/Platform/UTF8.h"

#include <unicode/uchar.h>

namespace MailCore {
namespace {

/// The first mailbox of a From value in its three pieces.
struct Mailbox {
    std::string words;   // outside of brackets and comments
    std::string address; // inside of brackets
    std::string comment;
    bool bracketed = false;
};

class MailboxReader {
public:
    explicit MailboxReader(std::string_view text) : text_(text) {}

    Mailbox read() {
        while (at_ < text_.size() && !endsHere()) readPiece();
        return std::move(mailbox_);
    }

private:
    // A comma before any address belongs to a name that was not quoted: "Doe, Jane <jane@…>".
    bool endsHere() const {
        return text_[at_] == ',' && (mailbox_.bracketed || mailbox_.words.find('@') != std::string::npos);
    }

    void readPiece() {
        switch (text_[at_]) {
        case '"': return readUntil('"', mailbox_.words);
        case '(': return readComment();
        case '<':
            mailbox_.bracketed = true;
            mailbox_.address.clear();
            return readUntil('>', mailbox_.address);
        default: mailbox_.words += text_[at_++];
        }
    }

    void readUntil(char end, std::string& piece) {
        for (++at_; at_ < text_.size() && text_[at_] != end; ++at_) {
            if (text_[at_] == '\\' && at_ + 1 < text_.size()) ++at_;
            piece += text_[at_];
        }
        if (at_ < text_.size()) ++at_;
    }

    void readComment() {
        mailbox_.comment.clear();
        int depth = 1;
        for (++at_; at_ < text_.size(); ++at_) {
            if (text_[at_] == '\\' && at_ + 1 < text_.size())
                ++at_;
            else if (text_[at_] == '(')
                ++depth;
            else if (text_[at_] == ')' && --depth == 0)
                break;
            mailbox_.comment += text_[at_];
        }
        if (at_ < text_.size()) ++at_;
    }

    std::string_view text_;
    std::size_t at_ = 0;
    Mailbox mailbox_;
};

bool canBeSeen(std::string_view name) {
    constexpr char32_t blankPattern = 0x2800; // of Braille
    for (std::size_t at = 0; at < name.size();) {
        const char32_t codePoint = Text::next(name, at);
        const auto character = static_cast<UChar32>(codePoint);
        if (codePoint != blankPattern && u_isgraph(character) != 0 &&
            u_hasBinaryProperty(character, UCHAR_DEFAULT_IGNORABLE_CODE_POINT) == 0)
            return true;
    }
    return false;
}

} // namespace

std::string senderName(std::string_view from) {
    const Mailbox mailbox = MailboxReader(from).read();
    const std::string_view address = Text::trimmed(mailbox.address);
    std::string_view name = Text::trimmed(mailbox.words);
    if (!mailbox.bracketed && name.find('@') != std::string_view::npos) name = Text::trimmed(mailbox.comment);
    if (!canBeSeen(name) || (mailbox.bracketed && name == address))
        return std::string(address.empty() ? from : address);
    const bool posesAsAddress = name.find('@') != std::string_view::npos ||
                                name.find("＠") != std::string_view::npos ||
                                name.find("﹫") != std::string_view::npos;
    // The end of a row is cut: after a name that poses as an address the true one would not be seen.
    if (!posesAsAddress) return std::string(name);
    if (!address.empty()) return std::string(address);
    return std::string(mailbox.bracketed ? from : Text::trimmed(mailbox.words));
}

} // namespace MailCore
