#pragma once

#include "MailCore/Platform/Bytes.h"

#include "MailCore/Platform/ASCII.h"

#include <unicode/unistr.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <map>
#include <numeric>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

namespace MailCore::Testing {

inline std::string littleEndian(std::uint64_t value, std::size_t width) {
    std::string bytes;
    for (std::size_t index = 0; index < width; ++index) bytes += static_cast<char>(value >> index * 8 & 0xFF);
    return bytes;
}

inline std::string utf16(std::string_view text) {
    const auto length = static_cast<std::int32_t>(text.size());
    const icu::UnicodeString units = icu::UnicodeString::fromUTF8({text.data(), length});
    std::string bytes;
    for (std::int32_t index = 0; index < units.length(); ++index) bytes += littleEndian(units[index], 2);
    return bytes;
}

/// The finished bytes of a compound file (MS-CFB), and where everything in them is, so that each place can be
/// damaged by its name. Numbers of sectors and entries are as in the file.
struct ContainerFile {
    struct Field {
        std::size_t offset;
        std::size_t width;
    };
    // Of the header (MS-CFB §2.2) …
    static constexpr Field signature{0, 8}, byteOrder{28, 2}, sectorShift{30, 2}, miniSectorShift{32, 2},
        fatCount{44, 4}, firstDirectory{48, 4}, firstMiniFat{60, 4}, miniFatCount{64, 4}, firstDifat{68, 4},
        difatCount{72, 4}, fatList{76, 4};
    // … and of a directory entry (§2.6.1).
    static constexpr Field nameLength{64, 2}, kind{66, 1}, left{68, 4}, right{72, 4}, child{76, 4},
        start{116, 4}, size{120, 4}, highSize{124, 4};
    static constexpr std::uint32_t difatMark = 0xFFFF'FFFC, fatMark = 0xFFFF'FFFD, end = 0xFFFF'FFFE,
                                   none = 0xFFFF'FFFF;

    std::string data;
    std::size_t sector = 512;
    std::vector<std::uint32_t> fat, difat, directory, miniFat; // sectors, in order
    std::map<std::string, std::uint32_t, std::less<>> entries; // path → entry; "" is the root

    std::uint64_t read(std::size_t offset, std::size_t width) const {
        std::uint64_t value = 0;
        for (std::size_t index = width; index-- > 0;)
            value = value << 8 | static_cast<unsigned char>(data.at(offset + index));
        return value;
    }
    void write(std::size_t offset, std::string_view bytes) { data.replace(offset, bytes.size(), bytes); }

    void set(Field field, std::uint64_t value) { write(field.offset, littleEndian(value, field.width)); }
    std::uint32_t get(std::string_view path, Field field) const {
        return static_cast<std::uint32_t>(read(entry(path) + field.offset, field.width));
    }
    void set(std::string_view path, Field field, std::uint64_t value) {
        write(entry(path) + field.offset, littleEndian(value, field.width));
    }
    /// Gives the stream at `path` the sectors of another, without a copy of them.
    void share(std::string_view path, std::string_view other) {
        set(path, start, get(other, start));
        set(path, size, get(other, size));
    }
    /// What follows the sector in its chain.
    std::uint32_t next(std::uint32_t number) const {
        return static_cast<std::uint32_t>(read(place(fat, number * 4), 4));
    }
    void setNext(std::uint32_t number, std::uint32_t value) {
        write(place(fat, number * 4), littleEndian(value, 4));
    }
    void setMiniNext(std::uint32_t number, std::uint32_t value) {
        write(place(miniFat, number * 4), littleEndian(value, 4));
    }
    /// The number of the next sector of that list, at the end of the one at `index`.
    void setDifatNext(std::size_t index, std::uint32_t value) {
        write(offsetOf(difat.at(index)) + sector - 4, littleEndian(value, 4));
    }
    /// The last sector of the chain of the stream at `path`, which is no small one.
    std::uint32_t lastSector(std::string_view path) const {
        std::uint32_t number = get(path, start);
        while (next(number) != end) number = next(number);
        return number;
    }

