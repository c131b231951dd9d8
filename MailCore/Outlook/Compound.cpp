#include "MailCore/Outlook/Compound.h"

#include "MailCore/Model/MailError.h"
#include "MailCore/Platform/LittleEndian.h"
#include "MailCore/Platform/Text.h"
#include "MailCore/Platform/UTF16.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <span>

namespace MailCore {

namespace {

constexpr auto signature = std::to_array<std::uint8_t>({0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1});
constexpr std::size_t headerSize = 512;

// Where the header (MS-CFB §2.2) keeps what is read of it.
constexpr std::size_t byteOrder = 28;
constexpr std::size_t sectorShift = 30;
constexpr std::size_t miniSectorShift = 32;
constexpr std::size_t fatCount = 44;
constexpr std::size_t firstDirectorySector = 48;
constexpr std::size_t firstMiniFatSector = 60;
constexpr std::size_t miniFatCount = 64;
constexpr std::size_t firstTableSector = 68; // of the DIFAT, the list of the FAT's sectors
constexpr std::size_t tableSectorCount = 72;
constexpr std::size_t headerTable = 76;
constexpr std::size_t headerTableEntries = 109;

constexpr std::size_t miniSector = 64;             // bytes
constexpr std::size_t miniStreamCutoff = 4'096;    // streams below it lie in the mini stream
constexpr std::uint32_t firstMarker = 0xFFFF'FFFA; // from here on numbers are no sectors
constexpr std::size_t entrySize = 128;
constexpr std::size_t largestDirectory = 2'560'127; // bytes
constexpr std::size_t largestChain = 33'554'432;    // bytes
constexpr int mostTreeLevels = 100;

[[noreturn]] void fail() {
    throw MailError(MailError::malformed);
}

void require(bool holds) {
    if (!holds) fail();
}

/// The little-endian integer at `offset`. Throws MailError::malformed when it is not all inside of `data`.
template <typename Integer>
Integer integer(ByteView data, std::size_t offset) {
    require(offset <= data.size() && data.size() - offset >= sizeof(Integer));
    return littleEndian<Integer>(data.subspan(offset));
}

std::uint16_t u16(ByteView data, std::size_t offset) {
    return integer<std::uint16_t>(data, offset);
}

std::uint32_t u32(ByteView data, std::size_t offset) {
    return integer<std::uint32_t>(data, offset);
}

Compound::Node decodeEntry(ByteView entry) {
    if (u32(entry, 124) != 0) throw MailError(MailError::tooLarge);
    Compound::Node node;
    const std::size_t nameLength = u16(entry, 64);
    if (nameLength >= 2 && nameLength <= 64)
        node.name = Text::fromUTF16LE(entry.first(nameLength - 2)).value_or(std::string());
    node.kind = std::to_integer<std::uint8_t>(entry[66]);
    node.left = u32(entry, 68);
    node.right = u32(entry, 72);
    node.child = u32(entry, 76);
    node.start = u32(entry, 116);
    node.size = u32(entry, 120);
    return node;
}

void appendEntries(std::vector<std::uint32_t>& table, ByteView bytes) {
    const std::size_t count = bytes.size() / 4;
    const std::size_t start = table.size();
    table.resize(start + count);
    for (std::size_t index = 0; index < count; ++index) table[start + index] = u32(bytes, index * 4);
}

/// Checks the fixed fields of the header; the bytes of a sector.
std::size_t sectorSize(ByteView data) {
    require(data.size() >= headerSize);
    require(std::ranges::equal(data.first(signature.size()), std::as_bytes(std::span(signature))));
    require(u16(data, byteOrder) == 0xFFFE);
    const std::uint16_t shift = u16(data, sectorShift);
    require(shift == 9 || shift == 12);
    require(u16(data, miniSectorShift) == 6);
    return std::size_t{1} << shift;
}

/// Gives every entry of the tree its path. An entry comes after its left and before its right sibling; of two
/// with the same path the later one counts.
class TreeWalk {
public:
    TreeWalk(std::span<const Compound::Node> nodes, Compound::Paths& paths)
        : nodes_(nodes), visited_(nodes.size()), paths_(paths) {}

