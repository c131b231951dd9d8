#pragma once

#include "MailCore/Platform/Bytes.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace MailCore {

/// A Compound File Binary container (MS-CFB): storages and streams inside one file, found through sector
/// tables. Immutable once opened; any number of threads may read from one. Borrows the file's bytes, which
/// outlive it.
class Compound {
public:
    /// What the `kind` of a directory entry says; other values are kept as they are.
    enum Kind : std::uint8_t { empty = 0, storage = 1, streamObject = 2, root = 5 };
    /// The marks for "none" in a table or a directory entry, and for the end of a chain.
    static constexpr std::uint32_t none = 0xFFFF'FFFF;
    static constexpr std::uint32_t endOfChain = 0xFFFF'FFFE;

    /// One directory entry (MS-CFB §2.6.1), empty slots included.
    struct Node {
        std::string name; // as stored; empty when it is no valid UTF-16
        std::uint8_t kind = empty;
        std::uint32_t left = none; // entry numbers
        std::uint32_t right = none;
        std::uint32_t child = none;
        std::uint32_t start = 0; // first sector, or first mini sector of a small stream
        std::int64_t size = 0;   // bytes
    };
    using Paths = std::map<std::string, std::size_t, std::less<>>;

    /// Reads header, tables and the whole tree of the container in `data`; all or nothing.
    /// Throws MailError: `malformed` for broken structure; `tooMany` above 2,560,127 bytes of directory
    /// (20,000 entries); `tooLarge` for an entry of 4 GiB and more.
    explicit Compound(ByteView data);

    /// The bytes of the stream at `path` (case does not matter); nothing when there is no such stream or it
    /// is larger than 32 MiB. Throws MailError::malformed when its sectors cannot be followed or end too
    /// early.
    [[nodiscard]] std::optional<Bytes> stream(std::string_view path) const;

    /// Where every entry of the tree is: "name" or "storage/name", in lower case, to its place in `nodes`.
    const Paths& paths() const noexcept { return paths_; }
    /// All directory entries, in directory order.
    const std::vector<Node>& nodes() const noexcept { return nodes_; }
    /// Bytes of a sector: 512 or 4,096.
    std::size_t sector() const noexcept { return sector_; }

private:
    /// A table that says for each unit of the data which one comes next.
    struct Chains {
        std::vector<std::uint32_t> next;
        std::vector<std::uint32_t> lengths; // units from here to the end of the chain; 0 when it is broken

        /// Fills `lengths`, for data of that many whole units.
        void measure(std::size_t units);
        /// Units of the chain from `start`. Throws MailError::malformed when it is broken.
        std::size_t length(std::uint32_t start) const;
        /// The first `count` bytes of a chain that is whole and has as many.
        Bytes read(ByteView units, std::size_t unit, std::uint32_t start, std::size_t count) const;
    };

    /// What follows the header's sector.
    ByteView sectors() const noexcept;
    ByteView sectorData(std::uint32_t number) const;
    /// The count at `offset` of the header, of sectors: never more than the file has room for.
    std::size_t sectorCount(std::size_t offset) const;
    /// Bytes of the chain of sectors from `start`, at most `largest`.
    std::size_t fileChain(std::uint32_t start, std::size_t largest) const;
    std::vector<std::uint32_t> readFat() const;
    /// The first `count` numbers of the FAT's own sectors, fewer when there are no more: from the header,
    /// then from the chain of sectors that continues it, which is looked at whole.
    std::vector<std::uint32_t> fatSectors(std::size_t count) const;
    void readDirectory();
    void readMiniFat();

    ByteView data_;
    std::size_t sector_;
    Chains fat_;
    Chains miniFat_;
    Bytes mini_;
    Paths paths_;
    std::vector<Node> nodes_;
};

} // namespace MailCore
