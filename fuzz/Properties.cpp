// A property stream: each tag has the value of its last whole record.
#include "MailCore/Outlook/Properties.h"

#include "MailCore/Platform/LittleEndian.h"
#include "fuzz/Support.h"

#include <map>

using namespace MailCore;
using namespace MailCore::Fuzzing;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes stream = inputBytes(data, size);
    for (const std::size_t header : {std::size_t{0}, std::size_t{8}, std::size_t{24}, std::size_t{32}}) {
        if (size < header) break;
        std::map<std::uint32_t, std::uint64_t> values;
        for (std::size_t at = header; size - at >= 16; at += 16) {
            const ByteView record = ByteView(stream).subspan(at, 16);
            values[littleEndian<std::uint32_t>(record)] = littleEndian<std::uint64_t>(record.subspan(8));
        }
        const Outlook::Properties properties(stream, header);
        for (const auto& [tag, value] : values) check(properties[tag] == value);
        if (!values.contains(0xFFFF'FFFF)) check(!properties[0xFFFF'FFFF]);
    }
    return 0;
}
