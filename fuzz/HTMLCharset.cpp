// The beginning of a page: a charset that is found stands in it, behind its name.
#include "MailCore/MIME/HTMLCharset.h"

#include "fuzz/Support.h"

using namespace MailCore;
using namespace MailCore::Fuzzing;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes exact = inputText(data, size);
    const std::string_view text = charsOf(exact);
    const auto label = MIME::sniffedCharset(text);
    if (!label) return 0;
    checkText(*label);
    const std::size_t equals = text.find('=');
    check(!label->empty() && equals != std::string_view::npos &&
          text.find(*label, equals) != std::string_view::npos);
    return 0;
}
