#include "MailCore/Sources/Emlx.h"

#include "tests/Sources/SourceSupport.h"
#include "tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace MailCore {
namespace {

using namespace Testing;

TEST(Emlx, IsUnwrappedByItsCountLine) {
    struct Case {
        std::string_view name;
        std::string data;
        std::string_view reading; // payload or error
        std::string_view indexing;
    };
    const Case cases[] = {
        {"exact", "4\nabcd", "abcd", "abcd"},
        {"with a trailer", "4\nabcd<plist/>", "abcd", "abcd"},
        {"a CR is forgiven when reading", "4\r\nabcd", "abcd", "malformed"},
        {"so are blanks", " 4 \nabcd", "abcd", "malformed"},
        {"a sign", "+4\nabcd", "abcd", "abcd"},
        {"nothing", "0\nabcd", "malformed", "malformed"},
        {"negative", "-4\nabcd", "malformed", "malformed"},
        {"more than there is", "5\nabcd", "malformed", "malformed"},
        {"no line feed", "4 abcd", "malformed", "malformed"},
        {"the line feed at byte 29", std::string(28, '0') + "4\nabcd", "abcd", "abcd"},
        {"the line feed at byte 30", std::string(29, '0') + "4\nabcd", "malformed", "malformed"},
        {"more than any message", "99999999999999999999\nabcd", "malformed", "malformed"},
    };
    const TemporaryFolder folder;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        std::string payload;
        const std::string error = errorOf([&] { payload = charsOf(MailReader::emlx(bytesOf(c.data))); });
        EXPECT_EQ(payload.empty() ? error : payload, c.reading);
        const FileHandle handle = MailReader::openSource(folder.write("a", c.data));
        std::string range;
        const std::string rangeError = errorOf([&] {
            const auto found = MailReader::emlxRange(handle, 0, static_cast<std::int64_t>(c.data.size()));
            range = c.data.substr(found.offset, static_cast<std::size_t>(found.length));
        });
        EXPECT_EQ(range.empty() ? rangeError : range, c.indexing);
    }
}

} // namespace
} // namespace MailCore
