#include "MailCore/Model/FileRevision.h"
#include "MailCore/Model/IndexLimits.h"
#include "MailCore/Model/MailError.h"
#include "MailCore/Model/MailMessage.h"
#include "MailCore/Model/MessageEntry.h"
#include "MailCore/Model/SafeFilename.h"

#include <gtest/gtest.h>

#include <fcntl.h>

namespace MailCore {
namespace {

using namespace std::string_literals;

std::string repeated(std::string_view text, int count) {
    std::string result;
    for (int index = 0; index < count; ++index) result += text;
    return result;
}

TEST(SafeFilenames, CanBeCreatedAnywhere) {
    struct Case {
        std::string_view name;
        std::string given;
        std::string safe;
    };
    const Case cases[] = {
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
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(safeFilename(c.given), c.safe);
    }
}

TEST(Attachments, KnowWhichCanBeReadAsMessages) {
    struct Case {
        std::string_view name;
        MailAttachment attachment;
        bool canPreview;
    };
    const Case cases[] = {
        {"by type", {.name = "x", .type = "Message/RFC822"}, true},
        {"by name", {.name = "Message.EML", .type = "application/octet-stream"}, true},
        {"an Outlook template", {.name = "x.oft", .type = ""}, true},
        {"with a message inside", {.name = "x", .type = "", .embedded = {MailMessage{}}}, true},
        {"an OLE object, whatever its type",
         {.name = "x.eml", .type = "message/rfc822", .isOLE = true},
         false},
        {"something else", {.name = "eml", .type = "image/png"}, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(c.attachment.canPreview(), c.canPreview);
    }
}

TEST(Messages, SummariseTheirText) {
    EXPECT_EQ(MailMessage{.plain = " a\r\n\r\nb\u00A0\u2003c "}.summary(), "a b c");
    EXPECT_EQ(MailMessage{.plain = "\n \t"}.summary(), "");
}

TEST(Entries, AreChargedForTheirTexts) {
    const MessageEntry empty;
    EXPECT_EQ(empty.metadataBytes(), static_cast<std::int64_t>(sizeof(MessageEntry)) + 160);
    const MessageEntry full{.subject = "é", .from = "abc", .date = "d", .recipients = "中"};
    EXPECT_EQ(full.metadataBytes(), empty.metadataBytes() + 2 + 3 + 1 + 3);
}

TEST(EntryTexts, OwnTheirCharactersUnlessBorrowed) {
    std::string characters = "lent";
    const EntryText lent = EntryText::borrowing(characters);
    const EntryText copy = lent; // NOLINT: the copy is the point
    EntryText moved = EntryText("moved");
    moved = EntryText(std::move(moved));
    characters = "gone";
    EXPECT_EQ(lent.view(), "gone");
    EXPECT_EQ(copy.view(), "lent");
    EXPECT_EQ(moved.view(), "moved");
    EXPECT_EQ(EntryText(), EntryText(""));
}

TEST(IndexBudgets, AreClamped) {
    const IndexLimits limits(-5, 1'000'000'000);
    EXPECT_EQ(limits.messages(), 0);
    EXPECT_EQ(limits.bytes(), 67'108'864);
    EXPECT_EQ(IndexLimits(1'000'000, -1), IndexLimits(200'000, 0));
}

TEST(FileRevisions, ExistForRegularFilesOnly) {
    int pipes[2] = {-1, -1};
    ASSERT_EQ(::pipe(pipes), 0);
    const FileHandle writing(pipes[1]);
    FileHandle handles[] = {FileHandle(::open("/", O_RDONLY | O_CLOEXEC)),
                            FileHandle(::open("/dev/null", O_RDONLY | O_CLOEXEC)), FileHandle(pipes[0]),
                            FileHandle()};
    for (const FileHandle& handle : handles) {
        try {
            FileRevision::capture(handle);
            ADD_FAILURE();
        } catch (const MailError& error) {
            EXPECT_EQ(error, MailError::malformed);
        }
    }
}

} // namespace
} // namespace MailCore
