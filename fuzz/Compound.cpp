// A compound file: what the reader makes of it is what a slow and plain reading makes of it, the error
// included.
#include "MailCore/Outlook/Compound.h"

#include "MailCore/Model/MailError.h"
#include "MailCore/Platform/LittleEndian.h"
#include "MailCore/Platform/Text.h"
#include "MailCore/Platform/UTF16.h"
#include "fuzz/Support.h"

#include <set>

using namespace MailCore;
using namespace MailCore::Fuzzing;

namespace {

void requireFormat(bool holds) {
    if (!holds) throw MailError(MailError::malformed);
}

std::uint32_t u32(ByteView bytes, std::size_t at) {
    requireFormat(at <= bytes.size() && bytes.size() - at >= 4);
    return littleEndian<std::uint32_t>(bytes.subspan(at));
}

/// Follows every chain anew, one sector at a time, with a set of those it has been to.
class PlainReading {
public:
    explicit PlainReading(ByteView data) : data_(data) {
        requireFormat(data.size() >= 512);
        requireFormat(u32(data, 0) == 0xE011'CFD0 && u32(data, 4) == 0xE11A'B1A1 &&
                      u32(data, 28) << 16 == 0xFFFE'0000);
        const std::uint32_t shift = u32(data, 30) & 0xFFFF;
        requireFormat((shift == 9 || shift == 12) && (u32(data, 32) & 0xFFFF) == 6);
        sector_ = std::size_t{1} << shift;
        readFat();
        const Bytes directory = chain(u32(data, 48), fat_, data.subspan(offset(0)), sector_, largest);
        if (directory.size() > 2'560'127) throw MailError(MailError::tooMany);
        for (std::size_t at = 0; at + 128 <= directory.size(); at += 128)
            addEntry(ByteView(directory).subspan(at, 128));
        requireFormat(!entries_.empty() && entries_[0].kind == 5);
        const std::size_t miniSectors = u32(data, 64);
        requireFormat(miniSectors <= data.size() / sector_);
        if (miniSectors > 0) {
            const Bytes table = chain(u32(data, 60), fat_, data.subspan(offset(0)), sector_,
                                      std::min(miniSectors * sector_, largest));
            for (std::size_t at = 0; at + 4 <= table.size(); at += 4) miniFat_.push_back(u32(table, at));
        }
        if (entries_[0].size > 0) {
            mini_ = chain(entries_[0].start, fat_, data.subspan(offset(0)), sector_, largest);
            mini_.resize(std::min<std::size_t>(mini_.size(), static_cast<std::size_t>(entries_[0].size)));
        }
        walk(entries_[0].child, "", 0);
    }

    std::optional<Bytes> stream(const std::string& path) const {
        const Compound::Node& node = entries_[paths_.at(path)];
        const auto size = static_cast<std::size_t>(node.size);
        if (node.kind != 2 || size > largest) return std::nullopt;
        if (size == 0) return Bytes();
        Bytes bytes = size < 4'096 ? chain(node.start, miniFat_, mini_, 64, largest)
                                   : chain(node.start, fat_, data_.subspan(offset(0)), sector_, largest);
        requireFormat(bytes.size() >= size);
        bytes.resize(size);
        return bytes;
    }
    const Compound::Paths& paths() const { return paths_; }
    std::size_t size() const { return entries_.size(); }

private:
    static constexpr std::size_t largest = 33'554'432;
    using Table = std::vector<std::uint32_t>;

    std::size_t offset(std::uint32_t number) const {
        return std::min(data_.size(), (std::size_t{number} + 1) * sector_);
    }

    static Bytes chain(std::uint32_t start, const Table& table, ByteView units, std::size_t unit,
                       std::size_t most) {
        Bytes bytes;
        std::set<std::uint32_t> visited;
        for (std::uint32_t number = start; number != 0xFFFF'FFFE; number = table[number]) {
            requireFormat(number < table.size() && visited.insert(number).second);
            requireFormat(bytes.size() + unit <= most && (std::size_t{number} + 1) * unit <= units.size());
            const ByteView piece = units.subspan(number * unit, unit);
            bytes.insert(bytes.end(), piece.begin(), piece.end());
        }
        return bytes;
    }

    void readFat() {
        const std::size_t count = u32(data_, 44);
        requireFormat(count != 0 && count <= data_.size() / sector_);
        Table numbers;
        const auto take = [&](std::size_t at) {
            if (u32(data_, at) < 0xFFFF'FFFA) numbers.push_back(u32(data_, at));
        };
        for (std::size_t at = 76; at < 512; at += 4) take(at);
        std::size_t left = u32(data_, 72);
        requireFormat(left <= data_.size() / sector_);
        std::set<std::uint32_t> visited;
        for (std::uint32_t next = u32(data_, 68); left > 0; --left) {
            requireFormat(next < 0xFFFF'FFFA && visited.insert(next).second &&
                          offset(next) + sector_ <= data_.size());
            const std::size_t start = offset(next);
            for (std::size_t at = 0; at + 4 < sector_; at += 4) take(start + at);
            next = u32(data_, start + sector_ - 4);
        }
        requireFormat(numbers.size() >= count);
        numbers.resize(count);
        for (const std::uint32_t number : numbers) {
            requireFormat(offset(number) + sector_ <= data_.size());
            for (std::size_t at = 0; at < sector_; at += 4) fat_.push_back(u32(data_, offset(number) + at));
        }
    }

    void addEntry(ByteView bytes) {
        if (u32(bytes, 124) != 0) throw MailError(MailError::tooLarge);
        Compound::Node node;
        const std::size_t length = u32(bytes, 64) & 0xFFFF;
        if (length >= 2 && length <= 64) node.name = Text::fromUTF16LE(bytes.first(length - 2)).value_or("");
        node.kind = std::to_integer<std::uint8_t>(bytes[66]);
        node.left = u32(bytes, 68);
        node.right = u32(bytes, 72);
        node.child = u32(bytes, 76);
        node.start = u32(bytes, 116);
        node.size = u32(bytes, 120);
        entries_.push_back(node);
    }

    void walk(std::uint32_t id, const std::string& prefix, int depth) {
        if (id == 0xFFFF'FFFF) return;
        requireFormat(id < entries_.size() && depth <= 100 && walked_.insert(id).second);
        walk(entries_[id].left, prefix, depth + 1);
        const std::string path = prefix + Text::lowered(entries_[id].name);
        paths_[path] = id;
        if (entries_[id].kind == 1) walk(entries_[id].child, path + "/", depth + 1);
        walk(entries_[id].right, prefix, depth + 1);
    }

    ByteView data_;
    std::size_t sector_ = 0;
    Table fat_;
    Table miniFat_;
    Bytes mini_;
    std::vector<Compound::Node> entries_;
    Compound::Paths paths_;
    std::set<std::uint32_t> walked_;
};

/// What `work` gives, or the error it throws.
template <typename Result, typename Work>
Result resultOf(Work work, std::optional<MailError>& error) {
    try {
        return work();
    } catch (const MailError& thrown) {
        error = thrown;
        return {};
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes file = inputBytes(data, size);
    std::optional<MailError> error;
    std::optional<MailError> plainError;
    const auto compound = resultOf<std::optional<Compound>>([&] { return Compound(file); }, error);
    const auto plain = resultOf<std::optional<PlainReading>>([&] { return PlainReading(file); }, plainError);
    check(error == plainError);
    if (!compound) return 0;
    check(compound->paths() == plain->paths() && compound->nodes().size() == plain->size());
    std::size_t budget = 8 * size; // streams may share their sectors
    for (const auto& place : compound->paths()) {
        const std::string& path = place.first;
        checkText(path);
        if (budget < size) break;
        const auto expected = static_cast<std::size_t>(compound->nodes()[place.second].size);
        budget -= std::min(budget, 64 + expected);
        error.reset();
        plainError.reset();
        const auto bytes = resultOf<std::optional<Bytes>>([&] { return compound->stream(path); }, error);
        check(bytes == resultOf<std::optional<Bytes>>([&] { return plain->stream(path); }, plainError));
        check(error == plainError);
    }
    return 0;
}
