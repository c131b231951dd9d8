#include "MailCore/MIME/PartScanner.h"

#include "tests/Support/Case.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace MailCore;

namespace {

std::vector<std::string> partsOf(std::string_view body, MIME::Wanted wanted) {
    MIME::PartScanner scanner(body, "b", wanted, never);
    std::vector<std::string> parts;
    while (const auto part = scanner.next()) parts.emplace_back(charsOf(*part));
    return parts;
}

} // namespace

TEST(PartScanner, CutsBodiesAtTheirDelimiters) {
    const MailCore::Testing::Case<std::string_view, std::vector<std::string>> cases[] = {
        {"preamble and epilogue", "before\r\n--b\r\nx\r\n--b--\r\nafter\r\n--b\r\ny", {"x"}},
        {"line feeds only", "--b\nx\n--b\ny\n--b--\n", {"x", "y"}},
        {"blanks after the delimiter", "--b \t\r\nx\n--b--junk\n--b\ny", {"x"}},
        {"another line that begins alike", "--b\nx\n--bc\n -- b\n--b--", {"x\n--bc\n -- b"}},
        {"no closing delimiter", "--b\nx\n", {"x\n"}},
        {"only the last line end belongs to the delimiter", "--b\nx\r\n\r\n--b--", {"x\r\n"}},
        {"an empty part between delimiters", "--b\n--b\nx\n--b--", {"x"}},
        {"an empty line between delimiters", "--b\n\n--b\nx\n--b--", {"", "x"}},
        {"no delimiter", "x\ny\n", {}},
        {"nothing after the first delimiter", "--b", {}},
        {"closed at once", "--b--\nx", {}},
        {"nothing", "", {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        for (const auto wanted : {MIME::Wanted::everything, MIME::Wanted::texts})
            EXPECT_EQ(partsOf(c.given, wanted), c.expected);
    }
    for (std::size_t size = 131'060; size < 131'076; ++size) { // of what is looked through at once
        const std::string text(size, 'x');
        for (const auto wanted : {MIME::Wanted::everything, MIME::Wanted::texts})
            EXPECT_EQ(partsOf("--b\n" + text + "\n--b--", wanted), std::vector{text}) << size;
    }
}