    std::size_t offsetOf(std::uint32_t number) const { return (number + std::size_t{1}) * sector; }
    std::size_t entry(std::string_view path) const {
        return place(directory, entries.find(path)->second * std::size_t{128});
    }
    std::size_t sectorCount() const { return data.size() / sector - 1; }
    Bytes bytes() const { return copyOf(bytesOf(data)); }
    operator Bytes() const { return bytes(); }

private:
    /// The file offset of a byte of what lies in `sectors`.
    std::size_t place(const std::vector<std::uint32_t>& sectors, std::size_t offset) const {
        return offsetOf(sectors.at(offset / sector)) + offset % sector;
    }
};

/// Writes compound files: `Container().stream("storage/name", content).file()`. Storages on the way to a
/// stream come by themselves.
class Container {
public:
    Container() { entries_.push_back({"Root Entry", 5, {}, {}}); }

    /// 512 or 4,096 bytes; other sizes are not allowed, but can be written.
    Container& sectorSize(std::size_t bytes) {
        sector_ = bytes;
        return *this;
    }
    /// No sector lies beside the one that comes next in its chain.
    Container& scattered() {
        scattered_ = true;
        return *this;
    }
    /// Siblings in a line instead of a balanced tree.
    Container& degenerate() {
        degenerate_ = true;
        return *this;
    }
    /// A FAT of at least that many sectors.
    Container& fatSectors(std::size_t least) {
        leastFat_ = least;
        return *this;
    }
    /// How many of the FAT's sectors the header lists, and how many each sector that continues its list.
    Container& fatList(std::size_t inHeader, std::size_t inSector) {
        listedInHeader_ = inHeader;
        listedInSector_ = inSector;
        return *this;
    }
    Container& storage(std::string_view path) {
        add(path, 1);
        return *this;
    }
    Container& stream(std::string_view path, std::string content) {
        entries_[add(path, 2)].content = std::move(content);
        return *this;
    }
    /// The class identifier of the root, 16 bytes as stored.
    Container& classID(std::string_view bytes) {
        entries_[0].classID = bytes;
        return *this;
    }

    ContainerFile file() const;

private:
    static constexpr std::size_t miniSector = 64;
    static constexpr std::size_t miniCutoff = 4'096;

    struct Entry {
        std::string name;
        std::uint8_t kind = 0;
        std::string content;
        std::string classID;
    };
    struct Links {
        std::uint32_t left = ContainerFile::none;
        std::uint32_t right = ContainerFile::none;
        std::uint32_t child = ContainerFile::none;
        bool red = false;
        std::uint32_t start = 0;
        std::size_t size = 0;
    };
    /// Siblings are sorted by length, then without regard to case.
    using Key = std::tuple<std::size_t, std::size_t, std::string>; // parent, length, name
    using Numbers = std::span<const std::uint32_t>;

    /// Sectors of each kind, and mini sectors.
    struct Layout {
        std::size_t count = 0;
        std::size_t fat = 0;
        std::size_t difat = 0;
        std::size_t directory = 0;
        std::size_t miniFat = 0;
        std::size_t miniStream = 0;
        std::size_t miniSectors = 0;
    };

    Layout layout() const;
    void writeHeader(ContainerFile& file) const;

    static std::size_t divided(std::size_t size, std::size_t unit) { return (size + unit - 1) / unit; }
    static bool isSmall(const Entry& entry) { return entry.content.size() < miniCutoff; }
    std::size_t listedInSector() const { return std::min(listedInSector_, sector_ / 4 - 1); }

    /// Where the units of all chains go, in the order of the chains.
    std::vector<std::uint32_t> places(std::size_t count) const {
        std::size_t stride = 1;
        if (scattered_ && count > 4) {
            stride = count * 2 / 5;
            while (std::gcd(stride, count) != 1) ++stride;
        }
        std::vector<std::uint32_t> result(count);
        for (std::size_t index = 0; index < count; ++index)
            result[index] = static_cast<std::uint32_t>(index * stride % count);
        return result;
    }

    /// Puts `content` into the units `numbers` of `area` and links them in `table`; answers the first.
    static std::uint32_t chain(std::string& area, std::size_t unit, std::vector<std::uint32_t>& table,
                               Numbers numbers, std::string_view content) {
        for (std::size_t index = 0; index < numbers.size(); ++index) {
            const std::string_view piece = content.substr(std::min(content.size(), index * unit), unit);
            area.replace(numbers[index] * unit, piece.size(), piece);
            table[numbers[index]] = index + 1 < numbers.size() ? numbers[index + 1] : ContainerFile::end;
        }
        return numbers.empty() ? ContainerFile::end : numbers.front();
    }

