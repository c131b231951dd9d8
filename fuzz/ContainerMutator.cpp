// Mutates compound files by their structure: what random bytes hit is mostly content, and what is checked
// stands in the header, the tables, the directory and the property records.

#include "MailCore/Platform/Bytes.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <random>
#include <string>

using namespace MailCore;

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace {

constexpr std::size_t headerSize = 512;
constexpr std::size_t entrySize = 128;

constexpr auto headerFields = std::to_array<std::size_t>({44, 48, 60, 64, 68, 72, 76, 80, 84});
constexpr auto entryFields = std::to_array<std::size_t>({68, 72, 76, 116, 120}); // of 32 bits
constexpr auto names = std::to_array<std::string_view>({
    "__properties_version1.0", "__recip_version1.0_#00000000",  "__recip_version1.0_#00000001",
    "__substg1.0_3701000D",    "__attach_version1.0_#00000000", "__attach_version1.0_#00000001",
    "__substg1.0_37010102",    "__substg1.0_10130102",          "__substg1.0_1013001F",
    "__substg1.0_1013001E",    "__substg1.0_1000001F",          "__substg1.0_1000001E",
    "__substg1.0_0037001F",    "__substg1.0_0037001E",          "__substg1.0_007D001F",
    "__substg1.0_007D001E",    "__substg1.0_0C1A001F",          "__substg1.0_5D01001F",
    "__substg1.0_0C1F001F",    "__substg1.0_0E04001F",          "__substg1.0_0E03001E",
    "__substg1.0_3001001F",    "__substg1.0_39FE001F",          "__substg1.0_3003001F",
    "__substg1.0_3707001F",    "__substg1.0_3704001F",          "__substg1.0_370E001F",
    "__substg1.0_3712001F",
});
constexpr auto tags =
    std::to_array<std::uint32_t>({0x3FFD0003, 0x3FDE0003, 0x00390040, 0x0E060040, 0x0C150003, 0x37050003});
constexpr auto propertyValues = std::to_array<std::uint64_t>({0,
                                                              1,
                                                              2,
                                                              3,
                                                              5,
                                                              6,
                                                              932,
                                                              936,
                                                              950,
                                                              1200,
                                                              1252,
                                                              50220,
                                                              65000,
                                                              65001,
                                                              99'999,
                                                              0xFFFF'FFFF,
                                                              116'444'736'000'000'000,
                                                              133'486'317'300'000'000,
                                                              2'650'467'743'999'999'999,
                                                              2'650'467'744'000'000'000});

/// One file that is about to be changed in place.
class Mutation {
public:
    Mutation(std::uint8_t* data, std::size_t size, unsigned seed)
        : data_(data), size_(size), random_(seed), sector_(get16(30) == 12 ? 4'096 : 512) {}

    void apply() {
        switch (below(10)) {
        case 0: put32(headerFields[below(headerFields.size())], interesting()); break;
        case 1:
        case 2: put32(inSector(get32(76 + 4 * below(2))), interesting()); break; // the FAT
        case 3: put32(inSector(get32(60)), interesting()); break;                // the mini FAT
        case 4: put32(inSector(get32(68)), interesting()); break;                // the list of FAT sectors
        case 5: put32(entry() + entryFields[below(entryFields.size())], interesting()); break;
        case 6: rename(); break;
        case 7: copyEntry(); break;
        case 8: writeRecord(); break;
        default: describe(); break;
        }
    }

    /// What has to hold for anything else to be looked at.
    void mend() {
        constexpr std::array<std::uint8_t, 8> signature = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};
        if (size_ < headerSize || below(50) == 0) return;
        std::memcpy(data_, signature.data(), signature.size());
        put16(28, 0xFFFE);
        if (get16(30) != 12) put16(30, 9);
        put16(32, 6);
    }

private:
    std::size_t below(std::size_t count) { return random_() % std::max<std::size_t>(count, 1); }

    std::size_t sectors() const { return size_ / sector_; }
    std::uint32_t get16(std::size_t at) const {
        return at + 2 <= size_ ? static_cast<std::uint32_t>(data_[at] | data_[at + 1] << 8) : 0;
    }
    std::uint32_t get32(std::size_t at) const { return get16(at) | get16(at + 2) << 16; }
    void put16(std::size_t at, std::uint32_t value) {
        if (at + 2 > size_) return;
        data_[at] = static_cast<std::uint8_t>(value);
        data_[at + 1] = static_cast<std::uint8_t>(value >> 8);
    }
    void put32(std::size_t at, std::uint32_t value) {
        put16(at, value);
        put16(at + 2, value >> 16);
    }

    std::uint32_t interesting() {
        switch (below(8)) {
        case 0: return static_cast<std::uint32_t>(below(4));
        case 1:
        case 2:
        case 3: return static_cast<std::uint32_t>(below(sectors() + 2));
        case 4: return 0xFFFF'FFFA + static_cast<std::uint32_t>(below(6));
        case 5: return 4'095 + static_cast<std::uint32_t>(below(2));
        case 6: return static_cast<std::uint32_t>(below(size_ + 2));
        default: return static_cast<std::uint32_t>(random_());
        }
    }

    /// The offset of one of the numbers in a sector, mostly among the first.
    std::size_t inSector(std::uint32_t number) {
        return (std::size_t{number} + 1) * sector_ + 4 * below(below(3) == 0 ? sector_ / 4 : 40);
    }
    /// The offset of a directory entry: of the first sectors, or wherever one may be.
    std::size_t entry() {
        const std::size_t first = (std::size_t{get32(48)} + 1) * sector_;
        if (below(2) == 0 && first < size_) return first + entrySize * below(8);
        for (int attempt = 0; attempt < 20; ++attempt) {
            const std::size_t at = headerSize + entrySize * below((size_ - headerSize) / entrySize);
            if (get16(at) != 0 && get16(at + 64) <= 64 && get16(at + 66) % 256 <= 5) return at;
        }
        return first;
    }
    void rename() {
        const std::size_t at = entry();
        const std::string_view name = names[below(names.size())];
        for (std::size_t index = 0; index <= name.size(); ++index)
            put16(at + 2 * index, index < name.size() ? static_cast<unsigned char>(name[index]) : 0);
        put16(at + 64, static_cast<std::uint32_t>(2 * name.size() + 2));
    }
    void copyEntry() {
        const std::size_t from = entry();
        const std::size_t to = entry();
        if (from + entrySize <= size_ && to + entrySize <= size_)
            std::memmove(data_ + to, data_ + from, entrySize);
    }
    /// A property record somewhere, where small streams lie.
    void writeRecord() {
        const std::size_t at = 8 * below(size_ / 8);
        if (at + 16 > size_) return;
        const std::uint64_t value = propertyValues[below(propertyValues.size())];
        put32(at, tags[below(tags.size())]);
        put32(at + 8, static_cast<std::uint32_t>(value));
        put32(at + 12, static_cast<std::uint32_t>(value >> 32));
    }
    /// Kind, name or size of an entry.
    void describe() {
        const std::size_t at = entry();
        switch (below(5)) {
        case 0: put16(at + 66, static_cast<std::uint32_t>(below(6))); break;
        case 1: put16(at + 64, static_cast<std::uint32_t>(below(70))); break;
        case 2: put16(at + 2 * below(32), 0xD800 + static_cast<std::uint32_t>(below(0x800))); break;
        case 3: put32(at + 124, static_cast<std::uint32_t>(below(2))); break;
        default: put32(at + 120, get32(at + 120) + static_cast<std::uint32_t>(below(3)) - 1); break;
        }
    }

    std::uint8_t* data_;
    std::size_t size_;
    std::minstd_rand random_;
    std::size_t sector_;
};

} // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                               unsigned seed) {
    if (seed % 4 == 0 || size < 2 * headerSize) size = LLVMFuzzerMutate(data, size, maxSize);
    Mutation mutation(data, size, seed);
    if (seed % 4 != 0 && size >= 2 * headerSize) {
        for (unsigned count = 1 + seed / 4 % 4; count > 0; --count) mutation.apply();
    }
    mutation.mend();
    return size;
}
