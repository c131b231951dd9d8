#include "MailCore/Sources/MemoryIndex.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace MailCore {
namespace {

TEST(MemoryIndexes, RefuseWhatIsBeyondTheBudgetAndRememberIt) {
    std::vector<std::size_t> batches;
    std::vector<std::size_t> counts;
    const MailReader::Progress progress = [&](std::size_t count) { counts.push_back(count); };
    const MailReader::Batch batch = [&](std::span<const SharedEntry> entries) {
        batches.push_back(entries.size());
    };
    const MessageEntry small{.subject = "s"};
    const MessageEntry large{.subject = std::string(1'000, 'l')};
    MemoryIndex index(URL::file("/a"), {10, 2 * small.metadataBytes() + 500}, progress, batch);
    EXPECT_TRUE(index.append(small));
    EXPECT_EQ(batches, std::vector<std::size_t>{1}); // the first goes at once
    EXPECT_FALSE(index.append(large));
    EXPECT_TRUE(index.append(small)); // a smaller one still fits
    EXPECT_EQ(index.count(), 2U);
    index.deliver();
    index.deliver();
    EXPECT_EQ(batches, (std::vector<std::size_t>{1, 1})); // nothing twice
    EXPECT_EQ(counts, (std::vector<std::size_t>{1, 2, 2}));
    const MailCollection collection = std::move(index).collection("EML");
    EXPECT_EQ(collection.kind, "EML");
    EXPECT_EQ(collection.url, URL::file("/a"));
    EXPECT_TRUE(collection.indexLimitReached);
    EXPECT_EQ(collection.metadataBytes, 2 * small.metadataBytes());
}

} // namespace
} // namespace MailCore
