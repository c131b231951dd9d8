#pragma once

#include <cstddef>
#include <cstdint>

namespace MailCore {

/// What a tree of nested content may still cost: one for the whole tree, which every place in it pays from.
/// Bytes and parts that were paid are gone; a level is given back when it is left.
class ContentBudget {
public:
    struct Left {
        std::int64_t bytes = 0;
        std::int64_t parts = 0;
        std::int64_t levels = 0; // the outermost content takes one too
        bool operator==(const Left&) const = default;
    };

    /// A level of nesting, for as long as it lives.
    class Level {
    public:
        Level(const Level&) = delete;
        Level& operator=(const Level&) = delete;
        ~Level() { ++left_.levels; }

    private:
        friend ContentBudget;
        explicit Level(Left& left) noexcept : left_(left) { --left_.levels; }
        Left& left_;
    };

    explicit ContentBudget(const Left& left) noexcept : left_(left) {}
    ContentBudget(const ContentBudget&) = delete;
    ContentBudget& operator=(const ContentBudget&) = delete;

    const Left& left() const noexcept { return left_; }

    /// Pays for `size` bytes. Throws MailError::tooLarge when fewer are left, and from then on.
    void charge(std::size_t size);
    /// Pays for one part. Throws MailError::tooMany when none is left.
    void countPart();
    /// Enters the next level. Throws MailError::tooMany when none is left.
    [[nodiscard]] Level deeper();

private:
    Left left_;
};

/// A budget whose bytes and parts are counted elsewhere: it brings both up to date when it goes, also when
/// it is left by an exception.
class BorrowedBudget : public ContentBudget {
public:
    /// `bytes` may still be paid, and `parts` of `mostParts` were met; `depth` of levels 0 to `deepest` is
    /// the one that is entered first.
    BorrowedBudget(std::int64_t& bytes, int& parts, int mostParts, int depth, int deepest) noexcept
        : ContentBudget({.bytes = bytes,
                         .parts = std::int64_t{mostParts} - parts,
                         .levels = std::int64_t{deepest} - depth + 1}),
          bytes_(bytes), parts_(parts), mostParts_(mostParts) {}
    BorrowedBudget(const BorrowedBudget&) = delete;
    BorrowedBudget& operator=(const BorrowedBudget&) = delete;
    ~BorrowedBudget() {
        bytes_ = left().bytes;
        parts_ = static_cast<int>(mostParts_ - left().parts);
    }

private:
    std::int64_t& bytes_;
    int& parts_;
    int mostParts_;
};

} // namespace MailCore
