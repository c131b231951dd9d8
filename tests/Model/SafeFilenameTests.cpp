#include "MailCore/Model/SafeFilename.h"

#include "tests/Support/Case.h"
#include "tests/Support/Repeated.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace MailCore {
namespace {

using namespace std::string_literals;
using Testing::repeated;

TEST(SafeFilenames, CanBeCreatedAnywhere) {
    const Testing::Case<std::string, std::string> cases[] = {
        {"nothing", "", "Attachment"},
        {"blanks", " \u3000 ", "Attachment"},
        {"a dot", ".", "Attachment"},
        {"two dots", "..", "Attachment"},
        {"three dots", "...", "..."},
        {"separators", "a/b:c\\d.txt", "a_b_c_d.txt"},
        {"a path upwards", "../../etc/passwd", ".._.._etc_passwd"},
        {"control characters become visible before trimming", "\t\n", "__"},
        {"a direction override", "exe\u202Etxt.pdf", "exe_txt.pdf"},
        {"U+0000", "a\0b"s, "a_b"},
        {"a long name keeps its extension", std::string(300, 'x') + ".pdf", std::string(216, 'x') + ".pdf"},
        {"a long extension is no extension", std::string(300, 'x') + "." + std::string(21, 'y'),
         std::string(220, 'x')},
        {"an extension of 20 bytes is one", std::string(300, 'x') + "." + std::string(20, 'y'),
         std::string(199, 'x') + "." + std::string(20, 'y')},
        {"characters stay whole", repeated("中", 100), repeated("中", 73)},
        {"a first character that is too long", "e" + repeated("\u0301", 200) + ".pdf", "Attachment.pdf"},
        {"a hidden name", ".profile", ".profile"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(safeFilename(c.given), c.expected);
    }
}

} // namespace
} // namespace MailCore