    std::size_t add(std::string_view path, std::uint8_t kind) {
        const std::size_t slash = path.rfind('/');
        const bool top = slash == std::string_view::npos;
        const std::size_t parent = top ? 0 : add(path.substr(0, slash), 1);
        const std::string name(top ? path : path.substr(slash + 1));
        std::string upper = name;
        std::ranges::transform(upper, upper.begin(), ASCII::uppered);
        const auto [place, isNew] =
            children_.try_emplace(Key(parent, utf16(name).size(), upper), entries_.size());
        if (isNew) {
            entries_.push_back({name, kind, {}, {}});
            paths_.emplace(path, static_cast<std::uint32_t>(place->second));
        }
        return place->second;
    }

    std::vector<Links> tree() const {
        std::vector<Links> links(entries_.size());
        for (auto first = children_.begin(); first != children_.end();) {
            const std::size_t parent = std::get<0>(first->first);
            std::vector<std::uint32_t> siblings;
            for (; first != children_.end() && std::get<0>(first->first) == parent; ++first)
                siblings.push_back(static_cast<std::uint32_t>(first->second));
            links[parent].child =
                branch(links, siblings, static_cast<int>(std::bit_width(siblings.size() + 1)) - 1);
        }
        return links;
    }

    /// Links sorted siblings and answers the topmost. What lies below `blackLevels` full levels is red.
    std::uint32_t branch(std::vector<Links>& links, Numbers siblings, int blackLevels) const {
        if (siblings.empty()) return ContainerFile::none;
        const std::size_t middle = degenerate_ ? 0 : siblings.size() / 2;
        Links& link = links[siblings[middle]];
        link.red = blackLevels == 0 && !degenerate_;
        link.left = branch(links, siblings.first(middle), blackLevels - 1);
        link.right = branch(links, siblings.subspan(middle + 1), blackLevels - 1);
        return siblings[middle];
    }

    static std::string encoded(Numbers numbers) {
        std::string bytes;
        for (const std::uint32_t number : numbers) bytes += littleEndian(number, 4);
        return bytes;
    }
    static std::string encoded(const Entry& entry, const Links& links) {
        std::string name = utf16(entry.name);
        std::string bytes = name + std::string(64 - name.size(), '\0');
        bytes += littleEndian(name.size() + 2, 2);
        bytes += static_cast<char>(entry.kind);
        bytes += links.red ? '\0' : '\1';
        for (const std::uint32_t number : {links.left, links.right, links.child})
            bytes += littleEndian(number, 4);
        bytes += entry.classID.empty() ? std::string(16, '\0') : entry.classID;
        bytes += std::string(20, '\0'); // state, times
        return bytes + littleEndian(links.start, 4) + littleEndian(links.size, 8);
    }

