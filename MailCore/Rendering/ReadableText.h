#pragma once

#include <string>
#include <string_view>

namespace MailCore::SafeHTML {

/// The text of a body made by `render`, for reading without its markup: paragraphs and headings stand apart
/// by a blank line, other blocks and rows of tables begin a line, cells are separated by tabs, list items are
/// marked, quoted blocks carry "> " before each line, and images leave what is written in their place. White
/// space is as it would be shown; what a style hides is left out. Takes only bodies of `render`, whose markup
/// is balanced and at most 101 deep; linear in their size.
std::string readableText(std::string_view body);

} // namespace MailCore::SafeHTML
