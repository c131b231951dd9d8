#include "MailCore/Model/MailError.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace MailCore {
namespace {

TEST(MailErrors, SayWhichTheyAre) {
    std::set<std::string> names;
    std::set<std::string> descriptions;
    for (const MailError::Case which :
         {MailError::tooLarge, MailError::malformed, MailError::unsupported, MailError::tooMany,
          MailError::cancelled, MailError::sourceChanged, MailError::unsafeDestination}) {
        const MailError error(which);
        EXPECT_EQ(error.which(), which);
        names.emplace(error.name());
        descriptions.emplace(error.errorDescription());
        EXPECT_EQ(error.what(), std::string(error.errorDescription())); // ends where it should
    }
    EXPECT_EQ(names.size(), 7U);
    EXPECT_EQ(descriptions.size(), 7U);
    EXPECT_EQ(MailError(MailError::tooMany).name(), "tooMany");
}

} // namespace
} // namespace MailCore
