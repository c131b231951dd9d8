#pragma once

#include <string>
#include <string_view>

namespace MailCore::SafeHTML {

/// `text` safe inside HTML content and double-quoted attribute values: &amp; &lt; &gt; &quot; &#39;.
std::string escape(std::string_view text);

} // namespace MailCore::SafeHTML
