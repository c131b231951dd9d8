#pragma once

#include <string_view>

/// What the page around a message is made of, for those who write styles for it or change it in place.
namespace MailCore::PageParts {

/// The selector of the element that holds the message.
inline constexpr std::string_view contentSelector = ".mail-content";
/// The class in it.
inline constexpr std::string_view contentClass = contentSelector.substr(1);
/// The id of the style element that holds the message's own styles.
inline constexpr std::string_view stylesID = "mail-styles";
/// The custom properties of the root element: the factor of all text sizes, and the colour of the paper.
inline constexpr std::string_view scaleProperty = "--mail-scale";
inline constexpr std::string_view paperProperty = "--paper";
/// The size of text at factor 1, in pixels.
inline constexpr double baseFontSize = 16;

} // namespace MailCore::PageParts
