// What people are told when something fails: the cause where the system proves one, and what can be done.
#include "TesselMail/Model/FailureText.h"

#include "MailCore/Model/MailError.h"
#include "TesselMail/Model/ErrorText.h"
#include "tests/Application/ModelFixture.h"

#include <cerrno>
#include <cstring>
#include <new>
#include <sys/mount.h>
#include <system_error>
#include <tuple>
#include <unistd.h>

namespace TesselMail::Testing {
namespace {

using MailCore::MailError;
using MailCore::Testing::TemporaryFolder;

constexpr auto reading = FailedWork::Kind::reading;
constexpr auto saving = FailedWork::Kind::saving;

std::exception_ptr refused(int number) {
    return std::make_exception_ptr(std::system_error(number, std::generic_category()));
}

void expectFailure(const Failure& failure, const Phrase& text, Remedy remedy) {
    EXPECT_EQ(failure.text.english, text.english);
    EXPECT_EQ(failure.remedy, remedy);
}

/// Without the right to pass over permissions, as people are.
class Unprivileged {
public:
    Unprivileged() : former_(::geteuid()) {
        if (former_ == 0) lowered_ = ::seteuid(65'534) == 0;
    }
    Unprivileged(const Unprivileged&) = delete;
    Unprivileged& operator=(const Unprivileged&) = delete;
    ~Unprivileged() {
        if (lowered_) std::ignore = ::seteuid(former_);
    }

private:
    uid_t former_;
    bool lowered_ = false;
};

TEST(FailureTexts, NameTheCauseThatTheSystemGives) {
    struct Case {
        FailedWork::Kind kind;
        int number;
        const Phrase& text;
    };
    const Case cases[] = {
        {reading, ENOENT, Texts::fileMissing}, {reading, ENOTDIR, Texts::fileMissing},
        {reading, EACCES, Texts::mayNotRead},  {reading, EPERM, Texts::mayNotRead},
        {saving, EACCES, Texts::mayNotSave},   {saving, EPERM, Texts::mayNotSave},
        {saving, EROFS, Texts::mayNotSave},    {saving, ENOSPC, Texts::diskFull},
        {saving, EDQUOT, Texts::diskFull},     {saving, ENOENT, Texts::fileFailed},
        {saving, EIO, Texts::fileFailed},      {reading, EIO, Texts::fileFailed},
        {reading, ENOSPC, Texts::fileFailed},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.kind == reading ? "reading " : "saving ") + std::strerror(c.number));
        expectFailure(failureText(refused(c.number), {.kind = c.kind}), c.text, Remedy::tryAgain);
    }
}

TEST(FailureTexts, AskTheFileSystemForASourceThatCouldNotBeRead) {
    const TemporaryFolder folder;
    folder.write("good.eml", "Subject: a\n\nHello");
    folder.write("closed.eml", "Subject: a\n\nHello");
    folder.write("Closed/cur/1", "Subject: a\n\nHello");
    folder.write("Half/cur/1", "Subject: a\n\nHello");
    folder.write("Archive/mbox", "no mail");
    folder.write("Empty/other", "");
    using std::filesystem::permissions;
    using std::filesystem::perms;
    for (const char* const name : {"closed.eml", "Closed", "Half/cur", "Archive/mbox"})
        permissions(folder.path(name), perms::none);

    struct Case {
        std::string_view name;
        MailError error;
        const Phrase& text;
        Remedy remedy;
    };
    const Case cases[] = {
        {"good.eml", MailError::malformed, Texts::malformed, Remedy::none},
        {"missing.eml", MailError::malformed, Texts::fileMissing, Remedy::tryAgain},
        {"good.eml/inside.eml", MailError::malformed, Texts::fileMissing, Remedy::tryAgain},
        {"closed.eml", MailError::malformed, Texts::mayNotRead, Remedy::tryAgain},
        {"closed.eml", MailError::unsupported, Texts::unsupported, Remedy::none},
        {"closed.eml", MailError::sourceChanged, Texts::sourceChanged, Remedy::reopen},
        {"closed.eml", MailError::tooLarge, Texts::tooLarge, Remedy::none},
        {"missing.eml", MailError::tooMany, Texts::tooMany, Remedy::none},
        {"Closed", MailError::unsupported, Texts::mayNotRead, Remedy::tryAgain},
        {"Closed/cur/1", MailError::malformed, Texts::mayNotRead, Remedy::tryAgain},
        {"Half", MailError::unsupported, Texts::mayNotRead, Remedy::tryAgain},
        {"Half", MailError::malformed, Texts::malformed, Remedy::none}, // some message, not the folder
        {"Archive", MailError::malformed, Texts::mayNotRead, Remedy::tryAgain},
        {"Empty", MailError::unsupported, Texts::unsupported, Remedy::none},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.name) + ' ' +
                     std::string(errorText(std::make_exception_ptr(c.error)).english));
        const Unprivileged unprivileged;
        expectFailure(failureText(std::make_exception_ptr(c.error), {.source = folder.url(c.name)}), c.text,
                      c.remedy);
    }
    for (const char* const name : {"closed.eml", "Closed", "Half/cur", "Archive/mbox"})
        permissions(folder.path(name), perms::owner_all);
}

TEST(FailureTexts, TellOfWhatNobodyForesaw) {
    for (const auto kind : {reading, saving}) {
        expectFailure(failureText(std::make_exception_ptr(std::bad_alloc()), {.kind = kind}),
                      Texts::fileFailed, Remedy::tryAgain);
        expectFailure(failureText(std::make_exception_ptr(4), {.kind = kind}), Texts::fileFailed,
                      Remedy::tryAgain);
    }
}

class Saving : public ModelTest {};

TEST_F(Saving, SaysWhatKeepsAFileFromBeingWritten) {
    open({folder_.write("parcel.eml", Mail()
                                          .subject("parcel")
                                          .part(Mail().text("See below"))
                                          .part(Mail().file("notes.txt", "text/plain", "Some notes"))
                                          .string())});
    const TemporaryFolder place;
    if (::mount("tmpfs", place.path().c_str(), "tmpfs", MS_RDONLY, "size=64k") != 0)
        GTEST_SKIP() << "no file system can be mounted here";
    const auto attachment = [this] { model_->saveAttachment((*model_->message)->attachments.at(0).id); };
    const auto original = [this] { model_->exportOriginal(); };
    for (const std::function<void()>& write :
         {std::function<void()>(attachment), std::function<void()>(original)}) {
        panels_.destination = place.url("out");
        write();
        waitUntil([this] { return model_->error->has_value(); });
        EXPECT_EQ(*model_->error, Texts::mayNotSave.english);
        EXPECT_NE(*model_->remedy, Remedy::reopen);
        model_->dismissError();
        panels_.destination = place.url("no/such/folder");
        write();
        waitUntil([this] { return model_->error->has_value(); });
        EXPECT_EQ(*model_->error, Texts::fileFailed.english);
        model_->dismissError();
    }
    ::umount2(place.path().c_str(), MNT_DETACH);
}

} // namespace
} // namespace TesselMail::Testing