    std::vector<Entry> entries_;
    std::map<Key, std::size_t> children_;
    std::map<std::string, std::uint32_t, std::less<>> paths_ = {{"", 0}};
    std::size_t sector_ = 512;
    bool scattered_ = false;
    bool degenerate_ = false;
    std::size_t leastFat_ = 1;
    std::size_t listedInHeader_ = 109;
    std::size_t listedInSector_ = 1'023; // or as many as fit
};

inline Container::Layout Container::layout() const {
    Layout layout{.fat = leastFat_, .directory = divided(entries_.size() * 128, sector_)};
    std::size_t streams = 0;
    for (const Entry& entry : entries_) {
        layout.miniSectors += isSmall(entry) ? divided(entry.content.size(), miniSector) : 0;
        streams += isSmall(entry) ? 0 : divided(entry.content.size(), sector_);
    }
    layout.miniFat = divided(layout.miniSectors * 4, sector_);
    layout.miniStream = divided(layout.miniSectors * miniSector, sector_);
    const std::size_t data = layout.directory + layout.miniFat + layout.miniStream + streams;
    while (layout.count != data + layout.fat + layout.difat) { // the FAT counts itself and its list
        layout.count = data + layout.fat + layout.difat;
        layout.fat = std::max(leastFat_, divided(layout.count, sector_ / 4));
        layout.difat = divided(layout.fat - std::min(layout.fat, listedInHeader_), listedInSector());
    }
    return layout;
}

inline ContainerFile Container::file() const {
    const Layout layout = this->layout();
    ContainerFile file{.sector = sector_, .entries = paths_};
    std::string area(layout.count * sector_, '\0');
    const std::vector<std::uint32_t> numbers = places(layout.count);
    std::size_t used = 0;
    const auto take = [&](std::size_t count) {
        used += count;
        return Numbers(numbers).subspan(used - count, count);
    };
    const auto listOf = [](Numbers some) { return std::vector(some.begin(), some.end()); };
    file.fat = listOf(take(layout.fat));
    file.difat = listOf(take(layout.difat));
    file.directory = listOf(take(layout.directory));
    file.miniFat = listOf(take(layout.miniFat));
    const Numbers miniStream = take(layout.miniStream);

    // Streams, then the tables that say where they are.
    std::vector<std::uint32_t> table(layout.fat * sector_ / 4, ContainerFile::none);
    std::string mini(layout.miniSectors * miniSector, '\0');
    std::vector<std::uint32_t> miniTable(layout.miniFat * sector_ / 4, ContainerFile::none);
    const std::vector<std::uint32_t> miniNumbers = places(layout.miniSectors);
    Numbers miniLeft = miniNumbers;
    std::vector<Links> links = tree();
    for (std::size_t id = 1; id < entries_.size(); ++id) {
        const std::string& content = entries_[id].content;
        links[id].size = content.size();
        if (entries_[id].kind == 2 && isSmall(entries_[id])) {
            const std::size_t count = divided(content.size(), miniSector);
            links[id].start = chain(mini, miniSector, miniTable, miniLeft.first(count), content);
            miniLeft = miniLeft.subspan(count);
        } else if (entries_[id].kind == 2) {
            links[id].start = chain(area, sector_, table, take(divided(content.size(), sector_)), content);
        }
    }
    links[0].start = chain(area, sector_, table, miniStream, mini);
    links[0].size = mini.size();
    std::string entries;
    for (std::size_t id = 0; id < entries_.size(); ++id) entries += encoded(entries_[id], links[id]);
    while (entries.size() % sector_ != 0) entries += encoded({}, {});
    chain(area, sector_, table, file.directory, entries);
    chain(area, sector_, table, file.miniFat, encoded(miniTable));
    for (const std::uint32_t number : file.fat) table[number] = ContainerFile::fatMark;
    for (const std::uint32_t number : file.difat) table[number] = ContainerFile::difatMark;
    const std::string tableBytes = encoded(table);
    for (std::size_t index = 0; index < file.fat.size(); ++index)
        area.replace(file.fat[index] * sector_, sector_, tableBytes, index * sector_, sector_);
    file.data = std::string(sector_, '\0') + area;
    writeHeader(file);
    return file;
}

inline void Container::writeHeader(ContainerFile& file) const {
    const auto first = [](Numbers some) { return some.empty() ? ContainerFile::end : some.front(); };
    const bool small = sector_ == 512;
    file.set(ContainerFile::signature, 0xE11A'B1A1'E011'CFD0);
    file.write(24, littleEndian(0x3E, 2) + littleEndian(small ? 3 : 4, 2)); // version
    file.set(ContainerFile::byteOrder, 0xFFFE);
    file.set(ContainerFile::sectorShift, static_cast<std::size_t>(std::countr_zero(sector_)));
    file.set(ContainerFile::miniSectorShift, 6);
    file.write(40, littleEndian(small ? 0 : file.directory.size(), 4));
    file.set(ContainerFile::fatCount, file.fat.size());
    file.set(ContainerFile::firstDirectory, file.directory.front());
    file.write(56, littleEndian(miniCutoff, 4));
    file.set(ContainerFile::firstMiniFat, first(file.miniFat));
    file.set(ContainerFile::miniFatCount, file.miniFat.size());
    file.set(ContainerFile::firstDifat, first(file.difat));
    file.set(ContainerFile::difatCount, file.difat.size());

    // The FAT's sectors are listed here, and then in a chain of sectors that end in the number of the next.
    Numbers left = file.fat;
    const auto listed = [&](std::size_t count, std::size_t room) {
        std::vector<std::uint32_t> list(room, ContainerFile::none);
        const Numbers some = left.first(std::min(left.size(), count));
        std::ranges::copy(some, list.begin());
        left = left.subspan(some.size());
        return list;
    };
    file.write(ContainerFile::fatList.offset, encoded(listed(listedInHeader_, 109)));
    for (std::size_t index = 0; index < file.difat.size(); ++index) {
        std::vector<std::uint32_t> list = listed(listedInSector(), sector_ / 4);
        list.back() = first(Numbers(file.difat).subspan(index + 1));
        file.write(file.offsetOf(file.difat[index]), encoded(list));
    }
}

} // namespace MailCore::Testing
