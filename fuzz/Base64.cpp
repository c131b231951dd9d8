// A text as Base64: decoded as a slow and plain reading decodes it, and given back by encoding.
#include "MailCore/MIME/Base64.h"

#include "fuzz/Support.h"

using namespace MailCore;
using namespace MailCore::Fuzzing;

namespace {

/// The same, character by character.
std::optional<Bytes> plainlyDecoded(std::string_view text) {
    constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string group;
    Bytes bytes;
    bool ended = false;
    for (const char character : text) {
        if (character != '=' && alphabet.find(character) == std::string_view::npos) continue;
        if (ended) return std::nullopt;
        group += character;
        if (group.size() < 4) continue;
        const std::size_t padding = group.size() - std::min(group.find('='), group.size());
        if (padding > 2 || group.find_first_not_of('=', 4 - padding) != std::string::npos)
            return std::nullopt;
        std::uint32_t bits = 0;
        for (const char each : group)
            bits = bits << 6 | (each == '=' ? 0 : static_cast<std::uint32_t>(alphabet.find(each)));
        for (std::size_t index = 0; index < 3 - padding; ++index)
            bytes.push_back(static_cast<std::byte>(bits >> (16 - 8 * index)));
        ended = padding > 0;
        group.clear();
    }
    if (!group.empty()) return std::nullopt;
    return bytes;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes exact = inputBytes(data, size);
    const std::string_view text = charsOf(exact);
    const auto decoded = Base64::decode(text);
    check(decoded == plainlyDecoded(text));
    check(Base64::decode(Base64::encode(exact)) == exact);
    return 0;
}
