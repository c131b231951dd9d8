#pragma once

#include "MailCore/MIME/HTMLEscape.h"
#include "MailCore/Model/MailMessage.h"
#include "MailCore/Rendering/MailStyles.h"
#include "MailCore/Rendering/RenderedMail.h"

#include <optional>
#include <string>
#include <string_view>

namespace MailCore::SafeHTML {

RenderedMail render(const MailMessage& message);
std::string searchableText(std::string_view html);
std::string entities(std::string_view text);
Attributes attributes(std::string_view text);
std::optional<std::string> safeLink(std::string_view value);
std::optional<std::string_view> rasterType(ByteView data) noexcept;
bool safeRaster(ByteView data) noexcept;

} // namespace MailCore::SafeHTML
