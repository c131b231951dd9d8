// A pattern on the first line and a text: it is found wherever it stands, in order.
#include "MailCore/Search/PlainPattern.h"

#include "fuzz/Support.h"

#include <vector>

using namespace MailCore;
using namespace MailCore::Fuzzing;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes input = inputBytes(data, size);
    const auto [line, rest] = firstLine(input);
    if (line.empty()) return 0;
    const Bytes exact = copyOf(rest);
    const std::string_view text = charsOf(exact);
    const std::string_view bytes = charsOf(line);
    std::vector<std::size_t> found;
    const auto answer = PlainPattern(std::string(bytes)).find(text, [&](std::size_t place) {
        found.push_back(place);
        return false;
    });
    if (answer == PlainPattern::Answer::unknown) return 0;
    check(answer == PlainPattern::Answer::no);
    std::vector<std::size_t> expected;
    for (std::size_t at = text.find(bytes); at != std::string_view::npos; at = text.find(bytes, at + 1))
        expected.push_back(at);
    check(found == expected);
    return 0;
}
