// A header block of a file: the fields that are in its bytes, and an end inside it.
#include "MailCore/Sources/HeaderBlock.h"

#include "MailCore/MIME/MIME.h"
#include "fuzz/MemoryFile.h"
#include "fuzz/Support.h"

#include <string>
#include <vector>

using namespace MailCore;
using namespace MailCore::Fuzzing;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes input = inputBytes(data, size);
    const FileHandle file = memoryFile(input);
    ArchiveLines lines(file, never);
    const MailReader::HeaderBlock block = MailReader::headers(lines);
    if (block.end) {
        check(*block.end <= size);
        const auto end = static_cast<std::size_t>(*block.end);
        check(charsOf(input).substr(0, end).ends_with('\n'));
        // A line that ends in CR LF before one that ends in LF keeps its CR when all is read at once.
        const auto names = [](const std::vector<Header>& fields) {
            std::vector<std::string> result;
            for (const Header& field : fields) result.push_back(field.name);
            return result;
        };
        check(names(block.fields) == names(MIME::split(ByteView(input).first(end)).headers) || end > 262'144);
    }
    check(block.fields.size() <= 2'000);
    const auto next = lines.next(1);
    check(!next || !block.end || next->start >= *block.end);
    return 0;
}