    void walk(std::uint32_t id, std::string_view prefix, int depth) {
        if (id == Compound::none) return;
        require(id < nodes_.size() && depth <= mostTreeLevels && !visited_[id]);
        visited_[id] = true;
        const Compound::Node& node = nodes_[id];
        walk(node.left, prefix, depth + 1);
        std::string path(prefix);
        path += Text::lowered(node.name);
        paths_[path] = id;
        if (node.kind == Compound::storage) walk(node.child, path += '/', depth + 1);
        walk(node.right, prefix, depth + 1);
    }

private:
    std::span<const Compound::Node> nodes_;
    std::vector<bool> visited_;
    Compound::Paths& paths_;
};

} // namespace

std::size_t Compound::Chains::length(std::uint32_t start) const {
    if (start == endOfChain) return 0;
    require(start < lengths.size() && lengths[start] != 0);
    return lengths[start];
}

void Compound::Chains::measure(std::size_t units) {
    // A chain is broken when it leaves the table or the data or comes back to itself; so is all that leads
    // into it.
    constexpr std::uint32_t unknown = 0xFFFF'FFFF;
    constexpr std::uint32_t onTheWay = 0xFFFF'FFFE;
    lengths.assign(std::min(next.size(), units), unknown);
    std::vector<std::uint32_t> way;
    for (std::uint32_t start = 0; start < lengths.size(); ++start) {
        std::uint32_t number = start;
        while (number < lengths.size() && lengths[number] == unknown) {
            lengths[number] = onTheWay;
            way.push_back(number);
            number = next[number];
        }
        const bool known = number < lengths.size() && lengths[number] != onTheWay && lengths[number] != 0;
        bool whole = known || number == endOfChain;
        std::uint32_t length = known ? lengths[number] : 0;
        for (; !way.empty(); way.pop_back()) lengths[way.back()] = whole ? ++length : 0;
    }
}

Bytes Compound::Chains::read(ByteView units, std::size_t unit, std::uint32_t start, std::size_t count) const {
    Bytes bytes(count);
    std::size_t filled = 0;
    for (std::uint32_t number = start; filled < count;) {
        // Neighbours in the chain are mostly neighbours in the file: they are copied together.
        const std::size_t first = number;
        std::size_t run = 0;
        do {
            ++run;
            number = next[number];
        } while (number == first + run && filled + run * unit < count);
        const ByteView piece = units.subspan(first * unit, std::min(run * unit, count - filled));
        std::memcpy(bytes.data() + filled, piece.data(), piece.size());
        filled += piece.size();
    }
    return bytes;
}

Compound::Compound(ByteView data) : data_(data), sector_(sectorSize(data)) {
    fat_.next = readFat();
    fat_.measure(sectors().size() / sector_);

    readDirectory();
    readMiniFat();
    const Node& top = nodes_.front();
    if (top.size > 0) {
        const std::size_t length = fileChain(top.start, largestChain);
        mini_ =
            fat_.read(sectors(), sector_, top.start, std::min(length, static_cast<std::size_t>(top.size)));
    }
    miniFat_.measure(mini_.size() / miniSector);
    TreeWalk(nodes_, paths_).walk(top.child, "", 0);
}

std::optional<Bytes> Compound::stream(std::string_view path) const {
    auto found = paths_.find(path);
    if (found == paths_.end()) found = paths_.find(Text::lowered(path));
    if (found == paths_.end()) return std::nullopt;
    const Node& node = nodes_[found->second];
    const auto size = static_cast<std::size_t>(node.size);
    if (node.kind != streamObject || size > largestChain) return std::nullopt;
    if (size == 0) return Bytes();
    if (size >= miniStreamCutoff) {
        require(size <= fileChain(node.start, largestChain));
        return fat_.read(sectors(), sector_, node.start, size);
    }
    const std::size_t units = miniFat_.length(node.start);
    require(size <= units * miniSector && units <= largestChain / miniSector);
    return miniFat_.read(mini_, miniSector, node.start, size);
}

ByteView Compound::sectors() const noexcept {
    return data_.size() < sector_ ? ByteView() : data_.subspan(sector_);
}

std::size_t Compound::sectorCount(std::size_t offset) const {
    const std::uint32_t count = u32(data_, offset);
    require(count <= data_.size() / sector_);
    return count;
}

std::size_t Compound::fileChain(std::uint32_t start, std::size_t largest) const {
    const std::size_t units = fat_.length(start);
    require(units <= largest / sector_);
    return units * sector_;
}

std::vector<std::uint32_t> Compound::readFat() const {
    const std::size_t count = sectorCount(fatCount);
    require(count != 0);
    const std::vector<std::uint32_t> numbers = fatSectors(count);
    require(numbers.size() == count);
    std::vector<std::uint32_t> table;
    table.reserve(count * sector_ / 4);
    for (const std::uint32_t number : numbers) appendEntries(table, sectorData(number));
    return table;
}

std::vector<std::uint32_t> Compound::fatSectors(std::size_t count) const {
    std::vector<std::uint32_t> numbers;
    const auto collect = [&](ByteView bytes) {
        for (std::size_t at = 0; at < bytes.size() && numbers.size() < count; at += 4) {
            const std::uint32_t number = u32(bytes, at);
            if (number < firstMarker) numbers.push_back(number);
        }
    };
    collect(data_.subspan(headerTable, headerTableEntries * 4));
    std::uint32_t next = u32(data_, firstTableSector);
    std::vector<bool> visited(data_.size() / sector_);
    for (std::size_t left = sectorCount(tableSectorCount); left > 0; --left) {
        const ByteView bytes = sectorData(next);
        require(!visited[next]);
        visited[next] = true;
        collect(bytes.first(sector_ - 4));
        next = u32(bytes, sector_ - 4);
    }
    return numbers;
}

ByteView Compound::sectorData(std::uint32_t number) const {
    require(number < firstMarker && number < sectors().size() / sector_);
    return sectors().subspan(number * sector_, sector_);
}

void Compound::readDirectory() {
    const std::uint32_t start = u32(data_, firstDirectorySector);
    const std::size_t length = fileChain(start, largestChain);
    if (length > largestDirectory) throw MailError(MailError::tooMany);
    const Bytes directory = fat_.read(sectors(), sector_, start, length);
    nodes_.reserve(directory.size() / entrySize);
    for (ByteView rest = directory; rest.size() >= entrySize; rest = rest.subspan(entrySize))
        nodes_.push_back(decodeEntry(rest.first(entrySize)));
    require(!nodes_.empty() && nodes_.front().kind == root);
}

void Compound::readMiniFat() {
    const std::size_t count = sectorCount(miniFatCount);
    if (count == 0) return;
    const std::uint32_t start = u32(data_, firstMiniFatSector);
    const std::size_t length = fileChain(start, std::min(count * sector_, largestChain));
    appendEntries(miniFat_.next, fat_.read(sectors(), sector_, start, length));
}

} // namespace MailCore
