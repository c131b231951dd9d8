// A file read line by line: whatever is kept of each line, lines follow each other and cover the file.
#include "MailCore/Sources/ArchiveLines.h"

#include "fuzz/MemoryFile.h"
#include "fuzz/Support.h"

using namespace MailCore;
using namespace MailCore::Fuzzing;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes input = inputBytes(data, size);
    const std::size_t most = size == 0 ? 0 : 1 + std::to_integer<std::size_t>(input[0]);
    const FileHandle file = memoryFile(input);
    ArchiveLines lines(file, never);
    ByteOffset at = 0;
    for (bool again = false; const auto line = lines.next(most); again = !again) {
        check(line->start == at && line->end > at && line->end <= size);
        const auto length = static_cast<std::size_t>(line->length());
        const std::string_view whole = charsOf(input).substr(static_cast<std::size_t>(at), length);
        check(charsOf(line->prefix) == whole.substr(0, most) && line->truncated == (length > most));
        check(whole.find('\n') == (line->end == size ? whole.find('\n') : length - 1));
        if (again) { // given back, it comes once more
            lines.pushBack(*line);
            check(lines.next(0)->end == line->end);
        }
        at = line->end;
    }
    check(at == size);
    return 0;
}
