#pragma once

#include "MailCore/MIME/Base64.h"
#include "MailCore/Platform/ASCII.h"
#include "MailCore/Platform/Bytes.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace MailCore::Testing {

/// Builds the bytes of one message or part, header by header, for tests:
/// `Mail().subject("Minutes").part(Mail().text("Hello")).part(Mail().file("a.pdf", "application/pdf",
/// "%PDF"))`. Header fields stand in the order of the calls; setting one again replaces it. Lines end with CR
/// LF unless `lineEnd` says otherwise; bodies are taken as they are. A Mail turns into Bytes or a string by
/// itself.
class Mail {
public:
    /// Sets the field `name`, at its old place when it is there already.
    Mail& header(std::string_view name, std::string_view value) {
        const auto found = std::ranges::find(headers_, name, &Field::first);
        if (found != headers_.end()) {
            found->second = value;
        } else {
            headers_.emplace_back(name, value);
        }
        return *this;
    }
    /// One more header line, whatever it looks like; no line end.
    Mail& line(std::string_view text) {
        headers_.emplace_back("", text);
        return *this;
    }
    Mail& subject(std::string_view value) { return header("Subject", value); }
    Mail& from(std::string_view value) { return header("From", value); }
    Mail& to(std::string_view value) { return header("To", value); }
    Mail& cc(std::string_view value) { return header("Cc", value); }
    Mail& date(std::string_view value) { return header("Date", value); }
    Mail& type(std::string_view value) { return header("Content-Type", value); }
    Mail& disposition(std::string_view value) { return header("Content-Disposition", value); }
    Mail& contentID(std::string_view value) { return header("Content-ID", value); }

    /// The body as it stands, with no field about it.
    Mail& body(std::string_view bytes) {
        body_ = bytes;
        return *this;
    }
    /// A text body in UTF-8; keeps a type that was set before.
    Mail& text(std::string_view text) { return defaultType("text/plain; charset=utf-8").body(text); }
    Mail& html(std::string_view text) { return defaultType("text/html; charset=utf-8").body(text); }
    /// The body in Base64, in lines of 76 characters.
    Mail& base64(std::string_view content) {
        header("Content-Transfer-Encoding", "base64");
        const std::string encoded = Base64::encode(bytesOf(content));
        body_.clear();
        for (std::size_t at = 0; at < encoded.size(); at += 76) body_ += encoded.substr(at, 76) + "\r\n";
        return *this;
    }
    /// The body in quoted-printable, every byte that is not a letter or a digit escaped.
    Mail& quotedPrintable(std::string_view content) {
        header("Content-Transfer-Encoding", "quoted-printable");
        body_.clear();
        std::size_t column = 0;
        for (const char byte : content) {
            const auto value = static_cast<unsigned char>(byte);
            const bool plain = ASCII::isAlphanumeric(byte);
            if (column > 72) {
                body_ += "=\r\n";
                column = 0;
            }
            body_ += plain ? std::string(1, byte)
                           : std::string{'=', ASCII::hexDigits[value >> 4], ASCII::hexDigits[value & 15]};
            column += plain ? 1 : 3;
        }
        return *this;
    }
    /// An attached file in Base64.
    Mail& file(std::string_view name, std::string_view mediaType, std::string_view content) {
        type(mediaType);
        disposition("attachment; filename=\"" + std::string(name) + "\"");
        return base64(content);
    }

    /// Adds a part; the entity becomes multipart/mixed unless `multipart` says otherwise.
    Mail& part(const Mail& child) {
        height_ = std::max(height_, child.height_ + 1);
        parts_.push_back(child);
        return *this;
    }
    /// The kind of multipart, as in "alternative".
    Mail& multipart(std::string_view subtype) {
        subtype_ = subtype;
        return *this;
    }
    /// "\n" or "\r\n", for the lines of this entity (not of its parts).
    Mail& lineEnd(std::string_view text) {
        lineEnd_ = text;
        return *this;
    }

    std::string string() const {
        std::string result;
        for (const auto& [name, value] : headers_) {
            if (!name.empty()) result += name + ": ";
            result += value + lineEnd_;
        }
        if (parts_.empty()) return result + lineEnd_ + body_;
        const std::string mark = "part-" + std::to_string(height_);
        result += "Content-Type: multipart/" + subtype_ + "; boundary=\"" + mark + "\"" + lineEnd_ + lineEnd_;
        for (const Mail& child : parts_) {
            result += "--" + mark + lineEnd_;
            result += child.string() + lineEnd_;
        }
        return result + "--" + mark + "--" + lineEnd_;
    }
    Bytes bytes() const { return copyOf(bytesOf(string())); }
    operator Bytes() const { return bytes(); }
    operator std::string() const { return string(); }

private:
    using Field = std::pair<std::string, std::string>;

    Mail& defaultType(std::string_view value) {
        const bool present =
            std::ranges::any_of(headers_, [](const Field& field) { return field.first == "Content-Type"; });
        return present ? *this : type(value);
    }

    std::vector<Field> headers_;
    std::string body_;
    std::vector<Mail> parts_;
    std::string subtype_ = "mixed";
    std::string lineEnd_ = "\r\n";
    int height_ = 0;
};

} // namespace MailCore::Testing
