#pragma once

#include "MailCore/MIME/Entity.h"
#include "MailCore/Model/Cancelled.h"

#include <optional>
#include <string>
#include <string_view>

namespace MailCore::MIME {

/// Finds the parts of a multipart body one after the other (RFC 2046 §5.1.1), in one pass.
class PartScanner {
public:
    /// Borrows `body` and `cancelled`, which outlive it. `cancelled` is asked before each line or, when only
    /// texts are wanted, before each line with a dash in front and once in 128 KiB between those.
    PartScanner(std::string_view body, std::string_view boundary, Wanted wanted, const Cancelled& cancelled)
        : body_(body), delimiter_("--" + std::string(boundary)), wanted_(wanted), cancelled_(cancelled) {}
    PartScanner(std::string_view, std::string_view, Wanted, Cancelled&&) = delete;

    /// The next part, without the line end that belongs to the delimiter after it; points into the body.
    /// Throws MailError::cancelled.
    std::optional<ByteView> next();

private:
    void skipUndashedLines();
    std::string_view trimmedPart(std::size_t start, std::size_t end) const noexcept;

    std::string_view body_;
    std::string delimiter_;
    Wanted wanted_;
    const Cancelled& cancelled_;
    std::size_t at_ = 0;                   // the start of the next line
    std::optional<std::size_t> partStart_; // once a delimiter has been seen
};

} // namespace MailCore::MIME
