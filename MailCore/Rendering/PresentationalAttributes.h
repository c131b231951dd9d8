#pragma once

#include "MailCore/Rendering/ElementAttributes.h"
#include "MailCore/Rendering/StyleColors.h"

#include <string>
#include <string_view>

/// The attributes that say how an element looks (HTML Standard §15, presentational hints).
namespace MailCore::PresentationalAttributes {

/// Appends the declarations that the attributes of an element stand for, joined by ";". `tag` is in lower
/// case.
void appendStyle(std::string& out, const ElementAttributes& attributes, std::string_view tag,
                 StyleColors& colors);

} // namespace MailCore::PresentationalAttributes
